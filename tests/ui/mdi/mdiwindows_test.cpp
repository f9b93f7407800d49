// The Window menu's "&More Windows..." item and its "Select Window" dialog,
// and Arrange Icons, driven as a person does: clicks and keys in the dialog,
// the boxes and captions of the children.
#include "mditest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/controls/clistbox.h"
#include "ui/mdi/cmdichildwnd.h"
#include "ui/mdi/cmdiclientwnd.h"
#include "ui/mdi/cmdiselectwindowdlg.h"
#include "ui/menus/winmenu.h"

#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr UINT kMoreWindows = AFX_IDM_FIRST_MDICHILD + 9;

class Child : public CMDIChildWnd {
public:
    Child() { m_bAutoDelete = false; }
};

struct Mdi : mditest::Mdi {
    std::vector<std::unique_ptr<Child>> children;

    void Make() { mditest::Mdi::Make({{ID_WINDOW_CASCADE, "&Kaskada"}, {ID_WINDOW_ARRANGE, "&Rozmie\x9C\xE6 ikony"}}); }
    Child& Add()
    {
        auto child = std::make_unique<Child>();
        CString title;
        title.Format("Rysunek %d", static_cast<int>(children.size() + 1));
        EXPECT_TRUE(child->Create(nullptr, title, WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &frame));
        children.push_back(std::move(child));
        return *children.back();
    }
    bool HasMoreWindows() { return GetMenuState(windowMenu, kMoreWindows, MF_BYCOMMAND) != 0xFFFFFFFF; }
};

using mditest::InClient;

// The open "Select Window" dialog: the active window while it runs.
CMDISelectWindowDlg* OpenDialog()
{
    return dynamic_cast<CMDISelectWindowDlg*>(CWnd::GetActiveWindow());
}

// Chooses "&More Windows..." from the frame's menu and runs `drive` on the
// dialog once it shows; false when no dialog opened.
bool ChooseMoreWindows(Mdi& m, const std::function<void(CMDISelectWindowDlg&, CListBox&)>& drive)
{
    bool opened = false;
    // A timer of this call only: when no dialog runs it must not fire later.
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        CMDISelectWindowDlg* dlg = OpenDialog();
        if (!dlg)
            return;
        opened = true;
        auto* list = dynamic_cast<CListBox*>(dlg->GetDlgItem(CMDISelectWindowDlg::IDC_WINDOWS));
        EXPECT_NE(list, nullptr);
        if (list)
            drive(*dlg, *list);
        // A failed step must not leave the test waiting on the dialog.
        if (::testing::Test::HasFailure())
            dlg->EndDialog(IDABORT);
    });
    timer.start(0);
    m.frame.SendMessage(WM_COMMAND, kMoreWindows);
    return opened;
}

CPoint ItemCenter(CListBox& list, int index)
{
    CRect r;
    list.SendMessage(LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&r));
    return r.CenterPoint();
}

void ClickButton(CDialog& dlg, int id)
{
    vxtest::Click(*dlg.GetDlgItem(id), 4, 4);
}

std::vector<std::string> Items(CListBox& list)
{
    std::vector<std::string> out;
    const int n = static_cast<int>(list.SendMessage(LB_GETCOUNT));
    for (int i = 0; i < n; ++i) {
        char text[80] = {};
        list.SendMessage(LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        out.emplace_back(text);
    }
    return out;
}

// A press on the child's frame at a screen point, as the desktop delivers it.
void NcPress(CWnd& w, CPoint screen)
{
    const UINT code = static_cast<UINT>(w.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y)));
    vxtest::Mouse(w, WM_NCLBUTTONDOWN, screen.x, screen.y, code);
}

void ReleaseAt(CWnd& w, CPoint screen)
{
    CPoint p = screen;
    w.ScreenToClient(&p);
    vxtest::Mouse(w, WM_MOUSEMOVE, p.x, p.y, MK_LBUTTON);
    vxtest::Mouse(w, WM_LBUTTONUP, p.x, p.y);
}

void ClickMinimizeBox(CMDIChildWnd& w)
{
    CRect r;
    w.GetWindowRect(&r);
    const CPoint at = r.TopLeft() + w.BoxRect(CMDIChildWnd::Box::Minimize).CenterPoint();
    NcPress(w, at);
    ReleaseAt(w, at);
}

// Drags a minimised child by its caption to `to` (the client's coordinates
// of its top left corner).
void DragIcon(Mdi& m, CMDIChildWnd& w, CPoint to)
{
    CRect r;
    w.GetWindowRect(&r);
    const CPoint grip = r.TopLeft() + CPoint(30, 8);
    NcPress(w, grip);
    CPoint target = to + CPoint(30, 8);
    m.Client().ClientToScreen(&target);
    ReleaseAt(w, target);
}

} // namespace

TEST(MdiMoreWindows, TenChildrenGiveTheItemWhoseDialogActivatesTheChosenChild)
{
    Mdi m;
    m.Make();
    for (int i = 0; i < 9; ++i)
        m.Add();
    EXPECT_EQ(m.Entries().size(), 9u);
    EXPECT_FALSE(m.HasMoreWindows()) << "nine children are all listed";
    // Without the item, its id opens nothing.
    EXPECT_FALSE(ChooseMoreWindows(m, [](CMDISelectWindowDlg& d, CListBox&) { d.EndDialog(IDCANCEL); }));

    m.Add();
    std::vector<std::string> entries = m.Entries();
    ASSERT_EQ(entries.size(), 10u);
    EXPECT_EQ(entries[8], "&9 Rysunek 9");
    EXPECT_EQ(entries[9], "&More Windows...");
    EXPECT_EQ(GetMenuItemID(m.windowMenu, GetMenuItemCount(m.windowMenu) - 1), kMoreWindows);

    // The dialog lists every child, the active one (the last made) selected;
    // a click on a title and OK activate that child.
    EXPECT_TRUE(ChooseMoreWindows(m, [](CMDISelectWindowDlg& d, CListBox& list) {
        CString title;
        d.GetWindowText(title);
        EXPECT_EQ(title, CString("Select Window"));
        EXPECT_EQ(d.GetDlgItemText(IDOK), CString("OK"));
        EXPECT_EQ(d.GetDlgItemText(IDCANCEL), CString("Cancel"));
        const std::vector<std::string> items = Items(list);
        ASSERT_EQ(items.size(), 10u);
        EXPECT_EQ(items[0], "Rysunek 1");
        EXPECT_EQ(items[9], "Rysunek 10");
        EXPECT_EQ(list.GetCurSel(), 9);
        const CPoint at = ItemCenter(list, 2);
        vxtest::Click(list, at.x, at.y);
        EXPECT_EQ(list.GetCurSel(), 2);
        ClickButton(d, IDOK);
    }));
    EXPECT_EQ(m.frame.MDIGetActive(), m.children[2].get());
    EXPECT_EQ(m.Entries()[2], "&3 Rysunek 3");
    EXPECT_TRUE(GetMenuState(m.windowMenu, AFX_IDM_FIRST_MDICHILD + 2, MF_BYCOMMAND) & MF_CHECKED);

    // Cancel leaves the active child as it was, though another was selected.
    EXPECT_TRUE(ChooseMoreWindows(m, [](CMDISelectWindowDlg& d, CListBox& list) {
        EXPECT_EQ(list.GetCurSel(), 2);
        const CPoint at = ItemCenter(list, 6);
        vxtest::Click(list, at.x, at.y);
        ClickButton(d, IDCANCEL);
    }));
    EXPECT_EQ(m.frame.MDIGetActive(), m.children[2].get());

    // A double click picks at once; so do the arrows and Enter in the list.
    EXPECT_TRUE(ChooseMoreWindows(m, [](CMDISelectWindowDlg&, CListBox& list) {
        const CPoint at = ItemCenter(list, 7);
        vxtest::DoubleClick(list, at.x, at.y);
    }));
    EXPECT_EQ(m.frame.MDIGetActive(), m.children[7].get());
    EXPECT_TRUE(ChooseMoreWindows(m, [](CMDISelectWindowDlg&, CListBox& list) {
        EXPECT_EQ(CWnd::GetFocus(), &list);
        vxtest::Key(VK_DOWN);
        vxtest::Key(VK_DOWN);
        vxtest::Key(VK_RETURN);
    }));
    EXPECT_EQ(m.frame.MDIGetActive(), m.children[9].get());
    EXPECT_EQ(CWnd::GetActiveWindow(), &m.frame) << "the frame is active again";

    // With a tenth child closed the item goes; the list stays.
    m.children[0]->MDIDestroy();
    entries = m.Entries();
    ASSERT_EQ(entries.size(), 9u);
    EXPECT_EQ(entries[0], "&1 Rysunek 2");
    EXPECT_FALSE(m.HasMoreWindows());
    m.children[1]->MDIDestroy();
    EXPECT_EQ(m.Entries().size(), 8u);
    EXPECT_FALSE(m.HasMoreWindows());
}

TEST(MdiMoreWindows, AMinimisedChildChosenInTheDialogIsRestored)
{
    Mdi m;
    m.Make();
    for (int i = 0; i < 11; ++i)
        m.Add();
    Child& pick = *m.children[10];
    const CRect before = InClient(pick);
    ClickMinimizeBox(pick);
    ASSERT_TRUE(pick.IsIconic());
    m.frame.MDIActivate(m.children[0].get());
    EXPECT_TRUE(ChooseMoreWindows(m, [](CMDISelectWindowDlg& d, CListBox& list) {
        EXPECT_EQ(list.GetCurSel(), 0);
        const CPoint at = ItemCenter(list, 10);
        vxtest::Click(list, at.x, at.y);
        ClickButton(d, IDOK);
    }));
    EXPECT_FALSE(pick.IsIconic());
    EXPECT_EQ(InClient(pick), before);
    EXPECT_EQ(m.frame.MDIGetActive(), &pick);
}

TEST(MdiArrangeIcons, MinimisedChildrenGoIntoRowsAlongTheBottomAndTheOthersStay)
{
    Mdi m;
    m.Make();
    for (int i = 0; i < 6; ++i)
        m.Add();
    const int height = GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CXFRAME);
    const int width = 160;
    const CRect client = m.ClientRect();
    const int perRow = client.Width() / width;
    ASSERT_GE(perRow, 2);
    auto slot = [&](int index, const CRect& area) {
        const int x = (index % perRow) * width;
        const int y = area.bottom - (index / perRow + 1) * height;
        return CRect(x, y, x + width, y + height);
    };

    // Minimising takes the first free place of the bottom row.
    for (int i : {4, 1, 3})
        ClickMinimizeBox(*m.children[static_cast<size_t>(i)]);
    EXPECT_EQ(InClient(*m.children[4]), slot(0, client));
    EXPECT_EQ(InClient(*m.children[1]), slot(1, client));
    // Scattered: two icons dragged into the middle; a new one takes the
    // place left free.
    DragIcon(m, *m.children[4], CPoint(200, 90));
    DragIcon(m, *m.children[3], CPoint(40, 200));
    ClickMinimizeBox(*m.children[5]);
    EXPECT_EQ(InClient(*m.children[5]), slot(0, client));
    ClickMinimizeBox(*m.children[0]);
    // Place 1 is still taken by child 1, place 2 is free again.
    EXPECT_EQ(InClient(*m.children[0]), slot(2, client));

    const CRect restored = InClient(*m.children[2]);
    m.frame.SendMessage(WM_COMMAND, ID_WINDOW_ARRANGE);
    // In the Window menu's order: 0, 1, 3, 4, 5; rows from the bottom.
    const int order[] = {0, 1, 3, 4, 5};
    for (int k = 0; k < 5; ++k) {
        Child& c = *m.children[static_cast<size_t>(order[k])];
        EXPECT_TRUE(c.IsIconic());
        EXPECT_EQ(InClient(c), slot(k, client)) << "icon " << k;
    }
    EXPECT_EQ(InClient(*m.children[2]), restored) << "a child not minimised stays";
    EXPECT_FALSE(m.children[2]->IsIconic());

    // A narrower, lower client: the next arrangement follows its bottom,
    // with fewer icons in a row; restoring one frees its place.
    CRect frameRect;
    m.frame.GetWindowRect(&frameRect);
    m.frame.SetWindowPos(nullptr, 0, 0, frameRect.Width() - 2 * width, frameRect.Height() - 100,
                         SWP_NOMOVE | SWP_NOZORDER);
    const CRect smaller = m.ClientRect();
    ASSERT_LT(smaller.Width() / width, perRow);
    ASSERT_LT(smaller.bottom, client.bottom);
    ClickMinimizeBox(*m.children[1]); // the box of an icon restores it
    EXPECT_FALSE(m.children[1]->IsIconic());
    const CRect oneRestored = InClient(*m.children[1]);
    m.Client().SendMessage(WM_MDIICONARRANGE);
    const int perRowNow = std::max(1, smaller.Width() / width);
    const int after[] = {0, 3, 4, 5};
    for (int k = 0; k < 4; ++k) {
        const int x = (k % perRowNow) * width;
        const int y = smaller.bottom - (k / perRowNow + 1) * height;
        EXPECT_EQ(InClient(*m.children[static_cast<size_t>(after[k])]), CRect(x, y, x + width, y + height))
            << "icon " << k;
    }
    EXPECT_EQ(InClient(*m.children[1]), oneRestored);
    EXPECT_EQ(InClient(*m.children[2]), restored);

    // Tile and cascade keep above the icons' rows, so that all stay in view.
    const int iconsTop = smaller.bottom - ((4 + perRowNow - 1) / perRowNow) * height;
    for (UINT command : {ID_WINDOW_TILE_HORZ, ID_WINDOW_CASCADE}) {
        DragIcon(m, *m.children[5], CPoint(20, 20));
        m.frame.SendMessage(WM_COMMAND, command);
        EXPECT_EQ(InClient(*m.children[5]).TopLeft(), CPoint((3 % perRowNow) * width, smaller.bottom - (3 / perRowNow + 1) * height))
            << "the icons were arranged first";
        for (size_t i : {size_t{1}, size_t{2}}) {
            EXPECT_LE(InClient(*m.children[i]).bottom, iconsTop) << command << " child " << i;
            EXPECT_GE(InClient(*m.children[i]).top, 0);
        }
    }
}

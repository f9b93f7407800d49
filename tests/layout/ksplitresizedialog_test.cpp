// The split dialog as a user meets it: the bar where the template left a
// gap, the cursor over it, a drag with the mouse that shows an inverted bar
// following the pointer and moves the panes at the release, the limits of a
// drag, resizing, and the bars' places kept with the placement.
#include "uisupport/uitest.h"

#include "layout/ksplitresizedialog.h"

#include "config/kprofile.h"
#include "platform/windows/sysmetrics.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"
#include "support/tempdir.h"

#include <QImage>

#include <cstring>
#include <functional>

namespace {

enum : int { kTop = 100, kBottom = 101, kRight = 102 };

// Three lists: two stacked on the left, one on the right, with gaps between
// them where the bars go.
vx::DialogTemplate Form()
{
    vx::DialogTemplate t("Split", 0, 0, 240, 150, vx::DialogTemplate::kDefaultStyle | WS_THICKFRAME);
    t.ListBox(kTop, 7, 7, 100, 60)
        .ListBox(kBottom, 7, 71, 100, 72)
        .ListBox(kRight, 111, 7, 122, 136);
    return t;
}

class Splitter : public KSplitResizeDialog {
public:
    Splitter() : KSplitResizeDialog(0) {}
    using KSplitResizeDialog::OnInitDialog;

    bool withTree = true;
    KSplitPane* middle = nullptr;

    CRect Place(int id) { return vxtest::ChildPlace(*this, id); }
    void Client(int cx, int cy) { vxtest::SetClientSize(*this, cx, cy); }

protected:
    BOOL OnInitDialog() override
    {
        KSplitResizeDialog::OnInitDialog();
        CWnd& top = *GetDlgItem(kTop);
        CWnd& bottom = *GetDlgItem(kBottom);
        CWnd& right = *GetDlgItem(kRight);
        // The left column takes the first half of a growth, the right the second.
        AddSzControlEx(top, 0, 50, 0, 50);
        AddSzControlEx(bottom, 0, 50, 50, 100);
        AddSzControlEx(right, 50, 100, 0, 100);
        if (!withTree)
            return TRUE;
        KSplitPane* root = CreatePane(1, nullptr, 1, 1);
        middle = CreatePane(0, root, 1, 1);
        AddWindowToPane(middle, &top, 1, KSplitPane::modeStretch, KSplitPane::modeStretch);
        AddWindowToPane(middle, &bottom, 2, KSplitPane::modeStretch, KSplitPane::modeStretch);
        AddWindowToPane(root, &right, 2, KSplitPane::modeStretch, KSplitPane::modeStretch);
        Initialize(1);
        return TRUE;
    }
};

struct SplitDialog : ::testing::Test {
    Splitter dlg;

    void Open(bool tree = true)
    {
        dlg.withTree = tree;
        ASSERT_TRUE(dlg.CreateIndirect(Form()));
        dlg.ShowWindow(SW_SHOW);
        vx::ProcessUiEvents();
    }
    // The client area as it shows, in client coordinates.
    QImage ClientImage()
    {
        CRect client;
        dlg.GetClientRect(&client);
        CPoint origin(0, 0);
        dlg.ClientToScreen(&origin);
        CRect outer;
        dlg.GetWindowRect(&outer);
        return vxtest::Render(dlg).copy(origin.x - outer.left, origin.y - outer.top, client.Width(),
                                        client.Height());
    }
    // The root bar's middle point.
    CPoint Bar() const
    {
        const CRect bar = dlg.GetRootPane()->GetSplitterRect();
        return bar.CenterPoint();
    }
};

} // namespace

TEST_F(SplitDialog, TheBarLiesInTheTemplatesGapAndTheCursorTellsIt)
{
    Open();
    const CRect top = dlg.Place(kTop);
    const CRect right = dlg.Place(kRight);
    const CRect bar = dlg.GetRootPane()->GetSplitterRect();
    EXPECT_EQ(bar.left, top.right);
    EXPECT_EQ(bar.Width(), 4);
    EXPECT_LE(bar.right, right.left);
    const CRect across = dlg.middle->GetSplitterRect();
    EXPECT_EQ(across.top, top.bottom);
    EXPECT_EQ(across.Height(), 4);

    // Over a bar the cursor shows which way it moves, elsewhere it doesn't.
    ::SetCursor(nullptr);
    vxtest::Mouse(dlg, WM_MOUSEMOVE, Bar().x, Bar().y);
    EXPECT_EQ(::GetCursor(), ::LoadCursorA(nullptr, IDC_SIZEWE));
    vxtest::Mouse(dlg, WM_MOUSEMOVE, across.CenterPoint().x, across.CenterPoint().y);
    EXPECT_EQ(::GetCursor(), ::LoadCursorA(nullptr, IDC_SIZENS));
    ::SetCursor(nullptr);
    vxtest::Mouse(dlg, WM_MOUSEMOVE, right.CenterPoint().x, right.CenterPoint().y);
    EXPECT_EQ(::GetCursor(), nullptr);
}

TEST_F(SplitDialog, ADragShowsTheBarAtThePointerAndMovesThePanesAtTheRelease)
{
    Open();
    const CRect top = dlg.Place(kTop);
    const CRect bottom = dlg.Place(kBottom);
    const CRect right = dlg.Place(kRight);
    const CPoint from = Bar();
    vxtest::Mouse(dlg, WM_LBUTTONDOWN, from.x, from.y, MK_LBUTTON);
    EXPECT_TRUE(dlg.IsDragging());
    EXPECT_EQ(CWnd::GetCapture(), &dlg);
    vxtest::Mouse(dlg, WM_MOUSEMOVE, from.x + 40, from.y, MK_LBUTTON);
    // Nothing moves during the drag: only the drawn bar follows.
    EXPECT_EQ(dlg.Place(kTop), top);
    const CRect drawn = dlg.GetDragBarRect();
    EXPECT_EQ(drawn.left, from.x + 40);
    EXPECT_EQ(drawn.Width(), 4);
    vxtest::Mouse(dlg, WM_LBUTTONUP, from.x + 40, from.y, 0);
    EXPECT_FALSE(dlg.IsDragging());
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    vx::ProcessUiEvents(); // the posted WM_SIZE
    const int moved = from.x + 40 - top.right;
    EXPECT_EQ(dlg.Place(kTop), CRect(top.left, top.top, top.right + moved, top.bottom));
    EXPECT_EQ(dlg.Place(kBottom), CRect(bottom.left, bottom.top, bottom.right + moved, bottom.bottom));
    EXPECT_EQ(dlg.Place(kRight), CRect(right.left + moved, right.top, right.right, right.bottom));
    EXPECT_EQ(dlg.GetRootPane()->GetSplitterRect().left, from.x + 40);
    // The drawn bar is gone with the drag: the image has no trace of it.
    EXPECT_TRUE(dlg.GetDragBarRect().IsRectEmpty());
}

TEST_F(SplitDialog, TheDraggedBarIsInvertedAndErasedAsItMoves)
{
    Open();
    const CPoint from = Bar();
    const QImage before = ClientImage();
    vxtest::Mouse(dlg, WM_LBUTTONDOWN, from.x, from.y, MK_LBUTTON);
    vxtest::Mouse(dlg, WM_MOUSEMOVE, from.x + 30, from.y, MK_LBUTTON);
    const QImage first = ClientImage();
    vxtest::Mouse(dlg, WM_MOUSEMOVE, from.x + 60, from.y, MK_LBUTTON);
    const QImage second = ClientImage();

    // Over the right list the bar inverts every other pixel of 4 columns;
    // where it was before, the list shows again exactly as it was.
    const int y = dlg.Place(kRight).CenterPoint().y;
    auto changedAt = [&](const QImage& image, int x) {
        int n = 0;
        for (int dy = 0; dy < 8; ++dy)
            n += image.pixel(x, y + dy) != before.pixel(x, y + dy);
        return n;
    };
    for (int x = from.x + 30; x < from.x + 34; ++x) {
        SCOPED_TRACE(x);
        EXPECT_EQ(changedAt(first, x), 4);
        EXPECT_EQ(changedAt(second, x), 0);
    }
    for (int x = from.x + 60; x < from.x + 64; ++x) {
        SCOPED_TRACE(x);
        EXPECT_EQ(changedAt(first, x), 0);
        EXPECT_EQ(changedAt(second, x), 4);
    }
    // An inverted pixel is the complement of what was under it.
    const QRgb under = before.pixel(from.x + 60, y);
    const QRgb other = before.pixel(from.x + 60, y + 1);
    const QRgb a = second.pixel(from.x + 60, y);
    const QRgb b = second.pixel(from.x + 60, y + 1);
    EXPECT_TRUE((a == (under ^ 0xFFFFFFu) && b == other) || (a == under && b == (other ^ 0xFFFFFFu)));
    vxtest::Mouse(dlg, WM_LBUTTONUP, from.x + 60, from.y, 0);
}

TEST_F(SplitDialog, TheBarLeavesAGapOfTheFaceColourBetweenThePanes)
{
    Open();
    const QImage image = ClientImage();
    EXPECT_RECT_COLOR(image, dlg.GetRootPane()->GetSplitterRect(), GetSysColor(COLOR_BTNFACE));
    EXPECT_RECT_COLOR(image, dlg.middle->GetSplitterRect(), GetSysColor(COLOR_BTNFACE));
    // The lists beside the bars paint up to them.
    const CRect bar = dlg.GetRootPane()->GetSplitterRect();
    EXPECT_NE(vxtest::ColorAt(image, bar.left - 1, bar.CenterPoint().y), GetSysColor(COLOR_BTNFACE));
}

TEST_F(SplitDialog, ADragStopsAtTheMinimaOfBothSides)
{
    Open();
    KSplitPane& root = *dlg.GetRootPane();
    const CRect whole = root.GetPaneRect();
    const CPoint from = Bar();
    vxtest::Mouse(dlg, WM_LBUTTONDOWN, from.x, from.y, MK_LBUTTON);
    vxtest::Mouse(dlg, WM_MOUSEMOVE, whole.left + 2, from.y, MK_LBUTTON);
    EXPECT_EQ(dlg.GetDragBarRect().left, whole.left + root.GetLeftMinWidth());
    vxtest::Mouse(dlg, WM_LBUTTONUP, whole.left + 2, from.y, 0);
    vx::ProcessUiEvents();
    EXPECT_EQ(root.GetSplitterRect().left, whole.left + root.GetLeftMinWidth());

    // The right side's minimum as measured before the drag: the side ends
    // up a bar narrower than it, and the measuring after the release cuts
    // the minimum to the side, so the later value would not tell.
    const int rightMin = root.GetRightMinWidth();
    const CPoint again = Bar();
    vxtest::Mouse(dlg, WM_LBUTTONDOWN, again.x, again.y, MK_LBUTTON);
    vxtest::Mouse(dlg, WM_MOUSEMOVE, whole.right + 50, again.y, MK_LBUTTON);
    EXPECT_EQ(dlg.GetDragBarRect().left, whole.right - rightMin);
    vxtest::Mouse(dlg, WM_LBUTTONUP, whole.right + 50, again.y, 0);
    vx::ProcessUiEvents();
    EXPECT_EQ(root.GetSplitterRect().left, whole.right - rightMin);
}

TEST_F(SplitDialog, ResizingKeepsTheDivisionOfTheTemplateAndTheTreesMinimum)
{
    Open();
    CRect c;
    dlg.GetClientRect(&c);
    const CRect top = dlg.Place(kTop);
    const CRect right = dlg.Place(kRight);
    dlg.Client(c.Width() + 100, c.Height() + 40);
    EXPECT_EQ(dlg.Place(kTop).right, top.right + 50);
    EXPECT_EQ(dlg.Place(kRight).right, right.right + 100);
    EXPECT_EQ(dlg.GetRootPane()->GetSplitterRect().left, top.right + 50);

    // The frame can't be dragged under the tree's minimum.
    RECT frame{0, 0, 10, 10};
    dlg.SendMessage(WM_SIZING, WMSZ_BOTTOMRIGHT, reinterpret_cast<LPARAM>(&frame));
    EXPECT_EQ(frame.right, dlg.GetRootPane()->GetMinWidth());
    EXPECT_EQ(frame.bottom, dlg.GetRootPane()->GetMinHeight());
    RECT fromTop{0, 100, 10, 110};
    dlg.SendMessage(WM_SIZING, WMSZ_TOPLEFT, reinterpret_cast<LPARAM>(&fromTop));
    EXPECT_EQ(fromTop.top, 110 - dlg.GetRootPane()->GetMinHeight());
    EXPECT_EQ(fromTop.left, 10 - dlg.GetRootPane()->GetMinWidth());
}

TEST_F(SplitDialog, HidingTheRightPaneGivesTheLeftTheWholeAndBringsTheBarBack)
{
    Open();
    const int bar = dlg.GetRootPane()->GetSplitterRect().left;
    EXPECT_EQ(dlg.ShowPane(dlg.GetRootPane(), 0, 2), 1);
    EXPECT_FALSE(dlg.GetDlgItem(kRight)->IsWindowVisible());
    EXPECT_TRUE(dlg.GetRootPane()->GetSplitterRect().IsRectEmpty());
    EXPECT_EQ(dlg.Place(kTop).right, dlg.GetRootPane()->GetPaneRect().right);
    dlg.ShowPane(dlg.GetRootPane(), 1, 2);
    EXPECT_TRUE(dlg.GetDlgItem(kRight)->IsWindowVisible());
    EXPECT_EQ(dlg.GetRootPane()->GetSplitterRect().left, bar);
}

TEST_F(SplitDialog, WithoutATreeTheMouseAndSizeGoToTheBase)
{
    Open(false);
    EXPECT_EQ(dlg.GetRootPane(), nullptr);
    vxtest::Mouse(dlg, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    EXPECT_FALSE(dlg.IsDragging());
    vxtest::Mouse(dlg, WM_LBUTTONUP, 5, 5, 0);
    CRect c;
    dlg.GetClientRect(&c);
    const CRect right = dlg.Place(kRight);
    dlg.Client(c.Width() + 20, c.Height());
    EXPECT_EQ(dlg.Place(kRight).right, right.right + 20);
    RECT frame{0, 0, 10, 10};
    dlg.SendMessage(WM_SIZING, WMSZ_BOTTOMRIGHT, reinterpret_cast<LPARAM>(&frame));
    EXPECT_EQ(frame.right, 10);
}

TEST_F(SplitDialog, TheBarsComeBackWithThePlacement)
{
    vxtest::TempDir dir;
    std::strcpy(g_profiledirAT, dir.Path("VXWIN55AT.INI").c_str());
    Open();
    const CPoint from = Bar();
    vxtest::Mouse(dlg, WM_LBUTTONDOWN, from.x, from.y, MK_LBUTTON);
    vxtest::Mouse(dlg, WM_LBUTTONUP, from.x + 25, from.y, 0);
    vx::ProcessUiEvents();
    const CRect across = dlg.middle->GetSplitterRect();
    vxtest::Mouse(dlg, WM_LBUTTONDOWN, across.CenterPoint().x, across.CenterPoint().y, MK_LBUTTON);
    vxtest::Mouse(dlg, WM_LBUTTONUP, across.CenterPoint().x, across.CenterPoint().y - 20, 0);
    vx::ProcessUiEvents();
    const int width = dlg.GetRootPane()->GetLeftWidth();
    const int height = dlg.middle->GetLeftHeight();
    ASSERT_TRUE(dlg.StoreWindowPosition("SplitTest", 10));
    EXPECT_EQ(static_cast<int>(KProfile::GetProfileIntA("SplitTest", "Pane0", 0, 10)), width);
    EXPECT_EQ(static_cast<int>(KProfile::GetProfileIntA("SplitTest", "Pane1", 0, 10)), height);

    Splitter again;
    ASSERT_TRUE(again.CreateIndirect(Form()));
    again.ShowWindow(SW_SHOW);
    EXPECT_NE(again.GetRootPane()->GetLeftWidth(), width);
    again.RestoreWindowPosition("SplitTest", false, 10);
    vx::ProcessUiEvents();
    EXPECT_EQ(again.GetRootPane()->GetLeftWidth(), width);
    EXPECT_EQ(again.middle->GetLeftHeight(), height);
    EXPECT_EQ(again.Place(kTop), dlg.Place(kTop));
    EXPECT_EQ(again.Place(kRight), dlg.Place(kRight));
    g_profiledirAT[0] = 0;
}

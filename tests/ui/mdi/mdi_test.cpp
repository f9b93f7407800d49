// MDI: child frames in the client of an MDI frame, driven as a person does:
// clicks activate, the caption moves, the border sizes, the boxes maximise,
// minimise, restore and close; cascade and tile place the children; the
// Window menu lists them and picks one; a maximised child's title joins the
// frame's; messages reach the descendants.
#include "mditest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/mdi/cmdichildwnd.h"
#include "platform/shell/resources.h"
#include "ui/mdi/cmdiclientwnd.h"
#include "ui/mdi/cmultidoctemplate.h"
#include "ui/menus/accelerators.h"
#include "ui/menus/winmenu.h"

#include <string>
#include <vector>

namespace {

// A child that records what it hears.
class Child : public CMDIChildWnd {
public:
    Child() { m_bAutoDelete = false; }
    std::vector<std::pair<bool, CWnd*>> activations;
    int initialUpdates = 0;

protected:
    void OnMDIActivate(BOOL activate, CWnd* activated, CWnd* deactivated) override
    {
        activations.emplace_back(activate != FALSE, activate ? deactivated : activated);
        CMDIChildWnd::OnMDIActivate(activate, activated, deactivated);
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_INITIALUPDATE)
            ++initialUpdates;
        return CMDIChildWnd::WindowProc(message, wParam, lParam);
    }
};

struct Mdi : mditest::Mdi {
    void Make() { mditest::Mdi::Make({{ID_WINDOW_CASCADE, "&Kaskada"}, {ID_WINDOW_TILE_HORZ, "&S\xB9siaduj\xB9" "co"}}); }
    std::vector<std::string> WindowEntries() { return Entries(true); }
};

using mditest::InClient;

// The screen point of a place in the child's window rectangle.
CPoint AtWindow(const CWnd& w, CPoint at)
{
    CRect r;
    w.GetWindowRect(&r);
    return r.TopLeft() + at;
}

// Presses at a screen point of the child's frame as the desktop delivers it:
// the hit test picks the part.
UINT NcPress(CWnd& w, CPoint screen)
{
    const UINT code = static_cast<UINT>(w.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y)));
    vxtest::Mouse(w, WM_NCLBUTTONDOWN, screen.x, screen.y, code);
    return code;
}

// With the mouse captured, moves and lets go at a screen point.
void ReleaseAt(CWnd& w, CPoint screen)
{
    CPoint p = screen;
    w.ScreenToClient(&p);
    vxtest::Mouse(w, WM_MOUSEMOVE, p.x, p.y, MK_LBUTTON);
    vxtest::Mouse(w, WM_LBUTTONUP, p.x, p.y);
}

void ClickBox(CMDIChildWnd& w, CMDIChildWnd::Box box)
{
    const CPoint at = AtWindow(w, box == CMDIChildWnd::Box::Close ? w.BoxRect(box).CenterPoint()
                                                                   : w.BoxRect(box).CenterPoint());
    NcPress(w, at);
    ReleaseAt(w, at);
}

} // namespace

TEST(Mdi, ChildrenAreMadeActivatedByClicksAndListedInTheWindowMenu)
{
    Mdi m;
    m.Make();
    Child a;
    Child b;
    ASSERT_TRUE(a.Create(nullptr, "Rysunek 1", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &m.frame));
    ASSERT_TRUE(b.Create(nullptr, "Rysunek 2", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &m.frame));
    EXPECT_EQ(a.GetParent(), &m.Client());
    EXPECT_EQ(m.frame.MDIGetActive(), &b) << "a new child is the active one";
    EXPECT_TRUE(b.IsActiveChild());
    EXPECT_FALSE(a.IsActiveChild());
    // The second child was placed one cascade step below the first.
    EXPECT_EQ(InClient(b).TopLeft() - InClient(a).TopLeft(), CSize(CMDIClientWnd::CascadeStep(), CMDIClientWnd::CascadeStep()));
    EXPECT_EQ(m.WindowEntries(), (std::vector<std::string>{"&1 Rysunek 1", "*&2 Rysunek 2"}));
    // The separator stands between the commands and the list.
    EXPECT_TRUE(GetMenuState(m.windowMenu, 2, MF_BYPOSITION) & MF_SEPARATOR);

    // A click in a's client area, where b does not cover it, activates a.
    a.activations.clear();
    b.activations.clear();
    vxtest::Click(a, 5, 5);
    EXPECT_EQ(m.frame.MDIGetActive(), &a);
    ASSERT_EQ(a.activations.size(), 1u);
    EXPECT_EQ(a.activations[0], std::make_pair(true, static_cast<CWnd*>(&b)));
    ASSERT_EQ(b.activations.size(), 1u);
    EXPECT_EQ(b.activations[0], std::make_pair(false, static_cast<CWnd*>(&a)));
    EXPECT_EQ(m.Client().GetWindow(GW_CHILD), &a) << "the active child comes on top";
    EXPECT_EQ(m.WindowEntries(), (std::vector<std::string>{"*&1 Rysunek 1", "&2 Rysunek 2"}));

    // The Window menu's entry picks a child; a retitled child is relisted.
    m.frame.SendMessage(WM_COMMAND, AFX_IDM_FIRST_MDICHILD + 1);
    EXPECT_EQ(m.frame.MDIGetActive(), &b);
    b.SetWindowText("Schemat");
    EXPECT_EQ(m.WindowEntries(), (std::vector<std::string>{"&1 Rysunek 1", "*&2 Schemat"}));

    // Next walks the z-order.
    m.frame.MDINext();
    EXPECT_EQ(m.frame.MDIGetActive(), &a);
    m.frame.MDINext();
    EXPECT_EQ(m.frame.MDIGetActive(), &b);

    // Closing the active child hands activation on and shortens the list;
    // the last one gone takes the list and its separator away.
    b.SendMessage(WM_CLOSE);
    EXPECT_EQ(b.m_hWnd, nullptr);
    EXPECT_EQ(m.frame.MDIGetActive(), &a);
    EXPECT_EQ(m.WindowEntries(), (std::vector<std::string>{"*&1 Rysunek 1"}));
    a.DestroyWindow();
    EXPECT_EQ(m.frame.MDIGetActive(), nullptr);
    EXPECT_EQ(GetMenuItemCount(m.windowMenu), 2);
}

TEST(Mdi, CaptionDragMovesBorderDragSizesAndTheCloseBoxCloses)
{
    Mdi m;
    m.Make();
    Child a;
    ASSERT_TRUE(a.Create(nullptr, "Rysunek", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(10, 10, 310, 210),
                         &m.frame));
    EXPECT_EQ(InClient(a), CRect(10, 10, 310, 210));
    // The client area lies under the caption, inside the border.
    const CRect area = vx::ClientAreaOf(a);
    EXPECT_EQ(area.top, GetSystemMetrics(SM_CXFRAME) + GetSystemMetrics(SM_CYCAPTION));
    EXPECT_EQ(area.left, GetSystemMetrics(SM_CXFRAME));

    const CPoint grab = AtWindow(a, CPoint(60, 10));
    EXPECT_EQ(NcPress(a, grab), static_cast<UINT>(HTCAPTION));
    ReleaseAt(a, grab + CPoint(40, 25));
    EXPECT_EQ(InClient(a), CRect(50, 35, 350, 235));
    EXPECT_EQ(CWnd::GetCapture(), nullptr);

    const CPoint corner = AtWindow(a, CPoint(299, 199));
    EXPECT_EQ(NcPress(a, corner), static_cast<UINT>(HTBOTTOMRIGHT));
    ReleaseAt(a, corner + CPoint(20, -50));
    EXPECT_EQ(InClient(a), CRect(50, 35, 370, 185));

    // Pressing a box and letting go elsewhere does nothing.
    const CPoint close = AtWindow(a, a.BoxRect(CMDIChildWnd::Box::Close).CenterPoint());
    EXPECT_EQ(NcPress(a, close), static_cast<UINT>(HTCLOSE));
    ReleaseAt(a, close + CPoint(-80, 40));
    vx::PumpMessages();
    EXPECT_NE(a.m_hWnd, nullptr);
    ClickBox(a, CMDIChildWnd::Box::Close);
    vx::PumpMessages();
    EXPECT_EQ(a.m_hWnd, nullptr);
}

TEST(Mdi, MaximiseFillsTheClientJoinsTheTitleAndPassesToTheNextActiveChild)
{
    Mdi m;
    m.Make();
    Child a;
    Child b;
    ASSERT_TRUE(a.Create(nullptr, "A", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(10, 10, 210, 160), &m.frame));
    ASSERT_TRUE(b.Create(nullptr, "B", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(40, 40, 240, 190), &m.frame));
    ClickBox(b, CMDIChildWnd::Box::Maximize);
    BOOL zoomed = FALSE;
    EXPECT_EQ(m.frame.MDIGetActive(&zoomed), &b);
    EXPECT_TRUE(zoomed);
    EXPECT_EQ(InClient(b), m.ClientRect());
    EXPECT_EQ(vx::ClientAreaOf(b).left, 0) << "no border when maximised";
    EXPECT_EQ(m.frame.GetWindowTextString(), CString("Plan - [B]"));

    // Activating the other child keeps one maximised child: the active one.
    m.frame.MDIActivate(&a);
    EXPECT_TRUE(a.IsZoomed());
    EXPECT_FALSE(b.IsZoomed());
    EXPECT_EQ(InClient(b), CRect(40, 40, 240, 190));
    EXPECT_EQ(m.frame.GetWindowTextString(), CString("Plan - [A]"));

    // The frame growing takes the maximised child along.
    m.frame.SetWindowPos(nullptr, 0, 0, 700, 520, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(InClient(a), m.ClientRect());

    // Double-clicking the caption restores; the title is the frame's again.
    const CPoint caption = AtWindow(a, CPoint(30, 8));
    vxtest::Mouse(a, WM_NCLBUTTONDBLCLK, caption.x, caption.y, HTCAPTION);
    EXPECT_FALSE(a.IsZoomed());
    EXPECT_EQ(InClient(a), CRect(10, 10, 210, 160));
    EXPECT_EQ(m.frame.GetWindowTextString(), CString("Plan"));

    // Minimise leaves the caption along the bottom; its box restores.
    ClickBox(a, CMDIChildWnd::Box::Minimize);
    EXPECT_TRUE(a.IsIconic());
    EXPECT_EQ(InClient(a).bottom, m.ClientRect().bottom);
    EXPECT_EQ(InClient(a).left, 0);
    ClickBox(a, CMDIChildWnd::Box::Minimize);
    EXPECT_FALSE(a.IsIconic());
    EXPECT_EQ(InClient(a), CRect(10, 10, 210, 160));
}

TEST(Mdi, CascadeAndTilePlaceTheChildrenInTheClient)
{
    Mdi m;
    m.Make();
    Child c[3];
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(c[i].Create(nullptr, "C", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(5, 5, 105, 85),
                                &m.frame));
    }
    const CRect client = m.ClientRect();
    const int step = CMDIClientWnd::CascadeStep();
    m.frame.SendMessage(WM_COMMAND, ID_WINDOW_CASCADE);
    // The active child ends last and on top; all are one size.
    EXPECT_EQ(InClient(c[2]).TopLeft(), CPoint(2 * step, 2 * step));
    EXPECT_EQ(InClient(c[2]).BottomRight(), client.BottomRight());
    EXPECT_EQ(InClient(c[0]).TopLeft(), CPoint(0, 0));
    EXPECT_EQ(InClient(c[0]).Size(), InClient(c[2]).Size());
    EXPECT_EQ(m.Client().GetWindow(GW_CHILD), &c[2]);

    m.frame.SendMessage(WM_COMMAND, ID_WINDOW_TILE_HORZ);
    // Three tile as one column of three rows, the active child first.
    EXPECT_EQ(InClient(c[2]), CRect(0, 0, client.right, client.bottom / 3));
    EXPECT_EQ(InClient(c[0]).bottom, client.bottom);
    EXPECT_EQ(InClient(c[0]).Width(), client.Width());
    m.frame.SendMessage(WM_COMMAND, ID_WINDOW_TILE_VERT);
    EXPECT_EQ(InClient(c[2]), CRect(0, 0, client.right / 3, client.bottom));
    EXPECT_EQ(InClient(c[0]).right, client.right);

    // Tiling covers the client without overlap for any count.
    Child d;
    ASSERT_TRUE(d.Create(nullptr, "D", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &m.frame));
    m.frame.MDITile(MDITILE_HORIZONTAL);
    long area = 0;
    for (CWnd* w : {static_cast<CWnd*>(&c[0]), static_cast<CWnd*>(&c[1]), static_cast<CWnd*>(&c[2]), static_cast<CWnd*>(&d)}) {
        const CRect r = InClient(*w);
        EXPECT_TRUE(CRect().IntersectRect(&r, &client));
        area += r.Width() * r.Height();
    }
    EXPECT_EQ(area, static_cast<long>(client.Width()) * client.Height());
}

TEST(Mdi, AFrameBuiltHiddenPlacesAndListsItsChildren)
{
    Mdi m;
    m.Make();
    m.frame.ShowWindow(SW_HIDE);
    Child a;
    Child b;
    ASSERT_TRUE(a.Create(nullptr, "A", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &m.frame));
    ASSERT_TRUE(b.Create(nullptr, "B", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &m.frame));
    m.frame.MDITile(MDITILE_VERTICAL);
    const CRect client = m.ClientRect();
    EXPECT_EQ(InClient(b), CRect(0, 0, client.right / 2, client.bottom));
    EXPECT_EQ(InClient(a), CRect(client.right / 2, 0, client.right, client.bottom));
    EXPECT_EQ(m.WindowEntries(), (std::vector<std::string>{"&1 A", "*&2 B"}));
}

TEST(Mdi, CtrlF6WalksTheChildrenAndCtrlF4ClosesTheActiveOne)
{
    Mdi m;
    m.Make();
    Child c[3];
    for (Child& child : c)
        ASSERT_TRUE(child.Create(nullptr, "C", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &m.frame));
    c[2].SetFocus();
    vxtest::Key(VK_F6, vxtest::kCtrl);
    EXPECT_EQ(m.frame.MDIGetActive(), &c[1]);
    vxtest::Key(VK_F6, vxtest::kCtrl);
    EXPECT_EQ(m.frame.MDIGetActive(), &c[0]);
    vxtest::Key(VK_F6, vxtest::kCtrl);
    EXPECT_EQ(m.frame.MDIGetActive(), &c[2]) << "round all three";
    vxtest::Key(VK_F6, vxtest::kCtrl | vxtest::kShift);
    EXPECT_EQ(m.frame.MDIGetActive(), &c[0]);
    EXPECT_EQ(CWnd::GetFocus(), &c[0]) << "the focus follows";
    vxtest::Key(VK_F4, vxtest::kCtrl);
    vx::PumpMessages();
    EXPECT_EQ(c[0].m_hWnd, nullptr);
    EXPECT_NE(m.frame.MDIGetActive(), nullptr);
    // Plain F6 is the view's.
    CMDIChildWnd* active = m.frame.MDIGetActive();
    vxtest::Key(VK_F6);
    EXPECT_EQ(m.frame.MDIGetActive(), active);
}

TEST(Mdi, InitialUpdateReachesEveryDescendant)
{
    Mdi m;
    m.Make();
    Child a;
    ASSERT_TRUE(a.Create(nullptr, "A", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &m.frame));
    vx::SendMessageToDescendants(m.frame, WM_INITIALUPDATE, 0, 0, TRUE);
    EXPECT_EQ(a.initialUpdates, 1);
    vx::SendMessageToDescendants(m.frame, WM_INITIALUPDATE, 0, 0, FALSE);
    EXPECT_EQ(a.initialUpdates, 1) << "not deep: the client only";
}

TEST(Mdi, TheChildsPaintedCaptionShowsWhichIsActive)
{
    Mdi m;
    m.Make();
    Child a;
    Child b;
    ASSERT_TRUE(a.Create(nullptr, "A", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(0, 0, 200, 150), &m.frame));
    ASSERT_TRUE(b.Create(nullptr, "B", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(250, 0, 450, 150), &m.frame));
    const QImage image = vxtest::Render(m.frame);
    CRect ra = InClient(a);
    CRect rb = InClient(b);
    m.Client().ClientToScreen(&ra);
    m.Client().ClientToScreen(&rb);
    CRect frameRect;
    m.frame.GetWindowRect(&frameRect);
    ra.OffsetRect(-frameRect.left, -frameRect.top);
    rb.OffsetRect(-frameRect.left, -frameRect.top);
    const int f = GetSystemMetrics(SM_CXFRAME);
    // Just right of the title text, left of the boxes.
    EXPECT_PIXEL(image, rb.left + 120, rb.top + f + 2, GetSysColor(COLOR_ACTIVECAPTION));
    EXPECT_PIXEL(image, ra.left + 120, ra.top + f + 2, GetSysColor(COLOR_INACTIVECAPTION));
    // The workspace around them.
    EXPECT_PIXEL(image, rb.right + 20, rb.bottom + 20, GetSysColor(COLOR_APPWORKSPACE));
}

namespace {

constexpr UINT kIdFrame = 7100;
constexpr UINT kIdDrawing = 7101;
constexpr UINT kCmdZoom = 7200;
constexpr UINT kCmdPrint = 7201;

// A frame that counts the commands it hears and what its descendants heard.
class CountingFrame : public CMDIFrameWnd {
public:
    std::vector<UINT> commands;

protected:
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override
    {
        if (LOWORD(wParam) == kCmdZoom || LOWORD(wParam) == kCmdPrint) {
            commands.push_back(LOWORD(wParam));
            return TRUE;
        }
        return CMDIFrameWnd::OnCommand(wParam, lParam);
    }
};

class View : public CWnd {
public:
    int initialUpdates = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_INITIALUPDATE)
            ++initialUpdates;
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

struct Resources {
    Resources()
    {
        using vx::MenuTemplateItem;
        vx::SetString(kIdFrame, "Plan AT\nPlan");
        vx::SetString(kIdDrawing, "\nRysunek\nRysunki");
        vx::SetMenuTemplate(MAKEINTRESOURCE(kIdFrame),
                            {{MF_POPUP, 0, "&Plik", {{MF_STRING, kCmdPrint, "&Drukuj", {}}}},
                             {MF_POPUP, 0, "&Okno", {{MF_STRING, ID_WINDOW_CASCADE, "&Kaskada", {}}}}});
        vx::SetMenuTemplate(MAKEINTRESOURCE(kIdDrawing),
                            {{MF_POPUP, 0, "&Plik", {{MF_STRING, kCmdPrint, "&Drukuj", {}}}},
                             {MF_POPUP, 0, "&Widok", {{MF_STRING, kCmdZoom, "&Powi\xEAkszenie", {}}}},
                             {MF_POPUP, 0, "&Okno", {{MF_STRING, ID_WINDOW_TILE_HORZ, "&S\xB9siaduj\xB9" "co", {}}}}});
        vx::SetAcceleratorTable(MAKEINTRESOURCE(kIdFrame), {{FVIRTKEY | FCONTROL, 'P', kCmdPrint}});
        vx::SetAcceleratorTable(MAKEINTRESOURCE(kIdDrawing), {{FVIRTKEY | FCONTROL, 'Z', kCmdZoom}});
    }
    ~Resources()
    {
        vx::ResetStrings();
        vx::SetMenuTemplate(MAKEINTRESOURCE(kIdFrame), {});
        vx::SetMenuTemplate(MAKEINTRESOURCE(kIdDrawing), {});
        vx::SetAcceleratorTable(MAKEINTRESOURCE(kIdFrame), {});
        vx::SetAcceleratorTable(MAKEINTRESOURCE(kIdDrawing), {});
    }
};

std::string MenuTitles(HMENU menu)
{
    std::string out;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        char text[40] = {};
        GetMenuStringA(menu, static_cast<UINT>(i), text, sizeof text, MF_BYPOSITION);
        out += std::string(i ? "|" : "") + text;
    }
    return out;
}

} // namespace

TEST(MdiTemplates, LoadFrameTakesTitleMenuAndAcceleratorsAndTheTemplatesChildrenSwitchTheMenu)
{
    Resources res;
    CountingFrame frame;
    ASSERT_TRUE(frame.LoadFrame(kIdFrame));
    EXPECT_EQ(frame.GetWindowTextString(), CString("Plan AT"));
    EXPECT_EQ(frame.m_nIDHelp, kIdFrame);
    ASSERT_NE(frame.m_hMenuDefault, nullptr);
    EXPECT_EQ(::GetMenu(frame.m_hWnd), frame.m_hMenuDefault);
    EXPECT_EQ(MenuTitles(frame.m_hMenuDefault), "&Plik|&Okno");
    ASSERT_TRUE(frame.CreateClient(GetSubMenu(frame.m_hMenuDefault, 1)));
    frame.ShowWindow(SW_SHOW);
    frame.SetActiveWindow();
    // The frame's accelerator becomes its command.
    vxtest::Key('P', vxtest::kCtrl, &frame);
    EXPECT_EQ(frame.commands, std::vector<UINT>{kCmdPrint});

    AfxSetMainWnd(&frame);
    View* view = nullptr;
    {
        CMultiDocTemplate drawings(kIdDrawing, [] { return new CMDIChildWnd; }, [&view] { return view = new View; });
        EXPECT_EQ(CMultiDocTemplate::Templates().back(), &drawings);
        EXPECT_EQ(MenuTitles(drawings.m_hMenuShared), "&Plik|&Widok|&Okno");
        CFrameWnd* made = drawings.CreateNewFrame(nullptr, nullptr);
        ASSERT_NE(made, nullptr);
        auto* child = dynamic_cast<CMDIChildWnd*>(made);
        ASSERT_NE(child, nullptr);
        ASSERT_NE(view, nullptr);
        EXPECT_EQ(view->GetParent(), child);
        EXPECT_EQ(view->GetDlgCtrlID(), AFX_IDW_PANE_FIRST);
        EXPECT_EQ(view->initialUpdates, 0) << "a context defers the initial update";
        EXPECT_EQ(child->GetWindowTextString(), CString("Rysunek")) << "the document name when the title is empty";
        drawings.InitialUpdateFrame(child, nullptr);
        EXPECT_EQ(view->initialUpdates, 1);
        EXPECT_TRUE(child->IsWindowVisible());
        EXPECT_EQ(frame.MDIGetActive(), child);
        // The frame shows the child's menu, with its Window menu listing it.
        EXPECT_EQ(::GetMenu(frame.m_hWnd), drawings.m_hMenuShared);
        HMENU windowMenu = GetSubMenu(drawings.m_hMenuShared, 2);
        EXPECT_EQ(GetMenuItemID(windowMenu, GetMenuItemCount(windowMenu) - 1), AFX_IDM_FIRST_MDICHILD);
        // The view fills the child's client area.
        CRect viewRect;
        view->GetWindowRect(&viewRect);
        child->ScreenToClient(&viewRect);
        CRect childClient;
        child->GetClientRect(&childClient);
        EXPECT_EQ(viewRect, childClient);
        // The template's accelerator, pressed in the view, reaches the frame.
        view->SetFocus();
        vxtest::Key('Z', vxtest::kCtrl);
        EXPECT_EQ(frame.commands, (std::vector<UINT>{kCmdPrint, kCmdZoom}));
        // The last child gone, the frame's own menu is back.
        child->SendMessage(WM_CLOSE);
        EXPECT_EQ(::GetMenu(frame.m_hWnd), frame.m_hMenuDefault);
    }
    AfxSetMainWnd(nullptr);
}

TEST(MdiTemplates, AFrameWithoutItsMenuIsNotMadeAndLoadFrameSendsTheInitialUpdate)
{
    Resources res;
    CFrameWnd missing;
    EXPECT_FALSE(missing.LoadFrame(kIdFrame + 50));
    EXPECT_EQ(missing.m_hWnd, nullptr);

    CFrameWnd frame;
    View pane;
    CCreateContext context;
    context.m_newView = [&pane] { return &pane; };
    ASSERT_TRUE(frame.Create(nullptr, "Plan", WS_OVERLAPPEDWINDOW, CFrameWnd::rectDefault, nullptr, nullptr, 0,
                             &context));
    EXPECT_EQ(pane.GetParent(), &frame);
    EXPECT_EQ(pane.initialUpdates, 0);
    frame.DestroyWindow();

    // Without a context LoadFrame tells the descendants itself.
    class PaneFrame : public CFrameWnd {
    public:
        View pane;

    protected:
        int OnCreate() override
        {
            pane.CreateEx("", "VxPane", WS_CHILD | WS_VISIBLE, CRect(0, 0, 10, 10), this, AFX_IDW_PANE_FIRST);
            return CFrameWnd::OnCreate();
        }
    } loaded;
    ASSERT_TRUE(loaded.LoadFrame(kIdFrame));
    EXPECT_EQ(loaded.pane.initialUpdates, 1);
}

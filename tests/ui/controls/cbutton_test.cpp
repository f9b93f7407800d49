#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/controls/cbutton.h"
#include "ui/windows/qtinterop.h"

#include <vector>

namespace {

class Clicks : public CWnd {
public:
    std::vector<WPARAM> commands;

protected:
    BOOL OnCommand(WPARAM w, LPARAM) override
    {
        commands.push_back(w);
        return TRUE;
    }
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.FillSolidRect(&r, RGB(0, 0, 0));
    }
};

void Mouse(CWnd& w, UINT message, int x, int y, UINT flags = 0)
{
    vx::DispatchInputMessage(w, message, flags, MAKELPARAM(x, y));
}

TEST(CButton, ClicksCheckBoxesAndRadioGroupsAsTheSystemButtonDid)
{
    Clicks parent;
    parent.CreateEx("p", "P", WS_POPUP | WS_VISIBLE, CRect(0, 0, 200, 200));
    CButton push, check, r1, r2;
    push.Create("Push", WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON, CRect(0, 0, 60, 24), &parent, 1);
    check.Create("Check", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX, CRect(0, 30, 80, 50), &parent, 2);
    r1.Create("One", WS_CHILD | WS_VISIBLE | WS_GROUP | BS_AUTORADIOBUTTON, CRect(0, 60, 80, 80), &parent, 3);
    r2.Create("Two", WS_CHILD | WS_VISIBLE | BS_AUTORADIOBUTTON, CRect(0, 80, 80, 100), &parent, 4);
    Mouse(push, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    EXPECT_TRUE(push.GetState() & BST_PUSHED);
    EXPECT_EQ(CWnd::GetFocus(), &push);
    Mouse(push, WM_LBUTTONUP, 5, 5);
    EXPECT_EQ(parent.commands, std::vector<WPARAM>{MAKEWPARAM(1, BN_CLICKED)});
    Mouse(check, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    Mouse(check, WM_LBUTTONUP, 5, 5);
    EXPECT_EQ(check.GetCheck(), BST_CHECKED);
    r1.SetCheck(BST_CHECKED);
    Mouse(r2, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    Mouse(r2, WM_LBUTTONUP, 5, 5);
    EXPECT_EQ(r1.GetCheck(), BST_UNCHECKED);
    EXPECT_EQ(r2.GetCheck(), BST_CHECKED);
    EXPECT_EQ(r2.SendMessage(WM_GETDLGCODE), DLGC_BUTTON | DLGC_RADIOBUTTON);
    EXPECT_EQ(push.SendMessage(WM_GETDLGCODE), DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON);
    // The classic look: raised edge, face, black text; pushed, a shadow frame.
    parent.SetFocus();
    QImage img = vxtest::Render(push);
    EXPECT_PIXEL(img, 0, 0, GetSysColor(COLOR_3DLIGHT));
    EXPECT_PIXEL(img, 59, 23, GetSysColor(COLOR_3DDKSHADOW));
    push.SetState(TRUE);
    EXPECT_PIXEL(vxtest::Render(push), 0, 0, GetSysColor(COLOR_BTNSHADOW));
    push.SetFocus();
    img = vxtest::Render(push);
    EXPECT_PIXEL(img, 0, 0, RGB(0, 0, 0)); // focused: the black frame first
    EXPECT_PIXEL(img, 1, 1, GetSysColor(COLOR_BTNSHADOW));
    push.SetState(FALSE);
}

TEST(CButton, OwnerDrawGoesThroughTheParentBackToDrawItem)
{
    struct Drawn : CButton {
        UINT state = 0;
        int calls = 0;
        void DrawItem(LPDRAWITEMSTRUCT dis) override
        {
            ++calls;
            state = dis->itemState;
            CDC::FromHandle(dis->hDC)->FillSolidRect(&dis->rcItem, RGB(1, 2, 3));
        }
    };
    Clicks parent;
    parent.CreateEx("p", "P", WS_POPUP | WS_VISIBLE, CRect(0, 0, 100, 100));
    Drawn b;
    b.Create("x", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, CRect(0, 0, 30, 20), &parent, 5);
    b.EnableWindow(FALSE);
    const QImage img = vxtest::Render(b);
    EXPECT_GE(b.calls, 1);
    EXPECT_TRUE(b.state & ODS_DISABLED);
    EXPECT_PIXEL(img, 29, 19, RGB(1, 2, 3));
}

} // namespace

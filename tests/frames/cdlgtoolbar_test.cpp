// A tool bar in a dialog: its buttons follow the dialog's answers while the
// bar shows, and its tooltips carry the first line of each command's string.
#include "uisupport/uitest.h"

#include "frames/cdlgtoolbar.h"
#include "platform/shell/resources.h"
#include "ui/bars/ccmdui.h"

namespace {

const UINT kCommands[] = {7301, ID_SEPARATOR, 7302};

class Dialog : public CWnd {
public:
    BOOL printable = FALSE;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_UPDATECOMMANDUI && wParam == 7301) {
            reinterpret_cast<CCmdUI*>(lParam)->Enable(printable);
            return TRUE;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

} // namespace

TEST(DlgToolBar, ButtonsFollowTheDialogAndTipsTakeTheCommandStrings)
{
    vx::SetString(7301, "Print the list\nPrint");
    vx::SetString(7302, "Export");
    Dialog dialog;
    ASSERT_TRUE(dialog.CreateEx("Dialog", "VxDialog", WS_POPUP | WS_VISIBLE, CRect(0, 0, 300, 200)));
    CDlgToolBar bar;
    ASSERT_TRUE(bar.CreateEx(&dialog, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP));
    bar.SetButtons(kCommands, 3);
    bar.MoveWindow(0, 0, 300, 30);

    bar.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
    EXPECT_EQ(bar.SendMessage(TB_ISBUTTONENABLED, 7301), 0);
    EXPECT_EQ(bar.SendMessage(TB_ISBUTTONENABLED, 7302), 0) << "nobody handles it";
    dialog.printable = TRUE;
    bar.SendMessage(WM_IDLEUPDATECMDUI, FALSE);
    EXPECT_NE(bar.SendMessage(TB_ISBUTTONENABLED, 7301), 0);
    // A hidden bar is left alone.
    bar.ShowWindow(SW_HIDE);
    dialog.printable = FALSE;
    bar.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
    EXPECT_NE(bar.SendMessage(TB_ISBUTTONENABLED, 7301), 0);
    bar.ShowWindow(SW_SHOW);

    // The tooltips are made at the first hit test.
    EXPECT_FALSE(bar.m_bToolTipsReady);
    CRect r;
    bar.GetWindowRect(&r);
    bar.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(r.left + 5, r.top + 5));
    ASSERT_TRUE(bar.m_bToolTipsReady);
    EXPECT_EQ(bar.m_ToolTip.GetToolCount(), 2);
    RECT first;
    bar.GetItemRect(0, &first);
    EXPECT_EQ(bar.m_ToolTip.TextAt(&bar, CRect(first).CenterPoint()), "Print the list");
    RECT third;
    bar.GetItemRect(2, &third);
    EXPECT_EQ(bar.m_ToolTip.TextAt(&bar, CRect(third).CenterPoint()), "Export");
    vx::RemoveString(7301);
    vx::RemoveString(7302);
}

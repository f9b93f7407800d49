// CVxDialog: the display state, where dialogs stand on one or two displays,
// their stored places, and what a dialog notes of the keys and the focus.
#include "look/designtest.h"

#include "look/cvxdialog.h"
#include "look/kskindialog.h"
#include "process/kprocessio.h"
#include "ui/controls/cbutton.h"

#include "platform/windows/cframewnd.h"

#include <QTimer>

namespace {

using looktest::Settings;

vx::DialogTemplate Small()
{
    vx::DialogTemplate t("Vx", 0, 0, 120, 60);
    t.EditText(100, 7, 7, 100, 14).DefPushButton("OK", IDOK, 7, 40, 50, 14).PushButton("Cancel", IDCANCEL, 63, 40, 50, 14);
    return t;
}

class Displays : public Settings {
protected:
    // The primary screen of 1280 x 1024 and a 1600 x 1200 screen to its right.
    void TwoScreens(int enable = 1)
    {
        vx::SetScreens({{{0, 0, 1280, 1024}, {0, 0, 1280, 994}, true, ""},
                        {{1280, 0, 2880, 1200}, {1280, 0, 2880, 1200}, false, ""}});
        CVxDialog::Set2DisplayVirtual(RECT{0, 0, 2880, 1200});
        CVxDialog::Set2DisplayFirst(SIZE{1280, 1024});
        CVxDialog::Set2DisplayEnable(enable);
        CVxDialog::Set2DisplayRechteMaus(0);
        CVxDialog::Set2DisplayRect(RECT{0, 0, 0, 0});
    }
    void Main(const CRect& r)
    {
        m_frame.DestroyWindow();
        m_frame.CreateEx("main", "Main", WS_OVERLAPPEDWINDOW | WS_VISIBLE, r);
        AfxSetMainWnd(&m_frame);
    }
    CRect Where(CWnd* wnd = nullptr, BOOL centre = FALSE) { return CRect(CVxDialog::Get2DisplayWndRect(wnd, centre)); }

    CFrameWnd m_frame;
};

TEST_F(Displays, StatesAnswerTheirOldValues)
{
    CVxDialog::Set2DisplayEnable(0);
    EXPECT_EQ(CVxDialog::Set2DisplayEnable(2), 0);
    EXPECT_EQ(CVxDialog::Get2DisplayEnable(), 2);
    CVxDialog::Set2DisplayRechteMaus(0);
    EXPECT_EQ(CVxDialog::Set2DisplayRechteMaus(7), 0);
    EXPECT_EQ(CVxDialog::Get2DisplayRechteMaus(), 1); // kept as 0 or 1
    CVxDialog::Set2DisplayFirst(SIZE{1, 2});
    const SIZE old = CVxDialog::Set2DisplayFirst(SIZE{800, 600});
    EXPECT_EQ(old.cx, 1);
    EXPECT_EQ(CRect(CVxDialog::Get2DisplayFirstRect()), CRect(0, 0, 800, 600));
    CVxDialog::Set2DisplayRect(RECT{1, 2, 3, 4});
    EXPECT_EQ(CRect(CVxDialog::Set2DisplayRect(RECT{5, 6, 7, 8})), CRect(1, 2, 3, 4));
    EXPECT_EQ(CRect(CVxDialog::Get2DisplayRect()), CRect(5, 6, 7, 8));
    CVxDialog::Set2DisplayVirtual(RECT{0, 0, 10, 10});
    EXPECT_EQ(CRect(CVxDialog::Set2DisplayVirtual(RECT{-5, 0, 10, 10})), CRect(0, 0, 10, 10));
}

TEST_F(Displays, WithoutTheDisplayRectangleDialogsStandOverTheMainWindowCutAtTheScreens)
{
    TwoScreens();
    AfxSetMainWnd(nullptr);
    EXPECT_EQ(Where(), CRect(0, 0, 1280, 1024)); // no main window: the first display
    Main(CRect(100, 100, 900, 700));
    EXPECT_EQ(Where(), CRect(100, 100, 900, 700));
    Main(CRect(1000, 100, 2000, 1300)); // cut at the desktop's bottom
    EXPECT_EQ(Where(), CRect(1000, 100, 2000, 1200));
    Main(CRect(3000, 100, 3500, 400)); // wholly off to the right: 10 pixels kept
    EXPECT_EQ(Where(), CRect(2870, 100, 2880, 400));
    Main(CRect(-300, 50, 1500, 600)); // left of the desktop: cut at the first display, then held in it
    EXPECT_EQ(Where(), CRect(0, 50, 1280, 600));
    // The display rectangle counts only with the right-mouse flag on and a width.
    CVxDialog::Set2DisplayRect(RECT{1500, 0, 2500, 800});
    Main(CRect(100, 100, 900, 700));
    EXPECT_EQ(Where(), CRect(100, 100, 900, 700));
    CVxDialog::Set2DisplayRechteMaus(1);
    CVxDialog::Set2DisplayRect(RECT{1500, 0, 1500, 800});
    EXPECT_EQ(Where(), CRect(100, 100, 900, 700));
}

TEST_F(Displays, WithTheDisplayRectangleASeamKeepsTheLargerSide)
{
    TwoScreens();
    CVxDialog::Set2DisplayRechteMaus(1);
    CVxDialog::Set2DisplayRect(RECT{1000, 0, 2000, 800});
    EXPECT_EQ(Where(), CRect(1280, 0, 2000, 800));
    CVxDialog::Set2DisplayRect(RECT{200, 0, 1400, 800});
    EXPECT_EQ(Where(), CRect(200, 0, 1280, 800));
    CVxDialog::Set2DisplayRect(RECT{0, 900, 800, 1100}); // the horizontal seam at 1024
    EXPECT_EQ(Where(), CRect(0, 900, 800, 1024));
    CVxDialog::Set2DisplayRect(RECT{0, 1000, 800, 1150}); // the larger part below, where the desktop goes on
    EXPECT_EQ(Where(), CRect(0, 1024, 800, 1150));

    // A second display to the left of the first: the seam at 0.
    CVxDialog::Set2DisplayVirtual(RECT{-1600, 0, 1280, 1200});
    CVxDialog::Set2DisplayRect(RECT{-300, 0, 800, 600});
    EXPECT_EQ(Where(), CRect(0, 0, 800, 600));
    CVxDialog::Set2DisplayRect(RECT{-900, 0, 300, 600});
    EXPECT_EQ(Where(), CRect(-900, 0, 0, 600));
}

TEST_F(Displays, CentringTruncatesTowardsZero)
{
    TwoScreens();
    CVxDialog::Set2DisplayRechteMaus(1);
    CVxDialog::Set2DisplayRect(RECT{100, 100, 901, 700});
    CWnd dlg;
    dlg.CreateEx("d", "D", WS_POPUP, CRect(0, 0, 200, 100));
    EXPECT_EQ(Where(&dlg, TRUE), CRect(400, 350, 600, 450));
    CVxDialog::Set2DisplayRect(RECT{100, 100, 200, 700});
    dlg.MoveWindow(0, 0, 301, 100);
    EXPECT_EQ(Where(&dlg, TRUE).left, 100 - 100); // (100 - 301) / 2 is -100
    EXPECT_EQ(Where(&dlg, FALSE), CRect(100, 100, 200, 700));
}

TEST_F(Displays, InMainWindowIsTrueWithOneDisplayElseWhereTheWindowMeetsTheDisplay)
{
    TwoScreens(0);
    CWnd dlg;
    dlg.CreateEx("d", "D", WS_POPUP, CRect(2000, 100, 2200, 200));
    CVxDialog::Set2DisplayRect(RECT{0, 0, 1280, 1024});
    EXPECT_TRUE(CVxDialog::Get2DisplayInMainWnd(&dlg));
    CVxDialog::Set2DisplayEnable(1);
    EXPECT_FALSE(CVxDialog::Get2DisplayInMainWnd(&dlg));
    dlg.MoveWindow(1200, 100, 200, 100);
    EXPECT_TRUE(CVxDialog::Get2DisplayInMainWnd(&dlg));
}

TEST_F(Displays, StoredPlaceComesBackAndAPlaceOffTheScreensIsNotTaken)
{
    TwoScreens(0);
    Main(CRect(0, 0, 1280, 1000));
    CWnd dlg;
    dlg.CreateEx("d", "D", WS_POPUP, CRect(100, 200, 400, 500));
    EXPECT_FALSE(CVxDialog::RestoreDialogPosition(4711, &dlg)); // nothing stored
    ASSERT_TRUE(CVxDialog::StoreDialogPosition(4711, &dlg));
    EXPECT_NE(Global().find("[DialogState]\r\n4711=100#200#400#500#\r\n"), std::string::npos) << Global();
    dlg.MoveWindow(10, 10, 300, 300);
    EXPECT_TRUE(CVxDialog::RestoreDialogPosition(4711, &dlg));
    CRect r;
    dlg.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(100, 200, 400, 500));

    // A place whose centre lies off where dialogs stand: answered, not taken.
    KProfile::WriteProfileStringA("DialogState", "4711", "5000#5000#5300#5300#", 0);
    EXPECT_TRUE(CVxDialog::RestoreDialogPosition(4711, &dlg));
    dlg.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(100, 200, 400, 500));
    KProfile::WriteProfileStringA("DialogState", "4711", "1000000000#7#", 0);
    EXPECT_TRUE(CVxDialog::RestoreDialogPosition(4711, &dlg));
    dlg.GetWindowRect(&r);
    EXPECT_EQ(r.TopLeft(), CPoint(100, 200));
    // No number at all: as if nothing were stored.
    KProfile::WriteProfileStringA("DialogState", "4711", "links#oben#", 0);
    EXPECT_FALSE(CVxDialog::RestoreDialogPosition(4711, &dlg));
    EXPECT_FALSE(CVxDialog::StoreDialogPosition(4711, nullptr));
}

class Probe : public CVxDialog {
public:
    Probe() { InitModalIndirect(Small()); }
    RECT clipInside{};

protected:
    BOOL OnInitDialog() override
    {
        const BOOL r = CVxDialog::OnInitDialog();
        GetClipCursor(&clipInside);
        PostMessage(WM_APP);
        return r;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_APP) {
            EndDialog(5);
            return 0;
        }
        return CVxDialog::WindowProc(message, wParam, lParam);
    }
};

TEST_F(Displays, ModalRunLiftsTheCursorClipAndOpensWhereDialogsStand)
{
    TwoScreens(1);
    Main(CRect(1400, 100, 2400, 900));
    const RECT box{10, 10, 20, 20};
    ClipCursor(&box);
    Probe dlg;
    EXPECT_EQ(dlg.DoModal(), 5);
    EXPECT_EQ(CRect(dlg.clipInside), CRect(0, 0, 2880, 1200));
    RECT after{};
    GetClipCursor(&after);
    EXPECT_EQ(CRect(after), CRect(box));
    ClipCursor(nullptr);

    // Opened modeless, it stands centred over the main window, with the
    // library's icon.
    Probe shown;
    ASSERT_TRUE(shown.CreateIndirect(Small()));
    CRect r;
    shown.GetWindowRect(&r);
    EXPECT_EQ(r.CenterPoint().x, 1900);
    EXPECT_NE(shown.SendMessage(WM_GETICON, ICON_SMALL), 0);
}

TEST_F(Displays, AHiddenMainWindowComesForwardForThePartner)
{
    TwoScreens(0);
    Main(CRect(0, 0, 400, 300));
    m_frame.ShowWindow(SW_HIDE);
    const int active = KProcessIO::m_Active;
    KProcessIO::m_Active = 1;
    KSkinDialog dlg;
    ASSERT_TRUE(dlg.CreateIndirect(Small()));
    EXPECT_TRUE(m_frame.IsWindowVisible());
    EXPECT_NE(KSkinDialog::m_HgbBrush, nullptr);
    KProcessIO::m_Active = active;
}

TEST_F(Displays, NotesEnterOnOkAndTheLastFocusOtherThanOk)
{
    CVxDialog dlg;
    ASSERT_TRUE(dlg.CreateIndirect(Small()));
    dlg.ShowWindow(SW_SHOW);
    CWnd* edit = dlg.GetDlgItem(100);
    edit->SetFocus();
    vxtest::Key('A');
    EXPECT_EQ(dlg.m_hLastFocus, edit->m_hWnd);
    EXPECT_EQ(dlg.m_bEnter, 0);
    dlg.GotoDlgCtrl(dlg.GetDlgItem(IDOK));
    vxtest::Key(VK_RETURN);
    EXPECT_EQ(dlg.m_bEnter, 1);
    EXPECT_EQ(dlg.m_bEnterOnOk, 1);
    EXPECT_EQ(dlg.m_hLastFocus, edit->m_hWnd); // OK is never noted
    vxtest::Mouse(*dlg.GetDlgItem(IDCANCEL), WM_RBUTTONDOWN, 2, 2, MK_RBUTTON);
    EXPECT_EQ(dlg.m_bEnter, 0);
    EXPECT_EQ(dlg.m_bEnterOnOk, 0);
}

} // namespace

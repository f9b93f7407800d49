// The desk design: the statics read at start, and the dialog driven as a
// user drives it, with the keys it writes.
#include "look/designtest.h"

#include "look/kdeskdesigndlg.h"
#include "ui/controls/clistbox.h"
#include "ui/dialogs/ccolordialog.h"

#include "platform/windows/ccombobox.h"
#include "platform/windows/sysmetrics.h"

#include <QTimer>

#include <functional>

namespace {

using D = KDeskDesignDlg;

class Design : public looktest::Settings {
protected:
    // Runs the dialog with `drive` acting once its loop runs.
    INT_PTR Run(std::function<void(D&)> drive)
    {
        D dlg;
        QTimer::singleShot(0, [&dlg, drive] {
            if (dlg.m_hWnd)
                drive(dlg);
        });
        return dlg.DoModal();
    }

    static CComboBox* Combo(D& d, int id) { return static_cast<CComboBox*>(d.GetDlgItem(id)); }
    static bool Checked(D& d, int id) { return d.IsDlgButtonChecked(id) == BST_CHECKED; }
    static bool Enabled(D& d, int id) { return d.GetDlgItem(id)->IsWindowEnabled(); }
    static void Click(D& d, int id) { vxtest::Click(*d.GetDlgItem(id), 3, 3); }
    // Opens the combo and clicks the item, as the mouse does.
    static void Choose(D& d, int id, int item)
    {
        vxtest::Click(*Combo(d, id), 5, 5);
        auto* list = dynamic_cast<CListBox*>(CWnd::GetCapture());
        ASSERT_NE(list, nullptr);
        CRect r;
        list->GetItemRect(item, &r);
        vxtest::Click(*list, r.CenterPoint().x, r.CenterPoint().y);
    }
};

TEST_F(Design, OkOnAFreshFileWritesTheDefaultsInTheirOrder)
{
    const INT_PTR result = Run([](D& d) {
        EXPECT_FALSE(Checked(d, D::IDC_DESIGN_STANDARD));
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_MENU));
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_TOOLBAR));
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_BUTTON));
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_COLOR)->GetCount(), 4);
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_STYLE)->GetCount(), 5);
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_SHADE)->GetCount(), 4);
        // Mode 4 is the second entry of the rounded half of the shades.
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_SHADE)->GetCurSel(), 1);
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_ROUND));
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_3D));
        ASSERT_NE(d.GetDlgItem(D::IDC_DESIGN_ACTIVE), nullptr);
        EXPECT_TRUE(Enabled(d, D::IDC_DESIGN_ACTIVE));
        EXPECT_FALSE(Enabled(d, D::IDC_DESIGN_INACTIVE));
        EXPECT_STREQ(d.GetDlgItemText(D::IDC_DESIGN_INACTIVE), "Test - Nieaktywny");
        vxtest::Key(VK_RETURN, vxtest::kNone, d.GetDlgItem(D::IDC_DESIGN_STANDARD));
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(Suite(), "[KonfigDesign]\r\nStandard=0\r\nToolbar=1\r\nMenu=1\r\nButton=1\r\nColor=0\r\nStyle=0\r\n"
                       "Mode=4\r\nMode3D=1\r\n");
}

TEST_F(Design, ClicksAndChoicesReachTheFileAndTheNextStart)
{
    WriteSuite("[KonfigDesign]\r\nStandard=0\r\nMenu=1\r\nToolbar=1\r\nButton=1\r\nColor=2\r\nStyle=1\r\nMode=5\r\n"
               "Mode3D=1\r\n");
    const INT_PTR result = Run([](D& d) {
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_COLOR)->GetCurSel(), 2);
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_STYLE)->GetCurSel(), 1);
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_SHADE)->GetCurSel(), 2); // mode 5: "Pionowy", rounded
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_ROUND));
        // Without own menus there are no own tool bars.
        Click(d, D::IDC_DESIGN_MENU);
        EXPECT_FALSE(Checked(d, D::IDC_DESIGN_TOOLBAR));
        EXPECT_FALSE(Enabled(d, D::IDC_DESIGN_TOOLBAR));
        EXPECT_FALSE(Enabled(d, D::IDC_DESIGN_COLOR));
        Click(d, D::IDC_DESIGN_MENU);
        EXPECT_TRUE(Enabled(d, D::IDC_DESIGN_TOOLBAR));
        Click(d, D::IDC_DESIGN_TOOLBAR);
        Choose(d, D::IDC_DESIGN_COLOR, 3);
        d.GotoDlgCtrl(d.GetDlgItem(D::IDC_DESIGN_SHADE));
        vxtest::Key(VK_HOME);
        Click(d, D::IDC_DESIGN_ROUND);
        Click(d, D::IDC_DESIGN_3D);
        Click(d, IDOK);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(Suite(), "[KonfigDesign]\r\nStandard=0\r\nMenu=1\r\nToolbar=1\r\nButton=1\r\nColor=3\r\nStyle=1\r\n"
                       "Mode=0\r\nMode3D=0\r\n");

    KDeskDesignDlg::InitParameter();
    EXPECT_EQ(CNewMenu::m_Enable, 1);
    EXPECT_EQ(CNewToolBar::m_NewToolbar, 1);
    EXPECT_EQ(CButtonST::m_InitType, 1);
    EXPECT_EQ(CNewMenu::m_InitColor, 0xE6E6E6u);
    EXPECT_EQ(CButtonST::m_InitShade, 1u);
    EXPECT_EQ(KSkinButton::s_ShadeMode, 0);
    EXPECT_EQ(KSkinButton::s_3D, 0);
}

TEST_F(Design, CancelWritesNothing)
{
    WriteSuite("[KonfigDesign]\r\nMenu=0\r\n");
    const std::string before = Suite();
    const INT_PTR result = Run([](D& d) {
        Click(d, D::IDC_DESIGN_STANDARD);
        Click(d, D::IDC_DESIGN_3D);
        vxtest::Key(VK_ESCAPE, vxtest::kNone, d.GetDlgItem(D::IDC_DESIGN_3D));
    });
    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(Suite(), before);
}

TEST_F(Design, StandardTurnsEverythingOffAndLeavesTheRestInTheFile)
{
    WriteSuite("[KonfigDesign]\r\nStandard=1\r\nMenu=1\r\nToolbar=1\r\nButton=1\r\nColor=1\r\nStyle=7\r\n");
    CNewMenu::m_InitColor = 0;
    KDeskDesignDlg::InitParameter();
    EXPECT_EQ(CNewMenu::m_Enable, 0);
    EXPECT_EQ(CNewToolBar::m_NewToolbar, 0);
    EXPECT_EQ(CButtonST::m_InitType, 0);
    EXPECT_EQ(CNewMenu::m_InitColor, 0u); // not read
    EXPECT_EQ(CButtonST::m_InitShade, 0u);
    Run([](D& d) {
        // The dialog still shows the switches, disabled.
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_STANDARD));
        EXPECT_TRUE(Checked(d, D::IDC_DESIGN_MENU));
        for (int id : {D::IDC_DESIGN_MENU, D::IDC_DESIGN_TOOLBAR, D::IDC_DESIGN_COLOR, D::IDC_DESIGN_BUTTON,
                       D::IDC_DESIGN_STYLE, D::IDC_DESIGN_SHADE, D::IDC_DESIGN_ROUND, D::IDC_DESIGN_3D,
                       D::IDC_DESIGN_ACTIVE})
            EXPECT_FALSE(Enabled(d, id)) << id;
        // A "Style" above 3 is the user's colour, shown as entry 4.
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_STYLE)->GetCurSel(), 4);
        EXPECT_EQ(d.m_UserColor, 7u);
        Click(d, D::IDC_DESIGN_STANDARD);
        EXPECT_TRUE(Enabled(d, D::IDC_DESIGN_COLOR));
        d.EndDialog(IDCANCEL);
    });
}

TEST_F(Design, TheUsersColourComesFromTheColourDialogWithTheStoredCustomColours)
{
    WriteSuite("[KonfigDesign]\r\nUser3=1193046\r\nMode=99\r\n");
    COLORREF seenCustom = 0;
    const INT_PTR result = Run([&seenCustom](D& d) {
        // A mode the table lacks: the first type, not rounded.
        EXPECT_EQ(Combo(d, D::IDC_DESIGN_SHADE)->GetCurSel(), 0);
        EXPECT_FALSE(Checked(d, D::IDC_DESIGN_ROUND));
        QTimer::singleShot(0, [&seenCustom] {
            auto* colours = dynamic_cast<CColorDialog*>(CWnd::GetActiveWindow());
            ASSERT_NE(colours, nullptr);
            seenCustom = colours->m_cc.lpCustColors[3];
            vxtest::Click(*colours->GetDlgItem(CColorDialog::IDC_BASIC_FIRST + 8), 2, 2); // red
            vxtest::Click(*colours->GetDlgItem(CColorDialog::IDC_ADD_CUSTOM), 2, 2); // into custom slot 0
            vxtest::Click(*colours->GetDlgItem(IDOK), 2, 2);
        });
        Choose(d, D::IDC_DESIGN_STYLE, 4);
        EXPECT_EQ(d.m_UserColor, RGB(255, 0, 0));
        Click(d, IDOK);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(seenCustom, 1193046u);
    EXPECT_EQ(KProfile::GetProfileIntA("KonfigDesign", "User0", 0, -1), static_cast<unsigned>(RGB(255, 0, 0)));
    EXPECT_EQ(KProfile::GetProfileIntA("KonfigDesign", "User3", 0, -1), 1193046u);
    // White slots are not written: white means absent.
    EXPECT_EQ(KProfile::GetProfileIntA("KonfigDesign", "User1", 42, -1), 42u);
    EXPECT_EQ(KProfile::GetProfileIntA("KonfigDesign", "Style", 0, -1), static_cast<unsigned>(RGB(255, 0, 0)));
}

TEST_F(Design, MenuBackgroundsAndTheSwatches)
{
    EXPECT_EQ(KDeskDesignDlg::GetMenuBackground(1), 0xF5C2A3u);
    EXPECT_EQ(KDeskDesignDlg::GetMenuBackground(2), 0xC0C0C0u);
    EXPECT_EQ(KDeskDesignDlg::GetMenuBackground(3), 0xE6E6E6u);
    EXPECT_EQ(KDeskDesignDlg::GetMenuBackground(4), 0u);
    // The window colour darkened by 10, blended 7 to 3 with the caption's.
    EXPECT_EQ(KDeskDesignDlg::GetMenuBackground(0), RGB(175, 183, 204));
    WriteSuite("[KonfigDesign]\r\nColor=1\r\nStyle=3\r\n");
    Run([](D& d) {
        const QImage img = vxtest::Render(d);
        auto centre = [&d](int id) {
            CRect r;
            d.GetDlgItem(id)->GetWindowRect(&r);
            d.ScreenToClient(&r);
            return r.CenterPoint();
        };
        const CPoint menu = centre(D::IDC_DESIGN_MENU_SWATCH);
        const CPoint style = centre(D::IDC_DESIGN_STYLE_SWATCH);
        EXPECT_PIXEL(img, menu.x, menu.y, 0xF5C2A3);
        EXPECT_PIXEL(img, style.x, style.y, 0xCCB7AF);
        // A frame around each, in the window frame's colour.
        CRect r;
        d.GetDlgItem(D::IDC_DESIGN_STYLE_SWATCH)->GetWindowRect(&r);
        d.ScreenToClient(&r);
        EXPECT_PIXEL(img, r.left, r.top, GetSysColor(COLOR_WINDOWFRAME));
        Choose(d, D::IDC_DESIGN_STYLE, 0);
        const QImage after = vxtest::Render(d);
        EXPECT_PIXEL(after, style.x, style.y, GetSysColor(COLOR_BTNFACE));
        d.EndDialog(IDCANCEL);
    });
}

} // namespace

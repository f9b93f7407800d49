// The dialog's keyboard, driven with simulated keys as a user drives it:
// Tab order, groups and radio buttons, Enter and the default button, Esc,
// mnemonics.
#include "uisupport/uitest.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/cedit.h"
#include "ui/controls/cstatic.h"
#include "ui/dialogs/cdialog.h"

#include "platform/windows/ccombobox.h"

namespace {

using vxtest::Key;
using vxtest::kAlt;
using vxtest::kShift;

enum : UINT {
    kName = 101,
    kKind = 102,
    kOne = 201,
    kTwo = 202,
    kThree = 203,
    kCheck = 301,
    kApply = 10,
    kOff = 11,
    kNotes = 501,
};

vx::DialogTemplate Form()
{
    vx::DialogTemplate t("Form", 0, 0, 240, 160);
    t.LText("&Name:", IDC_STATIC, 7, 9, 40, 8)
        .EditText(kName, 50, 7, 100, 14, ES_AUTOHSCROLL)
        .LText("&Kind:", IDC_STATIC, 7, 27, 40, 8)
        .ComboBox(kKind, 50, 25, 100, 60, CBS_DROPDOWNLIST)
        .GroupBox("Mode", IDC_STATIC, 7, 44, 100, 50)
        .RadioButton("&One", kOne, 12, 54, 60, 10, WS_GROUP | WS_TABSTOP)
        .RadioButton("&Two", kTwo, 12, 66, 60, 10)
        .RadioButton("T&hree", kThree, 12, 78, 60, 10)
        .CheckBox("&Check", kCheck, 120, 54, 60, 10, WS_GROUP)
        .EditText(kNotes, 120, 68, 100, 30, ES_MULTILINE | ES_WANTRETURN)
        .PushButton("&Apply", kApply, 7, 140, 50, 14)
        .DefPushButton("OK", IDOK, 70, 140, 50, 14)
        .PushButton("Cancel", IDCANCEL, 125, 140, 50, 14)
        .PushButton("Off", kOff, 180, 140, 50, 14, WS_DISABLED);
    return t;
}

class FormDialog : public CDialog {
public:
    std::vector<UINT> clicked;

    BOOL Make()
    {
        if (!CreateIndirect(Form()))
            return FALSE;
        CComboBox* kind = static_cast<CComboBox*>(GetDlgItem(kKind));
        kind->AddString("Relay");
        kind->AddString("Fuse");
        ShowWindow(SW_SHOW);
        return TRUE;
    }
    CWnd* Item(UINT id) const { return GetDlgItem(static_cast<int>(id)); }

protected:
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override
    {
        if (HIWORD(wParam) == BN_CLICKED)
            clicked.push_back(LOWORD(wParam));
        return CDialog::OnCommand(wParam, lParam);
    }
    void OnOK() override {}
    void OnCancel() override {}
};

UINT FocusId()
{
    CWnd* f = CWnd::GetFocus();
    return f ? f->GetDlgCtrlID() : 0;
}

TEST(IsDialogMessage, TabVisitsTheTabStopsInOrderAndShiftTabGoesBack)
{
    FormDialog dlg;
    ASSERT_TRUE(dlg.Make());
    EXPECT_EQ(FocusId(), kName);
    std::vector<UINT> order;
    for (int i = 0; i < 8; ++i) {
        Key(VK_TAB);
        order.push_back(FocusId());
    }
    // Disabled controls and those without WS_TABSTOP are passed over; the
    // order wraps round.
    EXPECT_EQ(order, (std::vector<UINT>{kKind, kOne, kCheck, kNotes, kApply, IDOK, IDCANCEL, kName}));
    Key(VK_TAB, kShift);
    EXPECT_EQ(FocusId(), IDCANCEL);
    Key(VK_TAB, kShift);
    EXPECT_EQ(FocusId(), IDOK);
    // Tabbing into an edit selects its text.
    dlg.SetDlgItemText(kName, "Relay K1");
    dlg.GotoDlgCtrl(dlg.Item(kCheck));
    Key(VK_TAB, kShift);
    Key(VK_TAB, kShift);
    Key(VK_TAB, kShift);
    EXPECT_EQ(FocusId(), kName);
    EXPECT_EQ(static_cast<CEdit*>(dlg.Item(kName))->GetSel(), MAKELONG(0, 8));
}

TEST(IsDialogMessage, ArrowsMoveWithinTheGroupAndChooseRadioButtons)
{
    FormDialog dlg;
    ASSERT_TRUE(dlg.Make());
    dlg.GotoDlgCtrl(dlg.Item(kOne));
    Key(VK_DOWN);
    EXPECT_EQ(FocusId(), kTwo);
    EXPECT_EQ(dlg.GetCheckedRadioButton(kOne, kThree), static_cast<int>(kTwo));
    Key(VK_RIGHT);
    Key(VK_DOWN); // wraps within the group
    EXPECT_EQ(FocusId(), kOne);
    EXPECT_EQ(dlg.GetCheckedRadioButton(kOne, kThree), static_cast<int>(kOne));
    Key(VK_UP);
    EXPECT_EQ(FocusId(), kThree);
    EXPECT_EQ(dlg.IsDlgButtonChecked(kOne), BST_UNCHECKED);
    // An edit keeps its arrows.
    dlg.GotoDlgCtrl(dlg.Item(kName));
    Key(VK_DOWN);
    EXPECT_EQ(FocusId(), kName);
}

TEST(IsDialogMessage, EnterGoesToTheFocusedPushButtonElseTheDefaultAndEscToCancel)
{
    FormDialog dlg;
    ASSERT_TRUE(dlg.Make());
    Key(VK_RETURN); // from the edit: the default button
    dlg.GotoDlgCtrl(dlg.Item(kApply));
    Key(VK_RETURN);
    Key(VK_ESCAPE);
    EXPECT_EQ(dlg.clicked, (std::vector<UINT>{IDOK, kApply, IDCANCEL}));
    // While a push button has the focus it looks like the default one.
    EXPECT_TRUE(dlg.Item(kApply)->SendMessage(WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON);
    EXPECT_TRUE(dlg.Item(IDOK)->SendMessage(WM_GETDLGCODE) & DLGC_UNDEFPUSHBUTTON);
    dlg.GotoDlgCtrl(dlg.Item(kName));
    EXPECT_TRUE(dlg.Item(IDOK)->SendMessage(WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON);
    EXPECT_TRUE(dlg.Item(kApply)->SendMessage(WM_GETDLGCODE) & DLGC_UNDEFPUSHBUTTON);

    dlg.clicked.clear();
    dlg.SetDefID(kApply);
    EXPECT_EQ(LOWORD(dlg.GetDefID()), kApply);
    EXPECT_TRUE(dlg.Item(kApply)->SendMessage(WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON);
    Key(VK_RETURN);
    dlg.SetDefID(kOff); // a disabled default button takes no Enter
    Key(VK_RETURN);
    EXPECT_EQ(dlg.clicked, std::vector<UINT>{kApply});
    // A multi-line edit with ES_WANTRETURN keeps Enter for itself.
    dlg.clicked.clear();
    dlg.GotoDlgCtrl(dlg.Item(kNotes));
    vxtest::Type("a");
    Key(VK_RETURN);
    vxtest::Type("\rb");
    EXPECT_TRUE(dlg.clicked.empty());
    EXPECT_STREQ(dlg.GetDlgItemText(kNotes), "a\r\nb");
}

TEST(IsDialogMessage, AnOpenComboListTakesEnterAndEscape)
{
    FormDialog dlg;
    ASSERT_TRUE(dlg.Make());
    dlg.GotoDlgCtrl(dlg.Item(kKind));
    auto* kind = static_cast<CComboBox*>(dlg.Item(kKind));
    Key(VK_F4);
    ASSERT_TRUE(kind->GetDroppedState());
    Key(VK_DOWN);
    Key(VK_RETURN);
    EXPECT_FALSE(kind->GetDroppedState());
    EXPECT_EQ(kind->GetCurSel(), 0);
    Key(VK_F4);
    Key(VK_ESCAPE);
    EXPECT_FALSE(kind->GetDroppedState());
    EXPECT_TRUE(dlg.clicked.empty());
    Key(VK_ESCAPE); // closed now: the dialog's
    EXPECT_EQ(dlg.clicked, std::vector<UINT>{IDCANCEL});
}

TEST(IsDialogMessage, MnemonicsFocusLabelledControlsAndClickButtons)
{
    FormDialog dlg;
    ASSERT_TRUE(dlg.Make());
    dlg.GotoDlgCtrl(dlg.Item(IDOK));
    Key('N', kAlt); // the label hands over to its control
    EXPECT_EQ(FocusId(), kName);
    Key('K', kAlt);
    EXPECT_EQ(FocusId(), kKind);
    Key('H', kAlt);
    EXPECT_EQ(FocusId(), kThree);
    EXPECT_EQ(dlg.GetCheckedRadioButton(kOne, kThree), static_cast<int>(kThree));
    Key('C', kAlt);
    EXPECT_EQ(dlg.IsDlgButtonChecked(kCheck), BST_CHECKED);
    Key('A', kAlt);
    EXPECT_EQ(dlg.clicked.back(), kApply);
    // Where the focus takes no characters a plain letter is a mnemonic too.
    dlg.GotoDlgCtrl(dlg.Item(IDCANCEL));
    vxtest::Type("t");
    EXPECT_EQ(FocusId(), kTwo);
    // An edit takes its letters.
    dlg.GotoDlgCtrl(dlg.Item(kName));
    dlg.SetDlgItemText(kName, "");
    vxtest::Type("t");
    EXPECT_EQ(FocusId(), kName);
    EXPECT_STREQ(dlg.GetDlgItemText(kName), "t");
    Key('Q', kAlt); // no such mnemonic
    EXPECT_EQ(FocusId(), kName);
}

TEST(IsDialogMessage, IgnoresMessagesOfOtherWindows)
{
    FormDialog dlg;
    ASSERT_TRUE(dlg.Make());
    CWnd outside;
    outside.CreateEx("outside", "Outside", WS_POPUP, CRect(0, 0, 10, 10));
    MSG msg{outside.m_hWnd, WM_KEYDOWN, VK_TAB, 0, 0, {0, 0}};
    EXPECT_FALSE(dlg.IsDialogMessage(&msg));
    msg.hwnd = dlg.Item(kName)->m_hWnd;
    EXPECT_TRUE(dlg.IsDialogMessage(&msg));
    EXPECT_FALSE(dlg.IsDialogMessage(nullptr));
    dlg.NextDlgCtrl();
    EXPECT_EQ(FocusId(), kOne);
    dlg.PrevDlgCtrl();
    EXPECT_EQ(FocusId(), kKind);
}

} // namespace

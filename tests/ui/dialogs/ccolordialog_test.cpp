// The colour dialog, driven by clicks and typing while it runs modally.
#include "uisupport/uitest.h"

#include "ui/controls/cedit.h"
#include "ui/dialogs/ccolordialog.h"

#include <QTimer>

#include <functional>

namespace {

// Runs `drive` on the dialog once its modal loop runs.
INT_PTR RunWith(CColorDialog& dlg, std::function<void(CColorDialog&)> drive)
{
    QTimer::singleShot(0, [&dlg, drive] {
        ASSERT_NE(dlg.m_hWnd, nullptr);
        drive(dlg);
    });
    return dlg.DoModal();
}

void Click(CColorDialog& dlg, int id)
{
    vxtest::Click(*dlg.GetDlgItem(id), 3, 3);
}

TEST(CColorDialog, ChoosesBasicAndTypedColoursAndKeepsCustomOnesOnOk)
{
    COLORREF custom[16];
    for (COLORREF& c : custom)
        c = RGB(255, 255, 255);
    custom[1] = RGB(1, 2, 3);
    CColorDialog dlg(RGB(10, 20, 30));
    dlg.m_cc.lpCustColors = custom;
    const INT_PTR result = RunWith(dlg, [](CColorDialog& d) {
        // The initial colour in its parts.
        EXPECT_EQ(d.GetDlgItemInt(CColorDialog::IDC_RED), 10u);
        EXPECT_EQ(d.GetDlgItemInt(CColorDialog::IDC_BLUE), 30u);
        Click(d, CColorDialog::IDC_BASIC_FIRST + 8); // pure red
        EXPECT_EQ(d.GetDlgItemInt(CColorDialog::IDC_RED), 255u);
        EXPECT_EQ(d.GetDlgItemInt(CColorDialog::IDC_GREEN), 0u);
        d.GetDlgItem(CColorDialog::IDC_GREEN)->SetFocus();
        d.GetDlgItem(CColorDialog::IDC_GREEN)->SendMessage(EM_SETSEL, 0, -1);
        vxtest::Type("128");
        Click(d, CColorDialog::IDC_ADD_CUSTOM); // into the next slot: the first
        Click(d, CColorDialog::IDC_CUSTOM_FIRST + 1); // takes 1, 2, 3 and chooses slot 1
        EXPECT_EQ(d.GetDlgItemInt(CColorDialog::IDC_BLUE), 3u);
        d.GetDlgItem(CColorDialog::IDC_BLUE)->SetFocus();
        d.GetDlgItem(CColorDialog::IDC_BLUE)->SendMessage(EM_SETSEL, 0, -1);
        vxtest::Type("99");
        Click(d, CColorDialog::IDC_ADD_CUSTOM);
        Click(d, IDOK);
    });
    EXPECT_EQ(result, IDOK);
    EXPECT_EQ(dlg.GetColor(), RGB(1, 2, 99));
    EXPECT_EQ(custom[0], RGB(255, 128, 0));
    EXPECT_EQ(custom[1], RGB(1, 2, 99));
    EXPECT_EQ(custom[2], RGB(255, 255, 255));
}

TEST(CColorDialog, CancelChangesNothingAndTheSavedColoursStartWhite)
{
    COLORREF* saved = CColorDialog::GetSavedCustomColors();
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(saved[i], RGB(255, 255, 255));
    CColorDialog dlg(RGB(0, 0, 255));
    EXPECT_EQ(dlg.m_cc.lpCustColors, saved);
    const INT_PTR result = RunWith(dlg, [](CColorDialog& d) {
        Click(d, CColorDialog::IDC_BASIC_FIRST);
        Click(d, CColorDialog::IDC_ADD_CUSTOM);
        vxtest::Key(VK_ESCAPE, vxtest::kNone, d.GetDlgItem(IDOK));
    });
    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(dlg.GetColor(), RGB(0, 0, 255));
    EXPECT_EQ(saved[0], RGB(255, 255, 255));
}

TEST(CColorDialog, PaintsTheCurrentColourAndTheSwatches)
{
    CColorDialog dlg(RGB(0, 200, 100));
    RunWith(dlg, [](CColorDialog& d) {
        const QImage img = vxtest::Render(d);
        CRect current;
        d.GetDlgItem(CColorDialog::IDC_CURRENT)->GetWindowRect(&current);
        d.ScreenToClient(&current);
        EXPECT_PIXEL(img, current.CenterPoint().x, current.CenterPoint().y, RGB(0, 200, 100));
        CRect red;
        d.GetDlgItem(CColorDialog::IDC_BASIC_FIRST + 8)->GetWindowRect(&red);
        d.ScreenToClient(&red);
        EXPECT_PIXEL(img, red.CenterPoint().x, red.CenterPoint().y, RGB(255, 0, 0));
        d.EndDialog(IDCANCEL);
    });
}

} // namespace

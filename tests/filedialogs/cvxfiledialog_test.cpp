// The skinned file dialogs driven as a user drives them: the skin buttons
// in place of the hidden system ones and following a resized frame, the
// drive answer, Cancel, and the options read back.
#include "look/designtest.h"

#include "base/vxglobals.h"
#include "filedialogs/cvxfiledialog.h"
#include "filedialogs/kdateioptiondlg.h"
#include "filedialogs/kdateivorschaudlg.h"

#include "platform/files/hostpath.h"
#include "ui/windows/uiapp.h"
#include "support/printers.h"
#include "support/tempdir.h"

#include <cstdio>
#include <cstring>
#include <deque>
#include <functional>
#include <string>

namespace {

using looktest::Settings;

constexpr UINT kStep = WM_APP + 11;

// A dialog class with a queue of steps, run one per posted message once the
// dialog stands.
template <class Base>
class Driven : public Base {
public:
    using Base::Base;
    std::deque<std::function<void(Driven&)>> steps;
    CWnd* Frame() { return this->GetParent(); }
    CWnd* FrameItem(int id) { return this->GetParent()->GetDlgItem(id); }
    void Next() { this->PostMessage(kStep); }
    using Base::m_ofn;

protected:
    void OnInitDone() override
    {
        Base::OnInitDone();
        Next();
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == kStep && !steps.empty()) {
            auto step = std::move(steps.front());
            steps.pop_front();
            step(*this);
            return 0;
        }
        return Base::WindowProc(message, wParam, lParam);
    }
};

// Lets the 20 ms timer run.
void Follow()
{
    vx::ProcessUiEvents(80);
}

CRect ScreenRect(CWnd* w)
{
    CRect r;
    w->GetWindowRect(&r);
    return r;
}

class FileDialogs : public Settings {};

} // namespace

TEST_F(FileDialogs, SkinButtonsStandInPlaceOfTheHiddenOnesAndFollowTheFrame)
{
    Driven<CVxFileDialog> dlg(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, "Alle (*.*)|*.*||");
    CRect ok, cancel, skinOk, skinCancel, movedOk, movedCancel;
    bool systemHidden = false;
    CString okText;
    dlg.steps.push_back([&](auto& d) {
        Follow();
        systemHidden = !d.FrameItem(IDOK)->IsWindowVisible() && !d.FrameItem(IDCANCEL)->IsWindowVisible();
        ok = ScreenRect(d.FrameItem(IDOK));
        cancel = ScreenRect(d.FrameItem(IDCANCEL));
        skinOk = ScreenRect(d.GetDlgItem(vx::kSkinOkId));
        skinCancel = ScreenRect(d.GetDlgItem(vx::kSkinCancelId));
        okText = d.GetDlgItem(vx::kSkinOkId)->GetWindowTextString();
        // The user makes the frame larger; within 20 ms the buttons follow.
        CRect frame = ScreenRect(d.Frame());
        d.Frame()->MoveWindow(frame.left, frame.top, frame.Width() + 80, frame.Height() + 50);
        Follow();
        movedOk = ScreenRect(d.GetDlgItem(vx::kSkinOkId));
        movedCancel = ScreenRect(d.GetDlgItem(vx::kSkinCancelId));
        vxtest::Click(*d.GetDlgItem(vx::kSkinCancelId), 4, 4);
    });
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_TRUE(systemHidden);
    // Each covers its system button, 7 pixels wider to the left.
    EXPECT_EQ(skinOk, CRect(ok.left - 7, ok.top, ok.right, ok.bottom));
    EXPECT_EQ(skinCancel, CRect(cancel.left - 7, cancel.top, cancel.right, cancel.bottom));
    EXPECT_EQ(okText, CString("&Open"));
    EXPECT_EQ(movedOk, CRect(skinOk.left + 80, skinOk.top + 50, skinOk.right + 80, skinOk.bottom + 50));
    EXPECT_EQ(movedCancel.TopLeft(), CPoint(skinCancel.left + 80, skinCancel.top + 50));
}

TEST_F(FileDialogs, AFrameThatDoesNotMoveLeavesTheButtonsAlone)
{
    Driven<CVxFileDialog> dlg(TRUE);
    CRect before, after;
    dlg.steps.push_back([&](auto& d) {
        Follow();
        // Moved by hand: the timer keeps away while the frame stands still.
        d.GetDlgItem(vx::kSkinOkId)->MoveWindow(1, 2, 30, 20);
        before = ScreenRect(d.GetDlgItem(vx::kSkinOkId));
        Follow();
        after = ScreenRect(d.GetDlgItem(vx::kSkinOkId));
        vxtest::Click(*d.GetDlgItem(vx::kSkinCancelId), 4, 4);
    });
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(before, after);
}

// A cursor clip of the program (a drawing being dragged) is lifted while a
// file dialog runs and is the program's again once the dialog is gone (the
// preview dialog's preview holds it free for as long as it lives).
template <class Dialog>
void ExpectTheCursorFreeWhileItRuns()
{
    const RECT box{10, 10, 60, 60};
    ASSERT_TRUE(ClipCursor(&box));
    bool clippedMeanwhile = true;
    {
        Driven<Dialog> dlg(TRUE);
        dlg.steps.push_back([&](auto& d) {
            RECT now{};
            clippedMeanwhile = GetClipCursor(&now) && CRect(now) == CRect(box);
            vxtest::Click(*d.GetDlgItem(vx::kSkinCancelId), 4, 4);
        });
        EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    }
    EXPECT_FALSE(clippedMeanwhile);
    RECT after{};
    EXPECT_TRUE(GetClipCursor(&after) && CRect(after) == CRect(box));
    ClipCursor(nullptr);
}

TEST_F(FileDialogs, TheCursorIsFreeWhileADialogRunsAndItsClipComesBack)
{
    ExpectTheCursorFreeWhileItRuns<CVxFileDialog>();
    ExpectTheCursorFreeWhileItRuns<KDateiVorschauDlg>();
}

TEST_F(FileDialogs, ADriveAloneEndsTheDialogAsCancelWithTheDrive)
{
    Driven<CVxFileDialog> dlg(TRUE);
    dlg.m_nMode = 1;
    dlg.steps.push_back([&](auto& d) {
        d.FrameItem(edt1)->SetWindowText("C:\\");
        vxtest::Click(*d.GetDlgItem(vx::kSkinOkId), 4, 4);
    });
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_STREQ(dlg.m_ofn.lpstrFile, "C:");
    EXPECT_EQ(dlg.m_nMode, 2);

    // In mode 0 the same text is a name like any other: OK goes to the frame.
    vxtest::TempDir dir;
    dir.Write("plan.eld", "x");
    const std::string folder = dir.Path();
    Driven<CVxFileDialog> named(TRUE);
    named.m_ofn.lpstrInitialDir = folder.c_str();
    named.steps.push_back([&](auto& d) {
        d.FrameItem(edt1)->SetWindowText("plan.eld");
        vxtest::Click(*d.GetDlgItem(vx::kSkinOkId), 4, 4);
    });
    EXPECT_EQ(named.DoModal(), IDOK);
    EXPECT_EQ(std::string(named.GetPathName().GetString()), folder + "/plan.eld");
}

// A user who keeps to the keyboard: the system's OK and Cancel are hidden,
// yet Enter in the name field opens the file and Esc cancels.
TEST_F(FileDialogs, EnterAndEscWorkWithTheSystemButtonsHidden)
{
    vxtest::TempDir dir;
    dir.Write("plan.eld", "x");
    const std::string folder = dir.Path();
    Driven<CVxFileDialog> typed(TRUE);
    typed.m_ofn.lpstrInitialDir = folder.c_str();
    typed.steps.push_back([&](auto& d) {
        CWnd* field = d.FrameItem(edt1);
        field->SetFocus();
        vxtest::Type("plan.eld");
        vxtest::Key(VK_RETURN, vxtest::kNone, field);
    });
    EXPECT_EQ(typed.DoModal(), IDOK);
    EXPECT_EQ(std::string(typed.GetPathName().GetString()), folder + "/plan.eld");

    Driven<KDateiVorschauDlg> escaped(TRUE);
    escaped.m_bVorschau = 0;
    escaped.m_ofn.lpstrInitialDir = folder.c_str();
    escaped.steps.push_back([&](auto& d) {
        CWnd* field = d.FrameItem(edt1);
        field->SetFocus();
        vxtest::Key(VK_ESCAPE, vxtest::kNone, field);
    });
    EXPECT_EQ(escaped.DoModal(), IDCANCEL);
}

// Offered, the read-only check starts as the caller's flag says and the
// user's choice comes back in the flags.
TEST_F(FileDialogs, ThePreviewDialogsReadOnlyCheckIsReadBack)
{
    vxtest::TempDir dir;
    dir.Write("Plan.0001", "x");
    const std::string folder = dir.Path();
    for (const bool given : {false, true}) {
        SCOPED_TRACE(given);
        Driven<KDateiVorschauDlg> dlg(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | (given ? OFN_READONLY : 0));
        dlg.m_bVorschau = 0;
        dlg.m_bReadOnly = 1;
        dlg.m_ofn.lpstrInitialDir = folder.c_str();
        bool shown = false;
        UINT checked = 2;
        dlg.steps.push_back([&](auto& d) {
            CWnd* check = d.GetDlgItem(vx::kReadOnlyCheckId);
            shown = check->IsWindowVisible();
            checked = d.IsDlgButtonChecked(vx::kReadOnlyCheckId);
            vxtest::Click(*check, 4, 4); // the user turns it over
            d.FrameItem(edt1)->SetWindowText("Plan.0001");
            vxtest::Click(*d.GetDlgItem(vx::kSkinOkId), 4, 4);
        });
        ASSERT_EQ(dlg.DoModal(), IDOK);
        EXPECT_TRUE(shown);
        EXPECT_EQ(checked, given ? 1u : 0u);
        EXPECT_EQ((dlg.m_ofn.Flags & OFN_READONLY) != 0, !given);
    }
}

// The program that opens a type: asked with an empty file of the type made
// beside the suite's settings, which is gone afterwards.
TEST(GetFileExtShell, NamesTheDesktopsProgramOfTheTypeAndLeavesNoFile)
{
    const vxtest::TempDir& home = vxtest::DataHome();
    home.MakeDir("applications");
    home.Write("applications/vxtest-viewer.desktop",
               "[Desktop Entry]\nType=Application\nName=Drawing viewer\nExec=true %f\nMimeType=image/vnd.dxf;\n");
    home.Write("applications/mimeapps.list", "[Default Applications]\nimage/vnd.dxf=vxtest-viewer.desktop\n");
    vxtest::TempDir settings;
    char kept[sizeof g_vexalprofiledir];
    std::memcpy(kept, g_vexalprofiledir, sizeof kept);
    std::snprintf(g_vexalprofiledir, sizeof g_vexalprofiledir, "%s/vexal.ini", settings.Path().c_str());
    const CString viewer = CVxFileDialog::GetFileExtShell("dxf");
    const CString nobody = CVxFileDialog::GetFileExtShell("qqqzz");
    std::memcpy(g_vexalprofiledir, kept, sizeof kept);
    EXPECT_TRUE(viewer.Right(5) == "/true") << viewer.GetString();
    EXPECT_EQ(nobody, CString());
    EXPECT_FALSE(settings.Exists("@@@temp.dxf"));
    EXPECT_FALSE(settings.Exists("@@@temp.qqqzz"));
}

TEST_F(FileDialogs, OptionsAreOfferedByCaptionAndReadBack)
{
    Driven<KDateiOptionDlg> dlg(FALSE, "xml", nullptr, OFN_HIDEREADONLY, "XML (*.xml)|*.xml||");
    vxtest::TempDir dir;
    const std::string folder = dir.Path();
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    dlg.m_strOption1 = "With parts list";
    dlg.m_nOption1 = 1;
    bool secondHidden = false;
    CString caption;
    dlg.steps.push_back([&](auto& d) {
        caption = d.GetDlgItem(vx::kReadOnlyCheckId)->GetWindowTextString();
        secondHidden = !d.GetDlgItem(vx::kVorschauCheckId)->IsWindowVisible();
        EXPECT_EQ(d.IsDlgButtonChecked(vx::kReadOnlyCheckId), 1u);
        vxtest::Click(*d.GetDlgItem(vx::kReadOnlyCheckId), 4, 4); // off
        d.FrameItem(edt1)->SetWindowText("export");
        vxtest::Click(*d.GetDlgItem(vx::kSkinOkId), 4, 4);
    });
    EXPECT_EQ(dlg.DoModal(), IDOK);
    EXPECT_EQ(caption, CString("With parts list"));
    EXPECT_TRUE(secondHidden);
    EXPECT_EQ(dlg.m_nOption1, 0);
    EXPECT_EQ(std::string(dlg.GetPathName().GetString()), folder + "/export.xml");
    EXPECT_FALSE(dlg.m_ofn.Flags & OFN_FILEMUSTEXIST);
}

TEST_F(FileDialogs, ThePreviewDialogRemembersTheLastFolderAndTestsForPages)
{
    vxtest::TempDir one;
    one.Write("Plan.0001", "x");
    one.Write("notes.txt", "x");
    KDateiVorschauDlg::s_LastDir = one.Path().c_str();
    Driven<KDateiVorschauDlg> first(TRUE);
    first.m_bVorschau = 0;
    CString folderSeen;
    bool refused = false;
    bool readOnlyHidden = false;
    first.steps.push_back([&](auto& d) {
        folderSeen = d.GetFolderPath();
        readOnlyHidden = !d.GetDlgItem(vx::kReadOnlyCheckId)->IsWindowVisible();
        // Not a page: the page-limit test keeps the dialog open.
        d.FrameItem(edt1)->SetWindowText("notes.txt");
        vxtest::Click(*d.GetDlgItem(vx::kSkinOkId), 4, 4);
        refused = d.m_hWnd != nullptr;
        d.FrameItem(edt1)->SetWindowText("Plan.0001");
        vxtest::Click(*d.GetDlgItem(vx::kSkinOkId), 4, 4);
    });
    ASSERT_EQ(first.DoModal(), IDOK);
    EXPECT_EQ(std::string(folderSeen.GetString()), one.Path());
    EXPECT_TRUE(refused);
    EXPECT_TRUE(readOnlyHidden);

    // The next one starts where the last one ended; one given a folder
    // starts there and leaves the last folder alone.
    vxtest::TempDir two;
    Driven<KDateiVorschauDlg> second(TRUE);
    second.m_bVorschau = 0;
    second.steps.push_back([&](auto& d) {
        folderSeen = d.GetFolderPath();
        vxtest::Click(*d.GetDlgItem(vx::kSkinCancelId), 4, 4);
    });
    EXPECT_EQ(second.DoModal(), IDCANCEL);
    EXPECT_EQ(std::string(folderSeen.GetString()), one.Path());
    const std::string elsewhere = two.Path();
    Driven<KDateiVorschauDlg> third(TRUE);
    third.m_bVorschau = 0;
    third.m_ofn.lpstrInitialDir = elsewhere.c_str();
    third.steps.push_back([&](auto& d) {
        folderSeen = d.GetFolderPath();
        vxtest::Click(*d.GetDlgItem(vx::kSkinCancelId), 4, 4);
    });
    EXPECT_EQ(third.DoModal(), IDCANCEL);
    EXPECT_EQ(std::string(folderSeen.GetString()), elsewhere);
    EXPECT_EQ(std::string(KDateiVorschauDlg::s_LastDir.GetString()), one.Path());
}

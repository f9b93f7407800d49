// CFileDialog: the frame and its child, the notifications in their order,
// the answer in the caller's buffers, driven by simulated input.
#include "uisupport/uitest.h"

#include "support/tempdir.h"

#include "ui/controls/cbutton.h"
#include "ui/dialogs/cfiledialog.h"
#include "ui/windows/qtinterop.h"

#include "platform/files/fileapi.h"
#include "platform/files/hostpath.h"
#include "platform/windows/ccombobox.h"
#include "platform/windows/messagebox.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QWidget>

#include <unistd.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr UINT kChildTemplate = 9101;
constexpr int kChildCheck = 9102;
constexpr UINT kStep = WM_APP + 7;

void RegisterChild()
{
    vx::DialogTemplate t("", 0, 0, 300, 30, WS_CHILD | DS_CONTROL | DS_SETFONT);
    t.CheckBox("Keep &backup", kChildCheck, 7, 8, 100, 10);
    vx::RegisterDialogTemplate(kChildTemplate, t);
}

// Runs Qt's events until `done` holds (the folder view lists a folder in a
// thread of its own), at most a few seconds.
bool WaitFor(const std::function<bool()>& done)
{
    for (int i = 0; i < 500 && !done(); ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        usleep(5000);
    }
    return done();
}

// A dialog that writes down what reaches it and runs the test's steps one
// at a time from its own queue, as input would arrive.
class Recorder : public CFileDialog {
public:
    using CFileDialog::CFileDialog;

    std::vector<std::string> seen;
    std::deque<std::function<void(Recorder&)>> steps;
    int refuseOk = 0; // how many OKs OnFileNameOK refuses
    std::vector<int> frameIds;

    CWnd* Frame() const { return GetParent(); }
    CWnd* FrameItem(int id) const { return GetParent()->GetDlgItem(id); }
    QFileDialog* View() const
    {
        QWidget* w = vx::WidgetOfWindow(FrameItem(lst1));
        return w ? w->findChild<QFileDialog*>() : nullptr;
    }
    void Next() { PostMessage(kStep); }

protected:
    BOOL OnInitDialog() override
    {
        CFileDialog::OnInitDialog();
        seen.push_back("init");
        EnumChildWindows(GetParent()->m_hWnd, [](HWND h, LPARAM self) {
            reinterpret_cast<Recorder*>(self)->frameIds.push_back(CWnd::FromHandle(h)->GetDlgCtrlID());
            return TRUE;
        }, reinterpret_cast<LPARAM>(this));
        return TRUE;
    }
    void OnInitDone() override
    {
        seen.push_back("initdone");
        Next();
    }
    void OnFileNameChange() override { seen.push_back("sel:" + std::string(GetFileName().GetString())); }
    void OnFolderChange() override { seen.push_back("folder"); }
    void OnTypeChange() override { seen.push_back("type"); }
    BOOL OnFileNameOK() override
    {
        seen.push_back("fileok:" + std::string(GetFileName().GetString()));
        return refuseOk-- > 0;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == kStep && !steps.empty()) {
            auto step = std::move(steps.front());
            steps.pop_front();
            step(*this);
            return 0;
        }
        return CFileDialog::WindowProc(message, wParam, lParam);
    }
};

// Types `text` into the frame's name field as a user would.
void TypeName(Recorder& d, const char* text)
{
    CWnd* field = d.FrameItem(edt1);
    field->SetFocus();
    field->SetWindowText("");
    vxtest::Type(text);
}

void ClickFrameButton(Recorder& d, int id)
{
    CWnd* button = d.FrameItem(id);
    ASSERT_NE(button, nullptr);
    vxtest::Click(*button, 4, 4);
}

} // namespace

TEST(CFileDialog, OpensWithTheChildBelowAndAnswersThePathTheUserTyped)
{
    RegisterChild();
    vxtest::TempDir dir;
    dir.Write("plan.eld", "x");
    Recorder dlg(TRUE, "eld", nullptr, OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_NOCHANGEDIR,
                 "Drawings (*.eld)|*.eld|All files (*.*)|*.*||");
    dlg.SetTemplate(kChildTemplate);
    const std::string folder = dir.Path();
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    dlg.refuseOk = 1;
    CRect childRect;
    CRect okRect;
    CString folderSeen;
    CString pathWhileOpen;
    dlg.steps.push_back([&](Recorder& d) {
        // The child's controls stand below the system part.
        d.GetDlgItem(kChildCheck)->GetWindowRect(&childRect);
        d.FrameItem(IDOK)->GetWindowRect(&okRect);
        folderSeen = d.GetFolderPath();
        EXPECT_TRUE(d.Frame()->IsWindowVisible());
        // The user sees the folder view and the files in it.
        EXPECT_TRUE(d.FrameItem(lst1)->IsWindowVisible());
        EXPECT_TRUE(vx::WidgetOfWindow(d.FrameItem(lst1))->isVisible());
        // The name without its extension: the default one is added.
        TypeName(d, "plan");
        pathWhileOpen = d.GetPathName();
        ClickFrameButton(d, IDOK); // refused by OnFileNameOK: stays open
        d.Next();
    });
    dlg.steps.push_back([&](Recorder& d) {
        ASSERT_TRUE(d.m_hWnd);
        ClickFrameButton(d, IDOK);
    });
    ASSERT_EQ(dlg.DoModal(), IDOK);

    EXPECT_EQ(dlg.seen, (std::vector<std::string>{"init", "initdone", "folder", "fileok:plan.eld", "fileok:plan.eld"}));
    for (int id : {IDOK, IDCANCEL, edt1, cmb1, lst1})
        EXPECT_NE(std::find(dlg.frameIds.begin(), dlg.frameIds.end(), id), dlg.frameIds.end()) << id;
    EXPECT_GE(childRect.top, okRect.bottom);
    EXPECT_EQ(std::string(folderSeen.GetString()), folder);
    EXPECT_EQ(std::string(pathWhileOpen.GetString()), folder + "/plan");
    EXPECT_EQ(std::string(dlg.GetPathName().GetString()), folder + "/plan.eld");
    EXPECT_EQ(std::string(dlg.GetFileName().GetString()), "plan.eld");
    EXPECT_EQ(std::string(dlg.GetFileExt().GetString()), "eld");
    EXPECT_EQ(std::string(dlg.GetFileTitle().GetString()), "plan");
    EXPECT_EQ(dlg.m_ofn.nFileOffset, folder.size() + 1);
    EXPECT_EQ(dlg.GetFolderPath(), CString()); // only while it runs
}

TEST(CFileDialog, CancelEndsAndAMissingFileKeepsTheDialogOpen)
{
    vxtest::TempDir dir;
    Recorder dlg(TRUE, nullptr, "gone.eld", OFN_HIDEREADONLY | OFN_FILEMUSTEXIST, "Drawings (*.eld)|*.eld||");
    const std::string folder = dir.Path();
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    std::vector<std::string> boxes;
    auto old = vx::SetMessageBoxHandler([&](const vx::MessageBoxRequest& r) {
        boxes.push_back(r.text);
        return IDOK;
    });
    CString named;
    dlg.steps.push_back([&](Recorder& d) {
        named = d.FrameItem(edt1)->GetWindowTextString();
        ClickFrameButton(d, IDOK);
        d.Next();
    });
    dlg.steps.push_back([&](Recorder& d) { ClickFrameButton(d, IDCANCEL); });
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    vx::SetMessageBoxHandler(old);
    EXPECT_EQ(named, CString("gone.eld"));
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_NE(boxes[0].find("File not found"), std::string::npos);
    EXPECT_EQ(std::count(dlg.seen.begin(), dlg.seen.end(), "fileok:gone.eld"), 0);
    EXPECT_STREQ(dlg.m_ofn.lpstrFile, "gone.eld"); // untouched by Cancel
}

TEST(CFileDialog, SavePromptsBeforeReplacingAndTheReadOnlyCheckIsReadBack)
{
    vxtest::TempDir dir;
    dir.Write("old.eld", "x");
    Recorder dlg(FALSE, "eld", nullptr, OFN_OVERWRITEPROMPT, "Drawings (*.eld)|*.eld||");
    const std::string folder = dir.Path();
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    int asked = 0;
    auto old = vx::SetMessageBoxHandler([&](const vx::MessageBoxRequest& r) {
        ++asked;
        EXPECT_NE(r.text.find("already exists"), std::string::npos);
        return asked == 1 ? IDNO : IDYES;
    });
    dlg.steps.push_back([&](Recorder& d) {
        EXPECT_TRUE(d.FrameItem(chx1)->IsWindowVisible());
        vxtest::Click(*d.FrameItem(chx1), 3, 3);
        TypeName(d, "old");
        ClickFrameButton(d, IDOK); // "no": stays
        d.Next();
    });
    dlg.steps.push_back([&](Recorder& d) { ClickFrameButton(d, IDOK); });
    EXPECT_EQ(dlg.DoModal(), IDOK);
    vx::SetMessageBoxHandler(old);
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(dlg.GetReadOnlyPref());
    EXPECT_EQ(std::string(dlg.GetPathName().GetString()), folder + "/old.eld");
}

TEST(CFileDialog, FolderViewSelectionTypesAndFoldersReachTheChild)
{
    vxtest::TempDir dir;
    dir.Write("a.eld", "x");
    dir.Write("b.txt", "x");
    dir.MakeDir("sub");
    Recorder dlg(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, "Drawings (*.eld)|*.eld|Texts (*.txt)|*.txt||");
    const std::string folder = dir.Path();
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    CString subFolder;
    dlg.steps.push_back([&](Recorder& d) {
        QFileDialog* view = d.View();
        ASSERT_NE(view, nullptr);
        // A file picked in the view lands in the name field.
        view->selectFile(QStringLiteral("a.eld"));
        EXPECT_TRUE(WaitFor([&] { return d.FrameItem(edt1)->GetWindowTextString() == "a.eld"; }));
        // The second type.
        auto* types = static_cast<CComboBox*>(d.FrameItem(cmb1));
        EXPECT_EQ(types->GetCount(), 2);
        types->SetCurSel(1);
        d.Frame()->SendMessage(WM_COMMAND, MAKEWPARAM(cmb1, CBN_SELCHANGE), reinterpret_cast<LPARAM>(types->m_hWnd));
        // A folder's name and OK goes into the folder.
        TypeName(d, "sub");
        ClickFrameButton(d, IDOK);
        subFolder = d.GetFolderPath();
        EXPECT_EQ(d.FrameItem(edt1)->GetWindowTextString(), CString());
        ClickFrameButton(d, IDCANCEL);
    });
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_NE(std::find(dlg.seen.begin(), dlg.seen.end(), "sel:a.eld"), dlg.seen.end());
    EXPECT_NE(std::find(dlg.seen.begin(), dlg.seen.end(), "type"), dlg.seen.end());
    EXPECT_EQ(dlg.m_ofn.nFilterIndex, 2u);
    EXPECT_EQ(std::count(dlg.seen.begin(), dlg.seen.end(), "folder"), 2);
    EXPECT_EQ(std::string(subFolder.GetString()), folder + "/sub");
}

TEST(CFileDialog, AResizedFrameKeepsTheChildBelowAndTheButtonsAtTheRight)
{
    RegisterChild();
    Recorder dlg(TRUE);
    dlg.SetTemplate(kChildTemplate);
    CRect before;
    CRect after;
    CRect childAfter;
    CRect frameAfter;
    CRect checkAfter;
    dlg.steps.push_back([&](Recorder& d) {
        d.FrameItem(IDOK)->GetWindowRect(&before);
        CRect frame;
        d.Frame()->GetWindowRect(&frame);
        d.Frame()->MoveWindow(frame.left, frame.top, frame.Width() + 100, frame.Height() + 60);
        d.FrameItem(IDOK)->GetWindowRect(&after);
        d.GetWindowRect(&childAfter);
        d.GetDlgItem(kChildCheck)->GetWindowRect(&checkAfter);
        d.Frame()->GetClientRect(&frameAfter);
        d.Frame()->ClientToScreen(&frameAfter);
        ClickFrameButton(d, IDCANCEL);
    });
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(after.left - before.left, 100);
    EXPECT_EQ(after.top - before.top, 60);
    // The child covers the frame's client area; its own controls stay below.
    EXPECT_EQ(childAfter, frameAfter);
    EXPECT_GE(checkAfter.top, after.bottom);
    EXPECT_LE(checkAfter.bottom, frameAfter.bottom);
}

TEST(CFileDialog, AMissingChildTemplateIsRefused)
{
    CFileDialog dlg(TRUE);
    dlg.SetTemplate(9199);
    EXPECT_EQ(dlg.DoModal(), -1);
}

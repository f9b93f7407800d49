#include "base/displaystate.h"
#include "base/hostmessages.h"
#include "base/libraryframe.h"
#include "base/vxglobals.h"
#include "base/vxmessagebox.h"
#include "platform/windows/cframewnd.h"
#include "platform/windows/messagebox.h"
#include "platform/windows/messagepump.h"

#include "support/printers.h"
#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// A host frame that records the queries and answers them.
class HostDouble : public CMDIFrameWnd {
public:
    std::vector<CommonMessageRec> records;
    std::vector<std::string> dirTexts;
    LRESULT skinAnswer = 0;
    CString project = "C:\\Projekte\\A";

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != WM_VXBASE)
            return CMDIFrameWnd::WindowProc(message, wParam, lParam);
        switch (wParam) {
        case HostQueryCommonMessage: {
            auto* r = reinterpret_cast<CommonMessageRec*>(lParam);
            records.push_back(*r);
            r->result = 5; // what a host of the posted form does
            return 33;
        }
        case HostQueryDlgVerzeichnis: {
            auto** texts = reinterpret_cast<const char**>(lParam);
            for (int i = 0; i < 3; ++i)
                dirTexts.emplace_back(texts[i] ? texts[i] : "(null)");
            return reinterpret_cast<LRESULT>(&project);
        }
        case HostQueryDlgSkinID:
            return skinAnswer;
        case HostQueryActProject:
            return reinterpret_cast<LRESULT>(&project);
        case HostQueryVxModul:
            return 0x15;
        default:
            return 0;
        }
    }
};

class LibraryFrame : public ::testing::Test {
protected:
    void TearDown() override
    {
        g_pDLLMainframe = nullptr;
        vx::SetMessageBoxHandler(nullptr);
        vx::SetAbortHook(nullptr);
        vx::ResetMessageQueue();
    }
    void InstallBoxes(int answer)
    {
        vx::SetMessageBoxHandler([this, answer](const vx::MessageBoxRequest& r) {
            boxes.push_back(r);
            return answer;
        });
    }
    std::vector<vx::MessageBoxRequest> boxes;
};

} // namespace

TEST_F(LibraryFrame, QueriesWithoutAHostGiveTheirDefaults)
{
    EXPECT_EQ(CommonMessage("x", 1, 2, nullptr, 3, 4), -1);
    EXPECT_EQ(CommonMessage(6718u, "a", "b", 1, 2, nullptr, 3, 4), -1);
    int* word = PostCommonMessage("x", 1, 2, nullptr, 3, 4);
    *word = 1234;
    EXPECT_EQ(PostCommonMessage(6718u, "a", "b", 1, 2, nullptr, 3, 4), word) << "one static record";
    EXPECT_EQ(*word, 1234) << "no host: the word keeps its value";
    EXPECT_EQ(GetDlgVerzeichnis("a", "b", "c"), "");
    EXPECT_EQ(GetActProject(), "");
    EXPECT_EQ(GetDlgSkinID(7), static_cast<unsigned long>(-1));
    EXPECT_EQ(GetVxModul(), 0u);
}

TEST_F(LibraryFrame, CommonMessageFillsTheRecordInOrder)
{
    HostDouble host;
    host.CreateEx("host", "VxHost");
    g_pDLLMainframe = &host;
    int flag = 0;
    EXPECT_EQ(CommonMessage("text", 1, 2, &flag, 3, 4), 33);
    EXPECT_EQ(CommonMessage(6718u, "s1", "s2", 5, 6, nullptr, 7, 8), 33);
    ASSERT_EQ(host.records.size(), 2u);
    const CommonMessageRec& a = host.records[0];
    EXPECT_EQ(a.id, 0u);
    EXPECT_EQ(a.a, 1u);
    EXPECT_EQ(a.b, 2u);
    EXPECT_STREQ(a.text1, "text");
    EXPECT_EQ(a.text2, nullptr);
    EXPECT_EQ(a.p, &flag);
    EXPECT_EQ(a.c, 3);
    EXPECT_EQ(a.d, 4);
    const CommonMessageRec& b = host.records[1];
    EXPECT_EQ(b.id, 6718u);
    EXPECT_STREQ(b.text1, "s1");
    EXPECT_STREQ(b.text2, "s2");
    EXPECT_EQ(b.c, 7);
}

TEST_F(LibraryFrame, PostedMessageIsAnsweredThroughTheResultWord)
{
    HostDouble host;
    host.CreateEx("host", "VxHost");
    g_pDLLMainframe = &host;
    int* word = PostCommonMessage("later", 1, 0, nullptr, 0, 0);
    EXPECT_EQ(*word, -1);
    EXPECT_TRUE(host.records.empty()) << "posted, not sent";
    vx::PumpMessages();
    ASSERT_EQ(host.records.size(), 1u);
    EXPECT_STREQ(host.records[0].text1, "later");
    EXPECT_EQ(*word, 5);
}

TEST_F(LibraryFrame, HostAnswersOfTheOtherQueries)
{
    HostDouble host;
    host.CreateEx("host", "VxHost");
    g_pDLLMainframe = &host;
    EXPECT_EQ(GetDlgVerzeichnis("a", nullptr, "c"), "C:\\Projekte\\A");
    EXPECT_EQ(host.dirTexts, (std::vector<std::string>{"a", "(null)", "c"}));
    EXPECT_EQ(GetActProject(), "C:\\Projekte\\A");
    host.skinAnswer = 1;
    EXPECT_EQ(GetDlgSkinID(100), 0u);
    host.skinAnswer = 0;
    EXPECT_EQ(GetDlgSkinID(100), static_cast<unsigned long>(-1));
    host.skinAnswer = 8;
    EXPECT_EQ(GetDlgSkinID(100), 7u);
    EXPECT_EQ(GetVxModul(), 0x15u);
}

TEST_F(LibraryFrame, MissingStringIsReportedAndEmpty)
{
    InstallBoxes(IDOK);
    EXPECT_EQ(GetString(6707), "VEXAL 5.5 Instalacja");
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(GetString(6719), "");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Global error: Missing string 6719");
    EXPECT_EQ(GetString(-5), "");
    EXPECT_EQ(boxes.back().text, "Global error: Missing string -5");
}

TEST_F(LibraryFrame, MessageBoxesShowLocallyWithoutAPartner)
{
    InstallBoxes(IDYES);
    CWnd main;
    main.CreateEx("main", "VxMain");
    AfxSetMainWnd(&main);
    EXPECT_EQ(VxAfxMessageBox("question", MB_YESNO, 12), IDYES);
    EXPECT_EQ(VxAfxMessageBox(6713u, MB_OK, 0), IDYES);
    EXPECT_EQ(VxMessageBox(nullptr, "t", "caption", MB_OK), IDYES);
    EXPECT_EQ(VxMessageBox("t2", "caption2", MB_OK), IDYES);
    AfxSetMainWnd(nullptr);
    ASSERT_EQ(boxes.size(), 4u);
    EXPECT_EQ(boxes[0].help, 12u);
    EXPECT_EQ(boxes[0].owner, main.m_hWnd);
    EXPECT_EQ(boxes[1].text, GetString(6713).GetString());
    EXPECT_EQ(boxes[2].owner, nullptr);
    EXPECT_EQ(boxes[3].caption, "caption2");
    EXPECT_EQ(boxes[3].owner, main.m_hWnd) << "owned by the main window";
    int result = 0;
    EXPECT_EQ(PartnerMessageBox(&result, "x", MB_OK, 0), 0);
}

// The link installs the partner route; every wrapper asks it first, and a
// route that declines leaves the box to this program.
TEST_F(LibraryFrame, MessageBoxesTakeTheInstalledPartnerRoute)
{
    InstallBoxes(IDYES);
    static std::vector<std::string> routed;
    static int answer;
    routed.clear();
    answer = IDNO;
    const vx::PartnerMessageBoxRoute old =
        vx::SetPartnerMessageBoxRoute([](int* result, const char* text, unsigned type, unsigned help) {
            routed.push_back(std::string(text) + "/" + std::to_string(type) + "/" + std::to_string(help));
            if (answer == 0)
                return 0;
            *result = answer;
            return 1;
        });
    EXPECT_EQ(VxAfxMessageBox("question", MB_YESNO, 12), IDNO);
    EXPECT_EQ(VxMessageBox(nullptr, "t", "caption", MB_OKCANCEL), IDNO);
    int result = 0;
    EXPECT_EQ(PartnerMessageBox(&result, "x", MB_OK, 3), 1);
    EXPECT_EQ(result, IDNO);
    EXPECT_TRUE(boxes.empty());
    answer = 0;
    EXPECT_EQ(VxMessageBox("here", "caption", MB_OK), IDYES);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "here");
    EXPECT_NE(vx::SetPartnerMessageBoxRoute(old), nullptr);
    EXPECT_EQ(routed, (std::vector<std::string>{"question/4/12", "t/1/0", "x/0/3", "here/0/0"}));
}

TEST_F(LibraryFrame, AssertionNamesLineAndFileTitle)
{
    int aborts = 0;
    vx::SetAbortHook([&] { ++aborts; });
    InstallBoxes(IDRETRY);
    char path[] = "C:\\src\\vxbase\\xstring.cpp";
    VexalAssert(path, 42);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Allgemeiner Fehler: 42 Typ: xstring\n\nDas Programm sollte abgebrochen werden");
    EXPECT_EQ(boxes[0].type, 0x15u);
    EXPECT_EQ(aborts, 0);
    InstallBoxes(IDCANCEL);
    char unixPath[] = "/home/dev/src/base/libraryframe.cpp";
    VexalAssert(unixPath, 7);
    EXPECT_EQ(boxes.back().text, "Allgemeiner Fehler: 7 Typ: libraryframe\n\nDas Programm sollte abgebrochen werden");
    EXPECT_EQ(aborts, 1);
    char noDot[] = "a.b\\name";
    VexalAssert(noDot, 1);
    EXPECT_EQ(boxes.back().text.substr(0, 31), "Allgemeiner Fehler: 1 Typ: name");
}

TEST_F(LibraryFrame, SafeTimerIdsStartAt31)
{
    CWnd w;
    w.CreateEx("timer", "VxTimer");
    EXPECT_EQ(GetSafeTimerID(w.m_hWnd, 100), 31u);
    EXPECT_EQ(GetSafeTimerID(w.m_hWnd, 100), 31u) << "a running id is restarted and accepted";
    const HWND gone = w.m_hWnd;
    w.DestroyWindow();
    EXPECT_EQ(GetSafeTimerID(gone, 100), 0u);
    EXPECT_EQ(GetSafeTimerID(nullptr, 100), 0u);
}

TEST_F(LibraryFrame, VersionParts)
{
    const int want[] = {8, 6, 5, 2, -1, 0, 0};
    for (int part = 0; part < 7; ++part)
        EXPECT_EQ(GetDllVersionVxBase(part), want[part]) << part;
    EXPECT_EQ(GetDllVersionVxBase(-1), 0);
}

TEST_F(LibraryFrame, StaticStateOfThePort)
{
    EXPECT_EQ(g_Shell, WinXP);
    EXPECT_EQ(bRemoteSession, 0);
    EXPECT_GE(WM_XLISTCTRL_COMBO_SELECTION, 0xC000u);
    EXPECT_NE(WM_XLISTCTRL_COMBO_SELECTION, WM_XEDIT_VK_ESCAPE);
    EXPECT_EQ(WM_XEDIT_KILL_FOCUS, RegisterWindowMessageA("WM_XEDIT_KILL_FOCUS"));
}

namespace {

class Migration : public ::testing::Test {
protected:
    static void Write(const std::string& path, const std::string& text) { vxtest::WriteBytes(path, text); }
    static std::string Read(const std::string& path) { return vxtest::ReadBytes(path); }
    vxtest::TempDir temp;
    std::string dir = temp.Path();
    std::string oldFile = dir + "/VEXAL.INI";
    std::string newFile = dir + "/VEXAL55.INI";
};

} // namespace

TEST_F(Migration, OldFileIsPromotedOnce)
{
    Write(oldFile, "[MISC]\r\nold=1\r\n");
    EXPECT_TRUE(vx::MigrateSuiteFile(oldFile.c_str(), newFile.c_str()));
    EXPECT_FALSE(fs::exists(oldFile));
    EXPECT_EQ(Read(newFile), "[MISC]\r\nold=1\r\n");
    EXPECT_FALSE(vx::MigrateSuiteFile(oldFile.c_str(), newFile.c_str())) << "neither: nothing happens";
    EXPECT_EQ(Read(newFile), "[MISC]\r\nold=1\r\n");
}

TEST_F(Migration, ExistingNewFileIsNeverOverwritten)
{
    Write(oldFile, "old");
    Write(newFile, "new");
    EXPECT_FALSE(vx::MigrateSuiteFile(oldFile.c_str(), newFile.c_str()));
    EXPECT_EQ(Read(oldFile), "old") << "the old file stays";
    EXPECT_EQ(Read(newFile), "new");
    fs::remove(oldFile);
    EXPECT_FALSE(vx::MigrateSuiteFile(oldFile.c_str(), newFile.c_str()));
    EXPECT_EQ(Read(newFile), "new");
}

TEST(SystemClass, FollowsTheVersionTable)
{
    EXPECT_EQ(vx::ClassifySystem(false, 3, 95), Win32s);
    EXPECT_EQ(vx::ClassifySystem(true, 3, 51), WinNT3);
    EXPECT_EQ(vx::ClassifySystem(false, 4, 0), Win95);
    EXPECT_EQ(vx::ClassifySystem(false, 5, 0), Win95) << "a major other than 4 in the old family";
    EXPECT_EQ(vx::ClassifySystem(false, 4, 10), Win98);
    EXPECT_EQ(vx::ClassifySystem(false, 4, 90), WinME);
    EXPECT_EQ(vx::ClassifySystem(true, 4, 0), WinNT4);
    EXPECT_EQ(vx::ClassifySystem(true, 5, 0), Win2000);
    EXPECT_EQ(vx::ClassifySystem(true, 5, 1), WinXP);
    EXPECT_EQ(vx::ClassifySystem(true, 6, 0), WinXP);
    EXPECT_GE(vx::ClassifySystem(true, 10, 0), Win2000);
}

namespace {
std::vector<int> g_detachOrder;
} // namespace

TEST(LibraryEntry, DetachRunsHandlersLastAddedFirst)
{
    g_detachOrder.clear();
    vx::AtLibraryDetach([] { g_detachOrder.push_back(1); });
    vx::AtLibraryDetach([] { g_detachOrder.push_back(2); });
    vx::AtLibraryDetach(nullptr);
    EXPECT_EQ(DllMain(nullptr, DLL_THREAD_ATTACH, nullptr), 1);
    EXPECT_TRUE(g_detachOrder.empty()) << "thread reasons do nothing";
    vx::DetachLibrary();
    EXPECT_EQ(g_detachOrder, (std::vector<int>{2, 1}));
    vx::DetachLibrary();
    EXPECT_EQ(g_detachOrder.size(), 2u) << "handlers run once";
}

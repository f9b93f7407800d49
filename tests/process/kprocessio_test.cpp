// KProcessIO within one process: start state, Init, the log, the search
// rules, the message functions without a partner, the relays' disk side,
// and the receiving check.
#include "linktest.h"

#include <sys/file.h>

#include <fcntl.h>

#include <cctype>
#include <thread>

namespace {

using linktest::LinkTest;
using KData = KProcessIO::KData;

// Whether `text` has the form, where "#" stands for any digit.
bool MatchesForm(const std::string& text, const std::string& form)
{
    if (text.size() != form.size())
        return false;
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i] == '#' ? !std::isdigit(static_cast<unsigned char>(text[i])) : text[i] != form[i])
            return false;
    }
    return true;
}

// A window of this process that the search can find.
struct LocalWindow : CWnd {
    LocalWindow(const char* title, const char* className) { CreateEx(title, className); }
};

TEST_F(LinkTest, StartStateFollowsTheCommandLine)
{
    CString project = "unchanged";
    EXPECT_EQ(KProcessIO::GetStartState("@@", &project), 0);
    EXPECT_EQ(project, "");
    EXPECT_EQ(KProcessIO::GetStartState("@@@C:\\Projekte\\Demo Neu", &project), 5);
    EXPECT_EQ(project, "C:\\Projekte\\Demo Neu");
    EXPECT_EQ(KProcessIO::GetStartState("@@C:\\P", &project), 0);
    EXPECT_EQ(project, "C:\\P");
    EXPECT_EQ(KProcessIO::GetStartState("plan.0012", &project), 1);
    EXPECT_EQ(KProcessIO::GetStartState(nullptr, nullptr), 1);
    EXPECT_EQ(KProcessIO::m_Single, 0);
    EXPECT_EQ(KProcessIO::GetStartState("/SINGLE @@C:\\P", &project), 3);
    EXPECT_EQ(KProcessIO::m_Single, 1);
}

TEST_F(LinkTest, DisabledLinkRunsAlone)
{
    SetSuite("PROCESS", "Enable", "0");
    EXPECT_EQ(KProcessIO::GetStartState("@@C:\\P", nullptr), 3);
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT, "@@C:\\P");
    EXPECT_EQ(frame.m_startState, 3);
    EXPECT_EQ(KProcessIO::m_Active, 0);
    EXPECT_FALSE(vx::IsWindowPublished(frame.GetSafeHwnd()));
    EXPECT_EQ(KProcessIO::InitPartner(ProcessIDType(5), 0, nullptr), nullptr);
    EXPECT_EQ(KProcessIO::ActivatePartner(MainframeIT, 5), nullptr);
}

TEST_F(LinkTest, InitPublishesTheFrameAndNotesTheClasses)
{
    SetSuite("PROCESS", "IT-Class", "ItFrame");
    SetSuite("PROCESS", "ExecuteTimeout", "1234");
    SetSuite("PROCESS", "Partner", "4294967311");
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT, "@@C:\\P");
    EXPECT_EQ(KProcessIO::m_Active, 1);
    EXPECT_EQ(KProcessIO::m_hProgWnd, frame.GetSafeHwnd());
    EXPECT_TRUE(vx::IsWindowPublished(frame.GetSafeHwnd()));
    EXPECT_EQ(Suite("PROCESS", "AT-Class"), "AfxMDIFrame42");
    EXPECT_EQ(KProcessIO::m_sPartnerClass, "ItFrame");
    EXPECT_EQ(KProcessIO::m_ExecuteTimeout, 1234);
    // Started by the partner: its window comes from "Partner", in 64 bits.
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(KProcessIO::m_hPartnerWnd), 4294967311u);
    EXPECT_NE(Log().find("  4294967311:INIT-PROCESS\n"), std::string::npos) << Log();
}

TEST_F(LinkTest, ItReadsTheAtClassWithItsDefault)
{
    g_MainframeType = MainframeIT;
    OpenFrame(MainframeIT);
    EXPECT_EQ(Suite("PROCESS", "IT-Class"), "AfxMDIFrame42");
    EXPECT_EQ(KProcessIO::m_sPartnerClass, "AfxMDIFrame42");
    EXPECT_EQ(KProcessIO::m_hPartnerWnd, nullptr); // a normal start reads no "Partner"
}

TEST_F(LinkTest, LogLinesHaveTheirExactForms)
{
    g_MainframeType = MainframeAT;
    KProcessIO::m_WriteLogState = ProcessLevelType(4);
    EXPECT_EQ(KProcessIO::WriteLog(nullptr, ProcessIDType(0), ProcessLevelType(1)), 1);
    EXPECT_EQ(KProcessIO::WriteLog("SEND", ProcessIDType(102), ProcessLevelType(4)), 1);
    EXPECT_EQ(KProcessIO::WriteLog("START", ProcessIDType(0), ProcessLevelType(1)), 1);
    g_MainframeType = MainframeIT;
    EXPECT_EQ(KProcessIO::WriteLog("CLOSE", ProcessIDType(-2), ProcessLevelType(4)), 1);
    // Suppressed: above the level, or the log switched off.
    EXPECT_EQ(KProcessIO::WriteLog("GETVX 0", ProcessIDType(0), ProcessLevelType(6)), 1);
    KProcessIO::m_WriteLogState = ProcessLevelType(0);
    EXPECT_EQ(KProcessIO::WriteLog("INIT-PROCESS", ProcessIDType(0), ProcessLevelType(1)), 1);
    EXPECT_TRUE(MatchesForm(Log(), "\n1-##:##:## ####/##/##  \n"
                                   "1-##:##:##  102:SEND\n"
                                   "1-##:##:##  START\n"
                                   "2-##:##:##  -2:CLOSE\n"))
        << Log();
}

TEST_F(LinkTest, LogWaitsForTheOtherProgramsWrite)
{
    const std::string path = linktest::Environment().settings + "/VxProcess.log";
    KProcessIO::WriteLog("first", ProcessIDType(0), ProcessLevelType(1));
    // The other program holds the file for 150 ms, then for longer than
    // the ten tries last.
    for (int holdMs : {150, 1500}) {
        SCOPED_TRACE(holdMs);
        const int fd = open(path.c_str(), O_WRONLY);
        ASSERT_EQ(flock(fd, LOCK_EX), 0);
        std::thread release([fd, holdMs] {
            std::this_thread::sleep_for(std::chrono::milliseconds(holdMs));
            close(fd);
        });
        const auto start = std::chrono::steady_clock::now();
        const int written = KProcessIO::WriteLog("waited", ProcessIDType(0), ProcessLevelType(1));
        const auto ms =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
        release.join();
        EXPECT_GE(ms, 100);
        EXPECT_EQ(written, holdMs < 450 ? 1 : 0);
    }
    const std::string log = Log();
    EXPECT_EQ(log.find("waited"), log.rfind("waited")); // written once
}

TEST_F(LinkTest, SearchTakesTitlesClassesAndTheSearchMode)
{
    OpenFrame(MainframeAT);
    SetSuite("PROCESS", "SearchMode", "1");
    LocalWindow a("VEXAL 5.5 Instalacja A", "AfxMDIFrame42");
    LocalWindow b("VEXAL 5.5 Instalacja B", "AfxMDIFrame42");
    LocalWindow stem("VEXAL 5.5 Instalacja", "AfxMDIFrame42"); // no separator behind the stem
    // Mode 1: the title suffices, and the last match wins.
    EXPECT_EQ(KProcessIO::GetVxProg(MainframeIT, 0, 1), b.GetSafeHwnd());
    // This program's own window is the known one.
    EXPECT_EQ(KProcessIO::GetVxProg(MainframeAT, 0, 0), KProcessIO::m_hProgWnd);

    // Looking for AT from IT: an IT title is no AT window, and the class
    // must agree but for its last character.
    vx::ResetPartnerLink();
    g_MainframeType = MainframeIT;
    SetSuite("PROCESS", "AT-Class", "");
    OpenFrame(MainframeIT);
    KProcessIO::m_sPartnerClass = "AtFrame4";
    LocalWindow wrongClass("VEXAL 5.5 Plan", "Other");
    LocalWindow right("VEXAL 5.5 Plan 2", "AtFrame");
    LocalWindow itTitle("VEXAL 5.5 Plan VEXAL 5.5 Instalacja", "AtFrame");
    EXPECT_EQ(KProcessIO::GetVxProg(MainframeAT, 0, 1), right.GetSafeHwnd());
}

TEST_F(LinkTest, SearchModeZeroConfirmsTheProcessName)
{
    OpenFrame(MainframeAT);
    LocalWindow candidate("VEXAL 5.5 Instalacja X", "AfxMDIFrame42");
    // This test program is not named IT, so its window is not the program.
    EXPECT_EQ(KProcessIO::GetVxProg(MainframeIT, 0, 0), nullptr);
    EXPECT_NE(Log().find("GETVX-NAME"), std::string::npos);
}

TEST_F(LinkTest, MessagesNeedTheLinkAndKeepTheMargin)
{
    EXPECT_EQ(KProcessIO::InitPartner(ProcessIDType(7), 10, nullptr), nullptr);
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    KData* d = KProcessIO::InitPartner(ProcessIDType(7), 10, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->m_Capacity, 1010);
    EXPECT_EQ(d->m_cbData, 1048u);
    EXPECT_EQ(KProcessIO::InitPartner(ProcessIDType(7), -1, nullptr), nullptr);
    EXPECT_EQ(KProcessIO::InitPartner(ProcessIDType(7), 17 << 20, nullptr), nullptr);

    // Sending to one's own window is a programming error.
    const size_t boxes = m_boxes.size();
    KProcessIO::SendPartner(frame.GetSafeHwnd(), d);
    EXPECT_EQ(m_boxes.size(), boxes + 1);
    EXPECT_EQ(KProcessIO::ExitPartner(d, 0), nullptr);

    // A reply is kept by ClosePartner, handed over by ExitPartner and freed
    // by ClosePartner again.
    KData* request = KProcessIO::InitPartner(ProcessIDType(7), 0, nullptr);
    KData* wire = KProcessIO::InitPartner(vx::kPartnerReply, 4, request);
    wire->Write(42);
    EXPECT_EQ(KProcessIO::ClosePartner(wire), 1);
    ASSERT_NE(KProcessIO::m_pReceiver, nullptr);
    KProcessIO::ExitPartner(wire, 0);
    KData* reply = KProcessIO::ExitPartner(request, 1);
    ASSERT_EQ(reply, KProcessIO::m_pReceiver);
    EXPECT_EQ(reply->m_ID, vx::kPartnerReplyTaken);
    int value = 0;
    reply->Read(value);
    EXPECT_EQ(value, 42);
    EXPECT_EQ(KProcessIO::ClosePartner(reply), 1);
    EXPECT_EQ(KProcessIO::m_pReceiver, nullptr);

    // A reply announced but never stored raises the alarm.
    const size_t before = m_boxes.size();
    EXPECT_EQ(KProcessIO::ExitPartner(KProcessIO::InitPartner(ProcessIDType(7), 0, nullptr), 1), nullptr);
    EXPECT_EQ(m_boxes.size(), before + 1);
}

TEST_F(LinkTest, RelaysGoToThePartnersFilesWhileNoPartnerRuns)
{
    g_MainframeType = MainframeAT;
    ASSERT_EQ(KProcessIO::m_Active, 0);
    EXPECT_EQ(KProcessIO::WriteProfileInt("Demo", "Sheets", 0, 0), 1);
    EXPECT_EQ(KProcessIO::WriteProfileStringA("Demo", "Name", "Plan", 1), 1);
    // AT's partner is IT: its global file for scope 0, its project file else.
    char value[64] = {};
    GetPrivateProfileStringA("Demo", "Sheets", "", value, sizeof value, g_profiledirIT);
    EXPECT_STREQ(value, "0");
    GetPrivateProfileStringA("Demo", "Name", "", value, sizeof value, g_projectprofiledirIT);
    EXPECT_STREQ(value, "Plan");
    EXPECT_EQ(KProcessIO::GetProfileIntA("Demo", "Sheets", 5, 0), 0u);
    EXPECT_EQ(KProcessIO::GetProfileStringA("Demo", "Name", "", 11), "Plan");
    EXPECT_EQ(KProcessIO::GetProfileStringA("Demo", "Missing", "dflt", 0), "dflt");
    // The link up without a partner: still the disk.
    OpenFrame(MainframeAT);
    EXPECT_EQ(KProcessIO::GetProfileIntA("Demo", "Missing", -3, 0), static_cast<unsigned>(-3));
}

TEST_F(LinkTest, ReceivedBlocksAreCheckedBeforeTheyAreRead)
{
    OpenFrame(MainframeAT);
    auto refuse = [](const void* bytes, DWORD length) {
        COPYDATASTRUCT cds{0, length, const_cast<void*>(bytes)};
        return vx::AcceptPartnerBlock(&cds);
    };
    // Exactly as long as claimed, so that AddressSanitizer sees any read beyond.
    auto shortBlock = std::make_unique<char[]>(20);
    EXPECT_EQ(refuse(shortBlock.get(), 20), nullptr);
    KData* d = KProcessIO::InitPartner(ProcessIDType(9), 0, nullptr);
    d->m_cbData += 8;
    EXPECT_EQ(refuse(d, 1038), nullptr); // cbData disagrees
    d->m_cbData = 1038;
    d->m_Capacity = 2000;
    EXPECT_EQ(refuse(d, 1038), nullptr); // capacity disagrees
    EXPECT_EQ(refuse(d, (16u << 20) + 1), nullptr); // refused before any byte is read
    EXPECT_EQ(refuse(nullptr, 0), nullptr);
    d->m_Capacity = 1000;
    d->m_Cursor = 999999;
    ASSERT_EQ(refuse(d, 1038), d);
    EXPECT_EQ(d->m_Cursor, 36u);
    KProcessIO::ExitPartner(d, 0);
    const std::string log = Log();
    EXPECT_NE(log.find("REFUSED 20 bytes: shorter than 38 bytes"), std::string::npos) << log;
    EXPECT_NE(log.find("REFUSED 1038 bytes: cbData disagrees"), std::string::npos);
    EXPECT_NE(log.find("REFUSED 1038 bytes: capacity disagrees"), std::string::npos);
    EXPECT_NE(log.find("REFUSED 16777217 bytes: longer than 16 MiB"), std::string::npos);
}

TEST_F(LinkTest, DeActivateHidesAndPostsToItself)
{
    EXPECT_EQ(KProcessIO::DeActivate(1), 0);
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    ASSERT_TRUE(frame.IsWindowVisible());
    EXPECT_EQ(KProcessIO::DeActivate(1), 1);
    EXPECT_FALSE(frame.IsWindowVisible());
    MSG msg;
    ASSERT_TRUE(PeekMessageA(&msg, frame.GetSafeHwnd(), 0x40A, 0x40A, PM_REMOVE));
    EXPECT_EQ(msg.wParam, 223u);
}

TEST_F(LinkTest, MessageBoxStaysHereUnlessHiddenWithAPartner)
{
    int result = -5;
    EXPECT_EQ(PartnerMessageBox(&result, "text", MB_OK, 0), 0); // link down
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    EXPECT_EQ(PartnerMessageBox(&result, "text", MB_OK, 0), 0); // own window visible
    frame.ShowWindow(SW_HIDE);
    EXPECT_EQ(PartnerMessageBox(&result, "text", MB_OK, 0), 0); // no partner
    EXPECT_EQ(result, -5);
    EXPECT_EQ(VxAfxMessageBox("shown here", MB_YESNO, 0), IDYES);
    EXPECT_EQ(m_boxes.back(), "shown here");
}

} // namespace

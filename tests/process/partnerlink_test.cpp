// The link between real processes: this test program is one program of the
// suite and the peer program (vxhost's partner frame) the other.
#include "linktest.h"

#include <thread>

namespace {

using linktest::LinkTest;
using linktest::PumpUntil;
using KData = KProcessIO::KData;

// A request with the array as payload, and the array of its reply.
bool Ask(HWND partner, ProcessIDType id, const CStringArray& in, CStringArray& out, int first = 0, int second = 0)
{
    KData* request = KProcessIO::InitPartner(id, KData::GetSize(in), nullptr);
    if (!request)
        return false;
    request->m_Param1 = first;
    request->m_Param2 = second;
    request->Write(in);
    KData* reply = KProcessIO::ExitPartner(request, KProcessIO::SendPartner(partner, request));
    if (!reply)
        return false;
    reply->Read(out);
    KProcessIO::ClosePartner(reply);
    return true;
}

CStringArray Strings(std::initializer_list<const char*> texts)
{
    CStringArray a;
    for (const char* t : texts)
        a.Add(t);
    return a;
}

pid_t ProcessOf(HWND hwnd)
{
    DWORD pid = 0;
    GetWindowThreadProcessId(hwnd, &pid);
    return static_cast<pid_t>(pid);
}

TEST_F(LinkTest, PartnerStartsHiddenWithTheProjectAndHandsOver)
{
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    frame.m_project = "C:\\Projekte\\Demo Neu";
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr) << Log();
    EXPECT_EQ(KProcessIO::m_hPartnerWnd, it);
    EXPECT_EQ(Suite("PROCESS", "Partner"), "X");
    EXPECT_EQ(Suite("MISC", "LastProg"), "IT");
    char title[256] = {};
    GetWindowTextA(it, title, sizeof title);
    EXPECT_EQ(std::string(title).rfind("VEXAL 5.5 Instalacja ", 0), 0u);

    CStringArray report;
    ASSERT_TRUE(KProcessIO::GetStringArray(vxhost::kReport, report, 0, 0, 0));
    ASSERT_EQ(report.GetSize(), 5);
    EXPECT_EQ(report[0], "@@C:\\Projekte\\Demo Neu");
    EXPECT_EQ(report[1], "0"); // hidden until activated
    EXPECT_EQ(report[2], "C:\\Projekte\\Demo Neu");
    EXPECT_EQ(report[3], "hidden");
    // Its partner is this program's frame, taken from "Partner" at its Init.
    EXPECT_EQ(report[4], std::to_string(reinterpret_cast<std::uintptr_t>(frame.GetSafeHwnd())).c_str());

    // Brought forward: the partner shows itself where this program stands.
    frame.MoveWindow(10, 20, 300, 200);
    EXPECT_EQ(KProcessIO::ActivatePartner(MainframeIT, SW_SHOW), it);
    ASSERT_TRUE(KProcessIO::GetStringArray(vxhost::kReport, report, 0, 0, 0));
    EXPECT_EQ(report[3], "visible");
    EXPECT_NE(Log().find("  START\n"), std::string::npos) << Log();
    // Both watch threads watch their partner, within their 500 ms.
    EXPECT_TRUE(PumpUntil([&] {
        const std::string log = Log();
        return log.find("THREAD-START/1-1") != std::string::npos && log.find("THREAD-START/1-2") != std::string::npos;
    }))
        << Log();
}

TEST_F(LinkTest, RequestGetsItsReplyWithinTheSend)
{
    OpenFrame(MainframeAT);
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr);
    CStringArray back;
    const CStringArray sent = Strings({"K1", "", "Relais 24V \xB1"});
    ASSERT_TRUE(Ask(it, vxhost::kEcho, sent, back));
    ASSERT_EQ(back.GetSize(), 3);
    EXPECT_EQ(back[2], "Relais 24V \xB1");
    EXPECT_EQ(KProcessIO::m_pReceiver, nullptr);
    // SendFunction and SendStringArray give the partner's answer and 1.
    EXPECT_EQ(KProcessIO::SendFunction(vxhost::kEcho, 1, 2, 0), 1);
    CStringArray some = Strings({"a"});
    EXPECT_EQ(KProcessIO::SendStringArray(ProcessIDType(4711), some, 0, 0, 0), 1);
}

TEST_F(LinkTest, ReplyToAQuestionAskedBackDuringTheRequest)
{
    OpenFrame(MainframeAT);
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr);
    // IT's handler asks this program while this program waits for IT.
    CStringArray back;
    ASSERT_TRUE(Ask(it, vxhost::kAskBack, CStringArray(), back));
    ASSERT_EQ(back.GetSize(), 1);
    EXPECT_EQ(back[0], "answer from AT");
}

TEST_F(LinkTest, ProfileRelaysWorkBothWaysAndCarryZero)
{
    SetSuite("PROCESS", "WriteLog", "4");
    OpenFrame(MainframeAT);
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr);

    // This program writes and reads IT's settings through IT.
    EXPECT_EQ(KProcessIO::WriteProfileInt("Demo", "Zero", 0, 0), 1);
    EXPECT_EQ(KProcessIO::WriteProfileStringA("Demo", "Name", "Plan 12", 0), 1);
    EXPECT_EQ(KProcessIO::WriteProfileInt("Demo", "Token", static_cast<int>(vx::kPartnerIntZero), 0), 1);
    EXPECT_EQ(KProcessIO::WriteProfileInt("Demo", "Big", 100000, 0), 1);
    EXPECT_EQ(KProcessIO::WriteProfileStringA("Demo", "Three", "abc", 0), 1);
    EXPECT_EQ(KProcessIO::GetProfileIntA("Demo", "Zero", 5, 0), 0u);
    EXPECT_EQ(KProcessIO::GetProfileIntA("Demo", "Token", 5, 0), vx::kPartnerIntZero);
    EXPECT_EQ(KProcessIO::GetProfileIntA("Demo", "Big", 5, 0), 100000u);
    EXPECT_EQ(KProcessIO::GetProfileStringA("Demo", "Name", "", 0), "Plan 12");
    EXPECT_EQ(KProcessIO::GetProfileStringA("Demo", "Three", "", 0), "abc");
    EXPECT_EQ(KProcessIO::GetProfileStringA("Demo", "Missing", "dflt", 0), "dflt");
    const std::string itFile = vxtest::ReadBytes(vx::HostPath(g_profiledirIT));
    EXPECT_NE(itFile.find("Zero=0\r\n"), std::string::npos) << itFile;
    EXPECT_NE(itFile.find("Big=100000\r\n"), std::string::npos);
    // Through IT, not from its file: the requests are in the log.
    EXPECT_NE(Log().find("1-"), std::string::npos);
    EXPECT_NE(Log().find("102:SEND"), std::string::npos);
    EXPECT_NE(Log().find("103:SEND"), std::string::npos);

    // IT writes and reads this program's settings through this program.
    CStringArray back;
    ASSERT_TRUE(Ask(it, vxhost::kRelayBack, Strings({"Demo", "Back", "42"}), back, 0, 0));
    ASSERT_EQ(back.GetSize(), 3);
    EXPECT_EQ(back[0], "1");
    EXPECT_EQ(back[1], "42");
    EXPECT_EQ(back[2], "42");
    ASSERT_TRUE(Ask(it, vxhost::kRelayBack, Strings({"Demo", "Nil", "0"}), back, 0, 0));
    EXPECT_EQ(back[1], "0");
    EXPECT_EQ(back[2], "0");
    const std::string atFile = vxtest::ReadBytes(vx::HostPath(g_profiledirAT));
    EXPECT_NE(atFile.find("Back=42\r\n"), std::string::npos) << atFile;
    EXPECT_NE(Log().find("2-"), std::string::npos);
}

TEST_F(LinkTest, MessageBoxOfAHiddenProgramIsShownByThePartner)
{
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr);
    frame.ShowWindow(SW_HIDE);
    const size_t here = m_boxes.size();
    EXPECT_EQ(VxAfxMessageBox("Plan 12 saved. Print?", MB_YESNO | MB_DEFBUTTON2, 0), IDNO);
    EXPECT_EQ(VxMessageBox("Overwrite?", "caption stays here", MB_OKCANCEL), IDOK);
    EXPECT_EQ(m_boxes.size(), here); // none shown by this program
    EXPECT_NE(Log().find("PROC: Plan 12 saved. Print?"), std::string::npos);
}

TEST_F(LinkTest, KilledPartnerClosesTheMainWindowWithinASecond)
{
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr);
    // The watch thread is watching once it has seen the partner.
    ASSERT_TRUE(PumpUntil([&] { return Log().find("THREAD-START/1-1") != std::string::npos; }, 3000));
    const pid_t pid = ProcessOf(it);
    ASSERT_GT(pid, 0);
    const auto killed = std::chrono::steady_clock::now();
    ASSERT_EQ(kill(pid, SIGKILL), 0);
    EXPECT_TRUE(PumpUntil([&] { return frame.m_closeRequests > 0; }, 3000));
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - killed).count();
    EXPECT_LT(ms, 1000);
    EXPECT_FALSE(IsWindow(it));
    EXPECT_TRUE(PumpUntil([] { return KProcessIO::m_Active == 0; }, 1000));
    EXPECT_EQ(m_beeps, 1);
    EXPECT_NE(Log().find("THREAD-END-1-1"), std::string::npos) << Log();
    // Everything now goes to the disk.
    EXPECT_EQ(KProcessIO::InitPartner(ProcessIDType(5), 0, nullptr), nullptr);
}

TEST_F(LinkTest, OpenDialogKeepsTheFrameWhenThePartnerDies)
{
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    frame.m_cModalStack = 1;
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr);
    frame.ShowWindow(SW_HIDE);
    kill(ProcessOf(it), SIGKILL);
    EXPECT_TRUE(PumpUntil([&] { return frame.IsWindowVisible() != FALSE; }, 3000));
    EXPECT_EQ(frame.m_closeRequests, 0);
    frame.m_cModalStack = 0;
}

TEST_F(LinkTest, StartWaitsWhileAWindowNeverSaysReady)
{
    SetSuite("PROCESS", "ExecuteTimeout", "400");
    OpenFrame(MainframeAT);
    // The partner opens its window but never writes "X", and ends later.
    vxtest::ScopedEnv noReady("VXPEER_NO_READY", "1");
    vxtest::ScopedEnv lifetime("VXPEER_LIFETIME_MS", "2000");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(KProcessIO::ActivatePartner(MainframeIT, 0), nullptr);
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    // The timeout counts only while no window is there.
    EXPECT_GE(ms, 1500);
    EXPECT_EQ(KProcessIO::m_hPartnerWnd, nullptr);
    ASSERT_EQ(m_frame->m_messages.size(), 1u);
    const std::string message = m_frame->m_messages[0].StdString();
    EXPECT_NE(message.find("jest uruchomiony, b"), std::string::npos) << message; // 6708
    EXPECT_NE(message.find("/programs/IT\n\n"), std::string::npos) << message;
    EXPECT_NE(message.find("< IT >"), std::string::npos);
}

TEST_F(LinkTest, MissingProgramFailsWithItsMessageOrFallsBackToHomeProg)
{
    const std::string empty = linktest::Environment().root.Path() + "/empty/";
    mkdir(empty.c_str(), 0700);
    m_frame = std::make_unique<vxhost::PartnerFrame>(MainframeAT);
    m_frame->m_say = [](const std::string&) {};
    m_frame->m_quitOnClose = false;
    m_frame->Open("", empty.c_str());
    EXPECT_EQ(KProcessIO::ActivatePartner(MainframeIT, 0), nullptr);
    ASSERT_EQ(m_frame->m_messages.size(), 1u);
    // 6709 with an empty path: nothing was there to start.
    const std::string message = m_frame->m_messages[0].StdString();
    EXPECT_EQ(message.rfind("\n\nUruchomienie programu ", 0), 0u) << message;
    EXPECT_NE(message.find("< IT > niemo"), std::string::npos) << message;

    // "HomeProgIT" names the program when it is not in the program directory.
    SetSuite("MISC", "HomeProgIT", (linktest::Environment().programs + "/IT").c_str());
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    EXPECT_NE(it, nullptr);
    EXPECT_EQ(m_frame->m_messages.size(), 1u);
}

TEST_F(LinkTest, TwoProgramsOfOneKindAreFoundByTheSearchMode)
{
    OpenFrame(MainframeAT);
    const linktest::Peer first = StartPeer("IT");
    const linktest::Peer second = StartPeer("IT");
    ASSERT_NE(first.window, nullptr);
    ASSERT_NE(second.window, nullptr);
    EXPECT_NE(first.window, second.window);
    // Mode 0: the first window whose process is IT; the older process comes first.
    EXPECT_EQ(KProcessIO::GetVxProg(MainframeIT, 0, 1), first.window);
    // Both answer on their own.
    CStringArray report;
    KProcessIO::m_hPartnerWnd = second.window;
    ASSERT_TRUE(KProcessIO::GetStringArray(vxhost::kReport, report, 0, 0, 0));
    EXPECT_EQ(report[1], "1");

    vx::ResetPartnerLink();
    SetSuite("PROCESS", "SearchMode", "1");
    OpenFrame(MainframeAT);
    EXPECT_EQ(KProcessIO::GetVxProg(MainframeIT, 0, 1), second.window);
}

} // namespace

// The watch thread of the link on its own: it watches once the run flag is
// up and both programs' windows are known, and when the partner's window
// goes it closes this program's main window on the pumping thread (or only
// brings it forward while a dialog is open), beeps and ends the link.
#include "linktest.h"

#include "platform/windows/cframewnd.h"

#include <thread>

namespace {

using linktest::LinkTest;
using linktest::PumpUntil;
using Watch = KProcessIO::KClosePartnerThread;

class MainWindow : public CFrameWnd {
public:
    MainWindow() { CreateEx("VEXAL 5.5 Plan", "VxMain", WS_OVERLAPPED, CRect(0, 0, 300, 200)); }
    int closes = 0;
    std::thread::id closedOn;

protected:
    void OnClose() override
    {
        ++closes;
        closedOn = std::this_thread::get_id();
    }
};

// The link's globals as Init leaves them, for the thread alone.
class WatchTest : public LinkTest {
protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        KProcessIO::m_WriteLogState = ProcessLevelType(1);
        KProcessIO::m_Active = 1;
    }
    void TearDown() override
    {
        m_watch.Join();
        AfxSetMainWnd(nullptr);
        KProcessIO::m_hPartnerWnd = nullptr;
        LinkTest::TearDown();
    }
    bool Logged(const char* text) { return Log().find(text) != std::string::npos; }

    Watch m_watch;
};

} // namespace

TEST_F(WatchTest, WaitsForTheRunFlagBeforeItWatches)
{
    m_watch.Create(MainframeAT);
    EXPECT_EQ(m_watch.m_dwStatus, 259u);
    EXPECT_TRUE(PumpUntil([&] { return m_watch.m_bIdle == 0; }, 2000));
    vx::PumpFor(700, [] { return false; });
    EXPECT_FALSE(Logged("THREAD-START"));
    m_watch.SetRun(1);
    EXPECT_TRUE(PumpUntil([&] { return Logged("THREAD-START-1"); }, 2000));
    // Lowered, the flag ends the watch; the link is then ended for good.
    m_watch.SetRun(0);
    EXPECT_TRUE(PumpUntil([&] { return m_watch.m_bIdle == 1 && KProcessIO::m_Active == 0; }, 3000));
    EXPECT_TRUE(Logged("THREAD-END-1-0")) << Log();
    EXPECT_EQ(m_beeps, 0);
}

TEST_F(WatchTest, ClosesTheMainWindowOnItsOwnThreadWhenThePartnerGoes)
{
    MainWindow main;
    AfxSetMainWnd(&main);
    CWnd partner;
    partner.CreateEx("VEXAL 5.5 Instalacja", "AfxMDIFrame42");
    m_watch.Create(MainframeIT);
    m_watch.SetRun(1);
    ASSERT_TRUE(PumpUntil([&] { return Logged("THREAD-START-2"); }, 2000));
    // Without the partner's window there is nothing to watch yet.
    vx::PumpFor(700, [] { return false; });
    EXPECT_FALSE(Logged("THREAD-START/1"));
    KProcessIO::m_hPartnerWnd = partner.GetSafeHwnd();
    ASSERT_TRUE(PumpUntil([&] { return Logged("THREAD-START/1-2"); }, 2000));
    vx::PumpFor(700, [] { return false; });
    EXPECT_EQ(main.closes, 0) << "the partner is still there";

    partner.DestroyWindow();
    EXPECT_TRUE(PumpUntil([&] { return main.closes > 0; }, 3000));
    EXPECT_EQ(main.closes, 1);
    EXPECT_EQ(main.closedOn, std::this_thread::get_id()) << "closed by the pumping thread";
    EXPECT_TRUE(PumpUntil([&] { return m_watch.m_bIdle == 1 && KProcessIO::m_Active == 0; }, 2000));
    EXPECT_TRUE(Logged("THREAD-END-2-1")) << Log();
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(WatchTest, AnOpenDialogKeepsTheFrameAndBringsItForward)
{
    MainWindow main;
    main.m_cModalStack = 1;
    AfxSetMainWnd(&main);
    CWnd partner;
    partner.CreateEx("VEXAL 5.5 Instalacja", "AfxMDIFrame42");
    KProcessIO::m_hPartnerWnd = partner.GetSafeHwnd();
    m_watch.Create(MainframeAT);
    m_watch.SetRun(1);
    ASSERT_TRUE(PumpUntil([&] { return Logged("THREAD-START/1-1"); }, 2000));
    partner.DestroyWindow();
    EXPECT_TRUE(PumpUntil([&] { return main.IsWindowVisible() != FALSE; }, 3000));
    EXPECT_EQ(main.closes, 0);
    EXPECT_TRUE(PumpUntil([] { return KProcessIO::m_Active == 0; }, 2000));
}

// Without a main window nothing is closed, but the link still ends.
TEST_F(WatchTest, APartnerGoneWithoutAMainWindowEndsTheLink)
{
    CWnd partner;
    partner.CreateEx("VEXAL 5.5 Instalacja", "AfxMDIFrame42");
    KProcessIO::m_hPartnerWnd = partner.GetSafeHwnd();
    MainWindow main;
    AfxSetMainWnd(&main);
    m_watch.Create(MainframeAT);
    m_watch.SetRun(1);
    ASSERT_TRUE(PumpUntil([&] { return Logged("THREAD-START/1-1"); }, 2000));
    AfxSetMainWnd(nullptr);
    partner.DestroyWindow();
    EXPECT_TRUE(PumpUntil([] { return KProcessIO::m_Active == 0; }, 3000));
    vx::PumpFor(300, [] { return false; });
    EXPECT_EQ(main.closes, 0);
    EXPECT_EQ(m_beeps, 1);
}

// Joining (at the end of the process, or for a new Create) ends the thread
// wherever it is, without a log line, and leaves it as never created.
TEST_F(WatchTest, JoinEndsTheThreadSilentlyWhereverItWaits)
{
    m_watch.Create(MainframeAT);
    ASSERT_TRUE(PumpUntil([&] { return m_watch.m_bIdle == 0; }, 2000));
    m_watch.Create(MainframeIT); // ends the first, still waiting for its flag
    EXPECT_EQ(m_watch.m_Type, MainframeIT);
    m_watch.SetRun(1);
    ASSERT_TRUE(PumpUntil([&] { return Logged("THREAD-START-2"); }, 2000));
    EXPECT_FALSE(Logged("THREAD-START-1"));
    m_watch.Join();
    EXPECT_EQ(m_watch.m_dwStatus, 0u);
    EXPECT_EQ(m_watch.m_bRun, 0);
    EXPECT_EQ(m_watch.m_bIdle, 1);
    EXPECT_FALSE(Logged("THREAD-END")) << Log();
    EXPECT_EQ(KProcessIO::m_Active, 1) << "the link is left as it was";
    m_watch.Join(); // nothing runs: nothing happens
}

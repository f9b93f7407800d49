// The round trip of a request with a reply over the partner link between
// two processes (InitPartner, SendPartner, the partner's reply sent back
// within the request, ExitPartner, ClosePartner), beside a bare Unix-socket
// ping-pong of the same bytes between two processes: a block of the
// request's size out, one of the reply's size back.
//
// The partner is a child process (made by fork before anything else runs)
// with a frame that answers ID 1000 with a reply as large as the request.
// Both sides keep their settings, log and window bus in a temporary
// directory.
#include <vxbase.h>

#include "twoprograms.h"

#include <benchmark/benchmark.h>

#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using KData = KProcessIO::KData;

constexpr ProcessIDType kRequest = ProcessIDType(1000);
constexpr int kPayload = 100;
// A block's bytes: the payload, the link's margin of 1000 and the fixed 38.
constexpr int kBlockBytes = kPayload + 1000 + 38;

// The program on either side: answers requests with a reply of the same
// payload size, and takes replies over.
class Frame : public CMDIFrameWnd {
protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != WM_COPYDATA)
            return CMDIFrameWnd::WindowProc(message, wParam, lParam);
        KData* block = vx::AcceptPartnerBlock(reinterpret_cast<const COPYDATASTRUCT*>(lParam));
        if (!block)
            return 0;
        if (block->m_ID == vx::kPartnerReply || block->m_ID == vx::kPartnerReplyTaken)
            return KProcessIO::ClosePartner(block);
        char payload[kPayload];
        block->Read(payload, kPayload);
        KData* reply = KProcessIO::InitPartner(vx::kPartnerReply, kPayload, block);
        if (!reply)
            return 0;
        reply->Write(payload, kPayload);
        KProcessIO::SendPartner(reinterpret_cast<HWND>(wParam), reply);
        KProcessIO::ExitPartner(reply, 0);
        return 1;
    }
};

void StartProgram(Frame& frame, MainframeType type, const char* title)
{
    vx::AttachLibrary();
    g_MainframeType = type;
    frame.CreateEx(title, "AfxMDIFrame42");
    g_pDLLMainframe = &frame;
    AfxSetMainWnd(&frame);
    KProcessIO::Init(type, &frame, "", SW_SHOWNORMAL);
}

struct Pair : benchsupport::TwoPrograms {
    Frame* frame = nullptr;
    HWND partnerWindow = nullptr;
};

void EndPair();

Pair& ThePair()
{
    static Pair* pair = [] {
        auto* p = new Pair;
        p->dir = benchsupport::MakeScratchHome();
        if (p->dir.empty())
            return p;

        // The bare echo: the same bytes back and forth, nothing else.
        p->bare = benchsupport::StartEcho(p->echo, kBlockBytes);

        // The partner program.
        p->partner = fork();
        if (p->partner == 0) {
            // The partner confirms a program by its process name.
            prctl(PR_SET_NAME, "IT", 0, 0, 0);
            Frame frame;
            StartProgram(frame, MainframeIT, "VEXAL 5.5 Instalacja Bench");
            vx::RunMessageLoop();
            _exit(0);
        }
        p->frame = new Frame;
        StartProgram(*p->frame, MainframeAT, "VEXAL 5.5 Bench");
        vx::PumpFor(5000, [p] { return (p->partnerWindow = KProcessIO::GetVxProg(MainframeIT, 0, 1)) != nullptr; });
        p->ok = p->partnerWindow != nullptr;
        std::atexit(EndPair);
        return p;
    }();
    return *pair;
}

void EndPair()
{
    benchsupport::EndBoth(ThePair());
}

// One request with its reply over the link; false if no reply came.
bool LinkRoundTrip(HWND partner, char* payload)
{
    KData* request = KProcessIO::InitPartner(kRequest, kPayload, nullptr);
    request->Write(payload, kPayload);
    const int result = KProcessIO::SendPartner(partner, request);
    KData* reply = KProcessIO::ExitPartner(request, result);
    if (!reply)
        return false;
    reply->Read(payload, kPayload);
    KProcessIO::ClosePartner(reply);
    return true;
}

bool BareRoundTrip(int socket, std::vector<char>& block)
{
    return benchsupport::WriteAll(socket, block.data(), block.size()) &&
           benchsupport::ReadAll(socket, block.data(), block.size());
}

void BM_PartnerRoundTrip(benchmark::State& state)
{
    Pair& p = ThePair();
    if (!p.ok) {
        state.SkipWithError("the partner did not come up");
        return;
    }
    char payload[kPayload];
    std::memset(payload, 'p', sizeof payload);
    for (auto _ : state) {
        if (!LinkRoundTrip(p.partnerWindow, payload)) {
            state.SkipWithError("no reply");
            return;
        }
        benchmark::DoNotOptimize(payload[0]);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * 2 * kBlockBytes);
}

void BM_BareSocketPingPong(benchmark::State& state)
{
    Pair& p = ThePair();
    std::vector<char> block(kBlockBytes, 'b');
    for (auto _ : state) {
        if (!BareRoundTrip(p.bare, block)) {
            state.SkipWithError("the echo ended");
            return;
        }
        benchmark::DoNotOptimize(block[0]);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * 2 * kBlockBytes);
}

// Both round trips in turn: the medians of each, and their ratio.
void BM_PartnerVersusBare(benchmark::State& state)
{
    Pair& p = ThePair();
    if (!p.ok) {
        state.SkipWithError("the partner did not come up");
        return;
    }
    char payload[kPayload];
    std::memset(payload, 'p', sizeof payload);
    std::vector<char> block(kBlockBytes, 'b');
    benchsupport::RunInTurn(
        state, "link_median_ns",
        [&]() -> const char* { return LinkRoundTrip(p.partnerWindow, payload) ? nullptr : "no reply"; },
        [&]() -> const char* { return BareRoundTrip(p.bare, block) ? nullptr : "the echo ended"; });
}

} // namespace

BENCHMARK(BM_PartnerRoundTrip)->UseRealTime()->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_BareSocketPingPong)->UseRealTime()->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_PartnerVersusBare)->UseRealTime()->MinTime(2.0);

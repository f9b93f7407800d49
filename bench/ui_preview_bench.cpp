// One drawing preview between two processes (KDateiVorschau's LoadDrawing
// in AT: the shared block, a shared-image device of 300 x 200 pixels, the
// broadcast, IT drawing vxhost's test picture into it, and the copy into the
// kept bitmap and the window), beside a bare round trip over a Unix socket
// (the block's 264 bytes out and back) with a memcpy of the same pixels.
// IT either fills and frames the pixels (the mechanism alone) or draws
// vxhost's test picture into them.
//
// IT is a child process (made by fork before anything else runs) with
// vxhost's frame and its preview host; the echo is another. Both sides keep
// their settings, log, window bus and blocks in a temporary directory.
#include "partnerhost.h"
#include "previewpainter.h"

#include <vxbase.h>
#include <vxbase_ui.h>

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

constexpr int kWidth = 300;
constexpr int kHeight = 200;
constexpr std::size_t kPixelBytes = std::size_t(kWidth) * kHeight * 4;
constexpr std::size_t kBlockBytes = 264;
const char* const kPixelsPath = "C:\\Projekte\\Demo\\Schalt.ARD";
const char* const kPicturePath = "C:\\Projekte\\Demo\\Schalt.ELD";

// IT's way of drawing: vxhost's test picture for a file of ".ELD", and for
// ".ARD" the pixels alone (filled and framed), as the bare side copies them.
class BenchHost : public vxhost::TestPictureHost {
public:
    bool Paint(LPARAM dc, const char* path, MainframeType drawer) override
    {
        const CString file = path;
        if (file.Right(4) != ".ARD")
            return TestPictureHost::Paint(dc, path, drawer);
        CDC* cdc = CDC::FromHandle(reinterpret_cast<HDC>(dc));
        CRect box;
        cdc->GetClipBox(&box);
        cdc->FillSolidRect(&box, RGB(255, 255, 255));
        CBrush frame(vxhost::kPictureFrame);
        cdc->FrameRect(&box, &frame);
        return true;
    }
};

// The preview window of AT, and its preview with the load step reachable.
class Target : public CWnd {
public:
    struct Preview : KDateiVorschau {
        using KDateiVorschau::LoadDrawing;
    } preview;
};

struct Pair : benchsupport::TwoPrograms {
    vxhost::PartnerFrame* frame = nullptr;
    Target* target = nullptr;
};

void EndPair();

Pair& ThePair()
{
    static Pair* pair = [] {
        auto* p = new Pair;
        p->dir = benchsupport::MakeScratchHome();
        if (p->dir.empty())
            return p;
        setenv("QT_QPA_PLATFORM", "offscreen", 1);

        // The bare echo: the block's bytes back, nothing else.
        p->bare = benchsupport::StartEcho(p->echo, kBlockBytes);

        // IT, which draws.
        p->partner = fork();
        if (p->partner == 0) {
            prctl(PR_SET_NAME, "IT", 0, 0, 0);
            vx::InitUi();
            vx::AttachLibrary();
            vxhost::UseSuiteDirectoryForProgramFiles();
            BenchHost host;
            vxhost::PartnerFrame::SetPreviewHost(&host);
            vxhost::PartnerFrame frame(MainframeIT);
            frame.m_say = [](const std::string&) {};
            frame.Open("", "");
            vxhost::RunPartnerLoop(0);
            _exit(0);
        }
        vx::InitUi();
        vx::AttachLibrary();
        vxhost::UseSuiteDirectoryForProgramFiles();
        p->frame = new vxhost::PartnerFrame(MainframeAT);
        p->frame->m_say = [](const std::string&) {};
        p->frame->Open("", "");
        p->target = new Target;
        p->target->CreateEx("Vorschau", "VxPreviewTarget", WS_POPUP, CRect(0, 0, kWidth, kHeight));
        p->ok = vx::PumpFor(5000, [] { return KProcessIO::GetVxProg(MainframeIT, 0, 1) != nullptr; });
        std::atexit(EndPair);
        return p;
    }();
    return *pair;
}

void EndPair()
{
    benchsupport::EndBoth(ThePair());
}

bool PreviewRoundTrip(Target& target, const char* file = kPixelsPath)
{
    CString path = file;
    return target.preview.LoadDrawing(path, &target, 1) == 0;
}

bool BareRoundTrip(int socket, std::vector<char>& block, const std::vector<char>& pixels, std::vector<char>& copy)
{
    if (!benchsupport::WriteAll(socket, block.data(), block.size()) ||
        !benchsupport::ReadAll(socket, block.data(), block.size()))
        return false;
    std::memcpy(copy.data(), pixels.data(), pixels.size());
    benchmark::ClobberMemory();
    return true;
}

void BM_PreviewRoundTrip(benchmark::State& state)
{
    Pair& p = ThePair();
    if (!p.ok) {
        state.SkipWithError("IT did not come up");
        return;
    }
    const char* file = state.range(0) ? kPicturePath : kPixelsPath;
    for (auto _ : state) {
        if (!PreviewRoundTrip(*p.target, file)) {
            state.SkipWithError("IT did not draw");
            return;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kPixelBytes));
}

void BM_BareRoundTripAndCopy(benchmark::State& state)
{
    Pair& p = ThePair();
    std::vector<char> block(kBlockBytes, 'b');
    std::vector<char> pixels(kPixelBytes, 'p');
    std::vector<char> copy(kPixelBytes);
    for (auto _ : state) {
        if (!BareRoundTrip(p.bare, block, pixels, copy)) {
            state.SkipWithError("the echo ended");
            return;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kPixelBytes));
}

// Both in turn: the medians of each, and their ratio.
void BM_PreviewVersusBare(benchmark::State& state)
{
    Pair& p = ThePair();
    if (!p.ok) {
        state.SkipWithError("IT did not come up");
        return;
    }
    std::vector<char> block(kBlockBytes, 'b');
    std::vector<char> pixels(kPixelBytes, 'p');
    std::vector<char> copy(kPixelBytes);
    const char* file = state.range(0) ? kPicturePath : kPixelsPath;
    benchsupport::RunInTurn(
        state, "preview_median_ns",
        [&]() -> const char* { return PreviewRoundTrip(*p.target, file) ? nullptr : "IT did not draw"; },
        [&]() -> const char* { return BareRoundTrip(p.bare, block, pixels, copy) ? nullptr : "the echo ended"; });
}

} // namespace

// Argument 0: IT fills and frames the pixels; 1: IT draws vxhost's test
// picture (text and a circuit) into them.
BENCHMARK(BM_PreviewRoundTrip)->Arg(0)->Arg(1)->UseRealTime()->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_BareRoundTripAndCopy)->UseRealTime()->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_PreviewVersusBare)->Arg(0)->Arg(1)->UseRealTime()->MinTime(2.0);

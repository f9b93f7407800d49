// vxhost as AT or IT: "vxhost --as AT|IT [--demo | --open PROJECT
// [--screenshot DIR]] [--lifetime SECONDS] [COMMAND LINE]", or a program
// file named AT or IT that links to vxhost (as the partner starts it). With
// --demo, AT shows the link: it starts IT, relays a profile write and read,
// hands IT a message box, and both end. With --open, AT opens its file
// dialog with the preview on PROJECT, IT drawing the drawings' previews.
// Otherwise the program serves its partner and ends with it; having no
// partner, it ends after SECONDS (60 unless given), as nobody could close
// its window: the frame of a program of the suite is never shown here.
#include "partnerhost.h"

#ifdef VXHOST_WITH_UI
#include "partneropen.h"
#include "previewpainter.h"
#endif

#include <sys/prctl.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>

namespace vxhost {
namespace {

constexpr int kDemoScope = 0;
constexpr int kDefaultLifetimeSeconds = 60;

void Line(PartnerFrame& frame, const std::string& text)
{
    std::printf("[%s] %s\n", frame.Type() == MainframeAT ? "AT" : "IT", vx::ToUtf8(text).c_str());
    std::fflush(stdout);
}

int Usage()
{
    std::fprintf(stderr, "usage: vxhost --as AT|IT [--demo | --open PROJECT [--screenshot DIR]] [--lifetime SECONDS]\n"
                         "                      [/SINGLE | @@PROJECT | @@@PROJECT]\n"
                         "       (--demo and --open are AT's: AT starts IT and shows the link or the preview)\n");
    return 2;
}

struct Options {
    bool demo = false;
    std::string open;  // the project of the preview dialog
    std::string shots; // where the preview dialog's pictures go
    int lifetimeSeconds = kDefaultLifetimeSeconds;
    std::string commandLine; // the words that are no option, as the suite passes them
};

// False for an option this program does not take.
bool ParseOptions(MainframeType type, const std::vector<std::string>& words, Options& out)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& w = words[i];
        if (w == "--demo" && type == MainframeAT && !out.demo && out.open.empty()) {
            out.demo = true;
        } else if (w == "--open" && type == MainframeAT && !out.demo && out.open.empty() && i + 1 < words.size() &&
                   !words[i + 1].empty()) {
            out.open = words[++i];
        } else if (w == "--screenshot" && type == MainframeAT && out.shots.empty() && i + 1 < words.size() &&
                   !words[i + 1].empty()) {
            out.shots = words[++i];
        } else if (w == "--lifetime" && i + 1 < words.size()) {
            char* end = nullptr;
            const long seconds = std::strtol(words[++i].c_str(), &end, 10);
            if (words[i].empty() || *end || seconds < 1 || seconds > 86400)
                return false;
            out.lifetimeSeconds = static_cast<int>(seconds);
        } else if (w.rfind("--", 0) == 0) {
            return false;
        } else {
            out.commandLine += (out.commandLine.empty() ? "" : " ") + w;
        }
    }
    // Pictures are of the preview dialog only.
    return out.shots.empty() || !out.open.empty();
}

// Pumps until the frame's loop ends (WM_QUIT), or until the program has
// been without a live partner for `idleMs`. Returns the exit code.
int ServeWhilePartnered(PartnerFrame& frame, int idleMs)
{
    using Clock = std::chrono::steady_clock;
    auto lastSeen = Clock::now();
    MSG msg;
    for (;;) {
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (msg.message == WM_QUIT)
                return static_cast<int>(msg.wParam);
            DispatchMessageA(&msg);
        }
        const HWND partner = std::atomic_ref<HWND>(KProcessIO::m_hPartnerWnd).load();
        if (partner && IsWindow(partner)) {
            lastSeen = Clock::now();
        } else if (Clock::now() - lastSeen >= std::chrono::milliseconds(idleMs)) {
            Line(frame, "no partner for " + std::to_string(idleMs / 1000) + " s: ending");
            return 0;
        }
        vx::PumpFor(100, [] {
            MSG peek;
            return PeekMessageA(&peek, nullptr, 0, 0, PM_NOREMOVE) != FALSE;
        });
    }
}

bool WaitUntil(int milliseconds, const std::function<bool()>& done)
{
    return vx::PumpFor(milliseconds, done);
}

int RunDemo(PartnerFrame& frame)
{
    Line(frame, "up: \"" + frame.GetWindowTextString().StdString() + "\"");
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    if (!it) {
        Line(frame, "IT could not be started");
        return 1;
    }
    char title[256] = {};
    GetWindowTextA(it, title, sizeof title);
    DWORD pid = 0;
    GetWindowThreadProcessId(it, &pid);
    Line(frame, std::string("started IT and found its window \"") + title + "\" (process " + std::to_string(pid) +
                    ")");

    // Settings of IT, written and read through IT itself.
    const int wroteInt = KProcessIO::WriteProfileInt("Demo", "Sheets", 0, kDemoScope);
    const int wroteText = KProcessIO::WriteProfileStringA("Demo", "Greeting", "Hello from AT", kDemoScope);
    const unsigned sheets = KProcessIO::GetProfileIntA("Demo", "Sheets", -1, kDemoScope);
    const CString greeting = KProcessIO::GetProfileStringA("Demo", "Greeting", "", kDemoScope);
    Line(frame, "relayed writes to IT's settings: " + std::to_string(wroteInt) + ", " + std::to_string(wroteText));
    Line(frame, "relayed reads from IT's settings: Sheets=" + std::to_string(sheets) + " Greeting=\"" +
                    greeting.StdString() + "\"");

    // A program running hidden hands its boxes to its partner.
    KProcessIO::DeActivate(1);
    const int answer = VxAfxMessageBox("Plan 12 was saved. Print it now?", MB_YESNO | MB_ICONQUESTION, 0);
    Line(frame, std::string("the box was answered by IT: ") + (answer == IDYES ? "Yes" : answer == IDNO ? "No" : "?"));

    // AT ends; IT's watch thread sees the window go and closes IT too.
    Line(frame, "ending");
    frame.Close();
    const bool gone = WaitUntil(5000, [it] { return !IsWindow(it); });
    Line(frame, gone ? "IT has ended with its partner" : "IT is still running");
    return gone && wroteInt && wroteText && sheets == 0 && greeting == "Hello from AT" && answer == IDYES ? 0 : 1;
}

int RunPartner(MainframeType type, const std::vector<std::string>& words, const char* argv0)
{
    Options options;
    if (!ParseOptions(type, words, options))
        return Usage();
    const std::string& commandLine = options.commandLine;
    // The partner confirms a window by the name of its process.
    prctl(PR_SET_NAME, type == MainframeAT ? "AT" : "IT", 0, 0, 0);
#ifdef VXHOST_WITH_UI
    // The partner may ask for previews (the painter starts the window
    // classes when it is first asked).
    InstallPreviewHost();
#endif
    vx::AttachLibrary();
    UseSuiteDirectoryForProgramFiles();
    // The beep of a program whose partner has gone would only ring the
    // terminal's bell here.
    vx::SetBeepHook([](UINT) {});
    vx::SetMessageBoxHandler([type](const vx::MessageBoxRequest& request) {
        const int answer = vx::DefaultButtonOf(request.type);
        std::printf("[%s] box shown: \"%s\", answered %s\n", type == MainframeAT ? "AT" : "IT",
                    vx::ToUtf8(request.text).c_str(), answer == IDYES ? "Yes" : answer == IDOK ? "OK" : "No");
        std::fflush(stdout);
        return answer;
    });
    int rc = 0;
    {
        PartnerFrame frame(type);
        const int state = frame.Open(commandLine.c_str(), ProgramDirectory(argv0).c_str());
        if (state == SW_HIDE || state == SW_SHOW)
            frame.Ready();
        if (type == MainframeIT && (state == SW_HIDE || state == SW_SHOW))
            Line(frame, "started by AT with \"" + commandLine + "\"");
        else if (!options.demo && options.open.empty())
            Line(frame, "up: \"" + frame.GetWindowTextString().StdString() + "\"; ends with its partner, or after " +
                            std::to_string(options.lifetimeSeconds) + " s without one");
        if (options.demo) {
            rc = RunDemo(frame);
        } else if (!options.open.empty()) {
#ifdef VXHOST_WITH_UI
            rc = RunOpenDialog(options.open, options.shots);
#else
            Line(frame, "the preview dialog needs the window classes");
            rc = 1;
#endif
            // AT ends; IT's watch sees the window go and ends too.
            frame.Close();
        } else {
            rc = ServeWhilePartnered(frame, options.lifetimeSeconds * 1000);
        }
    }
#ifdef VXHOST_WITH_UI
    EndPreviewUi();
#endif
    vx::ResetPartnerLink();
    vx::StopWindowBus();
    vx::DetachLibrary();
    return rc;
}

} // namespace

bool PartnerMain(int argc, char** argv, int& exitCode)
{
    std::vector<std::string> words;
    MainframeType type = ProgramOfFileName(argv[0]);
    if (type) {
        words.assign(argv + 1, argv + argc);
    } else if (argc >= 2 && !std::strcmp(argv[1], "--as")) {
        type = argc >= 3 && (!_stricmp(argv[2], "AT") || !_stricmp(argv[2], "IT")) ? ProgramOfFileName(argv[2])
                                                                                  : MainframeType(0);
        if (!type) {
            std::fprintf(stderr, "vxhost: --as takes AT or IT\n");
            exitCode = Usage();
            return true;
        }
        words.assign(argv + 3, argv + argc);
    } else {
        return false;
    }
    exitCode = RunPartner(type, words, argv[0]);
    return true;
}

} // namespace vxhost

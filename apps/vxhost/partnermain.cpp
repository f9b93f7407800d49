// vxhost as AT or IT: "vxhost --as AT|IT [--demo] [COMMAND LINE]", or a
// program file named AT or IT that links to vxhost (as the partner starts
// it). With --demo, AT shows the link: it starts IT, relays a profile write
// and read, hands IT a message box, and both end.
#include "partnerhost.h"

#include <sys/prctl.h>

#include <chrono>
#include <cstring>

namespace vxhost {
namespace {

constexpr int kDemoScope = 0;

void Line(PartnerFrame& frame, const std::string& text)
{
    std::printf("[%s] %s\n", frame.Type() == MainframeAT ? "AT" : "IT", vx::ToUtf8(text).c_str());
    std::fflush(stdout);
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
    bool demo = false;
    std::string commandLine;
    for (const auto& w : words) {
        if (w == "--demo" && commandLine.empty()) {
            demo = true;
            continue;
        }
        commandLine += (commandLine.empty() ? "" : " ") + w;
    }
    // The partner confirms a window by the name of its process.
    prctl(PR_SET_NAME, type == MainframeAT ? "AT" : "IT", 0, 0, 0);
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
        rc = demo ? RunDemo(frame) : RunPartnerLoop(0);
    }
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
    } else if (argc >= 3 && !std::strcmp(argv[1], "--as")) {
        type = ProgramOfFileName(argv[2]);
        if (!type) {
            std::fprintf(stderr, "vxhost: --as takes AT or IT\n");
            exitCode = 2;
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

// A program of the suite for the link's tests: vxhost's partner frame as AT
// or IT, by the name it was started under ("AT" or "IT"), with the rest of
// its arguments as its command line. The environment shapes it:
//   VXPEER_NO_READY=1       never writes "X" to "Partner"
//   VXPEER_LIFETIME_MS=N    ends after N ms (default 60000, so that no test
//                           leaves a process behind)
//   VXPEER_TITLE=text       the title of its frame instead of the stem + "Demo"
#include "partnerhost.h"

#include <cstdlib>
#include <cstring>
#include <string>

int main(int argc, char** argv)
{
    const MainframeType type = vxhost::ProgramOfFileName(argv[0]);
    if (!type)
        return 2;
    std::string commandLine;
    for (int i = 1; i < argc; ++i)
        commandLine += std::string(i > 1 ? " " : "") + argv[i];
    const char* lifetime = std::getenv("VXPEER_LIFETIME_MS");
    const char* noReady = std::getenv("VXPEER_NO_READY");
    const char* title = std::getenv("VXPEER_TITLE");

    vx::AttachLibrary();
    vxhost::UseSuiteDirectoryForProgramFiles();
    vx::SetBeepHook([](UINT) {});
    int rc = 0;
    {
        vxhost::PartnerFrame frame(type);
        const int state = frame.Open(commandLine.c_str(), vxhost::ProgramDirectory(argv[0]).c_str());
        if (title)
            frame.SetWindowText(title);
        if ((state == SW_HIDE || state == SW_SHOW) && !(noReady && !std::strcmp(noReady, "1")))
            frame.Ready();
        rc = vxhost::RunPartnerLoop(lifetime ? std::atoi(lifetime) : 60000);
    }
    vx::ResetPartnerLink();
    vx::StopWindowBus();
    vx::DetachLibrary();
    return rc;
}

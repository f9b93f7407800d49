// Tour step: the partner link between two real processes. vxhost starts
// itself as AT (through a link named "AT"), AT starts IT the way the suite
// does, and both print what they do. Settings, the log and the window bus
// live in a temporary directory, so nothing of the user's is touched.
#include "democommand.h"

#include "suitehome.h"

#include <chrono>
#include <cstdio>
#include <string>

namespace {

constexpr int kLimitMs = 15000;

int RunPartner(vxhost::Args& args)
{
    if (!args.words.empty())
        return vxhost::Usage("partner");
    vxhost::Heading("Partner link: AT starts IT");
    const vxhost::SuiteHome home("vxlink");
    if (!home.Made()) {
        std::printf("no temporary directory\n");
        return 1;
    }
    const auto start = std::chrono::steady_clock::now();
    const int rc = home.RunAT({"--demo"}, kLimitMs);
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    std::printf("both programs ended %s after %lld ms; the link's log says:\n", rc == 0 ? "cleanly" : "with an error",
                static_cast<long long>(ms));
    const std::string log = home.Dir() + "/settings/VxProcess.log";
    if (FILE* f = std::fopen(log.c_str(), "rb")) {
        char line[512];
        int shown = 0;
        while (std::fgets(line, sizeof line, f) && shown < 16) {
            if (line[0] != '\n') {
                std::printf("  %s", line);
                ++shown;
            }
        }
        std::fclose(f);
    }
    return rc == 0 ? 0 : 1;
}

} // namespace

VXHOST_COMMAND("partner", "  AT starts IT, relays settings, hands over a message box", 90, RunPartner);

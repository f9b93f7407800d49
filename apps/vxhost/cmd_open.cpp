// The file dialog with the drawing preview, between two real programs.
//
//   vxhost open                   AT opens the preview dialog on a sample
//                                 project; IT draws the drawings' previews
//   vxhost open --screenshot DIR  writes open-preview.png (a drawing, drawn
//                                 by IT), open-nopreview.png (a file
//                                 nobody draws) and open-options.png (the
//                                 save dialog with two options), then ends
//
// Like "partner", vxhost starts itself as AT through a link named "AT", in a
// temporary directory with its own settings and window bus, and AT starts
// IT as the suite does. Without a display (and with --screenshot) the
// dialogs are driven as a user would: a drawing is picked, the preview
// turned off and on, a text file picked; in the save dialog an option is
// turned on and a name typed.
#include "democommand.h"

#ifdef VXHOST_WITH_UI

#include "suitehome.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int kLimitMs = 30000;

// The sample project: pages AT draws itself, drawings IT draws, and a file
// nobody draws.
void MakeProject(const std::string& dir)
{
    std::filesystem::create_directories(dir);
    for (const char* name : {"Plan.0001", "Plan.0002", "Schalt.ELD", "Klemmen.ARD", "Liste.txt"}) {
        if (std::FILE* f = std::fopen((dir + "/" + name).c_str(), "wb")) {
            std::fputs("demo\n", f);
            std::fclose(f);
        }
    }
}

int RunOpen(vxhost::Args& args)
{
    const std::string shots = vxhost::ScreenshotDir(args.words);
    if (shots.empty() && !args.words.empty())
        return vxhost::Usage("open");
    const vxhost::SuiteHome home("vxopen");
    if (!home.Made()) {
        std::printf("no temporary directory\n");
        return 1;
    }
    const std::string project = home.Dir() + "/Demo";
    MakeProject(project);

    std::vector<std::string> atArgs{"--open", project};
    if (!shots.empty()) {
        atArgs.push_back("--screenshot");
        atArgs.push_back(std::filesystem::absolute(shots).string());
    }
    const bool byUser = shots.empty() && (std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY"));
    return home.RunAT(atArgs, byUser ? 24 * 3600 * 1000 : kLimitMs) == 0 ? 0 : 1;
}

} // namespace

VXHOST_COMMAND_NO_TOUR("open", "[--screenshot DIR]  AT's open dialog with the drawing preview drawn by IT", 95,
                       RunOpen);

#endif

// vxhost: the sample host of VxBase.
//
//   vxhost              a short tour of what the library does
//   vxhost help         the list of commands
//   vxhost CMD ARGS...  one command
//   vxhost --as AT|IT   one program of the suite (see partnerhost.h)
//
// A command refuses arguments it does not take with its usage line and exit
// code 2, and every command ends by itself when run without a display.
#include "democommand.h"
#include "hostframe.h"
#include "partnerhost.h"

#include <vxbase.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace vxhost {

std::vector<Command>& Commands()
{
    static std::vector<Command> commands;
    return commands;
}

int Usage(const char* command)
{
    for (const auto& c : Commands()) {
        if (std::strcmp(c.name, command) != 0)
            continue;
        const char* gap = std::strstr(c.help, "  ");
        // A help text without two blanks has no synopsis: the command takes nothing.
        const std::string synopsis(c.help, gap ? static_cast<std::size_t>(gap - c.help) : 0);
        std::fprintf(stderr, "usage: vxhost %s%s%s\n", c.name, synopsis.empty() ? "" : " ", synopsis.c_str());
        break;
    }
    return 2;
}

bool IsOption(const std::string& word)
{
    return word.rfind("--", 0) == 0;
}

std::string ScreenshotDir(const std::vector<std::string>& words)
{
    if (words.size() == 2 && words[0] == "--screenshot" && !IsOption(words[1]))
        return words[1];
    return std::string();
}

bool MakePictureDir(const std::string& dir)
{
    std::error_code error;
    std::filesystem::create_directories(dir, error);
    if (!error && std::filesystem::is_directory(dir, error))
        return true;
    std::fprintf(stderr, "vxhost: cannot make the directory %s\n", dir.c_str());
    return false;
}

void Heading(const char* title)
{
    std::printf("\n== %s ==\n", title);
}

void Print(const std::string& codePageText)
{
    std::printf("%s", vx::ToUtf8(codePageText).c_str());
}

} // namespace vxhost

namespace {

void SortCommands()
{
    auto& commands = vxhost::Commands();
    std::stable_sort(commands.begin(), commands.end(),
                     [](const vxhost::Command& a, const vxhost::Command& b) { return a.order < b.order; });
}

int Help()
{
    std::printf("usage: vxhost [COMMAND [ARGS...]]\n\nWithout a command, vxhost runs the tour.\n\n");
    for (const auto& c : vxhost::Commands())
        std::printf("  %-10s %s\n", c.name, c.help);
    return 0;
}

int Tour()
{
    std::printf("VxBase %d.%d.%d.%d: a tour of the base library of the AT/IT suite\n", GetDllVersionVxBase(0),
                GetDllVersionVxBase(1), GetDllVersionVxBase(2), GetDllVersionVxBase(3));
    int failures = 0;
    for (const auto& c : vxhost::Commands()) {
        if (!c.inTour)
            continue;
        vxhost::Args args;
        args.tour = true;
        if (c.run(args) != 0) {
            std::printf("!! step %s failed\n", c.name);
            ++failures;
        }
    }
    std::printf("\nTour %s.\n", failures ? "finished with failures" : "complete");
    return failures ? 1 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    // As AT or IT (vxhost --as AT, or a link named AT or IT), vxhost is one
    // program of the suite.
    if (int rc = 0; vxhost::PartnerMain(argc, argv, rc))
        return rc;
    SortCommands();
    vxhost::HostFrame frame;
    frame.Start();
    int rc;
    if (argc < 2) {
        rc = Tour();
    } else if (!std::strcmp(argv[1], "help") || !std::strcmp(argv[1], "--help")) {
        rc = argc == 2 ? Help() : (std::fprintf(stderr, "usage: vxhost help\n"), 2);
    } else {
        rc = 2;
        bool found = false;
        for (const auto& c : vxhost::Commands()) {
            if (!std::strcmp(c.name, argv[1])) {
                vxhost::Args args;
                args.words.assign(argv + 2, argv + argc);
                rc = c.run(args);
                found = true;
                break;
            }
        }
        if (!found) {
            std::fprintf(stderr, "vxhost: unknown command '%s'\n", argv[1]);
            Help();
        }
    }
    frame.Stop();
    return rc;
}

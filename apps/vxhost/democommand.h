// The demo commands of vxhost. Each command lives in its own cmd_*.cpp and
// registers itself with VXHOST_COMMAND, so that adding one touches no other
// file:
//
//   static int RunPages(vxhost::Args& args) { ... return 0; }
//   VXHOST_COMMAND("pages", "DIR NAME  list the pages of a drawing", 20, RunPages);
//
// The number orders the commands in the help text and in the tour.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace vxhost {

struct Args {
    std::vector<std::string> words; // the arguments after the command name
    bool tour = false;              // run as a step of the tour, with sample data
};

using CommandFunction = int (*)(Args& args);

struct Command {
    const char* name;
    const char* help;
    int order;
    CommandFunction run;
    bool inTour;
};

// All registered commands, in order.
std::vector<Command>& Commands();

struct Registrar {
    Registrar(const char* name, const char* help, int order, CommandFunction run, bool inTour = true)
    {
        Commands().push_back(Command{name, help, order, run, inTour});
    }
};

// Refuses a command's arguments: prints "usage: vxhost NAME SYNOPSIS" (the
// synopsis is its help text up to the first two blanks; none without them)
// on standard error and returns 2, the exit code of a usage error.
int Usage(const char* command);
// Whether `word` looks like an option ("--..."), which a command that takes
// texts refuses rather than read as one.
bool IsOption(const std::string& word);
// The DIR of arguments that are exactly "--screenshot DIR", "" for any other
// arguments (the window commands take that or nothing).
std::string ScreenshotDir(const std::vector<std::string>& words);
// Makes the folder the pictures go to; false, having said why, when it
// cannot be made.
bool MakePictureDir(const std::string& dir);

// Prints a heading of the tour.
void Heading(const char* title);
// Prints code page text on the terminal (converted to UTF-8).
void Print(const std::string& codePageText);

} // namespace vxhost

#define VXHOST_CONCAT2(a, b) a##b
#define VXHOST_CONCAT(a, b) VXHOST_CONCAT2(a, b)
#define VXHOST_COMMAND(name, help, order, fn) \
    static const vxhost::Registrar VXHOST_CONCAT(vxhostCommand, __LINE__)(name, help, order, fn)
#define VXHOST_COMMAND_NO_TOUR(name, help, order, fn) \
    static const vxhost::Registrar VXHOST_CONCAT(vxhostCommand, __LINE__)(name, help, order, fn, false)

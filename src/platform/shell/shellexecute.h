// Starting programs and opening links, documents and mail as the shell did.
//
//   ShellExecuteA(nullptr, nullptr, "/opt/vexal/IT", "@@C:\\Projekte\\Demo", "/opt/vexal", SW_HIDE);
//   ShellExecuteA(nullptr, nullptr, "mailto:anna@example.com", nullptr, nullptr, SW_SHOW);
//
// * A file that is an executable program starts as a process of its own: it
//   is not this process's child (so it never lingers as a zombie), it gets
//   the parameters split by the rules of the Windows command line
//   (vx::SplitCommandLine), and it runs in `directory` (a path text; null
//   keeps this process's). It inherits the environment. How it shows itself
//   is its own business; the show command is not passed on.
// * A link ("scheme:..." with a scheme of two or more characters) or any
//   other existing file goes to the desktop's handler for its scheme or
//   type (GIO, through vx::OpenUri).
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

constexpr int SE_ERR_FNF = 2;
constexpr int SE_ERR_PNF = 3;
constexpr int SE_ERR_ACCESSDENIED = 5;
constexpr int SE_ERR_OOM = 8;
constexpr int SE_ERR_NOASSOC = 31;

// Returns a value greater than 32 on success, else one of the SE_ERR_
// codes as a HINSTANCE: SE_ERR_FNF when `file` names nothing, SE_ERR_PNF
// for a missing `directory`, SE_ERR_ACCESSDENIED when the program cannot
// be run, SE_ERR_NOASSOC when no handler takes the link or file. `verb` is
// ignored ("open" is the only one).
VXBASE_EXPORT HINSTANCE ShellExecuteA(HWND owner, const char* verb, const char* file, const char* parameters,
                                      const char* directory, int showCommand);

// The program that opens `file` (a path text, relative to `directory` when
// that is given): its path text goes to `result` (MAX_PATH bytes), and the
// answer is greater than 32. As on the original, the file must exist and its
// type is told by its extension: the desktop's default application for the
// type (GIO's content types), or the file itself when it is a program.
// SE_ERR_FNF for a missing file, SE_ERR_PNF for a missing directory,
// SE_ERR_NOASSOC (with "" in `result`) when no program takes the type.
VXBASE_EXPORT HINSTANCE FindExecutableA(const char* file, const char* directory, char* result);

namespace vx {

// The arguments of a command line by the rules of the Windows C runtime:
// blanks and tabs separate, double quotes group (and are removed), a
// backslash escapes a double quote, and 2n backslashes before a quote
// stand for n. "@@C:\P x" gives "@@C:\P" and "x".
VXBASE_EXPORT std::vector<std::string> SplitCommandLine(std::string_view line);

// Hands a link (code page bytes) to the desktop's handler for its scheme
// (g_app_info_launch_default_for_uri). True if a handler took it.
VXBASE_EXPORT bool OpenUri(const char* uri);
// Replaces what OpenUri does (tests install one that only records the
// link); null restores GIO. Returns the previous one.
using UriLauncher = std::function<bool(const std::string& uri)>;
VXBASE_EXPORT UriLauncher SetUriLauncher(UriLauncher launcher);

} // namespace vx

#include "platform/shell/shellexecute.h"

#include "platform/framework/codepage.h"
#include "platform/files/hostpath.h"
#include "platform/framework/util_p.h"

#include <gio/gio.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <mutex>

extern char** environ;

namespace vx {
namespace {

std::mutex g_lock;
UriLauncher g_launcher;

HINSTANCE Code(int code)
{
    return reinterpret_cast<HINSTANCE>(static_cast<std::intptr_t>(code));
}

// "mailto:x", "https://...": a scheme of letters, digits, "+", "-" and ".",
// starting with a letter and longer than one character, so that a drive
// letter ("C:\...") is no scheme.
// ASCII only, whatever the locale: "Żaba:1" is a file name.
bool IsLink(const char* text)
{
    if (!AsciiIsLetter(text[0]))
        return false;
    int n = 1;
    while (AsciiIsLetter(text[n]) || (text[n] >= '0' && text[n] <= '9') || text[n] == '+' || text[n] == '-' ||
           text[n] == '.')
        ++n;
    return text[n] == ':' && n >= 2;
}

// `uri` in UTF-8.
bool Launch(const std::string& uri)
{
    UriLauncher launcher;
    {
        std::lock_guard lock(g_lock);
        launcher = g_launcher;
    }
    if (launcher)
        return launcher(uri);
    GError* error = nullptr;
    const gboolean ok = g_app_info_launch_default_for_uri(uri.c_str(), nullptr, &error);
    if (error)
        g_error_free(error);
    return ok;
}

// Starts the program detached: an intermediate child starts it and ends at
// once, so that it belongs to init and not to this process. Between fork
// and exec only async-signal-safe calls are made, as other threads may run.
int Spawn(const std::string& program, const std::vector<std::string>& args, const std::string& directory)
{
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const auto& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0)
        return SE_ERR_OOM;
    const pid_t middle = fork();
    if (middle < 0) {
        close(report[0]);
        close(report[1]);
        return SE_ERR_OOM;
    }
    if (middle == 0) {
        close(report[0]);
        setsid();
        const pid_t child = fork();
        if (child == 0) {
            if (!directory.empty() && chdir(directory.c_str()) != 0) {
                const int e = errno;
                [[maybe_unused]] auto w = write(report[1], &e, sizeof e);
                _exit(127);
            }
            execve(program.c_str(), argv.data(), environ);
            const int e = errno;
            [[maybe_unused]] auto w = write(report[1], &e, sizeof e);
            _exit(127);
        }
        _exit(child < 0 ? 1 : 0);
    }
    close(report[1]);
    int status = 0;
    while (waitpid(middle, &status, 0) < 0 && errno == EINTR) {
    }
    int failure = 0;
    ssize_t n;
    do {
        n = read(report[0], &failure, sizeof failure);
    } while (n < 0 && errno == EINTR);
    close(report[0]);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return SE_ERR_OOM;
    if (n == static_cast<ssize_t>(sizeof failure))
        return failure == ENOENT ? SE_ERR_FNF : SE_ERR_ACCESSDENIED;
    return 33;
}

} // namespace

std::vector<std::string> SplitCommandLine(std::string_view line)
{
    std::vector<std::string> args;
    std::size_t i = 0;
    for (;;) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
            ++i;
        if (i >= line.size())
            return args;
        std::string arg;
        bool quoted = false;
        while (i < line.size() && (quoted || (line[i] != ' ' && line[i] != '\t'))) {
            std::size_t slashes = 0;
            while (i < line.size() && line[i] == '\\') {
                ++slashes;
                ++i;
            }
            if (i < line.size() && line[i] == '"') {
                arg.append(slashes / 2, '\\');
                if (slashes % 2) {
                    arg += '"';
                } else if (quoted && i + 1 < line.size() && line[i + 1] == '"') {
                    arg += '"'; // "" inside quotes is a quote, as the runtime reads it
                    ++i;
                } else {
                    quoted = !quoted;
                }
                ++i;
            } else {
                arg.append(slashes, '\\');
                if (i < line.size() && (quoted || (line[i] != ' ' && line[i] != '\t')))
                    arg += line[i++];
            }
        }
        args.push_back(std::move(arg));
    }
}

bool OpenUri(const char* uri)
{
    if (!uri || !*uri)
        return false;
    return Launch(ToUtf8(uri));
}

UriLauncher SetUriLauncher(UriLauncher launcher)
{
    std::lock_guard lock(g_lock);
    UriLauncher old = std::move(g_launcher);
    g_launcher = std::move(launcher);
    return old;
}

} // namespace vx

HINSTANCE ShellExecuteA(HWND, const char*, const char* file, const char* parameters, const char* directory, int)
{
    using vx::Code;
    if (!file || !*file)
        return Code(SE_ERR_FNF);
    if (vx::IsLink(file))
        return Code(vx::OpenUri(file) ? 33 : SE_ERR_NOASSOC);
    const std::string path = vx::DiskPath(file);
    struct stat st {};
    if (stat(path.c_str(), &st) != 0)
        return Code(SE_ERR_FNF);
    std::string workDir;
    if (directory && *directory) {
        workDir = vx::DiskPath(directory);
        struct stat ds {};
        if (stat(workDir.c_str(), &ds) != 0 || !S_ISDIR(ds.st_mode))
            return Code(SE_ERR_PNF);
    }
    if (S_ISREG(st.st_mode) && access(path.c_str(), X_OK) == 0) {
        std::vector<std::string> args;
        for (const auto& a : vx::SplitCommandLine(parameters ? parameters : ""))
            args.push_back(vx::ToUtf8(a));
        return Code(vx::Spawn(path, args, workDir));
    }
    // A document: its handler opens it.
    GFile* g = g_file_new_for_path(path.c_str());
    char* uri = g_file_get_uri(g);
    g_object_unref(g);
    const std::string text = uri ? uri : "";
    g_free(uri);
    return Code(vx::Launch(text) ? 33 : SE_ERR_NOASSOC);
}

HINSTANCE FindExecutableA(const char* file, const char* directory, char* result)
{
    using namespace vx;
    if (result)
        result[0] = 0;
    if (!file || !*file)
        return Code(SE_ERR_FNF);
    std::string host = DiskPath(file);
    if (host[0] != '/' && directory && *directory) {
        const std::string dir = DiskPath(directory);
        struct stat st {};
        if (stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
            return Code(SE_ERR_PNF);
        host = dir + "/" + host;
    }
    struct stat st {};
    if (stat(host.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return Code(SE_ERR_FNF);
    const auto answer = [result](const std::string& program) {
        const std::string text = PathTextFromHost(program);
        if (result && text.size() < MAX_PATH)
            std::memcpy(result, text.c_str(), text.size() + 1);
        return Code(text.size() < MAX_PATH ? 42 : SE_ERR_OOM);
    };
    if (access(host.c_str(), X_OK) == 0)
        return answer(host);
    // By the name alone, as the original went by the extension: an empty
    // file of the type is as good as a full one.
    gboolean uncertain = FALSE;
    gchar* type = g_content_type_guess(host.c_str(), nullptr, 0, &uncertain);
    std::string program;
    if (type && !uncertain && !g_content_type_is_unknown(type)) {
        if (GAppInfo* app = g_app_info_get_default_for_type(type, FALSE)) {
            if (const char* exe = g_app_info_get_executable(app)) {
                gchar* found = g_find_program_in_path(exe);
                program = found ? found : exe;
                g_free(found);
            }
            g_object_unref(app);
        }
    }
    g_free(type);
    return program.empty() ? Code(SE_ERR_NOASSOC) : answer(program);
}

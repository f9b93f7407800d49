#include "platform/files/hostpath.h"

#include "platform/framework/codepage.h"
#include "platform/files/hostpath_p.h"
#include "platform/framework/util_p.h"

#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>

namespace vx {
namespace {

std::mutex g_lock;
std::map<char, std::string> g_roots;
std::atomic<unsigned long> g_directoryOpens{0};

} // namespace

void SetDriveRoot(char letter, std::string_view hostDirectory)
{
    std::lock_guard lock(g_lock);
    if (hostDirectory.empty())
        g_roots.erase(AsciiUpper(letter));
    else
        g_roots[AsciiUpper(letter)] = std::string(hostDirectory);
}

std::string DriveRoot(char letter)
{
    letter = AsciiUpper(letter);
    {
        std::lock_guard lock(g_lock);
        if (auto it = g_roots.find(letter); it != g_roots.end())
            return it->second;
    }
    const std::string name = std::string("VXBASE_DRIVE_") + letter;
    if (const char* env = std::getenv(name.c_str()); env && *env)
        return env;
    return "/";
}

namespace {

// A path text split at the drive: the host directory the drive maps to
// (UTF-8, empty for none) and the rest with "/" separators (code page).
struct HostParts {
    std::string prefix;
    std::string rest;
};

HostParts SplitHost(std::string_view pathText)
{
    HostParts parts;
    std::string text(pathText);
    if (text.size() >= 2 && text[1] == ':' && AsciiIsLetter(text[0])) {
        parts.prefix = DriveRoot(text[0]);
        text.erase(0, 2);
        while (parts.prefix.size() > 1 && parts.prefix.back() == '/')
            parts.prefix.pop_back();
        if (!text.empty() && text[0] != '\\' && text[0] != '/')
            text.insert(text.begin(), '/');
        if (parts.prefix == "/" && !text.empty())
            parts.prefix.clear();
    }
    for (char& c : text) {
        if (c == '\\')
            c = '/';
    }
    parts.rest = std::move(text);
    return parts;
}

// The entry of `directory` that reads as `nameText` (code page) without
// regard to case; "" if there is none or the directory cannot be read.
std::string FindSpelling(const std::string& directory, std::string_view nameText)
{
    DIR* dir = OpenDirectory(directory.empty() ? std::string(".") : directory);
    if (!dir)
        return {};
    std::string best;
    while (const dirent* e = readdir(dir)) {
        const std::string_view name = e->d_name;
        if (name == "." || name == "..")
            continue;
        if (!AsciiEqualNoCase(FromUtf8(name), nameText))
            continue;
        if (best.empty() || name < best)
            best = name;
    }
    closedir(dir);
    return best;
}

bool Exists(const std::string& hostPath)
{
    struct stat st {};
    return lstat(hostPath.c_str(), &st) == 0;
}

} // namespace

DIR* OpenDirectory(const std::string& hostPath)
{
    g_directoryOpens.fetch_add(1, std::memory_order_relaxed);
    return opendir(hostPath.c_str());
}

unsigned long DirectoryOpenCount()
{
    return g_directoryOpens.load(std::memory_order_relaxed);
}

std::string HostPath(std::string_view pathText)
{
    const HostParts parts = SplitHost(pathText);
    return ToUtf8(parts.prefix + parts.rest);
}

std::string DiskPath(std::string_view pathText)
{
    const HostParts parts = SplitHost(pathText);
    const std::string direct = ToUtf8(parts.prefix + parts.rest);
    struct stat st {};
    if (direct.empty() || lstat(direct.c_str(), &st) == 0 || errno != ENOENT)
        return direct;

    // Walk down from the first part, keeping every part that exists as
    // written and looking up the others in their directory.
    std::string resolved = parts.prefix;
    std::size_t pos = 0;
    const std::string& rest = parts.rest;
    if (!rest.empty() && rest[0] == '/') {
        if (resolved.empty())
            resolved = "/";
        pos = 1;
    }
    bool searching = true;
    while (pos <= rest.size()) {
        std::size_t end = rest.find('/', pos);
        if (end == std::string::npos)
            end = rest.size();
        const std::string_view part(rest.data() + pos, end - pos);
        const bool last = end == rest.size();
        if (!part.empty()) {
            std::string name = ToUtf8(part);
            const std::string parent = resolved;
            if (!resolved.empty() && resolved.back() != '/')
                resolved += '/';
            if (searching && part != "." && part != ".." && !Exists(resolved + name)) {
                std::string spelling = FindSpelling(parent, part);
                if (spelling.empty())
                    searching = false;
                else
                    name = std::move(spelling);
            }
            resolved += name;
        }
        if (last) {
            if (rest.back() == '/' && !resolved.empty() && resolved.back() != '/')
                resolved += '/';
            break;
        }
        pos = end + 1;
    }
    return resolved;
}

std::string PathTextFromHost(std::string_view hostPath)
{
    return FromUtf8(hostPath);
}

} // namespace vx

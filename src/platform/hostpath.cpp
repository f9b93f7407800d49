#include "platform/hostpath.h"

#include "platform/codepage.h"

#include <cstdlib>
#include <map>
#include <mutex>

namespace vx {
namespace {

std::mutex g_lock;
std::map<char, std::string> g_roots;

char Upper(char c)
{
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

bool IsDriveLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

void SetDriveRoot(char letter, std::string_view hostDirectory)
{
    std::lock_guard lock(g_lock);
    if (hostDirectory.empty())
        g_roots.erase(Upper(letter));
    else
        g_roots[Upper(letter)] = std::string(hostDirectory);
}

std::string DriveRoot(char letter)
{
    letter = Upper(letter);
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

std::string HostPath(std::string_view pathText)
{
    std::string text(pathText);
    std::string prefix;
    if (text.size() >= 2 && text[1] == ':' && IsDriveLetter(text[0])) {
        prefix = DriveRoot(text[0]);
        text.erase(0, 2);
        while (!prefix.empty() && prefix.size() > 1 && prefix.back() == '/')
            prefix.pop_back();
        if (!text.empty() && text[0] != '\\' && text[0] != '/')
            text.insert(text.begin(), '/');
        if (prefix == "/" && !text.empty())
            prefix.clear();
    }
    for (char& c : text) {
        if (c == '\\')
            c = '/';
    }
    return ToUtf8(prefix + text);
}

std::string PathTextFromHost(std::string_view hostPath)
{
    return FromUtf8(hostPath);
}

} // namespace vx

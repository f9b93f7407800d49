#include "platform/ipc/procinfo_p.h"

#include "platform/framework/util_p.h"

#include <dirent.h>

#include <algorithm>
#include <cstdlib>

namespace vx::detail {
namespace {

std::string ReadSmallFile(const std::string& path)
{
    std::string text;
    ReadWholeFile(path, text);
    return text;
}

// The fields of /proc/<pid>/stat behind the name, which may itself hold
// blanks and parentheses: the first is the state (field 3).
std::vector<std::string> StatFields(pid_t pid)
{
    const std::string stat = ReadSmallFile("/proc/" + std::to_string(pid) + "/stat");
    const auto close = stat.rfind(')');
    if (close == std::string::npos)
        return {};
    // Split at blanks by hand: this runs for every window a broadcast reaches.
    std::vector<std::string> fields;
    fields.reserve(48);
    std::size_t i = close + 1;
    while (i < stat.size()) {
        while (i < stat.size() && (stat[i] == ' ' || stat[i] == '\n'))
            ++i;
        const std::size_t start = i;
        while (i < stat.size() && stat[i] != ' ' && stat[i] != '\n')
            ++i;
        if (i > start)
            fields.emplace_back(stat, start, i - start);
    }
    return fields;
}

} // namespace

long long ProcessStartTime(pid_t pid)
{
    if (pid <= 0)
        return -1;
    const auto fields = StatFields(pid);
    // Field 22 is the start time; X is a process being reaped.
    if (fields.size() < 20 || fields[0] == "Z" || fields[0] == "X")
        return -1;
    return std::strtoll(fields[19].c_str(), nullptr, 10);
}

std::string ProcessName(pid_t pid)
{
    std::string name = ReadSmallFile("/proc/" + std::to_string(pid) + "/comm");
    while (!name.empty() && (name.back() == '\n' || name.back() == '\r'))
        name.pop_back();
    return name;
}

std::vector<pid_t> ProcessIds()
{
    std::vector<pid_t> ids;
    if (DIR* dir = opendir("/proc")) {
        while (const dirent* entry = readdir(dir)) {
            char* end = nullptr;
            const long id = std::strtol(entry->d_name, &end, 10);
            if (end != entry->d_name && *end == 0 && id > 0)
                ids.push_back(static_cast<pid_t>(id));
        }
        closedir(dir);
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

bool ProcessFamily(pid_t pid, pid_t& parent, int& threads)
{
    const auto fields = StatFields(pid);
    if (fields.size() < 18 || fields[0] == "Z" || fields[0] == "X")
        return false;
    parent = static_cast<pid_t>(std::atoi(fields[1].c_str()));
    threads = std::atoi(fields[17].c_str());
    return true;
}

} // namespace vx::detail

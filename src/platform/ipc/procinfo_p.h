// Internal; do not include directly.
//
// What the platform layer reads about processes from /proc: whether a
// process still runs (a zombie does not), when it started (to tell a
// process from a later one under the same id), and its name.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace vx::detail {

// The start time of a running process in clock ticks since boot, or -1 if
// `pid` names no process or only a zombie.
long long ProcessStartTime(pid_t pid);
// The process's name as the kernel keeps it (/proc/<pid>/comm): the file
// name it was started from, or the name it gave itself. Empty if unknown.
std::string ProcessName(pid_t pid);
// The ids of all processes, ascending.
std::vector<pid_t> ProcessIds();
// The parent of a running process and its number of threads; false if
// `pid` names no process or only a zombie.
bool ProcessFamily(pid_t pid, pid_t& parent, int& threads);

} // namespace vx::detail

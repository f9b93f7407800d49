#include "platform/framework/util_p.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vx {

std::string DirectoryOf(std::string_view hostPath)
{
    const auto slash = hostPath.find_last_of('/');
    if (slash == std::string_view::npos)
        return ".";
    return slash == 0 ? std::string("/") : std::string(hostPath.substr(0, slash));
}

std::string_view NameOf(std::string_view hostPath) noexcept
{
    const auto slash = hostPath.find_last_of('/');
    return slash == std::string_view::npos ? hostPath : hostPath.substr(slash + 1);
}

bool ReadAll(int fd, std::string& out)
{
    // Read straight into the string, sized by the file. Files of /proc report
    // a size of 0 and are read in pieces all the same.
    struct stat st {};
    const std::size_t capacity =
        fstat(fd, &st) == 0 && st.st_size > 0 ? static_cast<std::size_t>(st.st_size) + 1 : 4096;
    out.resize(capacity);
    std::size_t used = 0;
    for (;;) {
        if (used == out.size())
            out.resize(out.size() * 2);
        const ssize_t n = pread(fd, out.data() + used, out.size() - used, static_cast<off_t>(used));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            out.clear();
            return false;
        }
        if (n == 0)
            break;
        used += static_cast<std::size_t>(n);
    }
    out.resize(used);
    return true;
}

bool ReadWholeFile(const std::string& hostPath, std::string& out)
{
    const int fd = open(hostPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        out.clear();
        return false;
    }
    const bool ok = ReadAll(fd, out);
    close(fd);
    return ok;
}

} // namespace vx

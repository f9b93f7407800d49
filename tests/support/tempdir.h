// Test support: a real temporary directory, removed with everything in it
// when the object goes.
//
//   vxtest::TempDir dir;
//   dir.Write("plan.0012", "x");
//   dir.Path("plan.0012");      // "/tmp/vxtest-XXXXXX/plan.0012"
#pragma once

#include <sys/stat.h>
#include <utime.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

namespace vxtest {

// True if the host path exists (a dangling link counts).
inline bool PathExists(const std::string& hostPath)
{
    struct stat st {};
    return lstat(hostPath.c_str(), &st) == 0;
}

class TempDir {
public:
    TempDir()
    {
        const char* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/vxtest-XXXXXX";
        if (mkdtemp(pattern.data()))
            m_path = pattern;
    }
    ~TempDir()
    {
        if (m_path.empty())
            return;
        // A test may have taken permissions away; give them back first.
        std::error_code ec;
        for (auto it = std::filesystem::recursive_directory_iterator(
                 m_path, std::filesystem::directory_options::skip_permission_denied, ec);
             it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
            if (it->is_directory(ec) && !it->is_symlink(ec))
                chmod(it->path().c_str(), 0755);
        }
        std::filesystem::remove_all(m_path, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    bool Valid() const { return !m_path.empty(); }
    const std::string& Path() const { return m_path; }
    std::string Path(const std::string& name) const { return m_path + "/" + name; }

    // Creates (or replaces) a file; `name` may hold subdirectories that exist.
    void Write(const std::string& name, const std::string& content = "x") const
    {
        std::ofstream(Path(name), std::ios::binary) << content;
    }
    void MakeDir(const std::string& name) const { std::filesystem::create_directories(Path(name)); }
    bool Exists(const std::string& name) const { return PathExists(Path(name)); }
    // Sets the last write time of `name` to `when` (seconds since 1970).
    void SetWriteTime(const std::string& name, std::time_t when) const
    {
        struct utimbuf times {when, when};
        utime(Path(name).c_str(), &times);
    }

private:
    std::string m_path;
};

// The user data directory of this test process, in a temporary directory,
// so that the Trash lands there and not in the real home. GLib reads the
// variable once, so every test of a process shares this one; call it before
// anything moves a file to the Trash.
inline const TempDir& DataHome()
{
    static const TempDir home;
    static const bool set = setenv("XDG_DATA_HOME", home.Path().c_str(), 1) == 0;
    (void)set;
    return home;
}

} // namespace vxtest

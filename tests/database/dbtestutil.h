// Helpers of the database tests: a temporary directory that goes away with
// the test, and a message box handler that records what would be shown.
#pragma once

#include "platform/windows/messagebox.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace dbtest {

class TempDir {
public:
    TempDir()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vxdbtest-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TempDir()
    {
        std::error_code ec;
        // Make read-only test directories removable again.
        for (auto& entry : std::filesystem::recursive_directory_iterator(path_, ec))
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ec);
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
        std::filesystem::remove_all(path_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

// Records every box; answers OK.
class Boxes {
public:
    Boxes()
    {
        old_ = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            texts.push_back(r.text);
            return IDOK;
        });
    }
    ~Boxes() { vx::SetMessageBoxHandler(old_); }
    std::vector<std::string> texts;

private:
    vx::MessageBoxHandler old_;
};

inline void WriteBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream out(path, std::ios::binary);
    out << bytes;
}

} // namespace dbtest

// Temporary directories and whole-file reads for the XML writer tests.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace xmltest {

// A fresh directory under the system's temporary directory, removed with
// everything in it when the object goes.
class TempDir {
public:
    TempDir()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vxxml-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            ADD_FAILURE() << "mkdtemp failed";
        m_path = pattern;
    }
    ~TempDir() { std::filesystem::remove_all(m_path); }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    // The path of `name` in the directory.
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// The bytes of a file; empty if it cannot be read.
inline std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

inline std::string Golden(const std::string& name)
{
    std::string path = std::string(VX_TEST_DATA_DIR) + "/xml/" + name;
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
    return ReadFile(path);
}

} // namespace xmltest

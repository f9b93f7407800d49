// Whole-file reads and the golden files of the XML writer tests.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace xmltest {

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

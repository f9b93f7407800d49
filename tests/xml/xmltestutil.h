// The golden files of the XML writer tests.
#pragma once

#include "support/testenv.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace xmltest {

using vxtest::ReadBytes;

inline std::string Golden(const std::string& name)
{
    std::string path = std::string(VX_TEST_DATA_DIR) + "/xml/" + name;
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
    return ReadBytes(path);
}

} // namespace xmltest

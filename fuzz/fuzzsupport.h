// What the fuzz targets share: a scratch directory for the files a target
// hands to the library, quiet message boxes, and the check that turns a
// broken property into a finding.
#pragma once

#include <vxbase.h>

#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace vxfuzz {

// A directory of this process (in memory where /dev/shm exists), removed
// when the process ends.
inline const std::string& ScratchDir()
{
    static const std::string dir = [] {
        std::string pattern = std::string(access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") + "/vxfuzz-XXXXXX";
        if (!mkdtemp(pattern.data())) {
            std::perror("vxfuzz: scratch directory");
            std::abort();
        }
        static std::string made = pattern;
        std::atexit([] {
            std::error_code ec;
            std::filesystem::remove_all(made, ec);
        });
        return pattern;
    }();
    return dir;
}

// Writes the bytes to `name` in the scratch directory; returns the path.
inline std::string WriteScratch(const std::string& name, const std::uint8_t* data, std::size_t size)
{
    const std::string path = ScratchDir() + "/" + name;
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f || (size && std::fwrite(data, 1, size, f) != size)) {
        std::perror("vxfuzz: write");
        std::abort();
    }
    std::fclose(f);
    return path;
}

// Message boxes (the library's alarms about damaged input among them) are
// answered with their default button, silently: a box is no finding.
inline void QuietBoxes()
{
    vx::SetMessageBoxHandler([](const vx::MessageBoxRequest& request) { return vx::DefaultButtonOf(request.type); });
}

} // namespace vxfuzz

// A property of the code under test that the input broke: a finding.
#define VXFUZZ_CHECK(condition, ...)                                                                   \
    do {                                                                                               \
        if (!(condition)) {                                                                            \
            std::fprintf(stderr, "vxfuzz: %s:%d: %s does not hold: ", __FILE__, __LINE__, #condition); \
            std::fprintf(stderr, __VA_ARGS__);                                                         \
            std::fputc('\n', stderr);                                                                  \
            std::abort();                                                                              \
        }                                                                                              \
    } while (0)

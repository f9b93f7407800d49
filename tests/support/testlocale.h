// Test support: the process under a single-byte locale for the length of a
// scope, as a Qt host sets it from the environment at its start. In Polish
// of ISO-8859-2 the C library's case functions change bytes of 0x80 and
// above ("Ł" 0xA3 and "ł" 0xB3 are one letter in two cases), which the
// library's ASCII folding must not.
//
//   vxtest::SingleByteLocale polish;
//   if (!polish.Active())
//       GTEST_SKIP() << polish.Why();
//
// A machine without the locale gets it made by `localedef` into a
// temporary directory (found through LOCPATH), once per test program; that
// needs the locale sources of Debian's `locales` package.
#pragma once

#include "support/scopedenv.h"
#include "support/tempdir.h"

#include <spawn.h>
#include <sys/wait.h>

#include <clocale>
#include <memory>
#include <string>

extern char** environ;

namespace vxtest {

class SingleByteLocale {
public:
    static constexpr const char* kName = "pl_PL.ISO-8859-2";

    SingleByteLocale()
    {
        if (const char* now = std::setlocale(LC_ALL, nullptr))
            m_previous = now;
        if (std::setlocale(LC_ALL, kName)) {
            m_active = true;
            return;
        }
        const std::string& dir = Generated(m_why);
        if (dir.empty())
            return;
        m_path = std::make_unique<ScopedEnv>("LOCPATH", dir);
        m_active = std::setlocale(LC_ALL, kName) != nullptr;
        if (!m_active)
            m_why = std::string("the locale made by localedef in ") + dir + " does not load";
    }
    ~SingleByteLocale() { std::setlocale(LC_ALL, m_previous.c_str()); }
    SingleByteLocale(const SingleByteLocale&) = delete;
    SingleByteLocale& operator=(const SingleByteLocale&) = delete;

    bool Active() const { return m_active; }
    // Why the locale could not be set (for a skipped test).
    const std::string& Why() const { return m_why; }

private:
    // The directory holding the locale made by localedef, or "" with the
    // reason in `why`.
    static const std::string& Generated(std::string& why)
    {
        static TempDir dir;
        static std::string failure;
        static const std::string made = [] {
            if (!dir.Valid()) {
                failure = "no temporary directory for the locale";
                return std::string();
            }
            const std::string target = dir.Path(kName);
            char program[] = "localedef";
            char input[] = "-i";
            char source[] = "pl_PL";
            char charmapFlag[] = "-f";
            char charmap[] = "ISO-8859-2";
            char quiet[] = "--quiet";
            std::string out = target;
            char* argv[] = {program, quiet, input, source, charmapFlag, charmap, out.data(), nullptr};
            pid_t pid = 0;
            if (posix_spawnp(&pid, program, nullptr, nullptr, argv, environ) != 0) {
                failure = "localedef is not installed (Debian: libc-bin, with the sources of `locales`)";
                return std::string();
            }
            int status = 0;
            waitpid(pid, &status, 0);
            // localedef answers 1 when it only warned; the locale is made.
            if (!WIFEXITED(status) || WEXITSTATUS(status) > 1 || !PathExists(target)) {
                failure = std::string("localedef could not make ") + kName +
                          " (are the locale sources of Debian's `locales` package installed?)";
                return std::string();
            }
            return dir.Path();
        }();
        why = failure;
        return made;
    }

    std::string m_previous = "C";
    std::unique_ptr<ScopedEnv> m_path;
    bool m_active = false;
    std::string m_why;
};

} // namespace vxtest

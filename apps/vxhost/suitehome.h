// A private home in which vxhost runs as the suite's two programs: links
// named AT and IT to this executable, and folders for their settings,
// configuration and window bus, made theirs through the environment so that
// nothing of the user's is touched. The home goes with the object.
//
//   vxhost::SuiteHome home("vxlink");
//   if (!home.Made()) ...
//   const int rc = home.RunAT({"--demo"}, 15000);   // AT starts IT itself
#pragma once

#include <string>
#include <vector>

namespace vxhost {

class SuiteHome {
public:
    // Makes /tmp/STEM-XXXXXX with the folders "programs" (AT and IT),
    // "settings", "config" and "run".
    explicit SuiteHome(const char* stem);
    ~SuiteHome();
    SuiteHome(const SuiteHome&) = delete;
    SuiteHome& operator=(const SuiteHome&) = delete;

    // Whether the directory could be made.
    bool Made() const { return !m_dir.empty(); }
    const std::string& Dir() const { return m_dir; }

    // Starts AT with `args` in the home's environment and waits for it,
    // killing it after `limitMs`. Its exit code; -1 when it had to be
    // killed or died of a signal, the error number when it did not start.
    int RunAT(const std::vector<std::string>& args, int limitMs) const;

private:
    std::string m_dir;
};

} // namespace vxhost

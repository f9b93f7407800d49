// Test support: an environment variable set (or unset) for the length of a
// scope, and put back as it was when the scope ends.
//
//   vxtest::ScopedEnv home("XDG_CONFIG_HOME", dir.Path("config"));
//   vxtest::ScopedEnv noRuntime("XDG_RUNTIME_DIR", nullptr);   // unset
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace vxtest {

class ScopedEnv {
public:
    // nullopt unsets the variable.
    ScopedEnv(const char* name, std::optional<std::string> value) : m_name(name)
    {
        if (const char* old = std::getenv(name))
            m_old = old;
        if (value)
            setenv(name, value->c_str(), 1);
        else
            unsetenv(name);
    }
    // A null text unsets the variable.
    ScopedEnv(const char* name, const char* value)
        : ScopedEnv(name, value ? std::optional<std::string>(value) : std::nullopt)
    {
    }
    ~ScopedEnv()
    {
        if (m_old)
            setenv(m_name.c_str(), m_old->c_str(), 1);
        else
            unsetenv(m_name.c_str());
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::string m_name;
    std::optional<std::string> m_old;
};

} // namespace vxtest

// The registry files of the window bus: one per process, listing its
// published windows (see windowbus_p.h).
#include "platform/ipc/windowbus_p.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace vx {
namespace {

std::string RegistryEscape(const std::string& text)
{
    std::string out;
    for (char c : text) {
        switch (c) {
        case '\\': out += "\\\\"; break;
        case '\t': out += "\\t"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        default: out += c;
        }
    }
    return out;
}

std::string RegistryUnescape(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        out += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    }
    return out;
}

} // namespace

namespace detail {

std::string FormatRegistry(const Registry& registry)
{
    std::ostringstream out;
    out << "vxbus 1\nstart " << registry.startTime << "\n";
    for (const auto& w : registry.windows) {
        char handle[32];
        std::snprintf(handle, sizeof handle, "%llx",
                      static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(w.hwnd)));
        out << handle << '\t' << RegistryEscape(w.className) << '\t' << RegistryEscape(w.title) << '\n';
    }
    return out.str();
}

bool ParseRegistry(const std::string& text, Registry& out)
{
    std::istringstream in(text);
    std::string line;
    if (!std::getline(in, line) || line != "vxbus 1")
        return false;
    if (!std::getline(in, line) || line.rfind("start ", 0) != 0)
        return false;
    out.startTime = std::strtoll(line.c_str() + 6, nullptr, 10);
    out.windows.clear();
    while (std::getline(in, line)) {
        const auto tab1 = line.find('\t');
        const auto tab2 = tab1 == std::string::npos ? tab1 : line.find('\t', tab1 + 1);
        if (tab2 == std::string::npos)
            continue;
        RegisteredWindow w;
        w.hwnd = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(std::strtoull(line.c_str(), nullptr, 16)));
        w.className = RegistryUnescape(line.substr(tab1 + 1, tab2 - tab1 - 1));
        w.title = RegistryUnescape(line.substr(tab2 + 1));
        if (w.hwnd)
            out.windows.push_back(std::move(w));
    }
    return true;
}

} // namespace detail
} // namespace vx

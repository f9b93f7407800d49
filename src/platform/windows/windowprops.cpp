#include "platform/windows/windowprops.h"

#include "platform/framework/util_p.h"
#include "platform/windows/atoms.h"
#include "platform/windows/lasterror.h"
#include "platform/windows/windowtable_p.h"

#include <algorithm>
#include <string>

namespace {

// The key of a property name: its text folded to lower case; an atom stands
// for its text. Empty for a bad name.
std::string Key(LPCSTR name)
{
    std::string text;
    if (IS_INTATOM(name)) {
        const auto atom = static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(name));
        char buffer[256];
        if (!atom || !GlobalGetAtomNameA(atom, buffer, sizeof buffer))
            return std::string();
        text = buffer;
    } else {
        text = name;
    }
    return vx::AsciiLowerCopy(text);
}

bool CheckWindow(HWND hwnd)
{
    if (hwnd && !vx::IsLocalHandle(hwnd) && IsWindow(hwnd)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    if (!vx::FindTarget(hwnd)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return false;
    }
    return true;
}

} // namespace

BOOL SetPropA(HWND hwnd, LPCSTR name, HANDLE data)
{
    if (!CheckWindow(hwnd))
        return FALSE;
    const std::string key = Key(name);
    if (key.empty()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return vx::detail::WithWindow(hwnd, [&](vx::MessageTarget*, vx::detail::WindowExtras& x) {
        auto it = std::find_if(x.props.begin(), x.props.end(), [&](const auto& p) { return p.first == key; });
        if (it != x.props.end())
            it->second = data;
        else
            x.props.emplace_back(key, data);
    });
}

HANDLE GetPropA(HWND hwnd, LPCSTR name)
{
    const std::string key = Key(name);
    HANDLE value = nullptr;
    if (key.empty())
        return nullptr;
    vx::detail::WithWindow(hwnd, [&](vx::MessageTarget*, vx::detail::WindowExtras& x) {
        for (const auto& p : x.props) {
            if (p.first == key)
                value = p.second;
        }
    });
    return value;
}

HANDLE RemovePropA(HWND hwnd, LPCSTR name)
{
    const std::string key = Key(name);
    HANDLE value = nullptr;
    if (key.empty())
        return nullptr;
    vx::detail::WithWindow(hwnd, [&](vx::MessageTarget*, vx::detail::WindowExtras& x) {
        auto it = std::find_if(x.props.begin(), x.props.end(), [&](const auto& p) { return p.first == key; });
        if (it != x.props.end()) {
            value = it->second;
            x.props.erase(it);
        }
    });
    return value;
}

int EnumPropsExA(HWND hwnd, PROPENUMPROCEXA proc, LPARAM param)
{
    if (!proc)
        return -1;
    std::vector<std::pair<std::string, HANDLE>> props;
    vx::detail::WithWindow(hwnd, [&](vx::MessageTarget*, vx::detail::WindowExtras& x) { props = x.props; });
    if (props.empty())
        return -1;
    int answer = TRUE;
    for (auto& p : props) {
        answer = proc(hwnd, p.first.data(), p.second, static_cast<ULONG_PTR>(param));
        if (!answer)
            break;
    }
    return answer;
}

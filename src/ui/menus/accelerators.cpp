#include "ui/menus/accelerators.h"

#include "ui/gdi/wingdi.h"
#include "ui/menus/menumodel_p.h"

#include "platform/windows/lasterror.h"
#include "platform/windows/winuser.h"

#include <map>
#include <string>
#include <unordered_map>

namespace {

struct Tables {
    std::unordered_map<std::uintptr_t, std::vector<ACCEL>> live;
    std::uintptr_t next = 1; // never reused, so a stale handle fails
    std::map<std::string, std::vector<ACCEL>> resources;
    std::map<std::string, HACCEL> loaded;
};

Tables& TheTables()
{
    static auto* tables = new Tables;
    return *tables;
}

std::string Key(LPCSTR name)
{
    if (IS_INTRESOURCE(name))
        return "#" + std::to_string(reinterpret_cast<ULONG_PTR>(name));
    std::string key = name ? name : "";
    for (char& c : key) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return key;
}

const std::vector<ACCEL>* EntriesOf(HACCEL table)
{
    auto& live = TheTables().live;
    auto it = live.find(reinterpret_cast<std::uintptr_t>(table));
    return it == live.end() ? nullptr : &it->second;
}

bool Down(int key)
{
    return GetKeyState(key) < 0;
}

bool Matches(const ACCEL& a, const MSG& msg)
{
    const bool alt = msg.message == WM_SYSKEYDOWN || msg.message == WM_SYSCHAR || Down(VK_MENU);
    if (a.fVirt & FVIRTKEY) {
        if (msg.message != WM_KEYDOWN && msg.message != WM_SYSKEYDOWN)
            return false;
        return msg.wParam == a.key && Down(VK_SHIFT) == bool(a.fVirt & FSHIFT) &&
               Down(VK_CONTROL) == bool(a.fVirt & FCONTROL) && alt == bool(a.fVirt & FALT);
    }
    if (msg.message != WM_CHAR && msg.message != WM_SYSCHAR)
        return false;
    return msg.wParam == a.key && alt == bool(a.fVirt & FALT);
}

// The state of the command's item in a menu, -1 when it has none.
int CommandState(HMENU menu, UINT command)
{
    if (!menu)
        return -1;
    const vx::menus::Found f = vx::menus::FindItem(menu, command, false);
    return f.menu ? static_cast<int>(f.item()->state) : -1;
}

} // namespace

namespace vx {

void SetAcceleratorTable(LPCSTR name, std::vector<ACCEL> entries)
{
    Tables& t = TheTables();
    const std::string key = Key(name);
    if (entries.empty())
        t.resources.erase(key);
    else
        t.resources[key] = std::move(entries);
    // A table loaded earlier stays as it was, as a loaded resource does.
    t.loaded.erase(key);
}

} // namespace vx

HACCEL CreateAcceleratorTableA(const ACCEL* entries, int count)
{
    if (!entries || count <= 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    Tables& t = TheTables();
    const std::uintptr_t handle = t.next++;
    t.live[handle] = std::vector<ACCEL>(entries, entries + count);
    return reinterpret_cast<HACCEL>(handle);
}

BOOL DestroyAcceleratorTable(HACCEL table)
{
    if (!TheTables().live.erase(reinterpret_cast<std::uintptr_t>(table))) {
        SetLastError(ERROR_INVALID_ACCEL_HANDLE);
        return FALSE;
    }
    return TRUE;
}

int CopyAcceleratorTableA(HACCEL table, ACCEL* entries, int count)
{
    const std::vector<ACCEL>* e = EntriesOf(table);
    if (!e) {
        SetLastError(ERROR_INVALID_ACCEL_HANDLE);
        return 0;
    }
    if (!entries)
        return static_cast<int>(e->size());
    const int n = std::min(count, static_cast<int>(e->size()));
    for (int i = 0; i < n; ++i)
        entries[i] = (*e)[static_cast<std::size_t>(i)];
    return n;
}

HACCEL LoadAcceleratorsA(HINSTANCE, LPCSTR name)
{
    Tables& t = TheTables();
    const std::string key = Key(name);
    if (auto it = t.loaded.find(key); it != t.loaded.end() && EntriesOf(it->second))
        return it->second;
    auto it = t.resources.find(key);
    if (it == t.resources.end()) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    HACCEL table = CreateAcceleratorTableA(it->second.data(), static_cast<int>(it->second.size()));
    t.loaded[key] = table;
    return table;
}

int TranslateAcceleratorA(HWND window, HACCEL table, MSG* msg)
{
    const std::vector<ACCEL>* entries = EntriesOf(table);
    if (!entries) {
        SetLastError(ERROR_INVALID_ACCEL_HANDLE);
        return 0;
    }
    if (!msg || !IsWindow(window))
        return 0;
    for (const ACCEL& a : *entries) {
        if (!Matches(a, *msg))
            continue;
        // A command of the system menu goes as a system command; one whose
        // menu item is disabled is swallowed.
        const int system = CommandState(vx::menus::ExistingSystemMenu(window), a.cmd);
        const int state = system >= 0 ? system : CommandState(GetMenu(window), a.cmd);
        if (state >= 0 && (static_cast<UINT>(state) & MFS_GRAYED))
            return 1;
        if (system >= 0)
            SendMessageA(window, WM_SYSCOMMAND, a.cmd, 0);
        else
            SendMessageA(window, WM_COMMAND, MAKEWPARAM(a.cmd, 1), 0);
        return 1;
    }
    return 0;
}

#include "platform/windows/winuser.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>

namespace vx {
namespace {

std::array<std::atomic<bool>, 256>& Keys()
{
    static std::array<std::atomic<bool>, 256> keys{};
    return keys;
}

std::atomic<long long>& Cursor()
{
    static std::atomic<long long> packed{0};
    return packed;
}

} // namespace

void SetKeyDown(UINT virtualKey, bool down)
{
    if (virtualKey < 256)
        Keys()[virtualKey] = down;
}

void SetCursorPosition(POINT screen)
{
    Cursor() = (static_cast<long long>(screen.x) << 32) | static_cast<std::uint32_t>(screen.y);
}

} // namespace vx

short GetKeyState(int virtualKey)
{
    if (virtualKey < 0 || virtualKey >= 256)
        return 0;
    return vx::Keys()[static_cast<std::size_t>(virtualKey)] ? static_cast<short>(0x8000) : 0;
}

short GetAsyncKeyState(int virtualKey)
{
    return GetKeyState(virtualKey);
}

DWORD GetMessagePos()
{
    POINT p{};
    GetCursorPos(&p);
    return static_cast<DWORD>(MAKELONG(static_cast<WORD>(p.x), static_cast<WORD>(p.y)));
}

BOOL GetCursorPos(POINT* point)
{
    if (!point)
        return FALSE;
    const long long packed = vx::Cursor();
    point->x = static_cast<LONG>(packed >> 32);
    point->y = static_cast<LONG>(static_cast<std::int32_t>(packed & 0xFFFFFFFF));
    return TRUE;
}

BOOL SetCursorPos(int x, int y)
{
    RECT clip;
    GetClipCursor(&clip);
    x = std::clamp(x, static_cast<int>(clip.left), std::max<int>(clip.left, clip.right - 1));
    y = std::clamp(y, static_cast<int>(clip.top), std::max<int>(clip.top, clip.bottom - 1));
    vx::SetCursorPosition(POINT{x, y});
    return TRUE;
}

namespace {

std::mutex g_clipLock;
bool g_clipped = false;
RECT g_clip{};

RECT VirtualScreen()
{
    const int x = GetSystemMetrics(SM_XVIRTUALSCREEN);
    const int y = GetSystemMetrics(SM_YVIRTUALSCREEN);
    return RECT{x, y, x + GetSystemMetrics(SM_CXVIRTUALSCREEN), y + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
}

} // namespace

BOOL ClipCursor(const RECT* rect)
{
    std::lock_guard lock(g_clipLock);
    g_clipped = rect != nullptr;
    if (rect) {
        // Kept within the screen, as the system keeps it.
        const RECT screen = VirtualScreen();
        g_clip = RECT{std::max(rect->left, screen.left), std::max(rect->top, screen.top),
                      std::min(rect->right, screen.right), std::min(rect->bottom, screen.bottom)};
        if (g_clip.right < g_clip.left)
            g_clip.right = g_clip.left;
        if (g_clip.bottom < g_clip.top)
            g_clip.bottom = g_clip.top;
    }
    return TRUE;
}

BOOL GetClipCursor(RECT* rect)
{
    if (!rect)
        return FALSE;
    std::lock_guard lock(g_clipLock);
    *rect = g_clipped ? g_clip : VirtualScreen();
    return TRUE;
}

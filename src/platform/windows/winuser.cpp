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

struct Clip {
    std::mutex lock;
    bool set = false;
    RECT rect{0, 0, 0, 0};
};

Clip& TheClip()
{
    static Clip clip;
    return clip;
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
    x = std::clamp<int>(x, clip.left, std::max(clip.left, clip.right - 1));
    y = std::clamp<int>(y, clip.top, std::max(clip.top, clip.bottom - 1));
    vx::SetCursorPosition(POINT{x, y});
    return TRUE;
}

BOOL ClipCursor(const RECT* rect)
{
    vx::Clip& clip = vx::TheClip();
    std::lock_guard<std::mutex> guard(clip.lock);
    clip.set = rect != nullptr;
    if (rect)
        clip.rect = *rect;
    return TRUE;
}

BOOL GetClipCursor(RECT* rect)
{
    if (!rect)
        return FALSE;
    vx::Clip& clip = vx::TheClip();
    {
        std::lock_guard<std::mutex> guard(clip.lock);
        if (clip.set) {
            *rect = clip.rect;
            return TRUE;
        }
    }
    const int x = GetSystemMetrics(SM_XVIRTUALSCREEN);
    const int y = GetSystemMetrics(SM_YVIRTUALSCREEN);
    *rect = RECT{x, y, x + GetSystemMetrics(SM_CXVIRTUALSCREEN), y + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
    return TRUE;
}

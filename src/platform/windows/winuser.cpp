#include "platform/windows/winuser.h"

#include <array>
#include <atomic>

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
    vx::SetCursorPosition(POINT{x, y});
    return TRUE;
}

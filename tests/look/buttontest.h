// Shared pieces of the button tests: a visible parent window that paints
// itself in one colour and records what its children send it.
#pragma once

#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"

#include <vector>

namespace looktest {

class Parent : public CWnd {
public:
    explicit Parent(COLORREF fill = RGB(0, 128, 128)) : m_fill(fill)
    {
        CreateEx("parent", "Parent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 300, 200));
        SetActiveWindow();
    }
    ~Parent() override { DestroyWindow(); }

    struct Command {
        WPARAM wParam;
        LPARAM lParam;
    };
    std::vector<Command> commands;
    std::vector<int> checksAtClick; // the sender's check state when BN_CLICKED arrived
    COLORREF m_fill;

protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.FillSolidRect(&r, m_fill);
    }
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override
    {
        commands.push_back(Command{wParam, lParam});
        if (lParam)
            checksAtClick.push_back(
                static_cast<int>(::SendMessageA(reinterpret_cast<HWND>(lParam), 0x00F0 /* BM_GETCHECK */, 0, 0)));
        return TRUE;
    }
};

// Sends a mouse message to a window the way input arrives.
inline void Mouse(CWnd& w, UINT message, int x, int y, UINT flags = 0)
{
    vx::DispatchInputMessage(w, message, flags, MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y)));
}

inline void Click(CWnd& w, int x = 3, int y = 3)
{
    Mouse(w, WM_LBUTTONDOWN, x, y, MK_LBUTTON);
    Mouse(w, WM_LBUTTONUP, x, y, 0);
}

using vxtest::Ink;

} // namespace looktest

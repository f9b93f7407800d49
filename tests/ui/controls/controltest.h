// What the control tests share: a parent that records what its controls
// tell it, in order.
#pragma once

#include "uisupport/uitest.h"

#include "platform/windows/cwnd.h"

#include <utility>
#include <vector>

namespace vxtest {

class Recorder : public CWnd {
public:
    // (control id, notification code) of each WM_COMMAND, in order.
    std::vector<std::pair<UINT, UINT>> commands;
    // (message, code) of each WM_HSCROLL and WM_VSCROLL.
    std::vector<std::pair<UINT, UINT>> scrolls;
    std::vector<int> thumbs;
    // Answer for WM_CTLCOLOR...: null keeps the system's colours.
    HBRUSH ctlBrush = nullptr;
    COLORREF ctlText = CLR_INVALID;

    BOOL Make(int width = 320, int height = 240)
    {
        return CreateEx("recorder", "Recorder", WS_POPUP | WS_VISIBLE, CRect(0, 0, width, height));
    }

    std::vector<UINT> Codes(UINT id) const
    {
        std::vector<UINT> out;
        for (const auto& [from, code] : commands) {
            if (from == id)
                out.push_back(code);
        }
        return out;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_COMMAND)
            commands.emplace_back(LOWORD(wParam), HIWORD(wParam));
        if (message == WM_HSCROLL || message == WM_VSCROLL) {
            scrolls.emplace_back(message, LOWORD(wParam));
            thumbs.push_back(static_cast<short>(HIWORD(wParam)));
        }
        if (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC && ctlBrush) {
            if (ctlText != CLR_INVALID)
                SetTextColor(reinterpret_cast<HDC>(wParam), ctlText);
            return reinterpret_cast<LRESULT>(ctlBrush);
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

} // namespace vxtest

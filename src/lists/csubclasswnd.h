// CSubclassWnd: sees another window's messages before that window's own
// procedure does, without deriving from its class. Several objects may hook
// one window; the last hooked sees a message first, and Default() passes it
// on down the chain to the window's procedure.
//
//   class Watch : public CSubclassWnd {
//       LRESULT WindowProc(UINT msg, WPARAM w, LPARAM l) override
//       {
//           if (msg == WM_MENUSELECT) ...
//           return Default();
//       }
//   } watch;
//   watch.HookWindow(frame.m_hWnd);
#pragma once

#include "platform/framework/cobject.h"
#include "platform/windows/windowlong.h"
#include "vxbase_ui_export.h"

class CWnd;

class VXBASE_UI_EXPORT CSubclassWnd : public CObject {
public:
    CSubclassWnd();
    ~CSubclassWnd() override;
    CSubclassWnd(const CSubclassWnd&) = delete;
    CSubclassWnd& operator=(const CSubclassWnd&) = delete;

    // Hooks a window (null: unhooks from the one hooked). FALSE for a
    // window that is not one of this process's.
    BOOL HookWindow(HWND window);
    BOOL HookWindow(CWnd* window);
    BOOL IsHooked() const { return m_hWnd != nullptr; }

    HWND m_hWnd = nullptr;

protected:
    // Sees each message of the window; the default passes it on.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // The message being handled, passed to the next in the chain.
    LRESULT Default();

private:
    static LRESULT HookProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Pass(UINT message, WPARAM wParam, LPARAM lParam);
    void Unhook();

    CSubclassWnd* m_pNext = nullptr; // hooked before this one on the same window
    WNDPROC m_oldProc = nullptr;     // the window's procedure before the first hook
    struct Current {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    } m_current{};
};

#include "platform/windows/atoms.h"
#include "platform/windows/cwnd.h"
#include "platform/windows/lasterror.h"
#include "platform/windows/windowlong.h"
#include "platform/windows/windowprops.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> g_calls;
WNDPROC g_innerOld = nullptr;
WNDPROC g_outerOld = nullptr;

LRESULT Inner(HWND h, UINT m, WPARAM w, LPARAM l)
{
    if (m == WM_USER)
        g_calls.push_back("inner");
    if (m == WM_USER + 1)
        return 42; // handled here, the object never sees it
    return CallWindowProcA(g_innerOld, h, m, w, l);
}

LRESULT Outer(HWND h, UINT m, WPARAM w, LPARAM l)
{
    if (m == WM_USER)
        g_calls.push_back("outer");
    return CallWindowProcA(g_outerOld, h, m, w, l);
}

class Target : public CWnd {
public:
    std::vector<STYLESTRUCT> changing;
    DWORD forceOn = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_USER)
            g_calls.push_back("object");
        if (message == WM_USER + 1)
            g_calls.push_back("object+1");
        if (message == WM_STYLECHANGING && wParam == static_cast<WPARAM>(GWL_STYLE)) {
            auto* s = reinterpret_cast<STYLESTRUCT*>(lParam);
            changing.push_back(*s);
            s->styleNew |= forceOn;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

BOOL CollectProps(HWND, LPSTR name, HANDLE data, ULONG_PTR param)
{
    auto* out = reinterpret_cast<std::vector<std::string>*>(param);
    out->push_back(std::string(name) + "=" + std::to_string(reinterpret_cast<std::uintptr_t>(data)));
    return TRUE;
}

} // namespace

TEST(WindowLong, SubclassesChainThroughCallWindowProc)
{
    Target t;
    t.CreateEx("t", "VxTarget");
    EXPECT_EQ(GetWindowLongPtrA(t.m_hWnd, GWLP_WNDPROC), reinterpret_cast<LONG_PTR>(&vx::ObjectWindowProc));
    g_innerOld = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(t.m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Inner)));
    g_outerOld = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(t.m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Outer)));
    EXPECT_EQ(g_innerOld, &vx::ObjectWindowProc);
    EXPECT_EQ(g_outerOld, &Inner);
    g_calls.clear();
    t.SendMessage(WM_USER);
    EXPECT_EQ(g_calls, (std::vector<std::string>{"outer", "inner", "object"}));
    g_calls.clear();
    EXPECT_EQ(t.SendMessage(WM_USER + 1), 42);
    EXPECT_TRUE(g_calls.empty());
    // Taking the outer one out again restores the inner chain.
    SetWindowLongPtrA(t.m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_outerOld));
    g_calls.clear();
    t.SendMessage(WM_USER);
    EXPECT_EQ(g_calls, (std::vector<std::string>{"inner", "object"}));
    // The 32-bit form cannot hold a procedure.
    EXPECT_EQ(SetWindowLongA(t.m_hWnd, GWL_WNDPROC, 1), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_INDEX);
    EXPECT_EQ(DefWindowProcA(t.m_hWnd, WM_NCCREATE, 0, 0), TRUE);
}

TEST(WindowLong, StyleWordsAreTheWindowsOwnAndAnnounceTheirChange)
{
    Target t;
    t.CreateEx("t", "VxTarget", WS_POPUP | WS_BORDER);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(t.m_hWnd, GWL_STYLE)), WS_POPUP | WS_BORDER);
    t.forceOn = WS_TABSTOP;
    const LONG old = SetWindowLongA(t.m_hWnd, GWL_STYLE, static_cast<LONG>(WS_POPUP | WS_DISABLED));
    EXPECT_EQ(static_cast<DWORD>(old), WS_POPUP | WS_BORDER);
    ASSERT_EQ(t.changing.size(), 1u);
    EXPECT_EQ(t.changing[0].styleOld, WS_POPUP | WS_BORDER);
    EXPECT_EQ(t.GetStyle(), WS_POPUP | WS_DISABLED | WS_TABSTOP) << "the window changed the new style";
    EXPECT_FALSE(t.IsWindowEnabled()) << "WS_DISABLED is the enabled state";
    SetWindowLongPtrA(t.m_hWnd, GWL_EXSTYLE, WS_EX_TOOLWINDOW);
    EXPECT_EQ(t.GetExStyle(), WS_EX_TOOLWINDOW);
    t.ModifyStyleEx(WS_EX_TOOLWINDOW, WS_EX_TOPMOST);
    EXPECT_EQ(GetWindowLongPtrA(t.m_hWnd, GWL_EXSTYLE), static_cast<LONG_PTR>(WS_EX_TOPMOST));
    SetWindowLongPtrA(t.m_hWnd, GWLP_ID, 77);
    EXPECT_EQ(t.GetDlgCtrlID(), 77u);
    EXPECT_EQ(SetWindowLongPtrA(t.m_hWnd, GWLP_USERDATA, 5), 0);
    EXPECT_EQ(GetWindowLongPtrA(t.m_hWnd, GWLP_USERDATA), 5);

    const HWND gone = t.m_hWnd;
    t.DestroyWindow();
    SetLastError(0);
    EXPECT_EQ(GetWindowLongPtrA(gone, GWL_STYLE), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST(WindowProps, NamesIgnoreCaseAtomsStandForTheirTextAndPropsGoWithTheWindow)
{
    Target t;
    t.CreateEx("t", "VxTarget");
    auto value = [](std::uintptr_t v) { return reinterpret_cast<HANDLE>(v); };
    EXPECT_TRUE(SetPropA(t.m_hWnd, "OldMenuProc", value(11)));
    EXPECT_EQ(GetPropA(t.m_hWnd, "oldmenuproc"), value(11));
    const ATOM atom = GlobalAddAtomA("Second");
    EXPECT_TRUE(SetPropA(t.m_hWnd, MAKEINTATOM(atom), value(22)));
    EXPECT_EQ(GetPropA(t.m_hWnd, "SECOND"), value(22));
    std::vector<std::string> all;
    EXPECT_EQ(EnumPropsExA(t.m_hWnd, &CollectProps, reinterpret_cast<LPARAM>(&all)), TRUE);
    EXPECT_EQ(all, (std::vector<std::string>{"oldmenuproc=11", "second=22"}));
    EXPECT_EQ(RemovePropA(t.m_hWnd, "OLDMENUPROC"), value(11));
    EXPECT_EQ(GetPropA(t.m_hWnd, "OldMenuProc"), nullptr);
    EXPECT_EQ(RemovePropA(t.m_hWnd, "OldMenuProc"), nullptr);

    const HWND gone = t.m_hWnd;
    t.DestroyWindow();
    EXPECT_EQ(GetPropA(gone, "Second"), nullptr);
    EXPECT_FALSE(SetPropA(gone, "Second", value(1)));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    GlobalDeleteAtom(atom);
}

TEST(Atoms, TextsAreCountedAndFoundInAnyCase)
{
    const ATOM a = GlobalAddAtomA("VxTestAtom");
    ASSERT_GE(a, 0xC000);
    EXPECT_EQ(GlobalAddAtomA("vxtestatom"), a);
    EXPECT_EQ(GlobalFindAtomA("VXTESTATOM"), a);
    char name[32];
    EXPECT_EQ(GlobalGetAtomNameA(a, name, sizeof name), 10u);
    EXPECT_STREQ(name, "VxTestAtom") << "the first spelling is kept";
    EXPECT_EQ(GlobalDeleteAtom(a), 0);
    EXPECT_EQ(GlobalFindAtomA("VxTestAtom"), a) << "one reference is left";
    EXPECT_EQ(GlobalDeleteAtom(a), 0);
    EXPECT_EQ(GlobalFindAtomA("VxTestAtom"), 0);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(GlobalDeleteAtom(a), a);

    // Integer atoms need no table.
    EXPECT_EQ(GlobalAddAtomA("#1234"), 1234);
    EXPECT_EQ(GlobalFindAtomA(MAKEINTATOM(99)), 99);
    EXPECT_EQ(GlobalGetAtomNameA(1234, name, sizeof name), 5u);
    EXPECT_STREQ(name, "#1234");
    EXPECT_EQ(GlobalAddAtomA("#49152"), 0) << "above the integer range";
    EXPECT_EQ(GlobalAddAtomA(""), 0);
    EXPECT_EQ(GlobalAddAtomA(std::string(256, 'x').c_str()), 0);

    // The local table is a table of its own.
    const ATOM local = AddAtomA("VxTestAtom");
    EXPECT_EQ(GlobalFindAtomA("VxTestAtom"), 0);
    EXPECT_EQ(FindAtomA("vxTESTatom"), local);
    EXPECT_EQ(DeleteAtom(local), 0);
}

TEST(LastError, FormatMessageGivesTheSystemTextAndExpandsInserts)
{
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    char* text = nullptr;
    const DWORD n = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                       FORMAT_MESSAGE_IGNORE_INSERTS,
                                   nullptr, GetLastError(), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                   reinterpret_cast<LPSTR>(&text), 0, nullptr);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "Invalid window handle.\r\n");
    EXPECT_EQ(n, 24u);
    LocalFree(text);

    char small[8];
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0, small, sizeof small,
                             nullptr),
              0u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0x12345, 0, small, sizeof small, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_NOT_FOUND);

    const DWORD_PTR args[] = {reinterpret_cast<DWORD_PTR>("menu"), reinterpret_cast<DWORD_PTR>("7")};
    char out[64];
    EXPECT_GT(FormatMessageA(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, "%2: no %1 (100%%)", 0, 0,
                             out, sizeof out, reinterpret_cast<va_list*>(const_cast<DWORD_PTR*>(args))),
              0u);
    EXPECT_STREQ(out, "7: no menu (100%)");
}

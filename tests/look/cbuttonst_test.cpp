#include "look/cbuttonst.h"

#include "buttontest.h"

#include "platform/windows/hooks.h"
#include "ui/menus/cmenu.h"
#include "ui/desktop/playsound.h"
#include "ui/windows/qtinterop.h"
#include "ui/desktop/shellopen.h"
#include "ui/windows/uiapp.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <string>
#include <tuple>

namespace {

using looktest::Click;
using looktest::Ink;
using looktest::Mouse;
using looktest::Parent;

constexpr COLORREF kTeal = RGB(0, 100, 100);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kMagenta = RGB(255, 0, 255);
const COLORREF kHighlight = GetSysColor(COLOR_BTNHIGHLIGHT);
const COLORREF kShadow = GetSysColor(COLOR_BTNSHADOW);
const COLORREF kDark = GetSysColor(COLOR_3DDKSHADOW);
const COLORREF kLight = GetSysColor(COLOR_3DLIGHT);
const COLORREF kFace = GetSysColor(COLOR_BTNFACE);

class Probe : public CButtonST {
public:
    using CButtonST::m_bIsCheckBox;
    using CButtonST::m_bIsRadio;
    using CButtonST::m_bMouseOnButton;
    using CButtonST::m_byAlign;
    using CButtonST::m_csBitmaps;
    using CButtonST::m_csIcons;
    using CButtonST::m_nMarginX;
    using CButtonST::m_ToolTip;

    int downs = 0;
    int doubles = 0;

protected:
    void OnLButtonDown(UINT f, CPoint p) override
    {
        ++downs;
        CButtonST::OnLButtonDown(f, p);
    }
    void OnLButtonDblClk(UINT f, CPoint p) override
    {
        ++doubles;
        CButtonST::OnLButtonDblClk(f, p);
    }
};

class ButtonTest : public ::testing::Test {
protected:
    Probe& Make(const char* title = "", DWORD style = 0, CRect r = CRect(0, 0, 40, 20), UINT id = 100)
    {
        buttons.push_back(std::make_unique<Probe>());
        buttons.back()->Create(title, WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, r, &parent, id);
        return *buttons.back();
    }
    // A bitmap of one colour with the left column in magenta.
    static HBITMAP Patch(int w, int h, COLORREF color)
    {
        vxtest::Canvas c(w, h, color);
        c.dc().FillSolidRect(0, 0, 1, h, kMagenta);
        return vx::BitmapFromQImage(c.Image());
    }

    Parent parent;
    std::vector<std::unique_ptr<Probe>> buttons;
};

TEST_F(ButtonTest, RaisedBorderIsFourLinesInTheirOrder)
{
    Probe& b = Make();
    b.SetFlat(FALSE);
    b.SetColor(CButtonST::BTNST_COLOR_BK_OUT, kTeal);
    const QImage img = vxtest::Render(b);
    EXPECT_RECT_COLOR(img, (RECT{0, 0, 39, 1}), kHighlight);
    EXPECT_RECT_COLOR(img, (RECT{0, 0, 1, 19}), kHighlight);
    EXPECT_RECT_COLOR(img, (RECT{1, 1, 38, 2}), kLight);
    EXPECT_RECT_COLOR(img, (RECT{1, 2, 2, 18}), kLight);
    EXPECT_RECT_COLOR(img, (RECT{0, 19, 40, 20}), kDark);
    EXPECT_RECT_COLOR(img, (RECT{39, 0, 40, 20}), kDark);
    EXPECT_RECT_COLOR(img, (RECT{1, 18, 39, 19}), kShadow);
    EXPECT_RECT_COLOR(img, (RECT{38, 1, 39, 19}), kShadow);
    EXPECT_RECT_COLOR(img, (RECT{2, 2, 38, 18}), kTeal);
}

TEST_F(ButtonTest, DefaultButtonGetsABlackFrameOutsideTheBorder)
{
    Probe& b = Make("", BS_DEFPUSHBUTTON);
    EXPECT_TRUE(b.GetDefault());
    EXPECT_EQ(b.GetStyle() & BS_TYPEMASK, BS_OWNERDRAW);
    b.SetFlat(FALSE);
    const QImage img = vxtest::Render(b);
    EXPECT_PIXEL(img, 0, 0, RGB(0, 0, 0));
    EXPECT_PIXEL(img, 39, 19, RGB(0, 0, 0));
    EXPECT_PIXEL(img, 1, 1, kHighlight);
    EXPECT_PIXEL(img, 38, 18, kDark);
}

TEST_F(ButtonTest, PressedBordersAndTheOffsetOfThePressedCaption)
{
    Probe& b = Make("W", 0, CRect(0, 0, 60, 30));
    b.SetFlat(FALSE);
    const CRect normal = Ink(vxtest::Render(b), RGB(0, 0, 0));
    ASSERT_FALSE(normal.IsRectEmpty());
    b.SetState(TRUE);
    QImage img = vxtest::Render(b);
    EXPECT_PIXEL(img, 0, 0, kShadow); // not flat: a shadow frame
    EXPECT_PIXEL(img, 59, 29, kShadow);
    EXPECT_EQ(Ink(img, RGB(0, 0, 0)), normal + CPoint(1, 1));
    b.SetPressedStyle(CButtonST::BTNST_PRESSED_TOPBOTTOM);
    EXPECT_EQ(Ink(vxtest::Render(b), RGB(0, 0, 0)), normal + CPoint(0, 2));
    b.SetFlat(TRUE);
    img = vxtest::Render(b);
    EXPECT_PIXEL(img, 0, 0, kShadow); // flat: sunken Draw3dRect
    EXPECT_PIXEL(img, 59, 0, kHighlight);
    EXPECT_PIXEL(img, 59, 29, kHighlight);
    b.SetState(FALSE);
}

TEST_F(ButtonTest, DisabledTextIsTheShadowColour)
{
    Probe& b = Make("Wide", 0, CRect(0, 0, 60, 30));
    b.EnableWindow(FALSE);
    const QImage img = vxtest::Render(b);
    const RECT inside{2, 2, 58, 28};
    EXPECT_GT(vxtest::CountColor(img, inside, kShadow), 10);
    EXPECT_EQ(vxtest::CountColor(img, inside, RGB(0, 0, 0)), 0);
}

TEST_F(ButtonTest, FlatButtonHoverShowsTheHoverColoursInsideItsFrame)
{
    Probe& b = Make();
    b.SetColor(CButtonST::BTNST_COLOR_BK_OUT, kTeal);
    b.SetColor(CButtonST::BTNST_COLOR_BK_IN, RGB(200, 100, 50));
    QImage img = vxtest::Render(b);
    EXPECT_PIXEL(img, 10, 10, kTeal);
    Mouse(b, WM_MOUSEMOVE, 10, 10);
    EXPECT_TRUE(b.m_bMouseOnButton);
    img = vxtest::Render(b);
    EXPECT_PIXEL(img, 10, 10, RGB(200, 100, 50));
    EXPECT_RECT_COLOR(img, (RECT{0, 0, 39, 1}), kHighlight);
    EXPECT_RECT_COLOR(img, (RECT{0, 0, 1, 19}), kHighlight);
    EXPECT_RECT_COLOR(img, (RECT{39, 0, 40, 20}), kShadow);
    EXPECT_RECT_COLOR(img, (RECT{0, 19, 40, 20}), kShadow);
    // The leave the button asked for ends the hover (through its widget).
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(vx::WidgetOfWindow(&b), &leave);
    EXPECT_FALSE(b.m_bMouseOnButton);
    EXPECT_PIXEL(vxtest::Render(b), 10, 10, kTeal);
    // Entering with the left button down does not hover.
    Mouse(b, WM_MOUSEMOVE, 10, 10, MK_LBUTTON);
    EXPECT_FALSE(b.m_bMouseOnButton);
    // Without always-track it hovers only while some window is active.
    b.SetAlwaysTrack(FALSE);
    vx::ClearActiveWindow();
    Mouse(b, WM_MOUSEMOVE, 10, 10);
    EXPECT_FALSE(b.m_bMouseOnButton);
    parent.SetActiveWindow();
    Mouse(b, WM_MOUSEMOVE, 10, 10);
    EXPECT_TRUE(b.m_bMouseOnButton);
    // A move whose point lies elsewhere cancels it.
    Mouse(b, WM_MOUSEMOVE, 100, 100);
    EXPECT_FALSE(b.m_bMouseOnButton);
}

TEST_F(ButtonTest, BitmapMaskKeepsTheTransparentColourOut)
{
    Probe& b = Make();
    b.SetColor(CButtonST::BTNST_COLOR_BK_OUT, kTeal);
    ASSERT_EQ(b.SetBitmaps(Patch(6, 4, kBlue), kMagenta), CButtonST::BTNST_OK);
    CBitmap* mask = CBitmap::FromHandle(b.m_csBitmaps[0].hMask);
    EXPECT_EQ(mask->GetPixel(0, 0), RGB(255, 255, 255));
    EXPECT_EQ(mask->GetPixel(1, 0), RGB(0, 0, 0));
    BITMAP info{};
    mask->GetBitmap(&info);
    EXPECT_EQ(info.bmBitsPixel, 1);
    const QImage img = vxtest::Render(b);
    // Centred: (40 - 6) / 2 and (20 - 4) / 2.
    EXPECT_PIXEL(img, 17, 8, kTeal);
    EXPECT_RECT_COLOR(img, (RECT{18, 8, 23, 12}), kBlue);
    EXPECT_PIXEL(img, 23, 8, kTeal);
}

TEST_F(ButtonTest, GrayscaleAndDarkerFormsShowWhenNotHovered)
{
    const COLORREF orange = RGB(200, 100, 50);
    Probe& gray = Make("", 0, CRect(0, 0, 40, 20), 101);
    ASSERT_EQ(gray.SetBitmaps(Patch(6, 4, orange), kMagenta, nullptr, 0, nullptr, 0,
                              reinterpret_cast<HBITMAP>(static_cast<INT_PTR>(CButtonST::BTNST_AUTO_GRAY))),
              CButtonST::BTNST_OK);
    const BYTE level = static_cast<BYTE>(200 * 0.299 + 100 * 0.587 + 50 * 0.114);
    QImage img = vxtest::Render(gray);
    EXPECT_PIXEL(img, 18, 8, RGB(level, level, level));
    EXPECT_EQ(level, 124);
    EXPECT_PIXEL(img, 17, 8, kFace); // the transparent column stays transparent
    Mouse(gray, WM_MOUSEMOVE, 10, 10);
    EXPECT_PIXEL(vxtest::Render(gray), 18, 8, orange);

    Probe& darker = Make("", 0, CRect(0, 40, 40, 60), 102);
    ASSERT_EQ(darker.SetBitmaps(Patch(6, 4, orange), kMagenta, nullptr, 0, nullptr, 0,
                                reinterpret_cast<HBITMAP>(static_cast<INT_PTR>(CButtonST::BTNST_AUTO_DARKER))),
              CButtonST::BTNST_OK);
    img = vxtest::Render(darker);
    EXPECT_PIXEL(img, 18, 8, RGB(150, 75, 37));
    EXPECT_EQ(CButtonST::DarkenColor(orange, 0.25), RGB(150, 75, 37));
    EXPECT_EQ(CButtonST::DarkenColor(orange, 1.5), orange);
    EXPECT_EQ(CButtonST::DarkenColor(orange, 0.0), orange);
}

TEST_F(ButtonTest, IconsTakeTwiceTheHotSpotAndDeriveTheirForms)
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(qRgba(200, 100, 50, 255));
    image.setPixel(0, 0, qRgba(0, 0, 0, 0));
    Probe& b = Make();
    ASSERT_EQ(b.SetIcon(vx::IconFromQImage(image), reinterpret_cast<HICON>(static_cast<INT_PTR>(CButtonST::BTNST_AUTO_DARKER))),
              CButtonST::BTNST_OK);
    EXPECT_EQ(b.m_csIcons[0].dwWidth, 8u);
    ASSERT_NE(b.m_csIcons[1].hIcon, nullptr);
    QImage img = vxtest::Render(b);
    // (40 - 8) / 2, (20 - 8) / 2; the second icon shows while not hovered.
    EXPECT_PIXEL(img, 17, 7, RGB(150, 75, 37));
    EXPECT_PIXEL(img, 16, 6, kFace);
    Mouse(b, WM_MOUSEMOVE, 5, 5);
    EXPECT_PIXEL(vxtest::Render(b), 17, 7, RGB(200, 100, 50));

    QImage odd(7, 7, QImage::Format_ARGB32);
    odd.fill(qRgba(1, 2, 3, 255));
    Probe& sized = Make("", 0, CRect(50, 0, 90, 20), 103);
    sized.SetIcon(vx::IconFromQImage(odd));
    EXPECT_EQ(sized.m_csIcons[0].dwWidth, 6u); // as it stands: twice the hot spot
    sized.SizeToContent();
    CRect r;
    sized.GetClientRect(&r);
    EXPECT_EQ(r.Size(), CSize(6, 6));
    EXPECT_EQ(sized.m_nMarginX, 0);
}

TEST_F(ButtonTest, SettersAnswerTheirCodes)
{
    Probe& b = Make();
    COLORREF c = 0;
    EXPECT_EQ(b.SetColor(8, 0), CButtonST::BTNST_INVALIDINDEX);
    EXPECT_EQ(b.GetColor(9, &c), CButtonST::BTNST_INVALIDINDEX);
    EXPECT_EQ(b.OffsetColor(8, 1), CButtonST::BTNST_INVALIDINDEX);
    EXPECT_EQ(b.OffsetColor(0, 256), CButtonST::BTNST_BADPARAM);
    EXPECT_EQ(b.OffsetColor(0, -256), CButtonST::BTNST_BADPARAM);
    b.SetColor(0, RGB(250, 100, 10));
    EXPECT_EQ(b.OffsetColor(0, 20), CButtonST::BTNST_OK);
    b.GetColor(0, &c);
    EXPECT_EQ(c, RGB(255, 105, 15)); // cut to what red allows
    b.OffsetColor(0, -20);
    b.GetColor(0, &c);
    EXPECT_EQ(c, RGB(240, 90, 0)); // cut to what blue allows
    EXPECT_EQ(b.SetAlign(4), CButtonST::BTNST_INVALIDALIGN);
    EXPECT_EQ(b.SetAlign(CButtonST::ST_ALIGN_VERT), CButtonST::BTNST_OK);
    EXPECT_EQ(b.SetPressedStyle(2), CButtonST::BTNST_INVALIDPRESSEDSTYLE);
    CClientDC dc(&parent);
    EXPECT_EQ(b.SetBk(&dc), CButtonST::BTNST_BADPARAM);
    b.DrawTransparent();
    EXPECT_EQ(b.SetBk(&dc), CButtonST::BTNST_OK);
    EXPECT_EQ(b.SetBitmaps(60099, RGB(0, 0, 0)), CButtonST::BTNST_INVALIDRESOURCE);
    EXPECT_EQ(b.m_csBitmaps[0].hBitmap, nullptr);
    EXPECT_EQ(b.SetBtnCursor(60099), CButtonST::BTNST_INVALIDRESOURCE);
    EXPECT_EQ(b.SetBtnCursor(32649), CButtonST::BTNST_OK); // the system hand
    EXPECT_EQ(CButtonST::GetVersionI(), 39);
    EXPECT_STREQ(CButtonST::GetVersionC(), "3.9");
    b.SetColor(0, RGB(1, 2, 3));
    b.SendMessage(WM_SYSCOLORCHANGE);
    b.GetColor(0, &c);
    EXPECT_EQ(c, kFace);
}

TEST_F(ButtonTest, CheckBoxTogglesOnAClickOrSpaceBeforeItsParentHears)
{
    Probe& b = Make("Check", BS_AUTOCHECKBOX);
    EXPECT_TRUE(b.m_bIsCheckBox);
    Click(b);
    EXPECT_EQ(b.GetCheck(), 1);
    ASSERT_EQ(parent.checksAtClick.size(), 1u);
    EXPECT_EQ(parent.checksAtClick[0], 1);
    EXPECT_EQ(LOWORD(parent.commands[0].wParam), 100);
    EXPECT_EQ(HIWORD(parent.commands[0].wParam), BN_CLICKED);
    // Released elsewhere it is no click.
    Mouse(b, WM_LBUTTONDOWN, 3, 3, MK_LBUTTON);
    Mouse(b, WM_MOUSEMOVE, 100, 100, MK_LBUTTON);
    Mouse(b, WM_LBUTTONUP, 100, 100);
    EXPECT_EQ(b.GetCheck(), 1);
    EXPECT_EQ(parent.commands.size(), 1u);
    vx::DispatchInputMessage(b, WM_KEYDOWN, VK_SPACE, 1);
    vx::DispatchInputMessage(b, WM_KEYUP, VK_SPACE, 1);
    EXPECT_EQ(b.GetCheck(), 0);
    // Checked, it draws pressed.
    parent.SetFocus();
    b.SetFlat(FALSE);
    b.SetCheck(1);
    EXPECT_PIXEL(vxtest::Render(b), 0, 0, kShadow);
    b.SendMessage(BM_SETCHECK, BST_INDETERMINATE);
    EXPECT_EQ(b.SendMessage(BM_GETCHECK), 1);
}

TEST_F(ButtonTest, RadioCheckClearsTheRestOfItsGroup)
{
    Probe& r1 = Make("1", BS_AUTORADIOBUTTON | WS_GROUP, CRect(0, 0, 40, 20), 1);
    Probe& r2 = Make("2", BS_AUTORADIOBUTTON, CRect(0, 20, 40, 40), 2);
    Probe& r3 = Make("3", BS_AUTORADIOBUTTON, CRect(0, 40, 40, 60), 3);
    Probe& other = Make("4", BS_AUTORADIOBUTTON | WS_GROUP, CRect(0, 60, 40, 80), 4);
    EXPECT_TRUE(r1.m_bIsRadio);
    r1.SetCheck(1);
    other.SetCheck(1);
    Click(r2);
    EXPECT_EQ(r1.GetCheck(), 0);
    EXPECT_EQ(r2.GetCheck(), 1);
    EXPECT_EQ(r3.GetCheck(), 0);
    EXPECT_EQ(other.GetCheck(), 1);
    Click(r2);
    EXPECT_EQ(r2.GetCheck(), 1);
    vx::DispatchInputMessage(r3, WM_KEYDOWN, VK_SPACE, 1);
    vx::DispatchInputMessage(r3, WM_KEYUP, VK_SPACE, 1);
    EXPECT_EQ(r3.GetCheck(), 1);
    EXPECT_EQ(r2.GetCheck(), 0);
    EXPECT_TRUE(r3.SendMessage(WM_GETDLGCODE) & DLGC_RADIOBUTTON);
}

TEST_F(ButtonTest, MenuOpensBelowTheButtonAndPostsTheChoice)
{
    Probe& b = Make("Menu");
    b.SetFlat(TRUE);
    CMenu menu;
    menu.CreateMenu();
    CMenu popup;
    popup.CreatePopupMenu();
    popup.AppendMenu(MF_STRING, 55, "Fifty-five");
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(popup.Detach()), "x");
    HMENU expected = menu.GetSubMenu(0)->m_hMenu;
    b.SetMenu(menu.Detach(), parent.m_hWnd);

    Parent callbackTarget;
    // The menu is a real popup: a hook looks at its window as it shows, and
    // the keys that choose wait in the queue (TPM_NONOTIFY sends no
    // WM_ENTERIDLE to drive it from).
    static struct Seen {
        CPoint at;
        HMENU menu = nullptr;
        COLORREF corner = 0;
        Probe* button = nullptr;
        HHOOK hook = nullptr;
    } seen;
    seen = Seen{};
    seen.button = &b;
    seen.hook = SetWindowsHookExA(
        WH_CALLWNDPROC,
        [](int code, WPARAM w, LPARAM l) -> LRESULT {
            const auto* cwp = reinterpret_cast<const CWPSTRUCT*>(l);
            char name[16] = {};
            GetClassNameA(cwp->hwnd, name, sizeof name);
            if (std::string(name) == "#32768" && cwp->message == WM_SHOWWINDOW && cwp->wParam) {
                CRect r;
                ::GetWindowRect(cwp->hwnd, &r);
                seen.at = r.TopLeft();
                seen.menu = reinterpret_cast<HMENU>(SendMessageA(cwp->hwnd, MN_GETHMENU, 0, 0));
                seen.corner = vxtest::ColorAt(vxtest::Render(*seen.button), 0, 0); // drawn pushed meanwhile
            }
            return CallNextHookEx(seen.hook, code, w, l);
        },
        nullptr, GetCurrentThreadId());
    parent.PostMessage(WM_KEYDOWN, VK_DOWN, 1);
    parent.PostMessage(WM_KEYDOWN, VK_RETURN, 1);
    b.SetMenuCallback(callbackTarget.m_hWnd, WM_USER + 9, 7);
    Click(b);
    UnhookWindowsHookEx(seen.hook);
    EXPECT_EQ(seen.menu, expected);
    CRect window;
    b.GetWindowRect(&window);
    EXPECT_EQ(seen.at, CPoint(window.left, window.bottom));
    EXPECT_EQ(seen.corner, kShadow);
    EXPECT_EQ(vxtest::ColorAt(vxtest::Render(b), 0, 0), kHighlight);
    vx::ProcessUiEvents();
    ASSERT_FALSE(parent.commands.empty());
    EXPECT_EQ(parent.commands.back().wParam, 55u);
}

TEST_F(ButtonTest, UrlOpensThroughTheShell)
{
    Probe& b = Make("Web");
    b.SetURL("http://www.example.com");
    vx::ShellOpenRequest seen;
    auto old = vx::SetShellOpenHandler([&](const vx::ShellOpenRequest& r) {
        seen = r;
        return true;
    });
    Click(b);
    vx::SetShellOpenHandler(old);
    EXPECT_EQ(seen.verb, "open");
    EXPECT_EQ(seen.file, "http://www.example.com");
    EXPECT_EQ(seen.mask, 0x400u);
    EXPECT_EQ(seen.show, 3);
}

struct Recorder : vx::SoundPlayer {
    std::vector<std::tuple<std::string, HMODULE, DWORD>> plays;
    bool Play(const char* sound, HMODULE module, DWORD flags) override
    {
        plays.emplace_back(sound ? sound : "", module, flags);
        return true;
    }
};

TEST_F(ButtonTest, SoundsPlayOnHoverAndClickWithTheirFlags)
{
    Recorder recorder;
    vx::SoundPlayer* old = vx::SetSoundPlayer(&recorder);
    Probe& b = Make("Sound");
    static char module; // stands for a module handle
    b.SetSound("C:\\Sounds\\over.wav");
    b.SetSound("CLICK", &module, TRUE, FALSE);
    Mouse(b, WM_MOUSEMOVE, 5, 5);
    Mouse(b, WM_MOUSEMOVE, 6, 5); // already hovering: no second sound
    Click(b);
    b.SetSound(nullptr);
    Mouse(b, WM_MOUSEMOVE, 100, 100);
    Mouse(b, WM_MOUSEMOVE, 5, 5);
    vx::SetSoundPlayer(old);
    ASSERT_EQ(recorder.plays.size(), 2u);
    EXPECT_EQ(recorder.plays[0], std::make_tuple(std::string("C:\\Sounds\\over.wav"), HMODULE(nullptr), DWORD(0x22003)));
    EXPECT_EQ(recorder.plays[1], std::make_tuple(std::string("CLICK"), HMODULE(&module), DWORD(0x42006)));
}

TEST_F(ButtonTest, TooltipTextShowsWhileActive)
{
    Probe& b = Make("Tip");
    b.EnableBalloonTooltip();
    b.SetTooltipText("Hello");
    QWidget* w = vx::WidgetOfWindow(&b);
    EXPECT_EQ(w->toolTip(), QStringLiteral("Hello"));
    EXPECT_EQ(b.m_ToolTip.GetMaxTipWidth(), 400);
    EXPECT_TRUE(b.m_ToolTip.GetStyle() & TTS_BALLOON);
    EXPECT_EQ(b.m_ToolTip.GetToolCount(), 1);
    b.ActivateTooltip(FALSE);
    EXPECT_TRUE(w->toolTip().isEmpty());
    b.SetTooltipText("Again", TRUE);
    EXPECT_EQ(w->toolTip(), QStringLiteral("Again"));
    EXPECT_EQ(b.m_ToolTip.GetToolCount(), 1);
}

TEST_F(ButtonTest, InitTypeZeroMakesAPlainButton)
{
    const int saved = CButtonST::m_InitType;
    CButtonST::m_InitType = 0;
    Probe& off = Make("Plain", BS_DEFPUSHBUTTON, CRect(0, 0, 60, 24), 1);
    CButtonST::m_InitType = saved;
    off.SetFlat(TRUE);
    off.SetColor(CButtonST::BTNST_COLOR_BK_OUT, kTeal);
    EXPECT_EQ(off.GetStyle() & BS_TYPEMASK, BS_DEFPUSHBUTTON);
    CButton plain;
    plain.Create("Plain", WS_CHILD | WS_VISIBLE | BS_DEFPUSHBUTTON, CRect(0, 30, 60, 54), &parent, 2);
    EXPECT_EQ(vxtest::Render(off), vxtest::Render(plain));
    Click(off);
    EXPECT_EQ(parent.commands.size(), 1u); // still a working button
}

TEST_F(ButtonTest, StylesTurnIntoOwnerDrawWithTheirMeaningKept)
{
    Probe& left = Make("L", BS_AUTOCHECKBOX | BS_LEFTTEXT);
    EXPECT_EQ(left.m_byAlign, CButtonST::ST_ALIGN_HORIZ_RIGHT);
    EXPECT_TRUE(left.m_bIsCheckBox);
    EXPECT_EQ(left.GetStyle() & BS_TYPEMASK, BS_OWNERDRAW);
    Probe& push = Make("P");
    EXPECT_FALSE(push.GetDefault());
    push.SendMessage(BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    EXPECT_TRUE(push.GetDefault());
    EXPECT_EQ(push.GetStyle() & BS_TYPEMASK, BS_OWNERDRAW);
    EXPECT_EQ(push.SendMessage(WM_GETDLGCODE) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON), DLGC_DEFPUSHBUTTON);
    push.SendMessage(BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
    EXPECT_FALSE(push.GetDefault());
    EXPECT_EQ(push.SendMessage(WM_REFLECT_BASE + WM_CTLCOLORBTN), reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH)));
}

TEST_F(ButtonTest, DoubleClickArrivesAsASecondPress)
{
    Probe& b = Make();
    vx::DispatchInputMessage(b, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(2, 2));
    EXPECT_EQ(b.downs, 1);
    EXPECT_EQ(b.doubles, 0);
    Mouse(b, WM_LBUTTONUP, 2, 2);
}

TEST_F(ButtonTest, DisablingTheFocusedButtonMovesTheFocusOn)
{
    Probe& a = Make("A", 0, CRect(0, 0, 40, 20), 1);
    Probe& b = Make("B", 0, CRect(0, 20, 40, 40), 2);
    a.SetFocus();
    a.EnableWindow(FALSE);
    EXPECT_EQ(CWnd::GetFocus(), &b);
    b.EnableWindow(FALSE);
    EXPECT_EQ(CWnd::GetFocus(), &parent);
}

TEST_F(ButtonTest, TransparentButtonShowsItsParentBehind)
{
    parent.m_fill = RGB(180, 0, 0);
    Probe& b = Make("", 0, CRect(10, 10, 50, 30));
    b.DrawTransparent(TRUE);
    const QImage img = vxtest::Render(parent);
    EXPECT_PIXEL(img, 30, 20, RGB(180, 0, 0));
    EXPECT_PIXEL(img, 10, 10, kHighlight); // the flat frame on top
}

} // namespace

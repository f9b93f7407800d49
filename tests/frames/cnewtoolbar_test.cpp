// The library's tool bar in the menu draw modes: backgrounds, borders and
// grippers, hot, checked, pressed and disabled buttons, gray images, and the
// plain tool bar when own drawing is off.
#include "uisupport/uitest.h"

#include "frames/cnewtoolbar.h"
#include "menus/cnewmenu.h"
#include "menus/menucolors.h"
#include "platform/windows/sysmetrics.h"
#include "ui/images/toolbarresource.h"
#include "ui/windows/qtinterop.h"

#include <QImage>

#include <memory>

namespace {

constexpr UINT kStrip = 7150;
constexpr COLORREF kOffice = 0xF5C2A3; // the "Office 2003" bar colour

class NewToolBarTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedMode = CNewMenu::GetMenuDrawMode();
        savedColor = CNewMenu::m_InitColor;
        QImage strip(16 * 4, 15, QImage::Format_RGB32);
        strip.fill(QColor(192, 192, 192));
        for (int i = 0; i < 4; ++i)
            strip.setPixel(16 * i + 8, 7, qRgb(0, 0, 255));
        vx::SetResourceImage(IMAGE_BITMAP, kStrip, strip);
        vx::SetToolBarResource(MAKEINTRESOURCE(kStrip), {1, 16, 15, 5, 401, 402, 0, 403, 404});
        ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 500, 300)));
        frame.EnableDocking(CBRS_ALIGN_ANY);
    }
    void TearDown() override
    {
        bar.reset();
        frame.DestroyWindow();
        CNewMenu::SetMenuDrawMode(savedMode);
        CNewMenu::m_InitColor = savedColor;
        CNewToolBar::m_NewToolbar = 1;
        vx::SetResourceImage(IMAGE_BITMAP, kStrip, QImage());
        vx::SetToolBarResource(MAKEINTRESOURCE(kStrip), {});
    }
    // A bar made in `mode`, docked at the top (its style follows the mode
    // it was made in).
    template <class Bar = CNewToolBar>
    Bar& Build(UINT mode, DWORD side = AFX_IDW_DOCKBAR_TOP)
    {
        CNewMenu::SetMenuDrawMode(mode);
        auto made = std::make_unique<Bar>();
        Bar& b = *made;
        bar = std::move(made);
        EXPECT_TRUE(b.CreateEx(&frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER));
        EXPECT_TRUE(b.LoadToolBar(kStrip));
        b.EnableDocking(CBRS_ALIGN_ANY);
        frame.DockControlBar(&b, side);
        frame.RecalcLayout();
        return b;
    }
    // A button's rectangle in the bar's window coordinates (the picture's).
    CRect Button(int index)
    {
        CRect r;
        bar->GetItemRect(index, &r);
        bar->ClientToScreen(&r);
        CRect window;
        bar->GetWindowRect(&window);
        r.OffsetRect(-window.left, -window.top);
        return r;
    }
    QImage Shot() { return vxtest::Render(*bar); }

    CFrameWnd frame;
    std::unique_ptr<CToolBar> bar;
    UINT savedMode = 0;
    COLORREF savedColor = 0;
};

} // namespace

TEST_F(NewToolBarTest, FlatModesFillTheBarAndModesFourAndFiveLookLikeTheOriginal)
{
    Build(CNewMenu::STYLE_ORIGINAL);
    const QImage original = Shot();
    const int right = original.width() - 4;
    EXPECT_PIXEL(original, right, original.height() / 2, GetSysColor(COLOR_3DLIGHT));
    // The framework's gripper: two raised lines at the left (no borders).
    EXPECT_PIXEL(original, 1, 10, GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_PIXEL(original, 3, 10, GetSysColor(COLOR_BTNSHADOW));

    Build(CNewMenu::STYLE_SPECIAL);
    EXPECT_EQ(Shot(), original) << vxtest::SaveFailureImage(Shot(), "special");

    CNewToolBar& xp = Build(CNewMenu::STYLE_XP);
    const QImage shot = Shot();
    EXPECT_PIXEL(shot, right, shot.height() / 2,
                 MixColor(CNewMenu::GetMenuBarColorXP(), GetSysColor(COLOR_WINDOW)));
    // Ticks down the left end in the tint, every second row.
    const int y = xp.GetBorders().top + 4;
    const COLORREF tint = TintColor(CNewMenu::GetMenuBarColorXP());
    EXPECT_PIXEL(shot, 4, y, tint);
    EXPECT_PIXEL(shot, 5, y, tint);
    EXPECT_PIXEL(shot, 4, y + 2, tint);
    EXPECT_FALSE(vxtest::PixelIs(shot, 4, y + 1, tint));
}

TEST_F(NewToolBarTest, OfficeBarIsAGradientWithAnEdgeRoundedCornersAndADottedGripper)
{
    CNewMenu::m_InitColor = kOffice;
    CNewToolBar& b = Build(CNewMenu::STYLE_XP_2003);
    EXPECT_EQ(b.GetBorders(), CRect(3, 1, 3, 1));
    const QImage shot = Shot();
    const int h = shot.height();
    const int x = shot.width() - 10;
    // Around the gradient the bar shows the menu bar's colour.
    EXPECT_PIXEL(shot, x, 0, kOffice);
    EXPECT_PIXEL(shot, shot.width() - 1, h / 2, kOffice);
    EXPECT_PIXEL(shot, x, 1, 0xFEECDD) << "light at the top";
    EXPECT_PIXEL(shot, x, h - 3, 0x9C613B) << "the edge line";
    const COLORREF upper = vxtest::ColorAt(shot, x, h / 4);
    const COLORREF lower = vxtest::ColorAt(shot, x, h - 5);
    EXPECT_GT(GetBValue(upper), GetBValue(lower)) << "darker towards the bottom";
    // Corners of the inside rounded in the bar colour.
    EXPECT_PIXEL(shot, 3, 1, kOffice);
    EXPECT_PIXEL(shot, 4, 1, kOffice);
    EXPECT_PIXEL(shot, 3, 2, kOffice);
    EXPECT_FALSE(vxtest::PixelIs(shot, 4, 2, kOffice));
    // Dots over white dots, every four pixels.
    const COLORREF dot = DarkenColor(10, GetSysColor(COLOR_ACTIVECAPTION));
    EXPECT_PIXEL(shot, 5, 4, dot);
    EXPECT_PIXEL(shot, 6, 5, dot);
    EXPECT_PIXEL(shot, 7, 6, RGB(255, 255, 255));
    EXPECT_PIXEL(shot, 5, 8, dot);
}

TEST_F(NewToolBarTest, IcyBarHasALightLineUnderItsTopAndAnEdge)
{
    CNewToolBar& b = Build(CNewMenu::STYLE_ICY);
    EXPECT_EQ(b.GetBorders(), CRect(3, 1, 3, 1)) << "set as it docks";
    const COLORREF base = CNewMenu::GetMenuColor(nullptr);
    const QImage shot = Shot();
    const int x = shot.width() - 10;
    EXPECT_PIXEL(shot, x, 1, LightenColor(125, base));
    EXPECT_PIXEL(shot, x, shot.height() - 3, DarkenColor(150, base));
    EXPECT_PIXEL(shot, 5, 4, DarkenColor(100, base)) << "a dot of the gripper";
    EXPECT_PIXEL(shot, 3, 1, GetSysColor(COLOR_3DLIGHT)) << "a rounded corner";
}

TEST_F(NewToolBarTest, VerticalBarRunsItsGradientAcross)
{
    CNewMenu::m_InitColor = kOffice;
    Build(CNewMenu::STYLE_XP_2003, AFX_IDW_DOCKBAR_LEFT);
    const QImage shot = Shot();
    ASSERT_GT(shot.height(), shot.width());
    const int y = shot.height() - 6;
    EXPECT_PIXEL(shot, 1, y, 0xFEECDD) << "light at the left";
    EXPECT_PIXEL(shot, shot.width() - 2, y, 0x9C613B) << "the edge at the right";
}

TEST_F(NewToolBarTest, AFloatingOfficeBarHasNoBordersAndNoEdge)
{
    CNewMenu::m_InitColor = kOffice;
    CNewToolBar& b = Build(CNewMenu::STYLE_XP_2003);
    frame.FloatControlBar(&b, CPoint(100, 100));
    ASSERT_TRUE(b.IsFloating());
    EXPECT_EQ(b.GetBorders(), CRect(0, 0, 0, 0));
    const QImage shot = Shot();
    const int x = shot.width() - 2;
    EXPECT_PIXEL(shot, x, 0, 0xFEECDD) << "the gradient from the very top";
    for (int y = 0; y < shot.height(); ++y)
        EXPECT_FALSE(vxtest::PixelIs(shot, x, y, 0x9C613B)) << y;
    frame.DockControlBar(&b, AFX_IDW_DOCKBAR_TOP);
    EXPECT_EQ(b.GetBorders(), CRect(3, 1, 3, 1)) << "docked again";
}

TEST_F(NewToolBarTest, HotCheckedAndPressedButtonsPerMode)
{
    CNewMenu::m_InitColor = kOffice;
    CNewToolBar& b = Build(CNewMenu::STYLE_XP_2003);
    b.SendMessage(TB_CHECKBUTTON, 402, TRUE);
    frame.SetFocus();
    CRect hot = Button(0);
    CRect screen;
    b.GetItemRect(0, &screen);
    b.ClientToScreen(&screen);
    SetCursorPos(screen.CenterPoint().x, screen.CenterPoint().y);
    QImage shot = Shot();
    CRect checked = Button(1);
    EXPECT_PIXEL(shot, checked.left, checked.top + 5, 0x840204) << "frame of the checked button";
    EXPECT_PIXEL(shot, checked.left + 2, checked.top + 2, 0xC2EEFF);
    EXPECT_PIXEL(shot, hot.left, hot.top + 5, 0x840204) << "frame of the hot button";
    EXPECT_PIXEL(shot, hot.left + 5, hot.top + 1, 0xDBEFFA) << "the light orange";

    b.SendMessage(TB_PRESSBUTTON, 401, TRUE);
    shot = Shot();
    EXPECT_PIXEL(shot, hot.left + 5, hot.top + 1, 0x6B97F2) << "the dark orange while pressed";

    // Without the focus in its frame no button is hot.
    b.SendMessage(TB_PRESSBUTTON, 401, FALSE);
    CFrameWnd other;
    ASSERT_TRUE(other.CreateEx("Other", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(600, 0, 700, 100)));
    other.SetFocus();
    shot = Shot();
    EXPECT_FALSE(vxtest::PixelIs(shot, hot.left, hot.top + 5, 0x840204));
    EXPECT_PIXEL(shot, checked.left + 2, checked.top + 2, 0xC2EEFF);
    other.DestroyWindow();

    CNewToolBar& xp = Build(CNewMenu::STYLE_XP);
    xp.SendMessage(TB_CHECKBUTTON, 402, TRUE);
    shot = Shot();
    checked = Button(1);
    EXPECT_PIXEL(shot, checked.left, checked.top + 5, GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_PIXEL(shot, checked.left + 2, checked.top + 2, GetSelectionColor());

    CNewToolBar& plain = Build(CNewMenu::STYLE_ORIGINAL);
    plain.SendMessage(TB_CHECKBUTTON, 402, TRUE);
    shot = Shot();
    checked = Button(1);
    EXPECT_PIXEL(shot, checked.left, checked.top, GetSysColor(COLOR_BTNSHADOW)) << "sunken";
    EXPECT_PIXEL(shot, checked.right - 1, checked.bottom - 1, GetSysColor(COLOR_HIGHLIGHTTEXT));
}

TEST_F(NewToolBarTest, ImagesSitAtThreeMovePressedAndGrayWhenDisabled)
{
    CNewToolBar& b = Build(CNewMenu::STYLE_ORIGINAL);
    CRect first = Button(0);
    QImage shot = Shot();
    EXPECT_PIXEL(shot, first.left + 3 + 8, first.top + 3 + 7, RGB(0, 0, 255));
    b.SendMessage(TB_PRESSBUTTON, 401, TRUE);
    frame.SetFocus();
    CRect screen;
    b.GetItemRect(0, &screen);
    b.ClientToScreen(&screen);
    SetCursorPos(screen.CenterPoint().x, screen.CenterPoint().y);
    shot = Shot();
    EXPECT_PIXEL(shot, first.left + 4 + 8, first.top + 4 + 7, RGB(0, 0, 255)) << "pressed moves down right";

    // The disabled image is the gray blend of the same strip.
    CNewToolBar& office = Build(CNewMenu::STYLE_XP_2003);
    office.SendMessage(TB_ENABLEBUTTON, 401, FALSE);
    shot = Shot();
    first = Button(0);
    const COLORREF tint = LightenColor(115, CNewMenu::GetMenuBarColor2003());
    const auto blend = [](int gray, int c) { return (gray * 110 + c * 145) / 256; };
    EXPECT_PIXEL(shot, first.left + 3 + 8, first.top + 3 + 7,
                 RGB(blend(85, GetRValue(tint)), blend(85, GetGValue(tint)), blend(85, GetBValue(tint))));
    const CRect second = Button(1);
    EXPECT_PIXEL(shot, second.left + 3 + 8, second.top + 3 + 7, RGB(0, 0, 255)) << "enabled keeps its colours";
}

TEST_F(NewToolBarTest, WithTheSwitchOffItIsThePlainToolBar)
{
    CNewMenu::m_InitColor = kOffice;
    Build<CToolBar>(CNewMenu::STYLE_XP_2003);
    const QImage plain = Shot();
    CNewToolBar::m_NewToolbar = 0;
    CNewToolBar& b = Build(CNewMenu::STYLE_XP_2003);
    EXPECT_EQ(b.GetBorders(), CRect(0, 0, 0, 0)) << "no borders of the mode";
    EXPECT_EQ(Shot(), plain) << vxtest::SaveFailureImage(Shot(), "switch-off");
    EXPECT_FALSE(b.LoadHiColor(MAKEINTRESOURCE(kStrip)));
}

TEST(NewToolBarPaint, GrayBlendAndCorners)
{
    vxtest::Canvas canvas(8, 6);
    CDC& dc = canvas.dc();
    dc.FillSolidRect(0, 0, 8, 6, RGB(10, 20, 30));
    CNewToolBar::PaintCorner(&dc, CRect(1, 1, 7, 5), RGB(255, 0, 0));
    const QImage corners = canvas.Image();
    for (const CPoint p : {CPoint(1, 1), CPoint(2, 1), CPoint(1, 2), CPoint(6, 1), CPoint(5, 1), CPoint(6, 2),
                           CPoint(1, 4), CPoint(2, 4), CPoint(1, 3), CPoint(6, 4), CPoint(5, 4), CPoint(6, 3)})
        EXPECT_PIXEL(corners, p.x, p.y, RGB(255, 0, 0));
    EXPECT_EQ(vxtest::CountColor(corners, CRect(0, 0, 8, 6), RGB(255, 0, 0)), 12);

    QImage source(2, 1, QImage::Format_RGB32);
    source.setPixel(0, 0, qRgb(30, 60, 90));
    source.setPixel(1, 0, qRgb(255, 255, 255));
    CBitmap* bitmap = CBitmap::FromHandle(vx::BitmapFromQImage(source));
    // gray 60: (60 * 200 + c * 55) / 256; white: (255 * 200 + c * 55) / 256
    const COLORREF corner = CNewToolBar::MakeGrayAlphablend(bitmap, 200, RGB(0, 100, 200));
    EXPECT_EQ(corner, RGB(46, 68, 89));
    CDC memory;
    memory.CreateCompatibleDC(nullptr);
    CBitmap* old = memory.SelectObject(bitmap);
    EXPECT_EQ(memory.GetPixel(1, 0), RGB(199, 220, 242));
    memory.SelectObject(old);
    DeleteObject(bitmap->m_hObject);
}

TEST_F(NewToolBarTest, SeparatorsAreRulesAcrossTheBarsDirection)
{
    const COLORREF rule = DarkenColor(40, CNewMenu::GetMenuBarColorXP());
    CNewToolBar& b = Build(CNewMenu::STYLE_XP);
    frame.FloatControlBar(&b, CPoint(100, 100));
    ASSERT_TRUE(b.IsFloating());
    CRect sep = Button(2);
    QImage shot = Shot();
    const int x = sep.left + sep.Width() / 2 - 1;
    EXPECT_PIXEL(shot, x, sep.top + 3, rule) << "a floating row: upright";
    EXPECT_PIXEL(shot, x, sep.bottom - 4, rule);
    EXPECT_FALSE(vxtest::PixelIs(shot, x, sep.bottom - 2, rule));

    frame.DockControlBar(&b, AFX_IDW_DOCKBAR_LEFT);
    frame.RecalcLayout();
    const CRect above = Button(1);
    sep = Button(2);
    shot = Shot();
    const int y = above.bottom + (sep.bottom - above.bottom - 1) / 2;
    EXPECT_PIXEL(shot, sep.left + 3, y, rule) << "a column: across";
    EXPECT_FALSE(vxtest::PixelIs(shot, sep.left + sep.Width() / 2 - 1, sep.top + 3, rule) &&
                 vxtest::PixelIs(shot, sep.left + sep.Width() / 2 - 1, sep.top + 5, rule));
}

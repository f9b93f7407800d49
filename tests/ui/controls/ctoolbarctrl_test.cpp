// The tool bar control: its layout and TB_ messages, the mouse (hot,
// pressed, check and group buttons, commands), custom draw stages with item
// states, the default painting, and tooltips by button.
#include "controltest.h"

#include "ui/controls/ctoolbarctrl.h"
#include "ui/controls/ctooltipctrl.h"
#include "platform/windows/sysmetrics.h"
#include "ui/images/cbitmap.h"
#include "ui/windows/qtinterop.h"

#include <QImage>

#include <cstdio>
#include <vector>

namespace {

constexpr COLORREF kImageColor = RGB(0, 0, 200);

// A parent that records custom draw stages and answers them as told, and
// gives tooltip texts by command.
class BarParent : public vxtest::Recorder {
public:
    struct Stage {
        DWORD stage;
        DWORD_PTR item;
        UINT state;
    };
    std::vector<Stage> stages;
    LRESULT prepaint = CDRF_DODEFAULT;
    LRESULT itemAnswer = CDRF_DODEFAULT;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_NOTIFY) {
            auto* header = reinterpret_cast<NMHDR*>(lParam);
            if (header->code == NM_CUSTOMDRAW) {
                auto* cd = reinterpret_cast<NMCUSTOMDRAW*>(lParam);
                stages.push_back({cd->dwDrawStage, cd->dwItemSpec, cd->uItemState});
                if (cd->dwDrawStage == CDDS_PREPAINT)
                    return prepaint;
                if (cd->dwDrawStage == CDDS_ITEMPREPAINT)
                    return itemAnswer;
                return CDRF_DODEFAULT;
            }
            if (header->code == TTN_NEEDTEXT) {
                auto* info = reinterpret_cast<NMTTDISPINFOA*>(lParam);
                std::snprintf(info->szText, sizeof info->szText, "Command %u", static_cast<unsigned>(header->idFrom));
                return 0;
            }
        }
        return Recorder::WindowProc(message, wParam, lParam);
    }
};

class ToolBars : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Make(300, 120));
        QImage strip(16 * 4, 15, QImage::Format_RGB32);
        strip.fill(QColor(0, 0, 200));
        HBITMAP bitmap = vx::BitmapFromQImage(strip);
        images.Create(16, 15, ILC_COLOR24, 0, 4);
        images.Add(CBitmap::FromHandle(bitmap), static_cast<CBitmap*>(nullptr));
        DeleteObject(bitmap);
    }
    void Make(DWORD style = TBSTYLE_FLAT)
    {
        ASSERT_TRUE(bar.Create(WS_CHILD | WS_VISIBLE | style, CRect(0, 0, 280, 60), &parent, 9));
        bar.SetImageList(&images);
        const TBBUTTON buttons[] = {
            {0, 101, TBSTATE_ENABLED, TBSTYLE_BUTTON, {}, 0, 0},
            {1, 102, TBSTATE_ENABLED, TBSTYLE_CHECK, {}, 0, 0},
            {0, 0, TBSTATE_ENABLED, TBSTYLE_SEP, {}, 0, 0},
            {2, 103, TBSTATE_ENABLED, TBSTYLE_CHECKGROUP, {}, 0, 0},
            {3, 104, TBSTATE_ENABLED, TBSTYLE_CHECKGROUP, {}, 0, 0},
            {0, 105, 0, TBSTYLE_BUTTON, {}, 0, 0},
        };
        ASSERT_TRUE(bar.AddButtons(6, buttons));
    }
    CRect Item(int index)
    {
        CRect r;
        bar.GetItemRect(index, &r);
        return r;
    }
    void ClickItem(int index)
    {
        const CPoint c = Item(index).CenterPoint();
        vxtest::Click(bar, c.x, c.y);
    }

    BarParent parent;
    CToolBarCtrl bar;
    CImageList images;
};

} // namespace

TEST_F(ToolBars, LaysOutButtonsSeparatorsAndRows)
{
    Make();
    EXPECT_EQ(bar.GetButtonCount(), 6);
    EXPECT_EQ(bar.GetButtonSize(), CSize(24, 22));
    EXPECT_EQ(Item(0), CRect(0, 0, 24, 22));
    EXPECT_EQ(Item(1), CRect(24, 0, 48, 22));
    EXPECT_EQ(Item(2), CRect(48, 0, 56, 22)) << "a separator is 8 wide";
    EXPECT_EQ(Item(3), CRect(56, 0, 80, 22));
    EXPECT_EQ(bar.CommandToIndex(104), 4);
    EXPECT_EQ(bar.CommandToIndex(999), -1);

    CPoint onSeparator(50, 5);
    EXPECT_EQ(bar.HitTest(&onSeparator), -3);
    CPoint onButton(30, 5);
    EXPECT_EQ(bar.HitTest(&onButton), 1);

    // A wrap starts a new row.
    bar.SetState(102, TBSTATE_ENABLED | TBSTATE_WRAP);
    EXPECT_EQ(Item(2), CRect(0, 22, 8, 44));
    EXPECT_EQ(Item(3), CRect(8, 22, 32, 44));
    EXPECT_EQ(bar.GetRows(), 2);
    CSize size;
    ASSERT_TRUE(bar.GetMaxSize(&size));
    EXPECT_EQ(size, CSize(80, 44));
    bar.SetState(102, TBSTATE_ENABLED);

    // A wrapped separator is a band between the rows.
    const TBBUTTON band{0, 0, TBSTATE_WRAP, TBSTYLE_SEP, {}, 0, 0};
    ASSERT_TRUE(bar.InsertButton(2, &band));
    EXPECT_EQ(Item(2), CRect(0, 22, 24, 27));
    EXPECT_EQ(Item(3), CRect(0, 27, 8, 49));
    EXPECT_EQ(Item(4), CRect(8, 27, 32, 49));
    EXPECT_TRUE(bar.DeleteButton(2));

    // Hidden buttons take no room.
    bar.SetState(102, TBSTATE_ENABLED);
    bar.HideButton(101);
    EXPECT_EQ(Item(1), CRect(0, 0, 24, 22));
    EXPECT_FALSE(bar.GetItemRect(0, nullptr));
    TBBUTTON b{};
    ASSERT_TRUE(bar.GetButton(0, &b));
    EXPECT_TRUE(b.fsState & TBSTATE_HIDDEN);

    // Buttons come and go.
    EXPECT_TRUE(bar.DeleteButton(0));
    EXPECT_EQ(bar.GetButtonCount(), 5);
    const TBBUTTON extra{0, 200, TBSTATE_ENABLED, TBSTYLE_BUTTON, {}, 0, 0};
    EXPECT_TRUE(bar.InsertButton(1, &extra));
    EXPECT_EQ(bar.CommandToIndex(200), 1);
    EXPECT_EQ(bar.SendMessage(TB_BUTTONCOUNT), 6);
    EXPECT_FALSE(bar.DeleteButton(17));
}

TEST_F(ToolBars, ClicksSendCommandsAndToggleCheckAndGroupButtons)
{
    Make();
    ClickItem(0);
    ASSERT_EQ(parent.commands.size(), 1u);
    EXPECT_EQ(parent.commands[0], std::make_pair(101u, 0u));

    ClickItem(1);
    EXPECT_TRUE(bar.IsButtonChecked(102));
    ClickItem(1);
    EXPECT_FALSE(bar.IsButtonChecked(102)) << "a check button toggles";

    ClickItem(3);
    EXPECT_TRUE(bar.IsButtonChecked(103));
    ClickItem(4);
    EXPECT_TRUE(bar.IsButtonChecked(104));
    EXPECT_FALSE(bar.IsButtonChecked(103)) << "one of a group";
    ClickItem(4);
    EXPECT_TRUE(bar.IsButtonChecked(104)) << "a group button stays in";

    // A disabled button and a separator say nothing.
    const size_t before = parent.commands.size();
    ClickItem(5);
    ClickItem(2);
    EXPECT_EQ(parent.commands.size(), before);

    // Pressed, moved off and let go elsewhere: no command.
    const CPoint c = Item(0).CenterPoint();
    vxtest::Mouse(bar, WM_LBUTTONDOWN, c.x, c.y, MK_LBUTTON);
    EXPECT_TRUE(bar.GetState(101) & TBSTATE_PRESSED);
    vxtest::Mouse(bar, WM_MOUSEMOVE, 200, 40, MK_LBUTTON);
    EXPECT_FALSE(bar.GetState(101) & TBSTATE_PRESSED);
    vxtest::Mouse(bar, WM_LBUTTONUP, 200, 40);
    EXPECT_EQ(parent.commands.size(), before);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);

    // Enabled again, it works.
    bar.EnableButton(105);
    ClickItem(5);
    EXPECT_EQ(parent.commands.back(), std::make_pair(105u, 0u));
}

TEST_F(ToolBars, HotButtonFollowsTheMouseOnAFlatBar)
{
    Make();
    vxtest::Mouse(bar, WM_MOUSEMOVE, Item(1).CenterPoint().x, 5);
    EXPECT_EQ(bar.GetHotItem(), 1);
    vxtest::Mouse(bar, WM_MOUSEMOVE, Item(5).CenterPoint().x, 5);
    EXPECT_EQ(bar.GetHotItem(), -1) << "a disabled button is never hot";
    vxtest::Mouse(bar, WM_MOUSEMOVE, Item(0).CenterPoint().x, 5);
    EXPECT_EQ(bar.GetHotItem(), 0);
    bar.SendMessage(WM_MOUSELEAVE);
    EXPECT_EQ(bar.GetHotItem(), -1);
}

TEST_F(ToolBars, CustomDrawStagesCarryTheItemStates)
{
    Make();
    bar.CheckButton(102);
    bar.SetHotItem(0);
    parent.prepaint = CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    parent.itemAnswer = CDRF_NOTIFYPOSTPAINT;
    vxtest::Render(bar);
    ASSERT_FALSE(parent.stages.empty());
    EXPECT_EQ(parent.stages.front().stage, CDDS_PREPAINT);
    EXPECT_EQ(parent.stages.back().stage, CDDS_POSTPAINT);
    std::vector<DWORD_PTR> items;
    for (size_t i = 0; i < parent.stages.size(); ++i) {
        const auto& s = parent.stages[i];
        if (s.stage != CDDS_ITEMPREPAINT)
            continue;
        items.push_back(s.item);
        ASSERT_LT(i + 1, parent.stages.size());
        EXPECT_EQ(parent.stages[i + 1].stage, CDDS_ITEMPOSTPAINT);
        const UINT expected = s.item == 101 ? CDIS_HOT : s.item == 102 ? CDIS_CHECKED : s.item == 105 ? CDIS_DISABLED : 0;
        EXPECT_EQ(s.state, expected) << s.item;
    }
    EXPECT_EQ(items, (std::vector<DWORD_PTR>{101, 102, 0, 103, 104, 105}));

    // Without item draw only the two whole-bar stages come; skipping the
    // default leaves the images out.
    parent.stages.clear();
    parent.prepaint = CDRF_DODEFAULT;
    QImage image = vxtest::Render(bar);
    ASSERT_EQ(parent.stages.size(), 1u);
    EXPECT_GT(vxtest::CountColor(image, Item(0), kImageColor), 100);
    parent.prepaint = CDRF_NOTIFYITEMDRAW;
    parent.itemAnswer = CDRF_SKIPDEFAULT;
    image = vxtest::Render(bar);
    EXPECT_EQ(vxtest::CountColor(image, Item(0), kImageColor), 0);
}

TEST_F(ToolBars, PaintsHotCheckedAndDisabledButtons)
{
    Make();
    bar.SetHotItem(0);
    bar.CheckButton(102);
    const QImage image = vxtest::Render(bar);
    const CRect hot = Item(0);
    const CRect checked = Item(1);
    // Raised: light top left, dark bottom right; sunken the other way.
    EXPECT_PIXEL(image, hot.left, hot.top + 5, GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_PIXEL(image, hot.right - 1, hot.top + 5, GetSysColor(COLOR_BTNSHADOW));
    EXPECT_PIXEL(image, checked.left, checked.top + 5, GetSysColor(COLOR_BTNSHADOW));
    EXPECT_PIXEL(image, checked.right - 1, checked.top + 5, GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_PIXEL(image, checked.left + 2, checked.top + 2, GetSysColor(COLOR_3DLIGHT));
    // The image of a checked button moves down and right by one.
    EXPECT_EQ(vxtest::CountColor(image, CRect(hot.left + 4, hot.top + 3, hot.left + 20, hot.top + 18), kImageColor),
              16 * 15);
    EXPECT_EQ(vxtest::CountColor(image, CRect(checked.left + 5, checked.top + 4, checked.left + 21, checked.top + 19),
                                 kImageColor),
              16 * 15);
    // A disabled button shows no image colour; a plain one has no edge.
    EXPECT_EQ(vxtest::CountColor(image, Item(5), kImageColor), 0);
    EXPECT_PIXEL(image, Item(3).left, Item(3).top + 5, GetSysColor(COLOR_BTNFACE));
    // The separator's etched line.
    const CRect sep = Item(2);
    EXPECT_PIXEL(image, sep.left + 3, sep.top + 10, GetSysColor(COLOR_3DSHADOW));
    EXPECT_PIXEL(image, sep.left + 4, sep.top + 10, GetSysColor(COLOR_3DHILIGHT));
}

TEST_F(ToolBars, TooltipsAskTheParentByCommand)
{
    Make(TBSTYLE_FLAT | TBSTYLE_TOOLTIPS);
    CToolTipCtrl* tips = bar.GetToolTips();
    ASSERT_NE(tips, nullptr);
    EXPECT_EQ(tips->GetToolCount(), 5) << "one tool per button";
    EXPECT_EQ(tips->TextAt(&bar, Item(3).CenterPoint()), "Command 103");
    EXPECT_EQ(tips->TextAt(&bar, Item(2).CenterPoint()), "") << "separators have none";
    // The tools follow the buttons when they move.
    bar.HideButton(101);
    EXPECT_EQ(tips->TextAt(&bar, Item(3).CenterPoint()), "Command 103");
    EXPECT_EQ(tips->GetToolCount(), 4);
}

// The grid combo: opened over a cell with its list down, a choice by Enter
// or the mouse, Esc, and closing it again.
#include "uisupport/uitest.h"

#include "ui/grids/kvxgridcombo.h"

#include "ui/controls/clistbox.h"

#include <algorithm>
#include <vector>

namespace {

constexpr UINT kComboId = 400;

class ComboParent : public CWnd {
public:
    std::vector<UINT> codes;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_COMMAND && LOWORD(wParam) == kComboId)
            codes.push_back(HIWORD(wParam));
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class GridComboTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.CreateEx("combo", "ComboParent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 300, 300)));
        ASSERT_TRUE(combo.Create(WS_CHILD | CBS_DROPDOWNLIST | WS_VSCROLL, CRect(0, 0, 10, 10), &parent, kComboId));
        for (const char* c : {"first", "second", "third"})
            items.Add(c);
    }
    void TearDown() override { combo.Finish(); }
    bool Sent(UINT code) const
    {
        return std::find(parent.codes.begin(), parent.codes.end(), code) != parent.codes.end();
    }

    ComboParent parent;
    KVxGridCombo combo;
    CStringArray items;
};

} // namespace

TEST_F(GridComboTest, OpensOverTheCellWithItsListDown)
{
    EXPECT_FALSE(combo.IsWindowVisible());
    combo.Start(CRect(40, 60, 160, 79), items, 1);
    EXPECT_TRUE(combo.IsActive());
    EXPECT_TRUE(combo.IsWindowVisible());
    EXPECT_TRUE(combo.GetDroppedState());
    EXPECT_EQ(CWnd::GetFocus(), &combo);
    EXPECT_EQ(combo.GetCount(), 3);
    EXPECT_STREQ(combo.GetChoice(), "second");
    CRect r;
    combo.GetWindowRect(&r);
    parent.ScreenToClient(&r);
    EXPECT_EQ(r.left, 40);
    EXPECT_EQ(r.top, 60);
    EXPECT_EQ(r.Width(), 120);
    // A second start takes new items and forgets the old.
    CStringArray two;
    two.Add("yes");
    two.Add("no");
    combo.Start(CRect(0, 0, 50, 19), two, -1);
    EXPECT_EQ(combo.GetCount(), 2);
    EXPECT_STREQ(combo.GetChoice(), "");
}

TEST_F(GridComboTest, EnterChoosesAndEscCancels)
{
    combo.Start(CRect(40, 60, 160, 79), items, 0);
    parent.codes.clear();
    vxtest::Key(VK_DOWN);
    vxtest::Key(VK_RETURN);
    EXPECT_FALSE(combo.GetDroppedState());
    EXPECT_STREQ(combo.GetChoice(), "second");
    // The highlight moving sends CBN_SELCHANGE first; Enter ends it with OK.
    EXPECT_TRUE(Sent(CBN_SELENDOK));
    EXPECT_FALSE(Sent(CBN_SELENDCANCEL));
    combo.Finish();
    EXPECT_FALSE(combo.IsActive());
    EXPECT_FALSE(combo.IsWindowVisible());

    combo.Start(CRect(40, 60, 160, 79), items, 2);
    parent.codes.clear();
    vxtest::Key(VK_UP);
    vxtest::Key(VK_ESCAPE);
    EXPECT_STREQ(combo.GetChoice(), "third");
    EXPECT_TRUE(Sent(CBN_SELENDCANCEL));
    EXPECT_FALSE(Sent(CBN_SELENDOK));
}

TEST_F(GridComboTest, AClickInTheListChooses)
{
    combo.Start(CRect(40, 60, 160, 79), items, 0);
    auto* list = dynamic_cast<CListBox*>(CWnd::GetCapture());
    ASSERT_NE(list, nullptr);
    parent.codes.clear();
    // The third item of the list.
    const int line = list->GetItemHeight(0);
    vxtest::Click(*list, 10, 2 * line + line / 2 + 1);
    EXPECT_STREQ(combo.GetChoice(), "third");
    EXPECT_TRUE(Sent(CBN_SELENDOK));
}

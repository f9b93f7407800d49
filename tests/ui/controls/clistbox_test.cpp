// The list box: its model, the selection rules of its three kinds, and the
// notifications the user's choices send.
#include "ui/controls/controltest.h"

#include "ui/controls/clistbox.h"

#include "platform/windows/sysmetrics.h"

namespace {

using vxtest::Key;
using vxtest::kShift;
using vxtest::Recorder;

constexpr UINT kId = 800;

struct ListFixture : ::testing::Test {
    Recorder parent;
    CListBox list;

    void Make(DWORD style, int height = 100)
    {
        ASSERT_TRUE(parent.Make());
        ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | WS_BORDER | style, CRect(10, 10, 170, 10 + height), &parent,
                                kId));
        for (const char* name : {"Relay", "Contactor", "Fuse", "Motor", "Lamp"})
            list.AddString(name);
        parent.commands.clear();
    }

    // The middle of item `i` in the list's client coordinates.
    CPoint At(int i)
    {
        CRect r;
        list.GetItemRect(i, &r);
        return r.CenterPoint();
    }
};

TEST_F(ListFixture, ModelSortsFindsAndKeepsItemData)
{
    Make(LBS_SORT);
    EXPECT_EQ(list.GetCount(), 5);
    CString text;
    list.GetText(0, text);
    EXPECT_STREQ(text, "Contactor");
    EXPECT_EQ(list.InsertString(1, "Breaker"), 1); // an insert keeps its place
    EXPECT_EQ(list.FindString(-1, "mo"), 4);
    EXPECT_EQ(list.FindString(4, "MO"), 4); // wraps round to itself
    EXPECT_EQ(list.FindStringExact(-1, "fuse"), 2);
    EXPECT_EQ(list.FindStringExact(-1, "Fus"), LB_ERR);
    list.SetItemData(2, 42);
    EXPECT_EQ(list.GetItemData(2), 42u);
    EXPECT_EQ(list.DeleteString(0), 5);
    EXPECT_EQ(list.GetItemData(1), 42u);
    EXPECT_EQ(list.DeleteString(9), LB_ERR);
    EXPECT_EQ(list.GetTextLen(9), LB_ERR);
    list.ResetContent();
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(list.GetCurSel(), LB_ERR);
}

TEST_F(ListFixture, UserChoicesNotifyOnlyWithLbsNotifyAndProgramChoicesNever)
{
    Make(LBS_NOTIFY);
    list.SetCurSel(1);
    EXPECT_TRUE(parent.commands.empty());
    vxtest::Click(list, At(3).x, At(3).y);
    EXPECT_EQ(list.GetCurSel(), 3);
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{LBN_SETFOCUS, LBN_SELCHANGE}));
    parent.commands.clear();
    vxtest::Click(list, At(3).x, At(3).y); // the same item again: no change
    EXPECT_TRUE(parent.Codes(kId).empty());
    vxtest::DoubleClick(list, At(0).x, At(0).y);
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{LBN_SELCHANGE, LBN_DBLCLK}));
    parent.commands.clear();
    Key(VK_DOWN);
    Key(VK_END);
    Key(VK_END);
    EXPECT_EQ(list.GetCurSel(), 4);
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{LBN_SELCHANGE, LBN_SELCHANGE}));
    vxtest::Type("f"); // the next item starting with F
    EXPECT_EQ(list.GetCurSel(), 2);

    CListBox quiet;
    quiet.Create(WS_CHILD | WS_VISIBLE, CRect(180, 10, 300, 100), &parent, kId + 1);
    quiet.AddString("a");
    quiet.AddString("b");
    parent.commands.clear();
    CRect r;
    quiet.GetItemRect(1, &r);
    vxtest::DoubleClick(quiet, r.CenterPoint().x, r.CenterPoint().y);
    EXPECT_EQ(quiet.GetCurSel(), 1);
    EXPECT_EQ(parent.Codes(kId + 1), std::vector<UINT>{LBN_SETFOCUS});
}

TEST_F(ListFixture, MultipleSelectionTogglesAndExtendedSelectionTakesRanges)
{
    Make(LBS_NOTIFY | LBS_MULTIPLESEL);
    EXPECT_EQ(list.SetCurSel(1), LB_ERR);
    vxtest::Click(list, At(1).x, At(1).y);
    vxtest::Click(list, At(3).x, At(3).y);
    vxtest::Click(list, At(1).x, At(1).y);
    EXPECT_EQ(list.GetSelCount(), 1);
    EXPECT_EQ(list.GetSel(3), 1);
    Key(VK_UP); // the caret moves without choosing
    EXPECT_EQ(list.GetSelCount(), 1);
    Key(VK_SPACE);
    int items[5] = {};
    EXPECT_EQ(list.GetSelItems(5, items), 2);
    EXPECT_EQ(items[0], 0);
    EXPECT_EQ(items[1], 3);
    list.SetSel(-1, FALSE);
    EXPECT_EQ(list.GetSelCount(), 0);

    CListBox extended;
    extended.Create(WS_CHILD | WS_VISIBLE | LBS_EXTENDEDSEL, CRect(180, 10, 300, 120), &parent, kId + 1);
    for (const char* name : {"a", "b", "c", "d", "e"})
        extended.AddString(name);
    CRect r1;
    CRect r3;
    extended.GetItemRect(1, &r1);
    extended.GetItemRect(3, &r3);
    vxtest::Click(extended, r1.CenterPoint().x, r1.CenterPoint().y);
    vxtest::Mouse(extended, WM_LBUTTONDOWN, r3.CenterPoint().x, r3.CenterPoint().y, MK_LBUTTON | MK_SHIFT);
    vxtest::Mouse(extended, WM_LBUTTONUP, r3.CenterPoint().x, r3.CenterPoint().y, MK_SHIFT);
    EXPECT_EQ(extended.GetSelCount(), 3);
    Key(VK_DOWN, kShift);
    EXPECT_EQ(extended.GetSelCount(), 4);
    Key(VK_HOME);
    EXPECT_EQ(extended.GetSelCount(), 1);
    EXPECT_EQ(extended.GetSel(0), 1);
}

TEST_F(ListFixture, ScrollsToKeepTheCaretItemInView)
{
    Make(LBS_NOTIFY | WS_VSCROLL, 40);
    list.SetFocus();
    EXPECT_EQ(list.GetTopIndex(), 0);
    Key(VK_END);
    EXPECT_GT(list.GetTopIndex(), 0);
    CRect item;
    CRect client;
    list.GetItemRect(4, &item);
    list.GetClientRect(&client);
    EXPECT_LE(item.bottom, client.bottom);
    Key(VK_HOME);
    EXPECT_EQ(list.GetTopIndex(), 0);
}

TEST_F(ListFixture, PaintsTheSelectionInTheHighlightColours)
{
    Make(LBS_NOTIFY);
    list.SetCurSel(2);
    const QImage img = vxtest::Render(list);
    CRect r;
    list.GetItemRect(2, &r);
    EXPECT_GT(vxtest::CountColor(img, r, GetSysColor(COLOR_HIGHLIGHT)), r.Width() * r.Height() / 2);
    EXPECT_GT(vxtest::CountColor(img, r, GetSysColor(COLOR_HIGHLIGHTTEXT)), 5);
    list.GetItemRect(1, &r);
    EXPECT_EQ(vxtest::CountColor(img, r, GetSysColor(COLOR_HIGHLIGHT)), 0);
}

} // namespace

// The combo box on screen: the field, the drop-down list and the edit, over
// the core's CB_ model, with the notifications in the platform's order.
#include "ui/controls/controltest.h"

#include "ui/controls/cedit.h"
#include "ui/controls/clistbox.h"

#include "platform/windows/ccombobox.h"
#include "platform/windows/sysmetrics.h"

namespace {

using vxtest::Key;
using vxtest::kAlt;
using vxtest::Recorder;

constexpr UINT kId = 900;

struct ComboFixture : ::testing::Test {
    Recorder parent;
    CComboBox combo;

    void Make(DWORD kind)
    {
        ASSERT_TRUE(parent.Make());
        ASSERT_TRUE(combo.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | kind, CRect(10, 10, 170, 110), &parent, kId));
        for (const char* name : {"Normalny", "Poziomy", "Pionowy", "Specjalny"})
            combo.AddString(name);
        parent.commands.clear();
    }

    // The dropped list: it holds the mouse while it is open.
    CListBox* DroppedList() { return dynamic_cast<CListBox*>(CWnd::GetCapture()); }
};

TEST_F(ComboFixture, FieldIsOneLineHighAndTheTemplateHeightIsTheDroppedHeight)
{
    Make(CBS_DROPDOWNLIST);
    CRect r;
    combo.GetWindowRect(&r);
    EXPECT_LT(r.Height(), 40);
    EXPECT_GT(r.Height(), 14);
    CRect dropped;
    combo.SendMessage(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped));
    EXPECT_EQ(dropped.Height(), 100);
}

TEST_F(ComboFixture, MouseChoiceEndsOkThenClosesThenChanges)
{
    Make(CBS_DROPDOWNLIST);
    vxtest::Click(combo, 20, 8);
    ASSERT_TRUE(combo.GetDroppedState());
    CListBox* list = DroppedList();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->GetCount(), 4);
    EXPECT_TRUE(list->IsWindowVisible());
    CRect item;
    list->GetItemRect(2, &item);
    vxtest::Click(*list, item.CenterPoint().x, item.CenterPoint().y);
    EXPECT_FALSE(combo.GetDroppedState());
    EXPECT_FALSE(list->IsWindowVisible());
    EXPECT_EQ(combo.GetCurSel(), 2);
    EXPECT_STREQ(combo.GetWindowTextString(), "Pionowy");
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{CBN_SETFOCUS, CBN_DROPDOWN, CBN_SELENDOK, CBN_CLOSEUP,
                                                    CBN_SELCHANGE}));
}

TEST_F(ComboFixture, EscapeOrAClickOutsideCancelsAndKeepsTheSelection)
{
    Make(CBS_DROPDOWNLIST);
    combo.SetCurSel(1);
    combo.SetFocus();
    parent.commands.clear();
    Key(VK_F4);
    ASSERT_TRUE(combo.GetDroppedState());
    Key(VK_DOWN); // moves through the open list
    EXPECT_EQ(combo.GetCurSel(), 2);
    Key(VK_ESCAPE);
    EXPECT_FALSE(combo.GetDroppedState());
    EXPECT_EQ(combo.GetCurSel(), 1);
    EXPECT_EQ(parent.Codes(kId),
              (std::vector<UINT>{CBN_DROPDOWN, CBN_SELCHANGE, CBN_SELENDCANCEL, CBN_CLOSEUP}));
    parent.commands.clear();
    Key(VK_DOWN, kAlt);
    CListBox* list = DroppedList();
    ASSERT_NE(list, nullptr);
    vxtest::Mouse(*list, WM_LBUTTONDOWN, -50, -50, MK_LBUTTON);
    EXPECT_FALSE(combo.GetDroppedState());
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{CBN_DROPDOWN, CBN_SELENDCANCEL, CBN_CLOSEUP}));
}

TEST_F(ComboFixture, ArrowsOnAClosedListChooseAtOnce)
{
    Make(CBS_DROPDOWNLIST);
    combo.SetFocus();
    parent.commands.clear();
    Key(VK_DOWN);
    EXPECT_EQ(combo.GetCurSel(), 0);
    Key(VK_END);
    EXPECT_EQ(combo.GetCurSel(), 3);
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{CBN_SELENDOK, CBN_SELCHANGE, CBN_SELENDOK, CBN_SELCHANGE}));
    vxtest::Type("p"); // the next item starting with P
    EXPECT_EQ(combo.GetCurSel(), 1);
    combo.SetCurSel(-1);
    EXPECT_STREQ(combo.GetWindowTextString(), "");
}

TEST_F(ComboFixture, DropDownHasAnEditWhoseChangesTheParentHears)
{
    Make(CBS_DROPDOWN | CBS_AUTOHSCROLL);
    combo.SetFocus();
    CWnd* edit = CWnd::GetFocus();
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->GetParent(), &combo);
    vxtest::Type("Po");
    EXPECT_STREQ(combo.GetWindowTextString(), "Po");
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{CBN_SETFOCUS, CBN_EDITUPDATE, CBN_EDITCHANGE, CBN_EDITUPDATE,
                                                    CBN_EDITCHANGE}));
    EXPECT_EQ(combo.FindString(-1, "po"), 1);
    EXPECT_EQ(combo.FindStringExact(-1, "po"), CB_ERR);
    parent.commands.clear();
    Key(VK_DOWN); // the list's keys reach the combo box from its edit
    EXPECT_EQ(combo.GetCurSel(), 0);
    EXPECT_STREQ(edit->GetWindowTextString(), "Normalny");
    combo.LimitText(3);
    combo.SetEditSel(0, -1);
    vxtest::Type("abcdef");
    EXPECT_STREQ(combo.GetWindowTextString(), "abc");
}

TEST_F(ComboFixture, SimpleComboShowsItsListAlways)
{
    Make(CBS_SIMPLE);
    CListBox* list = nullptr;
    for (CWnd* w = combo.GetWindow(GW_CHILD); w; w = w->GetWindow(GW_HWNDNEXT)) {
        if (auto* l = dynamic_cast<CListBox*>(w))
            list = l;
    }
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->GetCount(), 4);
    combo.AddString("Wlasny");
    EXPECT_EQ(list->GetCount(), 5);
    CRect item;
    list->GetItemRect(3, &item);
    vxtest::Click(*list, item.CenterPoint().x, item.CenterPoint().y);
    EXPECT_EQ(combo.GetCurSel(), 3);
    EXPECT_STREQ(combo.GetWindowTextString(), "Specjalny");
    EXPECT_EQ(parent.Codes(kId).back(), CBN_SELCHANGE);
}

TEST_F(ComboFixture, SortedComboInsertsInOrder)
{
    ASSERT_TRUE(parent.Make());
    combo.Create(WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST | CBS_SORT, CRect(0, 0, 100, 100), &parent, kId);
    combo.AddString("b");
    combo.AddString("C");
    EXPECT_EQ(combo.AddString("a"), 0);
    combo.SetCurSel(0);
    EXPECT_EQ(combo.AddString("A0"), 1);
    EXPECT_EQ(combo.GetCurSel(), 0);
    EXPECT_EQ(combo.SelectString(-1, "c"), 3);
    EXPECT_STREQ(combo.GetWindowTextString(), "C");
}

TEST_F(ComboFixture, PaintsTheChoiceHighlightedWhileFocused)
{
    Make(CBS_DROPDOWNLIST);
    combo.SetCurSel(0);
    QImage img = vxtest::Render(combo);
    EXPECT_EQ(vxtest::CountColor(img, CRect(0, 0, 100, 20), GetSysColor(COLOR_HIGHLIGHT)), 0);
    EXPECT_GT(vxtest::CountColor(img, CRect(0, 0, 100, 20), GetSysColor(COLOR_WINDOWTEXT)), 10);
    combo.SetFocus();
    img = vxtest::Render(combo);
    EXPECT_GT(vxtest::CountColor(img, CRect(0, 0, 100, 20), GetSysColor(COLOR_HIGHLIGHT)), 100);
}

} // namespace

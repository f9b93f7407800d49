#include "platform/windows/ccombobox.h"

#include "support/printers.h"

#include <gtest/gtest.h>

TEST(CComboBox, AnswersComboMessagesWithoutADisplay)
{
    CComboBox combo;
    combo.CreateEx("", "ComboBox", WS_CHILD);
    EXPECT_EQ(combo.AddString("a"), 0);
    EXPECT_EQ(combo.AddString("b"), 1);
    EXPECT_EQ(combo.InsertString(0, "first"), 0);
    combo.SetItemData(2, 42);
    EXPECT_EQ(combo.GetItemData(2), 42u);
    EXPECT_EQ(combo.SetCurSel(2), 2);
    EXPECT_EQ(combo.DeleteString(0), 2);
    EXPECT_EQ(combo.GetCurSel(), 1) << "the selection follows its item";
    CString text;
    combo.GetLBText(1, text);
    EXPECT_EQ(text, "b");
    combo.GetLBText(9, text);
    EXPECT_EQ(text, "");
    EXPECT_EQ(combo.SetCurSel(9), -1);
    EXPECT_EQ(combo.GetCurSel(), -1);
    EXPECT_EQ(combo.DeleteString(5), -1);
    combo.ResetContent();
    EXPECT_EQ(combo.GetCount(), 0);
}

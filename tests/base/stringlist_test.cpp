#include "base/stringlist.h"
#include "platform/windows/ccombobox.h"
#include "platform/shell/resources.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

TEST(StringList, CountsElements)
{
    EXPECT_EQ(GetAnzahlSubStrings("", ';'), 0);
    EXPECT_EQ(GetAnzahlSubStrings("a", ';'), 1);
    EXPECT_EQ(GetAnzahlSubStrings(";", ';'), 2);
    EXPECT_EQ(GetAnzahlSubStrings("a;", ';'), 2);
    EXPECT_EQ(GetAnzahlSubStrings("a\xA7" "b", '\xA7'), 2) << "a separator byte of 0x80 and above";
    EXPECT_EQ(GetAnzahlSubStrings("a\xA7" "b", 0xA7), 2) << "the same byte passed as an unsigned value";
}

TEST(StringList, GetSubStringGivesTheWholeListAtItsEdges)
{
    const CString list("a;b");
    EXPECT_EQ(GetSubString(1, list, ';'), "a");
    EXPECT_EQ(GetSubString(2, list, ';'), "b");
    EXPECT_EQ(GetSubString(3, list, ';'), "a;b");
    EXPECT_EQ(GetSubString(0, list, ';'), "a;b");
    EXPECT_EQ(GetSubString(-1, list, ';'), "a;b");
    EXPECT_EQ(GetSubString(2, "a;", ';'), "");
    EXPECT_EQ(GetSubString(1, "", ';'), "");
    EXPECT_EQ(GetSubString(3, 6712, '#'), "Pionowy");
}

TEST(StringList, GetSubString1DiffersAtItsEdges)
{
    EXPECT_EQ(GetSubString1(3, "a;b", ';'), "b");
    EXPECT_EQ(GetSubString1(0, "a;b", ';'), "");
    EXPECT_EQ(GetSubString1(1, "a;b", ';'), "a");
    EXPECT_EQ(GetSubString1(2, ";b;c", ';'), "");
    EXPECT_EQ(GetSubString1(3, ";b;c", ';'), "");
    EXPECT_EQ(GetSubString1(1, ";b;c", ';'), "");
    EXPECT_EQ(GetSubString1(2, "a;b;c", ';'), "b");
    EXPECT_EQ(GetSubString1(9, "a;b;c", ';'), "c");
    EXPECT_EQ(GetSubString1(2, "a;;c", ';'), "");
}

TEST(StringList, IndexedNumbers)
{
    const CString list("12;x;-3.5");
    EXPECT_EQ(GetIndexedIntFromStringList(list, 1, ';'), 12);
    EXPECT_EQ(GetIndexedIntFromStringList(list, 2, ';'), 0);
    EXPECT_EQ(GetIndexedIntFromStringList(list, 3, ';'), -3);
    EXPECT_FLOAT_EQ(GetIndexedFloatFromStringList(list, 3, ';'), -3.5f);
    EXPECT_FLOAT_EQ(GetIndexedFloatFromStringList(list, 2, ';'), 0.0f);
    EXPECT_EQ(GetIndexedIntFromStringList(list, 7, ';'), 12) << "beyond the end reads the whole list";
}

TEST(StringList, GetNextSubstringWalksToTheTerminator)
{
    char text[] = "a;b";
    CString out;
    char* p = GetNextSubstring(text, out, ';');
    EXPECT_EQ(out, "a");
    ASSERT_EQ(p, text + 2);
    p = GetNextSubstring(p, out, ';');
    EXPECT_EQ(out, "b");
    ASSERT_EQ(p, text + 3);
    EXPECT_EQ(*p, 0);
    out = "stale";
    EXPECT_EQ(GetNextSubstring(p, out, ';'), nullptr);
    EXPECT_EQ(out, "");
    EXPECT_EQ(GetNextSubstring(static_cast<char*>(nullptr), out, ';'), nullptr);
    char trailing[] = "a;";
    p = GetNextSubstring(trailing, out, ';');
    EXPECT_EQ(*p, 0) << "the empty last element is not delivered";
}

TEST(StringList, ExtractNextStringConsumesTheFront)
{
    CString rest("a;b;;c"), out;
    EXPECT_EQ(ExtractNextString(out, rest, ';'), 1);
    EXPECT_EQ(out, "a");
    EXPECT_EQ(rest, "b;;c");
    ExtractNextString(out, rest, ';');
    ExtractNextString(out, rest, ';');
    EXPECT_EQ(out, "");
    EXPECT_EQ(ExtractNextString(out, rest, ';'), 1);
    EXPECT_EQ(out, "c");
    EXPECT_EQ(rest, "");
    EXPECT_EQ(ExtractNextString(out, rest, ';'), 0);
}

TEST(StringList, IntegerListsRoundTrip)
{
    CString list;
    AddIntToStringList(list, 12);
    AddIntToStringList(list, -3);
    AddIntToStringList(list, INT_MIN);
    EXPECT_EQ(list, "12#-3#-2147483648#");
    int v = 0;
    EXPECT_EQ(GetIntFromStringList(list, v), 1);
    EXPECT_EQ(v, 12);
    EXPECT_EQ(GetIntFromStringList(list, v), 1);
    EXPECT_EQ(v, -3);
    EXPECT_EQ(GetIntFromStringList(list, v), 1);
    EXPECT_EQ(v, INT_MIN);
    EXPECT_EQ(list, "");
    EXPECT_EQ(GetIntFromStringList(list, v), 0);

    CString bad("abc#");
    v = 5;
    EXPECT_EQ(GetIntFromStringList(bad, v), 0);
    EXPECT_EQ(v, 5);
    EXPECT_EQ(bad, "abc#");
    CString bare("12");
    EXPECT_EQ(GetIntFromStringList(bare, v), 1);
    EXPECT_EQ(v, 12);
    EXPECT_EQ(bare, "");
    CString dash("-#");
    EXPECT_EQ(GetIntFromStringList(dash, v), 1);
    EXPECT_EQ(v, 0);
}

TEST(StringList, RectanglesStopAtTheFirstFailure)
{
    CString list;
    AddRectToStringList(list, RECT{1, -2, 300, 400});
    EXPECT_EQ(list, "1#-2#300#400#");
    RECT r{};
    EXPECT_EQ(GetRectFromStringList(list, r), 1);
    EXPECT_EQ(CRect(r), CRect(1, -2, 300, 400));
    CString partial("5#6#x#");
    RECT q{9, 9, 9, 9};
    EXPECT_EQ(GetRectFromStringList(partial, q), 0);
    EXPECT_EQ(CRect(q), CRect(5, 6, 9, 9));
    EXPECT_EQ(partial, "x#");
}

TEST(StringList, InclusionLooksAtTheFirstOccurrenceOnly)
{
    EXPECT_EQ(IsSubStringIncluded("B", "AB;B", ';'), -1);
    EXPECT_EQ(IsSubStringIncluded("B", "B;AB", ';'), 0);
    EXPECT_EQ(IsSubStringIncluded("B", "A;B", ';'), 2);
    EXPECT_EQ(IsSubStringIncluded("B", "A;BC", ';'), -1);
    EXPECT_EQ(IsSubStringIncluded("B", "", ';'), -1);
    EXPECT_EQ(GetSubStringIndex("B", "AB;B", ';'), 1);
    EXPECT_EQ(GetSubStringIndex("C", "AB;B", ';'), -1);
    EXPECT_EQ(GetSubStringIndex("", "a;;b", ';'), 1);
    EXPECT_EQ(GetSubStringIndex("a", "", ';'), -1);
}

TEST(StringList, MergeAddsMissingElementsBehindASeparator)
{
    CString dest;
    EXPECT_EQ(MergeSubStrings(dest, "a;b", ';'), 2);
    EXPECT_EQ(dest, ";a;b") << "an empty destination gets a leading separator";
    EXPECT_EQ(MergeSubStrings(dest, "b;c", ';'), 1);
    EXPECT_EQ(dest, ";a;b;c");
    CString tricky("AB;");
    EXPECT_EQ(MergeSubStrings(tricky, "B", ';'), 1);
    EXPECT_EQ(tricky, "AB;B");
    EXPECT_EQ(MergeSubStrings(tricky, "B", ';'), 1) << "the first occurrence hides the element";
    EXPECT_EQ(tricky, "AB;B;B");
    EXPECT_EQ(MergeSubStrings(tricky, tricky, ';'), 2) << "even merging a list into itself adds the hidden B twice";
}

TEST(StringList, RemoveByCharacterPosition)
{
    CString list("aa;bb;cc");
    RemoveSubStringFromList(3, list, ';');
    EXPECT_EQ(list, "aa;cc");
    RemoveSubStringFromList(3, list, ';');
    EXPECT_EQ(list, "aa") << "the last element takes the separator before it";
    RemoveSubStringFromList(0, list, ';');
    EXPECT_EQ(list, "");
    CString other("x;y");
    RemoveSubStringFromList(-4, other, ';');
    EXPECT_EQ(other, "y");
    RemoveSubStringFromList(50, other, ';');
    EXPECT_EQ(other, "y");
}

TEST(StringList, QuantityAndPartNumber)
{
    CString part;
    EXPECT_EQ(GetAnzAndPartNumber("3 Relay", part, ';'), 3);
    EXPECT_EQ(part, "Relay");
    EXPECT_EQ(GetAnzAndPartNumber("ABC DEF", part, ';'), 1);
    EXPECT_EQ(part, "DEF");
    EXPECT_EQ(GetAnzAndPartNumber("Relay", part, ';'), 0);
    EXPECT_EQ(part, "");
    EXPECT_EQ(GetAnzAndPartNumber(";; \t-2  Coil 7  \r\n", part, ';'), 1);
    EXPECT_EQ(part, "Coil 7");
    EXPECT_EQ(GetAnzAndPartNumber("", part, ';'), 0);
    const CString longWord = CString('7', 300) + " x";
    EXPECT_EQ(GetAnzAndPartNumber(longWord, part, ';'), INT_MAX) << "atoi saturates";
    EXPECT_EQ(part, CString('7', 50) + " x") << "the word is cut at 250 characters";
}

TEST(StringList, TooltipIsTheTextAfterTheLastLineFeed)
{
    EXPECT_EQ(GetTooltip("Open\nOpen a file"), "Open a file");
    EXPECT_EQ(GetTooltip("a\nb\nc"), "c");
    EXPECT_EQ(GetTooltip("plain"), "plain");
    EXPECT_EQ(GetTooltip("end\n"), "");
}

TEST(StringList, BuildingSeparatedLists)
{
    CString list;
    AddStringToList(list, "a", ';');
    AddStringToList(list, "", ';');
    AddStringToList(list, "c", ';');
    EXPECT_EQ(list, "a;;c");
}

TEST(ComboHelpers, TreatTheComboAsAMapFromItemData)
{
    CComboBox combo;
    combo.CreateEx("", "ComboBox", WS_CHILD);
    EXPECT_EQ(SelectComboItem(&combo, 1), 0) << "empty combo";
    AddToCombo(&combo, 10, "ten");
    AddToCombo(&combo, -1, "minus one");
    AddToCombo(&combo, 10, "changed");
    ASSERT_EQ(combo.GetCount(), 2);
    CString text;
    combo.GetLBText(0, text);
    EXPECT_EQ(text, "ten") << "an existing item keeps its text";
    EXPECT_EQ(FindComboItem(&combo, -1), 1);
    EXPECT_EQ(FindComboItem(&combo, 99), -1);
    EXPECT_EQ(SelectComboItem(&combo, 10), 1);
    EXPECT_EQ(combo.GetCurSel(), 0);
    EXPECT_EQ(SelectComboItem(&combo, 99), 1);
    EXPECT_EQ(combo.GetCurSel(), 1) << "a missing item selects the last";
    EXPECT_EQ(RemoveFromCombo(&combo, 10), 1);
    EXPECT_EQ(RemoveFromCombo(&combo, 10), 0);
    EXPECT_EQ(combo.GetCount(), 1);
    EXPECT_EQ(FindComboItem(nullptr, 1), -1);
    EXPECT_EQ(RemoveFromCombo(nullptr, 1), 0);
    AddToCombo(nullptr, 1, "x");
}

TEST(StringList, LongListsReadTheSameAcrossBlockBoundaries)
{
    CString list;
    std::vector<CString> pieces;
    for (int i = 0; i < 500; ++i) {
        pieces.emplace_back(static_cast<char>('A' + i % 26), 1 + i * 5 % 11);
        AddStringToList(list, pieces.back(), ';');
    }
    for (int n = 1; n <= 500; ++n)
        ASSERT_EQ(GetSubString(n, list, ';'), pieces[static_cast<std::size_t>(n - 1)]) << n;
    EXPECT_EQ(GetSubString(501, list, ';'), list);
}

#include "lists/xlisttest.h"

#include "platform/framework/globalmemory.h"
#include "ui/clipboard/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <memory>
#include <string>

namespace {

using vxtest::BoxCatcher;
using vxtest::FillGrid;
using vxtest::ListParent;
using vxtest::StringOf;
using vxtest::Text;

std::string ClipboardText()
{
    std::string out;
    if (!OpenClipboard(nullptr))
        return out;
    if (HANDLE h = GetClipboardData(CF_TEXT)) {
        out = static_cast<const char*>(GlobalLock(h));
        GlobalUnlock(h);
    }
    CloseClipboard();
    return out;
}

void PutText(const std::string& bytes)
{
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    SetClipboardData(CF_TEXT, vx::GlobalCopyOf(bytes.c_str(), bytes.size() + 1));
    CloseClipboard();
}

void Select(KXListCtrl& list, int r1, int c1, int r2, int c2)
{
    list.GetSelection().Select(r1, c1, CellSelection::Plain);
    if (r2 != r1 || c2 != c1)
        list.GetSelection().Select(r2, c2, CellSelection::Shift);
}

class Blocks : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Create());
        for (KXListCtrl* l : {&a, &b}) {
            ASSERT_TRUE(l->Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 440, 140), &parent, 100));
            FillGrid(*l, 6, 4);
            l->SetCellMode(TRUE);
        }
    }
    std::vector<std::string> WritesAsText() const
    {
        std::vector<std::string> out;
        for (const auto& w : parent.writes)
            out.push_back(std::to_string(w.row) + "," + std::to_string(w.col) + "=" + w.text);
        return out;
    }
    using W = std::vector<std::string>;

    ListParent parent;
    KXListCtrl a;
    KXListCtrl b;
    BoxCatcher boxes;
};

TEST_F(Blocks, CopyGivesTheBlockToTheSuiteAndLinesToOtherPrograms)
{
    Select(a, 1, 1, 2, 2);
    a.ZellenKopieren();
    EXPECT_EQ(ClipboardText(), "VXXLIST#1#2#2#1,1#1,2#2,1#2,2");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("1,1\t1,2\n2,1\t2,2\n"));
    // Only the first element of a selection made with Ctrl is copied.
    a.GetSelection().Select(4, 3, CellSelection::Ctrl);
    a.ZellenKopieren();
    EXPECT_EQ(ClipboardText(), "VXXLIST#1#2#2#1,1#1,2#2,1#2,2");
    // An empty selection copies nothing.
    PutText("before");
    a.DeselectAll();
    a.ZellenKopieren();
    a.ZellenLoeschen(1);
    EXPECT_EQ(ClipboardText(), "before");
    EXPECT_TRUE(parent.writes.empty());
}

TEST_F(Blocks, BlocksPasteBetweenListsThroughTheParent)
{
    Select(a, 0, 0, 1, 2);
    a.ZellenKopieren();
    parent.writeBack = false; // the list must not write by itself
    Select(b, 3, 1, 4, 3);
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_EQ(WritesAsText(), (W{"3,1=0,0", "3,2=0,1", "3,3=0,2", "4,1=1,0", "4,2=1,1", "4,3=1,2"}));
    EXPECT_EQ(Text(b, 3, 1), "3,1");
    for (const auto& w : parent.writes)
        EXPECT_EQ(w.list, &b);
    // The parent writes: then the cells show it and the rows are modified.
    parent.writes.clear();
    parent.writeBack = true;
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_EQ(Text(b, 4, 3), "1,2");
    EXPECT_TRUE(b.GetItemXLCDData(4, 0)->bModified); // the row's first record
    EXPECT_TRUE(b.GetListModified());
    // A paste of what is there already sends nothing and marks nothing.
    parent.writes.clear();
    b.GetItemXLCDData(3, 0)->bModified = FALSE;
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_TRUE(parent.writes.empty());
    EXPECT_FALSE(b.GetItemXLCDData(3, 0)->bModified);
}

TEST_F(Blocks, EveryShapeOfAPaste)
{
    // One cell fills the whole target.
    Select(a, 5, 3, 5, 3);
    a.ZellenKopieren();
    Select(b, 0, 0, 1, 1);
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_EQ(WritesAsText(), (W{"0,0=5,3", "0,1=5,3", "1,0=5,3", "1,1=5,3"}));
    // One row as wide as the target goes to every target row.
    parent.writes.clear();
    Select(a, 2, 0, 2, 1);
    a.ZellenKopieren();
    b.ZellenEinfuegen(3, 5, 2, 3);
    EXPECT_EQ(WritesAsText(), (W{"3,2=2,0", "3,3=2,1", "4,2=2,0", "4,3=2,1", "5,2=2,0", "5,3=2,1"}));
    // Any other shape is refused with 6727, and nothing changes.
    parent.writes.clear();
    Select(b, 0, 0, 2, 2);
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_TRUE(parent.writes.empty());
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0], StringOf(6727));
    EXPECT_EQ(boxes.types[0] & MB_ICONMASK, MB_ICONEXCLAMATION);
    // One empty cell, where the block ends at its header, clears the target;
    // the parent gets an empty text, never none.
    parent.writes.clear();
    parent.messages.clear();
    PutText("VXXLIST#1#1#1");
    b.ZellenEinfuegen(1, 1, 0, 1);
    EXPECT_EQ(WritesAsText(), (W{"1,0=", "1,1="}));
    for (const auto& m : parent.messages) {
        if (m.message == WM_XLISTCTRL_SETTEXT) {
            EXPECT_NE(m.lParam, 0);
        }
    }
}

TEST_F(Blocks, CellsThatRefuseAreLeftAloneOrSkipped)
{
    b.SetCellEditable(0, 1, FALSE);
    Select(a, 5, 3, 5, 3);
    a.ZellenKopieren();
    Select(b, 0, 0, 0, 2);
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_EQ(WritesAsText(), (W{"0,0=5,3", "0,2=5,3"}));
    EXPECT_EQ(b.ModifyItemText(0, 1, nullptr), 0);
    CString text("x");
    EXPECT_EQ(b.ModifyItemText(0, 4, &text), 0); // no such column
    EXPECT_EQ(b.ModifyItemText(6, 0, &text), 0); // no such row

    // Plain lines: a row whose cell refuses is passed over, and the lines
    // after it move down too.
    parent.writes.clear();
    b.SetCellEditable(2, 1, FALSE);
    QGuiApplication::clipboard()->setText(QStringLiteral("a\tb\nc\t\te\nf\tg\n"));
    b.ZellenEinfuegen(1, 1, 0, 0);
    EXPECT_EQ(WritesAsText(), (W{"1,0=a", "1,1=b", "2,0=c", "2,2=e", "3,0=f", "3,1=g"}));
    parent.writes.clear();
    b.ZellenEinfuegen(1, 1, 1, 1);
    // "a" to 1,1; "b" to 1,2; "c" refused at 2,1, tried at 3,1 with a skip
    // that stays: the rest lands one row lower.
    EXPECT_EQ(WritesAsText(), (W{"1,1=a", "1,2=b", "3,1=c", "3,3=e", "4,1=f", "4,2=g"}));
}

TEST_F(Blocks, PlainTextOfOtherPrograms)
{
    // One value without tab or line feed fills the target, cut to 100 bytes.
    QGuiApplication::clipboard()->setText(QString(150, QLatin1Char('x')));
    b.ZellenEinfuegen(0, 1, 0, 0);
    ASSERT_EQ(parent.writes.size(), 2u);
    EXPECT_EQ(parent.writes[0].text, std::string(100, 'x'));
    // Text in the desktop's encoding arrives in the code page.
    parent.writes.clear();
    QGuiApplication::clipboard()->setText(QString::fromUtf8("Łódź\tŻuraw\n"));
    b.ZellenEinfuegen(2, 2, 2, 2);
    EXPECT_EQ(WritesAsText(), (W{"2,2=\xA3\xF3" "d\x9F", "2,3=\xAFuraw"}));
    // With more than one target row, nothing goes past the last of them;
    // with one, the lines go on to the list's end and no further.
    parent.writes.clear();
    QGuiApplication::clipboard()->setText(QStringLiteral("1\n2\n3\n4\n"));
    b.ZellenEinfuegen(0, 1, 3, 3);
    EXPECT_EQ(WritesAsText(), (W{"0,3=1", "1,3=2"}));
    parent.writes.clear();
    b.ZellenEinfuegen(4, 4, 0, 0);
    EXPECT_EQ(WritesAsText(), (W{"4,0=1", "5,0=2"}));
    // Without a selection the paste goes to the row after the last, which
    // is not there: nothing happens.
    parent.writes.clear();
    b.DeselectAll();
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_TRUE(parent.writes.empty());
}

TEST_F(Blocks, BadInputIsRefusedOrCutNeverWrittenOutside)
{
    Select(b, 0, 0, 1, 1);
    // A block whose header lies about its size, or counts wrong, is ignored.
    for (const char* block : {"VXXLIST#1#2#2#a#b#c", "VXXLIST#1#2#2#a#b#c#d#e", "VXXLIST#1#100000#100000#x",
                              "VXXLIST#1#-2#-2#a#b#c", "VXXLIST#1#0#5", "VXXLIST#1", "VXXLIST#9#1#1#x",
                              "VXXLIST#1#4294967297#1#a#b"}) {
        SCOPED_TRACE(block);
        PutText(block);
        b.ZellenEinfuegen(-1, -1, -1, -1);
        EXPECT_TRUE(parent.writes.empty());
    }
    EXPECT_TRUE(boxes.texts.empty());
    // Ragged rows, a zero inside, a line of a megabyte: each field goes to
    // its cell, cut to 100 bytes, and nothing past the columns.
    std::string big(1 << 20, 'y');
    QString ragged = QStringLiteral("1\t2\t3\t4\t5\t6\n7\n") + QString::fromLatin1(big.c_str()) +
                     QStringLiteral("\tz\n");
    QGuiApplication::clipboard()->setText(ragged);
    b.ZellenEinfuegen(3, 3, 2, 2);
    ASSERT_EQ(parent.writes.size(), 5u);
    EXPECT_EQ(parent.writes[0].col, 2);
    EXPECT_EQ(parent.writes[1].col, 3);
    EXPECT_EQ(parent.writes[2].text, "7");
    EXPECT_EQ(parent.writes[3].text, std::string(100, 'y'));
    EXPECT_EQ(parent.writes[3].row, 5);
    EXPECT_EQ(parent.writes[4].text, "z");
    parent.writes.clear();
    QGuiApplication::clipboard()->setText(QString::fromLatin1("q\0r\ts", 5));
    b.ZellenEinfuegen(0, 0, 0, 0);
    EXPECT_EQ(WritesAsText(), (W{"0,0=q"}));
}

TEST_F(Blocks, CutClearsThroughTheParent)
{
    Select(a, 1, 2, 2, 3);
    a.ZellenLoeschen(1);
    EXPECT_EQ(ClipboardText(), "VXXLIST#1#2#2#1,2#1,3#2,2#2,3");
    EXPECT_EQ(WritesAsText(), (W{"1,2=", "1,3=", "2,2=", "2,3="}));
    EXPECT_EQ(Text(a, 2, 3), "");
    parent.writes.clear();
    Select(a, 0, 0, 0, 0);
    a.ZellenLoeschen(0);
    EXPECT_EQ(WritesAsText(), (W{"0,0="}));
    EXPECT_EQ(ClipboardText(), "VXXLIST#1#2#2#1,2#1,3#2,2#2,3"); // not copied
}

TEST_F(Blocks, RowsAreCopiedPastedAndDeletedByTheParent)
{
    a.GetSelection().SelectRows(1, CellSelection::Plain);
    a.GetSelection().SelectRows(3, CellSelection::Shift);
    parent.canCopy = 0;
    a.ZellenKopieren();
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0], StringOf(6728));
    EXPECT_EQ(parent.Count(WM_XLISTCTRL_COPYROWS), 0);
    parent.canCopy = 1;
    a.ZellenKopieren();
    ASSERT_EQ(parent.Count(WM_XLISTCTRL_COPYROWS), 1);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_CANCOPY)->wParam, 1u);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_CANCOPY)->lParam, 3);
    EXPECT_EQ(ClipboardText(), "VXXLIST#2#1#3");
    // Rows paste only into a plain list, and through the parent.
    Select(b, 2, 1, 2, 1);
    b.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_EQ(parent.Count(WM_XLISTCTRL_PASTEROWS), 0);
    b.SetCellMode(FALSE);
    b.ZellenEinfuegen(4, 4, 0, 0);
    ASSERT_EQ(parent.Count(WM_XLISTCTRL_PASTEROWS), 1);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_PASTEROWS)->wParam, 4u);
    // A cell block does not paste over a row selection.
    Select(a, 0, 0, 0, 0);
    a.ZellenKopieren();
    a.GetSelection().SelectRows(2, CellSelection::Plain);
    a.ZellenEinfuegen(-1, -1, -1, -1);
    EXPECT_TRUE(parent.writes.empty());
    a.ZellenLoeschen(0);
    ASSERT_EQ(parent.Count(WM_XLISTCTRL_DELETEROWS), 1);
    EXPECT_EQ(parent.Last(WM_XLISTCTRL_DELETEROWS)->wParam, 2u);
}

TEST_F(Blocks, KeysCopyPasteAndCut)
{
    a.SetFocus();
    Select(a, 0, 1, 0, 1);
    vxtest::Key(a, 'C', false, true);
    EXPECT_EQ(ClipboardText(), "VXXLIST#1#1#1#0,1");
    Select(a, 1, 1, 1, 2);
    vxtest::Key(a, 'V', false, true);
    EXPECT_EQ(WritesAsText(), (W{"1,1=0,1", "1,2=0,1"}));
    parent.writes.clear();
    vxtest::Key(a, 'X', false, true);
    EXPECT_EQ(WritesAsText(), (W{"1,1=", "1,2="}));
    EXPECT_EQ(ClipboardText(), "VXXLIST#1#2#1#0,1#0,1");
}

// An owner that throws the list away on the first value it is asked to write.
class DestroyingParent : public CWnd {
public:
    std::unique_ptr<KXListCtrl> list;
    int writes = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_XLISTCTRL_SETTEXT) {
            ++writes;
            list.reset();
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

TEST(BlockOwner, AListDestroyedByItsParentInAPasteStopsThere)
{
    DestroyingParent parent;
    ASSERT_TRUE(parent.CreateEx("parent", "XListParent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 300, 200)));
    for (const char* text : {"VXXLIST#1#2#2#a#b#c#d", "a\tb\r\nc\td\r\n", "x"}) {
        SCOPED_TRACE(text);
        parent.writes = 0;
        parent.list = std::make_unique<KXListCtrl>();
        ASSERT_TRUE(parent.list->Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 300, 200), &parent, 100));
        FillGrid(*parent.list, 4, 3);
        parent.list->SetCellMode(TRUE);
        Select(*parent.list, 0, 0, 1, 1);
        PutText(text);
        parent.list->ZellenEinfuegen(-1, -1, -1, -1);
        EXPECT_EQ(parent.writes, 1);
        EXPECT_EQ(parent.list, nullptr);
    }
    // Clearing a block likewise.
    parent.writes = 0;
    parent.list = std::make_unique<KXListCtrl>();
    ASSERT_TRUE(parent.list->Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 300, 200), &parent, 100));
    FillGrid(*parent.list, 4, 3);
    parent.list->SetCellMode(TRUE);
    Select(*parent.list, 0, 0, 2, 2);
    parent.list->ZellenLoeschen(0);
    EXPECT_EQ(parent.writes, 1);
}

} // namespace

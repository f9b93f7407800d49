// The edit control: typing, the caret and selection keys, the clipboard, the
// limit, the multi-line layout, and its notifications in the platform's order.
#include "ui/controls/controltest.h"

#include "ui/controls/cedit.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/windows/sysmetrics.h"

#include <QClipboard>
#include <QGuiApplication>

namespace {

using vxtest::Key;
using vxtest::kCtrl;
using vxtest::kShift;
using vxtest::Recorder;
using vxtest::Type;

constexpr UINT kId = 700;

struct EditFixture : ::testing::Test {
    Recorder parent;
    CEdit edit;
    CEdit other;

    void Make(DWORD style, int width = 200, int height = 22)
    {
        ASSERT_TRUE(parent.Make());
        ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, CRect(10, 10, 10 + width, 10 + height),
                                &parent, kId));
        edit.ModifyStyleEx(0, WS_EX_CLIENTEDGE);
        ASSERT_TRUE(other.Create(WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, CRect(10, 200, 100, 222), &parent, kId + 1));
        parent.commands.clear();
    }

    CString Text() const { return edit.GetWindowTextString(); }
    std::pair<int, int> Sel() const
    {
        int a = 0;
        int b = 0;
        edit.GetSel(a, b);
        return {a, b};
    }
};

TEST_F(EditFixture, TypingTellsUpdateThenChangeAndFocusComesAndGoes)
{
    Make(ES_AUTOHSCROLL);
    edit.SetFocus();
    Type("ab");
    other.SetFocus();
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{EN_SETFOCUS, EN_UPDATE, EN_CHANGE, EN_UPDATE, EN_CHANGE,
                                                    EN_KILLFOCUS}));
    EXPECT_STREQ(Text(), "ab");
    EXPECT_TRUE(edit.GetModify());
    edit.SetModify(FALSE);
    EXPECT_FALSE(edit.GetModify());
}

TEST_F(EditFixture, SetTextNotifiesASingleLineEditOnlyAndClearsTheModifiedFlag)
{
    Make(ES_AUTOHSCROLL);
    edit.SetFocus();
    Type("x");
    parent.commands.clear();
    edit.SetWindowText("fresh");
    EXPECT_EQ(parent.Codes(kId), (std::vector<UINT>{EN_UPDATE, EN_CHANGE}));
    EXPECT_FALSE(edit.GetModify());
    EXPECT_FALSE(edit.CanUndo());
    EXPECT_EQ(Sel(), std::make_pair(0, 0));

    CEdit multi;
    multi.Create(WS_CHILD | WS_VISIBLE | ES_MULTILINE, CRect(10, 40, 200, 120), &parent, kId + 2);
    multi.SetWindowText("one\r\ntwo");
    EXPECT_TRUE(parent.Codes(kId + 2).empty()); // as the system's multi-line edit
    EXPECT_STREQ(multi.GetWindowTextString(), "one\r\ntwo");
}

TEST_F(EditFixture, CaretAndSelectionKeys)
{
    Make(ES_AUTOHSCROLL);
    edit.SetWindowText("hello big world");
    edit.SetFocus();
    Key(VK_END);
    EXPECT_EQ(Sel(), std::make_pair(15, 15));
    Key(VK_LEFT, kCtrl);
    EXPECT_EQ(Sel(), std::make_pair(10, 10));
    Key(VK_LEFT, kCtrl | kShift);
    EXPECT_EQ(Sel(), std::make_pair(6, 10));
    Type("small"); // the word went with its blank, as on the original
    EXPECT_STREQ(Text(), "hello smallworld");
    Key(VK_HOME, kShift);
    EXPECT_EQ(Sel(), std::make_pair(0, 11));
    Key(VK_RIGHT); // collapses to the right end
    EXPECT_EQ(Sel(), std::make_pair(11, 11));
    Type("\b\b\b\b\b");
    EXPECT_STREQ(Text(), "hello world");
    Key(VK_DELETE);
    EXPECT_STREQ(Text(), "hello orld");
    edit.SetSel(0, -1);
    EXPECT_EQ(Sel(), std::make_pair(0, 10));
    edit.SetSel(-1, 0);
    EXPECT_EQ(Sel().first, Sel().second); // -1 drops the selection
}

TEST_F(EditFixture, ClipboardKeysAndOneLevelOfUndo)
{
    Make(ES_AUTOHSCROLL);
    edit.SetWindowText("hello world");
    edit.SetFocus();
    edit.SetSel(6, 11);
    Key('C', kCtrl);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("world"));
    Key(VK_HOME);
    Key('V', kCtrl);
    EXPECT_STREQ(Text(), "worldhello world");
    Key('Z', kCtrl);
    EXPECT_STREQ(Text(), "hello world");
    Key('Z', kCtrl); // undo of the undo
    EXPECT_STREQ(Text(), "worldhello world");
    edit.SetSel(0, 5);
    Key(VK_DELETE, kShift); // cut
    EXPECT_STREQ(Text(), "hello world");
    Key(VK_END);
    Key(VK_INSERT, kShift); // paste
    EXPECT_STREQ(Text(), "hello worldworld");
    Key('A', kCtrl);
    Key('X', kCtrl);
    EXPECT_STREQ(Text(), "");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("hello worldworld"));

    QGuiApplication::clipboard()->setText(QStringLiteral("first line\nsecond"));
    edit.Paste(); // a single-line edit takes the first line
    EXPECT_STREQ(Text(), "first line");
    edit.SetReadOnly(TRUE);
    edit.SetSel(0, 5);
    Type("zz");
    edit.Paste();
    edit.Cut();
    EXPECT_STREQ(Text(), "first line");
    edit.Copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("first"));
}

TEST_F(EditFixture, LimitCutsWhatComesInAndTellsMaxText)
{
    Make(ES_AUTOHSCROLL);
    edit.LimitText(5);
    EXPECT_EQ(edit.GetLimitText(), 5u);
    edit.SetFocus();
    parent.commands.clear();
    Type("abcdef");
    EXPECT_STREQ(Text(), "abcde");
    EXPECT_EQ(parent.Codes(kId).back(), EN_MAXTEXT);
    edit.SetSel(1, 3);
    QGuiApplication::clipboard()->setText(QStringLiteral("WXYZ"));
    edit.Paste(); // room for two
    EXPECT_STREQ(Text(), "aWXde");
    edit.LimitText(0);
    edit.SetSel(-1, -1);
    Key(VK_END);
    Type("fgh");
    EXPECT_STREQ(Text(), "aWXdefgh");
}

TEST_F(EditFixture, StylesFilterWhatIsTyped)
{
    Make(ES_AUTOHSCROLL | ES_NUMBER);
    edit.SetFocus();
    Type("1a2-3");
    EXPECT_STREQ(Text(), "123");

    CEdit upper;
    upper.Create(WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL | ES_UPPERCASE, CRect(10, 40, 200, 60), &parent, kId + 3);
    upper.SetFocus();
    Type("abc!");
    EXPECT_STREQ(upper.GetWindowTextString(), "ABC!");

    // Without ES_AUTOHSCROLL a line never grows past the control.
    CEdit narrow;
    narrow.Create(WS_CHILD | WS_VISIBLE, CRect(10, 70, 40, 90), &parent, kId + 4);
    narrow.SetFocus();
    parent.commands.clear();
    Type("wwwwwwwwwwwwwwww");
    EXPECT_LT(narrow.GetWindowTextLength(), 16);
    EXPECT_GT(narrow.GetWindowTextLength(), 0);
    EXPECT_EQ(parent.Codes(kId + 4).back(), EN_MAXTEXT);
}

TEST_F(EditFixture, PasswordShowsStarsAndKeepsTheTextOffTheClipboard)
{
    Make(ES_AUTOHSCROLL | ES_PASSWORD);
    EXPECT_EQ(edit.GetPasswordChar(), '*');
    edit.SetFocus();
    Type("secret");
    EXPECT_STREQ(Text(), "secret");
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    Key('A', kCtrl);
    Key('C', kCtrl);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
    other.SetFocus(); // no selection drawn
    const QImage shown = vxtest::Render(edit);
    edit.SetPasswordChar(0);
    const QImage plain = vxtest::Render(edit);
    EXPECT_NE(shown, plain);
    edit.SetPasswordChar('*');
    EXPECT_EQ(vxtest::Render(edit), shown);
}

TEST_F(EditFixture, MultiLineBreaksAtLineEndsAndMovesByLines)
{
    Make(ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL | ES_WANTRETURN, 200, 100);
    edit.SetWindowText("one\r\ntwo\r\nthree");
    EXPECT_EQ(edit.GetLineCount(), 3);
    EXPECT_EQ(edit.LineIndex(1), 5);
    EXPECT_EQ(edit.LineIndex(3), -1);
    EXPECT_EQ(edit.LineLength(5), 3);
    EXPECT_EQ(edit.LineFromChar(11), 2);
    char line[16] = {};
    EXPECT_EQ(edit.GetLine(2, line, sizeof line), 5);
    EXPECT_STREQ(line, "three");
    edit.SetFocus();
    edit.SetSel(1, 1);
    Key(VK_DOWN);
    EXPECT_EQ(Sel(), std::make_pair(6, 6)); // same column, next line
    Key(VK_END);
    Type("\r");
    Type("x");
    EXPECT_STREQ(Text(), "one\r\ntwo\r\nx\r\nthree");
    Key(VK_LEFT);
    Key(VK_LEFT); // over "\r\n" in one step
    EXPECT_EQ(Sel(), std::make_pair(8, 8));
    Type("\b");
    EXPECT_STREQ(Text(), "one\r\ntw\r\nx\r\nthree");
}

TEST_F(EditFixture, MultiLineWithoutHorizontalScrollWrapsWords)
{
    Make(ES_MULTILINE, 60, 120);
    edit.SetWindowText("alpha beta gamma delta");
    EXPECT_GE(edit.GetLineCount(), 3);
    // Each wrapped line starts at a word.
    for (int i = 1; i < edit.GetLineCount(); ++i) {
        const int at = edit.LineIndex(i);
        EXPECT_EQ(Text()[at - 1], ' ') << "line " << i;
    }
}

TEST_F(EditFixture, MouseSetsTheCaretDragsASelectionAndDoubleClickTakesAWord)
{
    Make(ES_AUTOHSCROLL);
    edit.SetWindowText("alpha beta");
    vxtest::Click(edit, 2, 10);
    EXPECT_EQ(CWnd::GetFocus(), &edit);
    EXPECT_EQ(Sel(), std::make_pair(0, 0));
    vxtest::Mouse(edit, WM_LBUTTONDOWN, 2, 10, MK_LBUTTON);
    vxtest::Mouse(edit, WM_MOUSEMOVE, 190, 10, MK_LBUTTON);
    vxtest::Mouse(edit, WM_LBUTTONUP, 190, 10);
    EXPECT_EQ(Sel(), std::make_pair(0, 10));
    vxtest::DoubleClick(edit, 2, 10);
    EXPECT_EQ(Sel(), std::make_pair(0, 5));
}

TEST_F(EditFixture, ColoursComeFromTheParentAndReadOnlyLooksLikeAStatic)
{
    Make(ES_AUTOHSCROLL, 120, 24);
    edit.SetWindowText("Hi");
    QImage img = vxtest::Render(edit);
    EXPECT_PIXEL(img, 60, 20, GetSysColor(COLOR_WINDOW));
    EXPECT_GT(vxtest::CountColor(img, CRect(2, 2, 40, 22), GetSysColor(COLOR_WINDOWTEXT)), 5);
    edit.SetReadOnly(TRUE);
    img = vxtest::Render(edit);
    EXPECT_PIXEL(img, 60, 20, GetSysColor(COLOR_BTNFACE));
    CBrush yellow(RGB(255, 255, 0));
    parent.ctlBrush = yellow;
    parent.ctlText = RGB(255, 0, 0);
    img = vxtest::Render(edit);
    EXPECT_PIXEL(img, 60, 20, RGB(255, 255, 0));
    EXPECT_GT(vxtest::CountColor(img, CRect(2, 2, 40, 22), RGB(255, 0, 0)), 5);
    parent.ctlBrush = nullptr;

    // A focused selection in the highlight colours.
    edit.SetReadOnly(FALSE);
    edit.SetFocus();
    edit.SetSel(0, -1);
    img = vxtest::Render(edit);
    EXPECT_GT(vxtest::CountColor(img, CRect(2, 2, 40, 22), GetSysColor(COLOR_HIGHLIGHT)), 20);
    EXPECT_GT(vxtest::CountColor(img, CRect(2, 2, 40, 22), GetSysColor(COLOR_HIGHLIGHTTEXT)), 5);
}

} // namespace

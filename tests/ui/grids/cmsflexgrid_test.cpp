// The grid: its shape and text, sizes in twips, the current cell under keys
// and the mouse, scrolling, what it tells its parent, and how it looks.
#include "uisupport/uitest.h"

#include "ui/grids/cmsflexgrid.h"

#include "ui/controls/controlclass.h"
#include "ui/controls/cscrollbar.h"
#include "ui/windows/qtinterop.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <vector>

namespace {

constexpr UINT kGridId = 300;
constexpr int kColPx = 60;  // 900 twips at 96 pixels to the inch
constexpr int kRowPx = 20;  // 300 twips

// A parent that records the grid's notifications and may take keys.
class GridParent : public CWnd {
public:
    struct Note {
        UINT code;
        long row;
        long col;
        UINT key;
    };
    std::vector<Note> notes;
    bool takeKeys = false;

    std::vector<UINT> Codes() const
    {
        std::vector<UINT> out;
        for (const Note& n : notes)
            out.push_back(n.code);
        return out;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_NOTIFY) {
            const auto* n = reinterpret_cast<const NMFLEXGRID*>(lParam);
            if (n->hdr.idFrom == kGridId) {
                notes.push_back(Note{n->hdr.code, n->row, n->col, n->key});
                if (takeKeys && (n->hdr.code == FGN_KEYDOWN || n->hdr.code == FGN_KEYPRESS))
                    return 1;
                return 0;
            }
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class GridTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.CreateEx("grid", "GridParent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 400, 300)));
        ASSERT_TRUE(grid.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP, CRect(10, 10, 310, 210), &parent, kGridId));
    }

    // 5 columns of 60 pixels and 20 rows of 20 pixels: more than the
    // client area (296 x 196 inside the client edge) holds either way.
    void Fill(long rows = 20, long cols = 5)
    {
        grid.SetCols(cols);
        grid.SetRows(rows);
        for (long c = 0; c < cols; ++c)
            grid.SetColWidth(c, 900);
        for (long r = 0; r < rows; ++r) {
            grid.SetRowHeight(r, 300);
            for (long c = 0; c < cols; ++c) {
                CString t;
                t.Format("%ld/%ld", r, c);
                grid.SetTextMatrix(r, c, t);
            }
        }
    }

    GridParent parent;
    CMSFlexGrid grid;
};

} // namespace

TEST_F(GridTest, ShapeKeepsTextAndTheHeadingsStayOutOfTheCurrentCell)
{
    EXPECT_EQ(grid.GetRows(), 2);
    EXPECT_EQ(grid.GetCols(), 2);
    EXPECT_EQ(grid.GetFixedRows(), 1);
    EXPECT_EQ(grid.GetFixedCols(), 1);
    EXPECT_EQ(grid.GetRow(), 1);
    EXPECT_EQ(grid.GetCol(), 1);
    grid.SetRows(4);
    grid.SetCols(3);
    grid.SetTextMatrix(3, 2, "corner");
    grid.SetTextMatrix(4, 0, "outside");
    EXPECT_STREQ(grid.GetTextMatrix(3, 2), "corner");
    EXPECT_STREQ(grid.GetTextMatrix(4, 0), "");
    EXPECT_STREQ(grid.GetTextMatrix(-1, 0), "");
    grid.SetRows(6);
    EXPECT_STREQ(grid.GetTextMatrix(3, 2), "corner");
    grid.SetCols(2);
    grid.SetCols(3);
    EXPECT_STREQ(grid.GetTextMatrix(3, 2), ""); // cut off, then added anew
    // Never fewer rows than the headings, and the headings fewer than the rows.
    grid.SetFixedRows(2);
    grid.SetRows(1);
    EXPECT_EQ(grid.GetRows(), 2);
    EXPECT_EQ(grid.GetFixedRows(), 1);
    grid.SetRows(6);
    grid.SetFixedRows(10);
    EXPECT_EQ(grid.GetFixedRows(), 5);
    EXPECT_EQ(grid.GetRow(), 5);
    grid.SetFixedRows(1);
    grid.SetRow(0);
    EXPECT_EQ(grid.GetRow(), 1);
    // Text of the current cell.
    grid.SetRow(2);
    grid.SetCol(2);
    grid.SetText("here");
    EXPECT_STREQ(grid.GetTextMatrix(2, 2), "here");
    EXPECT_STREQ(grid.GetText(), "here");
}

TEST_F(GridTest, SizesAreInTwipsAndCellsInPixels)
{
    grid.SetCols(3);
    grid.SetRows(3);
    grid.SetColWidth(0, 1500);
    grid.SetColWidth(1, 900);
    grid.SetRowHeight(0, 300);
    grid.SetRowHeight(1, 450);
    EXPECT_EQ(grid.GetColWidth(0), 1500);
    EXPECT_EQ(grid.GetColWidth(1), 900);
    EXPECT_EQ(grid.GetRowHeight(1), 450);
    EXPECT_EQ(grid.GetColPos(1), 1500);
    EXPECT_EQ(grid.GetRowPos(2), 750);
    CRect cell;
    ASSERT_TRUE(grid.GetCellRect(1, 1, &cell));
    // 100 + 60 pixels across, 20 + 30 down; the grid line is not the cell's.
    EXPECT_EQ(cell, CRect(100, 20, 159, 49));
    grid.SetRow(1);
    grid.SetCol(1);
    EXPECT_EQ(grid.GetCellLeft(), 1500);
    EXPECT_EQ(grid.GetCellTop(), 300);
    EXPECT_EQ(grid.GetCellWidth(), 900);
    EXPECT_EQ(grid.GetCellHeight(), 450);
    EXPECT_FALSE(grid.GetCellRect(3, 0, &cell));
    EXPECT_TRUE(cell.IsRectNull());
    grid.SetColWidth(1, -1);
    EXPECT_EQ(grid.GetColWidth(1), 960); // the default, 64 pixels
    long row = -1;
    long col = -1;
    ASSERT_TRUE(grid.HitTest(CPoint(120, 60), &row, &col));
    EXPECT_EQ(row, 2);
    EXPECT_EQ(col, 1);
    EXPECT_FALSE(grid.HitTest(CPoint(290, 190), &row, &col));
}

TEST_F(GridTest, KeysMoveTheCurrentCellAndScrollItIntoView)
{
    Fill();
    grid.SetFocus();
    parent.notes.clear();
    vxtest::Key(VK_RIGHT);
    EXPECT_EQ(grid.GetCol(), 2);
    ASSERT_FALSE(parent.notes.empty());
    EXPECT_EQ(parent.notes.front().code, FGN_KEYDOWN);
    EXPECT_EQ(parent.notes.front().key, VK_RIGHT);
    EXPECT_EQ(parent.notes.back().code, FGN_ROWCOLCHANGE);
    EXPECT_EQ(parent.notes.back().col, 2);
    vxtest::Key(VK_UP); // into the heading: no
    EXPECT_EQ(grid.GetRow(), 1);
    vxtest::Key(VK_LEFT);
    vxtest::Key(VK_LEFT);
    EXPECT_EQ(grid.GetCol(), 1);
    // Eight rows fit below the heading (196 less the bottom bar's 16 and the
    // heading's 20); the ninth scrolls the grid by one.
    EXPECT_TRUE(grid.GetRowIsVisible(8));
    EXPECT_FALSE(grid.GetRowIsVisible(9));
    for (int i = 0; i < 7; ++i)
        vxtest::Key(VK_DOWN);
    EXPECT_EQ(grid.GetRow(), 8);
    EXPECT_EQ(grid.GetTopRow(), 1);
    parent.notes.clear();
    vxtest::Key(VK_DOWN);
    EXPECT_EQ(grid.GetRow(), 9);
    EXPECT_EQ(grid.GetTopRow(), 2);
    const std::vector<UINT> codes = parent.Codes();
    EXPECT_NE(std::find(codes.begin(), codes.end(), FGN_SCROLL), codes.end());
    vxtest::Key(VK_END, vxtest::kCtrl);
    EXPECT_EQ(grid.GetRow(), 19);
    EXPECT_EQ(grid.GetCol(), 4);
    EXPECT_TRUE(grid.GetRowIsVisible(19));
    EXPECT_FALSE(grid.GetRowIsVisible(5));
    vxtest::Key(VK_HOME, vxtest::kCtrl);
    EXPECT_EQ(grid.GetRow(), 1);
    EXPECT_EQ(grid.GetCol(), 1);
    EXPECT_EQ(grid.GetTopRow(), 1);
    vxtest::Key(VK_NEXT);
    EXPECT_GT(grid.GetRow(), 5);
    // A parent that takes the key keeps the grid from moving.
    const long before = grid.GetRow();
    parent.takeKeys = true;
    vxtest::Key(VK_DOWN);
    EXPECT_EQ(grid.GetRow(), before);
}

TEST_F(GridTest, TypedCharactersGoToTheParent)
{
    Fill(4, 3);
    grid.SetFocus();
    parent.notes.clear();
    vxtest::Type("a");
    ASSERT_EQ(parent.notes.size(), 1u);
    EXPECT_EQ(parent.notes[0].code, FGN_KEYPRESS);
    EXPECT_EQ(parent.notes[0].key, static_cast<UINT>('a'));
    EXPECT_EQ(parent.notes[0].row, 1);
    EXPECT_EQ(parent.notes[0].col, 1);
    // The grid takes the arrows and characters, not Tab or Enter.
    const LRESULT code = grid.SendMessage(WM_GETDLGCODE);
    EXPECT_TRUE(code & DLGC_WANTARROWS);
    EXPECT_TRUE(code & DLGC_WANTCHARS);
    EXPECT_FALSE(code & DLGC_WANTALLKEYS);
}

TEST_F(GridTest, TheMouseChoosesACellAndTellsClicks)
{
    Fill(6, 4);
    parent.notes.clear();
    // Row 2, column 3: x 180 .. 239, y 40 .. 59.
    vxtest::Click(grid, 185, 45);
    EXPECT_EQ(CWnd::GetFocus(), &grid);
    EXPECT_EQ(grid.GetRow(), 2);
    EXPECT_EQ(grid.GetCol(), 3);
    EXPECT_EQ(grid.GetMouseRow(), 2);
    EXPECT_EQ(grid.GetMouseCol(), 3);
    ASSERT_GE(parent.notes.size(), 2u);
    EXPECT_EQ(parent.notes[0].code, FGN_ROWCOLCHANGE);
    EXPECT_EQ(parent.notes[1].code, FGN_CLICK);
    EXPECT_EQ(parent.notes[1].row, 2);
    parent.notes.clear();
    vxtest::DoubleClick(grid, 65, 65);
    EXPECT_EQ(parent.Codes().back(), FGN_DBLCLICK);
    EXPECT_EQ(parent.notes.back().row, 3);
    EXPECT_EQ(parent.notes.back().col, 1);
    // A heading is told but does not become current.
    parent.notes.clear();
    vxtest::Click(grid, 30, 5);
    EXPECT_EQ(grid.GetRow(), 3);
    ASSERT_EQ(parent.notes.size(), 1u);
    EXPECT_EQ(parent.notes[0].code, FGN_CLICK);
    EXPECT_EQ(parent.notes[0].row, 0);
    EXPECT_EQ(parent.notes[0].col, 0);
    // Below the last row: outside the cells.
    vxtest::Click(grid, 30, 150);
    EXPECT_EQ(parent.notes.back().row, -1);
    EXPECT_EQ(grid.GetMouseRow(), -1);
}

TEST_F(GridTest, ScrollBarsShowWhenNeededAndMoveTheCells)
{
    Fill(4, 3);
    CWnd* vbar = grid.GetDlgItem(1);
    CWnd* hbar = grid.GetDlgItem(2);
    ASSERT_NE(vbar, nullptr);
    ASSERT_NE(hbar, nullptr);
    EXPECT_FALSE(vbar->IsWindowVisible());
    EXPECT_FALSE(hbar->IsWindowVisible());
    CRect client;
    grid.GetClientRect(&client);
    EXPECT_EQ(grid.GetClientWidth(), client.Width() * 15);
    EXPECT_EQ(grid.GetClientHeight(), client.Height() * 15);
    Fill();
    EXPECT_TRUE(vbar->IsWindowVisible());
    EXPECT_TRUE(hbar->IsWindowVisible());
    // The room of the cells is what the bars leave.
    EXPECT_EQ(grid.GetClientWidth(), (client.Width() - GetSystemMetrics(SM_CXVSCROLL)) * 15);
    EXPECT_EQ(grid.GetClientHeight(), (client.Height() - GetSystemMetrics(SM_CYHSCROLL)) * 15);
    CRect bar;
    vbar->GetWindowRect(&bar);
    grid.ScreenToClient(&bar);
    EXPECT_EQ(bar.right, 296);
    EXPECT_EQ(bar.Width(), GetSystemMetrics(SM_CXVSCROLL));
    CRect before;
    ASSERT_TRUE(grid.GetCellRect(3, 1, &before));
    grid.SendMessage(WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(vbar->m_hWnd));
    EXPECT_EQ(grid.GetTopRow(), 2);
    CRect after;
    ASSERT_TRUE(grid.GetCellRect(3, 1, &after));
    EXPECT_EQ(after.top, before.top - kRowPx);
    EXPECT_FALSE(grid.GetCellRect(1, 1, &after)); // scrolled off
    ASSERT_TRUE(grid.GetCellRect(0, 1, &after));  // the heading stays
    EXPECT_EQ(after.top, 0);
    grid.SendMessage(WM_VSCROLL, SB_BOTTOM, 0);
    EXPECT_TRUE(grid.GetRowIsVisible(19));
    const long last = grid.GetTopRow();
    grid.SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
    EXPECT_EQ(grid.GetTopRow(), last);
    grid.SendMessage(WM_HSCROLL, SB_LINEDOWN, 0);
    EXPECT_EQ(grid.GetLeftCol(), 2);
    ASSERT_TRUE(grid.GetCellRect(0, 2, &after));
    EXPECT_EQ(after.left, kColPx);
    // The wheel scrolls three rows.
    grid.SendMessage(WM_VSCROLL, SB_TOP, 0);
    grid.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)), 0);
    EXPECT_EQ(grid.GetTopRow(), 4);
    grid.SetScrollBars(flexScrollBarNone);
    EXPECT_FALSE(vbar->IsWindowVisible());
    EXPECT_EQ(grid.GetTopRow(), 1);
}

TEST_F(GridTest, PaintsHeadingsCellsTheCurrentCellAndAlignedText)
{
    Fill(4, 3);
    grid.SetTextMatrix(1, 1, "");
    grid.SetRow(1);
    grid.SetCol(1);
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    // The image is the whole window: the client edge adds 2 pixels.
    auto at = [](int x, int y) { return CPoint(x + 2, y + 2); };
    QImage image = vx::RenderWindow(grid);
    EXPECT_PIXEL(image, at(30, 10).x, at(30, 10).y, face);       // heading
    EXPECT_PIXEL(image, at(90, 30).x, at(90, 30).y, highlight);  // the current cell, empty
    EXPECT_PIXEL(image, at(150, 30).x, at(150, 30).y, window);   // another cell's background
    EXPECT_PIXEL(image, at(170, 50).x, at(170, 50).y, window);
    EXPECT_PIXEL(image, at(250, 100).x, at(250, 100).y, window); // beyond the cells
    grid.SetHighLight(flexHighlightNever);
    image = vx::RenderWindow(grid);
    EXPECT_PIXEL(image, at(90, 30).x, at(90, 30).y, window);
    grid.SetHighLight(flexHighlightWithFocus);
    image = vx::RenderWindow(grid);
    EXPECT_PIXEL(image, at(90, 30).x, at(90, 30).y, window);
    grid.SetFocus();
    image = vx::RenderWindow(grid);
    EXPECT_PIXEL(image, at(90, 30).x, at(90, 30).y, highlight);

    // Text ink lies at the side its column's alignment says.
    grid.SetTextMatrix(2, 2, "ab");
    grid.SetColAlignment(2, flexAlignLeftCenter);
    image = vx::RenderWindow(grid);
    const COLORREF ink = GetSysColor(COLOR_WINDOWTEXT);
    CRect cell;
    ASSERT_TRUE(grid.GetCellRect(2, 2, &cell));
    cell.OffsetRect(2, 2);
    const CRect leftHalf(cell.left, cell.top, cell.CenterPoint().x, cell.bottom);
    const CRect rightHalf(cell.CenterPoint().x, cell.top, cell.right, cell.bottom);
    EXPECT_GT(vxtest::CountColor(image, leftHalf, ink), 0);
    EXPECT_EQ(vxtest::CountColor(image, rightHalf, ink), 0);
    grid.SetColAlignment(2, flexAlignRightCenter);
    image = vx::RenderWindow(grid);
    EXPECT_EQ(vxtest::CountColor(image, leftHalf, ink), 0);
    EXPECT_GT(vxtest::CountColor(image, rightHalf, ink), 0);
    // General alignment: numbers right, other text left.
    grid.SetColAlignment(2, flexAlignGeneral);
    grid.SetTextMatrix(2, 2, "12");
    image = vx::RenderWindow(grid);
    EXPECT_EQ(vxtest::CountColor(image, leftHalf, ink), 0);
    EXPECT_GT(vxtest::CountColor(image, rightHalf, ink), 0);
}

TEST(GridClass, TemplatesMakeGridsByTheFlexGridClassName)
{
    std::unique_ptr<CWnd> w = vx::MakeControl("MSFlexGridWndClass");
    EXPECT_NE(dynamic_cast<CMSFlexGrid*>(w.get()), nullptr);
}

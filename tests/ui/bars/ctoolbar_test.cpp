// The framework's tool bar: buttons from a resource, one row, one column or
// rows of a width, commands that reach the frame through its dock bar, and
// the buttons' state from the frame, its pane and the main window.
#include "uisupport/uitest.h"

#include "ui/bars/ccmdui.h"
#include "ui/bars/ctoolbar.h"
#include "ui/images/toolbarresource.h"
#include "ui/windows/qtinterop.h"

#include <QImage>

#include <vector>

namespace {

// A frame that answers for some commands and hears the others.
class Frame : public CFrameWnd {
public:
    std::vector<UINT> commands;
    BOOL saveEnabled = FALSE;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_COMMAND)
            commands.push_back(LOWORD(wParam));
        if (message == WM_UPDATECOMMANDUI) {
            auto* ui = reinterpret_cast<CCmdUI*>(lParam);
            if (wParam == 301) {
                ui->Enable(saveEnabled);
                return TRUE;
            }
            if (wParam == 302) {
                ui->SetCheck(1);
                return TRUE;
            }
            if (wParam == 304) {
                ui->SetCheck(2);
                ui->ContinueRouting();
                return TRUE;
            }
            return FALSE;
        }
        return CFrameWnd::WindowProc(message, wParam, lParam);
    }
};

// The view: it knows command 303, and sees 304 after the frame.
class Pane : public CWnd {
public:
    int asked304 = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_UPDATECOMMANDUI && wParam == 303) {
            reinterpret_cast<CCmdUI*>(lParam)->Enable(TRUE);
            return TRUE;
        }
        if (message == WM_UPDATECOMMANDUI && wParam == 304) {
            ++asked304;
            return TRUE;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class ToolBarTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 600, 400)));
        pane.CreateEx("", "VxPane", WS_CHILD | WS_VISIBLE, CRect(0, 0, 10, 10), &frame, AFX_IDW_PANE_FIRST);
        QImage strip(16 * 4, 15, QImage::Format_RGB32);
        strip.fill(QColor(192, 192, 192));
        for (int i = 0; i < 4; ++i)
            strip.setPixel(16 * i + 8, 7, qRgb(0, 0, 255));
        vx::SetResourceImage(IMAGE_BITMAP, 7100, strip);
        vx::SetToolBarResource(MAKEINTRESOURCE(7100), {1, 16, 15, 5, 301, 302, 0, 303, 304});
        ASSERT_TRUE(bar.CreateEx(&frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER));
        ASSERT_TRUE(bar.LoadToolBar(7100));
        bar.EnableDocking(CBRS_ALIGN_ANY);
        frame.EnableDocking(CBRS_ALIGN_ANY);
        frame.DockControlBar(&bar);
    }
    void TearDown() override
    {
        vx::SetResourceImage(IMAGE_BITMAP, 7100, QImage());
        vx::SetToolBarResource(MAKEINTRESOURCE(7100), {});
    }
    CRect Item(int i)
    {
        CRect r;
        bar.GetItemRect(i, &r);
        return r;
    }

    Frame frame;
    Pane pane;
    CToolBar bar;
};

} // namespace

TEST_F(ToolBarTest, LoadsItsButtonsAndImagesFromAResource)
{
    EXPECT_FALSE(bar.LoadToolBar(7199)) << "no such resource";
    ASSERT_EQ(bar.GetCount(), 5);
    EXPECT_EQ(bar.GetItemID(0), 301u);
    EXPECT_EQ(bar.GetItemID(2), ID_SEPARATOR);
    EXPECT_EQ(bar.CommandToIndex(304), 4);
    EXPECT_EQ(Item(0).Size(), CSize(23, 22)) << "the image and 7";
    UINT id;
    UINT style;
    int image;
    bar.GetButtonInfo(3, id, style, image);
    EXPECT_EQ(id, 303u);
    EXPECT_EQ(image, 2) << "separators take no image";
    // Each button shows its image: one blue dot each.
    const QImage shot = vxtest::Render(bar);
    EXPECT_EQ(vxtest::CountColor(shot, CRect(0, 0, shot.width(), shot.height()), RGB(0, 0, 255)), 4);
}

TEST_F(ToolBarTest, OneRowOneColumnOrRowsOfAWidth)
{
    const CSize row = bar.CalcFixedLayout(FALSE, TRUE);
    EXPECT_EQ(Item(4).top, 0);
    EXPECT_EQ(Item(4).left, 23 * 3 + 8);
    CRect inside(0, 0, 0, 0);
    bar.CalcInsideRect(inside, TRUE);
    EXPECT_EQ(row, CSize(23 * 4 + 8 - inside.Width(), 22 - inside.Height()));

    const CSize column = bar.CalcFixedLayout(FALSE, FALSE);
    EXPECT_EQ(Item(1).left, 0);
    EXPECT_EQ(Item(1).top, 22);
    EXPECT_EQ(Item(2).Height(), 5) << "the separator is a band across";
    EXPECT_EQ(Item(3).top, 22 * 2 + 5);
    EXPECT_GT(column.cy, column.cx);

    // Floating, rows as wide as asked, wrapped after the separator.
    bar.CalcDynamicLayout(23 * 2 + 8 + 5, LM_HORZ);
    EXPECT_EQ(Item(3).left, 0);
    EXPECT_GT(Item(3).top, 0);
    EXPECT_EQ(Item(4).top, Item(3).top);
    EXPECT_EQ(bar.CalcDynamicLayout(-1, LM_HORZ | LM_HORZDOCK).cx, row.cx);
}

TEST_F(ToolBarTest, ClicksReachTheFrameAndTheFrameSetsTheButtons)
{
    CPoint c = Item(3).CenterPoint();
    vxtest::Click(bar, c.x, c.y);
    EXPECT_EQ(frame.commands, (std::vector<UINT>{303})) << "through the dock bar to the frame";

    vx::UpdateCommandUI(frame);
    EXPECT_EQ(bar.SendMessage(TB_ISBUTTONENABLED, 301), 0) << "the frame disables it";
    EXPECT_NE(bar.SendMessage(TB_ISBUTTONCHECKED, 302), 0) << "the frame checks it";
    EXPECT_NE(bar.SendMessage(TB_ISBUTTONENABLED, 303), 0) << "the pane enables it";
    EXPECT_TRUE(bar.SendMessage(TB_GETSTATE, 304) & TBSTATE_INDETERMINATE);
    EXPECT_EQ(pane.asked304, 1) << "the frame let the route go on";

    frame.saveEnabled = TRUE;
    vx::UpdateCommandUI(frame);
    EXPECT_NE(bar.SendMessage(TB_ISBUTTONENABLED, 301), 0);

    // A command nobody answers is disabled only when asked to be.
    const UINT other[] = {305};
    bar.SetButtons(other, 1);
    vx::UpdateCommandUI(frame, FALSE);
    EXPECT_NE(bar.SendMessage(TB_ISBUTTONENABLED, 305), 0);
    vx::UpdateCommandUI(frame, TRUE);
    EXPECT_EQ(bar.SendMessage(TB_ISBUTTONENABLED, 305), 0);
}

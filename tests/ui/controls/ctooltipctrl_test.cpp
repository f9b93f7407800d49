// The platform's tooltip control: a tool's text shows as the Qt tooltip of
// its window, and follows the tools as they are added, changed, deleted,
// activated and as the control goes.
#include "uisupport/uitest.h"

#include "platform/shell/resources.h"
#include "ui/controls/ctooltipctrl.h"
#include "ui/windows/qtinterop.h"

#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>
#include <QWidget>

#include <cstdio>

#include <memory>
#include <string>

namespace {

std::string TipOf(const CWnd& window)
{
    const QWidget* widget = vx::WidgetOfWindow(&window);
    return widget ? vx::FromQString(widget->toolTip()).StdString() : "(no widget)";
}

// What shows when the cursor rests at a client point of the window: Qt's
// tooltip request goes to the widget as the desktop sends it.
std::string TipAt(CWnd& window, int x, int y)
{
    QWidget* widget = vx::WidgetOfWindow(&window);
    if (!widget)
        return "(no widget)";
    // Qt hides a tip with a delay: a marker text tells whether a new one came.
    const QString none = QStringLiteral("(none)");
    QToolTip::showText(QPoint(0, 0), none, widget);
    CPoint at(x, y);
    window.ClientToScreen(&at);
    CRect r;
    window.GetWindowRect(&r);
    QHelpEvent event(QEvent::ToolTip, QPoint(at.x - r.left, at.y - r.top), widget->mapToGlobal(QPoint(at.x - r.left, at.y - r.top)));
    QApplication::sendEvent(widget, &event);
    const QString shown = QToolTip::text();
    QToolTip::hideText();
    return shown == none ? std::string() : vx::FromQString(shown).StdString();
}

// A tool window that answers TTN_NEEDTEXT with a count of the questions.
class AskedWindow : public CWnd {
public:
    int asked = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == TTN_NEEDTEXT) {
            auto* info = reinterpret_cast<NMTTDISPINFOA*>(lParam);
            snprintf(info->szText, sizeof info->szText, "asked %d", asked++);
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class ToolTips : public ::testing::Test {
protected:
    ToolTips()
    {
        parent.CreateEx("parent", "VxParent", WS_POPUP | WS_VISIBLE, CRect(0, 0, 200, 100));
        open.CreateEx("", "VxTool", WS_CHILD | WS_VISIBLE, CRect(0, 0, 50, 20), &parent, 1);
        save.CreateEx("", "VxTool", WS_CHILD | WS_VISIBLE, CRect(60, 0, 110, 20), &parent, 2);
        tip = std::make_unique<CToolTipCtrl>();
        tip->Create(&parent);
    }
    CWnd parent;
    AskedWindow open;
    CWnd save;
    std::unique_ptr<CToolTipCtrl> tip;
};

} // namespace

TEST_F(ToolTips, ToolTextShowsOverItsWindow)
{
    ASSERT_NE(vx::WidgetOfWindow(&open), nullptr);
    EXPECT_TRUE(tip->AddTool(&open, "Opens the project"));
    EXPECT_TRUE(tip->AddTool(&save, 6707u));
    EXPECT_EQ(TipOf(open), "Opens the project");
    EXPECT_EQ(TipOf(save), vx::FindString(6707));
    EXPECT_EQ(tip->GetToolCount(), 2);
    CString text;
    tip->GetText(text, &open);
    EXPECT_EQ(text, "Opens the project");

    // The same window and id again replace the tool.
    EXPECT_TRUE(tip->AddTool(&open, "Opens a project"));
    EXPECT_EQ(tip->GetToolCount(), 2);
    EXPECT_EQ(TipOf(open), "Opens a project");
    tip->UpdateTipText("Opens the last project", &open);
    EXPECT_EQ(TipOf(open), "Opens the last project");
    tip->GetText(text, &open, 7);
    EXPECT_EQ(text, "") << "no tool of that id";

    CWnd unmade;
    EXPECT_FALSE(tip->AddTool(nullptr, "x"));
    EXPECT_FALSE(tip->AddTool(&unmade, "x"));
    EXPECT_EQ(tip->GetToolCount(), 2);
}

// Two tools may share a window (as a tool bar's buttons share the bar):
// each shows over its own rectangle, and deleting one leaves the other.
TEST_F(ToolTips, RectangleToolsShowOverTheirOwnRectangles)
{
    const RECT left{0, 0, 25, 20};
    const RECT right{25, 0, 50, 20};
    tip->AddTool(&open, "Left half", &left, 1);
    tip->AddTool(&open, "Right half", &right, 2);
    EXPECT_EQ(TipOf(open), "") << "no tip for the whole window";
    EXPECT_EQ(TipAt(open, 5, 5), "Left half");
    EXPECT_EQ(TipAt(open, 30, 5), "Right half");
    TOOLINFO info{};
    ASSERT_TRUE(tip->HitTest(&open, CPoint(30, 5), &info));
    EXPECT_EQ(info.uId, 2u);
    EXPECT_EQ(CRect(info.rect), CRect(right));

    // A tool bar moves its buttons: the rectangle follows.
    const RECT moved{40, 0, 50, 20};
    tip->SetToolRect(&open, 2, &moved);
    EXPECT_EQ(TipAt(open, 30, 5), "");
    EXPECT_EQ(TipAt(open, 45, 5), "Right half");

    tip->DelTool(&open, 2);
    EXPECT_EQ(tip->GetToolCount(), 1);
    EXPECT_EQ(TipAt(open, 45, 5), "");
    EXPECT_EQ(TipAt(open, 5, 5), "Left half");
    tip->DelTool(&open, 1);
    EXPECT_EQ(tip->GetToolCount(), 0);
    EXPECT_EQ(TipAt(open, 5, 5), "");
    tip->DelTool(&open, 1); // nothing left to delete
    EXPECT_EQ(tip->GetToolCount(), 0);
}

TEST_F(ToolTips, InactiveControlShowsNothingUntilActivatedAgain)
{
    tip->AddTool(&open, "Opens the project");
    tip->Activate(FALSE);
    EXPECT_FALSE(tip->IsActive());
    EXPECT_EQ(TipOf(open), "");
    tip->AddTool(&save, "Saves");
    EXPECT_EQ(TipOf(save), "") << "a tool added meanwhile waits too";
    tip->SendMessage(TTM_ACTIVATE, TRUE);
    EXPECT_TRUE(tip->IsActive());
    EXPECT_EQ(TipOf(open), "Opens the project");
    EXPECT_EQ(TipOf(save), "Saves");

    // The control's other messages answer as its functions do.
    EXPECT_EQ(tip->SendMessage(TTM_GETTOOLCOUNT), 2);
    EXPECT_EQ(tip->SendMessage(TTM_SETMAXTIPWIDTH, 0, 400), -1);
    EXPECT_EQ(tip->SendMessage(TTM_GETMAXTIPWIDTH), 400);
    EXPECT_EQ(tip->SetMaxTipWidth(300), 400);
}

TEST_F(ToolTips, ControlThatGoesTakesItsTextsAlong)
{
    tip->AddTool(&open, "Opens the project");
    tip->AddTool(&save, "Saves");
    // A window destroyed before the control is passed over.
    save.DestroyWindow();
    tip.reset();
    EXPECT_EQ(TipOf(open), "");
}

// A tool whose text its window gives on demand shows no fixed text: the
// window is asked each time the tip shows.
TEST_F(ToolTips, CallbackToolAsksItsWindow)
{
    tip->AddTool(&open);
    EXPECT_EQ(tip->GetToolCount(), 1);
    EXPECT_EQ(TipOf(open), "");
    EXPECT_EQ(TipAt(open, 5, 5), "asked 0");
    EXPECT_EQ(open.asked, 1);
    tip->UpdateTipText("Now fixed", &open);
    EXPECT_EQ(TipOf(open), "Now fixed");
}

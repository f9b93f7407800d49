// KVorschauWnd: where the preview window stands beside its parent, its kept
// rectangle, its switch, and what it asks the main frame.
#include "look/designtest.h"

#include "filedialogs/kvorschauwnd.h"
#include "platform/windows/cframewnd.h"
#include "ui/windows/uiapp.h"

#include <string>

namespace {

using looktest::Settings;

class Parent : public CWnd {
public:
    explicit Parent(const CRect& r = CRect(200, 100, 600, 400))
    {
        CreateEx("Dialog", "VxPreviewParent", WS_POPUP | WS_CAPTION | WS_VISIBLE, r);
    }
    ~Parent() override { DestroyWindow(); }
};

// A main frame that writes down the preview's requests.
class Frame : public CMDIFrameWnd {
public:
    std::vector<WPARAM> codes;
    Frame() { CreateEx("AT", "VxPreviewFrame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 100, 100)); }
    ~Frame() override { DestroyWindow(); }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == vx::kVorschauRequest) {
            codes.push_back(wParam);
            return wParam == vx::kVorschauLoad ? 1 : 0;
        }
        return CMDIFrameWnd::WindowProc(message, wParam, lParam);
    }
};

class VorschauWnd : public Settings {
protected:
    VorschauWnd() { KDateiVorschau::s_GlobalOnOff = 1; }
    ~VorschauWnd() override { KDateiVorschau::s_GlobalOnOff = 1; }
    static CRect Rect(CWnd& w)
    {
        CRect r;
        w.GetWindowRect(&r);
        return r;
    }
};

} // namespace

TEST_F(VorschauWnd, StandsBesideItsParentBySide)
{
    Parent parent; // P = (200, 100, 600, 400)
    struct Row {
        int side;
        int wide;
        CRect expected; // with R the window's own size, w x h
    };
    KVorschauWnd probe;
    ASSERT_TRUE(probe.Erstellen(&parent, nullptr, 0, 0, 0, 0));
    const int w = Rect(probe).Width();
    const int h = Rect(probe).Height();
    probe.DestroyWindow();
    const Row rows[] = {
        {vx::kVorschauAbove, 0, CRect(200, 100 - h, 200 + w, 100)},
        {vx::kVorschauAbove, 1, CRect(200, 2 * 100 - 400, 600, 2 * 100 - 400 + h)},
        {vx::kVorschauLeft, 0, CRect(200 - w, 100, 200, 100 + h)},
        {vx::kVorschauLeft, 1, CRect(200 - w, 100, 200, 400)},
        {vx::kVorschauCorner, 0, CRect(600, 400, 600 + w, 400 + h)}, // at the corner, not under
        {vx::kVorschauCorner, 1, CRect(600, 400, 1000, 400 + h)},
        {vx::kVorschauRight, 0, CRect(600, 100, 600 + w, 100 + h)},
        {vx::kVorschauRight, 1, CRect(600, 100, 600 + w, 400)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "side " << row.side << " wide " << row.wide);
        KVorschauWnd preview;
        ASSERT_TRUE(preview.Erstellen(&parent, nullptr, row.wide, row.side, 0, 1));
        EXPECT_EQ(Rect(preview), row.expected);
    }

    // After the parent moved, the window follows it, stretched along it.
    KVorschauWnd preview;
    preview.Erstellen(&parent, nullptr, 0, vx::kVorschauRight, 0, 0);
    parent.MoveWindow(50, 60, 300, 200);
    preview.Verschieben(1);
    EXPECT_EQ(Rect(preview), CRect(350, 60, 350 + w, 260));
}

TEST_F(VorschauWnd, AKeptRectangleWinsOverTheSideAndIsWrittenAtTheEnd)
{
    Parent parent;
    {
        KVorschauWnd preview;
        ASSERT_TRUE(preview.Erstellen(&parent, nullptr, 1, vx::kVorschauRight, 6813, 0));
        EXPECT_EQ(Rect(preview).left, 600);
        preview.MoveWindow(10, 20, 150, 120);
        preview.DestroyWindow();
    }
    EXPECT_NE(Global().find("Vorschau6813=10#20#160#140#"), std::string::npos) << Global();
    KVorschauWnd again;
    ASSERT_TRUE(again.Erstellen(&parent, nullptr, 1, vx::kVorschauLeft, 6813, 0));
    EXPECT_EQ(Rect(again), CRect(10, 20, 160, 140));
}

TEST_F(VorschauWnd, ItsOwnSwitchShowsAndHidesItAndClosingOnlyHides)
{
    Parent parent;
    Frame frame;
    CMDIFrameWnd* oldFrame = g_pDLLMainframe;
    g_pDLLMainframe = &frame;
    KVorschauWnd preview;
    ASSERT_TRUE(preview.Erstellen(&parent, nullptr, 1, vx::kVorschauRight, 0, 0));
    // The switch is made on the parent: ">" at its top right corner.
    CWnd* button = parent.GetDlgItem(vx::kVorschauButtonId);
    ASSERT_NE(button, nullptr);
    CRect client;
    parent.GetClientRect(&client);
    CRect r;
    button->GetWindowRect(&r);
    parent.ScreenToClient(&r);
    EXPECT_EQ(r, CRect(client.right - 16, 1, client.right - 2, 11));
    EXPECT_EQ(button->GetWindowTextString(), CString(">"));

    preview.Anzeigen("C:\\Projekte\\Demo\\Plan.0001", nullptr, nullptr);
    EXPECT_TRUE(preview.IsWindowVisible());
    EXPECT_EQ(static_cast<CButton*>(button)->GetCheck(), 1);
    vxtest::Click(*button, 3, 3); // off
    EXPECT_FALSE(preview.IsWindowVisible());
    EXPECT_EQ(KDateiVorschau::s_GlobalOnOff, 0);
    EXPECT_EQ(static_cast<CButton*>(button)->GetCheck(), 0);
    vxtest::Click(*button, 3, 3); // on again
    EXPECT_TRUE(preview.IsWindowVisible());
    EXPECT_EQ(KDateiVorschau::s_GlobalOnOff, 1);

    // A part goes to the main frame to be drawn (0x50).
    preview.Anzeigen("x", "K1", nullptr);
    preview.UpdateWindow();
    vx::ProcessUiEvents(50);
    EXPECT_NE(std::find(frame.codes.begin(), frame.codes.end(), vx::kVorschauBauteil), frame.codes.end());

    // Closing hides it, clears the switch and, without a part, ends the preview.
    preview.Anzeigen("x", nullptr, nullptr);
    frame.codes.clear();
    preview.SendMessage(WM_CLOSE);
    EXPECT_TRUE(IsWindow(preview.m_hWnd));
    EXPECT_FALSE(preview.IsWindowVisible());
    EXPECT_EQ(static_cast<CButton*>(button)->GetCheck(), 0);
    EXPECT_EQ(frame.codes, std::vector<WPARAM>{vx::kVorschauExit});

    // A null path turns the preview off; the switch it made goes with it.
    preview.Anzeigen(nullptr, nullptr, nullptr);
    EXPECT_EQ(preview.m_Vorschau.m_OnOff, 0);
    EXPECT_TRUE(preview.m_Path.IsEmpty());
    preview.DestroyWindow();
    EXPECT_EQ(parent.GetDlgItem(vx::kVorschauButtonId), nullptr);
    g_pDLLMainframe = oldFrame;
}

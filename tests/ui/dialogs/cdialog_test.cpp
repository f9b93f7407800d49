// CDialog: templates as data, the controls a dialog makes from them, the
// modal loop and what it serves, command routing, and refused templates.
#include "uisupport/uitest.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/cedit.h"
#include "ui/controls/controlclass.h"
#include "ui/controls/cstatic.h"
#include "ui/dialogs/cdialog.h"
#include "ui/dialogs/modalloop.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/windows/ccombobox.h"
#include "platform/windows/cframewnd.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/sysmetrics.h"

#include <QTimer>

#include <unistd.h>

#include <functional>

namespace {

constexpr UINT kApply = 10;
constexpr UINT kName = 101;
constexpr UINT kKind = 102;

vx::DialogTemplate NameTemplate()
{
    vx::DialogTemplate t("Nazwa", 0, 0, 200, 100);
    t.LText("&Name:", IDC_STATIC, 7, 9, 40, 8)
        .EditText(kName, 50, 7, 143, 14, ES_AUTOHSCROLL)
        .ComboBox(kKind, 50, 25, 143, 60, CBS_DROPDOWNLIST)
        .PushButton("&Apply", kApply, 7, 79, 50, 14)
        .DefPushButton("OK", IDOK, 89, 79, 50, 14)
        .PushButton("Cancel", IDCANCEL, 143, 79, 50, 14);
    return t;
}

class TestDialog : public CDialog {
public:
    explicit TestDialog(const vx::DialogTemplate& t = NameTemplate(), CWnd* parent = nullptr)
    {
        InitModalIndirect(t, parent);
        MapCommand(BN_CLICKED, kApply, &TestDialog::OnApply);
        MapCommand(EN_CHANGE, kName, [this] { changes.push_back(GetDlgItemText(kName)); });
    }

    std::function<void(TestDialog&)> onInit;
    std::function<void(TestDialog&, UINT, WPARAM)> onMessage;
    std::vector<CString> changes;
    int applied = 0;
    BOOL initResult = TRUE;

protected:
    BOOL OnInitDialog() override
    {
        CDialog::OnInitDialog();
        if (onInit)
            onInit(*this);
        return initResult;
    }
    void OnApply() { ++applied; }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if ((message == WM_TIMER || message >= WM_APP) && onMessage) {
            onMessage(*this, message, wParam);
            return 0;
        }
        return CDialog::WindowProc(message, wParam, lParam);
    }
};

TEST(CDialog, MakesItsControlsFromTheTemplateInOrderWithTheTemplateFont)
{
    TestDialog dlg;
    ASSERT_TRUE(dlg.CreateIndirect(NameTemplate()));
    CString title;
    dlg.GetWindowText(title);
    EXPECT_STREQ(title, "Nazwa");
    const char* classes[] = {"Static", "Edit", "ComboBox", "Button", "Button", "Button"};
    const int ids[] = {IDC_STATIC, kName, kKind, kApply, IDOK, IDCANCEL};
    int i = 0;
    const HFONT font = reinterpret_cast<HFONT>(dlg.SendMessage(WM_GETFONT));
    ASSERT_NE(font, nullptr);
    for (CWnd* w = dlg.GetWindow(GW_CHILD); w; w = w->GetWindow(GW_HWNDNEXT), ++i) {
        ASSERT_LT(i, 6);
        char cls[32] = {};
        GetClassNameA(w->m_hWnd, cls, sizeof cls);
        EXPECT_STREQ(cls, classes[i]);
        EXPECT_EQ(static_cast<int>(w->GetDlgCtrlID()), ids[i]);
        EXPECT_EQ(reinterpret_cast<HFONT>(w->SendMessage(WM_GETFONT)), font);
        EXPECT_TRUE(w->GetStyle() & WS_CHILD);
    }
    EXPECT_EQ(i, 6);
    LOGFONTA lf{};
    GetObjectA(font, sizeof lf, &lf);
    EXPECT_EQ(lf.lfHeight, -11); // 8 points at 96 dots an inch
    // Rectangles in dialog units become pixels in the dialog's font.
    CRect ok(89, 79, 139, 93);
    dlg.MapDialogRect(&ok);
    CRect shown;
    dlg.GetDlgItem(IDOK)->GetWindowRect(&shown);
    dlg.ScreenToClient(&shown);
    EXPECT_EQ(shown, ok);
    CRect units(0, 0, 4, 8);
    dlg.MapDialogRect(&units);
    EXPECT_GE(units.right, 5);
    EXPECT_LE(units.right, 8);
    EXPECT_GE(units.bottom, 12);
    EXPECT_LE(units.bottom, 15);
    CRect client;
    dlg.GetClientRect(&client);
    CRect whole(0, 0, 200, 100);
    dlg.MapDialogRect(&whole);
    EXPECT_EQ(client.Size(), whole.Size());
    EXPECT_EQ(LOWORD(static_cast<DWORD>(dlg.GetDefID())), static_cast<WORD>(IDOK));
    EXPECT_EQ(HIWORD(static_cast<DWORD>(dlg.GetDefID())), DC_HASDEFID);
    const LONG system = GetDialogBaseUnits();
    EXPECT_GT(LOWORD(static_cast<DWORD>(system)), 0);
    EXPECT_GT(HIWORD(static_cast<DWORD>(system)), 0);
}

TEST(CDialog, InitDialogComesAfterTheControlsAndItsAnswerPlacesTheFocus)
{
    TestDialog dlg;
    bool sawControls = false;
    dlg.onInit = [&](TestDialog& d) { sawControls = d.GetDlgItem(IDCANCEL) != nullptr; };
    ASSERT_TRUE(dlg.CreateIndirect(NameTemplate()));
    EXPECT_TRUE(sawControls);
    EXPECT_EQ(CWnd::GetFocus(), dlg.GetDlgItem(kName)); // the first tab stop
    dlg.DestroyWindow();

    TestDialog own;
    own.initResult = FALSE;
    own.onInit = [](TestDialog& d) { d.GotoDlgCtrl(d.GetDlgItem(IDCANCEL)); };
    ASSERT_TRUE(own.CreateIndirect(NameTemplate()));
    EXPECT_EQ(CWnd::GetFocus(), own.GetDlgItem(IDCANCEL));
}

TEST(CDialog, ControlsByIdAndBoundControls)
{
    vx::DialogTemplate t = NameTemplate();
    t.CheckBox("Check", 301, 7, 40, 60, 10).RadioButton("One", 401, 7, 52, 60, 10, WS_GROUP).RadioButton("Two", 402, 7, 64, 60, 10);
    TestDialog dlg(t);
    CButton mine;
    dlg.BindDlgItem(kApply, mine);
    ASSERT_TRUE(dlg.CreateIndirect(t));
    EXPECT_EQ(dlg.GetDlgItem(kApply), &mine);
    dlg.SetDlgItemText(kName, "X1");
    EXPECT_STREQ(dlg.GetDlgItemText(kName), "X1");
    char buffer[2] = {};
    EXPECT_EQ(dlg.GetDlgItemText(kName, buffer, sizeof buffer), 1);
    EXPECT_STREQ(buffer, "X");
    dlg.SetDlgItemInt(kName, static_cast<UINT>(-42));
    BOOL ok = FALSE;
    EXPECT_EQ(static_cast<int>(dlg.GetDlgItemInt(kName, &ok)), -42);
    EXPECT_TRUE(ok);
    dlg.SetDlgItemText(kName, "12x");
    EXPECT_EQ(dlg.GetDlgItemInt(kName, &ok), 0u);
    EXPECT_FALSE(ok);
    dlg.SetDlgItemText(kName, " 7 ");
    EXPECT_EQ(dlg.GetDlgItemInt(kName, &ok, FALSE), 7u);
    EXPECT_TRUE(ok);
    dlg.CheckDlgButton(301, BST_CHECKED);
    EXPECT_EQ(dlg.IsDlgButtonChecked(301), BST_CHECKED);
    dlg.CheckRadioButton(401, 402, 402);
    EXPECT_EQ(dlg.GetCheckedRadioButton(401, 402), 402);
    EXPECT_EQ(dlg.IsDlgButtonChecked(401), BST_UNCHECKED);
    EXPECT_EQ(dlg.SendDlgItemMessage(kKind, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("x")), 0);
    EXPECT_EQ(dlg.SendDlgItemMessage(999, WM_GETTEXTLENGTH), 0);
    EXPECT_EQ(dlg.GetDlgItemText(999), CString());
    dlg.DestroyWindow();
    EXPECT_EQ(mine.m_hWnd, nullptr); // went with the dialog; the object is ours
}

TEST(CDialog, ModalLoopServesPostedMessagesTimersQtAndPumpSourcesAndReturnsTheEndCode)
{
    CFrameWnd frame;
    frame.CreateEx("frame", "Frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 600, 400));
    CWnd* oldMain = AfxGetMainWnd();
    AfxSetMainWnd(&frame);
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    std::vector<std::string> seen;
    bool ownerDisabled = false;
    int stack = 0;
    TestDialog dlg;
    ASSERT_TRUE(vx::AddPumpSource(pipeEnds[0], [&] {
        char c;
        (void)!read(pipeEnds[0], &c, 1);
        seen.push_back("source");
        dlg.EndDialog(77);
    }));
    dlg.onInit = [&](TestDialog& d) {
        d.PostMessage(WM_APP);
        ownerDisabled = !frame.IsWindowEnabled();
        stack = frame.m_cModalStack;
        EXPECT_EQ(vx::ModalLoopDepth(), 0); // the loop starts once the dialog stands
    };
    dlg.onMessage = [&](TestDialog& d, UINT message, WPARAM) {
        if (message == WM_APP) {
            seen.push_back("posted");
            d.SetTimer(5, 1);
        } else if (message == WM_TIMER) {
            d.KillTimer(5);
            seen.push_back("timer");
            QTimer::singleShot(0, [&] {
                seen.push_back("qt");
                EXPECT_EQ(vx::ModalLoopDepth(), 1);
                (void)!write(pipeEnds[1], "x", 1);
            });
        }
    };
    EXPECT_EQ(dlg.DoModal(), 77);
    EXPECT_EQ(seen, (std::vector<std::string>{"posted", "timer", "qt", "source"}));
    EXPECT_TRUE(ownerDisabled);
    EXPECT_EQ(stack, 1);
    EXPECT_TRUE(frame.IsWindowEnabled());
    EXPECT_EQ(frame.m_cModalStack, 0);
    EXPECT_EQ(dlg.m_hWnd, nullptr);
    vx::RemovePumpSource(pipeEnds[0]);
    close(pipeEnds[0]);
    close(pipeEnds[1]);

    // The same object runs again, and OK and Cancel end it with their codes.
    dlg.onInit = [](TestDialog& d) { d.PostMessage(WM_APP + 1); };
    dlg.onMessage = [](TestDialog& d, UINT, WPARAM) { vxtest::Click(*d.GetDlgItem(IDOK), 3, 3); };
    EXPECT_EQ(dlg.DoModal(), IDOK);
    dlg.onMessage = [](TestDialog& d, UINT, WPARAM) { d.SendMessage(WM_CLOSE); };
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    AfxSetMainWnd(oldMain);
}

TEST(CDialog, CommandsReachMappedHandlersAndNotificationsCarryTheirCode)
{
    TestDialog dlg;
    ASSERT_TRUE(dlg.CreateIndirect(NameTemplate()));
    vxtest::Click(*dlg.GetDlgItem(kApply), 3, 3);
    EXPECT_EQ(dlg.applied, 1);
    dlg.GetDlgItem(kName)->SetFocus();
    vxtest::Type("ab");
    EXPECT_EQ(dlg.changes, (std::vector<CString>{"a", "ab"}));
    // A modeless dialog is hidden by its end, not destroyed.
    dlg.ShowWindow(SW_SHOW);
    vxtest::Click(*dlg.GetDlgItem(IDOK), 3, 3);
    EXPECT_FALSE(dlg.IsWindowVisible());
    EXPECT_NE(dlg.m_hWnd, nullptr);
}

class Coloured : public TestDialog {
public:
    Coloured() : m_brush(RGB(0, 128, 0)) {}

protected:
    HBRUSH OnCtlColor(CDC* dc, CWnd* control, UINT kind) override
    {
        if (kind == CTLCOLOR_DLG)
            return m_brush;
        if (kind == CTLCOLOR_STATIC && control && control->GetDlgCtrlID() == static_cast<UINT>(IDC_STATIC)) {
            dc->SetTextColor(RGB(255, 255, 255));
            return m_brush;
        }
        return nullptr;
    }
    CBrush m_brush;
};

TEST(CDialog, OnCtlColorColoursTheDialogAndItsControls)
{
    Coloured dlg;
    ASSERT_TRUE(dlg.CreateIndirect(NameTemplate()));
    dlg.ShowWindow(SW_SHOW);
    const QImage img = vxtest::Render(dlg);
    EXPECT_PIXEL(img, 2, 2, RGB(0, 128, 0));
    CRect label;
    dlg.GetDlgItem(IDC_STATIC)->GetWindowRect(&label);
    dlg.ScreenToClient(&label);
    EXPECT_GT(vxtest::CountColor(img, label, RGB(255, 255, 255)), 10);
    CRect edit;
    dlg.GetDlgItem(kName)->GetWindowRect(&edit);
    dlg.ScreenToClient(&edit);
    EXPECT_PIXEL(img, edit.CenterPoint().x, edit.CenterPoint().y, GetSysColor(COLOR_WINDOW));
}

TEST(DialogTemplate, RegistryRefusesUnknownClassesAndTwiceUsedIds)
{
    vx::DialogTemplate good = NameTemplate();
    EXPECT_TRUE(good.Check().IsEmpty());
    EXPECT_TRUE(vx::RegisterDialogTemplate(60001, good));
    ASSERT_NE(vx::FindDialogTemplate(60001), nullptr);
    EXPECT_EQ(vx::FindDialogTemplate(60001)->items.size(), 6u);

    vx::DialogTemplate unknown = NameTemplate();
    unknown.Control("x", 55, "NoSuchClass", WS_VISIBLE, 0, 0, 10, 10);
    EXPECT_FALSE(vx::RegisterDialogTemplate(60002, unknown));
    EXPECT_NE(vx::LastDialogError().Find("NoSuchClass"), -1);
    EXPECT_EQ(vx::FindDialogTemplate(60002), nullptr);

    vx::DialogTemplate twice = NameTemplate();
    twice.PushButton("Again", kApply, 0, 0, 10, 10);
    EXPECT_FALSE(vx::RegisterDialogTemplate(60003, twice));
    EXPECT_NE(vx::LastDialogError().Find("used twice"), -1);
    twice.items.pop_back();
    twice.LText("another label", IDC_STATIC, 0, 0, 10, 10); // unnamed statics may repeat
    EXPECT_TRUE(twice.Check().IsEmpty());
    EXPECT_FALSE(vx::RegisterDialogTemplate(0, good));

    // A refused template makes no dialog, modal or not.
    TestDialog modal(unknown);
    EXPECT_EQ(modal.DoModal(), -1);
    TestDialog modeless;
    EXPECT_FALSE(modeless.CreateIndirect(unknown));
    EXPECT_EQ(modeless.m_hWnd, nullptr);
    CDialog missing(60999);
    EXPECT_EQ(missing.DoModal(), -1);
    EXPECT_NE(vx::LastDialogError().Find("60999"), -1);

    // By id, once registered; other folders add classes the same way.
    vx::RegisterControlClass("TestLabel", [] { return std::unique_ptr<CWnd>(new CStatic); });
    vx::DialogTemplate custom("c", 0, 0, 50, 50);
    custom.Control("label", 5, "TestLabel", WS_VISIBLE, 0, 0, 20, 10);
    ASSERT_TRUE(vx::RegisterDialogTemplate(60004, custom));
    CDialog byId;
    ASSERT_TRUE(byId.Create(60004));
    EXPECT_NE(dynamic_cast<CStatic*>(byId.GetDlgItem(5)), nullptr);
    vx::UnregisterDialogTemplate(60001);
    vx::UnregisterDialogTemplate(60004);
}

TEST(DialogTemplate, ChildTemplateGoesBelowTheSystemPart)
{
    vx::DialogTemplate system("Open", 0, 0, 200, 120);
    system.DefPushButton("OK", IDOK, 140, 100, 50, 14);
    vx::DialogTemplate child("", 0, 0, 260, 40, WS_CHILD | DS_CONTROL);
    child.CheckBox("Preview", 1200, 7, 7, 80, 10);
    system.AppendBelow(child);
    EXPECT_EQ(system.cx, 260);
    EXPECT_EQ(system.cy, 160);
    ASSERT_NE(system.Find(1200), nullptr);
    EXPECT_EQ(system.Find(1200)->y, 127);
    EXPECT_EQ(system.Find(IDOK)->y, 100);
    EXPECT_EQ(system.Find(4711), nullptr);
}

} // namespace

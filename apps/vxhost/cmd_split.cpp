// A split dialog in the sample host: pages and their description on the
// left, one above the other, the page's properties on the right, with bars
// between them that the user drags.
//
//   vxhost split                  opens it; its place and bars are kept in the suite file
//   vxhost split --screenshot DIR writes PNGs of it before, during and after a drag
//
// Without a display it opens, drags both bars by simulated mouse input,
// shows where the panes went, and ends.
#include "modalrun.h"
#include "windowdemo.h"

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <functional>
#include <string>

namespace {

enum : int { kPages = 1001, kText = 1002, kProperties = 1003 };

constexpr const char* kSection = "vxhost split";

CString Text(const char* utf8)
{
    return CString(vx::FromUtf8(utf8).c_str());
}

vx::DialogTemplate SplitTemplate()
{
    vx::DialogTemplate t(Text("Strony projektu"), 0, 0, 300, 200, vx::DialogTemplate::kDefaultStyle | WS_THICKFRAME);
    t.ListBox(kPages, 7, 7, 120, 90, WS_VSCROLL)
        .EditText(kText, 7, 101, 120, 73, ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL)
        .ListBox(kProperties, 131, 7, 162, 167, WS_VSCROLL)
        .DefPushButton("OK", IDOK, 188, 179, 50, 14)
        .PushButton(Text("Anuluj"), IDCANCEL, 243, 179, 50, 14);
    return t;
}

class SplitDialog : public vxhost::PlaceKeepingDialog<KSplitResizeDialog> {
public:
    SplitDialog() : PlaceKeepingDialog(0, AfxGetMainWnd()) { InitModalIndirect(SplitTemplate()); }

    KSplitPane* left = nullptr;

protected:
    BOOL OnInitDialog() override
    {
        KSplitResizeDialog::OnInitDialog();
        CWnd& pages = *GetDlgItem(kPages);
        CWnd& text = *GetDlgItem(kText);
        CWnd& properties = *GetDlgItem(kProperties);
        // The percentage rules give the left column half of a growth; the
        // tree then measures its division from where they put the controls.
        AddSzControlEx(pages, 0, 50, 0, 50);
        AddSzControlEx(text, 0, 50, 50, 100);
        AddSzControlEx(properties, 50, 100, 0, 100);
        AddSzControl(*GetDlgItem(IDOK), mdRepos, mdRepos);
        AddSzControl(*GetDlgItem(IDCANCEL), mdRepos, mdRepos);

        KSplitPane* root = CreatePane(1, nullptr, 1, 1);
        left = CreatePane(0, root, 1, 1);
        AddWindowToPane(left, &pages, 1, KSplitPane::modeStretch, KSplitPane::modeStretch);
        AddWindowToPane(left, &text, 2, KSplitPane::modeStretch, KSplitPane::modeStretch);
        AddWindowToPane(root, &properties, 2, KSplitPane::modeStretch, KSplitPane::modeStretch);
        Initialize(1);

        auto* list = static_cast<CListBox*>(&pages);
        for (const char* p : {"1  Strona tytułowa", "2  Spis treści", "10  Zasilanie 400 V", "11  Zasilanie 24 V",
                              "12  Sterowanie -K1", "13  Sterowanie -K2", "20  Listwy zaciskowe", "30  Lista części"})
            list->AddString(Text(p));
        list->SetCurSel(4);
        SetDlgItemText(kText, Text("Sterowanie przekaźnika -K1:\r\ncewka A1/A2, styki 13/14 i 21/22."));
        auto* props = static_cast<CListBox*>(&properties);
        for (const char* p : {"Numer strony: 12", "Tytuł: Sterowanie -K1", "Format: A3 poziomo",
                              "Opracował: J. Kowalski", "Data: 2026-11-25", "Wersja: 3", "Norma: DIN EN 61082"})
            props->AddString(Text(p));
        RestorePlace();
        return TRUE;
    }
};

// The mouse as the user moves it: press on a bar, move, let go.
void Mouse(CWnd& w, UINT message, CPoint at)
{
    vx::DispatchInputMessage(w, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(at.x, at.y));
    vx::ProcessUiEvents();
}

CPoint Middle(const CRect& r)
{
    return r.CenterPoint();
}

int Screenshot(const std::string& dir)
{
    int written = 0;
    SplitDialog dlg;
    vxhost::RunModal(dlg, [&](SplitDialog& d) {
        vx::ProcessUiEvents();
        vxhost::SavePicture(d, dir, "split-1-before.png", written);
        const CPoint bar = Middle(d.GetRootPane()->GetSplitterRect());
        Mouse(d, WM_LBUTTONDOWN, bar);
        Mouse(d, WM_MOUSEMOVE, CPoint(bar.x + 40, bar.y));
        Mouse(d, WM_MOUSEMOVE, CPoint(bar.x + 70, bar.y));
        vxhost::SavePicture(d, dir, "split-2-dragging.png", written);
        Mouse(d, WM_LBUTTONUP, CPoint(bar.x + 70, bar.y));
        vxhost::SavePicture(d, dir, "split-3-after.png", written);
        const CPoint across = Middle(d.left->GetSplitterRect());
        Mouse(d, WM_LBUTTONDOWN, across);
        Mouse(d, WM_LBUTTONUP, CPoint(across.x, across.y + 45));
        vxhost::SavePicture(d, dir, "split-4-after-second.png", written);
        d.EndDialog(IDCANCEL);
    });
    return written == 4 ? 0 : 1;
}

void PrintPanes(SplitDialog& d)
{
    vxhost::PrintControlPlaces(d, {{kPages, "pages"}, {kText, "description"}, {kProperties, "properties"}}, 12);
}

int Offscreen()
{
    SplitDialog dlg;
    vxhost::RunModal(dlg, [](SplitDialog& d) {
        std::printf("offscreen: the dialog opened as its template divides it:\n");
        PrintPanes(d);
        const CPoint bar = Middle(d.GetRootPane()->GetSplitterRect());
        Mouse(d, WM_LBUTTONDOWN, bar);
        Mouse(d, WM_MOUSEMOVE, CPoint(bar.x + 60, bar.y));
        Mouse(d, WM_LBUTTONUP, CPoint(bar.x + 60, bar.y));
        const CPoint across = Middle(d.left->GetSplitterRect());
        Mouse(d, WM_LBUTTONDOWN, across);
        Mouse(d, WM_LBUTTONUP, CPoint(across.x, across.y - 1000));
        std::printf("the upright bar dragged 60 pixels right, the level one as far up as it goes:\n");
        PrintPanes(d);
        d.EndDialog(IDCANCEL);
    });
    return 0;
}

int RunSplit(vxhost::Args& args)
{
    return vxhost::RunWindowDemo(args, "split", {Screenshot, Offscreen, [] {
        vxhost::RunForUser<SplitDialog>(kSection,
                                        "drag the bars between the panes, or size the dialog; OK or Cancel ends it.");
    }});
}

} // namespace

VXHOST_COMMAND_NO_TOUR("split", "[--screenshot DIR]  a dialog of panes divided by bars the user drags", 95, RunSplit);

#endif // VXHOST_WITH_UI

// A resizable dialog in the sample host: a search and replace form of some
// thirty controls under percentage rules.
//
//   vxhost resize                  opens it; its place is kept in the suite file
//   vxhost resize --screenshot DIR writes PNGs of it at two sizes
//
// Without a display it opens, grows by a step, shows where some controls
// went, and ends.
#include "modalrun.h"
#include "windowdemo.h"

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <functional>
#include <string>

namespace {

enum : int {
    kFind = 1001,
    kReplace = 1002,
    kFindNext = 1010,
    kReplaceOne = 1011,
    kReplaceAll = 1012,
    kScope = 1019,
    kProject = 1020,
    kPage = 1021,
    kSelection = 1022,
    kOptions = 1029,
    kCase = 1030,
    kWords = 1031,
    kPattern = 1032,
    kResultsLabel = 1039,
    kResults = 1040,
    kKindLabel = 1049,
    kKind = 1050,
    kFolder = 1051,
    kStatus = 1060,
    kHelp = 1070,
};

constexpr const char* kSection = "vxhost resize";

CString Text(const char* utf8)
{
    return CString(vx::FromUtf8(utf8).c_str());
}

vx::DialogTemplate SampleTemplate()
{
    vx::DialogTemplate t(Text("Szukaj i zamień"), 0, 0, 300, 206,
                         vx::DialogTemplate::kDefaultStyle | WS_THICKFRAME);
    t.LText(Text("&Szukaj:"), IDC_STATIC, 7, 9, 40, 8)
        .EditText(kFind, 50, 7, 170, 14, ES_AUTOHSCROLL)
        .LText(Text("&Zamień na:"), IDC_STATIC, 7, 27, 42, 8)
        .EditText(kReplace, 50, 25, 170, 14, ES_AUTOHSCROLL)
        .DefPushButton(Text("&Znajdź"), kFindNext, 227, 7, 66, 14)
        .PushButton(Text("Za&mień"), kReplaceOne, 227, 25, 66, 14)
        .PushButton(Text("Zamień &wszystko"), kReplaceAll, 227, 43, 66, 14)
        .GroupBox(Text("Zakres"), kScope, 7, 45, 104, 56)
        .RadioButton(Text("Cały &projekt"), kProject, 14, 57, 92, 10, WS_GROUP | WS_TABSTOP)
        .RadioButton(Text("&Bieżąca strona"), kPage, 14, 71, 92, 10)
        .RadioButton(Text("Zaz&naczenie"), kSelection, 14, 85, 92, 10)
        .GroupBox(Text("Opcje"), kOptions, 116, 45, 104, 56)
        .CheckBox(Text("Wielkość &liter"), kCase, 123, 57, 92, 10, WS_GROUP)
        .CheckBox(Text("&Całe wyrazy"), kWords, 123, 71, 92, 10)
        .CheckBox(Text("Wyrażenia &regularne"), kPattern, 123, 85, 92, 10)
        .LText(Text("Wyniki:"), kResultsLabel, 7, 107, 60, 8)
        .ListBox(kResults, 7, 117, 286, 44, WS_VSCROLL)
        .LText(Text("&Typ:"), kKindLabel, 7, 168, 30, 8)
        .ComboBox(kKind, 40, 166, 110, 80, CBS_DROPDOWNLIST | WS_VSCROLL)
        .ComboBox(kFolder, 156, 166, 137, 80, CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_VSCROLL)
        .LText(Text("Gotowy"), kStatus, 7, 185, 120, 8, SS_SUNKEN)
        .PushButton("OK", IDOK, 133, 182, 50, 14)
        .PushButton(Text("Anuluj"), IDCANCEL, 188, 182, 50, 14)
        .PushButton(Text("Pomo&c"), kHelp, 243, 182, 50, 14);
    return t;
}

class SampleDialog : public vxhost::PlaceKeepingDialog<CResizeDialog> {
public:
    SampleDialog() : PlaceKeepingDialog(0, AfxGetMainWnd(), fdAll, true) { InitModalIndirect(SampleTemplate()); }

    using CResizeDialog::OnInitDialog;

protected:
    BOOL OnInitDialog() override
    {
        CResizeDialog::OnInitDialog();
        auto item = [this](int id) -> CWnd& { return *GetDlgItem(id); };
        for (int id : {kFind, kReplace})
            AddSzXControl(item(id), mdResize);
        for (int id : {kFindNext, kReplaceOne, kReplaceAll})
            AddSzXControl(item(id), mdRepos);
        // The two groups share the width, half each; their contents follow.
        AddSzXControl(item(kScope), mdFirstHalf);
        AddSzXControl(item(kOptions), mdSecondHalf);
        for (int id : {kCase, kWords, kPattern})
            AddSzXControlEx(item(id), 50, 50);
        AddSzControl(item(kResults), mdResize, mdResize);
        for (int id : {kKindLabel, kKind})
            AddSzYControl(item(id), mdRepos);
        AddSzControl(item(kFolder), mdResize, mdRepos);
        AddSzControl(item(kStatus), mdFirstHalf, mdRepos);
        for (int id : {IDOK, IDCANCEL, static_cast<int>(kHelp)})
            AddSzControl(item(id), mdRepos, mdRepos);
        auto* kind = static_cast<CComboBox*>(GetDlgItem(kKind));
        for (const char* k : {"Oznaczenie", "Tekst", "Funkcja", "Miejsce"})
            kind->AddString(Text(k));
        kind->SetCurSel(0);
        auto* folder = static_cast<CComboBox*>(GetDlgItem(kFolder));
        folder->AddString("C:\\Projekte\\Demo");
        folder->SetCurSel(0);
        auto* results = static_cast<CListBox*>(GetDlgItem(kResults));
        for (const char* r : {"Strona 12: -K1 Przekaźnik", "Strona 14: -K1 Styk 13/14", "Strona 31: -K1 Cewka A1/A2"})
            results->AddString(Text(r));
        CheckRadioButton(kProject, kSelection, kProject);
        SetDlgItemText(kFind, "-K1");
        SetDlgItemText(kReplace, "-K2");
        RestorePlace();
        return TRUE;
    }
};

// The client size grown by (dx, dy), as the user's drag would.
void Grow(CWnd& dlg, int dx, int dy)
{
    CRect r;
    dlg.GetWindowRect(&r);
    dlg.SetWindowPos(nullptr, 0, 0, r.Width() + dx, r.Height() + dy, SWP_NOMOVE | SWP_NOZORDER);
}

int Screenshot(const std::string& dir)
{
    int written = 0;
    SampleDialog dlg;
    vxhost::RunModal(dlg, [&](SampleDialog& d) {
        for (int shot = 1; shot <= 2; ++shot) {
            if (shot == 2)
                Grow(d, 220, 140);
            vx::ProcessUiEvents();
            vxhost::SavePicture(d, dir, "resize-" + std::to_string(shot) + ".png", written);
        }
        d.EndDialog(IDCANCEL);
    });
    return written == 2 ? 0 : 1;
}

void PrintPlaces(CWnd& d)
{
    vxhost::PrintControlPlaces(d, {{kFind, "search field"}, {kResults, "results"}, {kOptions, "options"}, {IDOK, "OK"}},
                               13);
}

int Offscreen()
{
    SampleDialog dlg;
    vxhost::RunModal(dlg, [](SampleDialog& d) {
        std::printf("offscreen: the dialog opened at its template size:\n");
        PrintPlaces(d);
        Grow(d, 100, 60);
        std::printf("and 100 x 60 pixels larger:\n");
        PrintPlaces(d);
        d.EndDialog(IDCANCEL);
    });
    return 0;
}

int RunResize(vxhost::Args& args)
{
    return vxhost::RunWindowDemo(args, "resize", {Screenshot, Offscreen, [] {
        vxhost::RunForUser<SampleDialog>(kSection, "size the dialog by its frame or its grip; OK or Cancel ends it.");
    }});
}

} // namespace

VXHOST_COMMAND_NO_TOUR("resize", "[--screenshot DIR]  a resizable dialog whose controls follow its size", 94,
                       RunResize);

#endif // VXHOST_WITH_UI

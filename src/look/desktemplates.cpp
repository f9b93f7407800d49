// The dialog templates of the look: the desk design dialog (477).
#include "look/kdeskdesigndlg.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/cstatic.h"

#include "platform/framework/codepage.h"
#include "platform/windows/ccombobox.h"

namespace vx {
namespace {

CString Text(const char* utf8)
{
    return CString(FromUtf8(utf8).c_str());
}

// Built when it is asked for, so that its texts are in the code page of then.
const bool g_registered = RegisterDialogTemplate(KDeskDesignDlg::IDD, [] { return DeskDesignTemplate(); });

} // namespace

DialogTemplate DeskDesignTemplate()
{
    using D = KDeskDesignDlg;
    DialogTemplate t(Text("- Design -"), 0, 0, 250, 178);
    t.CheckBox(Text("Standardowe środowisko Windows"), D::IDC_DESIGN_STANDARD, 7, 7, 200, 10)
        .Control("", IDC_STATIC, "Static", WS_VISIBLE | SS_ETCHEDHORZ, 7, 20, 236, 2)
        .CheckBox(Text("Menu"), D::IDC_DESIGN_MENU, 14, 27, 70, 10)
        .ComboBox(D::IDC_DESIGN_COLOR, 90, 25, 110, 80, CBS_DROPDOWNLIST | WS_VSCROLL)
        .Control("", D::IDC_DESIGN_MENU_SWATCH, "Static", WS_VISIBLE | SS_BLACKFRAME, 206, 25, 37, 13)
        .CheckBox(Text("Listwy funkcyjne"), D::IDC_DESIGN_TOOLBAR, 14, 43, 90, 10)
        .Control("", IDC_STATIC, "Static", WS_VISIBLE | SS_ETCHEDHORZ, 7, 58, 236, 2)
        .CheckBox(Text("Przyciski"), D::IDC_DESIGN_BUTTON, 14, 67, 70, 10)
        .ComboBox(D::IDC_DESIGN_STYLE, 90, 65, 110, 90, CBS_DROPDOWNLIST | WS_VSCROLL)
        .Control("", D::IDC_DESIGN_STYLE_SWATCH, "Static", WS_VISIBLE | SS_BLACKFRAME, 206, 65, 37, 13)
        .LText(Text("&Cieniowanie:"), IDC_STATIC, 24, 85, 62, 8)
        .ComboBox(D::IDC_DESIGN_SHADE, 90, 83, 110, 80, CBS_DROPDOWNLIST | WS_VSCROLL)
        .CheckBox(Text("zaokrąglone"), D::IDC_DESIGN_ROUND, 90, 100, 70, 10)
        .CheckBox(Text("3D"), D::IDC_DESIGN_3D, 166, 100, 40, 10)
        .Control(Text("Test - Aktywny"), D::IDC_DESIGN_ACTIVE_PLACE, "Static", SS_LEFT, 24, 116, 96, 20)
        .Control(Text("Test - Nieaktywny"), D::IDC_DESIGN_INACTIVE_PLACE, "Static", SS_LEFT, 130, 116, 96, 20)
        .LText(Text("Wszelkie zmiany design będą aktywne dopiero po ponownym uruchomieniu programu"), IDC_STATIC,
               7, 141, 236, 16)
        .DefPushButton("OK", IDOK, 136, 158, 50, 14)
        .PushButton(Text("Anuluj"), IDCANCEL, 193, 158, 50, 14);
    return t;
}

} // namespace vx

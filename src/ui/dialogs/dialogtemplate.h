// Dialog templates as data, and the registry that finds them by resource id.
//
// A template holds what a dialog resource held: the title, styles, the font,
// the size in dialog units, and the controls, each with an id, a window
// class, a text, styles and a rectangle in dialog units. CDialog makes its
// window and its controls from one. Folders register their templates when
// the library loads, under the ids the description gives them:
//
//   vx::DialogTemplate t("- Design -", 0, 0, 260, 180);
//   t.CheckBox("Menu", 3243, 10, 10, 80, 10)
//    .ComboBox(3245, 100, 10, 90, 80, CBS_DROPDOWNLIST)
//    .DefPushButton("OK", IDOK, 150, 160, 50, 14);
//   vx::RegisterDialogTemplate(477, t);
//
// A template with a control of an unknown class or an id used twice is
// refused, at registration and when a dialog is made from it; the reason is
// kept (vx::LastDialogError) and written to standard error.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <functional>
#include <vector>

// Dialog styles.
constexpr DWORD DS_ABSALIGN = 0x0001;
constexpr DWORD DS_SYSMODAL = 0x0002;
constexpr DWORD DS_3DLOOK = 0x0004;
constexpr DWORD DS_FIXEDSYS = 0x0008;
constexpr DWORD DS_NOFAILCREATE = 0x0010;
constexpr DWORD DS_SETFONT = 0x0040;
constexpr DWORD DS_MODALFRAME = 0x0080;
constexpr DWORD DS_SETFOREGROUND = 0x0200;
constexpr DWORD DS_CONTROL = 0x0400;
constexpr DWORD DS_CENTER = 0x0800;
constexpr DWORD DS_CENTERMOUSE = 0x1000;
constexpr DWORD DS_CONTEXTHELP = 0x2000;

namespace vx {

// One control of a template; the rectangle is in dialog units.
struct DialogItem {
    int id = -1;
    CString className;
    CString text;
    DWORD style = 0;
    DWORD exStyle = 0;
    int x = 0;
    int y = 0;
    int cx = 0;
    int cy = 0;
};

class VXBASE_UI_EXPORT DialogTemplate {
public:
    // The style a dialog resource had by default: a modal frame with a caption.
    static constexpr DWORD kDefaultStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT;

    DialogTemplate() = default;
    DialogTemplate(const char* title, int x, int y, int cx, int cy, DWORD style = kDefaultStyle, DWORD exStyle = 0);

    CString title;
    DWORD style = kDefaultStyle;
    DWORD exStyle = 0;
    CString fontFace = "MS Sans Serif";
    int pointSize = 8;
    int x = 0;
    int y = 0;
    int cx = 0;
    int cy = 0;
    std::vector<DialogItem> items;

    // Adds a control of any class. The statements of a resource script, with
    // their default styles (WS_CHILD | WS_VISIBLE and the class's own) added to
    // `style`; WS_TABSTOP is added where the script added it.
    DialogTemplate& Control(const char* text, int id, const char* className, DWORD style, int x, int y, int cx,
                            int cy, DWORD exStyle = 0);
    DialogTemplate& LText(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& RText(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& CText(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& PushButton(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& DefPushButton(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& CheckBox(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& RadioButton(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& GroupBox(const char* text, int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& EditText(int id, int x, int y, int cx, int cy, DWORD style = 0);
    // `cy` is the height of the dropped list, as in a resource script.
    DialogTemplate& ComboBox(int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& ListBox(int id, int x, int y, int cx, int cy, DWORD style = 0);
    DialogTemplate& ScrollBar(int id, int x, int y, int cx, int cy, DWORD style = 0);

    // Appends the controls of `child` below this template's controls (moved
    // down by this template's height), and grows the template to hold them:
    // the way a child template joins the system part of a dialog.
    void AppendBelow(const DialogTemplate& child);
    const DialogItem* Find(int id) const;
    // Empty when the template can make a dialog, else why not.
    CString Check() const;
};

// Registers (or replaces) the template of a resource id. Refuses, with
// false, id 0 and a template that Check rejects.
VXBASE_UI_EXPORT bool RegisterDialogTemplate(UINT id, const DialogTemplate& dialogTemplate);
// Registers a template that is built when it is asked for, so that its texts
// (kept in UTF-8 by the library) come out in the code page of that moment. A
// built template that Check rejects is refused then.
VXBASE_UI_EXPORT bool RegisterDialogTemplate(UINT id, std::function<DialogTemplate()> build);
VXBASE_UI_EXPORT void UnregisterDialogTemplate(UINT id);
// The registered template, or null.
VXBASE_UI_EXPORT const DialogTemplate* FindDialogTemplate(UINT id);
// Why the last template was refused (at registration or at creation).
VXBASE_UI_EXPORT CString LastDialogError();
// Records a refusal: it becomes LastDialogError and goes to standard error.
VXBASE_UI_EXPORT void ReportDialogError(const CString& reason);

} // namespace vx

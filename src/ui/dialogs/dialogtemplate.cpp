#include "ui/dialogs/dialogtemplate.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/cedit.h"
#include "ui/controls/clistbox.h"
#include "ui/controls/controlclass.h"
#include "ui/controls/cscrollbar.h"
#include "ui/controls/cstatic.h"

#include "platform/windows/ccombobox.h"

#include <cstdio>
#include <map>
#include <set>

namespace vx {
namespace {

struct Entry {
    DialogTemplate made;
    std::function<DialogTemplate()> build;
};

std::map<UINT, Entry>& Registry()
{
    static auto* registry = new std::map<UINT, Entry>;
    return *registry;
}

bool Refused(UINT id, const CString& reason)
{
    if (reason.IsEmpty())
        return false;
    CString text;
    text.Format("dialog template %u refused: %s", id, reason.GetString());
    ReportDialogError(text);
    return true;
}

CString& LastError()
{
    static auto* error = new CString;
    return *error;
}

constexpr DWORD kChild = WS_CHILD | WS_VISIBLE;

} // namespace

DialogTemplate::DialogTemplate(const char* title_, int x_, int y_, int cx_, int cy_, DWORD style_, DWORD exStyle_)
    : title(title_ ? title_ : ""), style(style_), exStyle(exStyle_), x(x_), y(y_), cx(cx_), cy(cy_)
{
}

DialogTemplate& DialogTemplate::Control(const char* text, int id, const char* className, DWORD style_, int x_,
                                        int y_, int cx_, int cy_, DWORD exStyle_)
{
    DialogItem item;
    item.id = id;
    item.className = className ? className : "";
    item.text = text ? text : "";
    item.style = style_ | WS_CHILD;
    item.exStyle = exStyle_;
    item.x = x_;
    item.y = y_;
    item.cx = cx_;
    item.cy = cy_;
    items.push_back(item);
    return *this;
}

DialogTemplate& DialogTemplate::LText(const char* text, int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control(text, id, "Static", kChild | WS_GROUP | SS_LEFT | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::RText(const char* text, int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control(text, id, "Static", kChild | WS_GROUP | SS_RIGHT | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::CText(const char* text, int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control(text, id, "Static", kChild | WS_GROUP | SS_CENTER | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::PushButton(const char* text, int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control(text, id, "Button", kChild | WS_TABSTOP | BS_PUSHBUTTON | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::DefPushButton(const char* text, int id, int x_, int y_, int cx_, int cy_,
                                              DWORD style_)
{
    return Control(text, id, "Button", kChild | WS_TABSTOP | BS_DEFPUSHBUTTON | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::CheckBox(const char* text, int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control(text, id, "Button", kChild | WS_TABSTOP | BS_AUTOCHECKBOX | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::RadioButton(const char* text, int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control(text, id, "Button", kChild | BS_AUTORADIOBUTTON | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::GroupBox(const char* text, int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control(text, id, "Button", kChild | BS_GROUPBOX | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::EditText(int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control("", id, "Edit", kChild | WS_TABSTOP | ES_LEFT | style_, x_, y_, cx_, cy_, WS_EX_CLIENTEDGE);
}

DialogTemplate& DialogTemplate::ComboBox(int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    if (!(style_ & 3))
        style_ |= CBS_DROPDOWNLIST;
    return Control("", id, "ComboBox", kChild | WS_TABSTOP | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::ListBox(int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control("", id, "ListBox", kChild | WS_TABSTOP | WS_BORDER | LBS_NOTIFY | style_, x_, y_, cx_, cy_);
}

DialogTemplate& DialogTemplate::ScrollBar(int id, int x_, int y_, int cx_, int cy_, DWORD style_)
{
    return Control("", id, "ScrollBar", kChild | style_, x_, y_, cx_, cy_);
}

void DialogTemplate::AppendBelow(const DialogTemplate& child)
{
    for (DialogItem item : child.items) {
        item.y += cy;
        items.push_back(item);
    }
    cx = std::max(cx, child.cx);
    cy += child.cy;
}

const DialogItem* DialogTemplate::Find(int id) const
{
    for (const DialogItem& item : items) {
        if (item.id == id)
            return &item;
    }
    return nullptr;
}

CString DialogTemplate::Check() const
{
    CString reason;
    if (cx < 0 || cy < 0) {
        reason.Format("its size %d x %d is negative", cx, cy);
        return reason;
    }
    std::set<int> ids;
    for (const DialogItem& item : items) {
        if (!IsControlClass(item.className)) {
            reason.Format("control %d has the unknown class \"%s\"", item.id, item.className.GetString());
            return reason;
        }
        if (item.cx < 0 || item.cy < 0) {
            reason.Format("control %d has a negative size", item.id);
            return reason;
        }
        // Statics that nobody addresses may share their id, as in resource scripts.
        const bool anonymous = item.id == -1 || item.id == 0xFFFF || item.id == 0;
        if (!anonymous && !ids.insert(item.id).second) {
            reason.Format("control id %d is used twice", item.id);
            return reason;
        }
    }
    return reason;
}

bool RegisterDialogTemplate(UINT id, const DialogTemplate& dialogTemplate)
{
    if (Refused(id, id == 0 ? CString("0 is not a resource id") : dialogTemplate.Check()))
        return false;
    Registry()[id] = Entry{dialogTemplate, {}};
    return true;
}

bool RegisterDialogTemplate(UINT id, std::function<DialogTemplate()> build)
{
    if (Refused(id, id == 0 ? CString("0 is not a resource id") : CString(build ? "" : "no builder")))
        return false;
    Registry()[id] = Entry{DialogTemplate(), std::move(build)};
    return true;
}

void UnregisterDialogTemplate(UINT id)
{
    Registry().erase(id);
}

const DialogTemplate* FindDialogTemplate(UINT id)
{
    const auto it = Registry().find(id);
    if (it == Registry().end())
        return nullptr;
    Entry& entry = it->second;
    if (entry.build) {
        entry.made = entry.build();
        if (Refused(id, entry.made.Check()))
            return nullptr;
    }
    return &entry.made;
}

CString LastDialogError()
{
    return LastError();
}

void ReportDialogError(const CString& reason)
{
    LastError() = reason;
    std::fprintf(stderr, "vxbase: %s\n", reason.GetString());
}

} // namespace vx

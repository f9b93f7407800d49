#include "ui/controls/controlclass.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/cedit.h"
#include "ui/controls/clistbox.h"
#include "ui/controls/controlsupport_p.h"
#include "ui/controls/cscrollbar.h"
#include "ui/controls/cstatic.h"

#include "platform/framework/mbstring.h"
#include "platform/windows/ccombobox.h"

#include <map>
#include <string>

namespace vx {
namespace {

struct NoCase {
    bool operator()(const std::string& a, const std::string& b) const { return _stricmp(a.c_str(), b.c_str()) < 0; }
};

template <class T>
ControlFactory Make()
{
    return [] { return std::unique_ptr<CWnd>(new T); };
}

// The standard classes are known from the first question on, whatever order
// the library's static objects (templates among them) are made in.
std::map<std::string, ControlFactory, NoCase>& Classes()
{
    static auto* classes = [] {
        controls::InstallComboBoxView();
        auto* map = new std::map<std::string, ControlFactory, NoCase>;
        (*map)["Button"] = Make<CButton>();
        (*map)["Static"] = Make<CStatic>();
        (*map)["Edit"] = Make<CEdit>();
        (*map)["ListBox"] = Make<CListBox>();
        (*map)["ComboBox"] = Make<CComboBox>();
        (*map)["ScrollBar"] = Make<CScrollBar>();
        return map;
    }();
    return *classes;
}

} // namespace

bool RegisterControlClass(const char* className, ControlFactory factory)
{
    if (!className || !factory)
        return false;
    Classes()[className] = std::move(factory);
    return true;
}

bool IsControlClass(const char* className)
{
    return className && Classes().count(className) > 0;
}

std::unique_ptr<CWnd> MakeControl(const char* className)
{
    if (!className)
        return nullptr;
    const auto it = Classes().find(className);
    return it == Classes().end() ? nullptr : it->second();
}

} // namespace vx

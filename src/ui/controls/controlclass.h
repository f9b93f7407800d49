// Control classes by name, as dialog templates name them.
//
// A dialog template gives each control a class name ("Button", "Edit",
// "Static", "ComboBox", "ListBox", "ScrollBar", ...). The dialog asks this
// registry for a window object of that class. The standard controls register
// themselves when the library loads; other folders add theirs the same way:
//
//   const bool registered = vx::RegisterControlClass("KXListCtrl", [] {
//       return std::unique_ptr<CWnd>(new KXListCtrl);
//   });
//
// Class names compare without regard to ASCII case, as window classes did.
#pragma once

#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <functional>
#include <memory>

namespace vx {

using ControlFactory = std::function<std::unique_ptr<CWnd>()>;

// Adds (or replaces) the class `className`. Returns true.
VXBASE_UI_EXPORT bool RegisterControlClass(const char* className, ControlFactory factory);
VXBASE_UI_EXPORT bool IsControlClass(const char* className);
// A new, not yet created window object of the class; null for an unknown class.
VXBASE_UI_EXPORT std::unique_ptr<CWnd> MakeControl(const char* className);

} // namespace vx

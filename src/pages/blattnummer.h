// Page numbers in file names, for either program of the suite. AT keeps the
// page in the extension (plan.0012a, see KVxFile); IT keeps it in the title
// behind "_" and has an extension of its own (plan_12.ext, no sub-pages).
//
//   CString name = "plan_7.vxi", title;
//   GetBlattnummer(MainframeIT, name, &title);      // (7, 0), title "plan"
//   CString at = "C:\\P\\plan.0012a";
//   GetBlattnummer(MainframeAT, at, &title);        // (12, a), title "C:\\P\\plan"
//   SetBlattnummer(MainframeAT, name, VXPAGENUM("13"), &title);   // "C:\\P\\plan.0013"
#pragma once

#include "base/vxglobals.h"
#include "pages/vxpagenum.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

// The page of `name`; (0xFFFF, 0) if it names none. `title`, if given,
// receives the name without its page. For IT: the number between the last
// "_" and the last "." (a single character counts as its code less 0x30,
// digit or not); a name with no "_" before the "." is page 0. For other
// types: the new-style page extension (old style does not count).
VXBASE_EXPORT VXPAGENUM GetBlattnummer(MainframeType type, CString& name, CString* title);
// Always (0xFFFF, 0) for MainframeIT; otherwise as above.
VXBASE_EXPORT VXPAGENUM GetBlattnummer(MainframeType type, const char* name);
// IT: the text after the last "." ("" if none). Others: the page extension
// without its point if `name` is a new-style page file, else "".
VXBASE_EXPORT CString GetBlattExtension(MainframeType type, CString& name);
// Puts `page` into `name`. Without a title `name` becomes the page text
// ("%d" for IT, four digits and letters otherwise). With a title: for IT
// title + "_" + page + "(null)" (the original's format passed the sub-page
// word where the extension was meant, and IT pages have none, so the
// runtime's text for a null string stands there; a name without a "." after
// its first character raises VexalAssert, VxBase line 1148); otherwise the
// page file path of `title`.
VXBASE_EXPORT void SetBlattnummer(MainframeType type, CString& name, VXPAGENUM page, CString* title);
// (highest page of the project, 0), asked of the host (WM_VXBASE 8, 2).
// The library expects a host here; without one the answer is (0, 0).
VXBASE_EXPORT VXPAGENUM PageLimit();

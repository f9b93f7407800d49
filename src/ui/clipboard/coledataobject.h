// COleDataObject: the framework's reader of transferred data, from the
// clipboard or from a drop.
//
// AttachClipboard takes what the clipboard holds at that moment; a drop
// target hands its OnDrop an object attached to the dropped data. Data comes
// out as a new global memory block that the caller frees.
//
//   COleDataObject data;
//   if (data.AttachClipboard() && data.IsDataAvailable(CF_TEXT)) {
//       HGLOBAL h = data.GetGlobalData(CF_TEXT);
//       const char* text = static_cast<const char*>(GlobalLock(h));
//       ...
//       GlobalUnlock(h);
//       GlobalFree(h);
//   }
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/globalmemory.h"
#include "ui/clipboard/oletypes.h"
#include "vxbase_ui_export.h"

#include <memory>

class QMimeData;

class VXBASE_UI_EXPORT COleDataObject : public CObject {
public:
    COleDataObject();
    ~COleDataObject() override;
    COleDataObject(const COleDataObject&) = delete;
    COleDataObject& operator=(const COleDataObject&) = delete;

    // Takes a copy of what the clipboard holds; FALSE when it is empty.
    BOOL AttachClipboard();
    void Release();
    BOOL IsDataAvailable(CLIPFORMAT format, LPFORMATETC info = nullptr);
    // A new block with the data, or null; the caller frees it.
    HGLOBAL GetGlobalData(CLIPFORMAT format, LPFORMATETC info = nullptr);
    // The formats the data offers, one by one.
    void BeginEnumFormats();
    BOOL GetNextFormat(LPFORMATETC info);

    // Attaches to data being dropped (not owned; it must outlive the use).
    void AttachMime(const QMimeData* data);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

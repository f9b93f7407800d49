// COleDataSource: the framework's offer of data, for the clipboard or for a
// drag.
//
// The source collects global memory blocks by format (it frees them) and
// puts copies of them on the clipboard (SetClipboard) or drags them
// (DoDragDrop, through Qt's drag and drop). Unlike the original, where the
// clipboard took over a source made with new, the object stays its maker's:
// a source on the stack is fine.
//
//   COleDataSource source;
//   source.CacheGlobalData(CF_TEXT, block);
//   source.SetClipboard();
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/globalmemory.h"
#include "platform/framework/rect.h"
#include "ui/clipboard/oletypes.h"
#include "vxbase_ui_export.h"

#include <memory>

class QMimeData;

class VXBASE_UI_EXPORT COleDataSource : public CObject {
public:
    COleDataSource();
    ~COleDataSource() override;
    COleDataSource(const COleDataSource&) = delete;
    COleDataSource& operator=(const COleDataSource&) = delete;

    // Offers `data` in `format`; the source owns the block from now on (a
    // block for a format already offered replaces it).
    void CacheGlobalData(CLIPFORMAT format, HGLOBAL data, LPFORMATETC info = nullptr);
    // Frees every block offered.
    void Empty();
    // Puts the offered data on the clipboard, in place of what was there.
    void SetClipboard();
    // Drags the offered data with the mouse (whose button must be down) and
    // answers what the drop did: DROPEFFECT_NONE when it was cancelled or
    // refused.
    DROPEFFECT DoDragDrop(DWORD effects = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK,
                          LPCRECT startRect = nullptr, void* dropSource = nullptr);
    // The original flushed its rendering into the clipboard here; the
    // clipboard holds copies already.
    static void FlushClipboard() {}

    // The offered data as Qt carries it; the caller owns the result.
    QMimeData* MakeMimeData() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

// COleDropTarget: the framework's receiver of dragged data for one window.
//
// Register makes the window accept drops; while something is dragged over
// it, OnDragEnter and OnDragOver answer what a drop would do (the default:
// nothing), OnDragLeave says it left, and OnDrop (or OnDropEx) takes the data.
// Points are in the window's client coordinates; the key state has the MK_
// flags of the buttons and of Shift and Ctrl.
//
//   class CListDrop : public COleDropTarget {
//       DROPEFFECT OnDragOver(CWnd*, COleDataObject* data, DWORD, CPoint) override
//       {
//           return data->IsDataAvailable(CF_TEXT) ? DROPEFFECT_COPY : DROPEFFECT_NONE;
//       }
//       BOOL OnDrop(CWnd*, COleDataObject* data, DROPEFFECT, CPoint) override { ... }
//   } m_drop;
//   m_drop.Register(&m_list);
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/rect.h"
#include "ui/clipboard/coledataobject.h"
#include "ui/clipboard/oletypes.h"
#include "vxbase_ui_export.h"

#include <memory>

class CWnd;

class VXBASE_UI_EXPORT COleDropTarget : public CObject {
public:
    COleDropTarget();
    ~COleDropTarget() override;
    COleDropTarget(const COleDropTarget&) = delete;
    COleDropTarget& operator=(const COleDropTarget&) = delete;

    // FALSE for a window without a display, or when already registered.
    BOOL Register(CWnd* window);
    void Revoke();

    virtual DROPEFFECT OnDragEnter(CWnd* window, COleDataObject* data, DWORD keyState, CPoint point);
    virtual DROPEFFECT OnDragOver(CWnd* window, COleDataObject* data, DWORD keyState, CPoint point);
    virtual void OnDragLeave(CWnd* window);
    virtual BOOL OnDrop(CWnd* window, COleDataObject* data, DROPEFFECT effect, CPoint point);
    // The answer -1 (the default) leaves the drop to OnDrop with the effect
    // last answered.
    virtual DROPEFFECT OnDropEx(CWnd* window, COleDataObject* data, DROPEFFECT dropDefault, DROPEFFECT dropList,
                                CPoint point);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

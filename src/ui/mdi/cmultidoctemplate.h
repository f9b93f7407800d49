// CMultiDocTemplate: a kind of document of an MDI program, as far as the
// library uses it: its resource id, the menu shared by its child frames and
// its accelerators, and how to make a child frame with its view. Templates
// register themselves, so that a change of the menu colours reaches the
// shared menu of each. Documents themselves are the hosts' business.
//
//   CMultiDocTemplate drawings(IDR_DRAWING, [] { return new CMDIChildWnd; },
//                              [] { return new DrawingView; });
//   CFrameWnd* child = drawings.CreateNewFrame(nullptr, nullptr);
//   drawings.InitialUpdateFrame(child, nullptr);
#pragma once

#include "platform/windows/cframewnd.h"
#include "vxbase_ui_export.h"

#include <functional>
#include <vector>

class CDocument; // the hosts'

class VXBASE_UI_EXPORT CMultiDocTemplate {
public:
    using FrameFactory = std::function<CFrameWnd*()>;
    using ViewFactory = std::function<CWnd*()>;

    // Loads the shared menu and the accelerators of resource `id`.
    CMultiDocTemplate(UINT id, FrameFactory frame, ViewFactory view = nullptr);
    virtual ~CMultiDocTemplate();
    CMultiDocTemplate(const CMultiDocTemplate&) = delete;
    CMultiDocTemplate& operator=(const CMultiDocTemplate&) = delete;

    UINT m_nIDResource = 0;
    HMENU m_hMenuShared = nullptr;
    HACCEL m_hAccelTable = nullptr;

    // A new child frame of the main window (an MDI frame) from the
    // resource, with a view; null when it cannot be made. `other` is
    // ignored (the framework copies its view class from it).
    virtual CFrameWnd* CreateNewFrame(CDocument* document, CFrameWnd* other);
    // Tells the new frame's descendants that it is complete
    // (WM_INITIALUPDATE) and shows and activates it.
    virtual void InitialUpdateFrame(CFrameWnd* frame, CDocument* document, BOOL makeVisible = TRUE);

    // Every template that lives, in the order made.
    static const std::vector<CMultiDocTemplate*>& Templates();

private:
    FrameFactory m_frame;
    ViewFactory m_view;
};

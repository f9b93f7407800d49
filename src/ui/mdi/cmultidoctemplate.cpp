#include "ui/mdi/cmultidoctemplate.h"

#include "ui/mdi/cmdichildwnd.h"
#include "ui/menus/accelerators.h"
#include "ui/menus/winmenu.h"

#include <algorithm>

namespace {

std::vector<CMultiDocTemplate*>& Registry()
{
    static std::vector<CMultiDocTemplate*> templates;
    return templates;
}

LPCSTR Name(UINT id)
{
    return reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(id));
}

} // namespace

CMultiDocTemplate::CMultiDocTemplate(UINT id, FrameFactory frame, ViewFactory view)
    : m_nIDResource(id), m_frame(std::move(frame)), m_view(std::move(view))
{
    m_hMenuShared = LoadMenuA(nullptr, Name(id));
    m_hAccelTable = LoadAcceleratorsA(nullptr, Name(id));
    Registry().push_back(this);
}

CMultiDocTemplate::~CMultiDocTemplate()
{
    auto& all = Registry();
    all.erase(std::remove(all.begin(), all.end(), this), all.end());
    if (m_hMenuShared && IsMenu(m_hMenuShared))
        DestroyMenu(m_hMenuShared);
}

const std::vector<CMultiDocTemplate*>& CMultiDocTemplate::Templates()
{
    return Registry();
}

CFrameWnd* CMultiDocTemplate::CreateNewFrame(CDocument*, CFrameWnd*)
{
    if (!m_frame)
        return nullptr;
    CFrameWnd* frame = m_frame();
    if (!frame)
        return nullptr;
    CCreateContext context;
    context.m_pNewDocTemplate = this;
    if (m_view)
        context.m_newView = m_view;
    // The child is made hidden; InitialUpdateFrame shows it.
    if (!frame->LoadFrame(m_nIDResource, WS_CHILD | WS_OVERLAPPEDWINDOW | FWS_ADDTOTITLE, AfxGetMainWnd(),
                          &context)) {
        // A frame that failed deleted itself if it was made with new (the
        // framework's rule); one that did not is the caller's.
        return nullptr;
    }
    return frame;
}

void CMultiDocTemplate::InitialUpdateFrame(CFrameWnd* frame, CDocument*, BOOL makeVisible)
{
    if (!frame || !frame->m_hWnd)
        return;
    vx::SendMessageToDescendants(*frame, WM_INITIALUPDATE, 0, 0, TRUE);
    if (makeVisible) {
        frame->ShowWindow(SW_SHOW);
        if (auto* child = dynamic_cast<CMDIChildWnd*>(frame))
            child->MDIActivate();
    }
}

#include "frames/cnewmultidoctemplate.h"

#include "ui/menus/winmenu.h"

CArray<CBitmap*, CBitmap*> g_arBm;
CDWordArray g_arIDs;

CNewMultiDocTemplate::CNewMultiDocTemplate(UINT id, FrameFactory frame, ViewFactory view)
    : CMultiDocTemplate(id, std::move(frame), std::move(view))
{
    if (m_Enable && id && m_hMenuShared) {
        CNewMenu::LoadMenu(m_hMenuShared);
        CNewMenu::LoadToolBar(id, nullptr);
    }
}

CNewMultiDocTemplate::~CNewMultiDocTemplate()
{
    // The shared menu is this CNewMenu's: it goes with it, once.
    if (m_hMenu == m_hMenuShared)
        m_hMenuShared = nullptr;
}

BOOL CNewMultiDocTemplate::LoadToolBar(const CArray<CBitmap*, CBitmap*>& bitmaps, const CDWordArray& ids,
                                       HINSTANCE)
{
    if (!m_hMenu || bitmaps.GetSize() != ids.GetSize())
        return FALSE;
    BOOL any = FALSE;
    for (INT_PTR i = 0; i < bitmaps.GetSize(); ++i) {
        if (bitmaps[i] && ModifyODMenu(nullptr, static_cast<UINT>(ids[i]), bitmaps[i]))
            any = TRUE;
    }
    return any;
}

CFrameWnd* CNewMultiDocTemplate::CreateNewFrame(CDocument* document, CFrameWnd* other)
{
    if (!m_bIconsLoaded) {
        LoadToolBar(g_arBm, g_arIDs, nullptr);
        m_bIconsLoaded = 1;
    }
    return CMultiDocTemplate::CreateNewFrame(document, other);
}

// CNewMultiDocTemplate: a document template whose shared menu is a CNewMenu
// (owner-drawn in the desk design, with the images of the template's tool
// bar), and which gives that menu the host's shared tool bar images
// (g_arBm, g_arIDs) once, when its first child frame is made.
//
//   g_arBm.Add(&lineBitmap);  g_arIDs.Add(ID_LINE);
//   CNewMultiDocTemplate drawings(IDR_DRAWING, [] { return new CNewMDIChildWnd; });
#pragma once

#include "menus/cnewmenu.h"
#include "platform/framework/carray.h"
#include "ui/mdi/cmultidoctemplate.h"
#include "vxbase_ui_export.h"

class CBitmap;

// The host's images for menu commands: bitmap i shows command g_arIDs[i].
extern VXBASE_UI_EXPORT CArray<CBitmap*, CBitmap*> g_arBm;
extern VXBASE_UI_EXPORT CDWordArray g_arIDs;

class VXBASE_UI_EXPORT CNewMultiDocTemplate : public CMultiDocTemplate, public CNewMenu {
public:
    // With own menus on and a shared menu: the menu becomes this CNewMenu,
    // with the images of tool bar `id`.
    CNewMultiDocTemplate(UINT id, FrameFactory frame, ViewFactory view = nullptr);
    ~CNewMultiDocTemplate() override;

    // The first time, the shared images go into the menu; then the base.
    CFrameWnd* CreateNewFrame(CDocument* document, CFrameWnd* other) override;

    using CNewMenu::LoadToolBar;
    // Gives command ids[i] the image bitmaps[i] wherever the menu has it.
    BOOL LoadToolBar(const CArray<CBitmap*, CBitmap*>& bitmaps, const CDWordArray& ids, HINSTANCE instance);

protected:
    int m_bIconsLoaded = 0;
};

// KSkinButton: a shaded push button of the skinned look. Its shade and 3D
// look come from the design (s_ShadeMode, s_3D, set at start from
// "KonfigDesign"); its face bitmaps come from its id, mapped through the
// host (GetDlgSkinID) onto the skin ids 1, 2 and 500 to 507.
//
//   KSkinButton ok;
//   ok.Create("OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP, CRect(10, 10, 90, 34), this, 1);
#pragma once

#include "look/cshadebuttonst.h"
#include "ui/images/cbitmap.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KSkinButton : public CShadeButtonST {
public:
    KSkinButton();
    ~KSkinButton() override;

    // The design's shade type (a CShadeButtonST shade) and 3D look (1) or
    // flat buttons (0).
    static int s_ShadeMode;
    static int s_3D;

    // Shades the face with the skin's settings and sets the bitmaps of the
    // button's skin id.
    void SetShade(int shade);

protected:
    void PreSubclassWindow() override;
    void OnSize(UINT type, int cx, int cy) override;

    CBitmap m_bmpSkin;
    int m_nSkin = 0;
};

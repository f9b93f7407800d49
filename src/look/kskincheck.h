// KSkinCheck: a check box of the skinned look. Its four bitmaps are drawn in
// palette indices and recoloured to the current shade (ShadeBitmap) through
// a hidden reference control of the class, which owns the shade table.
#pragma once

#include "look/cshadebuttonst.h"
#include "ui/images/cbitmap.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KSkinCheck : public CShadeButtonST {
public:
    KSkinCheck();
    // Any KSkinCheck going takes the reference with it; the next one
    // makes it afresh.
    ~KSkinCheck() override;

    // Recolours a small bitmap to the current shade: each pixel that is not
    // `transparent` is taken as a palette index (its red byte).
    void ShadeBitmap(HBITMAP bitmap, COLORREF transparent);

    // The hidden reference control (id 20), made at the first need.
    static KSkinCheck* m_pShadeRefSkin;

protected:
    void PreSubclassWindow() override;

    CBitmap m_bmpSkin;
};

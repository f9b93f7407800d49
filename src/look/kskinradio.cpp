#include "look/kskinradio.h"

#include "look/skinbitmap_p.h"

KSkinRadio* KSkinRadio::m_pShadeRefSkin = nullptr;

namespace {

constexpr UINT kReferenceId = 21;
// Pressed, disabled, disabled and pressed, normal.
constexpr int kBitmaps[4] = {0x3EE, 0x3F6, 0x3F8, 0x3EF};

} // namespace

KSkinRadio::KSkinRadio()
{
    SetColor(BTNST_COLOR_FG_OUT, 0x000000, FALSE);
    for (BYTE slot : {BTNST_COLOR_FG_IN, BTNST_COLOR_FG_FOCUS, BTNST_COLOR_BK_FOCUS})
        SetColor(slot, 0xFF0000, FALSE);
    DrawBorder(FALSE, FALSE);
}

KSkinRadio::~KSkinRadio()
{
    vx::look::DropReference(m_pShadeRefSkin, this);
}

void KSkinRadio::ShadeBitmap(HBITMAP bitmap, COLORREF transparent)
{
    vx::look::ShadeWith(bitmap, transparent, m_pShadeRefSkin, kReferenceId);
}

void KSkinRadio::PreSubclassWindow()
{
    CShadeButtonST::PreSubclassWindow();
    vx::look::SetSkinBitmaps(*this, kBitmaps, m_pShadeRefSkin, kReferenceId);
}

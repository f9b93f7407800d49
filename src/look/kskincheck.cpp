#include "look/kskincheck.h"

#include "look/skinbitmap_p.h"

KSkinCheck* KSkinCheck::m_pShadeRefSkin = nullptr;

namespace {

constexpr UINT kReferenceId = 20;
// Pressed, disabled, disabled and pressed, normal.
constexpr int kBitmaps[4] = {0x3EC, 0x3F5, 0x3F7, 0x3ED};

} // namespace

KSkinCheck::KSkinCheck()
{
    SetColor(BTNST_COLOR_FG_OUT, 0x000000, FALSE);
    for (BYTE slot : {BTNST_COLOR_FG_IN, BTNST_COLOR_FG_FOCUS, BTNST_COLOR_BK_FOCUS})
        SetColor(slot, 0xFF0000, FALSE);
    DrawBorder(FALSE, FALSE);
}

KSkinCheck::~KSkinCheck()
{
    vx::look::DropReference(m_pShadeRefSkin, this);
}

void KSkinCheck::ShadeBitmap(HBITMAP bitmap, COLORREF transparent)
{
    vx::look::ShadeWith(bitmap, transparent, m_pShadeRefSkin, kReferenceId);
}

void KSkinCheck::PreSubclassWindow()
{
    CShadeButtonST::PreSubclassWindow();
    vx::look::SetSkinBitmaps(*this, kBitmaps, m_pShadeRefSkin, kReferenceId);
}

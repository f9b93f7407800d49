#include "look/kskinbutton.h"

#include "base/hostmessages.h"

int KSkinButton::s_ShadeMode = 0;
int KSkinButton::s_3D = 0;

namespace {

constexpr COLORREF kWhite = 0xFFFFFF;

struct SkinBitmaps {
    int skin;
    int normal;
    int disabled; // 0: the normal one serves all four records
};

constexpr SkinBitmaps kSkins[] = {
    {2, 0x3EB, 0},   {500, 0x3F1, 0}, {501, 0x3F3, 0}, {502, 0x3F2, 0}, {503, 0x3F4, 0},
    {504, 0x3F9, 0}, {505, 0x3FA, 0x3FB}, {506, 0x3FC, 0}, {507, 0x3FD, 0},
};

} // namespace

KSkinButton::KSkinButton()
{
    SetColor(BTNST_COLOR_FG_OUT, 0x000000, FALSE);
    for (BYTE slot : {BTNST_COLOR_FG_IN, BTNST_COLOR_FG_FOCUS, BTNST_COLOR_BK_IN, BTNST_COLOR_BK_FOCUS})
        SetColor(slot, 0xFF0000, FALSE);
    SetColor(BTNST_COLOR_BK_OUT, 0x969696, FALSE);
    DrawBorder(TRUE, FALSE);
    SetFlat(!s_3D, FALSE);
}

KSkinButton::~KSkinButton() = default;

void KSkinButton::PreSubclassWindow()
{
    CShadeButtonST::PreSubclassWindow();
    SetShade(s_ShadeMode);
}

void KSkinButton::OnSize(UINT type, int cx, int cy)
{
    CShadeButtonST::OnSize(type, cx, cy);
    SetShade(s_ShadeMode);
}

void KSkinButton::SetShade(int shade)
{
    CShadeButtonST::SetShade(static_cast<UINT>(shade), 8, 20, 5, 0xFF3737);
    int id = static_cast<int>(GetDlgCtrlID());
    const unsigned long mapped = GetDlgSkinID(static_cast<unsigned long>(id));
    if (mapped != static_cast<unsigned long>(-1))
        id = static_cast<int>(mapped);
    m_nSkin = id;
    int normal = 0;
    int disabled = 0;
    if (id == 1) {
        normal = GetWindowTextLength() > 7 ? 0x3F0 : 0x3EA;
    } else {
        for (const SkinBitmaps& s : kSkins) {
            if (s.skin == id) {
                normal = s.normal;
                disabled = s.disabled;
            }
        }
    }
    if (!normal)
        return;
    if (!disabled)
        disabled = normal;
    // Records in the order pressed, disabled, disabled and pressed, normal.
    SetBitmaps(normal, kWhite, disabled, kWhite, disabled, kWhite, normal, kWhite);
}

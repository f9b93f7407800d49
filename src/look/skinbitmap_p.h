// Internal to the skinned check boxes and radio buttons: bitmaps drawn in
// palette indices, recoloured to the current shade through a hidden
// reference control of the class. Do not include directly.
#pragma once

#include "look/cshadebuttonst.h"

namespace vx::look {

// The skin's bitmaps have pure red (0x0000FF) where they are transparent.
constexpr COLORREF kSkinTransparent = 0x0000FF;

// Writes each pixel of `bitmap` that is not `transparent` with the entry
// of `table`'s palette at its red byte; index 0 and indices at or past the
// palette's size stay as they are.
void Recolour(HBITMAP bitmap, COLORREF transparent, const CShadeDib& table);
SIZE BitmapSize(HBITMAP bitmap);
HBITMAP LoadSkinBitmap(int id);

// ShadeBitmap of the skinned controls: on first use the reference, a hidden
// "SkinDummy" child of the main window of the bitmap's size with `id`,
// shaded 3, 8, 20, 5, 0xFF3737; then the recolouring against its table.
template <class Control>
void ShadeWith(HBITMAP bitmap, COLORREF transparent, Control*& reference, UINT id)
{
    if (!bitmap)
        return;
    if (!reference) {
        // The pointer is set first: the reference's own creation shades its
        // bitmaps through here, against the empty table it has then.
        const SIZE size = BitmapSize(bitmap);
        reference = new Control;
        Control* made = reference;
        made->CreateEx("SkinDummy", "Button", WS_CHILD, CRect(0, 0, size.cx, size.cy), AfxGetMainWnd(), id);
        if (reference == made)
            made->SetShade(3, 8, 20, 5, 0xFF3737);
    }
    Recolour(bitmap, transparent, reference->NormalFace());
}

// The four bitmaps by number, shaded, set in the button's order (pressed,
// disabled, disabled and pressed, normal).
template <class Control>
void SetSkinBitmaps(Control& button, const int (&ids)[4], Control*& reference, UINT id)
{
    HBITMAP bitmaps[4] = {};
    for (int i = 0; i < 4; ++i) {
        bitmaps[i] = LoadSkinBitmap(ids[i]);
        ShadeWith(bitmaps[i], kSkinTransparent, reference, id);
    }
    button.SetBitmaps(bitmaps[0], kSkinTransparent, bitmaps[1], kSkinTransparent, bitmaps[2], kSkinTransparent,
                      bitmaps[3], kSkinTransparent);
}

// Deletes the reference unless `self` is it, and clears the pointer.
template <class Control>
void DropReference(Control*& reference, const Control* self)
{
    Control* gone = reference;
    reference = nullptr;
    if (gone && gone != self)
        delete gone;
}

} // namespace vx::look

// CShadeButtonST: a CButtonST whose face is a generated shading, in one of
// nine shades, coloured by the design's button colour (m_InitShade).
//
// SetShade makes the bitmaps for the window's present size, so it runs again
// whenever the size changes. The noise of the shades comes from the C
// library's rand(): seed it with srand for a repeatable face.
//
//   CShadeButtonST b;
//   b.Create("OK", WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 40), this, IDOK);
//   b.SetShade(CShadeButtonST::SHS_HARDBUMP, 8, 20, 5, RGB(55, 55, 255));
#pragma once

#include "look/cbuttonst.h"
#include "look/cshadedib.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CShadeButtonST : public CButtonST {
public:
    enum {
        SHS_NOISE = 0,
        SHS_DIAGSHADE = 1,
        SHS_HSHADE = 2,
        SHS_VSHADE = 3,
        SHS_HBUMP = 4,
        SHS_VBUMP = 5,
        SHS_SOFTBUMP = 6,
        SHS_HARDBUMP = 7,
        SHS_METAL = 8
    };

    CShadeButtonST();
    ~CShadeButtonST() override;

    // Makes the face for the window's size: `shade` SHS_..., `granularity` the
    // noise amplitude, `highlight` how far (per cent) the hover face goes to
    // the highlight colour, `coloring` how far (per cent) the face goes to
    // `color`. Nothing happens for a window of zero width or height.
    void SetShade(UINT shade = SHS_NOISE, BYTE granularity = 8, BYTE highlight = 10, BYTE coloring = 0,
                  COLORREF color = 0);

    // The faces, for those who draw with them (and for tests).
    const CShadeDib& NormalFace() const { return m_dNormal; }
    const CShadeDib& HoverFace() const { return m_dOver; }
    const CShadeDib& DisabledFace() const { return m_dDisabled; }
    const CShadeDib& PressedFace() const { return m_dDown; }
    const CShadeDib& HorizontalDots() const { return m_dh; }
    const CShadeDib& VerticalDots() const { return m_dv; }

protected:
    DWORD OnDrawBackground(CDC* dc, CRect* rect) override;
    DWORD OnDrawBorder(CDC* dc, CRect* rect) override;

    // In the original's order: normal, a copy of the hover face, disabled,
    // hover, the dotted horizontal and vertical lines.
    CShadeDib m_dNormal;
    CShadeDib m_dDown;
    CShadeDib m_dDisabled;
    CShadeDib m_dOver;
    CShadeDib m_dh;
    CShadeDib m_dv;
};

// The skinned controls: check boxes and radio buttons recoloured to the
// shade in their states, the skin bitmaps of buttons by id, the host's skin
// ids, and the colour table.
#include "look/buttontest.h"

#include "look/colortab.h"
#include "look/kskinbutton.h"
#include "look/kskincheck.h"
#include "look/kskinradio.h"
#include "ui/images/cbitmap.h"

#include "base/hostmessages.h"
#include "base/vxglobals.h"
#include "platform/windows/cframewnd.h"
#include "ui/windows/qtinterop.h"

#include <QImage>

namespace {

using looktest::Parent;

constexpr COLORREF kTransparent = 0x0000FF;

// The palette the skin's bitmaps are recoloured with: the shade table of a
// hidden reference (shade 3, granularity 8, highlight 20, colouring 5).
COLORREF Expected(const CShadeButtonST& reference, COLORREF pixel)
{
    const int index = GetRValue(pixel);
    return index == 0 ? pixel : reference.NormalFace().GetPaletteIndex(static_cast<BYTE>(index));
}

// Every pixel of skin bitmap `id` that is not transparent shows on `image`
// at (x, y), recoloured by the reference; returns how many were compared.
int CompareBitmap(const QImage& image, int x, int y, int id, const CShadeButtonST& reference)
{
    HBITMAP raw = static_cast<HBITMAP>(LoadImageA(nullptr, MAKEINTRESOURCE(static_cast<UINT>(id)), IMAGE_BITMAP, 0, 0, 0));
    EXPECT_NE(raw, nullptr) << id;
    const QImage source = vx::ImageOfBitmap(raw);
    DeleteObject(raw);
    int compared = 0;
    for (int j = 0; j < source.height(); ++j) {
        for (int i = 0; i < source.width(); ++i) {
            const COLORREF pixel = vxtest::ColorAt(source, i, j);
            if (pixel == kTransparent)
                continue;
            EXPECT_TRUE(vxtest::PixelIs(image, x + i, y + j, Expected(reference, pixel))) << "bitmap " << id;
            ++compared;
        }
    }
    return compared;
}

template <class Skin>
void CheckStates(const int (&bitmaps)[4], DWORD type)
{
    Parent parent;
    AfxSetMainWnd(&parent);
    Skin button;
    ASSERT_TRUE(button.Create("Skin", WS_CHILD | WS_VISIBLE | type, CRect(10, 10, 120, 30), &parent, 300));
    ASSERT_NE(Skin::m_pShadeRefSkin, nullptr);
    const Skin& reference = *Skin::m_pShadeRefSkin;
    EXPECT_STREQ(reference.GetWindowTextString(), "SkinDummy");
    EXPECT_FALSE(reference.IsWindowVisible());
    EXPECT_EQ(reference.GetParent(), &parent);
    EXPECT_EQ(reference.NormalFace().GetNumColors(), 256);
    // The image stands at the margin, centred down: (3, (20 - 13) / 2).
    const int x = 3;
    const int y = 3;
    EXPECT_GT(CompareBitmap(vxtest::Render(button), x, y, bitmaps[3], reference), 20); // normal
    button.SetCheck(1);
    EXPECT_GT(CompareBitmap(vxtest::Render(button), x, y, bitmaps[0], reference), 20); // pressed
    button.EnableWindow(FALSE);
    EXPECT_GT(CompareBitmap(vxtest::Render(button), x, y, bitmaps[2], reference), 20); // disabled and pressed
    button.SetCheck(0);
    EXPECT_GT(CompareBitmap(vxtest::Render(button), x, y, bitmaps[1], reference), 20); // disabled
    AfxSetMainWnd(nullptr);
}

TEST(KSkinCheck, DrawsItsStatesInTheShadeOfTheReference)
{
    CheckStates<KSkinCheck>({0x3EC, 0x3F5, 0x3F7, 0x3ED}, BS_AUTOCHECKBOX);
    EXPECT_EQ(KSkinCheck::m_pShadeRefSkin, nullptr); // went with the control
}

TEST(KSkinRadio, DrawsItsStatesInTheShadeOfTheReference)
{
    CheckStates<KSkinRadio>({0x3EE, 0x3F6, 0x3F8, 0x3EF}, BS_AUTORADIOBUTTON);
    EXPECT_EQ(KSkinRadio::m_pShadeRefSkin, nullptr);
}

TEST(KSkinCheck, ShadeBitmapTakesPaletteIndicesFromTheRedByte)
{
    Parent parent;
    AfxSetMainWnd(&parent);
    KSkinCheck check;
    check.Create("c", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX, CRect(0, 0, 80, 20), &parent, 301);
    KSkinRadio radio;
    radio.Create("r", WS_CHILD | WS_VISIBLE | BS_AUTORADIOBUTTON, CRect(0, 30, 80, 50), &parent, 302);
    ASSERT_NE(KSkinCheck::m_pShadeRefSkin, nullptr);
    ASSERT_NE(KSkinRadio::m_pShadeRefSkin, nullptr);
    EXPECT_EQ(KSkinCheck::m_pShadeRefSkin->GetDlgCtrlID(), 20u);
    EXPECT_EQ(KSkinRadio::m_pShadeRefSkin->GetDlgCtrlID(), 21u);

    QImage pixels(4, 1, QImage::Format_RGB32);
    pixels.setPixel(0, 0, qRgb(255, 0, 0)); // the transparent colour
    pixels.setPixel(1, 0, qRgb(0, 9, 9));   // index 0 stays
    pixels.setPixel(2, 0, qRgb(200, 5, 5));
    pixels.setPixel(3, 0, qRgb(1, 0, 0));
    HBITMAP bitmap = vx::BitmapFromQImage(pixels);
    check.ShadeBitmap(bitmap, kTransparent);
    const QImage out = vx::ImageOfBitmap(bitmap);
    const CShadeDib& table = KSkinCheck::m_pShadeRefSkin->NormalFace();
    EXPECT_PIXEL(out, 0, 0, RGB(255, 0, 0));
    EXPECT_PIXEL(out, 1, 0, RGB(0, 9, 9));
    EXPECT_PIXEL(out, 2, 0, table.GetPaletteIndex(200));
    EXPECT_PIXEL(out, 3, 0, table.GetPaletteIndex(1));
    DeleteObject(bitmap);

    // A control that goes takes the reference with it; the next use makes a new one.
    {
        KSkinCheck other;
    }
    EXPECT_EQ(KSkinCheck::m_pShadeRefSkin, nullptr);
    HBITMAP again = vx::BitmapFromQImage(pixels);
    check.ShadeBitmap(again, kTransparent);
    EXPECT_NE(KSkinCheck::m_pShadeRefSkin, nullptr);
    DeleteObject(again);
    AfxSetMainWnd(nullptr);
}

class SkinHost : public CMDIFrameWnd {
public:
    // Maps the control 4000 onto skin 505, 4001 onto skin 1.
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_VXBASE && wParam == HostQueryDlgSkinID) {
            asked.push_back(static_cast<int>(lParam));
            return lParam == 4000 ? 506 : lParam == 4001 ? 2 : 0;
        }
        return CMDIFrameWnd::WindowProc(message, wParam, lParam);
    }
    std::vector<int> asked;
};

class SkinProbe : public KSkinButton {
public:
    int Skin() const { return m_nSkin; }
    const STRUCT_BITMAPS& Record(int i) const { return m_csBitmaps[i]; }
};

TEST(KSkinButton, TakesTheBitmapsOfItsSkinIdThroughTheHost)
{
    EXPECT_EQ(static_cast<long>(GetDlgSkinID(4000)), -1); // no main frame
    SkinHost host;
    host.CreateEx("host", "Host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 100, 100));
    CMDIFrameWnd* oldFrame = g_pDLLMainframe;
    g_pDLLMainframe = &host;
    EXPECT_EQ(GetDlgSkinID(4000), 505u);
    EXPECT_EQ(static_cast<long>(GetDlgSkinID(7)), -1);
    Parent parent;
    SkinProbe split;
    split.Create("Split", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 30), &parent, 4000);
    EXPECT_EQ(split.Skin(), 505);
    BITMAP normal{};
    BITMAP disabled{};
    GetObjectA(split.Record(1).hBitmap, sizeof normal, &normal);
    GetObjectA(split.Record(2).hBitmap, sizeof disabled, &disabled);
    ASSERT_NE(split.Record(0).hBitmap, nullptr);
    ASSERT_NE(split.Record(3).hBitmap, nullptr);
    // 505 has a normal and a disabled image of its own.
    EXPECT_NE(vx::ImageOfBitmap(split.Record(1).hBitmap), vx::ImageOfBitmap(split.Record(2).hBitmap));
    EXPECT_EQ(split.Record(0).crTransparent, 0xFFFFFFu);

    SkinProbe shortOk;
    SkinProbe longOk;
    shortOk.Create("OK", WS_CHILD | WS_VISIBLE, CRect(0, 40, 100, 70), &parent, 4001);
    longOk.Create("Zastosuj teraz", WS_CHILD | WS_VISIBLE, CRect(0, 80, 100, 110), &parent, 4001);
    EXPECT_EQ(shortOk.Skin(), 1);
    HBITMAP small = static_cast<HBITMAP>(LoadImageA(nullptr, MAKEINTRESOURCE(0x3EA), IMAGE_BITMAP, 0, 0, 0));
    HBITMAP wide = static_cast<HBITMAP>(LoadImageA(nullptr, MAKEINTRESOURCE(0x3F0), IMAGE_BITMAP, 0, 0, 0));
    // A caption longer than 7 characters takes the wide image.
    EXPECT_EQ(vx::ImageOfBitmap(shortOk.Record(1).hBitmap).size(), vx::ImageOfBitmap(small).size());
    EXPECT_EQ(vx::ImageOfBitmap(longOk.Record(1).hBitmap).size(), vx::ImageOfBitmap(wide).size());
    EXPECT_NE(vx::ImageOfBitmap(small).size(), vx::ImageOfBitmap(wide).size());
    DeleteObject(small);
    DeleteObject(wide);

    SkinProbe plain;
    plain.Create("Plain", WS_CHILD | WS_VISIBLE, CRect(0, 120, 100, 150), &parent, 4002);
    EXPECT_EQ(plain.Skin(), 4002);
    EXPECT_EQ(plain.Record(1).hBitmap, nullptr); // no skin of its id
    COLORREF c = 0;
    plain.GetColor(CButtonST::BTNST_COLOR_BK_OUT, &c);
    EXPECT_EQ(c, 0x969696u);
    plain.GetColor(CButtonST::BTNST_COLOR_FG_IN, &c);
    EXPECT_EQ(c, 0xFF0000u);
    g_pDLLMainframe = oldFrame;
}

TEST(ColorTab, HoldsTheSixteenListColours)
{
    EXPECT_EQ(colortab[0], 0x000000u);
    EXPECT_EQ(colortab[6], 0x004080u);
    EXPECT_EQ(colortab[7], 0xC0C0C0u);
    EXPECT_EQ(colortab[15], 0xFFFFFFu);
}

} // namespace

#include "look/cbuttonst.h"

#include "ui/menus/cmenu.h"
#include "ui/desktop/playsound.h"
#include "ui/desktop/shellopen.h"

#include "platform/windows/sysmetrics.h"

#include <cstring>

int CButtonST::m_InitType = 1;
DWORD CButtonST::m_InitShade = 0;

namespace {

// Copies a bitmap into a new true-colour one and lets `change` rewrite each
// pixel that is not `keep`.
template <class Change>
HBITMAP RecolorCopy(HBITMAP source, DWORD width, DWORD height, COLORREF keep, Change change)
{
    HDC screen = GetDC(nullptr);
    HDC from = CreateCompatibleDC(screen);
    HDC to = CreateCompatibleDC(screen);
    HBITMAP copy = CreateCompatibleBitmap(screen, static_cast<int>(width), static_cast<int>(height));
    if (from && to && copy) {
        HGDIOBJ oldFrom = SelectObject(from, source);
        HGDIOBJ oldTo = SelectObject(to, copy);
        BitBlt(to, 0, 0, static_cast<int>(width), static_cast<int>(height), from, 0, 0, SRCCOPY);
        for (DWORD y = 0; y < height; ++y) {
            for (DWORD x = 0; x < width; ++x) {
                const COLORREF pixel = GetPixel(to, static_cast<int>(x), static_cast<int>(y));
                if (pixel != keep)
                    SetPixelV(to, static_cast<int>(x), static_cast<int>(y), change(pixel));
            }
        }
        SelectObject(from, oldFrom);
        SelectObject(to, oldTo);
    }
    if (from)
        DeleteDC(from);
    if (to)
        DeleteDC(to);
    ReleaseDC(nullptr, screen);
    return copy;
}

COLORREF Grayed(COLORREF pixel)
{
    const BYTE gray = static_cast<BYTE>(GetRValue(pixel) * 0.299 + GetGValue(pixel) * 0.587 + GetBValue(pixel) * 0.114);
    return RGB(gray, gray, gray);
}

COLORREF Darker(COLORREF pixel)
{
    return CButtonST::DarkenColor(pixel, 0.25);
}

// The same for an icon: its colour bitmap, with black as the kept colour.
template <class Change>
HICON RecolorIcon(HICON icon, Change change)
{
    ICONINFO info{};
    if (!GetIconInfo(icon, &info))
        return nullptr;
    // As the original: the size is twice the hot spot.
    const DWORD width = info.xHotspot * 2;
    const DWORD height = info.yHotspot * 2;
    HBITMAP color = RecolorCopy(info.hbmColor, width, height, RGB(0, 0, 0), change);
    ICONINFO made = info;
    made.fIcon = TRUE;
    made.hbmColor = color;
    HICON result = color ? CreateIconIndirect(&made) : nullptr;
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    DeleteObject(color);
    return result;
}

bool SizeOf(HBITMAP bitmap, DWORD& width, DWORD& height)
{
    BITMAP bm{};
    if (!bitmap || !GetObjectA(bitmap, sizeof bm, &bm))
        return false;
    width = static_cast<DWORD>(bm.bmWidth);
    height = static_cast<DWORD>(bm.bmHeight);
    return true;
}

bool IsAuto(INT_PTR value)
{
    return value == CButtonST::BTNST_AUTO_GRAY || value == CButtonST::BTNST_AUTO_DARKER;
}

} // namespace

CButtonST::CButtonST() : m_bEnabled(m_InitType)
{
    SetPressedStyle(BTNST_PRESSED_LEFTRIGHT, FALSE);
    SetDefaultColors(FALSE);
}

CButtonST::~CButtonST()
{
    FreeResources();
    FreeBk();
    if (m_hMenu)
        ::DestroyMenu(m_hMenu);
    if (m_hCursor)
        DestroyCursor(m_hCursor);
}

// --- images --------------------------------------------------------------------

void CButtonST::FreeResources(BOOL checkForNull)
{
    if (checkForNull) {
        for (STRUCT_ICONS& i : m_csIcons) {
            if (i.hIcon)
                DestroyIcon(i.hIcon);
        }
        for (STRUCT_BITMAPS& b : m_csBitmaps) {
            if (b.hBitmap)
                DeleteObject(b.hBitmap);
            if (b.hMask)
                DeleteObject(b.hMask);
        }
    }
    std::memset(m_csIcons, 0, sizeof m_csIcons);
    std::memset(m_csBitmaps, 0, sizeof m_csBitmaps);
}

DWORD CButtonST::SetIcon(int iconIn, int cxIn, int cyIn, int iconOut, int cxOut, int cyOut)
{
    HICON in = nullptr;
    HICON out = nullptr;
    if (iconIn)
        in = static_cast<HICON>(LoadImageA(nullptr, MAKEINTRESOURCE(static_cast<UINT>(iconIn)), IMAGE_ICON, cxIn, cyIn, 0));
    if (IsAuto(iconOut))
        out = reinterpret_cast<HICON>(static_cast<INT_PTR>(iconOut));
    else if (iconOut)
        out = static_cast<HICON>(
            LoadImageA(nullptr, MAKEINTRESOURCE(static_cast<UINT>(iconOut)), IMAGE_ICON, cxOut, cyOut, 0));
    if ((iconIn && !in) || (iconOut && !out)) {
        if (in)
            DestroyIcon(in);
        if (out && !IsAuto(iconOut))
            DestroyIcon(out);
        FreeResources();
        return BTNST_INVALIDRESOURCE;
    }
    return SetIcon(in, out);
}

DWORD CButtonST::SetIcon(HICON iconIn, HICON iconOut)
{
    FreeResources();
    if (iconIn) {
        m_csIcons[0].hIcon = iconIn;
        ICONINFO info{};
        if (!GetIconInfo(iconIn, &info)) {
            FreeResources();
            return BTNST_INVALIDRESOURCE;
        }
        m_csIcons[0].dwWidth = info.xHotspot * 2;
        m_csIcons[0].dwHeight = info.yHotspot * 2;
        DeleteObject(info.hbmMask);
        DeleteObject(info.hbmColor);
        if (iconOut) {
            const INT_PTR which = reinterpret_cast<INT_PTR>(iconOut);
            if (which == BTNST_AUTO_GRAY)
                iconOut = CreateGrayscaleIcon(iconIn);
            else if (which == BTNST_AUTO_DARKER)
                iconOut = CreateDarkerIcon(iconIn);
            m_csIcons[1].hIcon = iconOut;
            if (!iconOut || !GetIconInfo(iconOut, &info)) {
                FreeResources();
                return BTNST_INVALIDRESOURCE;
            }
            m_csIcons[1].dwWidth = info.xHotspot * 2;
            m_csIcons[1].dwHeight = info.yHotspot * 2;
            DeleteObject(info.hbmMask);
            DeleteObject(info.hbmColor);
        }
    }
    Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetBitmaps(int bitmapIn, COLORREF transparentIn, int bitmapDisabled, COLORREF transparentDisabled,
                            int bitmapDisabledIn, COLORREF transparentDisabledIn, int bitmapOut,
                            COLORREF transparentOut)
{
    auto load = [](int id) -> HBITMAP {
        if (!id || IsAuto(id))
            return reinterpret_cast<HBITMAP>(static_cast<INT_PTR>(id));
        return static_cast<HBITMAP>(LoadImageA(nullptr, MAKEINTRESOURCE(static_cast<UINT>(id)), IMAGE_BITMAP, 0, 0, 0));
    };
    HBITMAP in = load(bitmapIn);
    HBITMAP disabled = load(bitmapDisabled);
    HBITMAP disabledIn = load(bitmapDisabledIn);
    HBITMAP out = load(bitmapOut);
    if ((bitmapIn && !in) || (bitmapDisabled && !disabled) || (bitmapDisabledIn && !disabledIn) ||
        (bitmapOut && !out)) {
        for (HBITMAP b : {in, disabled, disabledIn})
            if (b)
                DeleteObject(b);
        if (out && !IsAuto(bitmapOut))
            DeleteObject(out);
        FreeResources();
        return BTNST_INVALIDRESOURCE;
    }
    return SetBitmaps(in, transparentIn, disabled, transparentDisabled, disabledIn, transparentDisabledIn, out,
                      transparentOut);
}

DWORD CButtonST::SetBitmaps(HBITMAP bitmapIn, COLORREF transparentIn, HBITMAP bitmapDisabled,
                            COLORREF transparentDisabled, HBITMAP bitmapDisabledIn, COLORREF transparentDisabledIn,
                            HBITMAP bitmapOut, COLORREF transparentOut)
{
    FreeResources();
    if (bitmapIn) {
        DWORD width = 0, height = 0;
        m_csBitmaps[0].hBitmap = bitmapIn;
        m_csBitmaps[0].crTransparent = transparentIn;
        if (!SizeOf(bitmapIn, width, height)) {
            FreeResources();
            return BTNST_INVALIDRESOURCE;
        }
        // A derived image is made before the masks, which clean the pixels
        // of the transparent colour out of their source.
        const INT_PTR which = reinterpret_cast<INT_PTR>(bitmapOut);
        if (which == BTNST_AUTO_GRAY || which == BTNST_AUTO_DARKER) {
            bitmapOut = which == BTNST_AUTO_GRAY ? CreateGrayscaleBitmap(bitmapIn, width, height, transparentIn)
                                                 : CreateDarkerBitmap(bitmapIn, width, height, transparentIn);
            transparentOut = transparentIn;
            if (!bitmapOut) {
                FreeResources();
                return BTNST_INVALIDRESOURCE;
            }
        }
        m_csBitmaps[0].dwWidth = width;
        m_csBitmaps[0].dwHeight = height;
        m_csBitmaps[0].hMask = CreateBitmapMask(bitmapIn, width, height, transparentIn);
        if (!m_csBitmaps[0].hMask) {
            if (bitmapOut)
                DeleteObject(bitmapOut);
            FreeResources();
            return BTNST_FAILEDMASK;
        }
        struct Extra {
            int record;
            HBITMAP bitmap;
            COLORREF transparent;
        };
        for (const Extra& e : {Extra{2, bitmapDisabled, transparentDisabled},
                               Extra{3, bitmapDisabledIn, transparentDisabledIn}, Extra{1, bitmapOut, transparentOut}}) {
            if (!e.bitmap)
                continue;
            STRUCT_BITMAPS& r = m_csBitmaps[e.record];
            r.hBitmap = e.bitmap;
            r.crTransparent = e.transparent;
            if (!SizeOf(e.bitmap, r.dwWidth, r.dwHeight)) {
                FreeResources();
                return BTNST_INVALIDRESOURCE;
            }
            r.hMask = CreateBitmapMask(e.bitmap, r.dwWidth, r.dwHeight, e.transparent);
            if (!r.hMask) {
                FreeResources();
                return BTNST_FAILEDMASK;
            }
        }
    }
    Invalidate();
    return BTNST_OK;
}

HBITMAP CButtonST::CreateBitmapMask(HBITMAP source, DWORD width, DWORD height, COLORREF transparent)
{
    HBITMAP mask = CreateBitmap(static_cast<int>(width), static_cast<int>(height), 1, 1, nullptr);
    if (!mask)
        return nullptr;
    HDC src = CreateCompatibleDC(nullptr);
    HDC dst = CreateCompatibleDC(nullptr);
    HGDIOBJ oldSrc = SelectObject(src, source);
    HGDIOBJ oldDst = SelectObject(dst, mask);
    if (!oldSrc || !oldDst) {
        DeleteDC(src);
        DeleteDC(dst);
        DeleteObject(mask);
        return nullptr;
    }
    const COLORREF savedBk = SetBkColor(src, transparent);
    BitBlt(dst, 0, 0, static_cast<int>(width), static_cast<int>(height), src, 0, 0, SRCCOPY);
    const COLORREF savedText = SetTextColor(src, RGB(255, 255, 255));
    SetBkColor(src, RGB(0, 0, 0));
    BitBlt(src, 0, 0, static_cast<int>(width), static_cast<int>(height), dst, 0, 0, SRCAND);
    SetTextColor(src, savedText);
    SetBkColor(src, savedBk);
    SelectObject(src, oldSrc);
    SelectObject(dst, oldDst);
    DeleteDC(src);
    DeleteDC(dst);
    return mask;
}

HBITMAP CButtonST::CreateGrayscaleBitmap(HBITMAP source, DWORD width, DWORD height, COLORREF transparent)
{
    return RecolorCopy(source, width, height, transparent, Grayed);
}

HBITMAP CButtonST::CreateDarkerBitmap(HBITMAP source, DWORD width, DWORD height, COLORREF transparent)
{
    return RecolorCopy(source, width, height, transparent, Darker);
}

HICON CButtonST::CreateGrayscaleIcon(HICON icon)
{
    return RecolorIcon(icon, Grayed);
}

HICON CButtonST::CreateDarkerIcon(HICON icon)
{
    return RecolorIcon(icon, Darker);
}

COLORREF CButtonST::DarkenColor(COLORREF color, double factor)
{
    if (factor <= 0.0 || factor > 1.0)
        return color;
    const BYTE r = GetRValue(color);
    const BYTE g = GetGValue(color);
    const BYTE b = GetBValue(color);
    return RGB(static_cast<BYTE>(r - r * factor), static_cast<BYTE>(g - g * factor), static_cast<BYTE>(b - b * factor));
}

// --- settings ------------------------------------------------------------------

DWORD CButtonST::SetFlat(BOOL flat, BOOL repaint)
{
    m_bIsFlat = flat;
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetAlign(BYTE align, BOOL repaint)
{
    if (align > ST_ALIGN_OVERLAP)
        return BTNST_INVALIDALIGN;
    m_byAlign = align;
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetPressedStyle(BYTE style, BOOL repaint)
{
    switch (style) {
    case BTNST_PRESSED_LEFTRIGHT: m_ptPressedOffset = CPoint(1, 1); break;
    case BTNST_PRESSED_TOPBOTTOM: m_ptPressedOffset = CPoint(0, 2); break;
    default: return BTNST_INVALIDPRESSEDSTYLE;
    }
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetCheck(int check, BOOL repaint)
{
    m_nCheck = check ? 1 : 0;
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

int CButtonST::GetCheck() const
{
    return m_nCheck;
}

DWORD CButtonST::SetDefaultColors(BOOL repaint)
{
    for (int slot = 0; slot < BTNST_MAX_COLORS; ++slot)
        m_crColors[slot] = GetSysColor(slot % 2 ? COLOR_BTNTEXT : COLOR_BTNFACE);
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetColor(BYTE index, COLORREF color, BOOL repaint)
{
    if (index >= BTNST_MAX_COLORS)
        return BTNST_INVALIDINDEX;
    m_crColors[index] = color;
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::GetColor(BYTE index, COLORREF* color) const
{
    if (index >= BTNST_MAX_COLORS)
        return BTNST_INVALIDINDEX;
    if (color)
        *color = m_crColors[index];
    return BTNST_OK;
}

DWORD CButtonST::OffsetColor(BYTE index, short offset, BOOL repaint)
{
    if (index >= BTNST_MAX_COLORS)
        return BTNST_INVALIDINDEX;
    if (offset < -255 || offset > 255)
        return BTNST_BADPARAM;
    const int channels[3] = {GetRValue(m_crColors[index]), GetGValue(m_crColors[index]), GetBValue(m_crColors[index])};
    int move = offset;
    for (int c : channels) {
        if (offset > 0 && c + offset > 255)
            move = std::min(move, 255 - c);
        if (offset < 0 && c + offset < 0)
            move = std::max(move, -c);
    }
    m_crColors[index] = RGB(channels[0] + move, channels[1] + move, channels[2] + move);
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetAlwaysTrack(BOOL alwaysTrack)
{
    m_bAlwaysTrack = alwaysTrack;
    return BTNST_OK;
}

DWORD CButtonST::SetBtnCursor(int cursorId, BOOL repaint)
{
    if (m_hCursor)
        DestroyCursor(m_hCursor);
    m_hCursor = nullptr;
    if (cursorId) {
        const LPCSTR name = MAKEINTRESOURCE(static_cast<UINT>(cursorId));
        m_hCursor = static_cast<HCURSOR>(LoadImageA(nullptr, name, IMAGE_CURSOR, 0, 0, 0));
        if (!m_hCursor)
            m_hCursor = LoadCursorA(nullptr, name);
        if (!m_hCursor)
            return BTNST_INVALIDRESOURCE;
    }
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::DrawBorder(BOOL drawBorder, BOOL repaint)
{
    m_bDrawBorder = drawBorder;
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::DrawFlatFocus(BOOL drawFlatFocus, BOOL repaint)
{
    m_bDrawFlatFocus = drawFlatFocus;
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

BOOL CButtonST::GetDefault() const
{
    return m_bIsDefault;
}

BOOL CButtonST::SetURL(LPCSTR url)
{
    std::memset(m_szURL, 0, sizeof m_szURL);
    if (url)
        std::strncpy(m_szURL, url, sizeof m_szURL - 1);
    return TRUE;
}

DWORD CButtonST::SetMenu(HMENU menu, HWND owner, BOOL repaint)
{
    if (m_hMenu && m_hMenu != menu)
        ::DestroyMenu(m_hMenu);
    m_hMenu = menu;
    m_hParentWndMenu = menu ? owner : nullptr;
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetMenuCallback(HWND window, UINT message, LPARAM lParam)
{
    m_csCallbacks.hWnd = window;
    m_csCallbacks.nMessage = message;
    m_csCallbacks.lParam = lParam;
    return BTNST_OK;
}

DWORD CButtonST::SizeToContent()
{
    DWORD width = 0, height = 0;
    if (m_csIcons[0].hIcon) {
        width = m_csIcons[0].dwWidth;
        height = m_csIcons[0].dwHeight;
    } else if (m_csBitmaps[0].hBitmap) {
        width = m_csBitmaps[0].dwWidth;
        height = m_csBitmaps[0].dwHeight;
    } else {
        return BTNST_OK;
    }
    m_nMarginX = 0;
    m_nMarginY = 0;
    SetWindowPos(nullptr, -1, -1, static_cast<int>(width), static_cast<int>(height),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE);
    return BTNST_OK;
}

DWORD CButtonST::SetSound(LPCSTR sound, HMODULE module, BOOL onClick, BOOL async)
{
    STRUCT_SOUND& s = m_csSounds[onClick ? 1 : 0];
    if (!sound) {
        std::memset(&s, 0, sizeof s);
        return BTNST_OK;
    }
    if (module) {
        s.lpszSound = sound;
        s.hMod = module;
        s.dwFlags = SND_NOWAIT | SND_NODEFAULT | SND_RESOURCE;
    } else {
        std::memset(s.szSound, 0, sizeof s.szSound);
        std::strncpy(s.szSound, sound, sizeof s.szSound - 1);
        s.lpszSound = s.szSound;
        s.hMod = nullptr;
        s.dwFlags = SND_NOWAIT | SND_NODEFAULT | SND_FILENAME;
    }
    if (async)
        s.dwFlags |= SND_ASYNC;
    return BTNST_OK;
}

// --- tooltip ---------------------------------------------------------------------

void CButtonST::InitToolTip()
{
    if (m_ToolTip.m_hWnd || !m_hWnd)
        return;
    m_ToolTip.Create(this, m_dwToolTipStyle);
    m_ToolTip.Activate(FALSE);
    m_ToolTip.SendMessage(TTM_SETMAXTIPWIDTH, 0, 400);
}

void CButtonST::SetTooltipText(int textId, BOOL activate)
{
    CString text;
    text.LoadString(static_cast<UINT>(textId));
    if (!text.IsEmpty())
        SetTooltipText(text.GetString(), activate);
}

void CButtonST::SetTooltipText(LPCSTR text, BOOL activate)
{
    if (!text)
        return;
    InitToolTip();
    if (m_ToolTip.GetToolCount() == 0) {
        CRect client;
        GetClientRect(&client);
        m_ToolTip.AddTool(this, text, &client, 1);
    }
    m_ToolTip.UpdateTipText(text, this, 1);
    m_ToolTip.Activate(activate);
}

void CButtonST::ActivateTooltip(BOOL enable)
{
    if (m_ToolTip.GetToolCount() == 0)
        return;
    m_ToolTip.Activate(enable);
}

DWORD CButtonST::EnableBalloonTooltip()
{
    m_dwToolTipStyle |= TTS_BALLOON;
    return BTNST_OK;
}

// --- transparent background ------------------------------------------------------

void CButtonST::FreeBk()
{
    if (m_dcBk.m_hDC && m_pbmpOldBk)
        m_dcBk.SelectObject(m_pbmpOldBk);
    m_pbmpOldBk = nullptr;
    m_bmpBk.DeleteObject();
    m_dcBk.DeleteDC();
}

DWORD CButtonST::DrawTransparent(BOOL repaint)
{
    m_bDrawTransparent = TRUE;
    FreeBk();
    if (repaint)
        Invalidate();
    return BTNST_OK;
}

DWORD CButtonST::SetBk(CDC* dc)
{
    if (!m_bDrawTransparent || !dc)
        return BTNST_BADPARAM;
    CRect client, window;
    GetClientRect(&client);
    GetWindowRect(&window);
    if (CWnd* parent = GetParent())
        parent->ScreenToClient(&window);
    FreeBk();
    m_dcBk.CreateCompatibleDC(dc);
    m_bmpBk.CreateCompatibleBitmap(dc, client.Width(), client.Height());
    m_pbmpOldBk = m_dcBk.SelectObject(&m_bmpBk);
    m_dcBk.BitBlt(0, 0, client.Width(), client.Height(), dc, window.left, window.top, SRCCOPY);
    return BTNST_OK;
}

void CButtonST::PaintBk(CDC* dc)
{
    CRect client, window;
    GetClientRect(&client);
    if (!m_dcBk.m_hDC) {
        CWnd* parent = GetParent();
        if (!parent)
            return;
        CClientDC parentDc(parent);
        GetWindowRect(&window);
        parent->ScreenToClient(&window);
        m_dcBk.CreateCompatibleDC(&parentDc);
        m_bmpBk.CreateCompatibleBitmap(&parentDc, client.Width(), client.Height());
        m_pbmpOldBk = m_dcBk.SelectObject(&m_bmpBk);
        m_dcBk.BitBlt(0, 0, client.Width(), client.Height(), &parentDc, window.left, window.top, SRCCOPY);
    }
    dc->BitBlt(0, 0, client.Width(), client.Height(), &m_dcBk, 0, 0, SRCCOPY);
}

// --- drawing ---------------------------------------------------------------------

void CButtonST::PreSubclassWindow()
{
    if (!m_bEnabled) {
        CButton::PreSubclassWindow();
        return;
    }
    const UINT buttonStyle = GetButtonStyle() & 0xFF;
    m_dwStyle = GetStyle();
    if (buttonStyle & BS_LEFTTEXT)
        m_byAlign = ST_ALIGN_HORIZ_RIGHT;
    if (buttonStyle & BS_CHECKBOX)
        m_bIsCheckBox = TRUE;
    if (m_dwStyle & BS_PUSHLIKE)
        m_bIsPushLike = TRUE;
    const UINT type = buttonStyle & BS_TYPEMASK;
    if (type != BS_PUSHBUTTON && type != BS_DEFPUSHBUTTON) {
        if (buttonStyle & BS_RADIOBUTTON)
            m_bIsRadio = TRUE;
        if ((buttonStyle & BS_AUTORADIOBUTTON) == BS_AUTORADIOBUTTON && !m_bIsCheckBox)
            m_bIsRadio = TRUE;
    }
    if (type == BS_DEFPUSHBUTTON)
        m_bIsDefault = TRUE;
    ModifyStyle(BS_TYPEMASK, BS_OWNERDRAW, SWP_FRAMECHANGED);
    CButton::PreSubclassWindow();
}

void CButtonST::DrawItem(LPDRAWITEMSTRUCT item)
{
    if (!m_bEnabled) {
        CButton::DrawItem(item);
        return;
    }
    CDC* dc = CDC::FromHandle(item->hDC);
    if (m_bIsCheckBox || m_bIsRadio)
        m_bIsPressed = (item->itemState & ODS_SELECTED) || m_nCheck;
    else
        m_bIsPressed = (item->itemState & ODS_SELECTED) || m_bMenuDisplayed;
    m_bIsFocused = (item->itemState & ODS_FOCUS) != 0;
    m_bIsDisabled = (item->itemState & ODS_DISABLED) != 0;
    CRect itemRect(item->rcItem);
    dc->SetBkMode(TRANSPARENT);
    if (m_bDrawTransparent)
        PaintBk(dc);
    else
        OnDrawBackground(dc, &itemRect);
    OnDrawBorder(dc, &itemRect);

    CString title = GetWindowTextString();
    if (m_bIsCheckBox && title.Left(3) == "Man") {
        // The original looked at such captions and changed nothing.
    }
    CRect captionRect(item->rcItem);
    if (m_csIcons[0].hIcon)
        DrawTheIcon(dc, !title.IsEmpty(), &item->rcItem, &captionRect, m_bIsPressed, m_bIsDisabled);
    if (m_csBitmaps[0].hBitmap) {
        dc->SetBkColor(RGB(255, 255, 255));
        DrawTheBitmap(dc, !title.IsEmpty(), &item->rcItem, &captionRect, m_bIsPressed, m_bIsDisabled);
    }
    if (!title.IsEmpty())
        DrawTheText(dc, title.GetString(), &item->rcItem, &captionRect, m_bIsPressed, m_bIsDisabled);

    if (m_bIsFocused && (!m_bIsFlat || m_bDrawFlatFocus)) {
        CRect focus(itemRect);
        focus.DeflateRect(3, 3);
        dc->DrawFocusRect(&focus);
    }
}

void CButtonST::PrepareImageRect(BOOL hasTitle, RECT* item, CRect* caption, BOOL pressed, DWORD width, DWORD height,
                                 CRect* image)
{
    image->CopyRect(item);
    const long w = static_cast<long>(width);
    const long h = static_cast<long>(height);
    switch (m_byAlign) {
    case ST_ALIGN_HORIZ:
        if (!hasTitle) {
            image->left += (image->Width() - w) / 2;
        } else {
            image->left += m_nMarginX;
            caption->left += w + m_nMarginX;
        }
        image->top += (image->Height() - h) / 2;
        break;
    case ST_ALIGN_HORIZ_RIGHT: {
        CRect client;
        GetClientRect(&client);
        if (!hasTitle) {
            image->left += (image->Width() - w) / 2;
        } else {
            caption->right = caption->Width() - w - m_nMarginX;
            caption->left = m_nMarginX;
            image->left = client.right - w - m_nMarginX;
            image->top += (image->Height() - h) / 2;
        }
        break;
    }
    case ST_ALIGN_VERT:
        image->left += (image->Width() - w) / 2;
        if (!hasTitle) {
            image->top += (image->Height() - h) / 2;
        } else {
            image->top = item->top + m_nMarginY;
            caption->top += h;
        }
        break;
    default: // ST_ALIGN_OVERLAP: the image centred under the text
        image->left += (image->Width() - w) / 2;
        image->top += (image->Height() - h) / 2;
        break;
    }
    if (pressed && !m_bIsCheckBox && !m_bIsRadio)
        image->OffsetRect(m_ptPressedOffset);
}

void CButtonST::DrawTheIcon(CDC* dc, BOOL hasTitle, RECT* item, CRect* caption, BOOL pressed, BOOL disabled)
{
    int index = 0;
    if (m_bIsCheckBox) {
        if (!pressed && m_csIcons[1].hIcon)
            index = 1;
    } else if (!pressed && !m_bMouseOnButton && m_csIcons[1].hIcon) {
        index = 1;
    }
    CRect image;
    PrepareImageRect(hasTitle, item, caption, pressed, m_csIcons[index].dwWidth, m_csIcons[index].dwHeight, &image);
    dc->DrawState(image.TopLeft(), CSize(static_cast<int>(m_csIcons[index].dwWidth), static_cast<int>(m_csIcons[index].dwHeight)),
                  m_csIcons[index].hIcon, disabled ? DSS_DISABLED : DSS_NORMAL, static_cast<HBRUSH>(nullptr));
}

void CButtonST::DrawTheBitmap(CDC* dc, BOOL hasTitle, RECT* item, CRect* caption, BOOL pressed, BOOL disabled)
{
    const bool showDisabled = disabled && m_bShowDisabledBitmap;
    int index = 0;
    if (m_bIsCheckBox || m_bIsRadio) {
        if (showDisabled && pressed && m_csBitmaps[3].hBitmap)
            index = 3;
        else if (showDisabled)
            index = m_csBitmaps[2].hBitmap ? 2 : 0;
        else if (!pressed)
            index = m_csBitmaps[1].hBitmap ? 1 : 0;
    } else {
        if (pressed || m_bMouseOnButton)
            index = 0;
        else if (showDisabled)
            index = m_csBitmaps[2].hBitmap ? 2 : 0;
        else
            index = m_csBitmaps[1].hBitmap ? 1 : 0;
    }
    const STRUCT_BITMAPS& b = m_csBitmaps[index];
    CRect image;
    PrepareImageRect(hasTitle, item, caption, pressed, b.dwWidth, b.dwHeight, &image);
    if (m_dwStyle & BS_TOP)
        image.top = 1;
    CDC source;
    source.CreateCompatibleDC(dc);
    HGDIOBJ old = source.SelectObject(static_cast<HGDIOBJ>(b.hMask));
    dc->BitBlt(image.left, image.top, static_cast<int>(b.dwWidth), static_cast<int>(b.dwHeight), &source, 0, 0, SRCAND);
    source.SelectObject(static_cast<HGDIOBJ>(b.hBitmap));
    dc->BitBlt(image.left, image.top, static_cast<int>(b.dwWidth), static_cast<int>(b.dwHeight), &source, 0, 0, SRCPAINT);
    source.SelectObject(old);
    source.DeleteDC();
}

void CButtonST::DrawTheText(CDC* dc, LPCSTR text, RECT*, CRect* caption, BOOL pressed, BOOL)
{
    if (pressed && !m_bIsCheckBox && !m_bIsRadio)
        caption->OffsetRect(m_ptPressedOffset);
    const CRect centre(*caption);
    UINT format;
    if ((m_bIsCheckBox || m_bIsRadio) && !m_bIsPushLike) {
        format = (m_dwStyle & BS_MULTILINE) ? DT_WORDBREAK : 0;
        if (m_byAlign == ST_ALIGN_HORIZ_RIGHT)
            format |= DT_RIGHT;
        dc->DrawText(text, -1, caption, format | DT_CALCRECT);
        caption->OffsetRect(0, (centre.Height() - caption->Height()) / 2);
        if (m_dwStyle & BS_RIGHT)
            caption->OffsetRect(centre.right - caption->right - 5, 0);
        else if (m_byAlign != ST_ALIGN_HORIZ_RIGHT)
            caption->OffsetRect(5, 0);
    } else {
        format = DT_WORDBREAK | DT_CENTER;
        dc->DrawText(text, -1, caption, format | DT_CALCRECT);
        caption->OffsetRect((centre.Width() - caption->Width()) / 2, (centre.Height() - caption->Height()) / 2);
    }
    dc->SetBkMode(TRANSPARENT);
    if (m_bIsDisabled) {
        dc->SetTextColor(GetSysColor(COLOR_BTNSHADOW));
    } else if (m_bMouseOnButton) {
        dc->SetTextColor(m_crColors[BTNST_COLOR_FG_IN]);
        dc->SetBkColor(m_crColors[BTNST_COLOR_BK_IN]);
    } else if (m_bIsFocused) {
        dc->SetTextColor(m_crColors[BTNST_COLOR_FG_FOCUS]);
        dc->SetBkColor(m_crColors[BTNST_COLOR_BK_FOCUS]);
    } else if (m_bIsPressed) {
        dc->SetTextColor(m_crColors[BTNST_COLOR_FG_PRESSED]);
        dc->SetBkColor(m_crColors[BTNST_COLOR_BK_PRESSED]);
    } else {
        dc->SetTextColor(m_crColors[BTNST_COLOR_FG_OUT]);
        dc->SetBkColor(m_crColors[BTNST_COLOR_BK_OUT]);
    }
    dc->DrawText(text, -1, caption, format);
}

DWORD CButtonST::OnDrawBackground(CDC* dc, CRect* rect)
{
    if (!m_bIsFlat && (m_bIsFocused || GetDefault())) {
        CBrush black(RGB(0, 0, 0));
        dc->FrameRect(rect, &black);
        rect->DeflateRect(1, 1);
    }
    COLORREF color;
    if (m_bMouseOnButton || m_bIsPressed)
        color = m_crColors[BTNST_COLOR_BK_IN];
    else if (m_bIsFocused)
        color = m_crColors[BTNST_COLOR_BK_FOCUS];
    else
        color = m_crColors[BTNST_COLOR_BK_OUT];
    CBrush background(color);
    dc->FillRect(rect, &background);
    return BTNST_OK;
}

DWORD CButtonST::OnDrawBorder(CDC* dc, CRect* rect)
{
    if (m_bIsPressed) {
        if (m_bIsFlat) {
            if (m_bDrawBorder)
                dc->Draw3dRect(rect, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT));
        } else {
            CBrush shadow(GetSysColor(COLOR_BTNSHADOW));
            dc->FrameRect(rect, &shadow);
        }
        return BTNST_OK;
    }
    if (m_bIsFlat) {
        if (m_bDrawBorder)
            dc->Draw3dRect(rect, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW));
        else if (!m_bIsCheckBox && !m_bIsRadio)
            dc->Draw3dRect(rect, RGB(0, 0, 0), RGB(0, 0, 0));
        return BTNST_OK;
    }
    CPen highlight(PS_SOLID, 0, GetSysColor(COLOR_BTNHIGHLIGHT));
    CPen light(PS_SOLID, 0, GetSysColor(COLOR_3DLIGHT));
    CPen darkShadow(PS_SOLID, 0, GetSysColor(COLOR_3DDKSHADOW));
    CPen shadow(PS_SOLID, 0, GetSysColor(COLOR_BTNSHADOW));
    const CRect& r = *rect;
    CPen* old = dc->SelectObject(&highlight);
    dc->MoveTo(r.left, r.bottom - 1);
    dc->LineTo(r.left, r.top);
    dc->LineTo(r.right, r.top);
    dc->SelectObject(&light);
    dc->MoveTo(r.left + 1, r.bottom - 2);
    dc->LineTo(r.left + 1, r.top + 1);
    dc->LineTo(r.right - 1, r.top + 1);
    dc->SelectObject(&darkShadow);
    dc->MoveTo(r.left, r.bottom - 1);
    dc->LineTo(r.right - 1, r.bottom - 1);
    dc->LineTo(r.right - 1, r.top - 1);
    dc->SelectObject(&shadow);
    dc->MoveTo(r.left + 1, r.bottom - 2);
    dc->LineTo(r.right - 2, r.bottom - 2);
    dc->LineTo(r.right - 2, r.top);
    dc->SelectObject(old);
    return BTNST_OK;
}

// --- behaviour -------------------------------------------------------------------

LRESULT CButtonST::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!m_bEnabled)
        return CButton::WindowProc(message, wParam, lParam);
    switch (message) {
    case BM_SETSTYLE: {
        const UINT type = static_cast<UINT>(wParam) & BS_TYPEMASK;
        if (type == BS_DEFPUSHBUTTON)
            m_bIsDefault = TRUE;
        else if (type == BS_PUSHBUTTON)
            m_bIsDefault = FALSE;
        return CButton::WindowProc(message, (wParam & ~static_cast<WPARAM>(0x14)) | BS_OWNERDRAW, lParam);
    }
    case BM_SETCHECK:
        m_nCheck = (wParam == BST_CHECKED || wParam == BST_INDETERMINATE) ? 1 : 0;
        Invalidate();
        return 0;
    case BM_GETCHECK:
        return m_nCheck;
    case WM_REFLECT_BASE + WM_CTLCOLORBTN:
        return reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH));
    default:
        return CButton::WindowProc(message, wParam, lParam);
    }
}

BOOL CButtonST::PreTranslateMessage(MSG* msg)
{
    if (m_bEnabled) {
        InitToolTip();
        m_ToolTip.RelayEvent(msg);
        // A quick second click is another click, not a double click.
        if (msg->message == WM_LBUTTONDBLCLK)
            msg->message = WM_LBUTTONDOWN;
    }
    return CButton::PreTranslateMessage(msg);
}

void CButtonST::CancelHover()
{
    if (m_bMouseOnButton) {
        m_bMouseOnButton = FALSE;
        Invalidate();
    }
}

void CButtonST::OnMouseMove(UINT flags, CPoint point)
{
    CButton::OnMouseMove(flags, point);
    if (!m_bEnabled)
        return;
    ClientToScreen(&point);
    CWnd* under = WindowFromPoint(point);
    if ((flags & MK_LBUTTON) && !m_bMouseOnButton)
        return;
    if (!m_bIsFlat && !m_bTrackHover)
        return;
    const bool active = m_bAlwaysTrack || GetActiveWindow() != nullptr;
    if (under == this && active) {
        if (!m_bMouseOnButton) {
            m_bMouseOnButton = TRUE;
            Invalidate();
            if (m_csSounds[0].lpszSound)
                PlaySoundA(m_csSounds[0].lpszSound, m_csSounds[0].hMod, m_csSounds[0].dwFlags);
            TRACKMOUSEEVENT track{sizeof(TRACKMOUSEEVENT), TME_LEAVE, m_hWnd, 0};
            TrackMouseEvent(&track);
        }
    } else {
        CancelHover();
    }
}

void CButtonST::OnMouseLeave()
{
    CButton::OnMouseLeave();
    if (m_bEnabled)
        CancelHover();
}

void CButtonST::CheckRadio()
{
    m_nCheck = 1;
    Invalidate();
    CWnd* parent = GetParent();
    if (!parent)
        return;
    int guard = 0;
    for (CWnd* w = parent->GetNextDlgGroupItem(this); w && w != this && guard < 1000;
         w = parent->GetNextDlgGroupItem(w), ++guard)
        w->SendMessage(BM_SETCHECK, 0);
}

void CButtonST::OnLButtonUp(UINT flags, CPoint point)
{
    // Only a release on the pressed button is a click; anywhere else the
    // button just lets go.
    if (!m_bEnabled || !(GetState() & BST_PUSHED)) {
        CButton::OnLButtonUp(flags, point);
        return;
    }
    const HWND self = m_hWnd;
    SetFocus();
    if (m_csSounds[1].lpszSound)
        PlaySoundA(m_csSounds[1].lpszSound, m_csSounds[1].hMod, m_csSounds[1].dwFlags);
    if (m_bIsCheckBox) {
        m_nCheck = !m_nCheck;
        Invalidate();
    } else if (m_bIsRadio && !m_nCheck) {
        CheckRadio();
    } else if (m_hMenu) {
        // The menu takes the mouse: the button lets go of it first.
        ReleaseCapture();
        CRect window;
        GetWindowRect(&window);
        m_bMenuDisplayed = TRUE;
        Invalidate();
        UpdateWindow();
        HMENU popup = ::GetSubMenu(m_hMenu, 0);
        if (m_csCallbacks.hWnd)
            ::SendMessageA(m_csCallbacks.hWnd, m_csCallbacks.nMessage, reinterpret_cast<WPARAM>(popup),
                           m_csCallbacks.lParam);
        const UINT chosen = static_cast<UINT>(::TrackPopupMenuEx(
            popup, TPM_LEFTALIGN | TPM_LEFTBUTTON | TPM_RIGHTBUTTON | TPM_NONOTIFY | TPM_RETURNCMD, window.left,
            window.bottom, m_hParentWndMenu, nullptr));
        if (!IsWindow(self))
            return;
        m_bMenuDisplayed = FALSE;
        Invalidate();
        if (chosen)
            ::PostMessageA(m_hParentWndMenu, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(chosen), 0), 0);
        return;
    } else if (m_szURL[0]) {
        vx::ShellOpenRequest open;
        open.verb = "open";
        open.file = m_szURL;
        open.mask = 0x400;
        open.show = SW_MAXIMIZE;
        vx::ShellOpen(open);
    }
    if (IsWindow(self))
        CButton::OnLButtonUp(flags, point);
}

void CButtonST::OnKeyUp(UINT key, UINT repeat, UINT flags)
{
    if (m_bEnabled && key == VK_SPACE) {
        if (m_bIsCheckBox) {
            m_nCheck = !m_nCheck;
            Invalidate();
        } else if (m_bIsRadio && !m_nCheck) {
            CheckRadio();
        }
    }
    CButton::OnKeyUp(key, repeat, flags);
}

void CButtonST::OnKillFocus(CWnd* newWnd)
{
    CButton::OnKillFocus(newWnd);
    if (m_bEnabled)
        CancelHover();
}

void CButtonST::OnCancelMode()
{
    CButton::OnCancelMode();
    if (m_bEnabled)
        CancelHover();
}

void CButtonST::OnActivate(UINT state, CWnd* other, BOOL minimized)
{
    CButton::OnActivate(state, other, minimized);
    if (m_bEnabled && state == WA_INACTIVE)
        CancelHover();
}

void CButtonST::OnEnable(BOOL enable)
{
    CButton::OnEnable(enable);
    if (!m_bEnabled || enable)
        return;
    CWnd* parent = GetParent();
    if (GetFocus() == this && parent) {
        if (CWnd* next = parent->GetNextDlgTabItem(this))
            next->SetFocus();
        else
            parent->SetFocus();
    }
    CancelHover();
}

BOOL CButtonST::OnSetCursor(CWnd* window, UINT hitTest, UINT message)
{
    if (m_bEnabled && m_hCursor) {
        ::SetCursor(m_hCursor);
        return TRUE;
    }
    return CButton::OnSetCursor(window, hitTest, message);
}

void CButtonST::OnSysColorChange()
{
    CButton::OnSysColorChange();
    if (!m_bEnabled)
        return;
    FreeBk();
    SetDefaultColors();
}

UINT CButtonST::OnGetDlgCode()
{
    UINT code = CButton::OnGetDlgCode();
    if (!m_bEnabled)
        return code;
    code |= m_bIsDefault ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON;
    if (m_bIsRadio)
        code |= DLGC_RADIOBUTTON;
    return code;
}

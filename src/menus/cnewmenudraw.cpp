// Measuring and drawing of CNewMenu's items in the styles of the themes.
#include "menus/cmenuwindowhook.h"
#include "menus/cnewmenu.h"
#include "menus/menucolors.h"

#include "platform/windows/sysmetrics.h"
#include "ui/gdi/wingdi.h"

#include <algorithm>
#include <cstring>

namespace {

enum class Measure { OldStyle, Icy, WinXP };

bool IsSysCommand(UINT id)
{
    const UINT c = id & 0xFFF0;
    return c >= 0xF000 && c <= 0xF150;
}

COLORREF Nearest(HDC dc, COLORREF c)
{
    return GetNearestColor(dc, c);
}

// The menu font (SPI_GETNONCLIENTMETRICS), bold for the default item. The
// font is kept while the metrics stay the same: making it for every item
// costs more than drawing the item.
HFONT MenuFont(bool bold)
{
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    if (bold)
        metrics.lfMenuFont.lfWeight = FW_BOLD;
    static LOGFONTA made[2]{};
    static HFONT fonts[2]{};
    const int k = bold ? 1 : 0;
    if (!fonts[k] || std::memcmp(&made[k], &metrics.lfMenuFont, sizeof(LOGFONTA)) != 0) {
        if (fonts[k])
            DeleteObject(fonts[k]);
        fonts[k] = CreateFontIndirectA(&metrics.lfMenuFont);
        made[k] = metrics.lfMenuFont;
    }
    return fonts[k];
}

CSize TextExtent(HDC dc, const CString& text)
{
    SIZE size{};
    GetTextExtentPoint32A(dc, text, text.GetLength(), &size);
    return CSize(size.cx, size.cy);
}

void Fill(CDC* dc, const RECT& r, COLORREF c)
{
    HBRUSH brush = CreateSolidBrush(c);
    FillRect(dc->m_hDC, &r, brush);
    DeleteObject(brush);
}

void Outline(CDC* dc, const RECT& r, COLORREF c)
{
    HBRUSH brush = CreateSolidBrush(c);
    FrameRect(dc->m_hDC, &r, brush);
    DeleteObject(brush);
}

// The icon of an image list position as a shape in one colour (DSS_MONO),
// disabled (DSS_DISABLED) or plain.
void DrawIconState(CDC* dc, CImageList& list, int index, int x, int y, UINT flags, HBRUSH brush)
{
    HICON icon = ImageList_GetIcon(list.m_hImageList, index, ILD_TRANSPARENT);
    if (!icon)
        return;
    DrawStateA(dc->m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(icon), 0, x, y, 0, 0, flags);
    DestroyIcon(icon);
}

CSize BitmapSize(HBITMAP bitmap)
{
    BITMAP info{};
    if (!bitmap || !GetObjectA(bitmap, sizeof info, &info))
        return CSize(0, 0);
    return CSize(info.bmWidth, info.bmHeight);
}

void DrawBitmapCentered(CDC* dc, const CRect& r, HBITMAP bitmap, UINT flags)
{
    const CSize size = BitmapSize(bitmap);
    HBRUSH brush = CreateSolidBrush(GetTextColor(dc->m_hDC));
    DrawStateA(dc->m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(bitmap), 0, r.left + (r.Width() - size.cx) / 2,
               r.top + (r.Height() - size.cy) / 2, size.cx, size.cy, flags);
    DeleteObject(brush);
}

CString BeforeTab(const CString& text)
{
    const int tab = text.Find('\t');
    return tab < 0 ? text : text.Left(tab);
}

CString AfterTab(const CString& text)
{
    const int tab = text.Find('\t');
    return tab < 0 ? CString() : text.Mid(tab + 1);
}

UINT SysGlyph(UINT id)
{
    switch (id & 0xFFF0) {
    case SC_MINIMIZE: return 0x30;
    case SC_MAXIMIZE: return 0x31;
    case SC_CLOSE: return 0x72;
    case SC_RESTORE: return 0x32;
    default: return 0;
    }
}

} // namespace

// --- measuring -----------------------------------------------------------------------------------

void CNewMenu::MeasureCommon(LPMEASUREITEMSTRUCT item, BOOL isMenuBar, int style)
{
    CNewMenuItemData* data = DataOf(item->itemData);
    if (!data)
        return;
    const auto kind = static_cast<Measure>(style);
    const bool title = (data->m_nTitleFlags & MFT_TITLE) != 0;
    if ((data->m_nFlags & MF_SEPARATOR) && !title) {
        item->itemWidth = 3;
        item->itemHeight = 3;
        return;
    }
    HDC dc = GetDC(nullptr);
    if (title) {
        LOGFONT lf = m_MenuTitleFont;
        lf.lfEscapement = 0;
        lf.lfOrientation = 0;
        HFONT font = CreateFontIndirectA(&lf);
        HGDIOBJ old = SelectObject(dc, font);
        const CSize size = TextExtent(dc, data->m_szMenuText);
        SelectObject(dc, old);
        DeleteObject(font);
        if (data->m_nTitleFlags & MFT_SIDE_TITLE) {
            item->itemHeight = 0;
            int width = size.cy - GetSystemMetrics(SM_CXMENUCHECK);
            if (data->m_nTitleFlags & MFT_LINE)
                width += 8;
            else if (data->m_nTitleFlags & MFT_ROUND)
                width += 4;
            item->itemWidth = static_cast<UINT>(std::max(width, 0));
        } else {
            item->itemWidth = static_cast<UINT>(size.cx);
            item->itemHeight = static_cast<UINT>(size.cy + ((data->m_nTitleFlags & MFT_LINE) ? 8 : 0));
        }
        ReleaseDC(nullptr, dc);
        return;
    }
    auto measureText = [&](CNewMenuItemData* which, int& width, int& height) {
        const bool bold = ::GetMenuDefaultItem(m_hMenu, FALSE, 0) == which->m_nID;
        HFONT font = MenuFont(bold);
        HGDIOBJ old = SelectObject(dc, font);
        CString text = which->m_szMenuText;
        if (kind != Measure::OldStyle)
            text.Replace("\t", "nnn");
        const CSize size = TextExtent(dc, text);
        SelectObject(dc, old);
        const int cyMenu = GetSystemMetrics(SM_CYMENU);
        if (!isMenuBar) {
            width = kind == Measure::WinXP ? size.cx + cyMenu / 2 + m_iconX + 6 : size.cx + 2 + 2 * m_iconX;
        } else if (text.Find('&') >= 0) {
            width = kind == Measure::WinXP ? size.cx - 6 : size.cx - GetSystemMetrics(SM_CXMENUCHECK) / 2;
        } else {
            width = size.cx;
        }
        switch (kind) {
        case Measure::OldStyle: height = std::max(m_iconY + 4, cyMenu); break;
        case Measure::Icy: height = std::max(m_iconY + 6, cyMenu); break;
        case Measure::WinXP: height = m_iconY + 8 < cyMenu ? cyMenu : m_iconY + 7; break;
        }
        height = std::max<int>(height, size.cy);
    };
    int width = 0;
    int height = 0;
    measureText(data, width, height);
    if (IsSysCommand(data->m_nID)) {
        // The system commands take the width of the next real command and
        // the menu's height.
        int index = -1;
        for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
            if (m_MenuItemList.GetAt(i) == data)
                index = i;
        }
        for (int i = index + 1; index >= 0 && i < m_MenuItemList.GetSize(); ++i) {
            auto* next = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
            if (!next->m_nID)
                continue;
            int w = 0;
            int h = 0;
            measureText(next, w, h);
            width = std::max(width, w);
            break;
        }
        height = GetSystemMetrics(SM_CYMENU);
    }
    item->itemWidth = static_cast<UINT>(std::max(width, 0));
    item->itemHeight = static_cast<UINT>(height);
    ReleaseDC(nullptr, dc);
}

void CNewMenu::MeasureItem_OldStyle(LPMEASUREITEMSTRUCT item, BOOL isMenuBar)
{
    MeasureCommon(item, isMenuBar, static_cast<int>(Measure::OldStyle));
}

void CNewMenu::MeasureItem_Icy(LPMEASUREITEMSTRUCT item, BOOL isMenuBar)
{
    MeasureCommon(item, isMenuBar, static_cast<int>(Measure::Icy));
}

void CNewMenu::MeasureItem_WinXP(LPMEASUREITEMSTRUCT item, BOOL isMenuBar)
{
    MeasureCommon(item, isMenuBar, static_cast<int>(Measure::WinXP));
}

// --- glyphs -------------------------------------------------------------------------------------------

void CNewMenu::DrawSpecialChar(CDC* dc, CRect rect, UINT ch, BOOL bold)
{
    rect.DeflateRect(2, 2);
    LOGFONT lf{};
    lf.lfHeight = -rect.Height();
    lf.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    lf.lfCharSet = 1;
    std::strcpy(lf.lfFaceName, "Marlett");
    HFONT font = CreateFontIndirectA(&lf);
    HGDIOBJ old = SelectObject(dc->m_hDC, font);
    const int mode = SetBkMode(dc->m_hDC, TRANSPARENT);
    const char text[2] = {static_cast<char>(ch), 0};
    DrawTextA(dc->m_hDC, text, 1, &rect, DT_CENTER | DT_SINGLELINE);
    SetBkMode(dc->m_hDC, mode);
    SelectObject(dc->m_hDC, old);
    DeleteObject(font);
}

void CNewMenu::DrawSpecial_OldStyle(CDC* dc, LPCRECT rect, UINT id, DWORD state)
{
    const UINT glyph = SysGlyph(id);
    if (!glyph)
        return;
    COLORREF c = GetSysColor(COLOR_MENUTEXT);
    if (state & (ODS_GRAYED | ODS_INACTIVE))
        c = GetSysColor(COLOR_GRAYTEXT);
    else if (state & ODS_SELECTED)
        c = GetSysColor(COLOR_HIGHLIGHTTEXT);
    SetTextColor(dc->m_hDC, c);
    DrawSpecialChar(dc, CRect(rect), glyph, state & ODS_DEFAULT);
}

void CNewMenu::DrawSpecial_WinXP(CDC* dc, LPCRECT rect, UINT id, DWORD state)
{
    const UINT glyph = SysGlyph(id);
    if (!glyph)
        return;
    CRect r(rect);
    const int grow = (m_iconY - r.Height()) / 2;
    r.InflateRect(0, grow);
    const BOOL bold = (state & ODS_DEFAULT) != 0;
    if (state & (ODS_GRAYED | ODS_INACTIVE)) {
        SetTextColor(dc->m_hDC, GetSysColor(COLOR_GRAYTEXT));
        DrawSpecialChar(dc, r, glyph, bold);
    } else if (state & ODS_SELECTED) {
        CRect shade(r);
        shade.OffsetRect(1, 1);
        SetTextColor(dc->m_hDC, TintColor(GetSelectionColor()));
        DrawSpecialChar(dc, shade, glyph, bold);
        shade.OffsetRect(-2, -2);
        SetTextColor(dc->m_hDC, GetSysColor(COLOR_MENUTEXT));
        DrawSpecialChar(dc, shade, glyph, bold);
    } else {
        SetTextColor(dc->m_hDC, GetSysColor(COLOR_MENUTEXT));
        DrawSpecialChar(dc, r, glyph, bold);
    }
}

void CNewMenu::DrawSpecialCharStyle(CDC* dc, LPCRECT rect, UINT id, DWORD state)
{
    const UINT glyph = SysGlyph(id);
    if (!glyph)
        return;
    SetTextColor(dc->m_hDC, GetSysColor((state & (ODS_GRAYED | ODS_INACTIVE)) ? COLOR_GRAYTEXT : COLOR_MENUTEXT));
    DrawSpecialChar(dc, CRect(rect), glyph, state & ODS_DEFAULT);
}

BOOL CNewMenu::Draw3DCheckmark(CDC* dc, const CRect& rect, HBITMAP checked, HBITMAP unchecked, DWORD state)
{
    if (!(state & ODS_CHECKED) && !unchecked)
        return FALSE;
    CRect r(rect);
    r.DeflateRect(1, 1);
    if (IsNewShell())
        DrawEdge(dc->m_hDC, &r, BDR_SUNKENOUTER, BF_RECT);
    r.InflateRect(2, 2);
    if (!(state & ODS_CHECKED)) {
        DrawBitmapCentered(dc, r, unchecked, (state & ODS_GRAYED) ? 0xA4 : 0x84);
    } else if (!checked) {
        r.OffsetRect(1, 2);
        DrawSpecialChar(dc, r, 0x62, state & ODS_DEFAULT);
    } else if (unchecked) {
        DrawBitmapCentered(dc, r, checked, 0x84);
    } else {
        DrawSpecialChar(dc, r, 0x69, state & ODS_DEFAULT);
    }
    return TRUE;
}

// --- the XP styles ------------------------------------------------------------------------------------

namespace {

struct XpColors {
    COLORREF window;
    COLORREF barColor;
    COLORREF back;
    COLORREF column;
    COLORREF selection;
    COLORREF pen;
};

// The shadow at the right of an open menu bar tab.
void DrawTabShadow(CDC* dc, const CRect& r, COLORREF barColor)
{
    const int height = r.Height();
    if (NumScreenColors() <= 256) {
        for (int x : {r.right - 3, r.right - 4})
            for (int y = 4; y < height; ++y)
                SetPixelV(dc->m_hDC, x, r.top + y, GetSysColor(COLOR_BTNSHADOW));
        return;
    }
    for (int k = 1; k <= 4; ++k) {
        const int x = r.right - k;
        for (int y = 0; y < height; ++y) {
            long level = 0;
            if (y >= 4 && y <= 7)
                level = 6L * k * (y - 3);
            else if (y >= 8)
                level = 30L * k;
            SetPixelV(dc->m_hDC, x, r.top + y, level ? DarkenColor(level, barColor) : barColor);
        }
    }
}

} // namespace

void CNewMenu::DrawItem_WinXP(LPDRAWITEMSTRUCT item, BOOL isMenuBar)
{
    DrawXP(item, isMenuBar, false);
}

void CNewMenu::DrawItem_XP_2003(LPDRAWITEMSTRUCT item, BOOL isMenuBar)
{
    DrawXP(item, isMenuBar, true);
}

void CNewMenu::DrawXP(LPDRAWITEMSTRUCT lpDIS, BOOL bar, bool office2003)
{
    CNewMenuItemData* data = DataOf(lpDIS->itemData);
    if (!data) {
        // A system item with no data of ours draws nothing in this style.
        return;
    }
    const CRect rect(lpDIS->rcItem);
    const bool separator = (data->m_nFlags & MF_SEPARATOR) != 0;
    CNewMemDC memory(&rect, lpDIS->hDC);
    CDC* dc = &memory;
    if (bar || separator) {
        memory.m_bCancel = TRUE;
        dc = CDC::FromHandle(lpDIS->hDC);
    }
    const bool highContrast = IsHighContrast();
    const bool few = NumScreenColors() <= 256;
    COLORREF window = GetSysColor(COLOR_WINDOW);
    COLORREF barColor = GetMenuBarColor(m_hMenu);
    COLORREF back;
    COLORREF column;
    COLORREF selection = GetSelectionColor();
    COLORREF pen = GetSysColor(highContrast ? COLOR_BTNTEXT : COLOR_HIGHLIGHT);
    if (!office2003) {
        back = MixColor(window, barColor);
        column = MixColor(barColor, window);
        if (few)
            column = GetSysColor(COLOR_BTNFACE);
        if (Nearest(dc->m_hDC, back) == Nearest(dc->m_hDC, column)) {
            back = window;
            column = barColor;
        }
    } else {
        window = DarkenColor(10, GetSysColor(COLOR_WINDOW));
        back = MixColor(window, bar ? GetMenuBarColor(nullptr) : GetMenuColor(nullptr));
        column = GetMenuBarColor2003();
        selection = 0xC2EEFF;
        if (Nearest(dc->m_hDC, back) == Nearest(dc->m_hDC, column))
            back = window;
    }
    UINT state = lpDIS->itemState;
    if (bar) {
        if (!m_dwOpenMenu && (state & ODS_SELECTED))
            state = (state & ~ODS_SELECTED) | ODS_HOTLIGHT;
        if (!(state & ODS_HOTLIGHT))
            selection = column;
        back = office2003 ? column : barColor;
    }
    CRect L(rect);
    CRect R(rect);
    CRect S(rect);
    if (!bar) {
        L.right = R.left = L.left + m_iconX + 8;
        if (office2003) {
            DrawGradient(dc, L, back, column, TRUE, FALSE);
        } else {
            Fill(dc, L, column);
        }
    } else {
        S.right -= 4;
    }
    if (bar && office2003 && !(state & (ODS_SELECTED | ODS_HOTLIGHT))) {
        MENUINFO info{};
        info.cbSize = 28;
        info.fMask = MIM_BACKGROUND;
        if (::GetMenuInfo(m_hMenu, &info) && info.hbrBack) {
            POINT oldOrigin{};
            UnrealizeObject(info.hbrBack);
            SetBrushOrgEx(dc->m_hDC, 0, 0, &oldOrigin);
            FillRect(dc->m_hDC, &R, info.hbrBack);
            SetBrushOrgEx(dc->m_hDC, oldOrigin.x, oldOrigin.y, nullptr);
        } else {
            Fill(dc, R, back);
        }
    } else if (bar && office2003) {
        if (few) {
            Fill(dc, R, back);
        } else {
            CRect g(R);
            g.right -= 4;
            Fill(dc, R, back);
            DrawGradient(dc, g, back, column, FALSE, TRUE);
        }
    } else {
        Fill(dc, R, back);
    }
    if (!bar) {
        R.left += 4;
        R.right -= 15;
    }
    if (state & (ODS_HOTLIGHT | ODS_INACTIVE))
        state |= ODS_SELECTED;
    if (bar && (state & ODS_SELECTED) && !(state & ODS_INACTIVE)) {
        SetLastMenuRect(lpDIS->hDC, &S);
        if (!(state & ODS_HOTLIGHT)) {
            const COLORREF base = office2003 ? GetPixel(dc->m_hDC, rect.right - 1, rect.top) : barColor;
            DrawTabShadow(dc, rect, base);
            pen = highContrast ? GetSysColor(COLOR_BTNTEXT) : DarkenColor(0x80, GetMenuBarColor(nullptr));
        }
    }
    bool small = false;
    if ((state & ODS_GRAYED) && (state & ODS_SELECTED) && !m_bSelectDisable) {
        state &= ~ODS_SELECTED;
        CMenuWindowHook& hook = CMenuWindowHook::Instance();
        const DWORD pos = GetMessagePos();
        if (pos == hook.m_dwMsgPos)
            small = true;
        hook.m_dwMsgPos = pos;
    }
    if (separator) {
        if (data->m_nTitleFlags & MFT_TITLE) {
            DrawTitle(lpDIS, bar);
        } else {
            const int middle = rect.top + rect.Height() / 2;
            Fill(dc, RECT{R.left, middle, rect.right, middle + 1}, GetSysColor(COLOR_GRAYTEXT));
        }
        return;
    }
    const bool selected = (state & ODS_SELECTED) != 0;
    const bool grayed = (state & ODS_GRAYED) != 0;
    const bool checked = (state & ODS_CHECKED) != 0;
    if (selected && !(state & ODS_INACTIVE)) {
        if (office2003 && bar) {
            if (few)
                Fill(dc, S, window);
            else
                DrawGradient(dc, S, window, selection, FALSE, TRUE);
        } else {
            Fill(dc, S, selection);
        }
        Outline(dc, S, pen);
    } else if (small) {
        Fill(dc, S, back);
        Outline(dc, S, pen);
    }
    const bool hasImage = data->m_pMenuIcon && data->m_nMenuIconOffset != -1;
    const bool drawIcon = hasImage && !(checked && !hasImage);
    const bool checkBitmap = checked && !hasImage && m_checkmaps &&
                             ((selected && m_selectcheck > 0) || m_unselectcheck > 0);
    if (!data->m_szMenuText.IsEmpty()) {
        HFONT font = MenuFont((state & ODS_DEFAULT) != 0);
        HGDIOBJ old = SelectObject(dc->m_hDC, font);
        SetBkMode(dc->m_hDC, TRANSPARENT);
        COLORREF text = GetSysColor(COLOR_MENUTEXT);
        if (grayed || (bar && (state & ODS_INACTIVE)))
            text = (office2003 && bar && few) ? window : GetSysColor(COLOR_GRAYTEXT);
        else if (highContrast && !bar && !selected)
            text = GetSysColor(COLOR_WINDOWTEXT);
        SetTextColor(dc->m_hDC, text);
        const UINT prefix = (state & ODS_NOACCEL) ? DT_HIDEPREFIX : 0;
        if (!bar) {
            CString left = BeforeTab(data->m_szMenuText);
            CString right = AfterTab(data->m_szMenuText);
            DrawTextA(dc->m_hDC, left, left.GetLength(), &R, 0x24 | prefix);
            if (!right.IsEmpty())
                DrawTextA(dc->m_hDC, right, right.GetLength(), &R, 0x26 | prefix);
        } else {
            DrawTextA(dc->m_hDC, data->m_szMenuText, data->m_szMenuText.GetLength(), &S, 0x25 | prefix);
        }
        SelectObject(dc->m_hDC, old);
    }
    if (bar)
        return;
    auto checkBox = [&](bool sel) {
        CRect box(L);
        box.left += 1;
        box.top += 1;
        box.bottom -= 1;
        box.right -= 2;
        COLORREF fill;
        if (office2003)
            fill = sel ? 0x3E80FE : 0x6FC0FF;
        else if (sel)
            fill = few ? selection : MixColor(selection, GetSysColor(COLOR_HIGHLIGHT));
        else
            fill = MixColor(column, GetSysColor(COLOR_HIGHLIGHT));
        Fill(dc, box, fill);
        Outline(dc, box, pen);
    };
    if (checkBitmap) {
        ImageList_Draw(m_checkmaps->m_hImageList, selected ? 1 : 0, dc->m_hDC, L.left + 3, L.top + 4,
                       ILD_TRANSPARENT);
    } else if (drawIcon) {
        CImageList& list = data->m_pMenuIcon->m_IconsList;
        const CSize size = list.GetImageSize();
        const int x = L.left + 3 + (m_iconX - size.cx) / 2;
        const int y = L.top + (L.Height() - size.cy) / 2;
        const int offset = data->m_nMenuIconOffset;
        if (checked)
            checkBox(selected);
        if (!grayed && selected) {
            HBRUSH brush = CreateSolidBrush(Nearest(dc->m_hDC, TintColor(selection)));
            if (!checked) {
                DrawIconState(dc, list, offset, x + 1, y + 1, DST_ICON | DSS_MONO, brush);
                ImageList_Draw(list.m_hImageList, offset, dc->m_hDC, x - 1, y - 1, ILD_TRANSPARENT);
            } else {
                ImageList_Draw(list.m_hImageList, offset, dc->m_hDC, x, y, ILD_TRANSPARENT);
            }
            DeleteObject(brush);
        } else if (!grayed) {
            ImageList_Draw(list.m_hImageList, m_bEnableXpBlending ? offset + 1 : offset, dc->m_hDC, x, y,
                           ILD_TRANSPARENT);
        } else if (m_bEnableXpBlending) {
            ImageList_Draw(list.m_hImageList, offset + 2, dc->m_hDC, x, y, ILD_TRANSPARENT);
        } else {
            HBRUSH brush = CreateSolidBrush(Nearest(dc->m_hDC, DarkenColor(70, column)));
            DrawIconState(dc, list, offset, x, y, DST_ICON | DSS_MONO, brush);
            DeleteObject(brush);
        }
    } else {
        MENUITEMINFOA info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_CHECKMARKS | MIIM_FTYPE;
        ::GetMenuItemInfoA(m_hMenu, lpDIS->itemID, FALSE, &info);
        const bool radio = (info.fType & MFT_RADIOCHECK) != 0;
        if (!checked && !info.hbmpUnchecked) {
            if (IsSysCommand(lpDIS->itemID) || IsSysCommand(data->m_nID))
                DrawSpecial_WinXP(dc, L, data->m_nID, state);
        } else {
            checkBox(selected);
            SetTextColor(dc->m_hDC, GetSysColor(grayed ? COLOR_GRAYTEXT : COLOR_MENUTEXT));
            if (!checked) {
                DrawBitmapCentered(dc, L, info.hbmpUnchecked, grayed ? 0xA4 : 0x84);
            } else {
                CRect mark(L);
                mark.InflateRect(2, (m_iconY - mark.Height()) / 2 + 2);
                if (!info.hbmpChecked && !radio)
                    DrawSpecialChar(dc, mark, 0x62, state & ODS_DEFAULT);
                else if (info.hbmpChecked && info.hbmpUnchecked)
                    DrawBitmapCentered(dc, L, info.hbmpChecked, 0x84);
                else
                    DrawSpecialChar(dc, mark, 0x69, state & ODS_DEFAULT);
            }
        }
    }
}

// --- the classic styles ------------------------------------------------------------------------

void CNewMenu::DrawItem_Icy(LPDRAWITEMSTRUCT item, BOOL isMenuBar)
{
    DrawClassic(item, isMenuBar, true);
}

void CNewMenu::DrawItem_OldStyle(LPDRAWITEMSTRUCT item, BOOL isMenuBar)
{
    DrawClassic(item, isMenuBar, false);
}

void CNewMenu::DrawClassic(LPDRAWITEMSTRUCT lpDIS, BOOL bar, bool icy)
{
    CNewMenuItemData* data = DataOf(lpDIS->itemData);
    if (!data)
        return;
    const CRect rect(lpDIS->rcItem);
    const bool separator = (data->m_nFlags & MF_SEPARATOR) != 0;
    CNewMemDC memory(&rect, lpDIS->hDC);
    CDC* dc = &memory;
    if (bar || separator) {
        memory.m_bCancel = TRUE;
        dc = CDC::FromHandle(lpDIS->hDC);
    }
    const bool highContrast = IsHighContrast();
    const COLORREF menu = GetMenuColor(nullptr);
    COLORREF back;
    COLORREF dark = DarkenColor(60, menu);
    COLORREF light = LightenColor(60, menu);
    const COLORREF faded = DarkenColor(100, menu);
    COLORREF disabled = Nearest(dc->m_hDC, DarkenColor(70, dark));
    if (icy) {
        back = bar ? GetMenuBarColor(nullptr) : menu;
        if (highContrast) {
            disabled = GetSysColor(COLOR_BTNSHADOW);
            dark = light = GetSysColor(COLOR_BTNTEXT);
        }
    } else {
        back = bar ? GetMenuBarColor(nullptr) : GetSysColor(COLOR_MENU);
        dark = GetSysColor(COLOR_BTNSHADOW);
        light = GetSysColor(COLOR_BTNHIGHLIGHT);
    }
    UINT state = lpDIS->itemState;
    CRect L(rect);
    CRect R(rect);
    CRect S(rect);
    if (icy) {
        L.left += 1;
        R.left += 1;
    }
    if (!bar) {
        L.right = R.left = L.left + m_iconX + 8;
    } else {
        if (!m_dwOpenMenu && (state & ODS_SELECTED))
            state = (state & ~ODS_SELECTED) | ODS_HOTLIGHT;
        if (icy) {
            S.right -= 1;
            S.bottom -= 1;
            S.left -= 1;
            S.top += 2;
        } else {
            S.left += 1;
            S.right -= 2;
            S.OffsetRect(1, -1);
        }
        if (state & (ODS_SELECTED | ODS_HOTLIGHT))
            SetLastMenuRect(lpDIS->hDC, &S);
    }
    bool small = false;
    if ((state & ODS_GRAYED) && (state & ODS_SELECTED) && !m_bSelectDisable) {
        state &= ~ODS_SELECTED;
        CMenuWindowHook& hook = CMenuWindowHook::Instance();
        const DWORD pos = GetMessagePos();
        if (pos == hook.m_dwMsgPos)
            small = true;
        hook.m_dwMsgPos = pos;
    }
    if (separator) {
        if (data->m_nTitleFlags & MFT_TITLE) {
            DrawTitle(lpDIS, bar);
            return;
        }
        CRect r(rect);
        Fill(dc, r, icy ? light : back);
        r.left += 1;
        if (icy)
            r.right -= 1;
        r.top += r.Height() / 2;
        DrawEdge(dc->m_hDC, &r, EDGE_ETCHED, BF_TOP);
        return;
    }
    const bool selected = (state & ODS_SELECTED) != 0;
    const bool hot = (state & ODS_HOTLIGHT) != 0;
    const bool inactive = (state & ODS_INACTIVE) != 0;
    const bool grayed = (state & ODS_GRAYED) != 0;
    const bool checked = (state & ODS_CHECKED) != 0;
    // Background.
    if (!bar) {
        if (icy && !highContrast)
            DrawGradient(dc, rect, LightenColor(30, back), DarkenColor(30, back), FALSE, TRUE);
        else
            Fill(dc, rect, back);
    } else {
        CRect b(S);
        if (icy) {
            b.OffsetRect(0, 1);
            b.InflateRect(1, 0);
            b.bottom += 1;
            if ((selected || hot) && !inactive && !highContrast)
                DrawGradient(dc, b, LightenColor(30, menu), DarkenColor(30, menu), FALSE, TRUE);
            else
                Fill(dc, b, back);
        } else {
            b.OffsetRect(-1, 1);
            b.right += 2;
            Fill(dc, b, back);
        }
    }
    const bool hasImage = data->m_pMenuIcon && data->m_nMenuIconOffset != -1;
    // Selection.
    if (bar) {
        CRect moved(S);
        if (icy)
            moved.OffsetRect(0, 1);
        if (selected && !hot) {
            CDC::FromHandle(dc->m_hDC)->Draw3dRect(&moved, dark, light);
        } else if (hot && !inactive) {
            CDC::FromHandle(dc->m_hDC)->Draw3dRect(&S, light, dark);
        } else if (small) {
            DrawFocusRect(dc->m_hDC, &S);
        }
    } else if (selected) {
        CRect sel(rect);
        if (hasImage || checked)
            sel.left += m_iconX + 6;
        if (icy) {
            const COLORREF c = GetSysColor(COLOR_HIGHLIGHT);
            if (highContrast)
                Fill(dc, sel, c);
            else
                DrawGradient(dc, sel, LightenColor(30, c), DarkenColor(30, c), FALSE, TRUE);
            dc->Draw3dRect(&sel, dark, light);
        } else {
            Fill(dc, sel, GetSysColor(COLOR_HIGHLIGHT));
        }
    } else if (small) {
        DrawFocusRect(dc->m_hDC, &S);
    }
    // Image.
    if (!bar) {
        CRect image(L.left + 3, rect.top + (rect.Height() - m_iconY) / 2, L.left + 3 + m_iconX,
                    rect.top + (rect.Height() - m_iconY) / 2 + m_iconY);
        image.InflateRect(2, 2);
        const bool checkBitmap = checked && !hasImage && m_checkmaps &&
                                 ((selected && m_selectcheck > 0) || m_unselectcheck > 0);
        if (checkBitmap) {
            ImageList_Draw(m_checkmaps->m_hImageList, selected ? 1 : 0, dc->m_hDC, image.left + 2, image.top + 2,
                           ILD_TRANSPARENT);
        } else if (hasImage) {
            if (IsNewShell()) {
                if (checked)
                    dc->Draw3dRect(&image, dark, light);
                else if (selected && !grayed)
                    dc->Draw3dRect(&image, light, dark);
            }
            CImageList& list = data->m_pMenuIcon->m_IconsList;
            const CSize size = list.GetImageSize();
            const int x = image.left + (image.Width() - size.cx) / 2;
            const int y = image.top + (image.Height() - size.cy) / 2;
            if (!grayed) {
                ImageList_Draw(list.m_hImageList, data->m_nMenuIconOffset, dc->m_hDC, x, y, ILD_TRANSPARENT);
            } else if (icy) {
                HBRUSH brush = CreateSolidBrush(disabled);
                DrawIconState(dc, list, data->m_nMenuIconOffset, x, y, DST_ICON | DSS_MONO, brush);
                DeleteObject(brush);
            } else {
                DrawIconState(dc, list, data->m_nMenuIconOffset, x, y, DST_ICON | DSS_DISABLED, nullptr);
            }
        } else {
            MENUITEMINFOA info{};
            info.cbSize = sizeof info;
            info.fMask = MIIM_CHECKMARKS | MIIM_FTYPE;
            ::GetMenuItemInfoA(m_hMenu, lpDIS->itemID, FALSE, &info);
            SetTextColor(dc->m_hDC, GetSysColor(grayed ? COLOR_GRAYTEXT : COLOR_MENUTEXT));
            HBITMAP checkedBitmap = info.hbmpChecked;
            if (checked && !checkedBitmap && (info.fType & MFT_RADIOCHECK) && !info.hbmpUnchecked) {
                // A radio item shows its bullet.
                CRect r(image);
                r.DeflateRect(1, 1);
                if (IsNewShell())
                    DrawEdge(dc->m_hDC, &r, BDR_SUNKENOUTER, BF_RECT);
                r.InflateRect(2, 2);
                DrawSpecialChar(dc, r, 0x69, state & ODS_DEFAULT);
            } else if (!Draw3DCheckmark(dc, image, checkedBitmap, info.hbmpUnchecked, state)) {
                CRect glyph(L);
                if (icy)
                    DrawSpecial_OldStyle(dc, glyph, data->m_nID, state);
                else
                    DrawSpecial_OldStyle(dc, glyph, data->m_nID, state);
            }
        }
    }
    // Text.
    if (data->m_szMenuText.IsEmpty())
        return;
    HFONT font = MenuFont((state & ODS_DEFAULT) != 0);
    HGDIOBJ old = SelectObject(dc->m_hDC, font);
    SetBkMode(dc->m_hDC, TRANSPARENT);
    COLORREF text = GetSysColor(COLOR_MENUTEXT);
    if (!bar && selected)
        text = GetSysColor(COLOR_HIGHLIGHTTEXT);
    if (bar && inactive)
        text = faded;
    const UINT prefix = (state & ODS_NOACCEL) ? DT_HIDEPREFIX : 0;
    CRect t(rect);
    t.left += bar ? 6 : m_iconX + 12;
    t.top += 1;
    t.bottom -= 1;
    CString left = BeforeTab(data->m_szMenuText);
    CString right = AfterTab(data->m_szMenuText);
    if (!right.IsEmpty())
        t.right -= m_iconX;
    auto draw = [&](int dx, COLORREF c) {
        SetTextColor(dc->m_hDC, c);
        if (bar) {
            CRect b(S);
            b.OffsetRect(-1, 0);
            if (selected)
                b.OffsetRect(1, 1);
            b.OffsetRect(dx, dx);
            DrawTextA(dc->m_hDC, data->m_szMenuText, data->m_szMenuText.GetLength(), &b, 0x25 | prefix);
            return;
        }
        CRect a(t);
        a.OffsetRect(dx, dx);
        DrawTextA(dc->m_hDC, left, left.GetLength(), &a, 0x24 | prefix);
        if (!right.IsEmpty())
            DrawTextA(dc->m_hDC, right, right.GetLength(), &a, 0x26 | prefix);
    };
    if (grayed) {
        if (selected) {
            draw(0, back);
        } else if (icy) {
            draw(0, disabled);
        } else {
            draw(1, GetSysColor(COLOR_BTNHIGHLIGHT));
            draw(0, GetSysColor(COLOR_GRAYTEXT));
        }
    } else {
        draw(0, text);
    }
    SelectObject(dc->m_hDC, old);
}

void CNewMenu::DrawItem_SpecialStyle(LPDRAWITEMSTRUCT lpDIS, BOOL bar)
{
    if (!bar) {
        DrawItem_OldStyle(lpDIS, FALSE);
        return;
    }
    CNewMenuItemData* data = DataOf(lpDIS->itemData);
    if (!data)
        return;
    CDC* dc = CDC::FromHandle(lpDIS->hDC);
    CRect rect(lpDIS->rcItem);
    const UINT state = lpDIS->itemState;
    const bool active = (state & (ODS_HOTLIGHT | ODS_SELECTED)) != 0;
    if (active)
        SetLastMenuRect(lpDIS->hDC, &rect);
    Fill(dc, rect, active ? GetSysColor(COLOR_HIGHLIGHT) : GetMenuBarColor(nullptr));
    HFONT font = MenuFont(false);
    HGDIOBJ old = SelectObject(dc->m_hDC, font);
    SetBkMode(dc->m_hDC, TRANSPARENT);
    SetTextColor(dc->m_hDC, GetSysColor((state & ODS_GRAYED) ? COLOR_GRAYTEXT
                                        : active               ? COLOR_HIGHLIGHTTEXT
                                                               : COLOR_MENUTEXT));
    DrawTextA(dc->m_hDC, data->m_szMenuText, data->m_szMenuText.GetLength(), &rect, 0x25);
    SelectObject(dc->m_hDC, old);
}

// --- titles ------------------------------------------------------------------------------------------

void CNewMenu::DrawMenuTitle(LPDRAWITEMSTRUCT lpDIS, BOOL)
{
    CNewMenuItemData* data = DataOf(lpDIS->itemData);
    if (!data)
        return;
    CDC* dc = CDC::FromHandle(lpDIS->hDC);
    const COLORREF cBack = MixColor(GetSysColor(COLOR_WINDOW), GetMenuColor(nullptr));
    CRect rect(lpDIS->rcItem);
    LOGFONT lf = m_MenuTitleFont;
    const bool vertical = (data->m_nTitleFlags & MFT_SIDE_TITLE) != 0;
    int x = rect.left + 2;
    int y = rect.top;
    if (vertical) {
        RECT clip{};
        GetClipBox(dc->m_hDC, &clip);
        rect.top = clip.top;
        rect.bottom = clip.bottom;
        rect.right += GetSystemMetrics(SM_CXMENUCHECK);
        lf.lfEscapement = 900;
        lf.lfOrientation = 900;
        y = rect.bottom - 4;
    } else {
        lf.lfEscapement = 0;
    }
    HFONT font = CreateFontIndirectA(&lf);
    HGDIOBJ old = SelectObject(dc->m_hDC, font);
    SetTextColor(dc->m_hDC, GetSysColor(COLOR_CAPTIONTEXT));
    SetBkMode(dc->m_hDC, TRANSPARENT);
    const CString& text = data->m_szMenuText;
    SIZE size{};
    GetTextExtentPoint32A(dc->m_hDC, text, text.GetLength(), &size);
    const DWORD flags = data->m_nTitleFlags;
    const COLORREF caption = GetSysColor(COLOR_ACTIVECAPTION);
    if (flags & MFT_GRADIENT) {
        if (vertical)
            DrawGradient(dc, rect, cBack, caption, FALSE, FALSE);
        else
            DrawGradient(dc, rect, caption, cBack, TRUE, FALSE);
    } else if (flags & MFT_ROUND) {
        if (vertical) {
            y -= 2;
            rect.right = rect.left + size.cy + 4;
        } else {
            x += std::min<int>((rect.Width() - size.cx) / 2, 10);
        }
        HBRUSH brush = CreateSolidBrush(caption);
        HGDIOBJ oldBrush = SelectObject(dc->m_hDC, brush);
        HGDIOBJ oldPen = SelectObject(dc->m_hDC, GetStockObject(WHITE_PEN));
        RoundRect(dc->m_hDC, rect.left, rect.top, rect.right, rect.bottom, 10, 10);
        SelectObject(dc->m_hDC, oldPen);
        SelectObject(dc->m_hDC, oldBrush);
        DeleteObject(brush);
    } else {
        Fill(dc, rect, caption);
    }
    if (flags & MFT_SUNKEN)
        dc->Draw3dRect(&rect, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT));
    if (flags & MFT_CENTER) {
        if (vertical)
            y = rect.bottom - (rect.Height() - size.cx) / 2;
        else
            x = rect.left + (rect.Width() - size.cx) / 2;
    }
    TextOutA(dc->m_hDC, x, y, text, text.GetLength());
    if (flags & MFT_LINE) {
        if (!vertical) {
            CRect line(rect.left + 2, rect.bottom - 7, rect.right - 2, rect.bottom - 5);
            dc->Draw3dRect(&line, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW));
            line.OffsetRect(0, 3);
            line.DeflateRect(10, 0);
            dc->Draw3dRect(&line, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT));
        } else {
            CRect line(rect.left + 20, rect.top + 5, rect.left + 22, rect.bottom - 5);
            dc->Draw3dRect(&line, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT));
            line.OffsetRect(3, 0);
            line.DeflateRect(0, 10);
            dc->Draw3dRect(&line, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT));
        }
    }
    SelectObject(dc->m_hDC, old);
    DeleteObject(font);
}

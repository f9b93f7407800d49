#include "frames/cnewtoolbar.h"

#include "menus/cnewmenu.h"
#include "menus/menucolors.h"
#include "platform/windows/sysmetrics.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/menus/winmenu.h"

#include <algorithm>
#include <vector>

int CNewToolBar::m_NewToolbar = 1;
int CNewToolBar::m_Win98TooltipBug = 1;

namespace {

// One list for the disabled images of all bars loaded from a single strip.
CImageList& SharedImages()
{
    static CImageList list;
    return list;
}

UINT Mode()
{
    return CNewMenu::GetMenuDrawMode();
}

// The original and special modes, and anything unknown: the framework's look.
bool Plain(UINT mode)
{
    return mode <= 1 || mode == 4 || mode == 5 || mode > 9;
}

bool Xp(UINT mode)
{
    return mode == 2 || mode == 3;
}

bool Icy(UINT mode)
{
    return mode == 6 || mode == 7;
}

bool Office(UINT mode)
{
    return mode == 8 || mode == 9;
}

// The four colours of the gradient bars (icy and Office 2003), with the
// colour they derive from.
struct Shades {
    COLORREF base, light, midLight, midDark, edge;
};

Shades ShadesOf(UINT mode)
{
    if (Icy(mode)) {
        const COLORREF base = CNewMenu::GetMenuColor(nullptr);
        return {base, LightenColor(60, base), base, DarkenColor(60, base), DarkenColor(150, base)};
    }
    const COLORREF bar = CNewMenu::GetMenuBarColor2003();
    // The bar colours of Windows' own themes have their tool bars' colours.
    switch (bar) {
    case 0xAADADA: return {bar, 0xDEF7F4, 0xACDED1, 0x91C6B7, 0x588060};
    case 0xE5D7D7: return {bar, 0xFAF4F3, 0xECE2E1, 0xB59799, 0x947C7C};
    case 0xF5C2A3: return {bar, 0xFEECDD, 0xF9DBC4, 0xE2A981, 0x9C613B};
    default:
        return {bar, LightenColor(140, bar), LightenColor(115, bar), DarkenColor(40, bar), DarkenColor(110, bar)};
    }
}

// The colour the bar's edges and the space around it show.
COLORREF ModeColour(UINT mode)
{
    return Icy(mode) ? CNewMenu::GetMenuColor(nullptr) : CNewMenu::GetMenuBarColor2003();
}

void Frame(CDC* dc, const CRect& rect, COLORREF colour)
{
    dc->Draw3dRect(&rect, colour, colour);
}

void Line(CDC* dc, int x, int y, int cx, int cy, COLORREF colour)
{
    if (cx > 0 && cy > 0)
        dc->FillSolidRect(x, y, cx, cy, colour);
}

} // namespace

CNewToolBar::CNewToolBar() = default;

CNewToolBar::~CNewToolBar() = default;

int CNewToolBar::OnCreate()
{
    if (CToolBar::OnCreate() == -1)
        return -1;
    if (!m_NewToolbar)
        return 0;
    const UINT mode = Mode();
    COLORSCHEME scheme{sizeof(COLORSCHEME), CLR_DEFAULT, CLR_DEFAULT};
    if (Xp(mode)) {
        scheme.clrBtnShadow = TintColor(CNewMenu::GetMenuBarColorXP());
        SendMessage(CCM_SETCOLORSCHEME, 0, reinterpret_cast<LPARAM>(&scheme));
    } else if (Office(mode)) {
        SetBorders(3, 1, 3, 1);
        scheme.clrBtnShadow = TintColor(CNewMenu::GetMenuBarColor2003());
        SendMessage(CCM_SETCOLORSCHEME, 0, reinterpret_cast<LPARAM>(&scheme));
    }
    return 0;
}

void CNewToolBar::OnBarStyleChange(DWORD oldStyle, DWORD newStyle)
{
    const UINT mode = Mode();
    if (m_NewToolbar && (Icy(mode) || Office(mode))) {
        // A floating bar's gradient fills its mini frame to the edges.
        if (newStyle & CBRS_FLOATING)
            SetBorders(0, 0, 0, 0);
        else
            SetBorders(3, 1, 3, 1);
    }
    CToolBar::OnBarStyleChange(oldStyle, newStyle);
}

BOOL CNewToolBar::LoadToolBar(UINT id)
{
    const BOOL loaded = CToolBar::LoadToolBar(id);
    if (loaded)
        LoadHiColor(MAKEINTRESOURCE(id));
    return loaded;
}

BOOL CNewToolBar::LoadToolBar(LPCSTR name)
{
    // Tool bar resources are numbered; a number comes back to the overload
    // above through the base.
    return CToolBar::LoadToolBar(name);
}

BOOL CNewToolBar::LoadHiColor(LPCSTR name, COLORREF transparent)
{
    if (!m_NewToolbar)
        return FALSE;
    CBitmap bitmap;
    if (!bitmap.LoadBitmap(name))
        return FALSE;
    CBitmap* strips[] = {&bitmap};
    return LoadHiColor(strips, strips, 1, transparent);
}

BOOL CNewToolBar::LoadHiColor(CBitmap* const* hot, CBitmap* const* disabled, int count, COLORREF transparent)
{
    if (!m_NewToolbar || count <= 0 || !hot || !disabled || !hot[0] || !m_hWnd)
        return FALSE;
    if (transparent == 0xFF000000) {
        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        CBitmap* old = dc.SelectObject(hot[0]);
        transparent = dc.GetPixel(0, 0);
        dc.SelectObject(old);
    }
    m_ImageList.DeleteImageList();
    m_ImageList.Create(m_sizeImage.cx, m_sizeImage.cy, ILC_COLOR24 | ILC_MASK, 0, 10);
    for (int i = 0; i < count; ++i) {
        if (hot[i])
            m_ImageList.Add(hot[i], transparent);
    }
    SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(m_ImageList.m_hImageList));

    CImageList& target = count == 1 ? m_ImageListDisabled : SharedImages();
    if (count == 1 || !SharedImages().GetImageCount()) {
        const UINT mode = Mode();
        const COLORREF tint = LightenColor(115, Office(mode) ? CNewMenu::GetMenuBarColor2003()
                                                             : CNewMenu::GetMenuBarColorXP());
        COLORREF mask = transparent;
        for (int i = 0; i < count; ++i) {
            if (disabled[i])
                mask = MakeGrayAlphablend(disabled[i], 110, tint);
        }
        target.DeleteImageList();
        target.Create(m_sizeImage.cx, m_sizeImage.cy, ILC_COLOR24 | ILC_MASK, 0, 10);
        for (int i = 0; i < count; ++i) {
            if (disabled[i])
                target.Add(disabled[i], mask);
        }
    }
    Invalidate();
    return TRUE;
}

COLORREF CNewToolBar::MakeGrayAlphablend(CBitmap* bitmap, int level, COLORREF colour)
{
    BITMAP info{};
    if (!bitmap || !bitmap->GetBitmap(&info))
        return 0;
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    CBitmap* old = dc.SelectObject(bitmap);
    const int keep = 255 - level;
    for (int y = 0; y < info.bmHeight; ++y) {
        for (int x = 0; x < info.bmWidth; ++x) {
            const COLORREF c = dc.GetPixel(x, y);
            const int gray = (GetRValue(c) + GetGValue(c) + GetBValue(c)) / 3;
            const auto mix = [&](int channel) { return static_cast<BYTE>((gray * level + channel * keep) / 256); };
            dc.SetPixel(x, y, RGB(mix(GetRValue(colour)), mix(GetGValue(colour)), mix(GetBValue(colour))));
        }
    }
    const COLORREF corner = dc.GetPixel(0, 0);
    dc.SelectObject(old);
    return corner;
}

// --- background ---------------------------------------------------------------

void CNewToolBar::PaintToolBarBackGnd(CDC* dc, CPoint clientOrigin)
{
    const UINT mode = Mode();
    if (!m_NewToolbar || IsFloating() || !(Icy(mode) || Office(mode)))
        return;
    // The whole window, in the coordinates of `dc`; `origin` is where the
    // device's (0, 0) lies on the screen.
    CRect window;
    GetWindowRect(&window);
    CPoint origin(0, 0);
    ClientToScreen(&origin);
    origin -= clientOrigin;
    CRect area = window;
    area.OffsetRect(-origin.x, -origin.y);
    CPoint parentOrigin(0, 0);
    if (CWnd* parent = GetParent())
        parent->ClientToScreen(&parentOrigin);
    CFrameWnd* frame = GetDockingFrame();
    const HMENU menu = frame ? ::GetMenu(frame->m_hWnd) : nullptr;
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    if (menu && GetMenuInfo(menu, &info) && info.hbrBack) {
        const CPoint old = dc->SetBrushOrg(parentOrigin.x - origin.x, 0);
        dc->FillRect(&area, CBrush::FromHandle(info.hbrBack));
        dc->SetBrushOrg(old);
    } else {
        dc->FillSolidRect(&area, ModeColour(mode));
    }
}

void CNewToolBar::EraseBackground(CDC* dc, CPoint clientOrigin)
{
    const UINT mode = Mode();
    const bool floating = IsFloating() != FALSE;
    CRect rect;
    if (floating) {
        GetClientRect(&rect);
    } else {
        // A docked bar's background runs under its borders and gripper.
        GetWindowRect(&rect);
        ScreenToClient(&rect);
    }
    rect.OffsetRect(clientOrigin);
    if (!Icy(mode) && !Office(mode)) {
        const COLORREF fill = Xp(mode) ? MixColor(CNewMenu::GetMenuBarColorXP(), GetSysColor(COLOR_WINDOW))
                                       : GetSysColor(COLOR_3DLIGHT);
        dc->FillSolidRect(&rect, fill);
        return;
    }
    const Shades s = ShadesOf(mode);
    const bool horizontal = floating || (m_dwStyle & CBRS_ORIENT_HORZ);
    PaintToolBarBackGnd(dc, clientOrigin);
    CRect inner = rect;
    if (horizontal)
        inner.DeflateRect(m_cxLeftBorder, m_cyTopBorder, m_cxRightBorder, m_cyBottomBorder);
    else
        inner.DeflateRect(m_cyTopBorder, m_cxLeftBorder, m_cyBottomBorder, m_cxRightBorder);
    if (inner.IsRectEmpty())
        return;
    const COLORREF lightLine = LightenColor(125, s.base);
    if (!horizontal) {
        const int mid = inner.left + inner.Width() / 2;
        DrawGradient(dc, CRect(inner.left, inner.top, mid, inner.bottom), s.light, s.midLight, TRUE, FALSE);
        DrawGradient(dc, CRect(mid, inner.top, inner.right, inner.bottom), s.midLight, s.midDark, TRUE, FALSE);
        if (Icy(mode))
            Line(dc, inner.left, inner.top, 1, inner.Height(), lightLine);
        Line(dc, inner.right - 1, inner.top, 1, inner.Height(), s.edge);
        return;
    }
    const int rows = static_cast<int>(SendMessage(TB_GETROWS));
    if (floating && rows > 1) {
        // Each row of a wrapped bar is a little bar of its own.
        const int count = static_cast<int>(SendMessage(TB_BUTTONCOUNT));
        int top = -1;
        int bottom = -1;
        const auto emit = [&] {
            if (top < 0 || bottom <= top)
                return;
            const int mid = top + (bottom - top) / 2;
            DrawGradient(dc, CRect(inner.left, top, inner.right, mid), s.light, s.midLight, FALSE, FALSE);
            DrawGradient(dc, CRect(inner.left, mid, inner.right, bottom), s.midLight, s.midDark, FALSE, FALSE);
            top = bottom = -1;
        };
        for (int i = 0; i < count; ++i) {
            TBBUTTON b{};
            SendMessage(TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&b));
            if (b.fsState & TBSTATE_HIDDEN)
                continue;
            CRect r;
            SendMessage(TB_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&r));
            r.OffsetRect(clientOrigin);
            const bool separator = (b.fsStyle & TBSTYLE_SEP) != 0;
            if (separator && (b.fsState & TBSTATE_WRAP)) {
                emit();
                DrawGradient(dc, CRect(inner.left, r.top, inner.right, r.bottom), s.midDark, s.light, FALSE, FALSE);
                continue;
            }
            top = top < 0 ? r.top : std::min(top, static_cast<int>(r.top));
            bottom = std::max(bottom, static_cast<int>(r.bottom));
            if (b.fsState & TBSTATE_WRAP)
                emit();
        }
        emit();
        return;
    }
    const int mid = inner.top + inner.Height() / 2;
    DrawGradient(dc, CRect(inner.left, inner.top, inner.right, mid), s.light, s.midLight, FALSE, FALSE);
    DrawGradient(dc, CRect(inner.left, mid, inner.right, inner.bottom), s.midLight, s.midDark, FALSE, FALSE);
    if (!floating) {
        Line(dc, inner.left, rect.bottom - 3, inner.Width(), 1, s.edge);
        if (Icy(mode))
            Line(dc, inner.left, inner.top, inner.Width(), 1, lightLine);
    }
}

BOOL CNewToolBar::OnEraseBkgnd()
{
    if (!m_NewToolbar)
        return CToolBar::OnEraseBkgnd();
    CClientDC dc(this);
    EraseBackground(&dc, CPoint(0, 0));
    return TRUE;
}

void CNewToolBar::OnNcPaint()
{
    if (!m_NewToolbar) {
        CToolBar::OnNcPaint();
        return;
    }
    EraseNonClient();
}

void CNewToolBar::EraseNonClient()
{
    if (!m_NewToolbar) {
        CToolBar::EraseNonClient();
        return;
    }
    CWindowDC dc(this);
    CRect window;
    GetWindowRect(&window);
    CPoint client(0, 0);
    ClientToScreen(&client);
    CRect clientRect;
    GetClientRect(&clientRect);
    clientRect.OffsetRect(client.x - window.left, client.y - window.top);
    window.OffsetRect(-window.left, -window.top);
    // Only what lies around the client area: the client paints itself.
    dc.ExcludeClipRect(&clientRect);
    EraseBackground(&dc, clientRect.TopLeft());
    CRect borders = window;
    DrawBorders(&dc, borders);
    DrawGripper(&dc, window);
}

void CNewToolBar::DrawBorders(CDC* dc, CRect& rect)
{
    if (!m_NewToolbar || Plain(Mode()))
        CToolBar::DrawBorders(dc, rect);
}

void CNewToolBar::DrawGripper(CDC* dc, const CRect& rect)
{
    if (!(m_dwStyle & CBRS_GRIPPER) || (m_dwStyle & CBRS_FLOATING))
        return;
    const UINT mode = Mode();
    if (!m_NewToolbar || Plain(mode)) {
        CToolBar::DrawGripper(dc, rect);
        return;
    }
    const bool horizontal = (m_dwStyle & CBRS_ORIENT_HORZ) != 0;
    if (Xp(mode)) {
        const COLORREF ink = TintColor(CNewMenu::GetMenuBarColorXP());
        if (horizontal) {
            for (int y = rect.top + m_cyTopBorder + 4; y < rect.bottom - 8; y += 2)
                Line(dc, rect.left + 4, y, 3, 1, ink);
        } else {
            for (int x = rect.left + m_cyTopBorder + 4; x < rect.right - 4; x += 2)
                Line(dc, x, rect.top + 4, 1, 3, ink);
        }
        return;
    }
    const bool icy = Icy(mode);
    const COLORREF dot = icy ? DarkenColor(100, CNewMenu::GetMenuColor(nullptr))
                             : DarkenColor(10, GetSysColor(COLOR_ACTIVECAPTION));
    const auto paintDot = [&](int x, int y) {
        if (!icy)
            Line(dc, x + 1, y + 1, 2, 2, RGB(255, 255, 255));
        Line(dc, x, y, 2, 2, dot);
    };
    CRect inner = rect;
    if (horizontal) {
        inner.DeflateRect(m_cxLeftBorder, m_cyTopBorder, m_cxRightBorder, m_cyBottomBorder);
        for (int y = inner.top + 3; y + 2 <= inner.bottom - 3; y += 4)
            paintDot(inner.left + 2, y);
    } else {
        inner.DeflateRect(m_cyTopBorder, m_cxLeftBorder, m_cyBottomBorder, m_cxRightBorder);
        for (int x = inner.left + 3; x + 2 <= inner.right - 3; x += 4)
            paintDot(x, inner.top + 2);
    }
    PaintCorner(dc, inner, icy ? GetSysColor(COLOR_3DLIGHT) : CNewMenu::GetMenuBarColor2003());
}

void CNewToolBar::PaintCorner(CDC* dc, const CRect& rect, COLORREF colour)
{
    if (rect.Width() < 2 || rect.Height() < 2)
        return;
    const int l = rect.left;
    const int t = rect.top;
    const int r = rect.right - 1;
    const int b = rect.bottom - 1;
    dc->SetPixel(l, t, colour);
    dc->SetPixel(l + 1, t, colour);
    dc->SetPixel(l, t + 1, colour);
    dc->SetPixel(r, t, colour);
    dc->SetPixel(r - 1, t, colour);
    dc->SetPixel(r, t + 1, colour);
    dc->SetPixel(l, b, colour);
    dc->SetPixel(l + 1, b, colour);
    dc->SetPixel(l, b - 1, colour);
    dc->SetPixel(r, b, colour);
    dc->SetPixel(r - 1, b, colour);
    dc->SetPixel(r, b - 1, colour);
}

// --- buttons -------------------------------------------------------------------

void CNewToolBar::OnPaint()
{
    if (!m_NewToolbar) {
        CToolBar::OnPaint();
        return;
    }
    CPaintDC dc(this);
    const HWND self = m_hWnd;
    CWnd* parent = GetParent();
    if (!parent)
        return;
    SendMessage(TB_SETPARENT, reinterpret_cast<WPARAM>(parent->m_hWnd));
    // Hot buttons show only while the user works in this frame.
    CWnd* frame = GetTopLevelParent();
    CWnd* focus = CWnd::GetFocus();
    const bool focusInside = frame && focus && (focus == frame || frame->IsChild(focus));

    CRect client;
    GetClientRect(&client);
    NMTBCUSTOMDRAW cd{};
    cd.nmcd.hdr.hwndFrom = m_hWnd;
    cd.nmcd.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID());
    cd.nmcd.hdr.code = NM_CUSTOMDRAW;
    cd.nmcd.hdc = dc.m_hDC;
    cd.nmcd.rc = client;
    const auto send = [&](DWORD stage) {
        cd.nmcd.dwDrawStage = stage;
        parent->SendMessage(WM_NOTIFY, cd.nmcd.hdr.idFrom, reinterpret_cast<LPARAM>(&cd));
        return IsWindow(self) != FALSE;
    };
    if (!send(CDDS_PREPAINT) || !send(CDDS_PREERASE) || !send(CDDS_POSTERASE))
        return;

    const int count = static_cast<int>(SendMessage(TB_BUTTONCOUNT));
    CPoint cursor;
    GetCursorPos(&cursor);
    ScreenToClient(&cursor);
    const UINT mode = Mode();
    COLORREF dark = GetSysColor(COLOR_3DDKSHADOW);
    COLORREF light = GetSysColor(COLOR_3DLIGHT);
    if (Xp(mode)) {
        dark = light = DarkenColor(40, CNewMenu::GetMenuBarColorXP());
    } else if (Icy(mode)) {
        light = LightenColor(150, dark);
    } else if (Office(mode)) {
        dark = DarkenColor(40, CNewMenu::GetMenuBarColor2003());
        light = LightenColor(140, CNewMenu::GetMenuBarColor2003());
    }
    const int thick = dark == light ? 1 : 2;
    const bool floating = IsFloating() != FALSE;
    // A floating bar lies in rows, as one docked at the top or bottom.
    const bool across = floating || (m_dwStyle & CBRS_ORIENT_HORZ);
    CRect previous(0, 0, 0, 0);
    for (int i = 0; i < count; ++i) {
        TBBUTTON b{};
        SendMessage(TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&b));
        if (b.fsState & TBSTATE_HIDDEN)
            continue;
        CRect r;
        SendMessage(TB_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&r));
        if (b.fsStyle & TBSTYLE_SEP) {
            const bool wrapped = (b.fsState & TBSTATE_WRAP) != 0;
            if ((!wrapped || !floating) && across) {
                dc.Draw3dRect(r.left + r.Width() / 2 - 1, r.top + 3, thick, r.Height() - 6, dark, light);
            } else if (wrapped && floating) {
                const int y = r.top + (r.Height() - thick) / 2;
                dc.Draw3dRect(client.left + 4, y, client.right - 2 - (client.left + 4), thick, dark, light);
            } else {
                const int y = previous.bottom + (r.bottom - previous.bottom - thick) / 2;
                dc.Draw3dRect(r.left + 3, y, previous.right - 3 - (r.left + 3), thick, dark, light);
            }
            previous = r;
            continue;
        }
        previous = r;
        if (!b.idCommand)
            continue;
        UINT state = 0;
        if (b.fsState & TBSTATE_CHECKED)
            state |= CDIS_CHECKED;
        if (b.fsState & TBSTATE_INDETERMINATE)
            state |= CDIS_INDETERMINATE;
        if (!(b.fsState & TBSTATE_ENABLED))
            state |= CDIS_DISABLED;
        if (focusInside && r.PtInRect(cursor))
            state |= (b.fsState & TBSTATE_PRESSED) ? CDIS_HOT | CDIS_SELECTED : CDIS_HOT;
        else if (b.fsState & TBSTATE_PRESSED)
            state |= CDIS_HOT;
        cd.nmcd.rc = r;
        cd.nmcd.dwItemSpec = static_cast<DWORD_PTR>(b.idCommand);
        cd.nmcd.uItemState = state;
        cd.nmcd.lItemlParam = static_cast<LPARAM>(b.dwData);
        if (!send(CDDS_ITEMPREPAINT) || !send(CDDS_ITEMPOSTPAINT))
            return;
    }
    cd.nmcd.rc = client;
    cd.nmcd.dwItemSpec = 0;
    cd.nmcd.uItemState = 0;
    send(CDDS_POSTPAINT);
}

LRESULT CNewToolBar::OnNMCustomdraw(NMHDR* header)
{
    if (!m_NewToolbar || !header)
        return 0;
    auto* info = reinterpret_cast<NMTBCUSTOMDRAW*>(header);
    switch (info->nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        return CDRF_SKIPDEFAULT | CDRF_NOTIFYPOSTPAINT | CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        PaintHotButton(info);
        PaintTBButton(info);
        return CDRF_SKIPDEFAULT;
    case CDDS_POSTPAINT:
    case CDDS_ITEMPOSTPAINT:
        return CDRF_NOTIFYPOSTPAINT | CDRF_SKIPDEFAULT;
    default:
        return 0;
    }
}

LRESULT CNewToolBar::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_REFLECT_BASE + WM_NOTIFY) {
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        if (header && header->code == NM_CUSTOMDRAW && header->hwndFrom == m_hWnd)
            return OnNMCustomdraw(header);
    }
    return CToolBar::WindowProc(message, wParam, lParam);
}

void CNewToolBar::PaintOrangeState(CDC* dc, const CRect& rect, BOOL light)
{
    CPen pen(PS_INSIDEFRAME, 1, 0x840204);
    CPen* oldPen = dc->SelectObject(&pen);
    CGdiObject* oldBrush = dc->SelectStockObject(NULL_BRUSH);
    dc->Rectangle(&rect);
    dc->SelectObject(oldPen);
    if (oldBrush)
        dc->SelectObject(oldBrush->m_hObject);
    CRect inside = rect;
    inside.DeflateRect(1, 1);
    if (light)
        DrawGradient(dc, inside, 0xDBEFFA, 0x97D4FF, FALSE, FALSE);
    else
        DrawGradient(dc, inside, 0x6B97F2, 0xA3CAF9, FALSE, FALSE);
}

void CNewToolBar::PaintHotButton(NMTBCUSTOMDRAW* info)
{
    CDC* dc = CDC::FromHandle(info->nmcd.hdc);
    const CRect rect(info->nmcd.rc);
    const UINT state = info->nmcd.uItemState;
    const bool hot = (state & CDIS_HOT) != 0;
    const bool selected = hot && (state & CDIS_SELECTED);
    const bool checked = !hot && (state & CDIS_CHECKED);
    if (!hot && !checked)
        return;
    const UINT mode = Mode();
    if (Xp(mode)) {
        dc->FillSolidRect(&rect, GetSelectionColor());
        Frame(dc, rect, GetSysColor(COLOR_HIGHLIGHT));
    } else if (Icy(mode)) {
        const COLORREF hl = GetSysColor(COLOR_HIGHLIGHT);
        const COLORREF frame = DarkenColor(60, hl);
        if (checked)
            dc->FillSolidRect(&rect, LightenColor(60, hl));
        else if (selected)
            DrawGradient(dc, rect, hl, DarkenColor(60, hl), FALSE, FALSE);
        else
            DrawGradient(dc, rect, LightenColor(60, hl), hl, FALSE, FALSE);
        Frame(dc, rect, frame);
    } else if (Office(mode)) {
        if (checked) {
            dc->FillSolidRect(&rect, 0xC2EEFF);
            Frame(dc, rect, 0x840204);
        } else {
            PaintOrangeState(dc, rect, !selected);
        }
    } else if (selected || checked) {
        dc->Draw3dRect(&rect, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_HIGHLIGHTTEXT));
    } else {
        dc->Draw3dRect(&rect, GetSysColor(COLOR_HIGHLIGHTTEXT), GetSysColor(COLOR_BTNSHADOW));
    }
}

HIMAGELIST CNewToolBar::NormalImages() const
{
    if (m_ImageList.GetSafeHandle() && m_ImageList.GetImageCount())
        return m_ImageList.GetSafeHandle();
    return reinterpret_cast<HIMAGELIST>(const_cast<CNewToolBar*>(this)->SendMessage(TB_GETIMAGELIST));
}

void CNewToolBar::PaintTBButton(NMTBCUSTOMDRAW* info)
{
    CDC* dc = CDC::FromHandle(info->nmcd.hdc);
    const CRect rect(info->nmcd.rc);
    const UINT state = info->nmcd.uItemState;
    const int index = CommandToIndex(static_cast<UINT>(info->nmcd.dwItemSpec));
    if (index < 0)
        return;
    UINT id = 0;
    UINT style = 0;
    int image = 0;
    GetButtonInfo(index, id, style, image);
    const bool disabled = (state & CDIS_DISABLED) != 0;
    const bool selected = (state & CDIS_SELECTED) != 0;
    const bool hot = (state & CDIS_HOT) != 0;
    HIMAGELIST list = NormalImages();
    bool gray = false;
    if (disabled) {
        if (m_ImageListDisabled.GetSafeHandle() && m_ImageListDisabled.GetImageCount())
            list = m_ImageListDisabled.GetSafeHandle();
        else if (SharedImages().GetSafeHandle() && SharedImages().GetImageCount())
            list = SharedImages().GetSafeHandle();
        else
            gray = true; // no gray images: the system's embossed look
    }
    if (!list || image < 0 || image >= ImageList_GetImageCount(list))
        return;
    const UINT mode = Mode();
    int cx = m_sizeImage.cx;
    int cy = m_sizeImage.cy;
    ImageList_GetIconSize(list, &cx, &cy);
    const auto drawState = [&](CPoint at, UINT flags, HBRUSH brush) {
        if (HICON icon = ImageList_GetIcon(list, image, ILD_TRANSPARENT)) {
            dc->DrawState(at, CSize(cx, cy), icon, flags, brush);
            DestroyIcon(icon);
        }
    };
    CPoint at(rect.left + 3, rect.top + 3);
    if (Xp(mode) && hot && !selected && !gray) {
        // The XP bar lifts a hot image over its shadow.
        CBrush shadow(TintColor(CNewMenu::GetMenuBarColorXP()));
        drawState(CPoint(rect.left + 4, rect.top + 4), DST_ICON | DSS_MONO, static_cast<HBRUSH>(shadow.m_hObject));
        at = CPoint(rect.left + 2, rect.top + 2);
    } else if (!Xp(mode) && !Office(mode) && selected) {
        at = CPoint(rect.left + 4, rect.top + 4);
    }
    if (gray)
        drawState(at, DST_ICON | DSS_DISABLED, nullptr);
    else
        ImageList_Draw(list, image, dc->m_hDC, at.x, at.y, ILD_TRANSPARENT);
}

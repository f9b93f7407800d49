#include "ui/controls/toolbarcontrol_p.h"

#include "platform/windows/sysmetrics.h"
#include "ui/controls/cbutton.h"
#include "ui/gdi/cdc.h"

#include <algorithm>

namespace vx {

namespace {

constexpr int kSeparatorWidth = 8;

bool IsSeparator(const TBBUTTON& b)
{
    return (b.fsStyle & TBSTYLE_SEP) != 0;
}

int SeparatorWidth(const TBBUTTON& b)
{
    return b.iBitmap > 0 ? b.iBitmap : kSeparatorWidth;
}

} // namespace

ToolBarControl::ToolBarControl(CWnd& window) : m_window(window) {}

ToolBarControl::~ToolBarControl() = default;

HWND ToolBarControl::NotifyTarget() const
{
    if (m_notify)
        return m_notify;
    CWnd* parent = m_window.GetParent();
    return parent ? parent->m_hWnd : nullptr;
}

LRESULT ToolBarControl::Notify(NMHDR& header) const
{
    header.hwndFrom = m_window.m_hWnd;
    header.idFrom = m_window.GetDlgCtrlID();
    const HWND target = NotifyTarget();
    return target ? ::SendMessageA(target, WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header)) : 0;
}

int ToolBarControl::IndexOf(int command) const
{
    for (int i = 0; i < Count(); ++i) {
        if (m_buttons[static_cast<size_t>(i)].tb.idCommand == command)
            return i;
    }
    return -1;
}

void ToolBarControl::Layout()
{
    int x = 0;
    int y = 0;
    for (Item& item : m_buttons) {
        if (item.tb.fsState & TBSTATE_HIDDEN) {
            item.rect = CRect(x, y, x, y);
            continue;
        }
        if (IsSeparator(item.tb) && (item.tb.fsState & TBSTATE_WRAP)) {
            // A separator where a row ends is a band across, between the rows.
            if (x > 0) {
                x = 0;
                y += m_buttonSize.cy;
            }
            const int gap = SeparatorWidth(item.tb) * 2 / 3;
            item.rect = CRect(0, y, m_buttonSize.cx, y + gap);
            y += gap;
            continue;
        }
        const int width = IsSeparator(item.tb) ? SeparatorWidth(item.tb) : m_buttonSize.cx;
        item.rect = CRect(x, y, x + width, y + m_buttonSize.cy);
        x += width;
        if (item.tb.fsState & TBSTATE_WRAP) {
            x = 0;
            y += m_buttonSize.cy;
        }
    }
    SyncTools();
}

void ToolBarControl::SetStates(const std::vector<BYTE>& states)
{
    bool changed = false;
    for (size_t i = 0; i < m_buttons.size() && i < states.size(); ++i) {
        changed = changed || m_buttons[i].tb.fsState != states[i];
        m_buttons[i].tb.fsState = states[i];
    }
    if (changed) {
        Layout();
        m_window.Invalidate();
    }
}

CSize ToolBarControl::MaxSize() const
{
    CSize size(0, 0);
    for (const Item& item : m_buttons) {
        if (item.tb.fsState & TBSTATE_HIDDEN)
            continue;
        size.cx = std::max<LONG>(size.cx, item.rect.right);
        size.cy = std::max<LONG>(size.cy, item.rect.bottom);
    }
    return size;
}

int ToolBarControl::Rows() const
{
    int rows = m_buttons.empty() ? 0 : 1;
    for (size_t i = 0; i + 1 < m_buttons.size(); ++i) {
        if (m_buttons[i].tb.fsState & TBSTATE_WRAP)
            ++rows;
    }
    return rows;
}

int ToolBarControl::HitTest(CPoint point) const
{
    for (int i = 0; i < Count(); ++i) {
        const Item& item = m_buttons[static_cast<size_t>(i)];
        if ((item.tb.fsState & TBSTATE_HIDDEN) || !item.rect.PtInRect(point))
            continue;
        return IsSeparator(item.tb) ? -i - 1 : i;
    }
    return -1;
}

void ToolBarControl::SyncTools()
{
    if (!m_tips || !m_tips->m_hWnd)
        return;
    for (const Item& item : m_buttons) {
        if (IsSeparator(item.tb))
            continue;
        m_tips->DelTool(&m_window, static_cast<UINT_PTR>(item.tb.idCommand));
        if (!(item.tb.fsState & TBSTATE_HIDDEN))
            m_tips->AddTool(&m_window, LPSTR_TEXTCALLBACK, &item.rect, static_cast<UINT_PTR>(item.tb.idCommand));
    }
}

UINT ToolBarControl::ItemState(int index) const
{
    const TBBUTTON& b = Button(index);
    UINT state = 0;
    if (b.fsState & TBSTATE_CHECKED)
        state |= CDIS_CHECKED;
    if (b.fsState & TBSTATE_PRESSED)
        state |= CDIS_SELECTED;
    if (!(b.fsState & TBSTATE_ENABLED))
        state |= CDIS_DISABLED;
    if (b.fsState & TBSTATE_INDETERMINATE)
        state |= CDIS_INDETERMINATE;
    if (index == m_hot)
        state |= CDIS_HOT;
    return state;
}

void ToolBarControl::Redraw(int index)
{
    if (index < 0 || index >= Count()) {
        m_window.Invalidate();
        return;
    }
    const CRect r = ItemRect(index);
    m_window.InvalidateRect(&r);
}

void ToolBarControl::SetHot(int index)
{
    if (index == m_hot)
        return;
    const int old = m_hot;
    m_hot = index;
    Redraw(old);
    Redraw(index);
}

bool ToolBarControl::SetStateBit(int command, BYTE bit, bool on)
{
    const int i = IndexOf(command);
    if (i < 0)
        return false;
    BYTE& state = m_buttons[static_cast<size_t>(i)].tb.fsState;
    const BYTE was = state;
    state = on ? static_cast<BYTE>(state | bit) : static_cast<BYTE>(state & ~bit);
    if (state != was) {
        if (bit == TBSTATE_HIDDEN || bit == TBSTATE_WRAP)
            Layout();
        Redraw(bit == TBSTATE_HIDDEN ? -1 : i);
    }
    return true;
}

void ToolBarControl::Click(int index)
{
    Item& item = m_buttons[static_cast<size_t>(index)];
    if (item.tb.fsStyle & TBSTYLE_CHECK) {
        if ((item.tb.fsStyle & TBSTYLE_GROUP) == TBSTYLE_GROUP) {
            // The neighbours of the same group let go; the clicked one stays in.
            auto release = [&](int i) {
                BYTE& s = m_buttons[static_cast<size_t>(i)].tb.fsState;
                if (s & TBSTATE_CHECKED) {
                    s = static_cast<BYTE>(s & ~TBSTATE_CHECKED);
                    Redraw(i);
                }
            };
            for (int i = index - 1; i >= 0 && (m_buttons[static_cast<size_t>(i)].tb.fsStyle & TBSTYLE_GROUP); --i)
                release(i);
            for (int i = index + 1; i < Count() && (m_buttons[static_cast<size_t>(i)].tb.fsStyle & TBSTYLE_GROUP); ++i)
                release(i);
            item.tb.fsState |= TBSTATE_CHECKED;
        } else {
            item.tb.fsState ^= TBSTATE_CHECKED;
        }
        Redraw(index);
    }
    const HWND target = NotifyTarget();
    if (target)
        ::SendMessageA(target, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(item.tb.idCommand), BN_CLICKED),
                       reinterpret_cast<LPARAM>(m_window.m_hWnd));
}

void ToolBarControl::PaintButton(CDC& dc, int index, UINT itemState)
{
    const TBBUTTON& b = Button(index);
    CRect r = ItemRect(index);
    const bool flat = (m_window.GetStyle() & TBSTYLE_FLAT) != 0;
    if (IsSeparator(b)) {
        if (flat) {
            const int x = r.left + r.Width() / 2 - 1;
            dc.FillSolidRect(x, r.top + 2, 1, r.Height() - 4, GetSysColor(COLOR_3DSHADOW));
            dc.FillSolidRect(x + 1, r.top + 2, 1, r.Height() - 4, GetSysColor(COLOR_3DHILIGHT));
        }
        return;
    }
    const bool down = (itemState & (CDIS_SELECTED | CDIS_CHECKED)) != 0;
    const bool enabled = !(itemState & CDIS_DISABLED);
    if ((itemState & CDIS_CHECKED) && !(itemState & CDIS_SELECTED)) {
        CRect inside = r;
        inside.DeflateRect(1, 1);
        dc.FillSolidRect(&inside, GetSysColor(COLOR_3DLIGHT));
    }
    if (down) {
        dc.DrawEdge(&r, flat ? BDR_SUNKENOUTER : EDGE_SUNKEN, BF_RECT);
    } else if (!flat) {
        dc.DrawEdge(&r, EDGE_RAISED, BF_RECT);
    } else if ((itemState & CDIS_HOT) && enabled) {
        dc.DrawEdge(&r, BDR_RAISEDINNER, BF_RECT);
    }
    int cx = m_bitmapSize.cx;
    int cy = m_bitmapSize.cy;
    if (m_images)
        ImageList_GetIconSize(m_images, &cx, &cy);
    int x = r.left + (r.Width() - cx) / 2;
    int y = r.top + (r.Height() - cy) / 2;
    if (down) {
        ++x;
        ++y;
    }
    if (!enabled) {
        if (m_disabled) {
            ImageList_Draw(m_disabled, b.iBitmap, dc.m_hDC, x, y, ILD_TRANSPARENT);
        } else if (m_images) {
            if (HICON icon = ImageList_GetIcon(m_images, b.iBitmap, ILD_TRANSPARENT)) {
                dc.DrawState(CPoint(x, y), CSize(cx, cy), icon, DSS_DISABLED, static_cast<HBRUSH>(nullptr));
                DestroyIcon(icon);
            }
        }
        return;
    }
    HIMAGELIST list = (itemState & CDIS_HOT) && m_hotImages ? m_hotImages : m_images;
    if (list)
        ImageList_Draw(list, b.iBitmap, dc.m_hDC, x, y, ILD_TRANSPARENT);
}

void ToolBarControl::Paint()
{
    CPaintDC dc(&m_window);
    CRect client;
    m_window.GetClientRect(&client);
    NMTBCUSTOMDRAW cd{};
    cd.nmcd.hdr.code = NM_CUSTOMDRAW;
    cd.nmcd.dwDrawStage = CDDS_PREPAINT;
    cd.nmcd.hdc = dc.m_hDC;
    cd.nmcd.rc = client;
    cd.clrBtnFace = GetSysColor(COLOR_BTNFACE);
    cd.clrBtnHighlight = GetSysColor(COLOR_BTNHIGHLIGHT);
    cd.clrText = GetSysColor(COLOR_BTNTEXT);
    const HWND self = m_window.m_hWnd;
    const LRESULT answer = Notify(cd.nmcd.hdr);
    if (!IsWindow(self) || (answer & CDRF_SKIPDEFAULT))
        return;
    for (int i = 0; i < Count(); ++i) {
        const TBBUTTON b = Button(i);
        if (b.fsState & TBSTATE_HIDDEN)
            continue;
        const UINT state = ItemState(i);
        LRESULT item = CDRF_DODEFAULT;
        if (answer & CDRF_NOTIFYITEMDRAW) {
            cd.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
            cd.nmcd.rc = ItemRect(i);
            cd.nmcd.dwItemSpec = static_cast<DWORD_PTR>(b.idCommand);
            cd.nmcd.uItemState = state;
            cd.nmcd.lItemlParam = static_cast<LPARAM>(b.dwData);
            item = Notify(cd.nmcd.hdr);
            if (!IsWindow(self) || i >= Count())
                return;
        }
        if (!(item & CDRF_SKIPDEFAULT))
            PaintButton(dc, i, state);
        if (item & CDRF_NOTIFYPOSTPAINT) {
            cd.nmcd.dwDrawStage = CDDS_ITEMPOSTPAINT;
            Notify(cd.nmcd.hdr);
            if (!IsWindow(self))
                return;
        }
    }
    if (answer & CDRF_NOTIFYPOSTPAINT) {
        cd.nmcd.dwDrawStage = CDDS_POSTPAINT;
        cd.nmcd.rc = client;
        cd.nmcd.dwItemSpec = 0;
        cd.nmcd.uItemState = 0;
        Notify(cd.nmcd.hdr);
    }
}

bool ToolBarControl::Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)
{
    result = 0;
    switch (message) {
    case WM_CREATE:
        if ((m_window.GetStyle() & TBSTYLE_TOOLTIPS) && !m_tips) {
            m_ownTips = std::make_unique<CToolTipCtrl>();
            if (m_ownTips->Create(&m_window))
                m_tips = m_ownTips.get();
            else
                m_ownTips.reset();
        }
        return false;
    case WM_DESTROY:
        if (m_ownTips && m_ownTips->m_hWnd)
            m_ownTips->DestroyWindow();
        m_tips = nullptr;
        return false;
    case WM_PAINT:
        Paint();
        return true;
    case WM_ERASEBKGND: {
        const HDC hdc = reinterpret_cast<HDC>(wParam);
        CRect client;
        m_window.GetClientRect(&client);
        const bool custom = (m_window.GetStyle() & TBSTYLE_CUSTOMERASE) != 0;
        NMCUSTOMDRAW cd{};
        cd.hdr.code = NM_CUSTOMDRAW;
        cd.hdc = hdc;
        cd.rc = client;
        LRESULT answer = CDRF_DODEFAULT;
        if (custom) {
            cd.dwDrawStage = CDDS_PREERASE;
            answer = Notify(cd.hdr);
        }
        if (!(answer & CDRF_SKIPDEFAULT) && !(m_window.GetStyle() & TBSTYLE_TRANSPARENT))
            CDC::FromHandle(hdc)->FillSolidRect(&client, GetSysColor(COLOR_BTNFACE));
        if (custom && (answer & CDRF_NOTIFYPOSTERASE)) {
            cd.dwDrawStage = CDDS_POSTERASE;
            Notify(cd.hdr);
        }
        result = TRUE;
        return true;
    }
    case WM_MOUSEMOVE: {
        const CPoint p(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        const int at = HitTest(p);
        if (m_tracking) {
            const bool inside = at == m_pressed;
            BYTE& s = m_buttons[static_cast<size_t>(m_pressed)].tb.fsState;
            if (inside != ((s & TBSTATE_PRESSED) != 0)) {
                s = inside ? static_cast<BYTE>(s | TBSTATE_PRESSED) : static_cast<BYTE>(s & ~TBSTATE_PRESSED);
                Redraw(m_pressed);
            }
            return true;
        }
        if (m_window.GetStyle() & TBSTYLE_FLAT) {
            const bool usable = at >= 0 && (Button(at).fsState & TBSTATE_ENABLED);
            SetHot(usable ? at : -1);
            TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, m_window.m_hWnd, 0};
            TrackMouseEvent(&track);
        }
        return true;
    }
    case WM_MOUSELEAVE:
        if (!m_tracking)
            SetHot(-1);
        return true;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        const int at = HitTest(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
        if (at < 0 || !(Button(at).fsState & TBSTATE_ENABLED))
            return true;
        m_pressed = at;
        m_tracking = true;
        m_buttons[static_cast<size_t>(at)].tb.fsState |= TBSTATE_PRESSED;
        m_window.SetCapture();
        Redraw(at);
        return true;
    }
    case WM_LBUTTONUP:
        if (m_tracking) {
            m_tracking = false;
            const int index = m_pressed;
            m_pressed = -1;
            BYTE& s = m_buttons[static_cast<size_t>(index)].tb.fsState;
            const bool click = (s & TBSTATE_PRESSED) != 0;
            s = static_cast<BYTE>(s & ~TBSTATE_PRESSED);
            if (CWnd::GetCapture() == &m_window)
                CWnd::ReleaseCapture();
            Redraw(index);
            if (click)
                Click(index);
        }
        return true;
    case WM_CAPTURECHANGED:
    case WM_CANCELMODE:
        if (m_tracking && message == WM_CANCELMODE && CWnd::GetCapture() == &m_window)
            CWnd::ReleaseCapture();
        if (m_tracking) {
            m_tracking = false;
            if (m_pressed >= 0 && m_pressed < Count())
                m_buttons[static_cast<size_t>(m_pressed)].tb.fsState &= static_cast<BYTE>(~TBSTATE_PRESSED);
            Redraw(m_pressed);
            m_pressed = -1;
        }
        return false;
    case WM_NOTIFY: {
        // The tooltips ask the control; the control's owner knows the texts.
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        if (header && header->code == TTN_NEEDTEXT && m_tips && header->hwndFrom == m_tips->m_hWnd) {
            const HWND target = NotifyTarget();
            result = target ? ::SendMessageA(target, WM_NOTIFY, wParam, lParam) : 0;
            return true;
        }
        return false;
    }
    case TB_BUTTONSTRUCTSIZE:
        return true;
    case TB_ADDBUTTONSA:
    case TB_INSERTBUTTONA: {
        const auto* buttons = reinterpret_cast<const TBBUTTON*>(lParam);
        if (!buttons) {
            result = FALSE;
            return true;
        }
        const int count = message == TB_ADDBUTTONSA ? static_cast<int>(wParam) : 1;
        size_t at = m_buttons.size();
        if (message == TB_INSERTBUTTONA)
            at = std::min(m_buttons.size(), static_cast<size_t>(std::max<WPARAM>(wParam, 0)));
        for (int i = 0; i < count; ++i)
            m_buttons.insert(m_buttons.begin() + static_cast<long>(at) + i, Item{buttons[i], CRect()});
        if (m_hot >= static_cast<int>(at))
            m_hot = -1;
        Layout();
        m_window.Invalidate();
        result = TRUE;
        return true;
    }
    case TB_DELETEBUTTON: {
        const int i = static_cast<int>(wParam);
        if (i < 0 || i >= Count() || m_tracking) {
            result = FALSE;
            return true;
        }
        if (m_tips && !IsSeparator(Button(i)))
            m_tips->DelTool(&m_window, static_cast<UINT_PTR>(Button(i).idCommand));
        m_buttons.erase(m_buttons.begin() + i);
        m_hot = -1;
        Layout();
        m_window.Invalidate();
        result = TRUE;
        return true;
    }
    case TB_GETBUTTON: {
        const int i = static_cast<int>(wParam);
        auto* out = reinterpret_cast<TBBUTTON*>(lParam);
        result = i >= 0 && i < Count() && out;
        if (result)
            *out = Button(i);
        return true;
    }
    case TB_BUTTONCOUNT:
        result = Count();
        return true;
    case TB_COMMANDTOINDEX:
        result = IndexOf(static_cast<int>(wParam));
        return true;
    case TB_GETITEMRECT:
    case TB_GETRECT: {
        const int i = message == TB_GETRECT ? IndexOf(static_cast<int>(wParam)) : static_cast<int>(wParam);
        auto* out = reinterpret_cast<RECT*>(lParam);
        result = i >= 0 && i < Count() && out && !(Button(i).fsState & TBSTATE_HIDDEN);
        if (result)
            *out = ItemRect(i);
        return true;
    }
    case TB_ENABLEBUTTON:
        result = SetStateBit(static_cast<int>(wParam), TBSTATE_ENABLED, LOWORD(lParam) != 0);
        if (result && !LOWORD(lParam) && m_hot == IndexOf(static_cast<int>(wParam)))
            SetHot(-1);
        return true;
    case TB_CHECKBUTTON:
        result = SetStateBit(static_cast<int>(wParam), TBSTATE_CHECKED, LOWORD(lParam) != 0);
        return true;
    case TB_PRESSBUTTON:
        result = SetStateBit(static_cast<int>(wParam), TBSTATE_PRESSED, LOWORD(lParam) != 0);
        return true;
    case TB_HIDEBUTTON:
        result = SetStateBit(static_cast<int>(wParam), TBSTATE_HIDDEN, LOWORD(lParam) != 0);
        return true;
    case TB_INDETERMINATE:
        result = SetStateBit(static_cast<int>(wParam), TBSTATE_INDETERMINATE, LOWORD(lParam) != 0);
        return true;
    case TB_ISBUTTONENABLED:
    case TB_ISBUTTONCHECKED:
    case TB_ISBUTTONPRESSED:
    case TB_ISBUTTONHIDDEN: {
        const int i = IndexOf(static_cast<int>(wParam));
        const BYTE bit = message == TB_ISBUTTONENABLED   ? TBSTATE_ENABLED
                         : message == TB_ISBUTTONCHECKED ? TBSTATE_CHECKED
                         : message == TB_ISBUTTONPRESSED ? TBSTATE_PRESSED
                                                         : TBSTATE_HIDDEN;
        result = i >= 0 && (Button(i).fsState & bit);
        return true;
    }
    case TB_SETSTATE: {
        const int i = IndexOf(static_cast<int>(wParam));
        result = i >= 0;
        if (i >= 0) {
            const BYTE was = m_buttons[static_cast<size_t>(i)].tb.fsState;
            m_buttons[static_cast<size_t>(i)].tb.fsState = static_cast<BYTE>(LOWORD(lParam));
            if ((was ^ static_cast<BYTE>(LOWORD(lParam))) & (TBSTATE_HIDDEN | TBSTATE_WRAP))
                Layout();
            Redraw(-1);
        }
        return true;
    }
    case TB_GETSTATE: {
        const int i = IndexOf(static_cast<int>(wParam));
        result = i >= 0 ? Button(i).fsState : -1;
        return true;
    }
    case TB_SETCMDID: {
        const int i = static_cast<int>(wParam);
        result = i >= 0 && i < Count();
        if (result)
            m_buttons[static_cast<size_t>(i)].tb.idCommand = static_cast<int>(lParam);
        SyncTools();
        return true;
    }
    case TB_SETBUTTONSIZE:
        m_buttonSize = CSize(LOWORD(lParam), HIWORD(lParam));
        Layout();
        result = TRUE;
        return true;
    case TB_SETBITMAPSIZE:
        m_bitmapSize = CSize(LOWORD(lParam), HIWORD(lParam));
        result = TRUE;
        return true;
    case TB_GETBUTTONSIZE:
        result = MAKELONG(m_buttonSize.cx, m_buttonSize.cy);
        return true;
    case TB_SETIMAGELIST:
    case TB_SETDISABLEDIMAGELIST:
    case TB_SETHOTIMAGELIST: {
        HIMAGELIST& list = message == TB_SETIMAGELIST           ? m_images
                           : message == TB_SETDISABLEDIMAGELIST ? m_disabled
                                                                : m_hotImages;
        result = reinterpret_cast<LRESULT>(list);
        list = reinterpret_cast<HIMAGELIST>(lParam);
        m_window.Invalidate();
        return true;
    }
    case TB_GETIMAGELIST:
        result = reinterpret_cast<LRESULT>(m_images);
        return true;
    case TB_GETDISABLEDIMAGELIST:
        result = reinterpret_cast<LRESULT>(m_disabled);
        return true;
    case TB_GETHOTIMAGELIST:
        result = reinterpret_cast<LRESULT>(m_hotImages);
        return true;
    case TB_AUTOSIZE:
        Layout();
        return true;
    case TB_GETROWS:
        result = Rows();
        return true;
    case TB_GETMAXSIZE: {
        auto* out = reinterpret_cast<SIZE*>(lParam);
        if (out)
            *out = MaxSize();
        result = out != nullptr;
        return true;
    }
    case TB_HITTEST: {
        const auto* p = reinterpret_cast<const POINT*>(lParam);
        result = p ? HitTest(*p) : -1;
        return true;
    }
    case TB_GETHOTITEM:
        result = m_hot;
        return true;
    case TB_SETHOTITEM:
        result = m_hot;
        SetHot(static_cast<int>(wParam) >= 0 && static_cast<int>(wParam) < Count() ? static_cast<int>(wParam) : -1);
        return true;
    case TB_SETTOOLTIPS:
        m_tips = dynamic_cast<CToolTipCtrl*>(CWnd::FromHandle(reinterpret_cast<HWND>(wParam)));
        SyncTools();
        return true;
    case TB_GETTOOLTIPS:
        result = reinterpret_cast<LRESULT>(m_tips ? m_tips->m_hWnd : nullptr);
        return true;
    case TB_SETPARENT:
        result = reinterpret_cast<LRESULT>(m_notify);
        m_notify = reinterpret_cast<HWND>(wParam);
        return true;
    case TB_SETSTYLE:
        m_window.ModifyStyle(0xFFFF, static_cast<DWORD>(lParam) & 0xFFFF);
        return true;
    case TB_GETSTYLE:
        result = m_window.GetStyle() & 0xFFFF;
        return true;
    case TB_SETEXTENDEDSTYLE:
        result = m_exStyle;
        m_exStyle = static_cast<DWORD>(lParam);
        return true;
    case TB_GETEXTENDEDSTYLE:
        result = m_exStyle;
        return true;
    case CCM_SETCOLORSCHEME:
        if (const auto* scheme = reinterpret_cast<const COLORSCHEME*>(lParam))
            m_scheme = *scheme;
        return true;
    case CCM_GETCOLORSCHEME:
        if (auto* scheme = reinterpret_cast<COLORSCHEME*>(lParam))
            *scheme = m_scheme;
        result = TRUE;
        return true;
    default:
        return false;
    }
}

} // namespace vx

// The combo box on screen: the field with its button, the drop-down list
// (a list box in a popup window), and the edit of CBS_DROPDOWN and
// CBS_SIMPLE. The items live in the core's CComboBox model; this view shows
// them and turns input into the CB_ model's changes and the CBN_
// notifications, in the platform's order.
#include "platform/windows/ccombobox.h"

#include "ui/controls/cedit.h"
#include "ui/controls/clistbox.h"
#include "ui/controls/controlsupport_p.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/windows/qtinterop.h"

#include "platform/windows/sysmetrics.h"

#include <QWidget>

#include <algorithm>

namespace {

using namespace vx::controls;

constexpr UINT kEditId = 1001;
constexpr UINT kListId = 1000;
constexpr UINT ODS_COMBOBOXEDIT = 0x1000;

class ComboView final : public vx::ComboBoxView {
public:
    explicit ComboView(CComboBox&) {}

    void ModelChanged(CComboBox& combo, UINT message) override;
    LRESULT DefProc(CComboBox& combo, UINT message, WPARAM wParam, LPARAM lParam) override;
    bool PreTranslate(CComboBox& combo, MSG* msg) override;

private:
    static DWORD Kind(const CComboBox& c) { return c.GetStyle() & 3; }
    static bool HasEdit(const CComboBox& c) { return Kind(c) == CBS_DROPDOWN || Kind(c) == CBS_SIMPLE; }

    int FieldHeight(CComboBox& c) const;
    CRect ButtonRect(CComboBox& c) const;
    CString SelectedText(CComboBox& c) const;
    void ShowSelection(CComboBox& c);
    void FillList(CComboBox& c);
    void Layout(CComboBox& c);
    void Create(CComboBox& c);
    void Drop(CComboBox& c);
    void CloseUp(CComboBox& c, bool ok);
    void Choose(CComboBox& c, int index, bool endOk);
    void Paint(CComboBox& c);
    bool Key(CComboBox& c, UINT key);
    bool OwnsFocus(const CComboBox& c, HWND focus) const;

    std::unique_ptr<CEdit> m_edit;
    std::unique_ptr<CListBox> m_list;
    bool m_dropped = false;
    bool m_focused = false;
    bool m_buttonDown = false;
    bool m_sizing = false;
    int m_droppedHeight = 0;
    int m_droppedWidth = 0;
    int m_itemHeight = 0;
    int m_beforeDrop = -1;
};

std::unique_ptr<vx::ComboBoxView> MakeView(CComboBox& combo)
{
    return std::make_unique<ComboView>(combo);
}

const bool g_installed = [] {
    vx::SetComboBoxViewFactory(&MakeView);
    return true;
}();

int ComboView::FieldHeight(CComboBox& c) const
{
    const int line = m_itemHeight > 0 ? m_itemHeight : LineHeight(c);
    return line + 8;
}

CRect ComboView::ButtonRect(CComboBox& c) const
{
    if (Kind(c) == CBS_SIMPLE)
        return CRect();
    CRect r;
    c.GetClientRect(&r);
    r.DeflateRect(2, 2);
    r.bottom = std::min<LONG>(r.bottom, r.top + FieldHeight(c) - 4);
    r.left = std::max<LONG>(r.left, r.right - GetSystemMetrics(SM_CXVSCROLL));
    return r;
}

CString ComboView::SelectedText(CComboBox& c) const
{
    CString text;
    const int sel = c.GetCurSel();
    if (sel >= 0)
        c.GetLBText(sel, text);
    return text;
}

// The window's text is what its field shows, as GetWindowText of a combo gave.
void ComboView::ShowSelection(CComboBox& c)
{
    if (!c.m_hWnd)
        return;
    const CString text = SelectedText(c);
    if (m_edit && m_edit->m_hWnd) {
        if (c.GetCurSel() >= 0) {
            m_edit->SetWindowText(text);
            m_edit->SetSel(0, -1);
        }
    } else {
        vx::SetWindowTitle(c.m_hWnd, text);
    }
    if (m_list && m_list->m_hWnd && !m_dropped)
        m_list->SetCurSel(c.GetCurSel());
    c.Invalidate(FALSE);
}

void ComboView::FillList(CComboBox& c)
{
    if (!m_list || !m_list->m_hWnd)
        return;
    m_list->ResetContent();
    for (int i = 0; i < c.GetCount(); ++i) {
        CString text;
        c.GetLBText(i, text);
        m_list->InsertString(-1, text);
        m_list->SetItemData(i, c.GetItemData(i));
    }
    m_list->SetCurSel(c.GetCurSel());
}

void ComboView::Layout(CComboBox& c)
{
    if (!c.m_hWnd || m_sizing)
        return;
    CRect r;
    c.GetClientRect(&r);
    const int field = FieldHeight(c);
    if (Kind(c) != CBS_SIMPLE && r.Height() != field) {
        // The control is as high as its field; the rest of its template
        // height is the height of the dropped list.
        m_sizing = true;
        c.SetWindowPos(nullptr, 0, 0, r.Width(), field, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        m_sizing = false;
        c.GetClientRect(&r);
    }
    if (m_edit && m_edit->m_hWnd) {
        CRect e(r.left + 3, r.top + 3, r.right - 3, r.top + field - 3);
        if (Kind(c) != CBS_SIMPLE)
            e.right = ButtonRect(c).left - 1;
        m_edit->MoveWindow(&e, FALSE);
    }
    if (Kind(c) == CBS_SIMPLE && m_list && m_list->m_hWnd)
        m_list->MoveWindow(r.left, r.top + field, r.Width(), std::max<LONG>(0, r.Height() - field), FALSE);
}

void ComboView::Create(CComboBox& c)
{
    CRect r;
    c.GetClientRect(&r);
    m_droppedHeight = r.Height();
    if (HasEdit(c)) {
        m_edit = std::make_unique<CEdit>();
        DWORD style = WS_CHILD | WS_VISIBLE | ES_LEFT;
        if (c.GetStyle() & CBS_AUTOHSCROLL)
            style |= ES_AUTOHSCROLL;
        if (c.GetStyle() & CBS_UPPERCASE)
            style |= ES_UPPERCASE;
        if (c.GetStyle() & CBS_LOWERCASE)
            style |= ES_LOWERCASE;
        m_edit->CreateEx(c.GetWindowTextString(), "Edit", style, CRect(0, 0, 10, 10), &c, kEditId);
    }
    if (Kind(c) == CBS_SIMPLE) {
        m_list = std::make_unique<CListBox>();
        m_list->CreateEx("", "ComboLBox", WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | LBS_NOTIFY,
                         CRect(0, 0, 10, 10), &c, kListId);
    }
    Layout(c);
}

void ComboView::Drop(CComboBox& c)
{
    if (m_dropped || Kind(c) == CBS_SIMPLE || !c.IsWindowEnabled())
        return;
    const HWND self = c.m_hWnd;
    Notify(c, CBN_DROPDOWN);
    if (!IsWindow(self))
        return;
    CRect field;
    c.GetWindowRect(&field);
    const int line = m_itemHeight > 0 ? m_itemHeight : LineHeight(c);
    const int rows = std::max(1, std::min(c.GetCount(), std::max(1, (m_droppedHeight - FieldHeight(c)) / line)));
    const int width = std::max<int>(field.Width(), m_droppedWidth);
    CRect place(field.left, field.bottom, field.left + width, field.bottom + rows * line + 2);
    if (c.GetCount() > rows)
        place.bottom = field.bottom + rows * line + 2;
    // Above the field when the list would leave the screen below it.
    const int screenBottom = GetSystemMetrics(SM_YVIRTUALSCREEN) + GetSystemMetrics(SM_CYVIRTUALSCREEN);
    if (place.bottom > screenBottom && field.top - place.Height() >= GetSystemMetrics(SM_YVIRTUALSCREEN))
        place.OffsetRect(0, field.top - place.bottom);
    if (!m_list) {
        m_list = std::make_unique<CListBox>();
        DWORD style = WS_POPUP | WS_BORDER | LBS_NOTIFY;
        if (c.GetCount() > rows)
            style |= WS_VSCROLL;
        m_list->CreateEx("", "ComboLBox", style, place, &c, kListId, WS_EX_TOOLWINDOW | WS_EX_TOPMOST);
        if (QWidget* w = vx::WidgetOfWindow(m_list.get())) {
            // The list never takes the focus from the combo box.
            w->setAttribute(Qt::WA_ShowWithoutActivating);
            w->setWindowFlag(Qt::WindowDoesNotAcceptFocus);
        }
    } else {
        m_list->ModifyStyle(WS_VSCROLL, c.GetCount() > rows ? WS_VSCROLL : 0);
        m_list->MoveWindow(&place, FALSE);
    }
    m_list->SendMessage(WM_SETFONT, c.SendMessage(WM_GETFONT), 0);
    FillList(c);
    m_list->SendMessage(kListComboMode, 1);
    m_beforeDrop = c.GetCurSel();
    m_dropped = true;
    m_list->ShowWindow(SW_SHOWNA);
    m_list->SetCapture();
    c.Invalidate(FALSE);
}

void ComboView::CloseUp(CComboBox& c, bool ok)
{
    // The list lets go of the mouse and goes before the parent hears of the
    // end, which may open a dialog of its own; the order of the
    // notifications is the platform's.
    const bool wasDropped = m_dropped;
    m_dropped = false;
    if (wasDropped && m_list && m_list->m_hWnd) {
        m_list->SendMessage(kListComboMode, 0);
        if (CWnd::GetCapture() == m_list.get())
            CWnd::ReleaseCapture();
        m_list->ShowWindow(SW_HIDE);
    }
    c.Invalidate(FALSE);
    const HWND self = c.m_hWnd;
    Notify(c, ok ? CBN_SELENDOK : CBN_SELENDCANCEL);
    if (wasDropped && IsWindow(self))
        Notify(c, CBN_CLOSEUP);
}

// The user's choice of an item: the model takes it and the parent hears of it.
void ComboView::Choose(CComboBox& c, int index, bool endOk)
{
    if (index < 0 || index >= c.GetCount())
        return;
    const HWND self = c.m_hWnd;
    c.SetCurSel(index);
    if (endOk)
        Notify(c, CBN_SELENDOK);
    if (IsWindow(self))
        Notify(c, CBN_SELCHANGE);
}

bool ComboView::Key(CComboBox& c, UINT key)
{
    const bool alt = KeyDown(VK_MENU);
    if (key == VK_F4 || (alt && (key == VK_DOWN || key == VK_UP))) {
        if (m_dropped)
            CloseUp(c, true);
        else
            Drop(c);
        return true;
    }
    if (m_dropped) {
        if (key == VK_RETURN) {
            CloseUp(c, true);
            return true;
        }
        if (key == VK_ESCAPE) {
            c.SetCurSel(m_beforeDrop);
            CloseUp(c, false);
            return true;
        }
    }
    int sel = c.GetCurSel();
    const int count = c.GetCount();
    if (count == 0)
        return false;
    int target = sel;
    switch (key) {
    case VK_UP: target = std::max(0, sel - 1); break;
    case VK_DOWN: target = std::min(count - 1, sel + 1); break;
    case VK_HOME: target = 0; break;
    case VK_END: target = count - 1; break;
    case VK_PRIOR: target = std::max(0, sel - 8); break;
    case VK_NEXT: target = std::min(count - 1, sel + 8); break;
    default: return false;
    }
    if (sel < 0 && (key == VK_UP || key == VK_DOWN))
        target = 0;
    if (target != sel) {
        if (m_dropped && m_list) {
            m_list->SetCurSel(target);
            Choose(c, target, false);
        } else {
            Choose(c, target, true);
        }
    }
    return true;
}

bool ComboView::OwnsFocus(const CComboBox& c, HWND focus) const
{
    return focus && (focus == c.m_hWnd || (m_edit && focus == m_edit->m_hWnd));
}

void ComboView::Paint(CComboBox& c)
{
    CPaintDC dc(&c);
    CRect r;
    c.GetClientRect(&r);
    const bool enabled = c.IsWindowEnabled();
    const bool list = Kind(c) == CBS_DROPDOWNLIST;
    HBRUSH brush = ParentColors(c, dc, enabled ? WM_CTLCOLOREDIT : WM_CTLCOLORSTATIC, COLOR_WINDOWTEXT,
                                enabled ? COLOR_WINDOW : COLOR_BTNFACE);
    const COLORREF text = enabled ? dc.GetTextColor() : GetSysColor(COLOR_GRAYTEXT);
    CRect field(r);
    if (Kind(c) == CBS_SIMPLE)
        field.bottom = field.top + FieldHeight(c);
    dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
    ::FillRect(dc, &field, brush);
    CRect edge(field);
    dc.DrawEdge(&edge, EDGE_SUNKEN, BF_RECT);
    const CRect button = ButtonRect(c);
    if (!button.IsRectEmpty()) {
        CRect face(button);
        dc.FillSolidRect(&face, GetSysColor(COLOR_BTNFACE));
        const bool pressed = m_buttonDown || m_dropped;
        if (pressed) {
            CBrush shadow(GetSysColor(COLOR_BTNSHADOW));
            dc.FrameRect(&face, &shadow);
        } else {
            dc.DrawEdge(&face, EDGE_RAISED, BF_RECT);
        }
        CFont marlett;
        marlett.CreateFont(-(std::min(button.Width(), button.Height()) - 4), 0, 0, 0, FW_NORMAL, 0, 0, 0,
                           SYMBOL_CHARSET, 0, 0, 0, 0, "Marlett");
        CFont* old = dc.SelectObject(&marlett);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        CRect glyph(button);
        if (pressed)
            glyph.OffsetRect(1, 1);
        dc.DrawText("6", 1, &glyph, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
        dc.SelectObject(old);
    }
    if (!list)
        return;
    CRect area(field.left + 3, field.top + 3, button.left - 1, field.bottom - 3);
    const bool highlight = m_focused && !m_dropped;
    const int sel = c.GetCurSel();
    if (c.GetStyle() & (CBS_OWNERDRAWFIXED | CBS_OWNERDRAWVARIABLE)) {
        DRAWITEMSTRUCT dis{};
        dis.CtlType = ODT_COMBOBOX;
        dis.CtlID = c.GetDlgCtrlID();
        dis.itemID = static_cast<UINT>(sel);
        dis.itemAction = ODA_DRAWENTIRE;
        dis.itemState = ODS_COMBOBOXEDIT | (highlight ? ODS_SELECTED | ODS_FOCUS : 0) | (enabled ? 0 : ODS_DISABLED);
        dis.hwndItem = c.m_hWnd;
        dis.hDC = dc;
        dis.rcItem = area;
        dis.itemData = sel >= 0 ? c.GetItemData(sel) : 0;
        if (CWnd* parent = c.GetParent())
            parent->SendMessage(WM_DRAWITEM, static_cast<WPARAM>(dis.CtlID), reinterpret_cast<LPARAM>(&dis));
        return;
    }
    if (highlight)
        dc.FillSolidRect(&area, GetSysColor(COLOR_HIGHLIGHT));
    HGDIOBJ oldFont = ::SelectObject(dc, FontOf(c));
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(highlight ? GetSysColor(COLOR_HIGHLIGHTTEXT) : text);
    CRect textRect(area);
    textRect.left += 1;
    dc.DrawText(SelectedText(c), &textRect, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    ::SelectObject(dc, oldFont);
    if (highlight)
        dc.DrawFocusRect(&area);
}

void ComboView::ModelChanged(CComboBox& c, UINT message)
{
    switch (message) {
    case CB_SETCURSEL:
    case CB_SELECTSTRING:
    case CB_RESETCONTENT:
    case CB_DELETESTRING:
        ShowSelection(c);
        if (message != CB_SETCURSEL && message != CB_SELECTSTRING && (m_dropped || Kind(c) == CBS_SIMPLE))
            FillList(c);
        break;
    case CB_ADDSTRING:
    case CB_INSERTSTRING:
        if (m_dropped || Kind(c) == CBS_SIMPLE)
            FillList(c);
        break;
    default:
        break;
    }
}

bool ComboView::PreTranslate(CComboBox& c, MSG* msg)
{
    if (!msg || !m_edit || msg->hwnd != m_edit->m_hWnd)
        return false;
    // Keys that belong to the combo box, not to its edit.
    if (msg->message == WM_KEYDOWN || msg->message == WM_SYSKEYDOWN) {
        const UINT key = static_cast<UINT>(msg->wParam);
        const bool listKey = key == VK_UP || key == VK_DOWN || key == VK_F4 || key == VK_PRIOR || key == VK_NEXT ||
                             (m_dropped && (key == VK_RETURN || key == VK_ESCAPE));
        if (listKey)
            return Key(c, key);
    }
    return false;
}

LRESULT ComboView::DefProc(CComboBox& c, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        Create(c);
        return 0;
    case WM_DESTROY:
        if (m_list && m_list->m_hWnd)
            m_list->DestroyWindow();
        return 0;
    case WM_PAINT:
        Paint(c);
        return 0;
    case WM_ERASEBKGND:
        return TRUE;
    case WM_SIZE:
        if (!m_sizing && Kind(c) != CBS_SIMPLE) {
            CRect r;
            c.GetClientRect(&r);
            if (r.Height() != FieldHeight(c))
                m_droppedHeight = r.Height();
        }
        Layout(c);
        return 0;
    case WM_SETFONT: {
        const LRESULT r = c.CWnd::DefWindowProc(message, wParam, lParam);
        if (m_edit && m_edit->m_hWnd)
            m_edit->SendMessage(WM_SETFONT, wParam, lParam);
        if (m_list && m_list->m_hWnd)
            m_list->SendMessage(WM_SETFONT, wParam, lParam);
        Layout(c);
        return r;
    }
    case WM_SETTEXT: {
        const LRESULT r = c.CWnd::DefWindowProc(message, wParam, lParam);
        if (m_edit && m_edit->m_hWnd)
            m_edit->SetWindowText(reinterpret_cast<const char*>(lParam));
        c.Invalidate(FALSE);
        return r;
    }
    case WM_ENABLE:
        if (m_edit && m_edit->m_hWnd)
            m_edit->EnableWindow(static_cast<BOOL>(wParam));
        if (!wParam && m_dropped)
            CloseUp(c, false);
        c.Invalidate(FALSE);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS | (m_dropped ? DLGC_WANTALLKEYS : 0);
    case WM_SETFOCUS:
        if (m_edit && m_edit->m_hWnd) {
            m_edit->SetFocus();
            return 0;
        }
        m_focused = true;
        c.Invalidate(FALSE);
        Notify(c, CBN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS: {
        if (m_edit && m_edit->m_hWnd)
            return 0;
        m_focused = false;
        const HWND self = c.m_hWnd;
        if (m_dropped)
            CloseUp(c, false);
        if (IsWindow(self)) {
            c.Invalidate(FALSE);
            Notify(c, CBN_KILLFOCUS);
        }
        return 0;
    }
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        const CPoint at = PointOf(lParam);
        const bool onButton = ButtonRect(c).PtInRect(at);
        if (!onButton && Kind(c) != CBS_DROPDOWNLIST)
            return 0;
        if (m_edit && m_edit->m_hWnd)
            m_edit->SetFocus();
        else if (CWnd::GetFocus() != &c)
            c.SetFocus();
        if (m_dropped)
            CloseUp(c, true);
        else
            Drop(c);
        return 0;
    }
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        if (!Key(c, static_cast<UINT>(wParam)) && message == WM_SYSKEYDOWN)
            return c.CWnd::DefWindowProc(message, wParam, lParam);
        return 0;
    case WM_CHAR:
        if (Kind(c) == CBS_DROPDOWNLIST && wParam >= 0x20) {
            const char prefix[2] = {static_cast<char>(wParam), 0};
            const int found = c.FindString(c.GetCurSel(), prefix);
            if (found >= 0 && found != c.GetCurSel()) {
                if (m_dropped && m_list)
                    m_list->SetCurSel(found);
                Choose(c, found, !m_dropped);
            }
        }
        return 0;
    case WM_MOUSEWHEEL:
        if (!m_dropped && Kind(c) == CBS_DROPDOWNLIST)
            Key(c, static_cast<short>(HIWORD(wParam)) > 0 ? VK_UP : VK_DOWN);
        return 0;
    case WM_COMMAND: {
        const UINT code = HIWORD(wParam);
        const UINT id = LOWORD(wParam);
        if (id == kListId) {
            if (code == LBN_SELCHANGE) {
                const int sel = m_list->GetCurSel();
                if (Kind(c) == CBS_SIMPLE) {
                    Choose(c, sel, false);
                } else {
                    const HWND self = c.m_hWnd;
                    c.SetCurSel(sel);
                    CloseUp(c, true);
                    if (IsWindow(self))
                        Notify(c, CBN_SELCHANGE);
                }
            } else if (code == LBN_SELCANCEL && m_dropped) {
                c.SetCurSel(m_beforeDrop);
                CloseUp(c, false);
            } else if (code == LBN_DBLCLK && Kind(c) == CBS_SIMPLE) {
                Notify(c, CBN_DBLCLK);
            }
        } else if (id == kEditId && m_edit) {
            if (code == EN_UPDATE) {
                Notify(c, CBN_EDITUPDATE);
            } else if (code == EN_CHANGE) {
                vx::SetWindowTitle(c.m_hWnd, m_edit->GetWindowTextString());
                Notify(c, CBN_EDITCHANGE);
            } else if (code == EN_SETFOCUS) {
                if (!m_focused) {
                    m_focused = true;
                    Notify(c, CBN_SETFOCUS);
                }
            } else if (code == EN_KILLFOCUS) {
                const CWnd* now = CWnd::GetFocus();
                if (!OwnsFocus(c, now ? now->m_hWnd : nullptr)) {
                    m_focused = false;
                    const HWND self = c.m_hWnd;
                    if (m_dropped)
                        CloseUp(c, false);
                    if (IsWindow(self))
                        Notify(c, CBN_KILLFOCUS);
                }
            }
        }
        return 0;
    }
    case CB_SHOWDROPDOWN:
        if (wParam)
            Drop(c);
        else if (m_dropped)
            CloseUp(c, false);
        return TRUE;
    case CB_GETDROPPEDSTATE:
        return m_dropped;
    case CB_GETDROPPEDCONTROLRECT:
        if (auto* out = reinterpret_cast<RECT*>(lParam)) {
            CRect r;
            c.GetWindowRect(&r);
            r.bottom = r.top + std::max(m_droppedHeight, FieldHeight(c));
            *out = r;
        }
        return TRUE;
    case CB_SETDROPPEDWIDTH:
        m_droppedWidth = static_cast<int>(wParam);
        return m_droppedWidth;
    case CB_GETDROPPEDWIDTH: {
        CRect r;
        c.GetWindowRect(&r);
        return std::max<int>(m_droppedWidth, r.Width());
    }
    case CB_GETITEMHEIGHT:
        return static_cast<int>(wParam) == -1 ? FieldHeight(c) - 8 + 2
                                              : (m_itemHeight > 0 ? m_itemHeight : LineHeight(c));
    case CB_SETITEMHEIGHT:
        if (lParam <= 0 || lParam > 255)
            return CB_ERR;
        if (static_cast<int>(wParam) == -1 || static_cast<int>(wParam) >= 0)
            m_itemHeight = static_cast<int>(lParam);
        Layout(c);
        return 0;
    case CB_LIMITTEXT:
        if (!m_edit || !m_edit->m_hWnd)
            return FALSE;
        m_edit->LimitText(static_cast<int>(wParam));
        return TRUE;
    case CB_GETEDITSEL:
        if (!m_edit || !m_edit->m_hWnd)
            return CB_ERR;
        return m_edit->SendMessage(EM_GETSEL, wParam, lParam);
    case CB_SETEDITSEL:
        if (!m_edit || !m_edit->m_hWnd)
            return CB_ERR;
        m_edit->SetSel(static_cast<short>(LOWORD(static_cast<DWORD_PTR>(lParam))),
                       static_cast<short>(HIWORD(static_cast<DWORD_PTR>(lParam))));
        return TRUE;
    default:
        return c.CWnd::DefWindowProc(message, wParam, lParam);
    }
}

} // namespace

namespace vx::controls {

void InstallComboBoxView()
{
    SetComboBoxViewFactory(&MakeView);
}

} // namespace vx::controls

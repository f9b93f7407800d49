// KXListCtrl: the list, its rows of records and the message routing.
#include "lists/kxlistctrl.h"

#include "lists/kxlistctrl_p.h"

#include "base/vxmessagebox.h"
#include "config/kprofile.h"
#include "platform/shell/resources.h"
#include "platform/windows/sysmetrics.h"
#include "platform/windows/windows.h"
#include "platform/windows/ccombobox.h"
#include "ui/controls/cedit.h"

#include <algorithm>
#include <new>

using vx::lists::XRow;

// --- records ---------------------------------------------------------------------------------

XLISTCTRLDATA::XLISTCTRLDATA() : crText(GetSysColor(COLOR_WINDOWTEXT)) {}

XLISTCTRLDATA::~XLISTCTRLDATA()
{
    FreePayload();
}

void XLISTCTRLDATA::FreePayload()
{
    if (nKind == XLC_KIND_BRIDGE)
        delete static_cast<XLC_BRIDGE*>(pPayload);
    else if (nKind == XLC_KIND_ICON)
        delete static_cast<int*>(pPayload);
    pPayload = nullptr;
    nKind = XLC_KIND_TEXT;
}

// --- the private part ------------------------------------------------------------------------

KXListCtrl::Private::Private(KXListCtrl& owner) : q(owner)
{
    ReadColors();
    selection.SetCallbacks(&MarkCell, this, &MarkRow, this);
    header.SetList(&owner);
}

void KXListCtrl::Private::ReadColors()
{
    crFace = GetSysColor(15);
    crHighlightEdge = GetSysColor(20);
    crShadow = GetSysColor(16);
    crFace2 = GetSysColor(15);
    crShadow2 = GetSysColor(16);
    crButtonText = GetSysColor(18);
    crGrayText = GetSysColor(17);
    crHighlight = GetSysColor(13);
    crHighlightText = GetSysColor(14);
    crDefaultText = GetSysColor(COLOR_WINDOWTEXT);
}

XRow* KXListCtrl::Private::RowOf(int row) const
{
    // Out of range the item data is 0.
    auto* r = reinterpret_cast<XRow*>(q.CListCtrl::GetItemData(row));
    if (r && r == lastRow)
        return r;
    // Only rows this list made carry records.
    if (!r || !rows.Contains(r))
        return nullptr;
    lastRow = r;
    return r;
}

XLISTCTRLDATA* KXListCtrl::Private::Cell(int row, int col) const
{
    if (col < 0)
        return nullptr;
    XRow* r = RowOf(row);
    return r && col < r->count ? &r->cells[static_cast<std::size_t>(col)] : nullptr;
}

void KXListCtrl::Private::PrefetchAhead(int row) const
{
    q.PrefetchItem(row + 3, false);
    q.PrefetchItem(row + 2, true);
    // Only a row this list made is read; the address alone is harmless.
    const auto* later = reinterpret_cast<const XRow*>(q.CListCtrl::GetItemData(row + 2));
    __builtin_prefetch(later);
    rows.Prefetch(later);
    const auto* next = reinterpret_cast<XRow*>(q.CListCtrl::GetItemData(row + 1));
    if (!next || !rows.Contains(next))
        return;
    const XLISTCTRLDATA* cells = next->cells.get();
    if (next->count > 0)
        __builtin_prefetch(&cells[0].bModified);
    for (int c = 0; c < next->count; ++c)
        __builtin_prefetch(&cells[c].bCellEditable);
}

bool KXListCtrl::Private::ValidCell(int row, int col) const
{
    return row >= 0 && row < Count() && col >= 0 && col < q.GetHeader().GetItemCount();
}

int KXListCtrl::Private::NewRow(int row, const char* text, int image, LPARAM itemData, bool hasItemData)
{
    const int columns = std::max(1, q.GetColumns());
    auto fresh = std::make_unique<XRow>();
    fresh->cells.reset(new (std::nothrow) XLISTCTRLDATA[static_cast<std::size_t>(columns)]);
    if (!fresh->cells) {
        if (!warnedRows) {
            // Told once: the rest of a long fill fails the same way.
            warnedRows = true;
            CString message;
            message.LoadString(6725);
            CString count;
            count.Format("%d", Count());
            message.Replace("%1", count);
            VxAfxMessageBox(message, MB_ICONEXCLAMATION, 0);
        }
        return -1;
    }
    fresh->count = columns;
    // The row's first record carries the list's defaults.
    XLISTCTRLDATA& first = fresh->cells[0];
    first.crText = crDefaultText;
    first.crBackground = crDefaultBack;
    first.nImage = image;
    if (hasItemData)
        first.dwItemData = static_cast<DWORD_PTR>(itemData);
    XRow* raw = fresh.get();
    rows.Insert(std::move(fresh));
    LVITEMA item{};
    item.mask = LVIF_TEXT | LVIF_PARAM | (image >= 0 ? LVIF_IMAGE : 0);
    item.iItem = std::max(0, row);
    item.pszText = const_cast<char*>(text ? text : "");
    item.iImage = image;
    item.lParam = reinterpret_cast<LPARAM>(raw);
    const int at = q.CListCtrl::InsertItem(&item);
    if (at < 0) {
        lastRow = nullptr;
        rows.Erase(raw);
    }
    return at;
}

UINT KXListCtrl::Private::ReleaseMessage()
{
    static const UINT message = RegisterWindowMessageA("VxBase.KXListCtrl.Release");
    return message;
}

HWND KXListCtrl::Private::Target() const
{
    if (CWnd* parent = q.GetParent())
        return parent->m_hWnd;
    CWnd* main = AfxGetMainWnd();
    return main ? main->m_hWnd : nullptr;
}

void KXListCtrl::Private::SendSelChanged(int row)
{
    if (CWnd* parent = q.GetParent())
        parent->SendMessage(WM_XLISTCTRL_SELCHANGED, static_cast<WPARAM>(row), 0);
}

void KXListCtrl::Private::FirstSelectable(int& col) const
{
    col = buttonColumn == 0 ? 1 : 0;
}

// --- construction ----------------------------------------------------------------------------

KXListCtrl::KXListCtrl() : d(std::make_unique<Private>(*this))
{
    SetHeaderCtrl(&d->header);
    d->smallImages.Create(452, 16, 4, 0xFF00FF);
    d->cellImages.Create(16, 16, ILC_COLOR24 | ILC_MASK, 0, 4);
}

KXListCtrl::~KXListCtrl()
{
    *d->alive = false;
    if (m_hWnd) {
        DeleteAllItems();
        // The window goes while this object's parts are still here.
        DestroyWindow();
    }
    d->edit.reset();
    d->combo.reset();
    d->box.reset();
}

void KXListCtrl::SetCellMode(BOOL cells)
{
    if (d->cellMode == cells)
        return;
    DeselectAll();
    d->cellMode = cells;
    // Every cell of a grid shows its own selection.
    if (cells)
        SetExtendedStyle(GetExtendedStyle() | LVS_EX_FULLROWSELECT);
    Invalidate(FALSE);
}

BOOL KXListCtrl::GetCellMode() const
{
    return d->cellMode;
}

BOOL KXListCtrl::GetListModified() const
{
    return d->listModified;
}

void KXListCtrl::SetListModified(BOOL modified)
{
    d->listModified = modified;
}

CellSelection& KXListCtrl::GetSelection()
{
    return d->selection;
}

KHeaderCtrlEx& KXListCtrl::GetHeader()
{
    return d->header;
}

CImageList& KXListCtrl::GetCellImages()
{
    return d->cellImages;
}

CImageList& KXListCtrl::GetSmallImages()
{
    return d->smallImages;
}

int KXListCtrl::GetColMod() const
{
    return d->colMod;
}

int KXListCtrl::GetColHeight() const
{
    return d->colHeight;
}

// --- rows --------------------------------------------------------------------------------------

int KXListCtrl::InsertItem(const LVITEMA* item)
{
    if (!item)
        return -1;
    const char* text = (item->mask & LVIF_TEXT) ? item->pszText : "";
    const int image = (item->mask & LVIF_IMAGE) ? item->iImage : -1;
    const int row = d->NewRow(item->iItem, text, image, item->lParam, (item->mask & LVIF_PARAM) != 0);
    if (row >= 0 && (item->mask & LVIF_STATE))
        CListCtrl::SetItemState(row, item->state, item->stateMask);
    return row;
}

int KXListCtrl::InsertItem(int row, const char* text)
{
    return d->NewRow(row, text, -1, 0, false);
}

int KXListCtrl::InsertItem(int row, const char* text, COLORREF textColor, COLORREF background)
{
    const int at = d->NewRow(row, text, -1, 0, false);
    if (at >= 0) {
        XRow* r = d->RowOf(at);
        for (int c = 0; c < r->count; ++c) {
            r->cells[static_cast<std::size_t>(c)].crText = textColor;
            r->cells[static_cast<std::size_t>(c)].crBackground = background;
        }
    }
    return at;
}

int KXListCtrl::InsertBridge(int row, int col, int slot, int image)
{
    const int at = d->NewRow(row, "", -1, 0, false);
    if (at >= 0 && !SetBridge(at, col, slot, image)) {
        CListCtrl::DeleteItem(at);
        return -1;
    }
    return at;
}

int KXListCtrl::InsertButton(int row, int col, const char* text)
{
    const int at = d->NewRow(row, "", -1, 0, false);
    XLISTCTRLDATA* cell = d->Cell(at, col);
    if (!cell) {
        if (at >= 0)
            CListCtrl::DeleteItem(at);
        return -1;
    }
    cell->FreePayload();
    cell->nKind = XLC_KIND_BUTTON;
    CListCtrl::SetItemText(at, col, text ? text : "");
    return at;
}

int KXListCtrl::InsertComboBox(int row, int col, const char* text, XLC_COMBOFILL fill, DWORD_PTR data, int lines,
                               int sort)
{
    const int at = d->NewRow(row, "", -1, 0, false);
    if (at < 0)
        return -1;
    if (!SetComboBox(at, col, TRUE, fill, data, lines, sort)) {
        CListCtrl::DeleteItem(at);
        return -1;
    }
    CListCtrl::SetItemText(at, col, text ? text : "");
    return at;
}

BOOL KXListCtrl::DeleteItem(int row)
{
    if (row < 0 || row >= d->Count())
        return FALSE;
    d->selection.Clear();
    // The row's records go with LVN_DELETEITEM, which the list hears reflected.
    return CListCtrl::DeleteItem(row);
}

BOOL KXListCtrl::DeleteAllItems()
{
    d->selection.Clear();
    if (m_hWnd) {
        const BOOL done = CListCtrl::DeleteAllItems();
        d->lastRow = nullptr;
        d->rows.Clear();
        return done;
    }
    d->lastRow = nullptr;
    d->rows.Clear();
    return TRUE;
}

// --- messages -----------------------------------------------------------------------------------

LRESULT KXListCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DESTROY)
        *d->alive = false;
    if (message == WM_REFLECT_BASE + WM_NOTIFY) {
        auto* hdr = reinterpret_cast<NMHDR*>(lParam);
        if (!hdr || hdr->hwndFrom != m_hWnd)
            return 0;
        LRESULT result = 0;
        switch (hdr->code) {
        case NM_CUSTOMDRAW:
            return OnCustomDraw(hdr, &result) ? result : 0;
        case NM_CLICK:
            return OnClick(hdr, &result) ? result : 0;
        case NM_DBLCLK:
            return OnDblClick(hdr, &result) ? result : 0;
        case LVN_COLUMNCLICK:
            return OnColumnClick(hdr, &result) ? result : 0;
        case LVN_DELETEITEM: {
            const auto* nm = reinterpret_cast<const NMLISTVIEW*>(lParam);
            d->lastRow = nullptr;
            d->rows.Erase(reinterpret_cast<XRow*>(nm->lParam));
            return 0; // the parent hears it too
        }
        case LVN_DELETEALLITEMS:
            return 0;
        default:
            return 0;
        }
    }
    if (message == Private::ReleaseMessage()) {
        d->FreeRetired();
        return 0;
    }
    if (message == WM_XLISTCTRL_EDITKEY)
        return OnEditProc(wParam, lParam);
    if (message == WM_XCOMBOLIST_VK_ESCAPE)
        return OnComboEscape(wParam, lParam);
    if (message == WM_XCOMBOLIST_COMPLETE)
        return OnComboComplete(wParam, lParam);
    if (message == WM_XEDIT_VK_ESCAPE)
        return OnXEditEscape(wParam, lParam);
    if (message == WM_XEDIT_KILL_FOCUS)
        return OnXEditKillFocus(wParam, lParam);
    switch (message) {
    case WM_HSCROLL:
        OnHScroll(LOWORD(static_cast<DWORD_PTR>(wParam)), HIWORD(static_cast<DWORD_PTR>(wParam)));
        return 0;
    default:
        break;
    }
    return KListCtrl::WindowProc(message, wParam, lParam);
}

void KXListCtrl::OnDestroy()
{
    ShowEdiBox(-1, -1, 0, -1);
    const int id = GetSpaltenverwaltungID();
    if (id >= 0) {
        CString key;
        key.Format("%dcolmod", id);
        KProfile::WriteProfileInt("DialogState", key, d->colMod, 0);
        key.Format("%dcolheight", id);
        KProfile::WriteProfileInt("DialogState", key, d->colHeight, 0);
    }
    KListCtrl::OnDestroy();
}

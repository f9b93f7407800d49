// KXListCtrl: painting each cell from its record.
#include "lists/kxlistctrl_p.h"

#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>

namespace {

// Room between a cell's edge and its text.
constexpr int kTextPad = 3;

void Fill(CDC* dc, const CRect& r, COLORREF color)
{
    dc->FillSolidRect(&r, color);
}

UINT AlignmentOf(CListCtrl& list, int col)
{
    LVCOLUMN column{};
    column.mask = LVCF_FMT;
    if (!list.GetColumn(col, &column))
        return DT_LEFT;
    switch (column.fmt & LVCFMT_JUSTIFYMASK) {
    case LVCFMT_RIGHT: return DT_RIGHT;
    case LVCFMT_CENTER: return DT_CENTER;
    default: return DT_LEFT;
    }
}

} // namespace

void KXListCtrl::GetDrawColors(int row, int col, COLORREF& text, COLORREF& background, XLISTCTRLDATA* data)
{
    XLISTCTRLDATA* first = d->First(row);
    if (!data || !first)
        return;
    background = (first->bRowEditable && data->bCellEditable) ? data->crBackground : d->crNotEditable;
    if (first->bModified && !data->bKeepColors)
        background = d->crModified;
    const bool selected = d->cellMode ? (data->nRowSelectState == 2 || data->bSelected)
                                      : (CListCtrl::GetItemState(row, LVIS_SELECTED) & LVIS_SELECTED) != 0;
    if (!selected)
        return;
    if (col != 0 && !(GetExtendedStyle() & LVS_EX_FULLROWSELECT))
        return;
    CWnd* focus = GetFocus();
    if (focus == this || IsChild(focus)) {
        text = d->crHighlightText;
        background = d->crHighlight;
    } else if (GetStyle() & LVS_SHOWSELALWAYS) {
        text = d->crDefaultText;
        background = d->crFace;
    }
}

int KXListCtrl::DrawImage(int row, int col, CDC* dc, COLORREF text, COLORREF background, CRect rect,
                          XLISTCTRLDATA* data)
{
    if (!data || data->nImage < 0 || d->cellImages.GetImageCount() == 0 || rect.IsRectEmpty())
        return 0;
    GetDrawColors(row, col, text, background, data);
    const CSize size = d->cellImages.GetImageSize();
    const int width = std::min(static_cast<int>(size.cx) + 2, rect.Width());
    Fill(dc, CRect(rect.left, rect.top, rect.left + width, rect.bottom), background);
    const int saved = dc->SaveDC();
    dc->IntersectClipRect(rect.left, rect.top, rect.left + width, rect.bottom);
    d->cellImages.Draw(dc, data->nImage, CPoint(rect.left + 1, rect.top + (rect.Height() - size.cy) / 2),
                       ILD_TRANSPARENT);
    dc->RestoreDC(saved);
    return width;
}

void KXListCtrl::DrawText(int row, int col, CDC* dc, COLORREF text, COLORREF background, CRect& rect,
                          XLISTCTRLDATA* data)
{
    if (rect.IsRectEmpty())
        return;
    GetDrawColors(row, col, text, background, data);
    Fill(dc, rect, background);
    const CString value = GetItemText(row, col);
    if (value.IsEmpty())
        return;
    CRect area = rect;
    area.DeflateRect(kTextPad, 0, kTextPad, 0);
    CFont bold;
    CFont* old = nullptr;
    if (data && data->bBold) {
        LOGFONTA lf{};
        GetObjectA(dc->GetCurrentFont()->m_hObject, sizeof lf, &lf);
        lf.lfWeight = FW_BOLD;
        bold.CreateFontIndirect(&lf);
        old = dc->SelectObject(&bold);
    }
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(text);
    dc->DrawText(value, &area, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS | AlignmentOf(*this, col));
    if (old)
        dc->SelectObject(old);
}

void KXListCtrl::DrawIcon(int row, int col, CDC* dc, COLORREF background, CRect& rect, XLISTCTRLDATA* data)
{
    COLORREF text = 0;
    GetDrawColors(row, col, text, background, data);
    Fill(dc, rect, background);
    if (data && data->Icon() && *data->Icon() >= 0)
        d->smallImages.Draw(dc, *data->Icon(), CPoint(rect.left + 1, rect.top + 1), ILD_TRANSPARENT);
}

void KXListCtrl::DrawBridge(int row, int col, CDC* dc, COLORREF background, CRect& rect, XLISTCTRLDATA* data)
{
    COLORREF text = 0;
    GetDrawColors(row, col, text, background, data);
    if (CListCtrl::GetItemState(row, LVIS_SELECTED) && !d->cellMode)
        background = d->crHighlight;
    Fill(dc, rect, background);
    const XLC_BRIDGE* bridge = data ? data->Bridge() : nullptr;
    if (!bridge)
        return;
    const int saved = dc->SaveDC();
    dc->IntersectClipRect(&rect);
    for (int slot = 0; slot < bridge->aUsed.GetSize(); ++slot) {
        if (bridge->aUsed[slot])
            d->smallImages.Draw(dc, static_cast<int>(bridge->aImages[slot]),
                                CPoint(rect.left + 16 * slot + 1, rect.top + 1), ILD_TRANSPARENT);
    }
    dc->RestoreDC(saved);
}

void KXListCtrl::DrawCheckbox(int row, int col, CDC* dc, COLORREF text, COLORREF background, CRect& rect,
                              XLISTCTRLDATA* data)
{
    GetDrawColors(row, col, text, background, data);
    Fill(dc, rect, background);
    const CString value = GetItemText(row, col);
    const int side = std::max(0, static_cast<int>(rect.Height()) - 1);
    CRect box(rect.left + 9, rect.top, rect.left + 9 + side, rect.top + side);
    if (value.IsEmpty())
        box.OffsetRect((rect.Width() - side) / 2 - 9, 0);
    const int saved = dc->SaveDC();
    dc->IntersectClipRect(&rect);
    Fill(dc, box, GetBkColor());
    CBrush frame(RGB(0x33, 0x66, 0x99)); // 0x996633
    dc->FrameRect(&box, &frame);
    if (data && data->nCheckedState == 1) {
        // A tick of seven columns, three pixels thick: it starts six below
        // the box's top, dips, and rises to nine from the box's left.
        const COLORREF ink = GetEnabled(row) ? RGB(0x33, 0x99, 0x33) : d->crGrayText;
        static const int kDip[7] = {0, 1, 2, 1, 0, -1, -2};
        for (int i = 0; i < 7; ++i) {
            for (int t = 0; t < 3; ++t)
                dc->SetPixel(box.left + 3 + i, box.top + 6 + kDip[i] + t, ink);
        }
    }
    dc->RestoreDC(saved);
    if (!value.IsEmpty()) {
        CRect after(box.right + 1, rect.top, rect.right, rect.bottom);
        if (after.right > after.left) {
            after.DeflateRect(2, 0, kTextPad, 0);
            dc->SetBkMode(TRANSPARENT);
            dc->SetTextColor(text);
            dc->DrawText(value, &after, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
        }
    }
}

void KXListCtrl::DrawProgress(int row, int col, CDC* dc, COLORREF text, COLORREF, CRect& rect, XLISTCTRLDATA* data)
{
    if (rect.IsRectEmpty() || !data)
        return;
    CRect r = rect;
    r.bottom -= 1;
    r.left += 1;
    Fill(dc, r, RGB(0xE0, 0xE0, 0xE0));
    CBrush frame(GetBkColor());
    dc->FrameRect(&r, &frame);
    const int percent = data->nProgressPercent;
    if (percent <= 0)
        return;
    CRect bar = rect;
    bar.left += 1;
    bar.top += 1;
    bar.bottom -= 1;
    bar.right = bar.left + rect.Width() * percent / 100 - 1;
    bar.right = std::min(bar.right, r.right);
    Fill(dc, bar, percent > 100 ? RGB(0xFF, 0, 0) : d->crHighlight);
    if (!data->bShowProgressText)
        return;
    CString label;
    label.Format(data->strProgressText.IsEmpty() ? "%d%%" : static_cast<const char*>(data->strProgressText), percent);
    dc->SetBkMode(TRANSPARENT);
    const UINT format = DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_NOPREFIX;
    // Twice, each clipped to its part: over the bar in the highlight text,
    // beside it in the cell's text colour.
    int saved = dc->SaveDC();
    dc->IntersectClipRect(&bar);
    dc->SetTextColor(d->crHighlightText);
    CRect area = r;
    dc->DrawText(label, &area, format);
    dc->RestoreDC(saved);
    saved = dc->SaveDC();
    dc->IntersectClipRect(bar.right, r.top, r.right, r.bottom);
    dc->SetTextColor(text);
    area = r;
    dc->DrawText(label, &area, format);
    dc->RestoreDC(saved);
    (void)row;
    (void)col;
}

void KXListCtrl::DrawButton(CDC* dc, CRect& rect, const char* text, BOOL enabled)
{
    CRect face = rect;
    Fill(dc, face, d->crFace);
    dc->Draw3dRect(&face, d->crHighlightEdge, d->crShadow);
    if (!text || !*text)
        return;
    CRect area = face;
    area.DeflateRect(2, 1);
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(enabled ? d->crButtonText : d->crGrayText);
    dc->DrawText(text, -1, &area, DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void KXListCtrl::DrawButton(int row, int col, CDC* dc, CRect& rect, XLISTCTRLDATA*)
{
    const CString text = GetItemText(row, col);
    DrawButton(dc, rect, text, GetEnabled(row));
}

BOOL KXListCtrl::OnCustomDraw(NMHDR* header, LRESULT* result)
{
    auto* cd = reinterpret_cast<NMLVCUSTOMDRAW*>(header);
    *result = CDRF_DODEFAULT;
    if (d->drawingSuspended)
        return FALSE;
    CDC* dc = CDC::FromHandle(cd->nmcd.hdc);
    switch (cd->nmcd.dwDrawStage) {
    case CDDS_PREPAINT: {
        if (d->buttonColumn >= 0 && d->buttonColumn < GetColumns()) {
            // The button column's face runs to the foot of the list in
            // tiles of a row's height, so it looks whole below the last row.
            CRect client;
            GetClientRect(&client);
            CRect column;
            const int top = GetTopIndex();
            int height = 17;
            int y = client.top;
            if (d->Count() > 0) {
                GetSubItemRect(top, d->buttonColumn, LVIR_BOUNDS, column);
                height = std::max(1, column.Height());
                y = column.top;
            } else if (CHeaderCtrl* h = GetHeaderCtrl()) {
                CRect hr;
                h->GetItemRect(d->buttonColumn, &hr);
                column = hr;
                CRect hw;
                h->GetWindowRect(&hw);
                y = hw.Height();
            }
            for (; y < client.bottom; y += height) {
                CRect tile(column.left, y, column.right, y + height);
                DrawButton(dc, tile, "", TRUE);
            }
        }
        *result = CDRF_NOTIFYITEMDRAW;
        return TRUE;
    }
    case CDDS_ITEMPREPAINT:
        *result = CDRF_NOTIFYSUBITEMDRAW;
        return TRUE;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
        break;
    default:
        return FALSE;
    }
    const int row = static_cast<int>(cd->nmcd.dwItemSpec);
    const int col = cd->iSubItem;
    XLISTCTRLDATA* data = d->Cell(row, col);
    if (!data)
        return FALSE; // a column newer than the row: the list paints it
    CRect rect;
    GetSubItemRect(row, col, LVIR_BOUNDS, rect);
    COLORREF text = data->crText;
    COLORREF back = data->crBackground;
    if (!GetEnabled(row))
        text = d->crGrayText;
    if (data->bModified && !data->bKeepColors) {
        text = d->crDefaultText;
        back = d->crModified;
    }
    CFont* listFont = GetFont();
    if (listFont)
        dc->SelectObject(listFont);
    if (data->nKind == XLC_KIND_ICON) {
        DrawIcon(row, col, dc, back, rect, data);
    } else if (data->nKind == XLC_KIND_BUTTON || col == d->buttonColumn) {
        DrawButton(row, col, dc, rect, data);
    } else if (data->bProgress) {
        DrawProgress(row, col, dc, text, back, rect, data);
    } else if (data->nKind == XLC_KIND_BRIDGE) {
        DrawBridge(row, col, dc, back, rect, data);
    } else if (data->nCheckedState != -1) {
        DrawCheckbox(row, col, dc, text, back, rect, data);
    } else {
        const int used = DrawImage(row, col, dc, text, back, rect, data);
        CRect rest = rect;
        rest.left += used;
        DrawText(row, col, dc, text, back, rest, data);
    }
    *result = CDRF_SKIPDEFAULT;
    return TRUE;
}

void KXListCtrl::OnPaint()
{
    KListCtrl::OnPaint();
}

BOOL KXListCtrl::OnEraseBkgnd()
{
    return TRUE; // every pixel is painted by the cells or the list
}

void KXListCtrl::OnSysColorChange()
{
    d->ReadColors();
    KListCtrl::OnSysColorChange();
}

#include "previewpainter.h"

#include <QCoreApplication>

#include <algorithm>
#include <map>
#include <memory>

namespace vxhost {
namespace {

// The file name part of a path with "\" or "/".
CString FileName(const char* path)
{
    const CString text = path ? path : "";
    const int slash = std::max(text.ReverseFind('\\'), text.ReverseFind('/'));
    return text.Mid(slash + 1);
}

// The picture's font by its height; made once, as a program keeps its fonts.
CFont& FontOf(int height)
{
    static std::map<int, std::unique_ptr<CFont>> fonts;
    auto& font = fonts[height];
    if (!font) {
        font = std::make_unique<CFont>();
        font->CreateFont(-height, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Arial");
    }
    return *font;
}

void Frame(CDC& dc, const CRect& r, COLORREF colour)
{
    CBrush brush(colour);
    dc.FrameRect(&r, &brush);
}

} // namespace

bool DrawTestPicture(HDC hdc, const char* path, MainframeType drawer)
{
    CDC* dc = CDC::FromHandle(hdc);
    CRect box;
    if (!path || !*path || !dc || dc->GetClipBox(&box) == NULLREGION || box.Width() < 24 || box.Height() < 24)
        return false;
    const int w = box.Width();
    const int h = box.Height();
    dc->FillSolidRect(&box, RGB(255, 255, 255));

    // The sheet: an outer and an inner frame.
    CRect sheet = box;
    sheet.DeflateRect(3, 3);
    Frame(*dc, sheet, kPictureFrame);
    sheet.DeflateRect(3, 3);
    Frame(*dc, sheet, kPictureFrame);

    // The circuit: a bus, three branches down to a resistor, a lamp and a
    // switch, and a return line.
    CPen wire(PS_SOLID, 1, kPictureCircuit);
    CPen part(PS_SOLID, 1, kPictureParts);
    CBrush paper(RGB(255, 255, 255)); // parts hide the wire they stand on
    CPen* oldPen = dc->SelectObject(&wire);
    CBrush* oldBrush = dc->SelectObject(&paper);
    const int left = box.left + w / 8;
    const int right = box.right - w / 8;
    const int bus = box.top + h / 4;
    const int ground = box.top + h * 5 / 8;
    dc->MoveTo(left, bus);
    dc->LineTo(right, bus);
    dc->MoveTo(left, ground);
    dc->LineTo(right, ground);
    const int unit = std::max(4, std::min(w, h) / 12);
    for (int i = 0; i < 3; ++i) {
        const int x = left + (right - left) * (2 * i + 1) / 6;
        dc->SelectObject(&wire);
        dc->MoveTo(x, bus);
        dc->LineTo(x, ground);
        dc->SelectObject(&part);
        const int mid = (bus + ground) / 2;
        if (i == 0) {
            dc->Rectangle(x - unit / 2, mid - unit, x + unit / 2, mid + unit);
        } else if (i == 1) {
            dc->Ellipse(x - unit, mid - unit, x + unit, mid + unit);
            dc->MoveTo(x - unit * 7 / 10, mid - unit * 7 / 10);
            dc->LineTo(x + unit * 7 / 10, mid + unit * 7 / 10);
            dc->MoveTo(x + unit * 7 / 10, mid - unit * 7 / 10);
            dc->LineTo(x - unit * 7 / 10, mid + unit * 7 / 10);
        } else {
            dc->FillSolidRect(x - 1, mid - unit, 3, 2 * unit, RGB(255, 255, 255));
            dc->MoveTo(x, mid + unit);
            dc->LineTo(x + unit, mid - unit);
        }
    }
    dc->SelectObject(oldPen);
    dc->SelectObject(oldBrush);

    // The program at the top left, the title block with the file name at
    // the bottom right.
    CFont* oldFont = dc->SelectObject(&FontOf(std::clamp(h / 14, 8, 14)));
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(kPictureText);
    TEXTMETRICA tm{};
    dc->GetTextMetrics(&tm);
    const char* program = drawer == MainframeIT ? "IT" : "AT";
    dc->TextOut(sheet.left + 3, sheet.top + 2, program, 2);
    CRect title(sheet.left + w / 3, sheet.bottom - std::max(14, h / 6), sheet.right, sheet.bottom);
    Frame(*dc, title, kPictureFrame);
    title.DeflateRect(3, 1);
    const CString name = FileName(path);
    dc->ExtTextOut(title.left, title.top + (title.Height() - tm.tmHeight) / 2, ETO_CLIPPED, &title, name, nullptr);
    dc->SelectObject(oldFont);
    return true;
}

namespace {

// Text needs Qt's application; a program that had no window to show until
// now starts it at its first picture.
void EnsureUi()
{
    if (!QCoreApplication::instance())
        vx::InitUi();
}

} // namespace

void EndPreviewUi()
{
    if (QCoreApplication::instance())
        vx::ShutdownUi();
}

bool TestPictureHost::Paint(LPARAM dc, const char* path, MainframeType drawer)
{
    EnsureUi();
    return DrawTestPicture(reinterpret_cast<HDC>(dc), path, drawer);
}

LRESULT TestPictureHost::Request(WPARAM code, LPARAM lParam, MainframeType drawer)
{
    EnsureUi();
    const auto* record = reinterpret_cast<const vx::VorschauRecord*>(lParam);
    switch (code) {
    case vx::kVorschauLoad: {
        if (!record || !record->path || !record->window)
            return 1;
        // The frame draws what its own program draws: the project's pages,
        // and exchange drawings.
        const char* ext = KVxPath::GetExtension(*record->path);
        if (KVxFile(*record->path).IsValidPage(1) == VxFileNone && !(ext && !_stricmp(ext, ".DXF")))
            return 1;
        CClientDC dc(record->window);
        CRect client;
        record->window->GetClientRect(&client);
        dc.IntersectClipRect(&client);
        if (!DrawTestPicture(dc.GetSafeHdc(), *record->path, drawer))
            return 1;
        m_last = *record->path;
        return 0;
    }
    case vx::kVorschauShow: {
        if (!record || !record->window || m_last.IsEmpty())
            return 0;
        CClientDC dc(record->window);
        return DrawTestPicture(dc.GetSafeHdc(), m_last, drawer) ? 1 : 0;
    }
    case vx::kVorschauExit:
        m_last.Empty();
        return 0;
    default:
        return 0;
    }
}

void InstallPreviewHost()
{
    static TestPictureHost host;
    PartnerFrame::SetPreviewHost(&host);
}

} // namespace vxhost

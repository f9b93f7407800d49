#include "ui/gdi/gdiobjects_p.h"
#include "ui/gdi/marlett_p.h"

#include "platform/framework/codepage.h"
#include "platform/framework/util_p.h"
#include "platform/windows/sysmetrics.h"

#include <QGuiApplication>

#include <cstring>
#include <string>
#include <vector>

namespace vx::gdi {
namespace {

bool FaceIs(const char* face, const char* name)
{
    return vx::AsciiCompareNoCase(face, name, std::strlen(name)) == 0;
}

void FillMetrics(Font& f)
{
    TEXTMETRICA& tm = f.tm;
    tm = TEXTMETRICA{};
    if (f.marlett || !f.fm) {
        // No font engine (or the symbol font): the em square is the cell.
        tm.tmAscent = f.marlett ? f.pixelSize : (f.pixelSize * 93 + 50) / 100;
        tm.tmDescent = f.pixelSize - tm.tmAscent + (f.marlett ? 0 : f.pixelSize / 5);
        tm.tmAveCharWidth = f.marlett ? f.pixelSize : (f.pixelSize + 1) / 2;
        tm.tmMaxCharWidth = f.pixelSize;
    } else {
        tm.tmAscent = f.fm->ascent();
        tm.tmDescent = f.fm->descent();
        tm.tmAveCharWidth = f.fm->averageCharWidth();
        tm.tmMaxCharWidth = f.fm->maxWidth();
        tm.tmExternalLeading = std::max(0, f.fm->leading());
    }
    tm.tmHeight = tm.tmAscent + tm.tmDescent;
    tm.tmInternalLeading = std::max<LONG>(0, tm.tmHeight - f.pixelSize);
    tm.tmWeight = f.lf.lfWeight ? f.lf.lfWeight : FW_NORMAL;
    tm.tmDigitizedAspectX = 96;
    tm.tmDigitizedAspectY = 96;
    tm.tmFirstChar = 0x20;
    tm.tmLastChar = 0xFF;
    tm.tmDefaultChar = 0x1F;
    tm.tmBreakChar = 0x20;
    tm.tmItalic = f.lf.lfItalic;
    tm.tmUnderlined = f.lf.lfUnderline;
    tm.tmStruckOut = f.lf.lfStrikeOut;
    // The low bit set means a variable pitch, as on the original.
    const bool fixed = f.qfont.family().contains(QLatin1String("Mono"));
    tm.tmPitchAndFamily = static_cast<BYTE>((fixed ? 0 : 1) | (f.lf.lfPitchAndFamily & 0xF0));
    tm.tmCharSet = f.lf.lfCharSet;
}

Font* FontOf(Dc& dc)
{
    Font* f = Get<Font>(dc.st.font);
    return f ? f : static_cast<Font*>(Stock(SYSTEM_FONT));
}

QString ToQt(const Font& f, const std::string& bytes)
{
    if (f.marlett)
        return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
    const std::string utf8 = vx::ToUtf8(bytes);
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

int TabWidth(const Font& f, UINT format)
{
    const int chars = (format & DT_TABSTOP) ? static_cast<int>((format >> 8) & 0xFF) : 8;
    return std::max(1, chars) * std::max<LONG>(1, f.tm.tmAveCharWidth);
}

// Width of text without tabs.
int PlainWidth(const Font& f, const std::string& bytes)
{
    if (bytes.empty())
        return 0;
    if (f.marlett || !f.fm)
        return static_cast<int>(bytes.size()) * f.tm.tmAveCharWidth;
    if (const auto known = f.widths.find(bytes); known != f.widths.end())
        return known->second;
    if (f.widths.size() >= 4096)
        f.widths.clear();
    const int width = f.fm->horizontalAdvance(ToQt(f, bytes));
    f.widths.emplace(bytes, width);
    return width;
}

// Width of a line; tabs advance to the next stop when `tabs` is set.
int LineWidth(const Font& f, const std::string& bytes, bool tabs, int tabWidth)
{
    if (!tabs || bytes.find('\t') == std::string::npos)
        return PlainWidth(f, bytes);
    int x = 0;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = bytes.find('\t', start);
        x += PlainWidth(f, bytes.substr(start, tab == std::string::npos ? std::string::npos : tab - start));
        if (tab == std::string::npos)
            return x;
        x = (x / tabWidth + 1) * tabWidth;
        start = tab + 1;
    }
}

struct Line {
    std::string text;
    std::vector<int> underline; // byte positions of "&" letters
    int width = 0;
};

// Takes "&" prefixes out of a paragraph: "&&" is "&", "&x" underlines x.
Line StripPrefix(const std::string& in, UINT format)
{
    Line line;
    if (format & DT_NOPREFIX) {
        line.text = in;
        return line;
    }
    for (std::size_t i = 0; i < in.size(); ++i) {
        if (in[i] != '&') {
            if (!(format & DT_PREFIXONLY))
                line.text += in[i];
            else
                line.text += ' ';
            continue;
        }
        if (i + 1 >= in.size())
            break;
        ++i;
        if (in[i] != '&' && !(format & DT_HIDEPREFIX))
            line.underline.push_back(static_cast<int>(line.text.size()));
        line.text += in[i];
    }
    return line;
}

std::vector<Line> BreakWords(const Font& f, const Line& para, int width, bool tabs, int tabWidth)
{
    const std::string& t = para.text;
    const std::size_t n = t.size();
    std::vector<Line> out;
    auto push = [&](std::size_t from, std::size_t to) {
        Line l;
        l.text = t.substr(from, to - from);
        for (int u : para.underline) {
            if (static_cast<std::size_t>(u) >= from && static_cast<std::size_t>(u) < to)
                l.underline.push_back(static_cast<int>(u - from));
        }
        out.push_back(std::move(l));
    };
    std::size_t lineStart = 0;
    std::size_t pos = 0; // end of the last word on the line
    for (;;) {
        std::size_t wordStart = pos;
        while (wordStart < n && t[wordStart] == ' ')
            ++wordStart;
        std::size_t wordEnd = wordStart;
        while (wordEnd < n && t[wordEnd] != ' ')
            ++wordEnd;
        if (wordStart == wordEnd) {
            push(lineStart, n);
            break;
        }
        // A word that would overflow a line which already holds one starts the
        // next line; a single word wider than the rectangle stays whole.
        if (pos > lineStart && LineWidth(f, t.substr(lineStart, wordEnd - lineStart), tabs, tabWidth) > width) {
            push(lineStart, pos);
            lineStart = wordStart;
            pos = wordStart;
            continue;
        }
        pos = wordEnd;
        if (pos >= n) {
            push(lineStart, n);
            break;
        }
    }
    return out;
}

// Shortens a line that does not fit by the ellipsis style of `format`.
void Ellipsize(const Font& f, Line& line, int width, UINT format, bool tabs, int tabWidth)
{
    if (LineWidth(f, line.text, tabs, tabWidth) <= width)
        return;
    const std::string dots = "...";
    std::string t = line.text;
    line.underline.clear();
    if (format & DT_PATH_ELLIPSIS) {
        const std::size_t slash = t.find_last_of("\\/");
        const std::string tail = slash == std::string::npos ? t : t.substr(slash);
        std::string head = slash == std::string::npos ? std::string() : t.substr(0, slash);
        while (!head.empty() && LineWidth(f, head + dots + tail, tabs, tabWidth) > width)
            head.pop_back();
        line.text = head + dots + tail;
        return;
    }
    if (format & DT_WORD_ELLIPSIS) {
        while (!t.empty() && LineWidth(f, t + dots, tabs, tabWidth) > width) {
            const std::size_t space = t.find_last_of(' ');
            t = space == std::string::npos ? std::string() : t.substr(0, space);
        }
        line.text = t + dots;
        return;
    }
    while (!t.empty() && LineWidth(f, t + dots, tabs, tabWidth) > width)
        t.pop_back();
    line.text = t + dots;
}

// Draws one line with its top left at device point `at`.
void PaintLine(Dc& dc, QPainter& p, const Font& f, const Line& line, QPoint at, bool tabs, int tabWidth)
{
    const QColor color = QColor::fromRgb(ToRgb(dc.st.text));
    const int baseline = at.y() + f.tm.tmAscent;
    auto drawPlain = [&](const std::string& bytes, int x) {
        if (bytes.empty())
            return;
        if (f.marlett) {
            for (std::size_t k = 0; k < bytes.size(); ++k) {
                const QRect em(x + static_cast<int>(k) * f.pixelSize, at.y(), f.pixelSize, f.pixelSize);
                DrawMarlettGlyph(p, static_cast<unsigned char>(bytes[k]), em, color);
            }
            return;
        }
        p.setFont(f.qfont);
        p.setPen(color);
        p.drawText(QPoint(x, baseline), ToQt(f, bytes));
    };
    int x = at.x();
    std::size_t start = 0;
    const std::string& t = line.text;
    if (!tabs) {
        drawPlain(t, x);
    } else {
        for (;;) {
            const std::size_t tab = t.find('\t', start);
            const std::string piece = t.substr(start, tab == std::string::npos ? std::string::npos : tab - start);
            drawPlain(piece, x);
            x += PlainWidth(f, piece);
            if (tab == std::string::npos)
                break;
            x = at.x() + ((x - at.x()) / tabWidth + 1) * tabWidth;
            start = tab + 1;
        }
    }
    for (int u : line.underline) {
        const int ux = at.x() + LineWidth(f, t.substr(0, static_cast<std::size_t>(u)), tabs, tabWidth);
        const int uw = PlainWidth(f, t.substr(static_cast<std::size_t>(u), 1));
        p.fillRect(QRect(ux, baseline + 1, std::max(1, uw), 1), color);
    }
}

std::string Bytes(LPCSTR text, int count)
{
    if (!text)
        return std::string();
    if (count < 0)
        return std::string(text);
    return std::string(text, static_cast<std::size_t>(count));
}

} // namespace

std::unique_ptr<Font> MakeFont(const LOGFONTA& lf)
{
    auto f = std::make_unique<Font>();
    f->lf = lf;
    f->lf.lfFaceName[LF_FACESIZE - 1] = 0;
    const char* face = f->lf.lfFaceName;
    f->marlett = FaceIs(face, "Marlett");
    const bool fixed = (lf.lfPitchAndFamily & 0x03) == FIXED_PITCH || (lf.lfPitchAndFamily & 0xF0) == FF_MODERN ||
                       FaceIs(face, "Courier") || FaceIs(face, "Lucida Console") || FaceIs(face, "Consolas");
    QFont q(QStringLiteral("DejaVu Sans"));
    if (fixed)
        q.setFamily(QStringLiteral("DejaVu Sans Mono"));
    const bool smooth = lf.lfQuality == ANTIALIASED_QUALITY || lf.lfQuality == CLEARTYPE_QUALITY;
    q.setStyleStrategy(smooth ? QFont::PreferAntialias : QFont::NoAntialias);
    q.setKerning(false);
    q.setWeight(static_cast<QFont::Weight>(std::clamp<int>(lf.lfWeight ? lf.lfWeight : FW_NORMAL, 1, 1000)));
    q.setItalic(lf.lfItalic != 0);
    q.setUnderline(lf.lfUnderline != 0);
    q.setStrikeOut(lf.lfStrikeOut != 0);
    const bool engine = QGuiApplication::instance() != nullptr;
    int em = 11;
    if (lf.lfHeight < 0) {
        em = -lf.lfHeight;
    } else if (lf.lfHeight > 0) {
        // A cell height: the largest em whose ascent plus descent fits.
        em = lf.lfHeight;
        if (!f->marlett) {
            if (engine) {
                for (; em > 1; --em) {
                    q.setPixelSize(em);
                    QFontMetrics m(q);
                    if (m.ascent() + m.descent() <= lf.lfHeight)
                        break;
                }
            } else {
                em = std::max(1, lf.lfHeight * 100 / 116);
            }
        }
    }
    f->pixelSize = std::max(1, em);
    q.setPixelSize(f->pixelSize);
    if (engine && lf.lfWidth > 0 && !f->marlett) {
        const int natural = QFontMetrics(q).averageCharWidth();
        if (natural > 0)
            q.setStretch(std::clamp(static_cast<int>(100 * lf.lfWidth / natural), 1, 4000));
    }
    f->qfont = q;
    if (engine)
        f->fm = std::make_unique<QFontMetrics>(q);
    FillMetrics(*f);
    return f;
}

QImage TextShape(Dc& dc, const char* text, int count, bool prefix)
{
    Font* f = FontOf(dc);
    const Line line = StripPrefix(Bytes(text, count), prefix ? 0 : DT_NOPREFIX);
    const int width = std::max(1, LineWidth(*f, line.text, false, 1));
    QImage shape(width, std::max<int>(1, f->tm.tmHeight), QImage::Format_RGB32);
    shape.fill(0xFFFFFFFFu);
    QPainter p(&shape);
    Dc plain(Dc::Type::Memory);
    plain.st.text = RGB(0, 0, 0);
    PaintLine(plain, p, *f, line, QPoint(0, 0), false, 1);
    return shape;
}

} // namespace vx::gdi

using namespace vx::gdi;

HFONT CreateFontIndirectA(const LOGFONTA* font)
{
    return font ? static_cast<HFONT>(Add(MakeFont(*font))) : nullptr;
}

HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic, DWORD underline,
                  DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                  DWORD pitchAndFamily, LPCSTR face)
{
    LOGFONTA lf{};
    lf.lfHeight = height;
    lf.lfWidth = width;
    lf.lfEscapement = escapement;
    lf.lfOrientation = orientation;
    lf.lfWeight = weight;
    lf.lfItalic = static_cast<BYTE>(italic);
    lf.lfUnderline = static_cast<BYTE>(underline);
    lf.lfStrikeOut = static_cast<BYTE>(strikeOut);
    lf.lfCharSet = static_cast<BYTE>(charSet);
    lf.lfOutPrecision = static_cast<BYTE>(outPrecision);
    lf.lfClipPrecision = static_cast<BYTE>(clipPrecision);
    lf.lfQuality = static_cast<BYTE>(quality);
    lf.lfPitchAndFamily = static_cast<BYTE>(pitchAndFamily);
    if (face)
        std::strncpy(lf.lfFaceName, face, LF_FACESIZE - 1);
    return CreateFontIndirectA(&lf);
}

int DrawTextA(HDC dc, LPCSTR text, int count, RECT* rect, UINT format)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !rect)
        return 0;
    Font* f = FontOf(*d);
    const bool tabs = format & DT_EXPANDTABS;
    const int tabWidth = TabWidth(*f, format);
    const CRect r(rect);
    std::string bytes = Bytes(text, count);

    // Paragraphs, then lines.
    std::vector<Line> lines;
    if (format & DT_SINGLELINE) {
        std::string flat;
        for (char c : bytes) {
            if (c != '\r' && c != '\n')
                flat += c;
        }
        lines.push_back(StripPrefix(flat, format));
    } else {
        std::size_t start = 0;
        for (;;) {
            std::size_t end = bytes.find_first_of("\r\n", start);
            lines.push_back(StripPrefix(bytes.substr(start, end == std::string::npos ? std::string::npos : end - start),
                                        format));
            if (end == std::string::npos)
                break;
            start = end + 1;
            if (bytes[end] == '\r' && start < bytes.size() && bytes[start] == '\n')
                ++start;
        }
        if (format & DT_WORDBREAK) {
            std::vector<Line> broken;
            for (const Line& para : lines) {
                for (Line& l : BreakWords(*f, para, r.Width(), tabs, tabWidth))
                    broken.push_back(std::move(l));
            }
            lines = std::move(broken);
        }
    }
    if (format & (DT_END_ELLIPSIS | DT_PATH_ELLIPSIS | DT_WORD_ELLIPSIS)) {
        for (Line& l : lines)
            Ellipsize(*f, l, r.Width(), format, tabs, tabWidth);
    }
    int maxWidth = 0;
    for (Line& l : lines) {
        l.width = LineWidth(*f, l.text, tabs, tabWidth);
        maxWidth = std::max(maxWidth, l.width);
    }
    const int lineHeight = f->tm.tmHeight + ((format & DT_EXTERNALLEADING) ? f->tm.tmExternalLeading : 0);
    const int total = lineHeight * static_cast<int>(lines.size());

    int top = r.top;
    if (format & DT_SINGLELINE) {
        if (format & DT_VCENTER)
            top = (r.top + r.bottom - lineHeight) / 2;
        else if (format & DT_BOTTOM)
            top = r.bottom - lineHeight;
    }
    if (format & DT_CALCRECT) {
        rect->right = rect->left + maxWidth;
        rect->bottom = rect->top + total;
        return total;
    }

    if (QPainter* p = d->Painter()) {
        p->save();
        if (!(format & DT_NOCLIP)) {
            const QRegion clip = d->Clip() & d->ToDevice(r);
            p->setClipRegion(clip);
        }
        int y = top;
        for (const Line& l : lines) {
            int x = r.left;
            if (format & DT_CENTER)
                x = (r.left + r.right - l.width) / 2;
            else if (format & DT_RIGHT)
                x = r.right - l.width;
            const QPoint at = d->ToDevice(x, y);
            if (d->st.bkMode == OPAQUE && l.width > 0)
                p->fillRect(QRect(at, QSize(l.width, lineHeight)), QColor::fromRgb(ToRgb(d->st.bk)));
            PaintLine(*d, *p, *f, l, at, tabs, tabWidth);
            y += lineHeight;
        }
        p->restore();
    }
    if (format & (DT_VCENTER | DT_BOTTOM))
        return (format & DT_SINGLELINE) ? top + lineHeight - r.top : total;
    return total;
}

BOOL ExtTextOutA(HDC dc, int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT count, const int* dx)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    Font* f = FontOf(*d);
    QPainter* p = d->Painter();
    if (!p)
        return FALSE;
    if (rect && (options & ETO_OPAQUE))
        p->fillRect(d->ToDevice(*rect), QColor::fromRgb(ToRgb(d->st.bk)));
    if (!text || count == 0)
        return TRUE;
    Line line;
    line.text = std::string(text, count);
    const int width = dx ? [&] {
        int w = 0;
        for (UINT i = 0; i < count; ++i)
            w += dx[i];
        return w;
    }()
                         : LineWidth(*f, line.text, false, 1);
    const UINT align = d->st.textAlign;
    if (align & TA_UPDATECP) {
        x = d->st.pos.x();
        y = d->st.pos.y();
    }
    int left = x;
    if ((align & TA_CENTER) == TA_CENTER)
        left = x - width / 2;
    else if (align & TA_RIGHT)
        left = x - width;
    int topY = y;
    if ((align & TA_BASELINE) == TA_BASELINE)
        topY = y - f->tm.tmAscent;
    else if (align & TA_BOTTOM)
        topY = y - f->tm.tmHeight;
    p->save();
    if (rect && (options & ETO_CLIPPED))
        p->setClipRegion(d->Clip() & d->ToDevice(*rect));
    const QPoint at = d->ToDevice(left, topY);
    const double angle = f->lf.lfEscapement / 10.0;
    if (angle != 0.0) {
        // Escapement turns the text about its reference point, counter-clockwise.
        const QPoint ref = d->ToDevice(x, y);
        p->translate(ref);
        p->rotate(-angle);
        p->translate(-ref);
    }
    if (d->st.bkMode == OPAQUE)
        p->fillRect(QRect(at, QSize(width, f->tm.tmHeight)), QColor::fromRgb(ToRgb(d->st.bk)));
    if (dx) {
        int cx = at.x();
        for (UINT i = 0; i < count; ++i) {
            Line one;
            one.text = std::string(1, text[i]);
            PaintLine(*d, *p, *f, one, QPoint(cx, at.y()), false, 1);
            cx += dx[i];
        }
    } else {
        PaintLine(*d, *p, *f, line, at, false, 1);
    }
    p->restore();
    if (align & TA_UPDATECP)
        d->st.pos.setX(x + width);
    return TRUE;
}

BOOL TextOutA(HDC dc, int x, int y, LPCSTR text, int count)
{
    if (!text)
        return FALSE;
    return ExtTextOutA(dc, x, y, 0, nullptr, text, static_cast<UINT>(count < 0 ? std::strlen(text) : count), nullptr);
}

BOOL GetTextExtentPoint32A(HDC dc, LPCSTR text, int count, SIZE* size)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !size)
        return FALSE;
    Font* f = FontOf(*d);
    size->cx = PlainWidth(*f, Bytes(text, count));
    size->cy = f->tm.tmHeight;
    return TRUE;
}

BOOL GetTextMetricsA(HDC dc, TEXTMETRICA* metrics)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !metrics)
        return FALSE;
    *metrics = FontOf(*d)->tm;
    return TRUE;
}

int GetTextFaceA(HDC dc, int count, LPSTR face)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return 0;
    const char* name = FontOf(*d)->lf.lfFaceName;
    const int n = static_cast<int>(std::strlen(name));
    if (!face)
        return n + 1;
    if (count <= 0)
        return 0;
    const int copied = std::min(n, count - 1);
    std::memcpy(face, name, static_cast<std::size_t>(copied));
    face[copied] = 0;
    return copied;
}

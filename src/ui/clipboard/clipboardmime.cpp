#include "ui/clipboard/clipboardmime_p.h"

#include "ui/clipboard/clipboard.h"

#include "platform/framework/codepage.h"

#include <QString>
#include <QVariant>

#include <algorithm>
#include <cstring>
#include <string>

namespace vx::clip {
namespace {

// Who gave the desktop text: a CF_UNICODETEXT put on the data wins over the
// text made from CF_TEXT.
const char* const kUnicodeGiven = "vxUnicodeGiven";
const char* const kRegisteredPrefix = "application/x-vxbase-format;name=";

// The exact bytes of CF_TEXT between programs of the suite, marked with the
// code page they are in.
QString ExactTextMime()
{
    return QStringLiteral("application/x-vxbase-text;charset=") + QString::fromStdString(vx::CodePage());
}

QString RegisteredMime(UINT format)
{
    const QByteArray name = RegisteredName(format);
    if (name.isEmpty())
        return QString();
    return QString::fromLatin1(kRegisteredPrefix) + QString::fromLatin1(name.toPercentEncoding());
}

// Up to the first zero: what a C string reading of the block sees.
QByteArray UntilZero(const QByteArray& bytes)
{
    const int zero = bytes.indexOf('\0');
    return zero < 0 ? bytes : bytes.left(zero);
}

QString ToDesktop(const QByteArray& codePage)
{
    const std::string utf8 = vx::ToUtf8(std::string_view(codePage.constData(), static_cast<std::size_t>(codePage.size())));
    QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text;
}

QByteArray FromDesktop(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    const std::string bytes = vx::FromUtf8(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
    // Lines end in "\r\n" here, whatever the other program wrote.
    QByteArray out;
    out.reserve(static_cast<qsizetype>(bytes.size() + bytes.size() / 16 + 1));
    char previous = '\0';
    for (char c : bytes) {
        if (c == '\n' && previous != '\r')
            out.append('\r');
        out.append(c);
        previous = c;
    }
    out.append('\0');
    return out;
}

QByteArray Utf16Block(const QString& text)
{
    QByteArray out(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    out.append(2, '\0');
    return out;
}

QString FromUtf16Block(const QByteArray& bytes)
{
    qsizetype units = bytes.size() / 2;
    const auto* data = reinterpret_cast<const char16_t*>(bytes.constData());
    for (qsizetype i = 0; i < units; ++i) {
        if (data[i] == 0) {
            units = i;
            break;
        }
    }
    return QString::fromUtf16(data, units);
}

} // namespace

bool Put(QMimeData& mime, UINT format, const QByteArray& bytes)
{
    switch (format) {
    case CF_TEXT:
    case CF_OEMTEXT: {
        const QByteArray text = UntilZero(bytes);
        mime.setData(ExactTextMime(), text);
        if (!mime.property(kUnicodeGiven).toBool())
            mime.setText(ToDesktop(text));
        return true;
    }
    case CF_UNICODETEXT: {
        QString text = FromUtf16Block(bytes);
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        mime.setText(text);
        mime.setProperty(kUnicodeGiven, true);
        return true;
    }
    default: {
        const QString type = RegisteredMime(format);
        if (type.isEmpty())
            return false;
        mime.setData(type, bytes);
        return true;
    }
    }
}

bool Has(const QMimeData& mime, UINT format)
{
    switch (format) {
    case CF_TEXT:
    case CF_OEMTEXT:
        return mime.hasFormat(ExactTextMime()) || mime.hasText();
    case CF_UNICODETEXT:
        return mime.hasText() || mime.hasFormat(ExactTextMime());
    default: {
        const QString type = RegisteredMime(format);
        return !type.isEmpty() && mime.hasFormat(type);
    }
    }
}

QByteArray Get(const QMimeData& mime, UINT format)
{
    switch (format) {
    case CF_TEXT:
    case CF_OEMTEXT: {
        const QString exact = ExactTextMime();
        if (mime.hasFormat(exact)) {
            QByteArray bytes = mime.data(exact);
            bytes.append('\0');
            return bytes;
        }
        return mime.hasText() ? FromDesktop(mime.text()) : QByteArray();
    }
    case CF_UNICODETEXT: {
        if (mime.hasText()) {
            QString text = mime.text();
            text.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
            text.replace(QStringLiteral("\r\r\n"), QStringLiteral("\r\n"));
            return Utf16Block(text);
        }
        const QString exact = ExactTextMime();
        return mime.hasFormat(exact) ? Utf16Block(ToDesktop(mime.data(exact)).replace(QStringLiteral("\n"), QStringLiteral("\r\n")))
                                     : QByteArray();
    }
    default: {
        const QString type = RegisteredMime(format);
        return type.isEmpty() ? QByteArray() : mime.data(type);
    }
    }
}

std::vector<UINT> Formats(const QMimeData& mime)
{
    std::vector<UINT> out;
    if (Has(mime, CF_TEXT)) {
        out.push_back(CF_TEXT);
        out.push_back(CF_OEMTEXT);
        out.push_back(CF_UNICODETEXT);
    }
    const QString prefix = QString::fromLatin1(kRegisteredPrefix);
    for (const QString& type : mime.formats()) {
        if (!type.startsWith(prefix))
            continue;
        const QByteArray name = QByteArray::fromPercentEncoding(type.mid(prefix.size()).toLatin1());
        if (!name.isEmpty())
            out.push_back(RegisterClipboardFormatA(name.constData()));
    }
    return out;
}

std::unique_ptr<QMimeData> Copy(const QMimeData& mime)
{
    auto copy = std::make_unique<QMimeData>();
    for (const QString& type : mime.formats())
        copy->setData(type, mime.data(type));
    copy->setProperty(kUnicodeGiven, mime.property(kUnicodeGiven));
    return copy;
}

} // namespace vx::clip

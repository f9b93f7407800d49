#include "ui/clipboard/coledatasource.h"

#include "ui/clipboard/clipboard.h"
#include "ui/clipboard/clipboardmime_p.h"
#include "ui/clipboard/droptranslate_p.h"

#include "platform/windows/cwnd.h"
#include "ui/windows/qtinterop.h"

#include <QApplication>
#include <QDrag>
#include <QWidget>

#include <map>

struct COleDataSource::Private {
    std::map<CLIPFORMAT, HGLOBAL> blocks;
};

COleDataSource::COleDataSource() : d(std::make_unique<Private>()) {}

COleDataSource::~COleDataSource()
{
    Empty();
}

void COleDataSource::CacheGlobalData(CLIPFORMAT format, HGLOBAL data, LPFORMATETC)
{
    if (!data)
        return;
    auto [it, fresh] = d->blocks.emplace(format, data);
    if (!fresh && it->second != data) {
        GlobalFree(it->second);
        it->second = data;
    }
}

void COleDataSource::Empty()
{
    for (auto& [format, block] : d->blocks)
        GlobalFree(block);
    d->blocks.clear();
}

void COleDataSource::SetClipboard()
{
    if (!OpenClipboard(nullptr))
        return;
    EmptyClipboard();
    for (const auto& [format, block] : d->blocks) {
        // The clipboard frees what it is given: it gets a copy.
        const SIZE_T size = GlobalSize(block);
        HGLOBAL copy = vx::GlobalCopyOf(GlobalLock(block), size);
        GlobalUnlock(block);
        if (copy && !SetClipboardData(format, copy))
            GlobalFree(copy);
    }
    CloseClipboard();
}

QMimeData* COleDataSource::MakeMimeData() const
{
    auto* mime = new QMimeData;
    for (const auto& [format, block] : d->blocks) {
        const QByteArray bytes(static_cast<const char*>(GlobalLock(block)), static_cast<qsizetype>(GlobalSize(block)));
        GlobalUnlock(block);
        vx::clip::Put(*mime, format, bytes);
    }
    return mime;
}

DROPEFFECT COleDataSource::DoDragDrop(DWORD effects, LPCRECT, void*)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return DROPEFFECT_NONE;
    // The drag starts from the window that has the mouse, as on the original.
    CWnd* from = CWnd::GetCapture();
    if (!from)
        from = CWnd::GetFocus();
    QWidget* widget = from ? vx::WidgetOfWindow(from) : nullptr;
    QObject* source = widget ? static_cast<QObject*>(widget) : QCoreApplication::instance();
    if (from && CWnd::GetCapture() == from)
        CWnd::ReleaseCapture(); // the drag takes the mouse
    auto* drag = new QDrag(source);
    drag->setMimeData(MakeMimeData());
    const Qt::DropActions allowed = vx::clip::ToQtActions(effects);
    const Qt::DropAction result = drag->exec(allowed, vx::clip::PreferredAction(allowed));
    return vx::clip::ToDropEffect(result);
}

#include "ui/clipboard/coledataobject.h"

#include "ui/clipboard/clipboard.h"
#include "ui/clipboard/clipboardmime_p.h"

#include <vector>

struct COleDataObject::Private {
    std::unique_ptr<QMimeData> copy; // a snapshot of the clipboard
    const QMimeData* data = nullptr; // what is read: the snapshot or a drop
    std::vector<UINT> formats;
    std::size_t next = 0;
};

COleDataObject::COleDataObject() : d(std::make_unique<Private>()) {}
COleDataObject::~COleDataObject() = default;

BOOL COleDataObject::AttachClipboard()
{
    Release();
    std::unique_ptr<QMimeData> copy = vx::clip::Snapshot();
    if (!copy || copy->formats().isEmpty())
        return FALSE;
    d->copy = std::move(copy);
    d->data = d->copy.get();
    return TRUE;
}

void COleDataObject::AttachMime(const QMimeData* data)
{
    Release();
    d->data = data;
}

void COleDataObject::Release()
{
    d->data = nullptr;
    d->copy.reset();
    d->formats.clear();
    d->next = 0;
}

BOOL COleDataObject::IsDataAvailable(CLIPFORMAT format, LPFORMATETC)
{
    return d->data && vx::clip::Has(*d->data, format);
}

HGLOBAL COleDataObject::GetGlobalData(CLIPFORMAT format, LPFORMATETC)
{
    if (!d->data || !vx::clip::Has(*d->data, format))
        return nullptr;
    const QByteArray bytes = vx::clip::Get(*d->data, format);
    return vx::GlobalCopyOf(bytes.constData(), static_cast<SIZE_T>(bytes.size()));
}

void COleDataObject::BeginEnumFormats()
{
    d->formats = d->data ? vx::clip::Formats(*d->data) : std::vector<UINT>();
    d->next = 0;
}

BOOL COleDataObject::GetNextFormat(LPFORMATETC info)
{
    if (!info || d->next >= d->formats.size())
        return FALSE;
    *info = FORMATETC{static_cast<CLIPFORMAT>(d->formats[d->next++]), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    return TRUE;
}

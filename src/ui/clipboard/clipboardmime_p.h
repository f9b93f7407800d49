// Internal to the clipboard and data transfer: how the desktop API's formats
// travel as MIME data through Qt. Do not include directly.
#pragma once

#include "platform/framework/wintypes.h"

#include <QByteArray>
#include <QMimeData>

#include <memory>
#include <vector>

namespace vx::clip {

// Adds `bytes`, a block's contents in `format`, to `mime`. False for a format
// that does not travel (bitmaps and the like).
bool Put(QMimeData& mime, UINT format, const QByteArray& bytes);
bool Has(const QMimeData& mime, UINT format);
// The contents of a block of `format` as the data stands: CF_TEXT ends with
// a zero byte, CF_UNICODETEXT with a zero unit. Empty when absent.
QByteArray Get(const QMimeData& mime, UINT format);
// Every format `mime` can give, in the order of the desktop API's numbers.
std::vector<UINT> Formats(const QMimeData& mime);
std::unique_ptr<QMimeData> Copy(const QMimeData& mime);
// A copy of what the clipboard holds now, as this process sees it (what it
// has open and not yet published included); null when it holds nothing.
std::unique_ptr<QMimeData> Snapshot();
// The name of a registered format, empty when unknown.
QByteArray RegisteredName(UINT format);

} // namespace vx::clip

#include "ui/clipboard/clipboard.h"

#include "ui/clipboard/clipboardmime_p.h"

#include "platform/framework/mbstring.h"
#include "platform/windows/windows.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vx::clip {
namespace {

struct State {
    bool open = false;
    HWND openBy = nullptr;
    HWND owner = nullptr;
    // What EmptyClipboard and SetClipboardData build until CloseClipboard.
    std::unique_ptr<QMimeData> pending;
    bool changed = false;
    // The data this process last published, to tell whether it still shows.
    const QMimeData* published = nullptr;
    // Without a Qt application the clipboard is this process's own.
    std::unique_ptr<QMimeData> local;
    // Blocks the clipboard owns: those handed to SetClipboardData and those
    // GetClipboardData gave out.
    std::vector<HGLOBAL> blocks;
    std::map<UINT, std::string> names;
};

State& TheState()
{
    static auto* state = new State;
    return *state;
}

QClipboard* Desktop()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
}

// What the clipboard holds now, as this process sees it.
const QMimeData* Current()
{
    State& s = TheState();
    if (s.open && s.pending)
        return s.pending.get();
    if (QClipboard* c = Desktop())
        return c->mimeData();
    return s.local.get();
}

bool OursShowing()
{
    State& s = TheState();
    if (!s.published)
        return false;
    if (QClipboard* c = Desktop())
        return c->mimeData() == s.published;
    return s.local.get() == s.published;
}

void FreeBlocks()
{
    State& s = TheState();
    for (HGLOBAL h : s.blocks)
        GlobalFree(h);
    s.blocks.clear();
}

} // namespace

std::unique_ptr<QMimeData> Snapshot()
{
    const QMimeData* now = Current();
    return now ? Copy(*now) : nullptr;
}

QByteArray RegisteredName(UINT format)
{
    State& s = TheState();
    const auto it = s.names.find(format);
    return it == s.names.end() ? QByteArray() : QByteArray(it->second.c_str());
}

} // namespace vx::clip

using vx::clip::TheState;

BOOL OpenClipboard(HWND owner)
{
    auto& s = TheState();
    if (s.open)
        return s.openBy == owner ? TRUE : FALSE;
    s.open = true;
    s.openBy = owner;
    s.changed = false;
    s.pending.reset();
    // Blocks given out before are the clipboard's to take back now.
    vx::clip::FreeBlocks();
    return TRUE;
}

BOOL CloseClipboard()
{
    auto& s = TheState();
    if (!s.open)
        return FALSE;
    s.open = false;
    s.openBy = nullptr;
    if (s.changed && s.pending) {
        QMimeData* data = s.pending.release();
        s.published = data;
        if (QClipboard* c = vx::clip::Desktop())
            c->setMimeData(data); // Qt takes it over
        else
            s.local.reset(data);
    }
    s.pending.reset();
    s.changed = false;
    return TRUE;
}

BOOL EmptyClipboard()
{
    auto& s = TheState();
    if (!s.open)
        return FALSE;
    s.pending = std::make_unique<QMimeData>();
    s.changed = true;
    s.owner = s.openBy;
    return TRUE;
}

HANDLE SetClipboardData(UINT format, HANDLE data)
{
    auto& s = TheState();
    if (!s.open || !data)
        return nullptr;
    const SIZE_T size = GlobalSize(data);
    const void* bytes = GlobalLock(data);
    if (!bytes && size)
        return nullptr;
    if (!s.pending) {
        // Formats added without emptying join what is there.
        const QMimeData* now = vx::clip::Current();
        s.pending = now ? vx::clip::Copy(*now) : std::make_unique<QMimeData>();
    }
    const QByteArray content(static_cast<const char*>(bytes), static_cast<qsizetype>(size));
    GlobalUnlock(data);
    if (!vx::clip::Put(*s.pending, format, content))
        return nullptr;
    s.changed = true;
    s.blocks.push_back(data);
    return data;
}

HANDLE GetClipboardData(UINT format)
{
    auto& s = TheState();
    if (!s.open)
        return nullptr;
    const QMimeData* now = vx::clip::Current();
    if (!now || !vx::clip::Has(*now, format))
        return nullptr;
    const QByteArray bytes = vx::clip::Get(*now, format);
    HGLOBAL h = vx::GlobalCopyOf(bytes.constData(), static_cast<SIZE_T>(bytes.size()));
    if (h)
        s.blocks.push_back(h);
    return h;
}

BOOL IsClipboardFormatAvailable(UINT format)
{
    const QMimeData* now = vx::clip::Current();
    return now && vx::clip::Has(*now, format);
}

UINT RegisterClipboardFormatA(LPCSTR name)
{
    if (!name || !*name)
        return 0;
    const UINT format = RegisterWindowMessageA(name);
    if (format)
        TheState().names.emplace(format, name);
    return format;
}

int GetClipboardFormatNameA(UINT format, LPSTR name, int maxCount)
{
    const QByteArray known = vx::clip::RegisteredName(format);
    if (known.isEmpty() || !name || maxCount <= 0)
        return 0;
    const int n = std::min(static_cast<int>(known.size()), maxCount - 1);
    std::memcpy(name, known.constData(), static_cast<std::size_t>(n));
    name[n] = '\0';
    return n;
}

UINT EnumClipboardFormats(UINT format)
{
    const QMimeData* now = vx::clip::Current();
    if (!now)
        return 0;
    const std::vector<UINT> all = vx::clip::Formats(*now);
    if (format == 0)
        return all.empty() ? 0 : all.front();
    const auto it = std::find(all.begin(), all.end(), format);
    return it == all.end() || it + 1 == all.end() ? 0 : *(it + 1);
}

int CountClipboardFormats()
{
    const QMimeData* now = vx::clip::Current();
    return now ? static_cast<int>(vx::clip::Formats(*now).size()) : 0;
}

HWND GetClipboardOwner()
{
    return vx::clip::OursShowing() ? TheState().owner : nullptr;
}

HWND GetOpenClipboardWindow()
{
    return TheState().open ? TheState().openBy : nullptr;
}

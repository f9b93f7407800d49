#include "platform/framework/globalmemory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>

namespace {

struct Block {
    std::unique_ptr<unsigned char[]> bytes;
    SIZE_T size = 0;
    int locks = 0;
};

// Handles are keys that are never reused, so that a stale handle fails
// instead of reaching another block.
struct Table {
    std::mutex mutex;
    std::unordered_map<std::uintptr_t, Block> blocks;
    std::uintptr_t next = 0x10;
};

Table& TheTable()
{
    static auto* table = new Table;
    return *table;
}

std::uintptr_t Key(HGLOBAL h)
{
    return reinterpret_cast<std::uintptr_t>(h);
}

std::unique_ptr<unsigned char[]> Allocate(SIZE_T bytes, bool zero)
{
    // One byte at least, so that an empty block still has an address.
    std::unique_ptr<unsigned char[]> p(new (std::nothrow) unsigned char[bytes ? bytes : 1]);
    if (p && zero)
        std::memset(p.get(), 0, bytes ? bytes : 1);
    return p;
}

} // namespace

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes)
{
    Block block;
    block.bytes = Allocate(bytes, (flags & GMEM_ZEROINIT) != 0);
    if (!block.bytes)
        return nullptr;
    block.size = bytes;
    Table& t = TheTable();
    std::lock_guard<std::mutex> lock(t.mutex);
    const std::uintptr_t key = t.next;
    t.next += 0x10;
    t.blocks.emplace(key, std::move(block));
    return reinterpret_cast<HGLOBAL>(key);
}

HGLOBAL GlobalFree(HGLOBAL h)
{
    Table& t = TheTable();
    std::lock_guard<std::mutex> lock(t.mutex);
    return t.blocks.erase(Key(h)) ? nullptr : h;
}

LPVOID GlobalLock(HGLOBAL h)
{
    Table& t = TheTable();
    std::lock_guard<std::mutex> lock(t.mutex);
    const auto it = t.blocks.find(Key(h));
    if (it == t.blocks.end())
        return nullptr;
    ++it->second.locks;
    return it->second.bytes.get();
}

BOOL GlobalUnlock(HGLOBAL h)
{
    Table& t = TheTable();
    std::lock_guard<std::mutex> lock(t.mutex);
    const auto it = t.blocks.find(Key(h));
    if (it == t.blocks.end() || it->second.locks == 0)
        return FALSE;
    return --it->second.locks > 0;
}

SIZE_T GlobalSize(HGLOBAL h)
{
    Table& t = TheTable();
    std::lock_guard<std::mutex> lock(t.mutex);
    const auto it = t.blocks.find(Key(h));
    return it == t.blocks.end() ? 0 : it->second.size;
}

HGLOBAL GlobalReAlloc(HGLOBAL h, SIZE_T bytes, UINT flags)
{
    Table& t = TheTable();
    std::lock_guard<std::mutex> lock(t.mutex);
    const auto it = t.blocks.find(Key(h));
    if (it == t.blocks.end())
        return nullptr;
    auto fresh = Allocate(bytes, (flags & GMEM_ZEROINIT) != 0);
    if (!fresh)
        return nullptr;
    std::memcpy(fresh.get(), it->second.bytes.get(), std::min(bytes, it->second.size));
    it->second.bytes = std::move(fresh);
    it->second.size = bytes;
    return h;
}

namespace vx {

HGLOBAL GlobalCopyOf(const void* bytes, SIZE_T size)
{
    HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE, size);
    if (!h)
        return nullptr;
    if (size)
        std::memcpy(GlobalLock(h), bytes, size);
    GlobalUnlock(h);
    return h;
}

} // namespace vx

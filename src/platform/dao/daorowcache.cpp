#include "platform/dao/daorowcache_p.h"

#include <mutex>
#include <sys/mman.h>

namespace vx {

namespace {

// From this size on a block is mapped.
constexpr std::size_t kMappedBytes = 256 * 1024;

std::size_t PageRound(std::size_t bytes)
{
    const std::size_t page = 4096;
    return (bytes + page - 1) / page * page;
}

void* Map(std::size_t bytes)
{
    void* block = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED)
        throw std::bad_alloc();
    return block;
}

} // namespace

// The heap would copy a block as it grows and, once the allocator has raised
// its threshold for mapping, keep large blocks on the heap too.
void* GrowBlock(void* block, std::size_t oldBytes, std::size_t newBytes)
{
    if (newBytes < kMappedBytes) {
        void* grown = std::realloc(block, newBytes);
        if (!grown)
            throw std::bad_alloc();
        return grown;
    }
    const std::size_t size = PageRound(newBytes);
    if (oldBytes >= kMappedBytes) {
        void* grown = mremap(block, PageRound(oldBytes), size, MREMAP_MAYMOVE);
        if (grown == MAP_FAILED)
            throw std::bad_alloc();
        return grown;
    }
    void* mapped = Map(size);
    if (block) {
        std::memcpy(mapped, block, oldBytes);
        std::free(block);
    }
    return mapped;
}

void FreeBlock(void* block, std::size_t bytes)
{
    if (bytes >= kMappedBytes)
        munmap(block, PageRound(bytes));
    else
        std::free(block);
}

namespace {

// The memory of the last record set that closed, for the next one to open:
// a table read again and again then costs no fresh pages, which the system
// would have to clear and map one by one. Only this much is kept.
constexpr std::size_t kSpareBytes = 64u << 20;

struct Spare {
    std::mutex lock;
    RowCache cache;
};

Spare& TheSpare()
{
    // Never destroyed: record sets in static objects may close after it.
    static Spare* spare = new Spare;
    return *spare;
}

} // namespace

std::size_t RowCache::CapacityBytes() const
{
    return m_rowids.CapacityBytes() + m_stamps.CapacityBytes() + m_cells.CapacityBytes() + m_pool.CapacityBytes();
}

void RowCache::Swap(RowCache& other) noexcept
{
    std::swap(m_width, other.m_width);
    std::swap(m_holding, other.m_holding);
    std::swap(m_garbage, other.m_garbage);
    m_rowids.Swap(other.m_rowids);
    m_stamps.Swap(other.m_stamps);
    m_cells.Swap(other.m_cells);
    m_pool.Swap(other.m_pool);
}

void RowCache::Reset(std::size_t width)
{
    Spare& spare = TheSpare();
    const std::size_t mine = CapacityBytes();
    {
        std::lock_guard<std::mutex> hold(spare.lock);
        if (this != &spare.cache) {
            // Give what this cache has if it is more than the spare, or take
            // the spare if this one has nothing.
            const std::size_t theirs = spare.cache.CapacityBytes();
            if ((mine > theirs && mine <= kSpareBytes) || (mine == 0 && width != 0))
                Swap(spare.cache);
        }
    }
    m_width = width;
    m_holding = false;
    m_garbage = 0;
    m_rowids.Shrink(0);
    m_stamps.Shrink(0);
    m_cells.Shrink(0);
    m_pool.Shrink(0);
    if (width == 0) {
        m_rowids.Clear();
        m_stamps.Clear();
        m_cells.Clear();
        m_pool.Clear();
    }
}

void RowCache::StartHolding()
{
    if (m_holding)
        return;
    const std::size_t rows = Rows();
    std::uint64_t* stamps = m_stamps.Grow(rows);
    Cell* cells = m_cells.Grow(rows * m_width);
    for (std::size_t r = 0; r < rows; ++r)
        stamps[r] = 0;
    for (std::size_t i = 0; i < rows * m_width; ++i)
        PutNull(cells[i]);
    m_holding = true;
}

Cell* RowCache::AppendRow(std::int64_t rowid, std::uint64_t stamp)
{
    StartHolding();
    Cell* row = AppendUnfilledRow(rowid, stamp);
    for (std::size_t i = 0; i < m_width; ++i)
        PutNull(row[i]);
    return row;
}

void RowCache::DropLastRow()
{
    const std::size_t last = Rows() - 1;
    m_rowids.Shrink(last);
    if (!m_holding)
        return;
    for (std::size_t i = 0; i < m_width; ++i)
        Release(Row(last)[i]);
    m_stamps.Shrink(last);
    m_cells.Shrink(last * m_width);
}

void RowCache::EraseRow(std::size_t row)
{
    m_rowids.Erase(row, 1);
    if (!m_holding)
        return;
    for (std::size_t i = 0; i < m_width; ++i)
        Release(Row(row)[i]);
    m_stamps.Erase(row, 1);
    m_cells.Erase(row * m_width, m_width);
}

long RowCache::Find(std::int64_t rowid) const
{
    const std::int64_t* ids = m_rowids.data();
    for (std::size_t i = 0; i < m_rowids.size(); ++i)
        if (ids[i] == rowid)
            return static_cast<long>(i);
    return -1;
}

void RowCache::SetBytes(Cell& cell, DaoValue::Kind kind, const char* data, std::size_t length)
{
    Release(cell);
    // Rewritten rows leave their old texts behind; once those are most of
    // the pool, it is rebuilt with only what the cells still use.
    if (m_garbage > (1u << 20) && m_garbage > m_pool.size() / 2) {
        cell.kind = DaoValue::Null;
        Compact();
    }
    PutBytes(cell, kind, data, length);
}

void RowCache::Set(Cell& cell, const DaoValue& value)
{
    switch (value.kind) {
    case DaoValue::Int:
        SetInt(cell, value.i);
        break;
    case DaoValue::Real:
        SetReal(cell, value.d);
        break;
    case DaoValue::Text:
    case DaoValue::Blob:
        SetBytes(cell, value.kind, value.s.data(), value.s.size());
        break;
    default:
        SetNull(cell);
        break;
    }
}

void RowCache::Compact()
{
    PodArray<char> pool;
    Cell* cells = m_cells.data();
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        Cell& c = cells[i];
        if (c.kind != DaoValue::Text && c.kind != DaoValue::Blob)
            continue;
        const std::uint64_t at = pool.size();
        pool.Append(m_pool.data() + c.offset, c.length);
        c.offset = at;
    }
    m_pool.Swap(pool);
    m_garbage = 0;
}

ValueView RowCache::View(const Cell& cell) const
{
    ValueView view;
    view.kind = cell.kind;
    if (cell.kind == DaoValue::Int)
        view.i = cell.i;
    else if (cell.kind == DaoValue::Real)
        view.d = cell.d;
    else if (cell.kind != DaoValue::Null)
        view.s = Bytes(cell);
    return view;
}

} // namespace vx

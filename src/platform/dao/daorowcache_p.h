// Internal; do not include directly.
//
// The rows a record set holds in memory: the row id, the values and the
// change stamp of each member. Values are 16-byte cells, row after row in one
// array; texts and blobs lie one after another in a pool. The arrays grow by
// realloc, which for large blocks remaps pages instead of copying them, so a
// set needs neither a count of its rows beforehand nor copies as it grows.
#pragma once

#include "platform/dao/daovalue_p.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <type_traits>

namespace vx {

// A value of the cache. Text and Blob hold `length` bytes at `offset` of the
// pool.
struct Cell {
    union {
        std::int64_t i;
        double d;
        std::uint64_t offset;
    };
    std::uint32_t length;
    DaoValue::Kind kind;
};
static_assert(sizeof(Cell) == 16 && std::is_trivially_copyable_v<Cell>);

// Memory for the arrays of the cache: small blocks from malloc, large ones
// mapped, so that they grow by remapping their pages rather than by copies.
void* GrowBlock(void* block, std::size_t oldBytes, std::size_t newBytes);
void FreeBlock(void* block, std::size_t bytes);

// A growing array of trivially copyable elements.
template <class T>
class PodArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    PodArray() = default;
    ~PodArray() { FreeBlock(m_data, m_capacity * sizeof(T)); }
    PodArray(const PodArray&) = delete;
    PodArray& operator=(const PodArray&) = delete;

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    T* data() { return m_data; }
    const T* data() const { return m_data; }
    T& operator[](std::size_t i) { return m_data[i]; }
    const T& operator[](std::size_t i) const { return m_data[i]; }

    // Makes room for `n` more and returns them, uninitialised.
    T* Grow(std::size_t n)
    {
        if (m_size + n > m_capacity)
            Reserve(std::max(m_size + n, m_capacity < 64 ? 64 : m_capacity * 2));
        T* at = m_data + m_size;
        m_size += n;
        return at;
    }
    void Append(const T* from, std::size_t n) { std::memcpy(Grow(n), from, n * sizeof(T)); }
    void PushBack(const T& value) { *Grow(1) = value; }
    void Shrink(std::size_t size) { m_size = size; }
    std::size_t CapacityBytes() const { return m_capacity * sizeof(T); }
    void Erase(std::size_t at, std::size_t n)
    {
        std::memmove(m_data + at, m_data + at + n, (m_size - at - n) * sizeof(T));
        m_size -= n;
    }
    void Clear()
    {
        FreeBlock(m_data, m_capacity * sizeof(T));
        m_data = nullptr;
        m_size = m_capacity = 0;
    }
    void Swap(PodArray& other) noexcept
    {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }

private:
    void Reserve(std::size_t capacity)
    {
        m_data = static_cast<T*>(GrowBlock(m_data, m_capacity * sizeof(T), capacity * sizeof(T)));
        m_capacity = capacity;
    }

    T* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

// The members of a record set (their row ids, in order) and the values it
// holds for them. A set that reads its rows straight from the engine holds
// none until it needs them; then every member gets cells, and a member whose
// stamp is 0 holds nothing yet.
class RowCache {
public:
    RowCache() = default;
    ~RowCache() { Reset(0); }
    RowCache(const RowCache&) = delete;
    RowCache& operator=(const RowCache&) = delete;

    // Empties the cache for rows of `width` values, holding none.
    void Reset(std::size_t width);
    std::size_t Width() const { return m_width; }
    std::size_t Rows() const { return m_rowids.size(); }

    bool Holding() const { return m_holding; }
    // Gives every member cells, holding nothing for those that had none.
    void StartHolding();
    // A new last member. Holding, it has null values read at `stamp` (0:
    // none held); or cells left for the caller to fill with the Put
    // functions.
    Cell* AppendRow(std::int64_t rowid, std::uint64_t stamp);
    Cell* AppendUnfilledRow(std::int64_t rowid, std::uint64_t stamp)
    {
        m_rowids.PushBack(rowid);
        m_stamps.PushBack(stamp);
        return m_cells.Grow(m_width);
    }
    // A new last member whose values are not held.
    void AppendMember(std::int64_t rowid)
    {
        if (m_holding)
            AppendRow(rowid, 0);
        else
            m_rowids.PushBack(rowid);
    }
    // Takes back the last row (after a failed read or insert).
    void DropLastRow();
    void EraseRow(std::size_t row);
    Cell* Row(std::size_t row) { return m_cells.data() + row * m_width; }
    const Cell* Row(std::size_t row) const { return m_cells.data() + row * m_width; }
    std::int64_t RowId(std::size_t row) const { return m_rowids[row]; }
    void SetRowId(std::size_t row, std::int64_t rowid) { m_rowids[row] = rowid; }
    // When the row's values were read; 0 if they are not held.
    std::uint64_t Stamp(std::size_t row) const { return m_holding ? m_stamps[row] : 0; }
    bool Held(std::size_t row) const { return m_holding && m_stamps[row] != 0; }
    void SetStamp(std::size_t row, std::uint64_t stamp) { m_stamps[row] = stamp; }
    // The row of `rowid`, or -1.
    long Find(std::int64_t rowid) const;

    // Put fills a cell that holds nothing yet, Set replaces what it holds.
    static void PutNull(Cell& cell) { cell.kind = DaoValue::Null; }
    static void PutInt(Cell& cell, std::int64_t value) { cell.kind = DaoValue::Int, cell.i = value; }
    static void PutReal(Cell& cell, double value) { cell.kind = DaoValue::Real, cell.d = value; }
    void PutBytes(Cell& cell, DaoValue::Kind kind, const char* data, std::size_t length)
    {
        cell.kind = kind;
        cell.offset = m_pool.size();
        cell.length = static_cast<std::uint32_t>(length);
        if (length)
            m_pool.Append(data, length);
    }
    void SetNull(Cell& cell) { Release(cell), PutNull(cell); }
    void SetInt(Cell& cell, std::int64_t value) { Release(cell), PutInt(cell, value); }
    void SetReal(Cell& cell, double value) { Release(cell), PutReal(cell, value); }
    void SetBytes(Cell& cell, DaoValue::Kind kind, const char* data, std::size_t length);
    void Set(Cell& cell, const DaoValue& value);

    std::string_view Bytes(const Cell& cell) const { return {m_pool.data() + cell.offset, cell.length}; }
    ValueView View(const Cell& cell) const;
    // The cell as a variant of the field's type.
    void ToVariant(const Cell& cell, const DaoColumn& column, COleVariant& out) const
    {
        ValueView view;
        view.kind = cell.kind;
        if (cell.kind == DaoValue::Int)
            view.i = cell.i;
        else if (cell.kind == DaoValue::Real)
            view.d = cell.d;
        else if (cell.kind != DaoValue::Null)
            view.s = Bytes(cell);
        FastVariant(view, column, out);
    }

private:
    void Release(const Cell& cell)
    {
        if (cell.kind == DaoValue::Text || cell.kind == DaoValue::Blob)
            m_garbage += cell.length;
    }
    void Compact();
    std::size_t CapacityBytes() const;
    void Swap(RowCache& other) noexcept;

    std::size_t m_width = 0;
    bool m_holding = false;
    PodArray<std::int64_t> m_rowids;
    PodArray<std::uint64_t> m_stamps;
    PodArray<Cell> m_cells;
    PodArray<char> m_pool;
    // Bytes of the pool no cell refers to any more.
    std::size_t m_garbage = 0;
};

} // namespace vx

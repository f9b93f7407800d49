// Internal to KXListCtrl: the row arrays a list owns, found by address. Do
// not include directly.
#pragma once

#include "lists/xlistctrldata.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vx::lists {

// A row's records, one per column the list had when the row came.
struct XRow {
    std::unique_ptr<XLISTCTRLDATA[]> cells;
    int count = 0;
};

// The list checks every item data it reads against this set before it
// follows it, once per row of a long paste. Open addressing over a flat
// power-of-two table of pointers makes that one probe into memory that stays
// in the cache; a node per row (as a hash map keeps them) missed it on every
// row.
class VXBASE_UI_EXPORT RowSet {
public:
    RowSet();
    RowSet(const RowSet&) = delete;
    RowSet& operator=(const RowSet&) = delete;
    ~RowSet();

    bool Contains(const XRow* row) const;
    // Asks the processor to fetch where Contains will look for `row` first.
    void Prefetch(const XRow* row) const { __builtin_prefetch(m_slots.data() + Home(row)); }
    // Takes the row over; it stays until Erase or Clear frees it.
    void Insert(std::unique_ptr<XRow> row);
    // Frees the row if the set holds it.
    void Erase(const XRow* row);
    void Clear();
    std::size_t Size() const { return m_count; }

private:
    std::size_t Home(const XRow* row) const
    {
        return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(row) >> 4) * 0x9E3779B97F4A7C15ull >>
                                        m_shift);
    }
    void Grow();

    std::vector<XRow*> m_slots; // null is free; never empty, the size a power of two
    std::size_t m_count = 0;
    unsigned m_shift = 0; // 64 less the bits of the size
};

} // namespace vx::lists

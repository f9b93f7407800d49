// RowSet: linear probing, with deletion by moving later entries back so that
// no tombstones pile up over fills and clears.
#include "lists/xrowset_p.h"

namespace vx::lists {

namespace {

constexpr std::size_t kFirstSize = 16;

unsigned ShiftFor(std::size_t size)
{
    unsigned shift = 64;
    for (; size > 1; size >>= 1)
        --shift;
    return shift;
}

} // namespace

RowSet::RowSet() : m_slots(kFirstSize, nullptr), m_shift(ShiftFor(kFirstSize)) {}

RowSet::~RowSet()
{
    Clear();
}

bool RowSet::Contains(const XRow* row) const
{
    if (!row)
        return false;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = Home(row);; i = (i + 1) & mask) {
        const XRow* here = m_slots[i];
        if (here == row)
            return true;
        if (!here)
            return false;
    }
}

void RowSet::Insert(std::unique_ptr<XRow> row)
{
    if (!row || Contains(row.get()))
        return;
    // At most half full, so that probes stay short and one slot is always free.
    if ((m_count + 1) * 2 > m_slots.size())
        Grow();
    const std::size_t mask = m_slots.size() - 1;
    std::size_t i = Home(row.get());
    while (m_slots[i])
        i = (i + 1) & mask;
    m_slots[i] = row.release();
    ++m_count;
}

void RowSet::Erase(const XRow* row)
{
    if (!row)
        return;
    const std::size_t mask = m_slots.size() - 1;
    std::size_t hole = Home(row);
    while (m_slots[hole] != row) {
        if (!m_slots[hole])
            return;
        hole = (hole + 1) & mask;
    }
    delete m_slots[hole];
    --m_count;
    // Later entries of the run move into the hole unless their home lies
    // cyclically after it, where a probe for them would not pass the hole.
    for (std::size_t j = (hole + 1) & mask; m_slots[j]; j = (j + 1) & mask) {
        const std::size_t home = Home(m_slots[j]);
        const bool movable = hole <= j ? (home <= hole || home > j) : (home <= hole && home > j);
        if (movable) {
            m_slots[hole] = m_slots[j];
            hole = j;
        }
    }
    m_slots[hole] = nullptr;
}

void RowSet::Clear()
{
    for (XRow*& row : m_slots) {
        delete row;
        row = nullptr;
    }
    m_count = 0;
}

void RowSet::Grow()
{
    std::vector<XRow*> old(m_slots.size() * 2, nullptr);
    old.swap(m_slots);
    m_shift = ShiftFor(m_slots.size());
    const std::size_t mask = m_slots.size() - 1;
    for (XRow* row : old) {
        if (!row)
            continue;
        std::size_t i = Home(row);
        while (m_slots[i])
            i = (i + 1) & mask;
        m_slots[i] = row;
    }
}

} // namespace vx::lists

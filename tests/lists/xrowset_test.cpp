#include "lists/xrowset_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

namespace {

using vx::lists::RowSet;
using vx::lists::XRow;

std::unique_ptr<XRow> NewRow(int columns)
{
    auto row = std::make_unique<XRow>();
    row->cells.reset(new XLISTCTRLDATA[static_cast<std::size_t>(columns)]);
    row->count = columns;
    return row;
}

// Every row inserted and not yet erased is found, and no other address is:
// checked against a plain set through growth and erasures in random order
// (which move entries of long probe runs, across the table's end too).
TEST(RowSet, FindsExactlyTheRowsItHoldsThroughGrowthAndErasure)
{
    RowSet set;
    std::set<const XRow*> model;
    std::vector<const XRow*> held;
    std::mt19937 random(17);
    const XRow outside{};
    auto check = [&] {
        ASSERT_EQ(set.Size(), model.size());
        for (const XRow* row : held)
            ASSERT_EQ(set.Contains(row), model.count(row) == 1);
        EXPECT_FALSE(set.Contains(&outside));
        EXPECT_FALSE(set.Contains(nullptr));
    };
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 700; ++i) {
            auto row = NewRow(1 + i % 3);
            held.push_back(row.get());
            model.insert(row.get());
            set.Insert(std::move(row));
        }
        check();
        std::vector<const XRow*> order(model.begin(), model.end());
        std::shuffle(order.begin(), order.end(), random);
        order.resize(order.size() / 2);
        for (const XRow* row : order) {
            set.Erase(row);
            model.erase(row);
        }
        // Erasing what is not there changes nothing.
        set.Erase(&outside);
        set.Erase(nullptr);
        check();
        // Freed addresses may come back from the allocator; they count only
        // once inserted again.
        held.erase(std::remove_if(held.begin(), held.end(), [&](const XRow* r) { return !model.count(r); }),
                   held.end());
    }
    set.Clear();
    EXPECT_EQ(set.Size(), 0u);
    for (const XRow* row : held)
        EXPECT_FALSE(set.Contains(row));
    // A cleared set takes rows again.
    auto row = NewRow(2);
    const XRow* again = row.get();
    set.Insert(std::move(row));
    EXPECT_TRUE(set.Contains(again));
}

} // namespace

#include "platform/framework/cmap.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Keys(const CMapStringToString& map)
{
    std::vector<std::string> keys;
    POSITION pos = map.GetStartPosition();
    while (pos) {
        CString key, value;
        map.GetNextAssoc(pos, key, value);
        keys.emplace_back(key.GetString());
    }
    return keys;
}

} // namespace

TEST(CMapStringToString, IteratesInFirstInsertionOrder)
{
    CMapStringToString map;
    for (const char* k : {"zeta", "alpha", "mid", "Alpha"})
        map.SetAt(k, "v");
    map.SetAt("zeta", "changed"); // a new value keeps the place
    EXPECT_EQ(Keys(map), (std::vector<std::string>{"zeta", "alpha", "mid", "Alpha"}));
    EXPECT_TRUE(map.RemoveKey("alpha"));
    EXPECT_FALSE(map.RemoveKey("alpha"));
    map.SetAt("alpha", "again");
    EXPECT_EQ(Keys(map), (std::vector<std::string>{"zeta", "mid", "Alpha", "alpha"}));
    CString value;
    EXPECT_TRUE(map.Lookup("zeta", value));
    EXPECT_EQ(value, "changed");
    EXPECT_FALSE(map.Lookup("ZETA", value)) << "keys are compared exactly";
}

TEST(CMapStringToString, DeliveredEntryMayBeRemovedDuringTheWalk)
{
    CMapStringToString map;
    for (int i = 0; i < 100; ++i) {
        CString k;
        k.Format("k%d", i);
        map[k] = k;
    }
    POSITION pos = map.GetStartPosition();
    int seen = 0;
    while (pos) {
        CString key, value;
        map.GetNextAssoc(pos, key, value);
        EXPECT_EQ(key, value);
        map.RemoveKey(key);
        ++seen;
    }
    EXPECT_EQ(seen, 100);
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.GetStartPosition(), nullptr);
}

TEST(CMapStringToString, CopyKeepsOrderAndEmptyKeyIsAKey)
{
    CMapStringToString map;
    map[""] = "empty";
    map["b"] = "1";
    map[nullptr] = "null is the empty key";
    CMapStringToString copy(map);
    EXPECT_EQ(Keys(copy), (std::vector<std::string>{"", "b"}));
    CString value;
    EXPECT_TRUE(copy.Lookup("", value));
    EXPECT_EQ(value, "null is the empty key");
}

TEST(CMapPtrToPtr, LooksUpByPointer)
{
    int a = 0, b = 0;
    CMapPtrToPtr map;
    map.SetAt(&a, &b);
    void* out = nullptr;
    EXPECT_TRUE(map.Lookup(&a, out));
    EXPECT_EQ(out, &b);
    EXPECT_FALSE(map.Lookup(&b, out));
    EXPECT_EQ(map.GetCount(), 1);
}

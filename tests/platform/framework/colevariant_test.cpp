// COleVariant: empty, null and values.
#include "platform/framework/colevariant.h"

#include <gtest/gtest.h>

TEST(COleVariant, TellsEmptyFromNullFromAValue)
{
    COleVariant v;
    EXPECT_EQ(v.vt, VT_EMPTY);
    v.SetNull();
    EXPECT_EQ(v.vt, VT_NULL);
    EXPECT_NE(v, COleVariant());
    v = COleVariant("");
    EXPECT_EQ(v.vt, VT_BSTR);
    EXPECT_STREQ(v.bstrVal, "");
    v.Clear();
    EXPECT_EQ(v, COleVariant());
}

TEST(COleVariant, NarrowValuesReadZeroExtendedThroughWiderMembers)
{
    COleVariant byte(static_cast<BYTE>(200));
    EXPECT_EQ(byte.vt, VT_UI1);
    EXPECT_EQ(byte.lVal, 200);
    COleVariant flag(static_cast<short>(5), VT_BOOL);
    EXPECT_EQ(flag.boolVal, VARIANT_TRUE);
    EXPECT_EQ(COleVariant(7L).vt, VT_I4);
    CY cy;
    cy.Lo = 0xFFFFFFFF;
    cy.Hi = 0;
    EXPECT_EQ(COleVariant(cy).cyVal.int64, 0xFFFFFFFFLL);
}

TEST(COleVariant, CopiesOwnTheirText)
{
    COleVariant a("first");
    COleVariant b = a;
    a.SetString("second", 6);
    EXPECT_STREQ(b.bstrVal, "first");
    COleVariant c = std::move(a);
    EXPECT_STREQ(c.bstrVal, "second");
    EXPECT_EQ(c.TextLength(), 6u);
    b = c;
    EXPECT_STREQ(b.bstrVal, "second");
    EXPECT_EQ(b, c);
}

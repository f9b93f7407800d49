#include "process/kprocessio.h"

#include "platform/windows/messagebox.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

using KData = KProcessIO::KData;

struct FreeBlock {
    void operator()(KData* d) const { std::free(d); }
};
using Block = std::unique_ptr<KData, FreeBlock>;

// A block as InitPartner makes one, without the link: capacity + 38 bytes.
Block MakeBlock(ProcessIDType id, int capacity, KData* origin = nullptr)
{
    auto* d = static_cast<KData*>(std::calloc(1, static_cast<std::size_t>(capacity) + 38));
    d->Init(id, capacity, origin);
    return Block(d);
}

std::string Bytes(const KData& d, int from, int count)
{
    return std::string(d.Bytes() + from, static_cast<std::size_t>(count));
}

std::uint32_t Word(const KData& d, int offset)
{
    std::uint32_t v;
    std::memcpy(&v, d.Bytes() + offset, 4);
    return v;
}

// Counts the assertion boxes and answers "retry", so that the code goes on.
class CountAsserts {
public:
    CountAsserts()
    {
        m_old = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            if (r.text.find("ProcessIO") != std::string::npos)
                ++count;
            return IDRETRY;
        });
    }
    ~CountAsserts() { vx::SetMessageBoxHandler(m_old); }
    int count = 0;

private:
    vx::MessageBoxHandler m_old;
};

TEST(KData, HeaderStandsAsTheWireFormatHasIt)
{
    Block d = MakeBlock(ProcessIDType(102), 20);
    EXPECT_EQ(Word(*d, 0), 102u);
    EXPECT_EQ(Word(*d, 4), 102u);
    EXPECT_EQ(Word(*d, 8), 58u); // capacity + 38
    EXPECT_EQ(Word(*d, 20), 0u);
    EXPECT_EQ(Word(*d, 24), 0u);
    EXPECT_EQ(Word(*d, 28), 20u);
    EXPECT_EQ(Word(*d, 32), 36u); // the cursor at the payload

    Block empty = MakeBlock(ProcessIDType(1), 0);
    EXPECT_EQ(empty->m_cbData, 38u);

    Block reply = MakeBlock(ProcessIDType(-1), 4, d.get());
    EXPECT_EQ(Word(*reply, 0), 0xFFFFFFFFu);
    EXPECT_EQ(reply->m_Origin, d->m_Origin);
    EXPECT_NE(d->m_Origin, 0u);
    EXPECT_NE(MakeBlock(ProcessIDType(1), 0)->m_Origin, d->m_Origin);
}

TEST(KData, SizesFollowTheEncodings)
{
    EXPECT_EQ(KData::GetSize(7), 4);
    long l = 1;
    unsigned long ul = 1;
    double dbl = 1;
    float f = 1;
    EXPECT_EQ(KData::GetSize(l), 4);
    EXPECT_EQ(KData::GetSize(ul), 4);
    EXPECT_EQ(KData::GetSize(dbl), 8);
    EXPECT_EQ(KData::GetSize(f), 6);
    EXPECT_EQ(KData::GetSize(POINT{1, 2}), 8);
    EXPECT_EQ(KData::GetSize(RECT{1, 2, 3, 4}), 16);
    EXPECT_EQ(KData::GetSize(CString()), 1);
    EXPECT_EQ(KData::GetSize("abc"), 4);
    EXPECT_EQ(KData::GetSize(static_cast<const char*>(nullptr)), 1);
    CStringArray none;
    EXPECT_EQ(KData::GetSize(none), 4);
    CStringArray two;
    two.Add("a");
    two.Add("");
    EXPECT_EQ(KData::GetSize(two), 7);
}

TEST(KData, StringArrayBytesAreCountThenZeroTerminatedTexts)
{
    CStringArray two;
    two.Add("a");
    two.Add("");
    Block d = MakeBlock(ProcessIDType(5), KData::GetSize(two));
    d->Write(two);
    EXPECT_EQ(Bytes(*d, 36, 7), std::string("\x02\x00\x00\x00\x61\x00\x00", 7));
    d->Rewind();
    CStringArray back;
    back.Add("stale");
    back.Add("stale");
    back.Add("stale");
    d->Read(back);
    ASSERT_EQ(back.GetSize(), 2);
    EXPECT_EQ(back[0], "a");
    EXPECT_EQ(back[1], "");
}

TEST(KData, ValuesReadBackInOrderAndAgainAfterRewind)
{
    const POINT pt{-3, 70000};
    const RECT rc{1, -2, 300, 400};
    Block d = MakeBlock(ProcessIDType(9), 100);
    d->Write(-5);
    d->Write(static_cast<long>(0x7FFFFFFF));
    d->Write(pt);
    d->Write(rc);
    d->Write(2.5);
    d->Write(1.25f);
    d->Write(123);
    d->Write(CString("Plan"));
    d->Write("");
    // A float takes six bytes: value, then two zero bytes.
    EXPECT_EQ(Bytes(*d, 36 + 4 + 4 + 8 + 16 + 8 + 4, 2), std::string("\0\0", 2));
    for (int pass = 0; pass < 2; ++pass) {
        SCOPED_TRACE(pass);
        d->Rewind();
        int i = 0, after = 0;
        long l = 0;
        POINT p{};
        RECT r{};
        double x = 0;
        float f = 0;
        CString s1 = "x", s2 = "x";
        d->Read(i);
        d->Read(l);
        d->Read(p);
        d->Read(r);
        d->Read(x);
        d->Read(f);
        d->Read(after);
        d->Read(s1);
        d->Read(s2);
        EXPECT_EQ(i, -5);
        EXPECT_EQ(l, 0x7FFFFFFF);
        EXPECT_EQ(p.x, -3);
        EXPECT_EQ(p.y, 70000);
        EXPECT_EQ(r.left, 1);
        EXPECT_EQ(r.bottom, 400);
        EXPECT_EQ(x, 2.5);
        EXPECT_EQ(f, 1.25f);
        EXPECT_EQ(after, 123);
        EXPECT_EQ(s1, "Plan");
        EXPECT_EQ(s2, "");
    }
}

TEST(KData, FloatReadTouchesNothingBehindTheFloat)
{
    Block d = MakeBlock(ProcessIDType(9), 10);
    d->Write(3.5f);
    d->Rewind();
    struct {
        float f;
        char guard[4];
    } target{0, {'g', 'g', 'g', 'g'}};
    d->Read(target.f);
    EXPECT_EQ(target.f, 3.5f);
    EXPECT_EQ(std::string(target.guard, 4), "gggg");
}

TEST(KData, LongsTravelAsFourBytes)
{
    Block d = MakeBlock(ProcessIDType(9), 8);
    d->Write(static_cast<long>(-2));
    d->Write(static_cast<long>(-2));
    EXPECT_EQ(Word(*d, 36), 0xFFFFFFFEu);
    d->Rewind();
    long signedValue = 0;
    unsigned long unsignedValue = 0;
    d->Read(signedValue);
    d->Read(unsignedValue);
    EXPECT_EQ(signedValue, -2);
    EXPECT_EQ(unsignedValue, 0xFFFFFFFEul);
}

TEST(KData, OverrunRaisesTheAlarmAndStaysInsideTheBlock)
{
    CountAsserts asserts;
    // Exactly the block's bytes: AddressSanitizer sees any byte beyond.
    Block d = MakeBlock(ProcessIDType(9), 4);
    d->Write(1);
    EXPECT_EQ(asserts.count, 0);
    d->Write(2); // two bytes of it still fit in the payload area
    EXPECT_EQ(asserts.count, 1);
    d->Write("a long text that does not fit");
    EXPECT_EQ(asserts.count, 2);

    d->Rewind();
    int a = 0, b = 0, c = 77;
    d->Read(a);
    d->Read(b);
    d->Read(c); // wholly beyond the block: zero bytes
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b & 0xFFFF, 2);
    EXPECT_EQ(c, 0);
    EXPECT_EQ(asserts.count, 4);
}

TEST(KData, StringWithoutTerminatorEndsAtTheBlock)
{
    CountAsserts asserts;
    Block d = MakeBlock(ProcessIDType(9), 2);
    std::memset(d->Payload(), 'z', 4); // the whole payload area, no zero byte
    CString s;
    d->Read(s);
    EXPECT_EQ(s, "zzzz");
    EXPECT_EQ(asserts.count, 1);
}

TEST(KData, DamagedArrayCountSizesNothing)
{
    CountAsserts asserts;
    Block d = MakeBlock(ProcessIDType(9), 8);
    d->Write(0x7FFFFFFF);
    d->Write("ab");
    d->Rewind();
    CStringArray strings;
    d->Read(strings);
    EXPECT_GE(asserts.count, 1);
    EXPECT_LE(strings.GetSize(), 6);
    ASSERT_GE(strings.GetSize(), 1);
    EXPECT_EQ(strings[0], "ab");
}

} // namespace

#include "process/kprocessio.h"

#include "base/libraryframe.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstring>

using KData = KProcessIO::KData;

static_assert(std::endian::native == std::endian::little, "the block's memory image is its little-endian wire form");
static_assert(sizeof(ProcessIDType) == 4 && sizeof(LONG) == 4 && sizeof(DWORD) == 4);
static_assert(offsetof(KData, m_dwData) == 4 && offsetof(KData, m_cbData) == 8 && offsetof(KData, m_lpData) == 12 &&
                  offsetof(KData, m_Origin) == 16 && offsetof(KData, m_Param1) == 20 &&
                  offsetof(KData, m_Param2) == 24 && offsetof(KData, m_Capacity) == 28 &&
                  offsetof(KData, m_Cursor) == 32,
              "the header fields stand where the wire format has them");

namespace {

constexpr long long kPayloadStart = 36;
// The fixed part: the header and the two bytes that start the payload.
constexpr long long kFixed = 38;

char g_sourceName[] = "ProcessIO.cpp";

// Tokens of this process's requests; 0 is never handed out.
std::atomic<DWORD> g_nextOrigin{1};

} // namespace

void KData::Init(ProcessIDType id, int capacity, KData* origin)
{
    m_ID = id;
    m_dwData = static_cast<DWORD>(id);
    m_cbData = static_cast<DWORD>(capacity + kFixed);
    m_lpData = static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(this));
    if (origin) {
        m_Origin = origin->m_Origin;
    } else {
        DWORD token = g_nextOrigin.fetch_add(1);
        if (!token)
            token = g_nextOrigin.fetch_add(1);
        m_Origin = token;
    }
    m_Param1 = 0;
    m_Param2 = 0;
    m_Capacity = capacity;
    m_Cursor = static_cast<DWORD>(kPayloadStart);
}

void KData::Rewind()
{
    m_Cursor = static_cast<DWORD>(kPayloadStart);
}

long long KData::Check(long long size, unsigned line)
{
    const long long cursor = m_Cursor;
    const long long capacity = std::max<long long>(m_Capacity, 0);
    if (kPayloadStart + capacity - cursor - size < 0)
        VexalAssert(g_sourceName, line);
    // The block holds the payload area of capacity + 2 bytes, and not a
    // byte more may be touched, whatever the fields say.
    const long long blockEnd = kFixed + capacity;
    return std::clamp<long long>(blockEnd - cursor, 0, size);
}

int KData::GetSize(int)
{
    return 4;
}

int KData::GetSize(const long&)
{
    return 4;
}

int KData::GetSize(const unsigned long&)
{
    return 4;
}

int KData::GetSize(const double&)
{
    return 8;
}

int KData::GetSize(const POINT&)
{
    return 8;
}

int KData::GetSize(const RECT&)
{
    return 16;
}

int KData::GetSize(const float&)
{
    return 6;
}

int KData::GetSize(const CString& value)
{
    return value.GetLength() + 1;
}

int KData::GetSize(const char* value)
{
    return value ? static_cast<int>(std::strlen(value)) + 1 : 1;
}

int KData::GetSize(const CStringArray& value)
{
    int size = 4;
    for (int i = 0; i < value.GetSize(); ++i)
        size += GetSize(value.GetAt(i));
    return size;
}

void KData::Write(const void* data, int size)
{
    size = std::max(size, 0);
    const long long inside = Check(size, __LINE__);
    if (inside > 0)
        std::memcpy(reinterpret_cast<char*>(this) + m_Cursor, data, static_cast<std::size_t>(inside));
    m_Cursor += static_cast<DWORD>(size);
}

void KData::Read(void* data, int size)
{
    size = std::max(size, 0);
    const long long inside = Check(size, __LINE__);
    if (inside > 0)
        std::memcpy(data, reinterpret_cast<const char*>(this) + m_Cursor, static_cast<std::size_t>(inside));
    if (inside < size)
        std::memset(static_cast<char*>(data) + inside, 0, static_cast<std::size_t>(size - inside));
    m_Cursor += static_cast<DWORD>(size);
}

void KData::Write(int value)
{
    const std::int32_t v = value;
    Write(&v, 4);
}

void KData::Write(long value)
{
    Write(static_cast<int>(value));
}

void KData::Write(const POINT& value)
{
    const std::int32_t v[2] = {static_cast<std::int32_t>(value.x), static_cast<std::int32_t>(value.y)};
    Write(v, 8);
}

void KData::Write(const RECT& value)
{
    const std::int32_t v[4] = {static_cast<std::int32_t>(value.left), static_cast<std::int32_t>(value.top),
                               static_cast<std::int32_t>(value.right), static_cast<std::int32_t>(value.bottom)};
    Write(v, 16);
}

void KData::Write(double value)
{
    Write(&value, 8);
}

void KData::Write(float value)
{
    // The original copied the two bytes behind the float as well; the slot
    // stays six bytes wide, with zeros in its tail.
    char slot[6] = {};
    std::memcpy(slot, &value, 4);
    Write(slot, 6);
}

void KData::Write(const CString& value)
{
    Write(value.GetString(), value.GetLength() + 1);
}

void KData::Write(const char* value)
{
    if (!value)
        value = "";
    Write(value, static_cast<int>(std::strlen(value)) + 1);
}

void KData::Write(const CStringArray& value)
{
    Write(static_cast<int>(value.GetSize()));
    for (int i = 0; i < value.GetSize(); ++i)
        Write(value.GetAt(i));
}

void KData::Read(int& value)
{
    std::int32_t v;
    Read(&v, 4);
    value = v;
}

void KData::Read(long& value)
{
    std::int32_t v;
    Read(&v, 4);
    value = v;
}

void KData::Read(unsigned long& value)
{
    std::uint32_t v;
    Read(&v, 4);
    value = v;
}

void KData::Read(POINT& value)
{
    std::int32_t v[2];
    Read(v, 8);
    value.x = v[0];
    value.y = v[1];
}

void KData::Read(RECT& value)
{
    std::int32_t v[4];
    Read(v, 16);
    value.left = v[0];
    value.top = v[1];
    value.right = v[2];
    value.bottom = v[3];
}

void KData::Read(double& value)
{
    Read(&value, 8);
}

void KData::Read(float& value)
{
    // Six bytes on the wire, four in the float: nothing behind it is touched.
    char slot[6];
    Read(slot, 6);
    std::memcpy(&value, slot, 4);
}

void KData::Read(CString& value)
{
    // The text is taken first, as far as its zero byte or the block's end,
    // and tested afterwards, as the size is only known then.
    const long long cursor = m_Cursor;
    const long long blockEnd = kFixed + std::max<long long>(m_Capacity, 0);
    const long long available = std::max<long long>(blockEnd - cursor, 0);
    const char* text = reinterpret_cast<const char*>(this) + std::min(cursor, blockEnd);
    const std::size_t length = strnlen(text, static_cast<std::size_t>(available));
    value = CString(text, static_cast<int>(length));
    Check(static_cast<long long>(length) + 1, __LINE__);
    m_Cursor += static_cast<DWORD>(length + 1);
}

void KData::Read(CStringArray& value)
{
    int count = 0;
    Read(count);
    // Each string takes a byte at least; a count beyond that is damage and
    // must not size the array.
    const long long left = kFixed + std::max<long long>(m_Capacity, 0) - static_cast<long long>(m_Cursor);
    if (count < 0 || count > std::max<long long>(left, 0)) {
        VexalAssert(g_sourceName, __LINE__);
        count = static_cast<int>(std::clamp<long long>(count, 0, std::max<long long>(left, 0)));
    }
    value.SetSize(count, -1);
    for (int i = 0; i < count; ++i)
        Read(value.ElementAt(i));
}

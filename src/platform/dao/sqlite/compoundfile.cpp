#include "platform/dao/sqlite/compoundfile_p.h"

#include "platform/framework/util_p.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace vx::detail {
namespace {

constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFreeSector = 0xFFFFFFFF;
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kHeaderDifat = 109;
constexpr std::size_t kEntrySize = 128;
constexpr unsigned kMaxNameBytes = 64;

std::uint32_t U32(const unsigned char* p)
{
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

unsigned U16(const unsigned char* p)
{
    return static_cast<unsigned>(p[0]) | static_cast<unsigned>(p[1]) << 8;
}

class Sectors {
public:
    Sectors(const unsigned char* bytes, std::size_t size, unsigned shift)
        : m_bytes(bytes), m_size(size), m_sectorSize(std::size_t{1} << shift)
    {
    }
    std::size_t SectorSize() const { return m_sectorSize; }
    // Sectors lying wholly in the file.
    std::size_t Count() const { return m_size < m_sectorSize ? 0 : m_size / m_sectorSize - 1; }
    // Sector `n`, or null if it does not lie wholly in the file.
    const unsigned char* At(std::uint32_t n) const { return n < Count() ? m_bytes + (std::size_t{n} + 1) * m_sectorSize : nullptr; }

private:
    const unsigned char* m_bytes;
    std::size_t m_size;
    std::size_t m_sectorSize;
};

} // namespace

bool CompoundFileIsSound(const unsigned char* bytes, std::size_t size)
{
    static const unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    if (size < kHeaderSize || std::memcmp(bytes, kSignature, sizeof kSignature) != 0)
        return false;
    const unsigned shift = U16(bytes + 0x1E);
    if (shift != 9 && shift != 12)
        return false;
    const Sectors sectors(bytes, size, shift);
    const std::size_t perSector = sectors.SectorSize() / 4;

    // The sector allocation table: the sectors the header's list and the
    // chain of further list sectors name.
    const std::uint32_t fatSectors = U32(bytes + 0x2C);
    if (fatSectors > sectors.Count())
        return false;
    std::vector<std::uint32_t> fatAt;
    for (std::size_t i = 0; i < kHeaderDifat && fatAt.size() < fatSectors; ++i)
        fatAt.push_back(U32(bytes + 0x4C + 4 * i));
    std::uint32_t difat = U32(bytes + 0x44);
    for (std::size_t hops = 0; fatAt.size() < fatSectors; ++hops) {
        const unsigned char* list = sectors.At(difat);
        if (!list || hops > sectors.Count())
            return false;
        for (std::size_t i = 0; i + 1 < perSector && fatAt.size() < fatSectors; ++i)
            fatAt.push_back(U32(list + 4 * i));
        difat = U32(list + 4 * (perSector - 1));
    }
    for (const std::uint32_t at : fatAt) {
        if (!sectors.At(at))
            return false;
    }
    const auto next = [&](std::uint32_t n, std::uint32_t& out) {
        const std::size_t index = n / perSector;
        if (index >= fatAt.size())
            return false;
        out = U32(sectors.At(fatAt[index]) + 4 * (n % perSector));
        return true;
    };

    // The directory: every entry of every sector of its chain.
    std::uint32_t n = U32(bytes + 0x30);
    for (std::size_t hops = 0; n != kEndOfChain; ++hops) {
        const unsigned char* sector = sectors.At(n);
        if (!sector || hops > sectors.Count())
            return false;
        for (std::size_t e = 0; e + kEntrySize <= sectors.SectorSize(); e += kEntrySize) {
            if (U16(sector + e + 0x40) > kMaxNameBytes)
                return false;
        }
        if (!next(n, n) || n == kFreeSector)
            return false;
    }
    return true;
}

bool CompoundFileIsSound(const std::string& path)
{
    std::string bytes;
    return ReadWholeFile(path, bytes) &&
           CompoundFileIsSound(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

} // namespace vx::detail

// An INI file read into KIniMan, written back by Flush and read again: the
// second reading holds every section, key and value of the first, in order.
// ReadSection and the typed reads run over what was read.
#include "fuzzsupport.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;
using Document = std::vector<std::pair<std::string, Entries>>;

Document Snapshot(KIniMan& ini)
{
    Document doc;
    for (int i = 0; i < ini.GetAnzSections(); ++i) {
        KIniSection* section = ini.GetSectionAt(i);
        Entries entries;
        CString key, value;
        section->InitQuery();
        int more;
        do {
            more = section->GetNextEntry(key, value);
            // Flush writes no entry with an empty key.
            if (!key.IsEmpty())
                entries.emplace_back(key.StdString(), value.StdString());
        } while (more);
        doc.emplace_back(section->GetSection().StdString(), std::move(entries));
    }
    return doc;
}

void Exercise(KIniMan& ini, const Document& doc)
{
    for (const auto& [name, entries] : doc) {
        for (const auto& [key, value] : entries) {
            ini.ReadInt(name.c_str(), key.c_str(), 7);
            ini.ReadDouble(name.c_str(), key.c_str(), 0.5);
        }
        // ReadSection checks its bound after each entry: room for the
        // longest (empty keys included) beyond the size.
        KIniSection* section = ini.GetSection(name.c_str());
        int longest = 0;
        CString key, value;
        section->InitQuery();
        int more;
        do {
            more = section->GetNextEntry(key, value);
            longest = std::max(longest, key.GetLength() + value.GetLength() + 2);
        } while (more);
        constexpr int kSize = 256;
        std::vector<char> buffer(static_cast<std::size_t>(kSize + longest + 2));
        const int used = ini.ReadSection(name.c_str(), buffer.data(), kSize);
        VXFUZZ_CHECK(used >= 0 && used < kSize + longest + 2, "ReadSection used %d", used);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool quiet = (vxfuzz::QuietBoxes(), true);
    (void)quiet;
    const std::string file = vxfuzz::WriteScratch("in.ini", data, size);

    Document first;
    {
        KIniMan ini;
        VXFUZZ_CHECK(ini.ReadFile(file.c_str(), 0) != 0, "the file was not read");
        first = Snapshot(ini);
        Exercise(ini, first);
        VXFUZZ_CHECK(ini.Flush() != 0, "the document was not written");
    }
    KIniMan again;
    VXFUZZ_CHECK(again.ReadFile(file.c_str(), 0) != 0, "the written file was not read");
    const Document second = Snapshot(again);
    VXFUZZ_CHECK(second.size() == first.size(), "%zu sections read back as %zu", first.size(), second.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        VXFUZZ_CHECK(second[i].first == first[i].first, "section %zu \"%s\" read back as \"%s\"", i,
                     first[i].first.c_str(), second[i].first.c_str());
        VXFUZZ_CHECK(second[i].second == first[i].second, "the entries of section %zu \"%s\" changed", i,
                     first[i].first.c_str());
    }
    return 0;
}

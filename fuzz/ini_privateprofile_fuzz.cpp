// An INI file read through the private profile functions, every section,
// key and value written into a new file by WritePrivateProfileStringA, and
// the new file read again: it answers every key of the first with the same
// value, text and number.
#include "fuzzsupport.h"

#include <cstdio>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

std::vector<std::string> SplitList(const std::vector<char>& buffer, DWORD length)
{
    std::vector<std::string> out;
    std::size_t start = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (buffer[i] == 0) {
            out.emplace_back(buffer.data() + start, i - start);
            start = i + 1;
        }
    }
    return out;
}

std::string Folded(std::string text)
{
    for (char& c : text) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

bool HasLineBreak(const std::string& s)
{
    return s.find_first_of("\r\n") != std::string::npos;
}

// The text to write so that a read gives `value` back: the reader trims
// blanks and takes one pair of matching quotes off.
std::string Written(const std::string& value)
{
    const bool blankEnds = !value.empty() && (kBlanks.find(value.front()) != std::string_view::npos ||
                                              kBlanks.find(value.back()) != std::string_view::npos);
    const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                        value.back() == value.front();
    return blankEnds || quoted ? "\"" + value + "\"" : value;
}

struct Reader {
    std::string file;
    std::vector<char> buffer;

    std::vector<std::string> List(const char* section)
    {
        const DWORD n = GetPrivateProfileStringA(section, nullptr, "", buffer.data(),
                                                 static_cast<DWORD>(buffer.size()), file.c_str());
        return SplitList(buffer, n);
    }
    std::string Read(const std::string& section, const std::string& key, const char* fallback)
    {
        const DWORD n = GetPrivateProfileStringA(section.c_str(), key.c_str(), fallback, buffer.data(),
                                                 static_cast<DWORD>(buffer.size()), file.c_str());
        return std::string(buffer.data(), n);
    }
    // The value, or nullopt for a key that is not there: a value may be any
    // text, so two different defaults tell.
    std::optional<std::string> Value(const std::string& section, const std::string& key)
    {
        std::string value = Read(section, key, "\x01a");
        if (value == "\x01a" && Read(section, key, "\x01b") == "\x01b")
            return std::nullopt;
        return value;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Texts end at a zero byte: a file holding one cannot be read back.
    if (std::memchr(data, 0, size))
        return 0;
    const std::string original = vxfuzz::WriteScratch("in.ini", data, size);
    const std::string copy = vxfuzz::ScratchDir() + "/copy.ini";
    std::remove(copy.c_str());

    Reader first{original, std::vector<char>(size + 64)};
    Reader second{copy, std::vector<char>(size * 2 + 64)};
    {
        std::vector<char> lines(size + 64);
        const DWORD n = GetPrivateProfileSectionA("", lines.data(), static_cast<DWORD>(lines.size()), original.c_str());
        VXFUZZ_CHECK(n < lines.size(), "GetPrivateProfileSectionA returned %u", static_cast<unsigned>(n));
    }

    struct Entry {
        std::string section, key, value;
        unsigned number;
    };
    std::vector<Entry> entries;
    std::set<std::string> sectionsSeen;
    for (const std::string& section : first.List(nullptr)) {
        if (!sectionsSeen.insert(Folded(section)).second || HasLineBreak(section))
            continue;
        std::set<std::string> keysSeen;
        for (const std::string& key : first.List(section.c_str())) {
            if (!keysSeen.insert(Folded(key)).second || HasLineBreak(key) || (!key.empty() && key[0] == '['))
                continue;
            const std::optional<std::string> found = first.Value(section, key);
            VXFUZZ_CHECK(found.has_value(), "key \"%s\" of the list of [%s] is not found", key.c_str(),
                         section.c_str());
            const std::string& value = *found;
            if (HasLineBreak(value))
                continue;
            const unsigned number = GetPrivateProfileIntA(section.c_str(), key.c_str(), 12345, original.c_str());
            entries.push_back({section, key, value, number});
            VXFUZZ_CHECK(WritePrivateProfileStringA(section.c_str(), key.c_str(), Written(value).c_str(),
                                                    copy.c_str()),
                         "writing [%s] %s refused", section.c_str(), key.c_str());
        }
    }

    for (const Entry& e : entries) {
        const std::string value = second.Value(e.section, e.key).value_or("(missing)");
        VXFUZZ_CHECK(value == e.value, "[%s] %s: \"%s\" read back as \"%s\"", e.section.c_str(), e.key.c_str(),
                     e.value.c_str(), value.c_str());
        const unsigned number = GetPrivateProfileIntA(e.section.c_str(), e.key.c_str(), 12345, copy.c_str());
        VXFUZZ_CHECK(number == e.number, "[%s] %s: the number %u read back as %u", e.section.c_str(), e.key.c_str(),
                     e.number, number);
    }
    // Deleting what was written leaves no key behind.
    for (const Entry& e : entries)
        WritePrivateProfileStringA(e.section.c_str(), e.key.c_str(), nullptr, copy.c_str());
    for (const Entry& e : entries)
        VXFUZZ_CHECK(!second.Value(e.section, e.key), "[%s] %s survived its deletion",
                     e.section.c_str(), e.key.c_str());
    return 0;
}

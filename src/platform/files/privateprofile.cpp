#include "platform/files/privateprofile.h"

#include "platform/files/appdirs.h"
#include "platform/files/atomicfile_p.h"
#include "platform/files/hostpath.h"
#include "platform/framework/util_p.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

std::string_view TrimLeft(std::string_view s)
{
    const auto first = s.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view() : s.substr(first);
}

std::string_view Trim(std::string_view s)
{
    s = TrimLeft(s);
    const auto last = s.find_last_not_of(kBlanks);
    return last == std::string_view::npos ? std::string_view() : s.substr(0, last + 1);
}

// One line of the file, without its line end, and what it means.
struct Line {
    enum Kind { Other, Header, Entry };
    std::string_view raw;
    Kind kind = Other;
    std::string_view name;  // section name or key, blanks trimmed
    std::string_view value; // blanks trimmed
};

Line Classify(std::string_view raw)
{
    Line line;
    line.raw = raw;
    const std::string_view text = TrimLeft(raw);
    if (text.empty() || text[0] == ';')
        return line;
    if (text[0] == '[') {
        const auto close = text.find(']');
        if (close != std::string_view::npos) {
            line.kind = Line::Header;
            line.name = Trim(text.substr(1, close - 1));
            return line;
        }
    }
    const auto eq = text.find('=');
    if (eq == std::string_view::npos)
        return line;
    line.kind = Line::Entry;
    line.name = Trim(text.substr(0, eq));
    line.value = Trim(text.substr(eq + 1));
    return line;
}

// Walks the lines of a file's text; CR LF and LF both end a line.
class LineReader {
public:
    explicit LineReader(std::string_view text) : m_text(text) {}
    bool Next(std::string_view& line)
    {
        if (m_pos >= m_text.size())
            return false;
        auto end = m_text.find('\n', m_pos);
        if (end == std::string_view::npos)
            end = m_text.size();
        line = m_text.substr(m_pos, end - m_pos);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        m_pos = end + 1;
        return true;
    }

private:
    std::string_view m_text;
    std::size_t m_pos = 0;
};

std::vector<Line> SplitLines(std::string_view text)
{
    std::vector<Line> lines;
    LineReader reader(text);
    std::string_view raw;
    while (reader.Next(raw))
        lines.push_back(Classify(raw));
    return lines;
}

// The offset of the line after the header of the first section named
// `section`, or npos. Only the "[" bytes of the text are looked at, which
// keeps a read of a large file quick.
std::size_t FindSection(std::string_view text, std::string_view section)
{
    std::size_t pos = 0;
    for (;;) {
        const std::size_t bracket = text.find('[', pos);
        if (bracket == std::string_view::npos)
            return std::string_view::npos;
        const std::size_t before = text.rfind('\n', bracket);
        const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
        std::size_t end = text.find('\n', bracket);
        if (end == std::string_view::npos)
            end = text.size();
        pos = end;
        if (text.substr(start, bracket - start).find_first_not_of(kBlanks) != std::string_view::npos)
            continue; // a "[" inside a line
        std::string_view raw = text.substr(start, end - start);
        if (!raw.empty() && raw.back() == '\r')
            raw.remove_suffix(1);
        const Line line = Classify(raw);
        if (line.kind == Line::Header && vx::AsciiEqualNoCase(line.name, section))
            return end + 1;
    }
}

// Calls `fn` for each line of the first section named `section`, up to the
// next header; `fn` returns false to stop. Returns whether the section
// exists.
template <class Fn>
bool ForEachLine(std::string_view text, std::string_view section, Fn fn)
{
    const std::size_t body = FindSection(text, section);
    if (body == std::string_view::npos)
        return false;
    LineReader reader(body < text.size() ? text.substr(body) : std::string_view());
    std::string_view raw;
    while (reader.Next(raw)) {
        const Line line = Classify(raw);
        if (line.kind == Line::Header)
            break;
        if (!fn(line))
            break;
    }
    return true;
}

// As ForEachLine, for the entries ("key=value") alone.
template <class Fn>
bool ForEachEntry(std::string_view text, std::string_view section, Fn fn)
{
    return ForEachLine(text, section, [&fn](const Line& line) { return line.kind != Line::Entry || fn(line); });
}

bool FindValue(std::string_view text, std::string_view section, std::string_view key, std::string_view& value)
{
    bool found = false;
    ForEachEntry(text, section, [&](const Line& line) {
        if (!vx::AsciiEqualNoCase(line.name, key))
            return true;
        value = line.value;
        found = true;
        return false;
    });
    return found;
}

std::string HostFile(const char* file)
{
    const std::string_view name(file);
    const bool bare = name.find_first_of("\\/") == std::string_view::npos &&
                      !(name.size() >= 2 && name[1] == ':');
    if (bare)
        return vx::WindowsDirectory() + "/" + vx::HostPath(name);
    return vx::HostPath(name);
}

bool Load(const char* file, std::string& text)
{
    return file && *file && vx::ReadWholeFile(HostFile(file), text);
}

DWORD CopyText(std::string_view text, char* buffer, DWORD size)
{
    const std::size_t n = std::min<std::size_t>(text.size(), size - 1);
    // An empty view may have no data at all, which memcpy must not see.
    std::copy_n(text.data(), n, buffer);
    buffer[n] = 0;
    return static_cast<DWORD>(n);
}

// Texts each followed by a zero byte, and one more zero at the end. A list
// that does not fit ends in the cut last text and two zeros.
template <class Texts>
DWORD CopyList(const Texts& items, char* buffer, DWORD size)
{
    if (size < 2) {
        buffer[0] = 0;
        return 0;
    }
    std::size_t pos = 0;
    for (const auto& item : items) {
        const std::string_view text(item);
        if (pos + text.size() + 2 > size) {
            if (pos + 2 <= size)
                std::copy_n(text.data(), size - 2 - pos, buffer + pos);
            buffer[size - 2] = 0;
            buffer[size - 1] = 0;
            return size - 2;
        }
        std::copy_n(text.data(), text.size(), buffer + pos);
        pos += text.size();
        buffer[pos++] = 0;
    }
    buffer[pos] = 0;
    return static_cast<DWORD>(pos);
}

std::string_view Unquoted(std::string_view value)
{
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

UINT ParseNumber(std::string_view text)
{
    text = TrimLeft(text);
    bool negative = false;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    unsigned base = 10;
    if (text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    UINT value = 0;
    for (const char c : text) {
        unsigned digit;
        if (c >= '0' && c <= '9')
            digit = static_cast<unsigned>(c - '0');
        else if (base == 16 && vx::AsciiUpper(c) >= 'A' && vx::AsciiUpper(c) <= 'F')
            digit = static_cast<unsigned>(vx::AsciiUpper(c) - 'A' + 10);
        else
            break;
        if (digit >= base)
            break;
        value = value * base + digit; // wraps, as the 32-bit original did
    }
    return negative ? 0u - value : value;
}

bool HasLineBreak(std::string_view s)
{
    return s.find_first_of("\r\n") != std::string_view::npos;
}

// The new text of the file, or false if the write changes nothing.
bool Edit(std::string_view text, std::string_view section, const char* key, const char* value, std::string& out)
{
    std::vector<Line> lines = SplitLines(text);
    std::vector<std::string> made; // the lines this write makes, by index
    made.reserve(3);
    std::vector<std::string_view> result;
    result.reserve(lines.size() + 3);

    // The ranges of the sections named `section`: [header, next header).
    std::vector<std::pair<std::size_t, std::size_t>> ranges;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].kind != Line::Header || !vx::AsciiEqualNoCase(lines[i].name, section))
            continue;
        std::size_t end = i + 1;
        while (end < lines.size() && lines[end].kind != Line::Header)
            ++end;
        ranges.emplace_back(i, end);
        i = end - 1;
    }

    if (!key) {
        if (ranges.empty())
            return false;
        std::size_t r = 0;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (r < ranges.size() && i == ranges[r].first) {
                i = ranges[r++].second - 1;
                continue;
            }
            result.push_back(lines[i].raw);
        }
    } else {
        const std::string_view name = Trim(key);
        if (!value) {
            if (ranges.empty())
                return false;
            bool removed = false;
            for (std::size_t i = 0; i < lines.size(); ++i) {
                const bool inFirst = i > ranges[0].first && i < ranges[0].second;
                if (inFirst && lines[i].kind == Line::Entry && vx::AsciiEqualNoCase(lines[i].name, name)) {
                    removed = true;
                    continue;
                }
                result.push_back(lines[i].raw);
            }
            if (!removed)
                return false;
        } else if (!ranges.empty()) {
            const auto [first, end] = ranges[0];
            std::size_t at = first + 1; // where a new key goes: behind the last entry
            std::size_t existing = lines.size();
            for (std::size_t i = first + 1; i < end; ++i) {
                if (lines[i].kind != Line::Entry)
                    continue;
                at = i + 1;
                if (existing == lines.size() && vx::AsciiEqualNoCase(lines[i].name, name))
                    existing = i;
            }
            if (existing != lines.size())
                made.push_back(std::string(lines[existing].name) + "=" + value);
            else
                made.push_back(std::string(name) + "=" + value);
            for (std::size_t i = 0; i < lines.size(); ++i) {
                if (i == existing) {
                    result.push_back(made.back());
                    continue;
                }
                if (existing == lines.size() && i == at)
                    result.push_back(made.back());
                result.push_back(lines[i].raw);
            }
            if (existing == lines.size() && at == lines.size())
                result.push_back(made.back());
        } else {
            for (const Line& line : lines)
                result.push_back(line.raw);
            // A new section goes to the end, set off by an empty line.
            if (!lines.empty() && !Trim(lines.back().raw).empty())
                result.push_back(std::string_view());
            made.push_back("[" + std::string(section) + "]");
            made.push_back(std::string(name) + "=" + value);
            result.push_back(made[0]);
            result.push_back(made[1]);
        }
    }

    std::size_t total = 0;
    for (const auto& line : result)
        total += line.size() + 2;
    out.clear();
    out.reserve(total);
    for (const auto& line : result) {
        out += line;
        out += "\r\n";
    }
    return out != text;
}

} // namespace

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue, char* buffer,
                               DWORD size, const char* file)
{
    if (!buffer || size == 0)
        return 0;
    std::string_view fallback = defaultValue ? defaultValue : "";
    const auto last = fallback.find_last_not_of(' ');
    fallback = last == std::string_view::npos ? std::string_view() : fallback.substr(0, last + 1);

    std::string text;
    if (!Load(file, text))
        return CopyText(fallback, buffer, size);

    if (!section || !key) {
        std::vector<std::string_view> names;
        if (!section) {
            LineReader reader(text);
            std::string_view raw;
            while (reader.Next(raw)) {
                const Line line = Classify(raw);
                if (line.kind == Line::Header)
                    names.push_back(line.name);
            }
        } else {
            ForEachEntry(text, Trim(section), [&](const Line& line) {
                names.push_back(line.name);
                return true;
            });
        }
        if (names.empty())
            return CopyText(fallback, buffer, size);
        return CopyList(names, buffer, size);
    }

    std::string_view value;
    if (!FindValue(text, Trim(section), Trim(key), value))
        return CopyText(fallback, buffer, size);
    return CopyText(Unquoted(value), buffer, size);
}

UINT GetPrivateProfileIntA(const char* section, const char* key, int defaultValue, const char* file)
{
    std::string text;
    std::string_view value;
    if (!section || !key || !Load(file, text) || !FindValue(text, Trim(section), Trim(key), value))
        return static_cast<UINT>(defaultValue);
    value = Unquoted(value);
    if (value.empty())
        return static_cast<UINT>(defaultValue);
    return ParseNumber(value);
}

DWORD GetPrivateProfileSectionA(const char* section, char* buffer, DWORD size, const char* file)
{
    std::string text;
    if (!buffer || size == 0 || !section || !Load(file, text))
        return 0;
    std::vector<std::string> entries;
    ForEachLine(text, Trim(section), [&](const Line& line) {
        if (line.kind == Line::Entry) {
            entries.push_back(std::string(line.name) + "=" + std::string(line.value));
        } else {
            // As on the platform, a line without "=" comes as it stands;
            // blank lines and comments do not.
            const std::string_view other = Trim(line.raw);
            if (!other.empty() && other[0] != ';')
                entries.emplace_back(other);
        }
        return true;
    });
    if (entries.empty())
        return 0;
    return CopyList(entries, buffer, size);
}

BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* file)
{
    if (!section || !file || !*file)
        return FALSE;
    const std::string_view name = Trim(section);
    if (name.find(']') != std::string_view::npos || HasLineBreak(section))
        return FALSE;
    if (key) {
        const std::string_view k = Trim(key);
        if (k.find('=') != std::string_view::npos || HasLineBreak(key) ||
            (!k.empty() && (k[0] == '[' || k[0] == ';')))
            return FALSE;
    }
    if (value && HasLineBreak(value))
        return FALSE;
    const auto result = vx::UpdateFile(HostFile(file), [&](const std::string* current, std::string& out) {
        return Edit(current ? std::string_view(*current) : std::string_view(), name, key, value, out);
    });
    return result == vx::UpdateResult::Failed ? FALSE : TRUE;
}

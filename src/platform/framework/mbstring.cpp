#include "platform/framework/mbstring.h"

#include "platform/framework/util_p.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

const char* OrEmpty(const char* s)
{
    return s ? s : "";
}

void CopyCut(char* out, std::size_t size, const char* from, std::size_t length)
{
    if (!out)
        return;
    const std::size_t n = length < size - 1 ? length : size - 1;
    std::memcpy(out, from, n);
    out[n] = 0;
}

bool IsSep(char c)
{
    return c == '\\' || c == '/';
}

} // namespace

int _mbscmp(const char* a, const char* b)
{
    return std::strcmp(OrEmpty(a), OrEmpty(b));
}

int _mbsicmp(const char* a, const char* b)
{
    return vx::AsciiCompareNoCase(a, b, static_cast<std::size_t>(-1));
}

int _mbscoll(const char* a, const char* b)
{
    return _mbscmp(a, b);
}

int _mbsicoll(const char* a, const char* b)
{
    return _mbsicmp(a, b);
}

const char* _mbspbrk(const char* text, const char* set)
{
    return text ? std::strpbrk(text, OrEmpty(set)) : nullptr;
}

int _mbscmp(const unsigned char* a, const unsigned char* b)
{
    return _mbscmp(reinterpret_cast<const char*>(a), reinterpret_cast<const char*>(b));
}

int _mbsicmp(const unsigned char* a, const unsigned char* b)
{
    return _mbsicmp(reinterpret_cast<const char*>(a), reinterpret_cast<const char*>(b));
}

int _mbscoll(const unsigned char* a, const unsigned char* b)
{
    return _mbscmp(a, b);
}

int _mbsicoll(const unsigned char* a, const unsigned char* b)
{
    return _mbsicmp(a, b);
}

int _mbsnbicmp(const unsigned char* a, const unsigned char* b, std::size_t count)
{
    return vx::AsciiCompareNoCase(reinterpret_cast<const char*>(a), reinterpret_cast<const char*>(b), count);
}

const unsigned char* _mbspbrk(const unsigned char* text, const unsigned char* set)
{
    return reinterpret_cast<const unsigned char*>(
        _mbspbrk(reinterpret_cast<const char*>(text), reinterpret_cast<const char*>(set)));
}

const unsigned char* _mbschr(const unsigned char* text, unsigned int ch)
{
    return text ? reinterpret_cast<const unsigned char*>(std::strchr(reinterpret_cast<const char*>(text), static_cast<int>(ch)))
                : nullptr;
}

const unsigned char* _mbsrchr(const unsigned char* text, unsigned int ch)
{
    return text ? reinterpret_cast<const unsigned char*>(std::strrchr(reinterpret_cast<const char*>(text), static_cast<int>(ch)))
                : nullptr;
}

const unsigned char* _mbsstr(const unsigned char* text, const unsigned char* sub)
{
    if (!text)
        return nullptr;
    return reinterpret_cast<const unsigned char*>(
        std::strstr(reinterpret_cast<const char*>(text), OrEmpty(reinterpret_cast<const char*>(sub))));
}

int _stricmp(const char* a, const char* b)
{
    return vx::AsciiCompareNoCase(a, b, static_cast<std::size_t>(-1));
}

int _strnicmp(const char* a, const char* b, std::size_t count)
{
    return vx::AsciiCompareNoCase(a, b, count);
}

char* _strupr(char* text)
{
    for (char* p = text; p && *p; ++p)
        *p = vx::AsciiUpper(*p);
    return text;
}

char* _strlwr(char* text)
{
    for (char* p = text; p && *p; ++p)
        *p = vx::AsciiLower(*p);
    return text;
}

// Radix 10 prints the signed value; other radices print the bit pattern of
// a value `bits` wide, as the runtime did.
static char* FormatInteger(long long value, int bits, char* buffer, int radix)
{
    if (!buffer)
        return buffer;
    if (radix < 2 || radix > 36) {
        buffer[0] = 0;
        return buffer;
    }
    const bool negative = radix == 10 && value < 0;
    unsigned long long v;
    if (radix == 10)
        v = negative ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    else
        v = static_cast<unsigned long long>(value) & (bits >= 64 ? ~0ULL : ((1ULL << bits) - 1));
    char digits[72];
    int n = 0;
    do {
        const int d = static_cast<int>(v % static_cast<unsigned>(radix));
        digits[n++] = static_cast<char>(d < 10 ? '0' + d : 'a' + d - 10);
        v /= static_cast<unsigned>(radix);
    } while (v);
    char* p = buffer;
    if (negative)
        *p++ = '-';
    while (n)
        *p++ = digits[--n];
    *p = 0;
    return buffer;
}

char* _ltoa(long value, char* buffer, int radix)
{
    return FormatInteger(value, 64, buffer, radix);
}

char* _itoa(int value, char* buffer, int radix)
{
    return FormatInteger(value, 32, buffer, radix);
}

int vx::Atoi(const char* text)
{
    if (!text)
        return 0;
    errno = 0;
    const long long v = std::strtoll(text, nullptr, 10);
    if (v > INT_MAX)
        return INT_MAX;
    if (v < INT_MIN)
        return INT_MIN;
    return static_cast<int>(v);
}

void _splitpath(const char* path, char* drive, char* dir, char* fname, char* ext)
{
    const char* p = OrEmpty(path);
    const std::size_t length = std::strlen(p);
    std::size_t start = 0;
    if (length >= 2 && p[1] == ':') {
        CopyCut(drive, _MAX_DRIVE, p, 2);
        start = 2;
    } else {
        CopyCut(drive, _MAX_DRIVE, p, 0);
    }
    std::size_t lastSep = std::string::npos;
    for (std::size_t i = start; i < length; ++i) {
        if (IsSep(p[i]))
            lastSep = i;
    }
    const std::size_t nameStart = lastSep == std::string::npos ? start : lastSep + 1;
    CopyCut(dir, _MAX_DIR, p + start, nameStart - start);
    std::size_t dot = std::string::npos;
    for (std::size_t i = nameStart; i < length; ++i) {
        if (p[i] == '.')
            dot = i;
    }
    const std::size_t nameEnd = dot == std::string::npos ? length : dot;
    CopyCut(fname, _MAX_FNAME, p + nameStart, nameEnd - nameStart);
    CopyCut(ext, _MAX_EXT, p + nameEnd, length - nameEnd);
}

void _makepath(char* path, const char* drive, const char* dir, const char* fname, const char* ext)
{
    if (!path)
        return;
    std::string out;
    if (drive && *drive) {
        out += drive[0];
        out += ':';
    }
    if (dir && *dir) {
        out += dir;
        if (!IsSep(out.back()))
            out += '\\';
    }
    if (fname)
        out += fname;
    if (ext && *ext) {
        if (*ext != '.')
            out += '.';
        out += ext;
    }
    CopyCut(path, _MAX_PATH, out.data(), out.size());
}

char* _fullpath(char* absPath, const char* relPath, std::size_t maxLength)
{
    std::string rel = OrEmpty(relPath);
    std::string prefix; // drive, or "" for POSIX and rooted texts
    char sep = '/';
    std::string rest;
    const bool windows = (rel.size() >= 2 && rel[1] == ':') || rel.find('\\') != std::string::npos;
    if (windows) {
        sep = '\\';
        if (rel.size() >= 2 && rel[1] == ':') {
            prefix = rel.substr(0, 2);
            rest = rel.substr(2);
        } else {
            rest = rel;
        }
        // A relative text without a drive has no working directory of its
        // own here; it is taken from the root of its drive.
        if (rest.empty() || !IsSep(rest[0]))
            rest = "\\" + rest;
    } else if (!rel.empty() && rel[0] == '/') {
        rest = rel;
    } else {
        std::vector<char> cwd(4096);
        if (!getcwd(cwd.data(), cwd.size()))
            return nullptr;
        rest = std::string(cwd.data()) + "/" + rel;
    }

    std::vector<std::string> parts;
    std::string part;
    auto flush = [&]() {
        if (part == "..") {
            if (!parts.empty())
                parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        part.clear();
    };
    for (char c : rest) {
        if (IsSep(c))
            flush();
        else
            part += c;
    }
    flush();
    std::string out = prefix;
    for (const std::string& p : parts)
        out += sep + p;
    if (parts.empty() || (!rest.empty() && IsSep(rest.back()) && out.back() != sep))
        out += sep;
    if (out.size() + 1 > maxLength && absPath)
        return nullptr;
    if (!absPath) {
        absPath = static_cast<char*>(std::malloc(out.size() + 1));
        if (!absPath)
            return nullptr;
    }
    std::memcpy(absPath, out.c_str(), out.size() + 1);
    return absPath;
}

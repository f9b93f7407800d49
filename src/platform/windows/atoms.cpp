#include "platform/windows/atoms.h"

#include "platform/framework/util_p.h"
#include "platform/windows/lasterror.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

namespace {

constexpr ATOM kFirstStringAtom = 0xC000;
constexpr std::size_t kMaxText = 255;

std::string Folded(const std::string& text)
{
    return vx::AsciiLowerCopy(text);
}

// A text that names an integer atom ("#123"): its number, 0 if it names
// none, -1 for a text that is not of that form.
long IntegerAtomOf(const char* text)
{
    if (text[0] != '#' || !text[1])
        return -1;
    long n = 0;
    for (const char* p = text + 1; *p; ++p) {
        if (*p < '0' || *p > '9')
            return -1;
        n = n * 10 + (*p - '0');
        if (n > 0xFFFF)
            return 0;
    }
    return n < kFirstStringAtom ? n : 0;
}

class AtomTable {
public:
    ATOM Add(LPCSTR text)
    {
        ATOM atom = 0;
        if (Parse(text, atom))
            return atom;
        std::lock_guard lock(m_lock);
        const std::string key = Folded(text);
        if (auto it = m_byText.find(key); it != m_byText.end()) {
            ++m_entries[it->second].references;
            return it->second;
        }
        ATOM next = kFirstStringAtom;
        while (m_entries.count(next)) {
            if (next == 0xFFFF) {
                SetLastError(ERROR_NOT_ENOUGH_MEMORY);
                return 0;
            }
            ++next;
        }
        m_entries[next] = Entry{text, 1};
        m_byText[key] = next;
        return next;
    }

    ATOM Find(LPCSTR text)
    {
        ATOM atom = 0;
        if (Parse(text, atom))
            return atom;
        std::lock_guard lock(m_lock);
        if (auto it = m_byText.find(Folded(text)); it != m_byText.end())
            return it->second;
        SetLastError(ERROR_FILE_NOT_FOUND);
        return 0;
    }

    ATOM Delete(ATOM atom)
    {
        if (atom > 0 && atom < kFirstStringAtom)
            return 0;
        std::lock_guard lock(m_lock);
        auto it = m_entries.find(atom);
        if (it == m_entries.end()) {
            SetLastError(ERROR_INVALID_HANDLE);
            return atom;
        }
        if (--it->second.references == 0) {
            m_byText.erase(Folded(it->second.text));
            m_entries.erase(it);
        }
        return 0;
    }

    UINT Name(ATOM atom, LPSTR buffer, int size)
    {
        std::string text;
        if (atom > 0 && atom < kFirstStringAtom) {
            text = "#" + std::to_string(atom);
        } else {
            std::lock_guard lock(m_lock);
            auto it = m_entries.find(atom);
            if (it == m_entries.end()) {
                SetLastError(ERROR_INVALID_HANDLE);
                return 0;
            }
            text = it->second.text;
        }
        if (!buffer || size <= 0) {
            SetLastError(ERROR_INSUFFICIENT_BUFFER);
            return 0;
        }
        const std::size_t n = std::min(text.size(), static_cast<std::size_t>(size - 1));
        std::memcpy(buffer, text.data(), n);
        buffer[n] = 0;
        return static_cast<UINT>(n);
    }

private:
    struct Entry {
        std::string text;
        int references = 0;
    };

    // Integer atoms and bad texts need no table; true when `atom` is the answer.
    static bool Parse(LPCSTR text, ATOM& atom)
    {
        if (IS_INTATOM(text)) {
            const auto n = static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(text));
            atom = (n > 0 && n < kFirstStringAtom) ? n : 0;
            if (!atom)
                SetLastError(ERROR_INVALID_PARAMETER);
            return true;
        }
        const std::size_t length = std::strlen(text);
        if (length == 0 || length > kMaxText) {
            SetLastError(ERROR_INVALID_PARAMETER);
            atom = 0;
            return true;
        }
        const long n = IntegerAtomOf(text);
        if (n < 0)
            return false;
        atom = static_cast<ATOM>(n);
        if (!atom)
            SetLastError(ERROR_INVALID_PARAMETER);
        return true;
    }

    std::mutex m_lock;
    std::map<ATOM, Entry> m_entries;
    std::map<std::string, ATOM> m_byText;
};

AtomTable& Global()
{
    static auto* table = new AtomTable; // outlives static destructors
    return *table;
}

AtomTable& Local()
{
    static auto* table = new AtomTable;
    return *table;
}

} // namespace

ATOM GlobalAddAtomA(LPCSTR text)
{
    return Global().Add(text);
}

ATOM GlobalFindAtomA(LPCSTR text)
{
    return Global().Find(text);
}

ATOM GlobalDeleteAtom(ATOM atom)
{
    return Global().Delete(atom);
}

UINT GlobalGetAtomNameA(ATOM atom, LPSTR buffer, int size)
{
    return Global().Name(atom, buffer, size);
}

ATOM AddAtomA(LPCSTR text)
{
    return Local().Add(text);
}

ATOM FindAtomA(LPCSTR text)
{
    return Local().Find(text);
}

ATOM DeleteAtom(ATOM atom)
{
    return Local().Delete(atom);
}

UINT GetAtomNameA(ATOM atom, LPSTR buffer, int size)
{
    return Local().Name(atom, buffer, size);
}

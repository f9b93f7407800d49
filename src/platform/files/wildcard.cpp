#include "platform/files/wildcard.h"

#include "platform/framework/util_p.h"

#include <cstring>
#include <memory>

namespace vx {
bool HasWildcards(std::string_view text)
{
    return text.find_first_of("*?") != std::string_view::npos;
}

WildcardPattern::WildcardPattern(std::string_view pattern)
{
    m_empty = pattern.empty();
    m_all = pattern == "*" || pattern == "*.*";
    m_tokens.reserve(pattern.size());
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char c = pattern[i];
        const char next = i + 1 < pattern.size() ? pattern[i + 1] : '\0';
        if (c == '*') {
            // Two stars in a row match what one does; keeping one keeps the
            // state set small.
            if (!m_tokens.empty() && m_tokens.back().kind == Kind::Star && next != '.')
                continue;
            m_tokens.push_back({next == '.' ? Kind::DosStar : Kind::Star, c});
        } else if (c == '?') {
            m_tokens.push_back({Kind::DosQuestion, c});
        } else if (c == '.' && (next == '?' || next == '*' || next == '\0')) {
            m_tokens.push_back({Kind::DosDot, c});
        } else {
            m_tokens.push_back({Kind::Literal, AsciiLower(c)});
        }
    }
    for (const Token& t : m_tokens) {
        if (t.kind != Kind::Literal)
            break;
        m_prefix += t.ch;
    }
}

bool WildcardPattern::Matches(std::string_view name) const
{
    if (m_empty)
        return false;
    if (m_all)
        return true;
    // Most names of a directory fail on the first characters; the literal
    // start of the pattern rejects them before the general match runs.
    if (name.size() < m_prefix.size())
        return false;
    for (std::size_t i = 0; i < m_prefix.size(); ++i) {
        if (AsciiLower(name[i]) != m_prefix[i])
            return false;
    }
    // "title.*", the pattern of a drawing's pages: the rest must be empty
    // or an extension.
    const std::size_t p = m_prefix.size();
    if (m_tokens.size() == p + 2 && m_tokens[p].kind == Kind::DosDot && m_tokens[p + 1].kind == Kind::Star)
        return name.size() == p || name[p] == '.';

    const std::size_t n = m_tokens.size();
    const std::size_t length = name.size();
    const std::size_t lastDot = name.rfind('.');

    // The pattern runs as a set of live token positions over the name, so
    // a match costs O(name x pattern) whatever the stars.
    unsigned char small[2][258];
    std::unique_ptr<unsigned char[]> large;
    unsigned char* cur = small[0];
    unsigned char* nxt = small[1];
    if (n + 1 > sizeof small[0]) {
        large = std::make_unique<unsigned char[]>(2 * (n + 1));
        cur = large.get();
        nxt = large.get() + n + 1;
    }
    std::memset(cur, 0, n + 1);
    cur[0] = 1;

    auto close = [&](unsigned char* set, std::size_t at) {
        const bool atEnd = at == length;
        for (std::size_t k = 0; k < n; ++k) {
            if (!set[k])
                continue;
            switch (m_tokens[k].kind) {
            case Kind::Star:
            case Kind::DosStar:
                set[k + 1] = 1;
                break;
            case Kind::DosQuestion:
                if (atEnd || name[at] == '.')
                    set[k + 1] = 1;
                break;
            case Kind::DosDot:
                if (atEnd)
                    set[k + 1] = 1;
                break;
            case Kind::Literal:
                break;
            }
        }
    };

    for (std::size_t i = 0; i < length; ++i) {
        close(cur, i);
        std::memset(nxt, 0, n + 1);
        const char c = name[i];
        bool any = false;
        for (std::size_t k = 0; k < n; ++k) {
            if (!cur[k])
                continue;
            const Token& t = m_tokens[k];
            switch (t.kind) {
            case Kind::Literal:
                if (AsciiLower(c) == t.ch)
                    nxt[k + 1] = any = 1;
                break;
            case Kind::Star:
                nxt[k] = any = 1;
                break;
            case Kind::DosStar:
                if (!(c == '.' && i == lastDot))
                    nxt[k] = any = 1;
                break;
            case Kind::DosQuestion:
                if (c != '.')
                    nxt[k + 1] = any = 1;
                break;
            case Kind::DosDot:
                if (c == '.')
                    nxt[k + 1] = any = 1;
                break;
            }
        }
        if (!any)
            return false;
        std::swap(cur, nxt);
    }
    close(cur, length);
    return cur[n] != 0;
}

bool MatchesWildcard(std::string_view name, std::string_view pattern)
{
    return WildcardPattern(pattern).Matches(name);
}

} // namespace vx

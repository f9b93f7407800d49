// File name wildcards with the rules of the desktop API's file search.
//
// "*" matches any run of characters, "?" one character. The search gave a
// few of them a special meaning that the library's patterns rely on:
//
//   vx::WildcardPattern p("plan.*");
//   p.Matches("plan.0012");   // true
//   p.Matches("plan");        // true: ".*" also matches no extension
//   p.Matches("PLAN.0012");   // true: ASCII letters match either case
//   vx::WildcardPattern("*.0*").Matches("a.0b.txt");   // true
//   vx::WildcardPattern("*.").Matches("readme");       // true: no extension
//   vx::WildcardPattern("a??").Matches("a1");          // true
//
// The rules, as the search applied them to a pattern:
// * "*" followed by "." matches any run that does not take in the name's
//   last "."; any other "*" matches any run.
// * "?" matches one character other than "."; at a "." or at the end of the
//   name it matches nothing.
// * "." followed by "?", "*" or the end of the pattern matches a "." or,
//   at the end of the name, nothing. Any other "." matches only ".".
// Names and patterns are code page bytes; only ASCII letters fold case.
#pragma once

#include "vxbase_export.h"

#include <string>
#include <string_view>
#include <vector>

namespace vx {

// True if `text` holds "*" or "?".
VXBASE_EXPORT bool HasWildcards(std::string_view text);

class VXBASE_EXPORT WildcardPattern {
public:
    WildcardPattern() = default;
    explicit WildcardPattern(std::string_view pattern);
    // True if `name` (one file name, without directory) matches. An empty
    // pattern matches nothing.
    bool Matches(std::string_view name) const;
    // True for "*" and "*.*", which match every name.
    bool MatchesAll() const { return m_all; }

private:
    enum class Kind : unsigned char { Literal, Star, DosStar, DosQuestion, DosDot };
    struct Token {
        Kind kind;
        char ch;
    };
    std::vector<Token> m_tokens;
    std::string m_prefix; // the leading literal characters, folded
    bool m_all = false;
    bool m_empty = true;
};

// One-off form of WildcardPattern(pattern).Matches(name).
VXBASE_EXPORT bool MatchesWildcard(std::string_view name, std::string_view pattern);

} // namespace vx

#include "platform/files/wildcard.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Case {
    const char* pattern;
    const char* name;
    bool matches;
};

void Check(const Case& c)
{
    SCOPED_TRACE(std::string(c.pattern) + " ~ " + c.name);
    EXPECT_EQ(vx::MatchesWildcard(c.name, c.pattern), c.matches);
}

} // namespace

TEST(Wildcard, PageFilePatterns)
{
    const Case cases[] = {
        {"plan.*", "plan.0012", true},   {"plan.*", "plan.0012a", true}, {"plan.*", "plan", true},
        {"plan.*", "plan.", true},       {"plan.*", "plan.a.b", true},   {"plan.*", "plans.0012", false},
        {"plan.*", "xplan.0012", false}, {"plan.*", "PLAN.0012", true},  {"Plan.*", "plan.dxf", true},
        {"*.0*", "plan.0012", true},     {"*.0*", "plan.012", true},     {"*.0*", "plan.1012", false},
        {"*.0*", "a.0b.txt", true},      {"*.0*", "plan", false},        {"plan.0012*", "plan.0012b", true},
        {"plan.0012*", "plan.0012", true}, {"plan.0012*", "plan.0013", false},
    };
    for (const Case& c : cases)
        Check(c);
}

TEST(Wildcard, DesktopRulesForDotsAndQuestionMarks)
{
    const Case cases[] = {
        {"*", "anything.at.all", true}, {"*.*", "noextension", true}, {"*.*", ".hidden", true},
        {"*.", "readme", true},         {"*.", "readme.txt", false},  {"a??", "a", true},
        {"a??", "a1", true},            {"a??", "a12", true},         {"a??", "a123", false},
        {"a?c", "abc", true},           {"a?c", "a.c", false},        {"a?.txt", "a.txt", true},
        {"a?.txt", "ab.txt", true},     {"", "x", false},
        {"x.y", "X.Y", true},           {"**.x", "a.b.x", true},      {"a*b*c", "aXXbYYc", true},
        {"a*b*c", "aXXbYY", false},
    };
    for (const Case& c : cases)
        Check(c);
}

TEST(Wildcard, HighBytesMatchThemselvesOnly)
{
    EXPECT_TRUE(vx::MatchesWildcard("Pl\xE4n.0001", "pl\xE4n.*"));
    EXPECT_FALSE(vx::MatchesWildcard("Pl\xC4n.0001", "pl\xE4n.*")) << "only ASCII letters fold";
    EXPECT_TRUE(vx::MatchesWildcard("\xFF\x80", "??"));
}

TEST(Wildcard, LongPatternsAndNames)
{
    const std::string name(800, 'a');
    std::string pattern(400, '?');
    pattern += "*";
    EXPECT_TRUE(vx::MatchesWildcard(name, pattern));
    EXPECT_TRUE(vx::MatchesWildcard(name, std::string(300, '*') + "a"));
    EXPECT_FALSE(vx::MatchesWildcard(name, std::string(300, '*') + "b"));
    EXPECT_TRUE(vx::HasWildcards("C:\\P\\plan.*"));
    EXPECT_FALSE(vx::HasWildcards("C:\\P\\plan.0012"));
}

#include "process/kinternet.h"

#include "platform/shell/shellexecute.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Records the links instead of launching anything.
class RecordLinks {
public:
    explicit RecordLinks(bool accept = true)
    {
        m_old = vx::SetUriLauncher([this, accept](const std::string& uri) {
            links.push_back(uri);
            return accept;
        });
    }
    ~RecordLinks() { vx::SetUriLauncher(m_old); }
    std::vector<std::string> links;

private:
    vx::UriLauncher m_old;
};

TEST(KInternet, MailtoLinkEncodesOnlyBlanksLineFeedsAndTabs)
{
    EXPECT_EQ(vx::MailtoLink("a b", nullptr, nullptr, nullptr), "mailto:a%20b");
    EXPECT_EQ(vx::MailtoLink("x", "s", "t", nullptr), "mailto:x?Subject=s&Body=\"t\"");
    EXPECT_EQ(vx::MailtoLink("x", nullptr, "one\ntwo\tthree", nullptr), "mailto:x?Body=\"one%0D%0Atwo%09three\"");
    EXPECT_EQ(vx::MailtoLink("x", nullptr, nullptr, "C:\\a.pdf"), "mailto:x?Attach=\"C:\\a.pdf\"");
    EXPECT_EQ(vx::MailtoLink("x", nullptr, "b", "f"), "mailto:x?Body=\"b\"%0D%0A%0D%0A&Attach=\"f\"");
    EXPECT_EQ(vx::MailtoLink("x", "s", nullptr, "f"), "mailto:x?Subject=s&Attach=\"f\"");
    // "&" and "?" go out as they are.
    EXPECT_EQ(vx::MailtoLink("x", "a&b?", nullptr, nullptr), "mailto:x?Subject=a&b?");
}

TEST(KInternet, SendMailHandsTheLinkToTheDesktop)
{
    RecordLinks record;
    EXPECT_EQ(KInternet::SendMail("anna nowak@example.com", "Plan 12", "Line 1\nLine 2", nullptr), 1);
    ASSERT_EQ(record.links.size(), 1u);
    EXPECT_EQ(record.links[0], "mailto:anna%20nowak@example.com?Subject=Plan 12&Body=\"Line 1%0D%0ALine 2\"");
}

TEST(KInternet, ResultsTellWhetherAHandlerTookTheLink)
{
    {
        RecordLinks refuse(false);
        EXPECT_EQ(KInternet::SendMail("a@example.com", nullptr, nullptr, nullptr), 0);
        EXPECT_EQ(KInternet::ConnectWWW("https://example.com/"), 0);
        EXPECT_EQ(refuse.links.size(), 2u);
    }
    RecordLinks accept;
    EXPECT_EQ(KInternet::ConnectWWW("https://example.com/a b"), 1);
    ASSERT_EQ(accept.links.size(), 1u);
    EXPECT_EQ(accept.links[0], "https://example.com/a b");
    EXPECT_EQ(KInternet::ConnectWWW(""), 0);
    EXPECT_EQ(KInternet::ConnectWWW(nullptr), 0);
}

TEST(ShellExecute, SplitsParametersByTheWindowsRules)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(vx::SplitCommandLine("@@C:\\P x"), (V{"@@C:\\P", "x"}));
    EXPECT_EQ(vx::SplitCommandLine("  a\t\"b c\" d"), (V{"a", "b c", "d"}));
    EXPECT_EQ(vx::SplitCommandLine("\"a\\\"b\""), (V{"a\"b"}));
    EXPECT_EQ(vx::SplitCommandLine("a\\\\\"b c\""), (V{"a\\b c"}));
    EXPECT_EQ(vx::SplitCommandLine("a\\b"), (V{"a\\b"}));
    EXPECT_EQ(vx::SplitCommandLine("\"\""), (V{""}));
    EXPECT_EQ(vx::SplitCommandLine(""), V{});
}

TEST(ShellExecute, FailsWithTheShellsCodes)
{
    RecordLinks record;
    auto code = [](HINSTANCE h) { return reinterpret_cast<std::intptr_t>(h); };
    EXPECT_EQ(code(ShellExecuteA(nullptr, nullptr, "/nonexistent/vxbase/IT", "@@", nullptr, SW_HIDE)), SE_ERR_FNF);
    EXPECT_EQ(code(ShellExecuteA(nullptr, nullptr, "/bin/sh", "-c true", "/nonexistent/dir", SW_HIDE)), SE_ERR_PNF);
    EXPECT_GT(code(ShellExecuteA(nullptr, nullptr, "/bin/sh", "-c true", "/tmp", SW_HIDE)), 32);
    EXPECT_GT(code(ShellExecuteA(nullptr, nullptr, "mailto:x", nullptr, nullptr, SW_SHOW)), 32);
    EXPECT_EQ(record.links, std::vector<std::string>{"mailto:x"});
}

} // namespace

#include "pages/blattnummer.h"
#include "platform/windows/messagebox.h"

#include "pages/testhost.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

VXPAGENUM Page(const char* text)
{
    return VXPAGENUM(text);
}

VXPAGENUM It(const char* name, CString* title)
{
    CString n = name;
    return GetBlattnummer(MainframeIT, n, title);
}

} // namespace

TEST(Blattnummer, ReadsItPagesFromTheTitle)
{
    CString title;
    EXPECT_EQ(It("a_7.x", &title), Page("7"));
    EXPECT_EQ(title, "a");
    EXPECT_EQ(It("a.x", &title), Page("0"));
    EXPECT_EQ(title, "a");
    EXPECT_EQ(It("a_x.y", &title), VXPAGENUM(VXPAGE(72), 0)) << "the code of x less 0x30";
    EXPECT_EQ(title, "a");
    EXPECT_EQ(It("a_00.y", &title), Page("0"));
    EXPECT_EQ(title, "a");
    EXPECT_EQ(It("plan_123.vxi", &title), Page("123"));
    EXPECT_EQ(title, "plan");
    EXPECT_EQ(It("my_plan_12.vxi", &title), Page("12"));
    EXPECT_EQ(title, "my_plan");
    EXPECT_EQ(It("plan_ab.y", &title), Page("0"));
    EXPECT_EQ(title, "plan_ab") << "no number: the title runs to the dot";
    EXPECT_EQ(It("plan_x?.y", &title), Page("0"));
    EXPECT_EQ(title, "plan_x") << "... or to a wildcard";
    EXPECT_EQ(It("plan_*.y", &title), Page("0"));
    EXPECT_EQ(title, "plan_*") << "a negative page counts as none";
    EXPECT_EQ(It("_7.x", &title), Page("7"));
    EXPECT_EQ(title, "_7") << "an empty title gives the text before the dot";
    EXPECT_EQ(It("a.b_7", &title), Page("0"));
    EXPECT_EQ(title, "a") << "a \"_\" behind the dot does not count";
    title = "unchanged";
    EXPECT_EQ(It(".x", &title), VXPAGENUM());
    EXPECT_EQ(It("nodot", &title), VXPAGENUM());
    EXPECT_EQ(title, "unchanged");
    EXPECT_EQ(It("plan_7.x", nullptr), Page("7"));
    EXPECT_EQ(GetBlattnummer(MainframeIT, "plan_7.x"), VXPAGENUM()) << "the plain-text form knows no IT pages";
}

TEST(Blattnummer, ReadsAtPagesFromTheExtension)
{
    CString name = "C:\\P\\plan.0012a";
    CString title;
    EXPECT_EQ(GetBlattnummer(MainframeAT, name, &title), Page("12a"));
    EXPECT_EQ(title, "C:\\P\\plan");
    name = "C:\\P\\plan.012";
    EXPECT_EQ(GetBlattnummer(MainframeAT, name, &title), VXPAGENUM()) << "old style does not count";
    EXPECT_EQ(title, name);
    EXPECT_EQ(GetBlattnummer(MainframeAT, "plan.0099"), Page("99"));
    EXPECT_EQ(GetBlattnummer(static_cast<MainframeType>(0), "plan.0099"), Page("99"));

    CString ext = "C:\\P\\plan.0012a";
    EXPECT_EQ(GetBlattExtension(MainframeAT, ext), "0012a");
    ext = "plan.dxf";
    EXPECT_EQ(GetBlattExtension(MainframeAT, ext), "");
    EXPECT_EQ(GetBlattExtension(MainframeIT, ext), "dxf");
    ext = "plan";
    EXPECT_EQ(GetBlattExtension(MainframeIT, ext), "");
}

TEST(Blattnummer, WritesPagesIntoNames)
{
    CString name = "anything";
    SetBlattnummer(MainframeAT, name, Page("12a"), nullptr);
    EXPECT_EQ(name, "0012a");
    CString title = "C:\\P\\plan";
    SetBlattnummer(MainframeAT, name, Page("3"), &title);
    EXPECT_EQ(name, "C:\\P\\plan.0003");

    SetBlattnummer(MainframeIT, name, Page("12"), nullptr);
    EXPECT_EQ(name, "12");
    name = "plan_1.vxi";
    title = "plan";
    SetBlattnummer(MainframeIT, name, Page("12"), &title);
    EXPECT_EQ(name, "plan_12(null)") << "the name comes out exactly as the original's format made it";

    std::vector<std::string> boxes;
    auto old = vx::SetMessageBoxHandler([&](const vx::MessageBoxRequest& r) {
        boxes.push_back(r.text);
        return IDRETRY;
    });
    name = "nodot";
    SetBlattnummer(MainframeIT, name, Page("5"), &title);
    vx::SetMessageBoxHandler(old);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_NE(boxes[0].find("1148"), std::string::npos);
    EXPECT_EQ(name, "plan_5(null)");
}

TEST(Blattnummer, PageLimitAsksTheHost)
{
    {
        TestHost host;
        host.pageLimit = 750;
        EXPECT_EQ(PageLimit(), Page("750"));
        EXPECT_EQ(host.queries, 1);
    }
    EXPECT_EQ(PageLimit(), Page("0")) << "without a host";
}

#include "platform/windows/messagebox.h"

#include "support/printers.h"

#include <gtest/gtest.h>

TEST(MessageBox, DefaultHandlerAnswersWithTheDefaultButton)
{
    EXPECT_EQ(vx::DefaultButtonOf(MB_OK), IDOK);
    EXPECT_EQ(vx::DefaultButtonOf(MB_YESNO), IDYES);
    EXPECT_EQ(vx::DefaultButtonOf(MB_YESNO | MB_DEFBUTTON2), IDNO);
    EXPECT_EQ(vx::DefaultButtonOf(MB_YESNOCANCEL | MB_DEFBUTTON3), IDCANCEL);
    EXPECT_EQ(vx::DefaultButtonOf(MB_RETRYCANCEL | MB_ICONHAND), IDRETRY);
    EXPECT_EQ(vx::DefaultButtonOf(MB_ABORTRETRYIGNORE | MB_DEFBUTTON2), IDRETRY);
    EXPECT_EQ(AfxMessageBox("to standard error", MB_OKCANCEL | MB_DEFBUTTON2), IDCANCEL);
}

TEST(MessageBox, InstalledHandlerSeesTextCaptionAndType)
{
    vx::MessageBoxRequest seen;
    auto old = vx::SetMessageBoxHandler([&](const vx::MessageBoxRequest& r) {
        seen = r;
        return IDNO;
    });
    EXPECT_EQ(MessageBoxA(nullptr, "text", "caption", MB_YESNO | MB_ICONQUESTION), IDNO);
    EXPECT_EQ(seen.text, "text");
    EXPECT_EQ(seen.caption, "caption");
    EXPECT_EQ(seen.type, MB_YESNO | MB_ICONQUESTION);
    EXPECT_EQ(AfxMessageBox(6718u, MB_OK), IDNO);
    EXPECT_EQ(seen.text, "Brak pliku.");
    EXPECT_EQ(seen.help, 6718u) << "the string id is the help context";
    vx::SetMessageBoxHandler(old);
}

TEST(WaitCursor, NestedCallsShowOnceAndHideOnce)
{
    int shows = 0, hides = 0;
    vx::SetWaitCursorHook([&](bool busy) { busy ? ++shows : ++hides; });
    {
        vx::WaitCursor outer;
        vx::WaitCursor inner;
    }
    vx::EndWaitCursor(); // an unmatched end does nothing
    vx::SetWaitCursorHook(nullptr);
    EXPECT_EQ(shows, 1);
    EXPECT_EQ(hides, 1);
}

// CNewDialog: the dialog's menu and system menu become CNewMenus, and a
// popup asks the dialog for each item's state before it opens.
#include "uisupport/uitest.h"

#include "menus/cnewdialog.h"
#include "ui/bars/ccmdui.h"
#include "ui/dialogs/dialogtemplate.h"
#include "ui/menus/winmenu.h"

namespace {

constexpr UINT kCmdOpen = 5101;
constexpr UINT kCmdSave = 5102;
constexpr UINT kCmdGone = 5103;
constexpr UINT kCmdSub = 5104;

class MenuDialog : public CNewDialog {
public:
    HMENU menu = nullptr;
    HMENU file = nullptr;
    HMENU sub = nullptr;
    std::vector<UINT> asked;

    BOOL OnInitDialog() override
    {
        menu = CreateMenu();
        file = CreatePopupMenu();
        sub = CreatePopupMenu();
        AppendMenuA(file, MF_STRING, kCmdGone, "&Znika");
        AppendMenuA(file, MF_STRING, kCmdOpen, "&Otw\xF3rz");
        AppendMenuA(file, MF_SEPARATOR, 0, nullptr);
        AppendMenuA(file, MF_STRING, kCmdSave, "&Zapisz");
        AppendMenuA(sub, MF_STRING, kCmdSub, "&Ostatnie");
        AppendMenuA(file, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), "&Ostatnie pliki");
        AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(file), "&Plik");
        ::SetMenu(m_hWnd, menu);
        return CNewDialog::OnInitDialog();
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_UPDATECOMMANDUI) {
            auto* ui = reinterpret_cast<CCmdUI*>(lParam);
            asked.push_back(static_cast<UINT>(wParam));
            switch (wParam) {
            case kCmdOpen:
                ui->Enable(TRUE);
                ui->SetCheck(1);
                return TRUE;
            case kCmdGone:
                // A handler that takes its own item away during the walk.
                DeleteMenu(file, kCmdGone, MF_BYCOMMAND);
                return TRUE;
            case kCmdSub:
                ui->Enable(TRUE);
                return TRUE;
            default:
                return FALSE;
            }
        }
        return CNewDialog::WindowProc(message, wParam, lParam);
    }
};

vx::DialogTemplate Small()
{
    vx::DialogTemplate t("Menu", 0, 0, 160, 80);
    t.DefPushButton("OK", IDOK, 7, 50, 50, 14);
    return t;
}

} // namespace

TEST(NewDialog, TakesItsMenusAndFillsAPopupsStatesFromTheDialog)
{
    MenuDialog dialog;
    ASSERT_TRUE(dialog.CreateIndirect(Small()));
    EXPECT_EQ(dialog.m_DefaultNewMenu.m_hMenu, dialog.menu);
    EXPECT_EQ(dialog.m_SystemNewMenu.m_hMenu, ::GetSystemMenu(dialog.m_hWnd, FALSE));

    dialog.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(dialog.file), MAKELPARAM(0, FALSE));
    // Every item was asked once, the removed one included, and none twice.
    EXPECT_EQ(dialog.asked, (std::vector<UINT>{kCmdGone, kCmdOpen, kCmdSave, kCmdSub}));
    EXPECT_EQ(GetMenuItemCount(dialog.file), 4);
    EXPECT_EQ(GetMenuState(dialog.file, kCmdOpen, MF_BYCOMMAND) & (MF_GRAYED | MF_CHECKED), MF_CHECKED);
    EXPECT_TRUE(GetMenuState(dialog.file, kCmdSave, MF_BYCOMMAND) & MF_GRAYED) << "nobody answered: disabled";
    // The sub-menu's entry follows its first item: enabled.
    EXPECT_FALSE(GetMenuState(dialog.file, 3, MF_BYPOSITION) & MF_GRAYED);

    // The system menu's popup is left to the system.
    dialog.asked.clear();
    dialog.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(::GetSystemMenu(dialog.m_hWnd, FALSE)),
                       MAKELPARAM(0, TRUE));
    EXPECT_TRUE(dialog.asked.empty());
    dialog.DestroyWindow();
}

TEST(NewDialog, WithOwnMenusOffTheMenusStayPlain)
{
    const int saved = CNewMenu::m_Enable;
    CNewMenu::m_Enable = 0;
    MenuDialog dialog;
    ASSERT_TRUE(dialog.CreateIndirect(Small()));
    EXPECT_EQ(dialog.m_DefaultNewMenu.m_hMenu, nullptr);
    EXPECT_EQ(dialog.m_SystemNewMenu.m_hMenu, nullptr);
    dialog.DestroyWindow();
    CNewMenu::m_Enable = saved;
}

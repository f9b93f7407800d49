// Shared pieces of the design and dialog tests: settings files of their own
// (the suite file and AT's global file in a temporary directory), and the
// display state, screens, design statics and main window put back after.
#pragma once

#include "uisupport/uitest.h"

#include "base/displaystate.h"
#include "base/vxglobals.h"
#include "config/kiniman.h"
#include "config/kprofile.h"
#include "look/cbuttonst.h"
#include "look/kskinbutton.h"
#include "menus/cnewmenu.h"
#include "frames/cnewtoolbar.h"
#include "platform/screens/monitors.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <cstring>
#include <string>

namespace looktest {

class Settings : public ::testing::Test {
protected:
    Settings()
    {
        m_display = vx::TheDisplayState();
        m_main = AfxGetMainWnd();
        std::strcpy(m_suite, g_vexalprofiledir);
        std::strcpy(m_global, g_profiledirAT);
        m_type = g_MainframeType;
        std::strcpy(g_vexalprofiledir, m_dir.Path("VEXAL55.INI").c_str());
        std::strcpy(g_profiledirAT, m_dir.Path("VXWIN55AT.INI").c_str());
        g_MainframeType = MainframeAT;
        m_pVexalIni = nullptr;
        m_pGlobalIniAT = nullptr;
    }
    ~Settings() override
    {
        vx::TheDisplayState() = m_display;
        vx::SetScreens({});
        AfxSetMainWnd(m_main);
        std::strcpy(g_vexalprofiledir, m_suite);
        std::strcpy(g_profiledirAT, m_global);
        g_MainframeType = m_type;
        CNewMenu::m_Enable = 1;
        CNewMenu::m_InitColor = 0;
        CNewToolBar::m_NewToolbar = 1;
        CButtonST::m_InitType = 1;
        CButtonST::m_InitShade = 0;
        KSkinButton::s_ShadeMode = 0;
        KSkinButton::s_3D = 0;
    }

    // The bytes of a settings file, "" when there is none.
    std::string Suite() const { return Read("VEXAL55.INI"); }
    std::string Global() const { return Read("VXWIN55AT.INI"); }
    void WriteSuite(const std::string& text) { m_dir.Write("VEXAL55.INI", text); }

    vxtest::TempDir m_dir;

private:
    std::string Read(const char* name) const
    {
        return vxtest::PathExists(m_dir.Path(name)) ? vxtest::ReadBytes(m_dir.Path(name)) : std::string();
    }

    vx::DisplayState m_display;
    CWnd* m_main = nullptr;
    char m_suite[260] = {};
    char m_global[260] = {};
    MainframeType m_type = MainframeAT;
};

} // namespace looktest

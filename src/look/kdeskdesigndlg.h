// KDeskDesignDlg: the desk design, the suite's chosen look, and the dialog
// that edits it (template 477).
//
// The design lives in the section "KonfigDesign" of the suite's settings
// file (scope -1, shared by AT and IT). InitParameter reads it once at start
// into the statics of the classes that draw (menus, tool bars, buttons); the
// dialog changes only the keys, so a change shows at the next start, as its
// note says. Its preview buttons show the chosen button colour and shade at
// once.
//
//   KDeskDesignDlg::InitParameter();      // the host, once, before any frame
//   KDeskDesignDlg dlg(frame);
//   dlg.DoModal();                         // OK writes "KonfigDesign"
#pragma once

#include "ui/dialogs/cdialog.h"
#include "vxbase_ui_export.h"

class KSkinButton;

class VXBASE_UI_EXPORT KDeskDesignDlg : public CDialog {
public:
    enum { IDD = 477 };
    // The dialog's controls.
    enum {
        IDC_DESIGN_STANDARD = 3242,
        IDC_DESIGN_MENU = 3243,
        IDC_DESIGN_TOOLBAR = 3244,
        IDC_DESIGN_COLOR = 3245,
        IDC_DESIGN_BUTTON = 3246,
        IDC_DESIGN_STYLE = 3247,
        IDC_DESIGN_MENU_SWATCH = 3248,
        IDC_DESIGN_STYLE_SWATCH = 3249,
        IDC_DESIGN_SHADE = 3250,
        IDC_DESIGN_ROUND = 3251,
        IDC_DESIGN_3D = 3252,
        IDC_DESIGN_ACTIVE_PLACE = 1000,
        IDC_DESIGN_INACTIVE_PLACE = 1001,
        IDC_DESIGN_ACTIVE = 111,
        IDC_DESIGN_INACTIVE = 112,
    };

    explicit KDeskDesignDlg(CWnd* parent = nullptr);
    ~KDeskDesignDlg() override;

    // Reads "KonfigDesign" into CNewMenu::m_Enable and m_InitColor,
    // CNewToolBar::m_NewToolbar, CButtonST::m_InitType and m_InitShade,
    // KSkinButton::s_ShadeMode and s_3D. "Standard" 1 turns the three
    // switches off and reads nothing else.
    static void InitParameter();
    // The menu bar colour of a "Color" index (0 follows the system).
    static COLORREF GetMenuBackground(int index);
    // Shade codes by the type combo's index, plus 4 with "zaokrąglone".
    static const int s_Shades[8];

    // The user's own button colour (the "Style" entry 4).
    COLORREF m_UserColor = 0;

protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnPaint() override;

    void SetModes();
    int GetShade() const;
    void ShowAll();
    void OnDeskDesignStd();
    void OnDeskDesignMenu();
    void OnSelendokDeskDesignStyle();

    KSkinButton* m_pActive = nullptr;
    KSkinButton* m_pInactive = nullptr;

private:
    void DropPreview();
    // The colour of the button colour entry `index` (its swatch).
    COLORREF StyleColor(int index) const;
};

namespace vx {

// The template of the desk design dialog, as registered under 477.
VXBASE_UI_EXPORT DialogTemplate DeskDesignTemplate();

} // namespace vx

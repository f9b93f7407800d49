// CColorDialog: the platform's colour dialog, with its 48 basic colours and
// 16 custom colours.
//
// The dialog shows the basic colours, the custom colours of
// m_cc.lpCustColors (by default the process's saved ones, white to begin
// with), the current colour and its red, green and blue parts. A click on a
// swatch makes its colour the current one; "Dodaj do kolorów niestandardowych"
// puts the current colour into the chosen custom slot (or the next one). OK
// gives the current colour (GetColor) and writes the custom colours back into
// the array; Cancel changes nothing.
//
//   CColorDialog dlg(RGB(255, 0, 0), CC_FULLOPEN);
//   dlg.m_cc.lpCustColors[0] = RGB(1, 2, 3);
//   if (dlg.DoModal() == IDOK)
//       colour = dlg.GetColor();
#pragma once

#include "ui/dialogs/cdialog.h"
#include "vxbase_ui_export.h"

constexpr DWORD CC_RGBINIT = 0x00000001;
constexpr DWORD CC_FULLOPEN = 0x00000002;
constexpr DWORD CC_PREVENTFULLOPEN = 0x00000004;
constexpr DWORD CC_SHOWHELP = 0x00000008;
constexpr DWORD CC_SOLIDCOLOR = 0x00000080;
constexpr DWORD CC_ANYCOLOR = 0x00000100;

struct CHOOSECOLORA {
    DWORD lStructSize;
    HWND hwndOwner;
    HWND hInstance;
    COLORREF rgbResult;
    COLORREF* lpCustColors;
    DWORD Flags;
    LPARAM lCustData;
    void* lpfnHook;
    LPCSTR lpTemplateName;
};
using CHOOSECOLOR = CHOOSECOLORA;

class VXBASE_UI_EXPORT CColorDialog : public CDialog {
public:
    // Ids of the dialog's controls.
    enum {
        IDC_BASIC_FIRST = 720, // 48 swatches
        IDC_CUSTOM_FIRST = 800, // 16 swatches
        IDC_CURRENT = 709,
        IDC_RED = 706,
        IDC_GREEN = 707,
        IDC_BLUE = 708,
        IDC_ADD_CUSTOM = 712,
    };

    explicit CColorDialog(COLORREF initial = 0, DWORD flags = 0, CWnd* parent = nullptr);
    ~CColorDialog() override;

    INT_PTR DoModal() override;
    COLORREF GetColor() const;
    void SetCurrentColor(COLORREF color);
    // The custom colours the process keeps between dialogs (16 entries).
    static COLORREF* GetSavedCustomColors();

    CHOOSECOLOR m_cc;

protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void DrawItem(LPDRAWITEMSTRUCT item);
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Choose(UINT id);
    void PartChanged();
    void AddCustom();
    void ShowParts();
    COLORREF SwatchColor(UINT id) const;

    COLORREF m_current = 0;
    COLORREF m_custom[16] = {};
    int m_customSlot = -1;
    int m_nextSlot = 0;
    bool m_updating = false;
};

// CToolBarCtrl: the platform's tool bar control ("ToolbarWindow32"). It keeps
// a row of buttons drawn from an image list, answers the TB_ messages, lets
// its parent paint through NM_CUSTOMDRAW (prepaint, erase, item and
// post-paint stages), tracks hot, pressed and checked buttons with the mouse,
// sends WM_COMMAND for a click and asks the parent for tooltip texts
// (TTN_NEEDTEXT, with the button's command as id) under TBSTYLE_TOOLTIPS.
//
//   CToolBarCtrl bar;
//   bar.Create(WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS, rect, this, 1);
//   bar.SetImageList(&images);
//   TBBUTTON b[] = {{0, ID_OPEN, TBSTATE_ENABLED, TBSTYLE_BUTTON}, {8, 0, 0, TBSTYLE_SEP}};
//   bar.AddButtons(2, b);
#pragma once

#include "platform/windows/cwnd.h"
#include "ui/controls/customdraw.h"
#include "ui/images/cimagelist.h"
#include "vxbase_ui_export.h"

#include <memory>

// Button states.
constexpr BYTE TBSTATE_CHECKED = 0x01;
constexpr BYTE TBSTATE_PRESSED = 0x02;
constexpr BYTE TBSTATE_ENABLED = 0x04;
constexpr BYTE TBSTATE_HIDDEN = 0x08;
constexpr BYTE TBSTATE_INDETERMINATE = 0x10;
constexpr BYTE TBSTATE_WRAP = 0x20;
constexpr BYTE TBSTATE_ELLIPSES = 0x40;
constexpr BYTE TBSTATE_MARKED = 0x80;

// Button styles.
constexpr BYTE TBSTYLE_BUTTON = 0x00;
constexpr BYTE TBSTYLE_SEP = 0x01;
constexpr BYTE TBSTYLE_CHECK = 0x02;
constexpr BYTE TBSTYLE_GROUP = 0x04;
constexpr BYTE TBSTYLE_CHECKGROUP = TBSTYLE_GROUP | TBSTYLE_CHECK;
constexpr BYTE TBSTYLE_DROPDOWN = 0x08;
constexpr BYTE TBSTYLE_AUTOSIZE = 0x10;
constexpr BYTE TBSTYLE_NOPREFIX = 0x20;

// Window styles of the control.
constexpr DWORD TBSTYLE_TOOLTIPS = 0x0100;
constexpr DWORD TBSTYLE_WRAPABLE = 0x0200;
constexpr DWORD TBSTYLE_ALTDRAG = 0x0400;
constexpr DWORD TBSTYLE_FLAT = 0x0800;
constexpr DWORD TBSTYLE_LIST = 0x1000;
constexpr DWORD TBSTYLE_CUSTOMERASE = 0x2000;
constexpr DWORD TBSTYLE_TRANSPARENT = 0x8000;
// Styles of the common controls.
constexpr DWORD CCS_TOP = 0x0001;
constexpr DWORD CCS_NOMOVEY = 0x0002;
constexpr DWORD CCS_BOTTOM = 0x0003;
constexpr DWORD CCS_NORESIZE = 0x0004;
constexpr DWORD CCS_NOPARENTALIGN = 0x0008;
constexpr DWORD CCS_ADJUSTABLE = 0x0020;
constexpr DWORD CCS_NODIVIDER = 0x0040;
constexpr DWORD CCS_VERT = 0x0080;

struct TBBUTTON {
    int iBitmap; // image index; for a separator its width (0: 8)
    int idCommand;
    BYTE fsState;
    BYTE fsStyle;
    BYTE bReserved[6];
    DWORD_PTR dwData;
    INT_PTR iString;
};
using LPTBBUTTON = TBBUTTON*;

struct COLORSCHEME {
    DWORD dwSize;
    COLORREF clrBtnHighlight;
    COLORREF clrBtnShadow;
};

// The tool bar's custom draw record: NMCUSTOMDRAW first.
struct NMTBCUSTOMDRAW {
    NMCUSTOMDRAW nmcd;
    HBRUSH hbrMonoDither;
    HBRUSH hbrLines;
    HPEN hpenLines;
    COLORREF clrText;
    COLORREF clrMark;
    COLORREF clrTextHighlight;
    COLORREF clrBtnFace;
    COLORREF clrBtnHighlight;
    COLORREF clrHighlightHotTrack;
    RECT rcText;
    int nStringBkMode;
    int nHLStringBkMode;
    int iListGap;
};

constexpr UINT TB_ENABLEBUTTON = WM_USER + 1;
constexpr UINT TB_CHECKBUTTON = WM_USER + 2;
constexpr UINT TB_PRESSBUTTON = WM_USER + 3;
constexpr UINT TB_HIDEBUTTON = WM_USER + 4;
constexpr UINT TB_INDETERMINATE = WM_USER + 5;
constexpr UINT TB_ISBUTTONENABLED = WM_USER + 9;
constexpr UINT TB_ISBUTTONCHECKED = WM_USER + 10;
constexpr UINT TB_ISBUTTONPRESSED = WM_USER + 11;
constexpr UINT TB_ISBUTTONHIDDEN = WM_USER + 12;
constexpr UINT TB_SETSTATE = WM_USER + 17;
constexpr UINT TB_GETSTATE = WM_USER + 18;
constexpr UINT TB_ADDBUTTONSA = WM_USER + 20;
constexpr UINT TB_INSERTBUTTONA = WM_USER + 21;
constexpr UINT TB_DELETEBUTTON = WM_USER + 22;
constexpr UINT TB_GETBUTTON = WM_USER + 23;
constexpr UINT TB_BUTTONCOUNT = WM_USER + 24;
constexpr UINT TB_COMMANDTOINDEX = WM_USER + 25;
constexpr UINT TB_GETITEMRECT = WM_USER + 29;
constexpr UINT TB_BUTTONSTRUCTSIZE = WM_USER + 30;
constexpr UINT TB_SETBUTTONSIZE = WM_USER + 31;
constexpr UINT TB_SETBITMAPSIZE = WM_USER + 32;
constexpr UINT TB_AUTOSIZE = WM_USER + 33;
constexpr UINT TB_GETTOOLTIPS = WM_USER + 35;
constexpr UINT TB_SETTOOLTIPS = WM_USER + 36;
constexpr UINT TB_SETPARENT = WM_USER + 37;
constexpr UINT TB_GETROWS = WM_USER + 40;
constexpr UINT TB_SETCMDID = WM_USER + 42;
constexpr UINT TB_SETIMAGELIST = WM_USER + 48;
constexpr UINT TB_GETIMAGELIST = WM_USER + 49;
constexpr UINT TB_GETRECT = WM_USER + 51;
constexpr UINT TB_SETHOTIMAGELIST = WM_USER + 52;
constexpr UINT TB_GETHOTIMAGELIST = WM_USER + 53;
constexpr UINT TB_SETDISABLEDIMAGELIST = WM_USER + 54;
constexpr UINT TB_GETDISABLEDIMAGELIST = WM_USER + 55;
constexpr UINT TB_SETSTYLE = WM_USER + 56;
constexpr UINT TB_GETSTYLE = WM_USER + 57;
constexpr UINT TB_GETBUTTONSIZE = WM_USER + 58;
constexpr UINT TB_HITTEST = WM_USER + 69;
constexpr UINT TB_GETHOTITEM = WM_USER + 71;
constexpr UINT TB_SETHOTITEM = WM_USER + 72;
constexpr UINT TB_GETMAXSIZE = WM_USER + 83;
constexpr UINT TB_SETEXTENDEDSTYLE = WM_USER + 84;
constexpr UINT TB_GETEXTENDEDSTYLE = WM_USER + 85;
constexpr UINT CCM_SETCOLORSCHEME = 0x2002;
constexpr UINT CCM_GETCOLORSCHEME = 0x2003;

namespace vx {
class ToolBarControl;
}

class VXBASE_UI_EXPORT CToolBarCtrl : public CWnd {
public:
    CToolBarCtrl();
    ~CToolBarCtrl() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    BOOL AddButtons(int count, const TBBUTTON* buttons);
    BOOL InsertButton(int index, const TBBUTTON* button);
    BOOL DeleteButton(int index);
    int GetButtonCount() const;
    BOOL GetButton(int index, TBBUTTON* button) const;
    int CommandToIndex(UINT command) const;
    BOOL GetItemRect(int index, RECT* rect) const;
    BOOL EnableButton(int command, BOOL enable = TRUE);
    BOOL CheckButton(int command, BOOL check = TRUE);
    BOOL PressButton(int command, BOOL press = TRUE);
    BOOL HideButton(int command, BOOL hide = TRUE);
    BOOL IsButtonEnabled(int command) const;
    BOOL IsButtonChecked(int command) const;
    BOOL SetState(int command, UINT state);
    int GetState(int command) const;
    CImageList* SetImageList(CImageList* list);
    CImageList* SetDisabledImageList(CImageList* list);
    CImageList* SetHotImageList(CImageList* list);
    BOOL SetButtonSize(CSize size);
    BOOL SetBitmapSize(CSize size);
    CSize GetButtonSize() const;
    int GetHotItem() const;
    int SetHotItem(int index);
    // The index of the button at a client point; a negative value (-index
    // - 1) on a separator, -1 also for nothing.
    int HitTest(POINT* point) const;
    // The size that holds every row of buttons.
    BOOL GetMaxSize(SIZE* size) const;
    int GetRows() const;
    void AutoSize();
    class CToolTipCtrl* GetToolTips() const;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void PreSubclassWindow() override;

private:
    std::unique_ptr<vx::ToolBarControl> m_control;
};

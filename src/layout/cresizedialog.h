// CResizeDialog: the base of every dialog the user can resize.
//
// After the base OnInitDialog a dialog registers each child control once
// with a percentage rule: how much of the dialog's growth each edge of the
// control takes. Every resize computes each control afresh from its place
// at registration, so rounding never adds up over a long drag. The engine
// also holds the window to its template size or more, draws a size grip,
// can enlarge the dialog at start, and keeps the placement in a settings
// section, refusing one that lies off the screens.
//
//   BOOL CFindDlg::OnInitDialog()
//   {
//       CResizeDialog::OnInitDialog();
//       AddSzControl(*GetDlgItem(IDC_LIST), mdResize, mdResize);
//       AddSzControl(*GetDlgItem(IDOK), mdRepos, mdRepos);
//       AddSzXControlEx(*GetDlgItem(IDC_NAME), 0, 50);
//       RestoreWindowPosition("FindDlg", true, 0);
//       return TRUE;
//   }
#pragma once

#include "menus/cnewdialog.h"
#include "platform/framework/carray.h"
#include "ui/controls/cstatic.h"
#include "ui/controls/ctooltipctrl.h"
#include "ui/images/cbitmap.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CResizeDialog : public CNewDialog {
public:
    // In which directions the window may grow past its initial size.
    enum Freedom { fdNone = 0, fdHoriz = 1, fdVert = 2, fdAll = 3 };
    // The rules of one axis as (first edge %, second edge %): 0 stays
    // (0, 0), 1 stretches (0, 100), 2 moves with the far edge (100, 100), 3
    // moves at half speed (50, 50), 4 is the second half of a row of two
    // (50, 100), 5 the first half (0, 50). Any other value acts as 0.
    enum Mode { mdNone = 0, mdResize = 1, mdRepos = 2, mdRelative = 3, mdSecondHalf = 4, mdFirstHalf = 5 };

    // One registered control: a primary control, measured, and controls
    // chained to it that take the same rectangle.
    class VXBASE_UI_EXPORT ControlInfo {
    public:
        class Header;

        ControlInfo(Header& header, CWnd& control, BYTE left, BYTE right, BYTE top, BYTE bottom);
        ~ControlInfo();
        ControlInfo(const ControlInfo&) = delete;
        ControlInfo& operator=(const ControlInfo&) = delete;

        // The next (older) registration.
        ControlInfo* GetNext() const { return m_pNext; }
        // Chains a further control, which takes the primary's rectangle.
        ControlInfo* AddEqualCtrl(CWnd& control);
        // The primary control's place now becomes its baseline.
        void SetupWindowPlacement();
        // Places the controls by the baseline and the dialog's growth.
        void AdaptControlSize(int dx, int dy);

        BYTE Left() const { return m_left; }
        BYTE Right() const { return m_right; }
        BYTE Top() const { return m_top; }
        BYTE Bottom() const { return m_bottom; }
        const CRect& Baseline() const { return m_rcBaseline; }
        CWnd* Control() const { return m_pCtrl; }

        // The list head and the arithmetic of the whole dialog.
        class VXBASE_UI_EXPORT Header {
        public:
            Header();
            ~Header();
            Header(const Header&) = delete;
            Header& operator=(const Header&) = delete;

            void Init(CWnd* dialog, Freedom freedom, bool sizeIcon);
            // Measures the dialog, makes the grip, enlarges by `stretchPercent`.
            BOOL OnInitDialog(UINT stretchPercent);
            // Measures the initial client size afresh (the window size is read
            // and dropped: the minimum stays).
            void OnInitDialog2();
            // Null when nothing is registered: not valid, no live control,
            // not measured yet, or all four percentages 0.
            ControlInfo* AddSzControl(CWnd& control, Mode x, Mode y);
            ControlInfo* AddSzControlEx(CWnd& control, BYTE left, BYTE right, BYTE top, BYTE bottom);
            bool ChangeSize(int cx, int cy);
            void OnSize(UINT type, int cx, int cy);
            void OnGetMinMaxInfo(MINMAXINFO* info);
            void StretchWindow(UINT percent);
            void ReorganizeControls();
            void ReloadControlsPosition();
            bool StoreWindowPosition(const CString& section, int profile);
            bool RestoreWindowPosition(const CString& section, bool withState, int profile);
            // Forgets every control, the grip and the measurements.
            void NewExit();

            bool IsValid() const;
            bool IsInitialised() const { return m_nInitialWidth != -1; }
            ControlInfo* GetFirst() const { return m_pFirst; }
            CSize InitialSize() const { return CSize(m_nInitialWidth, m_nInitialHeight); }
            CSize MinimalSize() const { return CSize(m_nMinWidth, m_nMinHeight); }
            CStatic& Grip() { return m_Grip; }
            bool WantsSizeIcon() const { return m_bSizeIcon; }

        private:
            friend class ControlInfo;
            void MakeGrip();

            ControlInfo* m_pFirst = nullptr;
            CWnd* m_pDialog = nullptr;
            Freedom m_Freedom = fdAll;
            CStatic m_Grip;
            CBitmap m_bmGrip;
            bool m_bSizeIcon = true;
            int m_nInitialWidth = -1;
            int m_nInitialHeight = -1;
            int m_nMinWidth = 0;
            int m_nMinHeight = 0;
        };

    private:
        struct Entry {
            CWnd* control;
            Entry* next;
        };

        ControlInfo* m_pNext = nullptr;
        ControlInfo* m_pPrev = nullptr;
        Header& m_Header;
        Entry m_Entry;
        BYTE m_left;
        BYTE m_right;
        BYTE m_top;
        BYTE m_bottom;
        CRect m_rcBaseline;
        CWnd* m_pCtrl;

        friend class Header;
    };

    explicit CResizeDialog(UINT templateId, CWnd* parent = nullptr, Freedom freedom = fdAll, bool sizeIcon = true);
    ~CResizeDialog() override;

    // Enlarges about the centre: each side moves out by percent / 50 of the
    // size (the left or top edge stops at 0). 0 places the window where it is.
    void StretchWindow(UINT percent);
    void ReorganizeControls();
    // The present layout becomes the baseline (after a change from outside).
    void ReloadControlsPosition();
    // Serves the messages of this dialog during a long operation in it.
    void PumpMessages();
    bool StoreWindowPosition(const CString& section, int profile);
    bool StoreWindowPosition(UINT sectionStringId, int profile);
    bool RestoreWindowPosition(const CString& section, bool withState, int profile);
    bool RestoreWindowPosition(UINT sectionStringId, bool withState, int profile);

    BOOL DestroyWindow() override;
    BOOL PreTranslateMessage(MSG* msg) override;
    BOOL OnInitDialog() override;
    virtual BOOL OnInitDialog(UINT stretchPercent);

    ControlInfo::Header& GetHeader() { return m_Header; }

protected:
    ControlInfo* AddSzControl(CWnd& control, Mode x, Mode y);
    ControlInfo* AddSzXControl(CWnd& control, Mode x);
    ControlInfo* AddSzYControl(CWnd& control, Mode y);
    ControlInfo* AddSzControlEx(CWnd& control, BYTE left, BYTE right, BYTE top, BYTE bottom);
    ControlInfo* AddSzXControlEx(CWnd& control, BYTE left, BYTE right);
    ControlInfo* AddSzYControlEx(CWnd& control, BYTE top, BYTE bottom);

    void OnSize(UINT type, int cx, int cy) override;
    void OnGetMinMaxInfo(MINMAXINFO* info) override;

    ControlInfo::Header m_Header;
    CToolTipCtrl m_ToolTip;
    // Keeps the tool tips' texts for the life of the dialog.
    CStringArray m_ToolTexts;
};

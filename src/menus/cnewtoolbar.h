// CNewToolBar: the library's tool bar, drawn in the style of the current
// menu theme.
//
// So far only the desk design's switch lives here, which
// KDeskDesignDlg::InitParameter sets at start; the frame work completes the
// class (images, drawing, docking).
#pragma once

#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CNewToolBar {
public:
    // Own drawing of tool bars on (1) or off (0).
    static int m_NewToolbar;
};

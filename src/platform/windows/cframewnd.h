// The framework's frame classes that hosts hand to the library
// (g_pDLLMainframe is a CMDIFrameWnd).
#pragma once

#include "platform/windows/cwnd.h"
#include "vxbase_export.h"

// The framework's frame classes. A host's main frame derives from
// CMDIFrameWnd; the library only sends it messages.
class VXBASE_EXPORT CFrameWnd : public CWnd {
public:
    CFrameWnd();
    ~CFrameWnd() override;

    // Modal dialogs open over the frame; a modal loop raises it while it
    // runs, so that the frame is not closed under it.
    int m_cModalStack = 0;
};

class VXBASE_EXPORT CMDIFrameWnd : public CFrameWnd {
public:
    CMDIFrameWnd();
    ~CMDIFrameWnd() override;
};

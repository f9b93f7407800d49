#include "platform/windows/cframewnd.h"

CFrameWnd::CFrameWnd() = default;
CFrameWnd::~CFrameWnd() = default;
CMDIFrameWnd::CMDIFrameWnd() = default;
CMDIFrameWnd::~CMDIFrameWnd() = default;

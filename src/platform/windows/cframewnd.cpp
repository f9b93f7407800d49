#include "platform/windows/cframewnd.h"

namespace vx {
namespace {

FrameDocking& Docking()
{
    static FrameDocking docking;
    return docking;
}

} // namespace

void SetFrameDocking(const FrameDocking& docking)
{
    Docking() = docking;
}

} // namespace vx

CFrameWnd::CFrameWnd() = default;

CFrameWnd::~CFrameWnd()
{
    if (vx::Docking().frameGone)
        vx::Docking().frameGone(*this);
}
CMDIFrameWnd::CMDIFrameWnd() = default;
CMDIFrameWnd::~CMDIFrameWnd() = default;

void CFrameWnd::EnableDocking(DWORD dockStyle)
{
    if (vx::Docking().enableDocking)
        vx::Docking().enableDocking(*this, dockStyle);
}

void CFrameWnd::DockControlBar(CControlBar* bar, UINT dockBarId, const RECT* rect)
{
    if (bar && vx::Docking().dockControlBar)
        vx::Docking().dockControlBar(*this, bar, dockBarId, rect);
}

void CFrameWnd::FloatControlBar(CControlBar* bar, CPoint screen, DWORD style)
{
    if (bar && vx::Docking().floatControlBar)
        vx::Docking().floatControlBar(*this, bar, screen, style);
}

void CFrameWnd::ShowControlBar(CControlBar* bar, BOOL show, BOOL)
{
    if (bar && vx::Docking().showControlBar)
        vx::Docking().showControlBar(*this, bar, show);
}

void CFrameWnd::RecalcLayout(BOOL)
{
    if (!m_hWnd)
        return;
    CRect client;
    GetClientRect(&client);
    if (vx::Docking().layoutBars)
        client = vx::Docking().layoutBars(*this, client);
    if (CWnd* pane = GetDlgItem(AFX_IDW_PANE_FIRST))
        pane->MoveWindow(&client);
}

void CFrameWnd::SaveBarState(const char* profileName) const
{
    if (vx::Docking().saveBarState)
        vx::Docking().saveBarState(*this, profileName);
}

void CFrameWnd::LoadBarState(const char* profileName)
{
    if (vx::Docking().loadBarState)
        vx::Docking().loadBarState(*this, profileName);
}

void CFrameWnd::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    RecalcLayout();
}

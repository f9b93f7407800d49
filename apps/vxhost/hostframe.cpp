#include "hostframe.h"

#include <cstdio>

namespace vxhost {

void HostFrame::Start()
{
    vx::AttachLibrary();
    CreateEx("VEXAL 5.5 Demo", "VxHostFrame");
    g_pDLLMainframe = this;
    g_MainframeType = MainframeAT;
    AfxSetMainWnd(this);
}

void HostFrame::Stop()
{
    g_pDLLMainframe = nullptr;
    AfxSetMainWnd(nullptr);
    DestroyWindow();
    vx::DetachLibrary();
}

LRESULT HostFrame::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_VXBASE)
        return Answer(wParam, lParam);
    return CMDIFrameWnd::WindowProc(message, wParam, lParam);
}

LRESULT HostFrame::Answer(WPARAM code, LPARAM lParam)
{
    switch (code) {
    case HostQueryCommonMessage: {
        const auto* record = reinterpret_cast<const CommonMessageRec*>(lParam);
        CString text = record->text1 ? record->text1 : "";
        if (record->id) {
            CString resource;
            resource.LoadString(record->id);
            text = resource;
        }
        std::printf("[host] message: %s\n", vx::ToUtf8(text.GetString()).c_str());
        return IDOK;
    }
    case HostQueryDlgVerzeichnis:
        m_answerText = m_project;
        return reinterpret_cast<LRESULT>(&m_answerText);
    case HostQueryVxModul:
        return 0;
    case HostQueryFlags:
        // 1: use the recycle bin; 2: the page limit; 3: no focus change.
        return lParam == 1 ? 1 : lParam == 2 ? m_pageLimit : 0;
    case HostQueryDlgSkinID:
        return 0;
    case HostQueryActProject:
        m_answerText = m_project;
        return reinterpret_cast<LRESULT>(&m_answerText);
    default:
        return 0;
    }
}

} // namespace vxhost

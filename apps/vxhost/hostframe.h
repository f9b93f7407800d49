// The main frame of the console host: it attaches the library, fills the
// globals a host must fill, and answers the library's WM_VXBASE queries.
#pragma once

#include <vxbase.h>

namespace vxhost {

class HostFrame : public CMDIFrameWnd {
public:
    void Start();
    void Stop();

    CString m_project = "C:\\Projekte\\Demo";
    int m_pageLimit = 9999;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    LRESULT Answer(WPARAM code, LPARAM lParam);
    CString m_answerText;
};

} // namespace vxhost

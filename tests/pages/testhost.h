// A host frame for the pages tests: answers the WM_VXBASE flag queries
// (8/1 recycle bin, 8/2 page limit) with values a test sets, and counts them.
#pragma once

#include "base/vxglobals.h"
#include "platform/windows/cframewnd.h"

class TestHost : public CMDIFrameWnd {
public:
    TestHost()
    {
        CreateEx("VEXAL 5.5 Test", "VxTestHost");
        g_pDLLMainframe = this;
    }
    ~TestHost() override
    {
        g_pDLLMainframe = nullptr;
        DestroyWindow();
    }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_VXBASE && wParam == HostQueryFlags) {
            ++queries;
            if (lParam == 1)
                return useRecycleBin;
            if (lParam == 2)
                return pageLimit;
        }
        return CMDIFrameWnd::WindowProc(message, wParam, lParam);
    }

    int useRecycleBin = 1;
    int pageLimit = 500;
    int queries = 0;
};

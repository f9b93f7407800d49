// A program of the suite for the preview's tests: vxhost's partner frame as
// AT or IT (by the name it was started under), which answers the preview
// message with vxhost's test picture. The environment shapes it:
//   VXPEER_PREVIEW=draw     draws and answers 1 (the default)
//   VXPEER_PREVIEW=zero     draws and sets the result, but answers 0
//   VXPEER_PREVIEW=die      dies in the middle of drawing
//   VXPEER_PREVIEW=none     does not know the preview message
//   VXPEER_SHOW=PATH        previews PATH by mode 1 in a window of its own
//                           once IT is there, and ends: 0 if it was drawn,
//                           1 if not, 2 if IT never came
//   VXPEER_LIFETIME_MS=N    ends after N ms (default 60000)
#include "partnerhost.h"
#include "previewpainter.h"

#include <signal.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string g_mode;

class PeerHost : public vxhost::TestPictureHost {
public:
    bool Paint(LPARAM dc, const char* path, MainframeType drawer) override
    {
        if (g_mode == "die") {
            // Half of it drawn, then the program is gone.
            CDC::FromHandle(reinterpret_cast<HDC>(dc))->FillSolidRect(0, 0, 50, 50, RGB(255, 0, 255));
            raise(SIGKILL);
        }
        return TestPictureHost::Paint(dc, path, drawer);
    }
};

class PeerFrame : public vxhost::PartnerFrame {
public:
    using PartnerFrame::PartnerFrame;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        const bool preview = message == RegisterWindowMessageA(Type() == MainframeIT ? "VEXALIT_PREVIEW" : "VXW_PREVIEW");
        if (preview && g_mode == "none")
            return CMDIFrameWnd::WindowProc(message, wParam, lParam);
        const LRESULT answer = PartnerFrame::WindowProc(message, wParam, lParam);
        return preview && g_mode == "zero" ? 0 : answer;
    }
};

// A preview window's client area of 300 x 200 pixels.
class Target : public CWnd {
public:
    KDateiVorschau preview;
    void Draw(CString path) { preview.BildUpdate(path, this, nullptr, 0, 1); }
};

int Show(const char* path)
{
    if (!vx::PumpFor(5000, [] { return KProcessIO::GetVxProg(MainframeIT, 0, 1) != nullptr; }))
        return 2;
    Target target;
    target.CreateEx("Vorschau", "VxPreviewTarget", WS_POPUP, CRect(0, 0, 300, 200));
    target.Draw(path);
    return target.preview.m_hBitmap ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const MainframeType type = vxhost::ProgramOfFileName(argv[0]);
    if (!type)
        return 2;
    std::string commandLine;
    for (int i = 1; i < argc; ++i)
        commandLine += std::string(i > 1 ? " " : "") + argv[i];
    const char* lifetime = std::getenv("VXPEER_LIFETIME_MS");
    const char* mode = std::getenv("VXPEER_PREVIEW");
    const char* show = std::getenv("VXPEER_SHOW");
    g_mode = mode ? mode : "draw";

    vx::InitUi(argc, argv);
    vx::AttachLibrary();
    vxhost::UseSuiteDirectoryForProgramFiles();
    vx::SetBeepHook([](UINT) {});
    PeerHost host;
    vxhost::PartnerFrame::SetPreviewHost(&host);
    int rc = 0;
    {
        PeerFrame frame(type);
        frame.m_say = [](const std::string&) {};
        const int state = frame.Open(commandLine.c_str(), vxhost::ProgramDirectory(argv[0]).c_str());
        if (state == SW_HIDE || state == SW_SHOW)
            frame.Ready();
        rc = show ? Show(show) : vxhost::RunPartnerLoop(lifetime ? std::atoi(lifetime) : 60000);
    }
    vx::ResetPartnerLink();
    vx::StopWindowBus();
    vx::DetachLibrary();
    vx::ShutdownUi();
    return rc;
}

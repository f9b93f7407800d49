// Built with the window classes only: its commands need them.
#ifdef VXHOST_WITH_UI

#include "windowdemo.h"

#include <vxbase.h>
#include <vxbase_ui.h>

#include <QImage>

namespace vxhost {

int RunWindowDemo(const Args& args, const char* command, const WindowDemo& demo)
{
    const std::string shots = ScreenshotDir(args.words);
    const bool screenshot = !shots.empty();
    if (!args.words.empty() && !screenshot)
        return Usage(command);
    vx::InitUi();
    int rc = 0;
    if (screenshot) {
        rc = MakePictureDir(shots) ? demo.screenshot(shots) : 1;
    } else if (!vx::HasDisplay()) {
        rc = demo.offscreen();
    } else {
        demo.display();
    }
    vx::ShutdownUi();
    return rc;
}

bool SavePicture(CWnd& window, const std::string& dir, const std::string& name, int& written)
{
    const std::string file = dir + "/" + name;
    if (!vx::RenderWindow(window).save(QString::fromStdString(file)))
        return false;
    std::printf("wrote %s\n", file.c_str());
    ++written;
    return true;
}

void PrintControlPlaces(CWnd& dialog, std::initializer_list<std::pair<int, const char*>> shown, int nameWidth)
{
    for (const auto& [id, name] : shown) {
        CRect r;
        dialog.GetDlgItem(id)->GetWindowRect(&r);
        dialog.ScreenToClient(&r);
        std::printf("  %-*s (%d, %d) - (%d, %d)\n", nameWidth, name, r.left, r.top, r.right, r.bottom);
    }
}

} // namespace vxhost

#endif // VXHOST_WITH_UI

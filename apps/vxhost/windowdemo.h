// What vxhost's dialog commands ("resize", "split") share: the arguments
// they take, their three ways to run, the pictures they write and a dialog
// that keeps its place in the suite file.
//
//   int RunResize(vxhost::Args& args)
//   {
//       return vxhost::RunWindowDemo(args, "resize", {Screenshot, Offscreen, [] {
//           vxhost::RunForUser<SampleDialog>(kSection, "size the dialog; OK or Cancel ends it.");
//       }});
//   }
#pragma once

#include "democommand.h"
#include "modalrun.h"

#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>

class CWnd;

namespace vxhost {

struct WindowDemo {
    // Writes the pictures into `dir`, which exists; 0 when all were written.
    int (*screenshot)(const std::string& dir);
    // Drives the window without a display, prints what it shows; the exit code.
    int (*offscreen)();
    // Opens the window for the user, who ends it.
    void (*display)();
};

// Takes "--screenshot DIR" or nothing (else the usage error of `command`),
// starts the UI, runs `demo` by screenshots, offscreen or on the display, and
// ends the UI. DIR is made first; 1 if it cannot be.
int RunWindowDemo(const Args& args, const char* command, const WindowDemo& demo);

// Renders `window` to DIR/NAME and says so; counts the picture in `written`.
// False if the file could not be written.
bool SavePicture(CWnd& window, const std::string& dir, const std::string& name, int& written);

// Prints where the controls `shown` (ID and name) of `dialog` are, in its
// client coordinates, one a line with the names `nameWidth` wide.
void PrintControlPlaces(CWnd& dialog, std::initializer_list<std::pair<int, const char*>> shown, int nameWidth);

// A dialog that, once KeepPlace named its section, restores its place (and
// a split dialog its bars) when the dialog calls RestorePlace at the end of
// its OnInitDialog, and stores them when OK or Cancel ends it.
template <class Base>
class PlaceKeepingDialog : public Base {
public:
    using Base::Base;

    void KeepPlace(const char* section) { m_placeSection = section; }

protected:
    void RestorePlace()
    {
        if (m_placeSection)
            this->RestoreWindowPosition(m_placeSection, false, -1);
    }
    void OnOK() override
    {
        StorePlace();
        Base::OnOK();
    }
    void OnCancel() override
    {
        StorePlace();
        Base::OnCancel();
    }

private:
    void StorePlace()
    {
        if (m_placeSection)
            this->StoreWindowPosition(m_placeSection, -1);
    }

    const char* m_placeSection = nullptr;
};

// Opens a PlaceKeepingDialog for the user, keeping its place in `section`,
// with "display: HINT" on the terminal.
template <class Dialog>
void RunForUser(const char* section, const char* hint)
{
    Dialog dlg;
    dlg.KeepPlace(section);
    std::printf("display: %s\n", hint);
    RunModal(dlg, nullptr);
}

} // namespace vxhost

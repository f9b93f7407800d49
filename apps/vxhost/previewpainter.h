// What vxhost draws for a preview: a recognisable test picture of a page
// file, so that one can see which program drew which file. vxhost holds no
// drawings; a real program of the suite would draw the page here.
//
//   vxhost::DrawTestPicture(dc, "C:\\Projekte\\Demo\\Schalt.ELD", MainframeIT);
//
// The picture fills the device's clip box: white paper, a double sheet
// frame, a circuit of a few lines (a bus, three branches, a resistor, a
// lamp and a switch), the drawing program's name at the top left, and a
// title block at the bottom right with the file's name.
#pragma once

#include <vxbase.h>
#include <vxbase_ui.h>

#include "partnerhost.h"

namespace vxhost {

// Colours of the picture, for tests that look for it.
constexpr COLORREF kPictureFrame = RGB(0, 0, 160);
constexpr COLORREF kPictureCircuit = RGB(0, 128, 0);
constexpr COLORREF kPictureParts = RGB(192, 0, 0);
constexpr COLORREF kPictureText = RGB(0, 0, 0);

// Draws the picture of `path` into `dc`; false for an empty path or a
// device that draws nowhere or has no room.
bool DrawTestPicture(HDC dc, const char* path, MainframeType drawer);

// vxhost's frame answers previews with the picture: the preview message of
// the partner, and the library's requests for the files the frame's own
// program draws (0x52 draws into the window, 0x51 draws the last file again,
// 0x53 forgets it).
class TestPictureHost : public PartnerFrame::PreviewHost {
public:
    bool Paint(LPARAM dc, const char* path, MainframeType drawer) override;
    LRESULT Request(WPARAM code, LPARAM lParam, MainframeType drawer) override;

private:
    CString m_last; // the file the frame drew last, until 0x53
};

// Installs one TestPictureHost for vxhost's frames.
void InstallPreviewHost();
// Ends Qt's application if a picture or a dialog started it, once the
// program's windows are gone (its font caches go with it).
void EndPreviewUi();

} // namespace vxhost

// A device context that can cross to another process.
//
// A window's device context cannot leave its process here, so a device that
// another program of the suite is to draw into is backed by an image in
// shared memory: a block without a name that holds a small header and the
// pixels. Its handle, sent in a message through the window bus, reaches the
// receiving program's handler as a device context of that program drawing
// into the same image, through the usual CDC calls; what it drew is there
// when the call returns.
//
//   HDC image = vx::CreateSharedImageDC(300, 200);
//   SendMessageA(HWND_BROADCAST, previewMessage, (WPARAM)block, (LPARAM)image);
//   BitBlt(windowDc, 0, 0, 300, 200, image, 0, 0, SRCCOPY);
//   DeleteDC(image);
//
// The block's wire form (all numbers 32-bit little-endian):
//   offset 0   magic 0x4D495856 ("VXIM")
//   offset 4   width in pixels, 1 to 16384
//   offset 8   height in pixels, 1 to 16384
//   offset 12  stride: bytes per row, a multiple of 4, at least 4 x width
//   offset 16  height rows of stride bytes; each pixel is 32 bits, the bytes
//              blue, green, red and 0xFF (0xFFRRGGBB read as a number)
// A receiver refuses a block whose header does not fit its size.
#pragma once

#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

#include <cstdint>

namespace vx {

constexpr std::uint32_t kSharedImageMagic = 0x4D495856; // "VXIM"
constexpr int kSharedImageHeaderBytes = 16;
constexpr int kSharedImageMaxSide = 16384;
// The number both programs give shared-image devices on the window bus.
constexpr unsigned kSharedImageCarrier = 2;

// A device drawing into a new white image of width x height pixels in
// shared memory; null for a side below 1 or above kSharedImageMaxSide.
// DeleteDC frees it (the image lives on while the other side holds it).
VXBASE_UI_EXPORT HDC CreateSharedImageDC(int width, int height);
// Whether a device draws into a shared image.
VXBASE_UI_EXPORT bool IsSharedImageDC(HDC dc);
// A device drawing into the image of an existing block (one that another
// process made, received as a file mapping handle), which it takes over:
// the handle is closed with the device. Null if the block holds no image of
// the form above (a mapping handle is then closed; anything else is left).
VXBASE_UI_EXPORT HDC OpenSharedImageDC(HANDLE block);
// The file mapping behind a shared-image device (still the device's), or
// null for any other device.
VXBASE_UI_EXPORT HANDLE SharedImageBlock(HDC dc);

} // namespace vx

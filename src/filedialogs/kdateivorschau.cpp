#include "filedialogs/kdateivorschau.h"

#include "base/vxglobals.h"
#include "platform/windows/cframewnd.h"
#include "platform/framework/util_p.h"
#include "platform/ipc/filemapping.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/sharedimagedc.h"
#include "ui/images/cbitmap.h"

#include <cstring>
#include <map>
#include <string>

int KDateiVorschau::s_GlobalOnOff = 1;
COLORREF KDateiVorschau::s_BkColor = 0;

namespace {

constexpr UINT kSetImage = 0x172;        // STM_SETIMAGE
constexpr DWORD kBitmapStatic = 0xE;     // SS_BITMAP
constexpr DWORD kCentredBitmap = 0x20E;  // SS_BITMAP | SS_CENTERIMAGE
constexpr int kNoPreviewWidth = 84;
constexpr int kNoPreviewHeight = 24;

// The block and the message by mode and frame type; null for none.
const char* PreviewName(int mode, MainframeType type)
{
    if (mode == 1 && type == MainframeAT)
        return "VEXALIT_PREVIEW";
    if (mode == 0 && type == MainframeIT)
        return "VXW_PREVIEW";
    return nullptr;
}

// The blocks of this process by name. Made at the first preview and kept
// open, as the original kept its view and mapping; later previews write
// into the same block.
struct Block {
    HANDLE handle = nullptr;
    char* view = nullptr;
};

Block& BlockOf(const char* name)
{
    static auto* blocks = new std::map<std::string, Block>;
    Block& b = (*blocks)[name];
    if (!b.view) {
        if (!b.handle)
            b.handle = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, vx::kVorschauBlockBytes,
                                          name);
        if (b.handle && vx::FileMappingSize(b.handle) >= static_cast<std::size_t>(vx::kVorschauBlockBytes))
            b.view = static_cast<char*>(MapViewOfFile(b.handle, FILE_MAP_WRITE, 0, 0, 0));
    }
    return b;
}

// The image the partner draws into, kept from one preview to the next while
// the size stays, so that neither program maps a new one each time.
HDC SharedImageOf(int width, int height)
{
    static HDC image = nullptr;
    static CSize size;
    if (image && size == CSize(width, height) && vx::IsSharedImageDC(image)) {
        SelectClipRgn(image, nullptr);
        return image;
    }
    if (image)
        DeleteDC(image);
    image = vx::CreateSharedImageDC(width, height);
    size = CSize(width, height);
    return image;
}

LRESULT AskMainFrame(WPARAM code, LPARAM record)
{
    return g_pDLLMainframe ? g_pDLLMainframe->SendMessage(vx::kVorschauRequest, code, record) : 0;
}

} // namespace

KDateiVorschau::KDateiVorschau() : m_OnOff(s_GlobalOnOff)
{
    GetClipCursor(&m_ClipRect);
    ClipCursor(nullptr);
}

KDateiVorschau::~KDateiVorschau()
{
    ClipCursor(&m_ClipRect);
    if (m_hBitmap)
        DeleteObject(m_hBitmap);
}

void KDateiVorschau::Exit()
{
    AskMainFrame(vx::kVorschauExit, 0);
}

void KDateiVorschau::ShowDrawing(CWnd* target)
{
    vx::VorschauRecord record{this, nullptr, target};
    AskMainFrame(vx::kVorschauShow, reinterpret_cast<LPARAM>(&record));
}

int KDateiVorschau::LoadDrawing(CString& path, CWnd* target, int mode)
{
    const char* name = PreviewName(mode, g_MainframeType);
    if (!name) {
        if (!g_pDLLMainframe)
            return 1;
        vx::VorschauRecord record{this, &path, target};
        return static_cast<int>(AskMainFrame(vx::kVorschauLoad, reinterpret_cast<LPARAM>(&record)));
    }
    const UINT message = RegisterWindowMessageA(name);
    if (!message || !target)
        return 1;
    CRect client;
    target->GetClientRect(&client);

    // The partner draws into an image in shared memory, since a device of
    // this process cannot cross to it; the image starts as the window shows,
    // clipped to the client area as the window's device was.
    HDC image = SharedImageOf(std::max(1, client.Width()), std::max(1, client.Height()));
    if (!image)
        return 1;
    {
        CClientDC window(target);
        BitBlt(image, 0, 0, client.Width(), client.Height(), window.GetSafeHdc(), 0, 0, SRCCOPY);
    }
    HRGN clip = CreateRectRgnIndirect(&client);
    ExtSelectClipRgn(image, clip, RGN_COPY);
    DeleteObject(clip);

    // The block holds the path and the partner's result. A path that does
    // not fit it would name another file: nobody is asked.
    Block& block = BlockOf(name);
    const int length = path.GetLength();
    LRESULT answer = 0;
    std::int32_t result = 0;
    if (block.view && length < vx::kVorschauResultOffset) {
        std::memset(block.view, 0, vx::kVorschauBlockBytes);
        std::memcpy(block.view, path.GetString(), static_cast<std::size_t>(length));
        answer = SendMessageA(HWND_BROADCAST, message, reinterpret_cast<WPARAM>(block.handle),
                              reinterpret_cast<LPARAM>(image));
        std::memcpy(&result, block.view + vx::kVorschauResultOffset, sizeof result);
    }
    if (answer && result) {
        if (m_hBitmap)
            DeleteObject(m_hBitmap);
        CClientDC window(target);
        m_hBitmap = CreateCompatibleBitmap(window.GetSafeHdc(), client.Width(), client.Height());
        HDC memory = CreateCompatibleDC(window.GetSafeHdc());
        HGDIOBJ old = SelectObject(memory, m_hBitmap);
        BitBlt(memory, 0, 0, client.Width(), client.Height(), image, 0, 0, SRCCOPY);
        SelectObject(memory, old);
        DeleteDC(memory);
        // The partner drew into the window itself on the original.
        BitBlt(window.GetSafeHdc(), 0, 0, client.Width(), client.Height(), image, 0, 0, SRCCOPY);
        target->ModifyStyle(0, kBitmapStatic);
        target->SendMessage(kSetImage, IMAGE_BITMAP, reinterpret_cast<LPARAM>(m_hBitmap));
    }
    return answer && result ? 0 : 1;
}

void KDateiVorschau::BildUpdate(CString& path, CWnd* target, HBRUSH brush, int asBitmap, int mode)
{
    if (m_hBitmap && target) {
        target->ModifyStyle(kBitmapStatic, 0);
        target->SendMessage(kSetImage, IMAGE_BITMAP, 0);
        DeleteObject(m_hBitmap);
        m_hBitmap = nullptr;
    }
    if (!m_OnOff || !target)
        return;
    CRect client;
    {
        CClientDC dc(target);
        target->GetClientRect(&client);
        if (s_BkColor == 0)
            s_BkColor = dc.GetPixel(0, 0);
        if (brush) {
            if (path.IsEmpty()) {
                if (s_BkColor != 0)
                    dc.FillSolidRect(&client, s_BkColor);
            } else {
                FillRect(dc.GetSafeHdc(), &client, brush);
            }
        }
    }
    if (LoadDrawing(path, target, mode) != 1)
        return;
    if (m_hBitmap) {
        DeleteObject(m_hBitmap);
        m_hBitmap = nullptr;
    }
    HBITMAP none = LoadBitmapA(nullptr, MAKEINTRESOURCE(vx::kKeineVorschauBitmap));
    if (!none)
        return;
    if (!asBitmap) {
        CClientDC dc(target);
        HDC memory = CreateCompatibleDC(dc.GetSafeHdc());
        HGDIOBJ old = SelectObject(memory, none);
        BitBlt(dc.GetSafeHdc(), (client.Width() - kNoPreviewWidth) / 2, (client.Height() - kNoPreviewHeight) / 2,
               kNoPreviewWidth, kNoPreviewHeight, memory, 0, 0, SRCCOPY);
        SelectObject(memory, old);
        DeleteDC(memory);
        DeleteObject(none);
        return;
    }
    m_hBitmap = none;
    target->ModifyStyle(0, kCentredBitmap);
    target->SendMessage(kSetImage, IMAGE_BITMAP, reinterpret_cast<LPARAM>(m_hBitmap));
}

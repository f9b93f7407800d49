#include "ui/gdi/sharedimagedc.h"

#include "platform/ipc/filemapping.h"
#include "platform/ipc/windowbus.h"
#include "ui/gdi/gdiobjects_p.h"

#include <cstring>

namespace vx {
namespace {

using gdi::Dc;
using gdi::Get;

struct Header {
    std::uint32_t magic;
    std::int32_t width;
    std::int32_t height;
    std::int32_t stride;
};
static_assert(sizeof(Header) == kSharedImageHeaderBytes, "the image header is 16 bytes");

// The image over a block's pixels; the block goes with the last copy of the
// pointer (a device, or a device of the other process on its side).
std::shared_ptr<QImage> ImageOver(HANDLE block, void* view, const Header& h)
{
    auto* pixels = static_cast<uchar*>(view) + kSharedImageHeaderBytes;
    return std::shared_ptr<QImage>(
        new QImage(pixels, h.width, h.height, h.stride, QImage::Format_RGB32), [block, view, pixels, h](QImage* image) {
            // An image that was copied and then drawn into has left the
            // block: what it holds goes back before the block is let go.
            if (image->constBits() != pixels) {
                for (int y = 0; y < h.height; ++y)
                    std::memcpy(pixels + static_cast<std::size_t>(y) * h.stride, image->constScanLine(y),
                                static_cast<std::size_t>(h.width) * 4);
            }
            delete image;
            UnmapViewOfFile(view);
            CloseHandle(block);
        });
}

HDC DeviceOver(HANDLE block, void* view, const Header& h)
{
    Dc* dc = gdi::NewImageDc(ImageOver(block, view, h));
    dc->block = block;
    return static_cast<HDC>(dc->handle);
}

bool HeaderFits(const Header& h, std::size_t size)
{
    if (h.magic != kSharedImageMagic || h.width < 1 || h.height < 1 || h.width > kSharedImageMaxSide ||
        h.height > kSharedImageMaxSide || h.stride % 4 != 0 || h.stride / 4 < h.width)
        return false;
    const std::uint64_t need = kSharedImageHeaderBytes + static_cast<std::uint64_t>(h.stride) * h.height;
    return need <= size;
}

// Shared-image devices on the window bus: the block crosses, and the
// receiver draws through a device of its own over the same pixels.
class ImageCarrier final : public HandleCarrier {
public:
    ImageCarrier() { SetHandleCarrier(kSharedImageCarrier, this); }

    int Descriptor(std::uintptr_t value) override
    {
        Dc* dc = Get<Dc>(reinterpret_cast<void*>(value));
        if (!dc || dc->type != Dc::Type::Image)
            return -1;
        dc->EndPainter(); // what this side drew is in the block before the other side looks
        return FileMappingDescriptor(dc->block);
    }

    ~ImageCarrier() override { SetHandleCarrier(kSharedImageCarrier, nullptr); }

    std::uintptr_t Adopt(int fd) override
    {
        HANDLE block = AdoptFileMappingDescriptor(fd);
        if (!block)
            return 0;
        // A program that previews draws into the same image again and again:
        // the last one stays mapped, so that the next call maps nothing.
        if (m_last && FileMappingDescriptor(block) == FileMappingDescriptor(m_lastBlock)) {
            CloseHandle(block);
            Dc* dc = gdi::NewImageDc(m_last);
            dc->block = m_lastBlock;
            return reinterpret_cast<std::uintptr_t>(dc->handle);
        }
        HDC dc = OpenSharedImageDC(block);
        if (Dc* d = Get<Dc>(dc)) {
            m_last = d->surface;
            m_lastBlock = d->block;
        }
        return reinterpret_cast<std::uintptr_t>(dc);
    }

    void Release(std::uintptr_t value) override { DeleteDC(reinterpret_cast<HDC>(value)); }

private:
    std::shared_ptr<QImage> m_last; // keeps its block mapped
    HANDLE m_lastBlock = nullptr;   // valid while m_last lives
};

ImageCarrier g_carrier;

} // namespace

HDC CreateSharedImageDC(int width, int height)
{
    if (width < 1 || height < 1 || width > kSharedImageMaxSide || height > kSharedImageMaxSide)
        return nullptr;
    const Header h{kSharedImageMagic, width, height, width * 4};
    const std::uint64_t size = kSharedImageHeaderBytes + static_cast<std::uint64_t>(h.stride) * height;
    HANDLE block = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, static_cast<DWORD>(size >> 32),
                                      static_cast<DWORD>(size), nullptr);
    void* view = block ? MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0) : nullptr;
    if (!view) {
        if (block)
            CloseHandle(block);
        return nullptr;
    }
    std::memcpy(view, &h, sizeof h);
    HDC dc = DeviceOver(block, view, h);
    Get<Dc>(dc)->surface->fill(Qt::white);
    return dc;
}

HDC OpenSharedImageDC(HANDLE block)
{
    const std::size_t size = FileMappingSize(block);
    void* view = size >= kSharedImageHeaderBytes ? MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0) : nullptr;
    Header h{};
    if (view)
        std::memcpy(&h, view, sizeof h);
    if (!view || !HeaderFits(h, size)) {
        if (view)
            UnmapViewOfFile(view);
        if (size)
            CloseHandle(block); // a mapping, but no image
        return nullptr;
    }
    return DeviceOver(block, view, h);
}

bool IsSharedImageDC(HDC dc)
{
    return SharedImageBlock(dc) != nullptr;
}

HANDLE SharedImageBlock(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    return d && d->type == Dc::Type::Image ? d->block : nullptr;
}

} // namespace vx

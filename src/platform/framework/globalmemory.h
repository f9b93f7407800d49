// Global memory blocks: the movable memory of the desktop API, by handle, as
// the clipboard and data transfer hand data over.
//
// A handle stays valid until GlobalFree; a freed or unknown handle makes every
// call fail (null, 0 or FALSE) rather than touch memory. Blocks are zeroed
// when GMEM_ZEROINIT asks for it; lock counts are kept but a block never moves.
//
//   HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE, 6);
//   std::memcpy(GlobalLock(h), "Hello", 6);
//   GlobalUnlock(h);
//   ... hand it over, or GlobalFree(h);
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstddef>

using HGLOBAL = HANDLE;
using SIZE_T = std::size_t;

constexpr UINT GMEM_FIXED = 0x0000;
constexpr UINT GMEM_MOVEABLE = 0x0002;
constexpr UINT GMEM_ZEROINIT = 0x0040;
constexpr UINT GMEM_DDESHARE = 0x2000;
constexpr UINT GMEM_SHARE = 0x2000;
constexpr UINT GHND = GMEM_MOVEABLE | GMEM_ZEROINIT;
constexpr UINT GPTR = GMEM_FIXED | GMEM_ZEROINIT;

// A new block of `bytes` (0 is allowed); null when memory runs out.
VXBASE_EXPORT HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes);
// Null on success, the handle itself when it is not a live block.
VXBASE_EXPORT HGLOBAL GlobalFree(HGLOBAL block);
// The block's memory (counted as one more lock); null for a bad handle.
VXBASE_EXPORT LPVOID GlobalLock(HGLOBAL block);
// FALSE once the block is no longer locked (and for a bad handle).
VXBASE_EXPORT BOOL GlobalUnlock(HGLOBAL block);
// The block's size, 0 for a bad handle.
VXBASE_EXPORT SIZE_T GlobalSize(HGLOBAL block);
// Grows or shrinks a block, keeping its contents; the same handle, or null
// when it cannot (the old block is then unchanged).
VXBASE_EXPORT HGLOBAL GlobalReAlloc(HGLOBAL block, SIZE_T bytes, UINT flags);

namespace vx {

// A new block holding a copy of `bytes`.
VXBASE_EXPORT HGLOBAL GlobalCopyOf(const void* bytes, SIZE_T size);

} // namespace vx

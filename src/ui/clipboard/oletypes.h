// The data transfer types of OLE that the framework's data objects take:
// format records and drop effects.
#pragma once

#include "platform/framework/wintypes.h"

using CLIPFORMAT = WORD;
using DROPEFFECT = DWORD;

constexpr DROPEFFECT DROPEFFECT_NONE = 0;
constexpr DROPEFFECT DROPEFFECT_COPY = 1;
constexpr DROPEFFECT DROPEFFECT_MOVE = 2;
constexpr DROPEFFECT DROPEFFECT_LINK = 4;
constexpr DROPEFFECT DROPEFFECT_SCROLL = 0x80000000;

constexpr DWORD TYMED_HGLOBAL = 1;
constexpr DWORD DVASPECT_CONTENT = 1;

// What is asked for or offered: only cfFormat matters here (global memory,
// whole content).
struct FORMATETC {
    CLIPFORMAT cfFormat;
    void* ptd;
    DWORD dwAspect;
    LONG lindex;
    DWORD tymed;
};
using LPFORMATETC = FORMATETC*;

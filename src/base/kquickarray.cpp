#include "base/kquickarray.h"

#include "base/vxmessagebox.h"

#include <cstdint>

void vx::ReportMissingComparison()
{
    VxMessageBox(static_cast<HWND>(nullptr), "!!!!COMPARE!!!!", "Error", MB_OK);
}

int CompareIntCallback(unsigned long /*user*/, int* a, int* b)
{
    // The plain 32-bit difference, wrap included, as callers have always had it.
    return static_cast<int>(static_cast<std::uint32_t>(*a) - static_cast<std::uint32_t>(*b));
}

void SerializeElements(CArchive& ar, CString* elements, int count)
{
    for (int i = 0; i < count; ++i) {
        if (ar.IsStoring())
            ar << elements[i];
        else
            ar >> elements[i];
    }
}

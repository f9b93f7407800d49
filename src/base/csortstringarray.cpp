#include "base/csortstringarray.h"

#include "platform/framework/mbstring.h"

#include <utility>

CSortStringArray::CSortStringArray() = default;

CSortStringArray::~CSortStringArray() = default;

void CSortStringArray::Sort()
{
    bool changed = GetSize() > 1;
    while (changed) {
        changed = false;
        for (int i = 0; i < GetSize() - 1; ++i) {
            if (CompareAndSwap(i))
                changed = true;
        }
    }
}

int CSortStringArray::CompareAndSwap(int i)
{
    CString& first = ElementAt(i);
    CString& second = ElementAt(i + 1);
    if (_mbsicmp(first.GetString(), second.GetString()) > 0) {
        std::swap(first, second);
        return 1;
    }
    return 0;
}

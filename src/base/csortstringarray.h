// CSortStringArray: a CStringArray that sorts itself without regard to case.
//
// Meant for short lists: the sort is a bubble sort, quadratic in the count,
// and stable, so names equal but for case keep their order.
//
//   CSortStringArray names;
//   names.Add("b"); names.Add("A"); names.Add("c");
//   names.Sort();                         // "A", "b", "c"
#pragma once

#include "platform/framework/carray.h"
#include "vxbase_export.h"

class VXBASE_EXPORT CSortStringArray : public CStringArray {
public:
    CSortStringArray();
    ~CSortStringArray() override;

    // Sorts by _mbsicmp: passes over all neighbours until one changes nothing.
    void Sort();

private:
    // Swaps elements `i` and `i` + 1 if the first is greater; 1 if swapped.
    int CompareAndSwap(int i);
};

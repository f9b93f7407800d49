// TUniArray: an array of the framework's kind that can also keep its
// elements unique, as the cell list hands out the cells of its selection.
//
//   TUniArray<CPoint, CPoint&> cells;
//   list.GetCurSelCells(&cells);
//   for (int i = 0; i < cells.GetSize(); ++i) ... cells[i].x is the column, .y the row
#pragma once

#include "platform/framework/carray.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class TUniArray : public CArray<TYPE, ARG_TYPE> {
public:
    // The index of the first element equal to `element`, or -1.
    int Find(const TYPE& element) const
    {
        for (int i = 0; i < this->GetSize(); ++i) {
            if (this->ElementAt(i) == element)
                return i;
        }
        return -1;
    }
    // Adds `element` unless it is there already; returns its index.
    int AddUnique(ARG_TYPE element)
    {
        const int at = Find(element);
        return at >= 0 ? at : this->Add(element);
    }
};

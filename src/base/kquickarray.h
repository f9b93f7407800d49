// KQuickArray: an array with a pluggable comparison that can keep itself in
// order, so that a find is a binary search.
//
// The comparison is a plain function pointer, chosen by the fields:
// m_pfnCompareData (with the user word m_compareUser) wins over m_pfnCompare;
// m_pfnCompareKey compares an element with a key of another type (FindKey).
// With m_bKeepSorted set, Add puts each element at its sorted place; without
// it Add appends and the array counts as unsorted (find walks linearly) until
// the next QuickSort.
//
//   KQuickArray<int> numbers;
//   numbers.m_pfnCompareData = CompareIntCallback;
//   numbers.m_bKeepSorted = 1;
//   numbers.Add(5); numbers.Add(2); numbers.Add(5);   // 2, 5, 5
//   int where = 0;
//   numbers.Find(3, &where);                          // -1, where == 1
//
// Equal elements are all kept: a new one goes in front of the one found.
// The CArray functions that write elements directly (SetAt, InsertAt,
// ElementAt...) do not touch the sorted state; call QuickSort after them.
// An array belongs to one thread.
#pragma once

#include "platform/framework/carchive.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace vx {
// Shows "!!!!COMPARE!!!!" (caption "Error") for an array that has no
// comparison; the operation then goes on as if the elements were equal.
VXBASE_EXPORT void ReportMissingComparison();
} // namespace vx

// *a - *b as a 32-bit difference: values more than 2^31 apart wrap and
// compare the wrong way round. The user word is not used.
VXBASE_EXPORT int CompareIntCallback(unsigned long user, int* a, int* b);

// How the elements of a KQuickArray are archived: raw bytes for plain
// values; CString and the other library types have overloads of their own.
template <class TYPE>
    requires std::is_trivially_copyable_v<TYPE>
void SerializeElements(CArchive& ar, TYPE* elements, int count)
{
    const UINT bytes = static_cast<UINT>(sizeof(TYPE)) * static_cast<UINT>(count);
    if (ar.IsStoring())
        ar.Write(elements, bytes);
    else
        ar.Read(elements, bytes);
}

VXBASE_EXPORT void SerializeElements(CArchive& ar, CString* elements, int count);

template <class TYPE, class KEY = TYPE>
class KQuickArray : public CArray<TYPE, const TYPE&> {
    using Base = CArray<TYPE, const TYPE&>;

public:
    using CompareDataFunction = int (*)(unsigned long user, TYPE* a, TYPE* b);
    using CompareKeyFunction = int (*)(TYPE* element, KEY* key);
    using CompareFunction = int (*)(TYPE* a, TYPE* b);
    using ProgressFunction = void (*)(unsigned long user, int index);

    KQuickArray() = default;
    ~KQuickArray() override = default;

    // Adds `element`. Kept sorted: at *position if given (as Find wrote it;
    // clamped to 0 .. size), else at the place Find gives. Otherwise
    // appended. Returns the index of the new element.
    int Add(const TYPE& element, int* position = nullptr)
    {
        if (!m_bKeepSorted) {
            const int index = Base::Add(element);
            m_bSorted = 0;
            return index;
        }
        int index = 0;
        if (position) {
            index = std::clamp(*position, 0, this->GetSize());
        } else {
            // An array that went out of order is put back first, so that
            // the place found is right and m_bSorted stays true to it.
            if (!m_bSorted)
                QuickSort();
            Find(element, &index);
        }
        Base::InsertAt(index, element);
        m_bSorted = 1;
        return index;
    }

    // The index of an element equal to `element`, or -1. Sorted: a binary
    // search, and *position (if given) gets the place where `element`
    // belongs (0 for an empty array). Unsorted: a linear walk, and
    // *position is written only on a hit.
    int Find(const TYPE& element, int* position = nullptr)
    {
        TYPE* target = const_cast<TYPE*>(&element);
        return Search([this, target](TYPE* probe) { return Compare(probe, target); }, position);
    }

    // As Find, comparing each element with `key` through m_pfnCompareKey.
    int FindKey(const KEY& key, int* position = nullptr)
    {
        KEY* target = const_cast<KEY*>(&key);
        return Search([this, target](TYPE* probe) { return CompareKey(probe, target); }, position);
    }

    // Sorts the whole array (Hoare's quick sort, middle pivot) and marks it
    // sorted. m_pfnProgress, if set, hears the middle index of each range.
    // Equal elements end up in no defined order.
    void QuickSort()
    {
        QuickSort(0, this->GetSize() - 1);
        m_bSorted = 1;
    }

    // The comparison in force: m_pfnCompareData, else m_pfnCompare, else
    // the "!!!!COMPARE!!!!" box and 0.
    int Compare(TYPE* a, TYPE* b)
    {
        if (m_pfnCompareData)
            return m_pfnCompareData(m_compareUser, a, b);
        if (m_pfnCompare)
            return m_pfnCompare(a, b);
        vx::ReportMissingComparison();
        return 0;
    }

    int CompareKey(TYPE* element, KEY* key)
    {
        if (m_pfnCompareKey)
            return m_pfnCompareKey(element, key);
        vx::ReportMissingComparison();
        return 0;
    }

    // Storing writes the count and the elements; loading reads them and
    // replaces the content only if the whole array could be read (the
    // archive tells the failure). The flags are not archived.
    virtual void Serialize(CArchive& ar)
    {
        if (ar.IsStoring()) {
            ar.WriteCount(static_cast<DWORD>(this->GetSize()));
            SerializeElements(ar, this->GetData(), this->GetSize());
            return;
        }
        const DWORD count = ar.ReadCount();
        // Every element takes at least one byte: a count the rest of the
        // file cannot hold is damage, not a reason to allocate.
        if (ar.IsFailed() || count > ar.BytesLeft() || count > 0x7FFFFFFF) {
            ar.SetFailed();
            return;
        }
        Base loaded;
        loaded.SetSize(static_cast<int>(count));
        SerializeElements(ar, loaded.GetData(), loaded.GetSize());
        if (!ar.IsFailed())
            Base::Copy(loaded);
    }

    int m_bKeepSorted = 0;
    int m_bSorted = 1;
    CompareDataFunction m_pfnCompareData = nullptr;
    CompareKeyFunction m_pfnCompareKey = nullptr;
    CompareFunction m_pfnCompare = nullptr;
    unsigned long m_compareUser = 0;
    ProgressFunction m_pfnProgress = nullptr;
    unsigned long m_progressUser = 0;

protected:
    template <class Probe>
    int Search(Probe compareWithTarget, int* position)
    {
        const int size = this->GetSize();
        TYPE* data = this->GetData();
        if (!m_bSorted) {
            for (int i = 0; i < size; ++i) {
                if (compareWithTarget(&data[i]) == 0) {
                    if (position)
                        *position = i;
                    return i;
                }
            }
            return -1;
        }
        if (size == 0) {
            if (position)
                *position = 0;
            return -1;
        }
        int low = 0;
        int high = size - 1;
        int probe = 0;
        int result = 0;
        while (low <= high) {
            probe = (low + high) / 2;
            result = compareWithTarget(&data[probe]);
            if (result == 0)
                break;
            if (result < 0)
                low = probe + 1;
            else
                high = probe - 1;
        }
        if (position)
            *position = result >= 0 ? probe : probe + 1;
        return compareWithTarget(&data[probe]) == 0 ? probe : -1;
    }

    // The ranges are kept on a heap stack in the order a recursion would
    // visit them (left part first), so the progress calls come in that
    // order while a degenerate input cannot exhaust the call stack.
    void QuickSort(int low, int high)
    {
        std::vector<std::pair<int, int>> ranges;
        ranges.emplace_back(low, high);
        while (!ranges.empty()) {
            const auto [lo, hi] = ranges.back();
            ranges.pop_back();
            if (lo >= hi || lo < 0 || hi < 0)
                continue;
            TYPE* data = this->GetData();
            const int middle = (lo + hi) / 2;
            if (m_pfnProgress)
                m_pfnProgress(m_progressUser, middle);
            TYPE pivot = data[middle];
            int i = lo;
            int j = hi;
            while (i <= j) {
                // The bounds never stop a comparison that answers the same
                // way twice; they only keep an erratic one inside the array.
                while (Compare(&data[i], &pivot) < 0 && i < hi)
                    ++i;
                while (Compare(&data[j], &pivot) > 0 && j > lo)
                    --j;
                if (i <= j) {
                    if (i != j)
                        std::swap(data[i], data[j]);
                    ++i;
                    --j;
                }
            }
            if (i < hi)
                ranges.emplace_back(i, hi);
            if (lo < j)
                ranges.emplace_back(lo, j);
        }
    }
};

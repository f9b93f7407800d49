// The framework's dynamic arrays: CArray<TYPE, ARG_TYPE> and its named
// instances (CStringArray, CDWordArray, CWordArray, CUIntArray, CByteArray,
// CPtrArray, CObArray).
//
// Growth follows the framework's rule, which callers tune with SetSize:
// when the array outgrows its allocation it grows by the grow step, and a
// step of 0 (the default) means size / 8, at least 4 and at most 1024.
//
//   CStringArray names;
//   names.SetSize(0, 64);     // grow by 64 elements at a time
//   names.Add("X1");
//   names.InsertAt(0, "K1");  // K1, X1
//
// An index outside 0 .. GetSize() - 1 is a programming error: the access
// functions stop the program with a message instead of touching memory.
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vx {
[[noreturn]] VXBASE_EXPORT void ArrayIndexFailure(int index, int size);
} // namespace vx

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    CArray() = default;
    CArray(const CArray& other) : CObject(), m_nGrowBy(other.m_nGrowBy) { Copy(other); }
    CArray& operator=(const CArray& other)
    {
        if (this != &other)
            Copy(other);
        return *this;
    }
    ~CArray() override = default;

    int GetSize() const { return static_cast<int>(m_data.size()); }
    int GetCount() const { return GetSize(); }
    bool IsEmpty() const { return m_data.empty(); }
    int GetUpperBound() const { return GetSize() - 1; }
    // The number of elements the array holds room for (its allocation).
    int GetAllocSize() const { return m_nMaxSize; }
    int GetGrowBy() const { return m_nGrowBy; }

    // Sets the size; new elements are value-initialised (zero for numbers).
    // `growBy` of -1 keeps the current grow step. A negative size counts as 0.
    void SetSize(int newSize, int growBy = -1)
    {
        if (growBy >= 0)
            m_nGrowBy = growBy;
        if (newSize < 0)
            newSize = 0;
        if (newSize == 0) {
            std::vector<TYPE>().swap(m_data);
            m_nMaxSize = 0;
            return;
        }
        if (m_nMaxSize == 0) {
            m_nMaxSize = std::max(newSize, m_nGrowBy);
            m_data.reserve(static_cast<std::size_t>(m_nMaxSize));
        } else if (newSize > m_nMaxSize) {
            int grow = m_nGrowBy;
            if (grow == 0)
                grow = std::clamp(GetSize() / 8, 4, 1024);
            m_nMaxSize = newSize < m_nMaxSize + grow ? m_nMaxSize + grow : newSize;
            m_data.reserve(static_cast<std::size_t>(m_nMaxSize));
        }
        m_data.resize(static_cast<std::size_t>(newSize));
    }

    void FreeExtra()
    {
        m_data.shrink_to_fit();
        m_nMaxSize = GetSize();
    }
    void RemoveAll() { SetSize(0); }

    TYPE GetAt(int index) const { return m_data[Checked(index)]; }
    void SetAt(int index, ARG_TYPE element) { m_data[Checked(index)] = element; }
    TYPE& ElementAt(int index) { return m_data[Checked(index)]; }
    const TYPE& ElementAt(int index) const { return m_data[Checked(index)]; }
    TYPE& operator[](int index) { return ElementAt(index); }
    const TYPE& operator[](int index) const { return ElementAt(index); }
    TYPE* GetData() { return m_data.empty() ? nullptr : m_data.data(); }
    const TYPE* GetData() const { return m_data.empty() ? nullptr : m_data.data(); }

    void SetAtGrow(int index, ARG_TYPE element)
    {
        TYPE copy = element; // `element` may live in this array
        if (index < 0)
            vx::ArrayIndexFailure(index, GetSize());
        if (index >= GetSize())
            SetSize(index + 1, -1);
        m_data[static_cast<std::size_t>(index)] = std::move(copy);
    }

    int Add(ARG_TYPE element)
    {
        const int index = GetSize();
        SetAtGrow(index, element);
        return index;
    }

    // Appends all of `source`; returns the index of its first element here.
    int Append(const CArray& source)
    {
        const int old = GetSize();
        const std::vector<TYPE> copy = source.m_data;
        SetSize(old + static_cast<int>(copy.size()));
        std::copy(copy.begin(), copy.end(), m_data.begin() + old);
        return old;
    }

    void Copy(const CArray& source)
    {
        if (this == &source)
            return;
        SetSize(source.GetSize());
        std::copy(source.m_data.begin(), source.m_data.end(), m_data.begin());
    }

    // Inserts `count` copies before `index`; an index beyond the end grows
    // the array up to it first.
    void InsertAt(int index, ARG_TYPE element, int count = 1)
    {
        if (index < 0)
            vx::ArrayIndexFailure(index, GetSize());
        if (count <= 0)
            return;
        TYPE copy = element;
        if (index >= GetSize()) {
            SetSize(index + count, -1);
        } else {
            const int old = GetSize();
            SetSize(old + count, -1);
            std::move_backward(m_data.begin() + index, m_data.begin() + old, m_data.end());
        }
        std::fill(m_data.begin() + index, m_data.begin() + index + count, copy);
    }

    void InsertAt(int startIndex, const CArray* newArray)
    {
        if (!newArray || newArray->GetSize() == 0)
            return;
        const std::vector<TYPE> copy = newArray->m_data;
        InsertAt(startIndex, copy[0], static_cast<int>(copy.size()));
        std::copy(copy.begin(), copy.end(), m_data.begin() + startIndex);
    }

    void RemoveAt(int index, int count = 1)
    {
        if (count <= 0)
            return;
        if (index < 0 || index + count > GetSize())
            vx::ArrayIndexFailure(index + count - 1, GetSize());
        m_data.erase(m_data.begin() + index, m_data.begin() + index + count);
    }

    // Standard iteration, for range-for over the elements.
    auto begin() { return m_data.begin(); }
    auto end() { return m_data.end(); }
    auto begin() const { return m_data.begin(); }
    auto end() const { return m_data.end(); }

private:
    std::size_t Checked(int index) const
    {
        if (index < 0 || index >= GetSize())
            vx::ArrayIndexFailure(index, GetSize());
        return static_cast<std::size_t>(index);
    }

    std::vector<TYPE> m_data;
    int m_nMaxSize = 0;
    int m_nGrowBy = 0;
};

class CStringArray : public CArray<CString, const CString&> {};
class CDWordArray : public CArray<DWORD, DWORD> {};
class CWordArray : public CArray<WORD, WORD> {};
class CUIntArray : public CArray<UINT, UINT> {};
class CByteArray : public CArray<BYTE, BYTE> {};
class CPtrArray : public CArray<void*, void*> {};
class CObArray : public CArray<CObject*, CObject*> {};

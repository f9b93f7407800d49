// A file loaded by CArchive into a KQuickArray of numbers, of strings or of
// page numbers. A load that succeeds is stored and loaded again and gives
// the same array; one that fails leaves the array as it was.
#include "fuzzsupport.h"

#include <string>

namespace {

template <class T>
bool Same(KQuickArray<T>& a, KQuickArray<T>& b)
{
    if (a.GetSize() != b.GetSize())
        return false;
    for (int i = 0; i < a.GetSize(); ++i) {
        if (!(a[i] == b[i]))
            return false;
    }
    return true;
}

template <class T>
void RoundTrip(const std::string& file, const T& marker)
{
    KQuickArray<T> loaded;
    loaded.Add(marker);
    bool failed;
    {
        CArchive in(file.c_str(), CArchive::load);
        loaded.Serialize(in);
        failed = in.IsFailed();
        in.Close();
    }
    if (failed) {
        VXFUZZ_CHECK(loaded.GetSize() == 1 && loaded[0] == marker, "a failed load changed the array");
        return;
    }
    const std::string copy = vxfuzz::ScratchDir() + "/copy.dat";
    {
        CArchive out(copy.c_str(), CArchive::store);
        loaded.Serialize(out);
        VXFUZZ_CHECK(out.Close(), "the array could not be stored");
    }
    KQuickArray<T> again;
    CArchive in(copy.c_str(), CArchive::load);
    again.Serialize(in);
    VXFUZZ_CHECK(!in.IsFailed(), "a stored array does not load");
    VXFUZZ_CHECK(in.BytesLeft() == 0, "%llu bytes left behind a stored array", in.BytesLeft());
    VXFUZZ_CHECK(Same(loaded, again), "an array of %d elements reads back otherwise", loaded.GetSize());
}

int ByValue(int* a, int* b)
{
    return *a < *b ? -1 : *a > *b;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    // The first byte chooses the element type; the rest is the file.
    const std::string file = vxfuzz::WriteScratch("in.dat", data + 1, size - 1);
    switch (data[0] % 3) {
    case 0: {
        RoundTrip<int>(file, 0x5A5A5A5A);
        // A loaded array is sorted and searched as any other.
        KQuickArray<int> numbers;
        CArchive in(file.c_str(), CArchive::load);
        numbers.Serialize(in);
        numbers.m_pfnCompare = ByValue;
        numbers.QuickSort();
        for (int i = 1; i < numbers.GetSize(); ++i)
            VXFUZZ_CHECK(numbers[i - 1] <= numbers[i], "not sorted at %d", i);
        if (numbers.GetSize() > 0)
            VXFUZZ_CHECK(numbers.Find(numbers[numbers.GetSize() / 2]) >= 0, "a loaded element is not found");
        break;
    }
    case 1:
        RoundTrip<CString>(file, CString("marker"));
        break;
    case 2:
        RoundTrip<VXPAGENUM>(file, VXPAGENUM(VXPAGE(7), 0));
        break;
    }
    return 0;
}

// Internal; do not include directly.
//
// The buffer form of the file lists (KVxFileList and KFileList
// CopyListToBuffer): one zero-terminated text after another.
#pragma once

#include "platform/framework/cstring.h"

#include <cstring>

namespace vx {

// Writes TextOf(element) for each element of `list` and counts them; -1 as
// soon as a text with its zero is not below `size`, the earlier texts
// staying written. `size` is tested per text, as the original did: the
// caller's buffer holds the whole list.
template <class List, class TextOf>
int CopyTextsToBuffer(const List& list, TextOf textOf, char* buffer, unsigned size)
{
    int count = 0;
    for (const auto& element : list) {
        const CString text = textOf(element);
        const auto length = static_cast<unsigned>(text.GetLength());
        if (length + 1 >= size)
            return -1;
        std::memcpy(buffer, text.GetString(), length + 1);
        buffer += length + 1;
        ++count;
    }
    return count;
}

} // namespace vx

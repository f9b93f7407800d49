#include "platform/framework/carray.h"

#include <cstdio>
#include <cstdlib>

namespace vx {

void ArrayIndexFailure(int index, int size)
{
    std::fprintf(stderr, "vxbase: array index %d outside 0..%d\n", index, size - 1);
    std::abort();
}

} // namespace vx

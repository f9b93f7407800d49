#include "base/displaystate.h"

namespace vx {

DisplayState& TheDisplayState()
{
    static DisplayState state;
    return state;
}

} // namespace vx

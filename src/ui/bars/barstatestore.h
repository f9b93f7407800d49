// Where the frames keep their bars' places (SaveBarState, LoadBarState):
// numbers by section and key. The window classes install the settings
// files' store when the library loads; until then nothing is kept.
#pragma once

#include "vxbase_ui_export.h"

namespace vx {

struct BarStateStore {
    int (*readInt)(const char* section, const char* key, int defaultValue) = nullptr;
    void (*writeInt)(const char* section, const char* key, int value) = nullptr;
};
VXBASE_UI_EXPORT void SetBarStateStore(const BarStateStore& store);
VXBASE_UI_EXPORT const BarStateStore& GetBarStateStore();

} // namespace vx

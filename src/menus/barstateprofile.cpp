// The bars' places go to the program's own settings file (KProfile scope 0),
// as every persisted window state of the suite does.
#include "config/kprofile.h"
#include "ui/bars/barstatestore.h"

namespace {

constexpr int kScope = 0;

const bool g_installed = [] {
    vx::BarStateStore store;
    store.readInt = [](const char* section, const char* key, int defaultValue) {
        return static_cast<int>(KProfile::GetProfileIntA(section, key, defaultValue, kScope));
    };
    store.writeInt = [](const char* section, const char* key, int value) {
        KProfile::WriteProfileInt(section, key, value, kScope);
    };
    vx::SetBarStateStore(store);
    return true;
}();

} // namespace

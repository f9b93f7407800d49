// Internal to CDialog: the state behind its d-pointer, shared by the files
// of the class. Do not include directly.
#pragma once

#include "ui/dialogs/cdialog.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/windows/windowsizing.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

struct CDialog::Private {
    struct CommandEntry {
        UINT code;
        UINT first;
        UINT last;
        std::function<void(UINT)> handler;
    };

    std::optional<vx::DialogTemplate> indirect;
    std::map<int, CWnd*> bound;
    std::vector<std::unique_ptr<CWnd>> owned;
    std::vector<CommandEntry> commands;
    CFont font;
    SIZE baseUnits{6, 13};
    UINT defId = 0;
    bool modal = false;
    bool ending = false;
    CWnd* lastFocus = nullptr;
    HICON icons[2] = {nullptr, nullptr}; // small, big
    vx::SizeGripTracker grip;
};

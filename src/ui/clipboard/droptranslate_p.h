// Internal to data transfer: drop effects and Qt's drop actions, key states.
// Do not include directly.
#pragma once

#include "ui/clipboard/oletypes.h"

#include <Qt>

namespace vx::clip {

inline Qt::DropActions ToQtActions(DROPEFFECT effects)
{
    Qt::DropActions actions;
    if (effects & DROPEFFECT_COPY)
        actions |= Qt::CopyAction;
    if (effects & DROPEFFECT_MOVE)
        actions |= Qt::MoveAction;
    if (effects & DROPEFFECT_LINK)
        actions |= Qt::LinkAction;
    return actions;
}

inline DROPEFFECT ToDropEffect(Qt::DropAction action)
{
    switch (action) {
    case Qt::CopyAction: return DROPEFFECT_COPY;
    case Qt::MoveAction:
    case Qt::TargetMoveAction: return DROPEFFECT_MOVE;
    case Qt::LinkAction: return DROPEFFECT_LINK;
    default: return DROPEFFECT_NONE;
    }
}

inline DROPEFFECT ToDropEffects(Qt::DropActions actions)
{
    DROPEFFECT effects = DROPEFFECT_NONE;
    if (actions & Qt::CopyAction)
        effects |= DROPEFFECT_COPY;
    if (actions & Qt::MoveAction)
        effects |= DROPEFFECT_MOVE;
    if (actions & Qt::LinkAction)
        effects |= DROPEFFECT_LINK;
    return effects;
}

// Copy before move before link, as the original's default drop was a copy.
inline Qt::DropAction PreferredAction(Qt::DropActions allowed)
{
    if (allowed & Qt::CopyAction)
        return Qt::CopyAction;
    if (allowed & Qt::MoveAction)
        return Qt::MoveAction;
    return (allowed & Qt::LinkAction) ? Qt::LinkAction : Qt::IgnoreAction;
}

} // namespace vx::clip

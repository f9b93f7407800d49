// Runs a dialog modally with something done to it once its loop runs, as a
// user would act on the open dialog.
#pragma once

#include <QTimer>

#include <functional>
#include <type_traits>

namespace vxhost {

// DoModal on `dlg`; `act` (if any) runs from inside the modal loop while the
// dialog still has its window.
template <class Dialog>
auto RunModal(Dialog& dlg, const std::function<void(std::type_identity_t<Dialog>&)>& act)
{
    if (act) {
        QTimer::singleShot(0, [&dlg, act] {
            if (dlg.m_hWnd)
                act(dlg);
        });
    }
    return dlg.DoModal();
}

} // namespace vxhost

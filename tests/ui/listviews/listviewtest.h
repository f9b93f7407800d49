// Helpers of the list view tests: a parent window that records what its
// controls tell it, and simulated mouse and key input.
#pragma once

#include "uisupport/uitest.h"

#include "ui/listviews/clistctrl.h"
#include "ui/windows/qtinterop.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace vxtest {

// One NM_CUSTOMDRAW stage as the parent heard it.
struct DrawCall {
    DWORD stage;
    int item;
    int subItem;
    bool operator==(const DrawCall& o) const { return stage == o.stage && item == o.item && subItem == o.subItem; }
};

class RecordingParent : public CWnd {
public:
    BOOL Create(const CRect& r = CRect(0, 0, 320, 240))
    {
        return CreateEx("parent", "ListParent", WS_POPUP | WS_VISIBLE, r);
    }

    std::vector<UINT> codes;             // every notification, in order
    std::vector<NMLISTVIEW> listNotes;   // LVN_ records
    std::vector<NMITEMACTIVATE> clicks;  // NM_CLICK, NM_DBLCLK, NM_RCLICK
    std::vector<DrawCall> draws;         // NM_CUSTOMDRAW stages
    LRESULT prepaintAnswer = CDRF_NOTIFYITEMDRAW;
    LRESULT itemAnswer = CDRF_NOTIFYSUBITEMDRAW;
    // The answer for one cell; the default lets the control paint it.
    std::function<LRESULT(NMLVCUSTOMDRAW*)> cellAnswer;
    // Refuses LVN_ITEMCHANGING for this item.
    int refuseItem = -2;

    int Count(UINT code) const { return static_cast<int>(std::count(codes.begin(), codes.end(), code)); }
    // Cell stages (item prepaint with CDDS_SUBITEM) seen since the last Clear.
    std::vector<std::pair<int, int>> Cells() const
    {
        std::vector<std::pair<int, int>> out;
        for (const DrawCall& c : draws) {
            if (c.stage == (CDDS_ITEMPREPAINT | CDDS_SUBITEM))
                out.emplace_back(c.item, c.subItem);
        }
        std::sort(out.begin(), out.end());
        return out;
    }
    void Clear()
    {
        codes.clear();
        listNotes.clear();
        clicks.clear();
        draws.clear();
    }

protected:
    BOOL OnNotify(WPARAM, LPARAM lParam, LRESULT* result) override
    {
        auto* hdr = reinterpret_cast<NMHDR*>(lParam);
        codes.push_back(hdr->code);
        *result = 0;
        if (hdr->code == NM_CUSTOMDRAW) {
            auto* cd = reinterpret_cast<NMLVCUSTOMDRAW*>(lParam);
            draws.push_back({cd->nmcd.dwDrawStage, static_cast<int>(cd->nmcd.dwItemSpec), cd->iSubItem});
            if (cd->nmcd.dwDrawStage == CDDS_PREPAINT)
                *result = prepaintAnswer;
            else if (cd->nmcd.dwDrawStage == CDDS_ITEMPREPAINT)
                *result = itemAnswer;
            else if (cd->nmcd.dwDrawStage == (CDDS_ITEMPREPAINT | CDDS_SUBITEM) && cellAnswer)
                *result = cellAnswer(cd);
            return TRUE;
        }
        if (hdr->code == NM_CLICK || hdr->code == NM_DBLCLK || hdr->code == NM_RCLICK) {
            clicks.push_back(*reinterpret_cast<NMITEMACTIVATE*>(lParam));
            return TRUE;
        }
        if (hdr->code <= LVN_FIRST && hdr->code > LVN_FIRST - 100 && hdr->code != LVN_KEYDOWN) {
            const auto* nm = reinterpret_cast<NMLISTVIEW*>(lParam);
            listNotes.push_back(*nm);
            if (hdr->code == LVN_ITEMCHANGING && nm->iItem == refuseItem)
                *result = TRUE;
            return TRUE;
        }
        return FALSE;
    }
};

// Mouse input through Qt, as a person's clicks arrive.
inline void Mouse(CWnd& window, QEvent::Type type, CPoint at, Qt::KeyboardModifiers mods = Qt::NoModifier,
                  Qt::MouseButton button = Qt::LeftButton)
{
    QWidget* w = vx::WidgetOfWindow(&window);
    ASSERT_NE(w, nullptr);
    const Qt::MouseButtons buttons =
        type == QEvent::MouseButtonRelease ? Qt::MouseButtons(Qt::NoButton) : Qt::MouseButtons(button);
    const QPoint p(at.x, at.y);
    QMouseEvent e(type, QPointF(p), QPointF(w->mapToGlobal(p)),
                  type == QEvent::MouseMove ? Qt::NoButton : button, buttons, mods);
    QCoreApplication::sendEvent(w, &e);
}

inline void Click(CWnd& window, CPoint at, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    Mouse(window, QEvent::MouseButtonPress, at, mods);
    Mouse(window, QEvent::MouseButtonRelease, at, mods);
}

inline void Drag(CWnd& window, CPoint from, CPoint to, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    Mouse(window, QEvent::MouseButtonPress, from, mods);
    QWidget* w = vx::WidgetOfWindow(&window);
    const int steps = 4;
    for (int i = 1; i <= steps; ++i) {
        const QPoint p(from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps);
        QMouseEvent e(QEvent::MouseMove, QPointF(p), QPointF(w->mapToGlobal(p)), Qt::NoButton, Qt::LeftButton, mods);
        QCoreApplication::sendEvent(w, &e);
    }
    Mouse(window, QEvent::MouseButtonRelease, to, mods);
}

// A key with modifiers held, through the window's message route.
inline void Key(CWnd& window, UINT key, bool shift = false, bool ctrl = false)
{
    if (shift)
        vx::DispatchInputMessage(window, WM_KEYDOWN, VK_SHIFT, 1);
    if (ctrl)
        vx::DispatchInputMessage(window, WM_KEYDOWN, VK_CONTROL, 1);
    vx::DispatchInputMessage(window, WM_KEYDOWN, key, 1);
    vx::DispatchInputMessage(window, WM_KEYUP, key, 1 | (1 << 30) | (1LL << 31));
    if (ctrl)
        vx::DispatchInputMessage(window, WM_KEYUP, VK_CONTROL, 1 | (1 << 30) | (1LL << 31));
    if (shift)
        vx::DispatchInputMessage(window, WM_KEYUP, VK_SHIFT, 1 | (1 << 30) | (1LL << 31));
}

} // namespace vxtest

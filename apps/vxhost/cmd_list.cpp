// The cell list in the sample host: a parts list of 2,000 rows with every
// kind of cell, whose frame writes what the list asks it to write.
//
//   vxhost list                  shows the list (offscreen without a display)
//   vxhost list --screenshot DIR writes the list with a block selected and
//                                with each editor open, then ends
#include "democommand.h"

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kRows = 2000;
enum Column { Number, Device, Page, Type, Checked, Progress, Bridges, State, Comment, Action, Columns };

// Code page text from this file's UTF-8.
CString Cp(const char* utf8)
{
    return CString(vx::FromUtf8(utf8).c_str());
}

// The types a combo offers; the item data is the type's number.
void FillTypes(DWORD_PTR, void*, int, int, CArray<ComboItem, ComboItem&>* items)
{
    const char* const names[] = {"Przekaźnik", "Stycznik", "Bezpiecznik", "Lampka", "Zacisk", "Wyłącznik"};
    for (int i = 0; i < 6; ++i) {
        ComboItem item;
        item.strText = Cp(names[i]);
        item.dwData = static_cast<DWORD_PTR>(i + 1);
        items->Add(item);
    }
}

// The host's list: F2 opens the input box at the current cell, which then
// walks with Tab, Enter and the arrows.
class PartsList : public KXListCtrl {
protected:
    void OnKeyDown(UINT key, UINT repeat, UINT flags) override
    {
        int row = -1;
        int col = -1;
        if (key == VK_F2 && GetSelection().GetMoving(row, col)) {
            EditCurrentRecord(row, col, -1);
            return;
        }
        KXListCtrl::OnKeyDown(key, repeat, flags);
    }
};

class PartsFrame : public CFrameWnd {
public:
    PartsList list;
    bool quitOnClose = false;

    void Build()
    {
        CString title;
        title.LoadString(6706);
        title += Cp(" - Lista części");
        CreateEx(title, "VxHostParts", WS_OVERLAPPEDWINDOW, CRect(40, 40, 40 + 980, 40 + 560));
        LOGFONTA lf{};
        lf.lfHeight = -11;
        lf.lfWeight = FW_NORMAL;
        std::strcpy(lf.lfFaceName, "MS Sans Serif");
        m_font.CreateFontIndirect(&lf);
        CRect client;
        GetClientRect(&client);
        list.CreateEx("", "SysListView32", WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS,
                      client, this, 100, WS_EX_CLIENTEDGE);
        list.SetFont(&m_font);
        list.SetCellMode(TRUE);
        list.SetExtendedStyle(list.GetExtendedStyle() | LVS_EX_GRIDLINES);
        const struct {
            const char* name;
            int width;
            int format;
        } columns[Columns] = {
            {"Nr", 44, LVCFMT_RIGHT},          {"Oznaczenie", 96, LVCFMT_LEFT}, {"Strona", 64, LVCFMT_RIGHT},
            {"Typ", 104, LVCFMT_LEFT},         {"Sprawdzone", 96, LVCFMT_LEFT}, {"Postęp", 90, LVCFMT_LEFT},
            {"Mostki", 84, LVCFMT_LEFT},       {"Stan", 40, LVCFMT_LEFT},       {"Opis", 220, LVCFMT_LEFT},
            {"Akcja", 76, LVCFMT_CENTER},
        };
        for (int c = 0; c < Columns; ++c)
            list.InsertColumn(c, Cp(columns[c].name), columns[c].format, columns[c].width);
        list.SetButtonColumn(Number, 1);
        Fill();
        list.SetHeaderCheckedState(Checked, 1);
        list.SetItemToolTipText(0, Comment, Cp("Cewka 24 V DC, styki 2Z"));
    }

    void Fill()
    {
        list.SetRedraw(FALSE);
        const char* const types[] = {"Przekaźnik", "Stycznik", "Bezpiecznik", "Lampka", "Zacisk", "Wyłącznik"};
        const char* const letters[] = {"K", "Q", "F", "H", "X", "S"};
        for (int r = 0; r < kRows; ++r) {
            const int kind = r % 6;
            CString text;
            text.Format("%d", r + 1);
            const int row = list.InsertItem(r, text);
            text.Format("%s%d", letters[kind], r / 6 + 1);
            list.SetItemText(row, Device, text);
            text.Format("%d.%d", 1 + r / 40, r % 40 + 1);
            list.SetItemText(row, Page, text);
            list.SetEdit(row, Page);
            list.SetComboBox(row, Type, TRUE, &FillTypes, 0, 6, 0);
            list.SetItemText(row, Type, Cp(types[kind]));
            list.SetItemCheckedState(row, Checked, r % 3 == 0 ? 1 : 0);
            list.SetItemText(row, Checked, r % 3 == 0 ? Cp("tak") : Cp("nie"));
            list.SetProgress(row, Progress);
            list.UpdateProgress(row, Progress, (r * 17) % 111);
            for (int slot = 0; slot < 4; ++slot) {
                if ((r + slot) % 3 != 2)
                    list.SetBridge(row, Bridges, slot, slot == 0 ? 0 : slot == 3 ? 2 : 1);
            }
            list.SetIcon(row, State, r % 7 == 0 ? 6 : r % 5 == 0 ? 7 : 5);
            text.Format("%s %s%d, %s", static_cast<const char*>(Cp(types[kind])), letters[kind], r / 6 + 1,
                        static_cast<const char*>(Cp("szafa A1")));
            list.SetItemText(row, Comment, text);
            XLISTCTRLDATA* action = list.GetItemXLCDData(row, Action);
            action->nKind = XLC_KIND_BUTTON;
            list.SetItemText(row, Action, Cp("Pokaż"));
            if (r % 11 == 4)
                list.SetBold(row, Comment, TRUE);
            if (r % 13 == 6)
                list.SetItemColors(row, Comment, RGB(160, 0, 0), XLC_DEFAULT_BACKGROUND);
            if (r % 17 == 9)
                list.SetCellEditable(row, Device, FALSE);
            if (r % 23 == 12)
                list.SetEnabled(row, FALSE);
            if (r % 19 == 3)
                list.GetItemXLCDData(row, 0)->bModified = TRUE;
        }
        list.SetRedraw(TRUE);
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        switch (message) {
        case WM_XLISTCTRL_SETTEXT: {
            // The list asks; the owner of the data writes.
            const auto* change = reinterpret_cast<const XLISTCTRL_CHANGE*>(wParam);
            change->pList->SetItemText(change->nRow, change->nCol, reinterpret_cast<const char*>(lParam));
            return 0;
        }
        case WM_XLISTCTRL_CANCOPY:
            return 1;
        case WM_XLISTCTRL_COPYROWS:
            m_copied.clear();
            for (int r = static_cast<int>(wParam); r <= static_cast<int>(lParam); ++r)
                m_copied.push_back(r);
            return 0;
        case WM_XLISTCTRL_DELETEROWS:
            for (int r = static_cast<int>(lParam); r >= static_cast<int>(wParam); --r)
                list.DeleteItem(r);
            return 0;
        case WM_SIZE: {
            const LRESULT result = CFrameWnd::WindowProc(message, wParam, lParam);
            if (list.m_hWnd) {
                CRect client;
                GetClientRect(&client);
                list.MoveWindow(&client);
            }
            return result;
        }
        default:
            return CFrameWnd::WindowProc(message, wParam, lParam);
        }
    }

    void OnDestroy() override
    {
        CFrameWnd::OnDestroy();
        if (quitOnClose)
            PostQuitMessage(0);
    }

private:
    CFont m_font;
    std::vector<int> m_copied;
};

// The frame as it shows, with the popups of this process (a combo and its
// list) painted where they lie over it.
bool Shot(PartsFrame& frame, const std::string& file)
{
    vx::ProcessUiEvents(120);
    QImage image = vx::RenderWindow(frame);
    QWidget* base = vx::WidgetOfWindow(&frame);
    QPainter painter(&image);
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (base && w != base && w->isVisible())
            painter.drawPixmap(base->mapFromGlobal(w->geometry().topLeft()), w->grab());
    }
    painter.end();
    if (!image.save(QString::fromStdString(file))) {
        std::fprintf(stderr, "vxhost: cannot write %s\n", file.c_str());
        return false;
    }
    std::printf("wrote %s\n", file.c_str());
    return true;
}

// Simulated input, as a person's arrives: the mouse through Qt, keys
// through the window's message route.
void Mouse(CWnd& window, QEvent::Type type, CPoint at, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    QWidget* w = vx::WidgetOfWindow(&window);
    if (!w)
        return;
    const QPoint p(at.x, at.y);
    const Qt::MouseButtons buttons =
        type == QEvent::MouseButtonRelease ? Qt::MouseButtons(Qt::NoButton) : Qt::MouseButtons(Qt::LeftButton);
    QMouseEvent e(type, QPointF(p), QPointF(w->mapToGlobal(p)), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                  buttons, mods);
    QApplication::sendEvent(w, &e);
    vx::ProcessUiEvents(10);
}

CPoint CellCenter(KXListCtrl& list, int row, int col)
{
    CRect r;
    list.GetSubItemRect(row, col, LVIR_BOUNDS, r);
    return r.CenterPoint();
}

void Click(KXListCtrl& list, int row, int col)
{
    Mouse(list, QEvent::MouseButtonPress, CellCenter(list, row, col));
    Mouse(list, QEvent::MouseButtonRelease, CellCenter(list, row, col));
}

void DoubleClick(KXListCtrl& list, int row, int col)
{
    Click(list, row, col);
    Mouse(list, QEvent::MouseButtonDblClick, CellCenter(list, row, col));
    Mouse(list, QEvent::MouseButtonRelease, CellCenter(list, row, col));
}

// A press on one cell, the mouse moved to another, let go there.
void DragCells(KXListCtrl& list, int row1, int col1, int row2, int col2)
{
    const CPoint from = CellCenter(list, row1, col1);
    const CPoint to = CellCenter(list, row2, col2);
    Mouse(list, QEvent::MouseButtonPress, from);
    for (int i = 1; i <= 4; ++i)
        Mouse(list, QEvent::MouseMove, from + CSize((to.x - from.x) * i / 4, (to.y - from.y) * i / 4));
    Mouse(list, QEvent::MouseButtonRelease, to);
}

void Key(UINT key, bool ctrl = false, bool shift = false)
{
    auto send = [](UINT message, WPARAM wParam, LPARAM lParam) {
        if (CWnd* focus = CWnd::GetFocus())
            vx::DispatchInputMessage(*focus, message, wParam, lParam);
    };
    const LPARAM up = 1 | (1 << 30) | (1LL << 31);
    if (shift)
        send(WM_KEYDOWN, VK_SHIFT, 1);
    if (ctrl)
        send(WM_KEYDOWN, VK_CONTROL, 1);
    send(WM_KEYDOWN, key, 1);
    send(WM_KEYUP, key, up);
    if (ctrl)
        send(WM_KEYUP, VK_CONTROL, up);
    if (shift)
        send(WM_KEYUP, VK_SHIFT, up);
    vx::ProcessUiEvents(10);
}

void TypeText(const char* text)
{
    for (const char* p = text; *p; ++p) {
        if (CWnd* focus = CWnd::GetFocus())
            vx::DispatchInputMessage(*focus, WM_CHAR, static_cast<unsigned char>(*p), 1);
    }
    vx::ProcessUiEvents(10);
}

void Say(KXListCtrl& list, const char* what, int row, int col)
{
    std::printf("%s: row %d, %s: \"%s\"\n", what, row + 1, static_cast<const char*>(list.GetColumnName(col)),
                vx::ToUtf8(static_cast<const char*>(list.GetItemText(row, col))).c_str());
}

// The list used as a person uses it: a block selected with the mouse,
// copied and pasted over another block, a page number typed, a type chosen
// from the combo, a device typed into the input box and walked on by Tab.
int Screenshots(PartsFrame& frame, const std::string& dir)
{
    if (!vxhost::MakePictureDir(dir))
        return 1;
    KXListCtrl& list = frame.list;
    list.SetFocus();
    DragCells(list, 3, Device, 8, Checked);
    bool ok = Shot(frame, dir + "/1-list-block.png");
    Key('C', true);
    DragCells(list, 19, Device, 24, Checked);
    Key('V', true);
    Say(list, "pasted", 19, Device);
    Say(list, "pasted", 24, Type);
    ok = Shot(frame, dir + "/2-list-pasted.png") && ok;
    // The text editor over a page number: the old text replaced by typing.
    Click(list, 5, Page);
    Key(VK_HOME);
    Key(VK_END, false, true);
    TypeText("12.4");
    ok = Shot(frame, dir + "/3-list-textedit.png") && ok;
    Click(list, 5, Comment); // the editor loses the focus and commits
    Say(list, "typed", 5, Page);
    // The combo over a type opens on a double click; a choice by keys.
    DoubleClick(list, 7, Type);
    vx::ProcessUiEvents(120);
    ok = Shot(frame, dir + "/4-list-combo.png") && ok;
    Key(VK_DOWN);
    Key(VK_RETURN);
    vx::ProcessUiEvents(120);
    Say(list, "chosen", 7, Type);
    // The input box: F2 on a device, a new name, Tab to the next cell.
    list.SetFocus();
    Click(list, 10, Device);
    Key(VK_F2);
    TypeText("K99");
    ok = Shot(frame, dir + "/5-list-inputbox.png") && ok;
    Key(VK_TAB);
    ok = Shot(frame, dir + "/6-list-inputbox-tab.png") && ok;
    Key(VK_ESCAPE);
    Say(list, "input box", 10, Page);
    return ok ? 0 : 1;
}

int RunList(vxhost::Args& args)
{
    const auto& words = args.words;
    const std::string shots = vxhost::ScreenshotDir(words);
    if (shots.empty() && !words.empty())
        return vxhost::Usage("list");
    vx::InitUi();
    CWnd* oldMain = AfxGetMainWnd();
    int rc = 0;
    {
        PartsFrame frame;
        frame.Build();
        AfxSetMainWnd(&frame);
        frame.ShowWindow(SW_SHOW);
        frame.SetActiveWindow();
        if (!shots.empty()) {
            rc = Screenshots(frame, shots);
        } else if (!vx::HasDisplay()) {
            vx::ProcessUiEvents();
            std::printf("offscreen: the list of %d rows was built and painted; --screenshot DIR writes its images.\n",
                        frame.list.GetItemCount());
        } else {
            std::printf("display: close the window to end.\n");
            frame.quitOnClose = true;
            rc = vx::RunUi();
        }
        AfxSetMainWnd(oldMain);
        frame.quitOnClose = false;
        frame.DestroyWindow();
    }
    vx::ShutdownUi();
    return rc;
}

} // namespace

VXHOST_COMMAND_NO_TOUR("list", "[--screenshot DIR]  a parts list of 2,000 rows with every kind of cell", 93, RunList);

#endif // VXHOST_WITH_UI

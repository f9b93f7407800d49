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

#include <QDir>
#include <QImage>
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

class PartsFrame : public CFrameWnd {
public:
    KXListCtrl list;
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

BOOL CollectPopups(HWND hwnd, LPARAM param)
{
    if (vx::IsLocalHandle(hwnd) && IsWindowVisible(hwnd))
        reinterpret_cast<std::vector<HWND>*>(param)->push_back(hwnd);
    return TRUE;
}

// The frame as it shows, with the popups of this process (a combo and its
// list) painted where they lie over it.
bool Shot(PartsFrame& frame, const std::string& file)
{
    vx::ProcessUiEvents(120);
    QImage image = vx::RenderWindow(frame);
    QWidget* base = vx::WidgetOfWindow(&frame);
    std::vector<HWND> windows;
    EnumWindows(&CollectPopups, reinterpret_cast<LPARAM>(&windows));
    QPainter painter(&image);
    for (auto it = windows.rbegin(); it != windows.rend(); ++it) {
        CWnd* w = CWnd::FromHandle(*it);
        QWidget* widget = w ? vx::WidgetOfWindow(w) : nullptr;
        if (!w || w == &frame || !widget || !base)
            continue;
        CRect r;
        w->GetWindowRect(&r);
        const QPoint at = base->mapFromGlobal(QPoint(r.left, r.top));
        painter.drawImage(at, vx::RenderWindow(*w));
    }
    painter.end();
    if (!image.save(QString::fromStdString(file))) {
        std::fprintf(stderr, "vxhost: cannot write %s\n", file.c_str());
        return false;
    }
    std::printf("wrote %s\n", file.c_str());
    return true;
}

int Screenshots(PartsFrame& frame, const std::string& dir)
{
    if (!QDir().mkpath(QString::fromStdString(dir))) {
        std::fprintf(stderr, "vxhost: cannot make the directory %s\n", dir.c_str());
        return 1;
    }
    KXListCtrl& list = frame.list;
    list.SetFocus();
    // A block selected, as a mouse drag leaves it.
    list.GetSelection().Select(3, Device, CellSelection::Plain);
    list.GetSelection().Select(8, Checked, CellSelection::Shift);
    bool ok = Shot(frame, dir + "/1-list-block.png");
    list.DeselectAll();
    // The text editor over a page number, with a changed text.
    list.DrawEdit(5, Page);
    if (CWnd* editor = list.GetEditWindow()) {
        editor->SetWindowText("12.4");
        editor->SendMessage(EM_SETSEL, 4, 4);
    }
    ok = Shot(frame, dir + "/2-list-textedit.png") && ok;
    list.SendMessage(WM_XEDIT_VK_ESCAPE);
    // The combo over a type, dropped down.
    list.DrawComboBox(7, Type);
    ok = Shot(frame, dir + "/3-list-combo.png") && ok;
    list.SendMessage(WM_XCOMBOLIST_VK_ESCAPE);
    vx::ProcessUiEvents(120);
    // The input box over a device, which walks with Tab, Enter and arrows.
    list.EditCurrentRecord(10, Device, -1);
    ok = Shot(frame, dir + "/4-list-inputbox.png") && ok;
    list.ShowEdiBox(10, Device, 0, -1);
    return ok ? 0 : 1;
}

int RunList(vxhost::Args& args)
{
    std::string shots;
    const auto& words = args.words;
    if (words.size() == 2 && words[0] == "--screenshot" && !vxhost::IsOption(words[1]) && !words[1].empty())
        shots = words[1];
    else if (!words.empty())
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

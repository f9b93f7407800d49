// The cell list at 10,000 rows of 10 columns, side by side with Qt's own
// table (a QTableView over a QStandardItemModel of the same cells), offscreen:
//
//   FillAndShow    make the list, fill every cell, show it once
//   RepaintFull    paint the whole visible list afresh
//   CopyBlock      copy all 100,000 cells to the clipboard; Qt's side is the
//                  same selection made into tab-separated text by hand
//   PasteBlock     paste such a block back, every cell written by the parent
//                  (compared with Qt's copy: Qt's table has no paste)
#include "lists/kxlistctrl.h"
#include "platform/framework/globalmemory.h"
#include "ui/clipboard/clipboard.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"

#include <benchmark/benchmark.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QImage>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QStandardItemModel>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr int kRows = 10000;
constexpr int kCols = 10;
constexpr int kWidth = 800;
constexpr int kHeight = 600;

void StartUi()
{
    static const bool started = [] {
        if (!std::getenv("QT_QPA_PLATFORM"))
            setenv("QT_QPA_PLATFORM", "offscreen", 1);
        vx::InitUi();
        return true;
    }();
    (void)started;
}

// The text of a cell; `round` makes a second set of texts for pasting.
void CellText(char* out, int row, int col, int round = 0)
{
    std::snprintf(out, 32, "%c%d.%d", round ? 'B' : 'A', row + 1, col + 1);
}

// The owner of the list's data: it writes what the list asks it to write.
class Owner : public CWnd {
protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_XLISTCTRL_SETTEXT) {
            const auto* change = reinterpret_cast<const XLISTCTRL_CHANGE*>(wParam);
            change->pList->SetItemText(change->nRow, change->nCol, reinterpret_cast<const char*>(lParam));
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

struct XList {
    Owner owner;
    KXListCtrl list;

    XList()
    {
        owner.CreateEx("owner", "XListBenchOwner", WS_POPUP | WS_VISIBLE, CRect(0, 0, kWidth, kHeight));
        list.CreateEx("", "SysListView32", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS,
                      CRect(0, 0, kWidth, kHeight), &owner, 100, WS_EX_CLIENTEDGE);
        list.SetCellMode(TRUE);
        char name[32];
        for (int c = 0; c < kCols; ++c) {
            std::snprintf(name, sizeof name, "Column %d", c + 1);
            list.InsertColumn(c, name, LVCFMT_LEFT, 76);
        }
    }
    ~XList()
    {
        list.DestroyWindow();
        owner.DestroyWindow();
    }
    void Fill()
    {
        char text[32];
        list.SetRedraw(FALSE);
        for (int r = 0; r < kRows; ++r) {
            CellText(text, r, 0);
            list.InsertItem(r, text);
            for (int c = 1; c < kCols; ++c) {
                CellText(text, r, c);
                list.SetItemText(r, c, text);
            }
        }
        list.SetRedraw(TRUE);
    }
    void SelectAllCells()
    {
        list.GetSelection().Select(0, 0, CellSelection::Plain);
        list.GetSelection().Select(kRows - 1, kCols - 1, CellSelection::Shift);
    }
};

struct QtTable {
    QStandardItemModel model;
    QTableView view;

    QtTable() : model(0, kCols)
    {
        view.resize(kWidth, kHeight);
        view.verticalHeader()->hide();
        view.verticalHeader()->setDefaultSectionSize(16);
        view.horizontalHeader()->setDefaultSectionSize(76);
    }
    void Fill()
    {
        char text[32];
        for (int c = 0; c < kCols; ++c)
            model.setHorizontalHeaderItem(c, new QStandardItem(QStringLiteral("Column %1").arg(c + 1)));
        model.setRowCount(kRows);
        for (int r = 0; r < kRows; ++r) {
            for (int c = 0; c < kCols; ++c) {
                CellText(text, r, c);
                model.setItem(r, c, new QStandardItem(QString::fromLatin1(text)));
            }
        }
        view.setModel(&model);
    }
};

QImage g_image(kWidth, kHeight, QImage::Format_RGB32);

void BM_FillAndShow_XList(benchmark::State& state)
{
    StartUi();
    for (auto _ : state) {
        auto x = std::make_unique<XList>();
        x->Fill();
        benchmark::DoNotOptimize(vx::RenderWindow(x->owner));
        state.PauseTiming();
        x.reset();
        vx::ProcessUiEvents();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_FillAndShow_XList)->Unit(benchmark::kMillisecond);

void BM_FillAndShow_QTableView(benchmark::State& state)
{
    StartUi();
    for (auto _ : state) {
        auto t = std::make_unique<QtTable>();
        t->Fill();
        t->view.show();
        g_image.fill(0);
        t->view.render(&g_image);
        state.PauseTiming();
        t.reset();
        vx::ProcessUiEvents();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_FillAndShow_QTableView)->Unit(benchmark::kMillisecond);

void BM_RepaintFull_XList(benchmark::State& state)
{
    StartUi();
    XList x;
    x.Fill();
    x.SelectAllCells(); // every visible cell in the highlight, as after Ctrl+A
    vx::ProcessUiEvents();
    for (auto _ : state)
        benchmark::DoNotOptimize(vx::RenderWindow(x.list));
}
BENCHMARK(BM_RepaintFull_XList)->Unit(benchmark::kMicrosecond);

void BM_RepaintFull_QTableView(benchmark::State& state)
{
    StartUi();
    QtTable t;
    t.Fill();
    t.view.show();
    t.view.selectAll();
    vx::ProcessUiEvents();
    for (auto _ : state) {
        t.view.viewport()->update();
        t.view.render(&g_image);
    }
}
BENCHMARK(BM_RepaintFull_QTableView)->Unit(benchmark::kMicrosecond);

void BM_CopyBlock_XList(benchmark::State& state)
{
    StartUi();
    XList x;
    x.Fill();
    x.SelectAllCells();
    for (auto _ : state)
        x.list.ZellenKopieren();
    // The suite reads the block's own bytes; other programs see tab text.
    bool ok = false;
    if (OpenClipboard(nullptr)) {
        if (HANDLE h = GetClipboardData(CF_TEXT))
            ok = std::strncmp(static_cast<const char*>(GlobalLock(h)), "VXXLIST#1#10#10000#A1.1#", 24) == 0;
        CloseClipboard();
    }
    if (!ok || !QGuiApplication::clipboard()->text().startsWith(QStringLiteral("A1.1\tA1.2")))
        state.SkipWithError("the block did not reach the clipboard");
}
BENCHMARK(BM_CopyBlock_XList)->Unit(benchmark::kMillisecond);

// What a program does to copy a QTableView's selection: the selected indexes
// in order, tabs between columns, line ends between rows.
void BM_CopyBlock_QTableView(benchmark::State& state)
{
    StartUi();
    QtTable t;
    t.Fill();
    t.view.selectAll();
    for (auto _ : state) {
        QModelIndexList indexes = t.view.selectionModel()->selectedIndexes();
        std::sort(indexes.begin(), indexes.end());
        QString text;
        int lastRow = -1;
        for (const QModelIndex& index : indexes) {
            if (lastRow != -1)
                text += index.row() != lastRow ? QStringLiteral("\n") : QStringLiteral("\t");
            text += index.data().toString();
            lastRow = index.row();
        }
        QGuiApplication::clipboard()->setText(text);
    }
    if (!QGuiApplication::clipboard()->text().startsWith(QStringLiteral("A1.1\tA1.2")))
        state.SkipWithError("the text did not reach the clipboard");
}
BENCHMARK(BM_CopyBlock_QTableView)->Unit(benchmark::kMillisecond);

// Two blocks of different texts take turns, so that each paste changes
// every cell (a paste of the texts already there writes nothing).
void BM_PasteBlock_XList(benchmark::State& state)
{
    StartUi();
    XList source;
    source.Fill();
    char text[32];
    for (int r = 0; r < kRows; ++r) {
        for (int c = 0; c < kCols; ++c) {
            CellText(text, r, c, 1);
            source.list.SetItemText(r, c, text);
        }
    }
    source.SelectAllCells();
    source.list.ZellenKopieren();
    std::unique_ptr<QMimeData> blocks[2];
    auto keep = [](const QMimeData* from) {
        auto copy = std::make_unique<QMimeData>();
        for (const QString& format : from->formats())
            copy->setData(format, from->data(format));
        return copy;
    };
    blocks[1] = keep(QGuiApplication::clipboard()->mimeData());
    XList target;
    target.Fill();
    target.SelectAllCells();
    target.list.ZellenKopieren();
    blocks[0] = keep(QGuiApplication::clipboard()->mimeData());
    int round = 1;
    for (auto _ : state) {
        state.PauseTiming();
        QGuiApplication::clipboard()->setMimeData(keep(blocks[round].get()).release());
        state.ResumeTiming();
        target.list.ZellenEinfuegen(-1, -1, -1, -1);
        round ^= 1;
    }
    CellText(text, kRows - 1, kCols - 1, round ^ 1);
    if (target.list.GetItemText(kRows - 1, kCols - 1) != text)
        state.SkipWithError("the paste did not reach the last cell");
}
BENCHMARK(BM_PasteBlock_XList)->Unit(benchmark::kMillisecond);

} // namespace

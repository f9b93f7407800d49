// KXFileOpenDlg: the files the callback lets through, with the desktop's
// icons, picked by simulated input.
#include "support/tempdir.h"
#include "uisupport/uitest.h"

#include "filedialogs/kxfileopendlg.h"
#include "ui/listviews/listview.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

constexpr UINT kStep = WM_APP + 9;

int DrawingsOnly(const char* path)
{
    const char* dot = std::strrchr(path, '.');
    return dot && !strcasecmp(dot, ".eld");
}

class Driven : public KXFileOpenDlg {
public:
    using KXFileOpenDlg::KXFileOpenDlg;
    std::function<void(Driven&)> step;
    CListCtrl& List() { return *static_cast<CListCtrl*>(GetDlgItem(IDC_FILELIST)); }

protected:
    BOOL OnInitDialog() override
    {
        KXFileOpenDlg::OnInitDialog();
        PostMessage(kStep);
        return TRUE;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == kStep && step) {
            step(*this);
            return 0;
        }
        return KXFileOpenDlg::WindowProc(message, wParam, lParam);
    }
};

} // namespace

TEST(KXFileOpenDlg, ListsWhatTheFilterLetsThroughAndFollowsTheSelection)
{
    vxtest::TempDir dir;
    dir.Write("b.ELD", "bb");
    dir.Write("a.eld", "a");
    dir.Write("notes.txt", "x");
    dir.MakeDir("sub.eld");
    const std::string folder = dir.Path();
    Driven dlg(DrawingsOnly, "Open", folder.c_str(), "*.*", "b.ELD");
    std::vector<std::string> rows;
    int icon = -1;
    CString afterClick;
    dlg.step = [&](Driven& d) {
        CListCtrl& list = d.List();
        for (int i = 0; i < list.GetItemCount(); ++i)
            rows.push_back(std::string(list.GetItemText(i, 0).GetString()) + " " + list.GetItemText(i, 1).GetString());
        LVITEM item{};
        item.mask = LVIF_IMAGE;
        item.iItem = 0;
        list.GetItem(&item);
        icon = item.iImage;
        // The preselected file is selected and named.
        EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 1);
        EXPECT_EQ(d.GetDlgItemText(KXFileOpenDlg::IDC_FILENAME), CString("b.ELD"));
        // A click on the first row names it; a double click takes it.
        CRect r;
        list.GetItemRect(0, &r, LVIR_LABEL);
        vxtest::Click(list, r.left + 4, r.top + 3);
        afterClick = d.GetDlgItemText(KXFileOpenDlg::IDC_FILENAME);
        vxtest::DoubleClick(list, r.left + 4, r.top + 3);
    };
    ASSERT_EQ(dlg.DoModal(), IDOK);
    EXPECT_EQ(rows, (std::vector<std::string>{"a.eld 1", "b.ELD 2"}));
    EXPECT_EQ(icon, KXFileOpenDlg::GetFileIconIndex((folder + "/a.eld").c_str()));
    EXPECT_GE(icon, 0);
    EXPECT_LT(icon, ImageList_GetImageCount(KXFileOpenDlg::GetSystemImageListHandle()));
    EXPECT_NE(KXFileOpenDlg::GetFileIconIndex(folder.c_str()), icon); // a folder looks like one
    EXPECT_EQ(afterClick, CString("a.eld"));
    EXPECT_EQ(std::string(dlg.GetPathName().GetString()), folder + "/a.eld");
}

TEST(KXFileOpenDlg, OnlyAListedFileCanBeChosen)
{
    vxtest::TempDir dir;
    dir.Write("notes.txt", "x");
    const std::string folder = dir.Path();
    Driven dlg(DrawingsOnly, "Open", folder.c_str(), nullptr, nullptr);
    bool stayed = false;
    dlg.step = [&](Driven& d) {
        EXPECT_EQ(d.List().GetItemCount(), 0);
        d.SetDlgItemText(KXFileOpenDlg::IDC_FILENAME, "notes.txt");
        vxtest::Click(*d.GetDlgItem(IDOK), 3, 3);
        stayed = d.m_hWnd && d.IsWindowVisible();
        vxtest::Click(*d.GetDlgItem(IDCANCEL), 3, 3);
    };
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_TRUE(stayed);
    EXPECT_EQ(dlg.GetPathName(), CString());
}

// The desktop's icons are the process's: a dialog that has ended leaves
// them to the next one.
TEST(KXFileOpenDlg, TheIconsOutliveADialog)
{
    vxtest::TempDir dir;
    dir.Write("a.eld", "x");
    const std::string folder = dir.Path();
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        Driven dlg(DrawingsOnly, "Open", folder.c_str(), nullptr, nullptr);
        int icon = -2;
        dlg.step = [&](Driven& d) {
            LVITEM item{};
            item.mask = LVIF_IMAGE;
            item.iItem = 0;
            d.List().GetItem(&item);
            icon = item.iImage;
            vxtest::Click(*d.GetDlgItem(IDCANCEL), 3, 3);
        };
        EXPECT_EQ(dlg.DoModal(), IDCANCEL);
        EXPECT_GE(icon, 0);
        const HIMAGELIST list = KXFileOpenDlg::GetSystemImageListHandle();
        EXPECT_LT(icon, ImageList_GetImageCount(list));
        // A type not seen before still gets its icon.
        const std::string other = folder + (round ? "/b.txt" : "/b.pdf");
        EXPECT_GE(KXFileOpenDlg::GetFileIconIndex(other.c_str()), 0);
    }
}

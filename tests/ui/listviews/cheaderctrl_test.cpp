#include "ui/listviews/listviewtest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/images/cbitmap.h"
#include "ui/images/cimagelist.h"

namespace {

using vxtest::RecordingParent;

HDITEM TextItem(const char* text, int width, int fmt = HDF_LEFT | HDF_STRING)
{
    HDITEM item{};
    item.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT;
    item.pszText = const_cast<char*>(text);
    item.cxy = width;
    item.fmt = fmt;
    return item;
}

class Header : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Create());
        ASSERT_TRUE(header.Create(WS_CHILD | WS_VISIBLE | HDS_BUTTONS | HDS_DRAGDROP, CRect(0, 0, 300, 20), &parent, 7));
        for (auto [text, width] : {std::pair{"A", 50}, std::pair{"B", 70}, std::pair{"C", 60}}) {
            HDITEM item = TextItem(text, width);
            header.InsertItem(header.GetItemCount(), &item);
        }
    }
    RecordingParent parent;
    CHeaderCtrl header;
};

TEST_F(Header, ItemsOrderAndHitTests)
{
    EXPECT_EQ(header.GetItemCount(), 3);
    CRect r;
    ASSERT_TRUE(header.GetItemRect(1, &r));
    EXPECT_EQ(r, CRect(50, 0, 120, 20));
    int order[3] = {2, 0, 1};
    ASSERT_TRUE(header.SetOrderArray(3, order));
    ASSERT_TRUE(header.GetItemRect(1, &r));
    EXPECT_EQ(r, CRect(110, 0, 180, 20));
    EXPECT_EQ(header.OrderToIndex(0), 2);
    int bad[3] = {0, 0, 1};
    EXPECT_FALSE(header.SetOrderArray(3, bad));

    HDHITTESTINFO hit{};
    hit.pt = CPoint(120, 5);
    EXPECT_EQ(header.HitTest(&hit), 1);
    EXPECT_EQ(hit.flags, HHT_ONHEADER);
    hit.pt = CPoint(178, 5); // within reach of item 1's right edge
    EXPECT_EQ(header.HitTest(&hit), 1);
    EXPECT_EQ(hit.flags, HHT_ONDIVIDER);
    hit.pt = CPoint(250, 5);
    EXPECT_EQ(header.HitTest(&hit), -1);
    EXPECT_EQ(hit.flags, HHT_NOWHERE);

    HDLAYOUT layout{};
    RECT area{0, 0, 300, 200};
    WINDOWPOS pos{};
    layout.prc = &area;
    layout.pwpos = &pos;
    ASSERT_TRUE(header.Layout(&layout));
    EXPECT_EQ(pos.cy, header.GetIdealHeight());
    EXPECT_EQ(area.top, header.GetIdealHeight());

    ASSERT_TRUE(header.DeleteItem(2));
    ASSERT_TRUE(header.GetItemRect(0, &r));
    EXPECT_EQ(r.left, 0);
}

TEST_F(Header, DividerDragResizesWithNotifications)
{
    parent.Clear();
    vxtest::Drag(header, CPoint(50, 10), CPoint(90, 10));
    CRect r;
    header.GetItemRect(0, &r);
    EXPECT_EQ(r.Width(), 90);
    EXPECT_EQ(parent.Count(HDN_BEGINTRACK), 1);
    EXPECT_GE(parent.Count(HDN_TRACK), 1);
    EXPECT_EQ(parent.Count(HDN_ENDTRACK), 1);
    EXPECT_GE(parent.Count(HDN_ITEMCHANGED), 1);
    EXPECT_EQ(parent.Count(HDN_ITEMCLICK), 0);
    vxtest::Click(header, CPoint(100, 10));
    EXPECT_EQ(parent.Count(HDN_ITEMCLICK), 1);
}

TEST_F(Header, DragDropReordersUnlessTheParentPlacesIt)
{
    parent.Clear();
    vxtest::Drag(header, CPoint(10, 10), CPoint(170, 10)); // A past C
    int order[3] = {};
    header.GetOrderArray(order, 3);
    EXPECT_EQ(std::vector<int>(order, order + 3), (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(parent.Count(HDN_BEGINDRAG), 1);
    EXPECT_EQ(parent.Count(HDN_ENDDRAG), 1);
    EXPECT_EQ(parent.Count(HDN_ITEMCLICK), 0);
}

TEST_F(Header, PaintsTitlesImagesAndCheckBoxes)
{
    header.ModifyStyle(0, HDS_CHECKBOXES);
    CImageList images;
    ASSERT_TRUE(images.Create(8, 8, ILC_COLOR24, 0, 1));
    vxtest::Canvas square(8, 8, RGB(200, 0, 0));
    CBitmap bmp;
    bmp.Attach(vx::BitmapFromQImage(square.Image()));
    images.Add(&bmp, RGB(255, 0, 255));
    header.SetImageList(&images);
    HDITEM item{};
    item.mask = HDI_FORMAT | HDI_IMAGE;
    item.fmt = HDF_LEFT | HDF_STRING | HDF_IMAGE;
    item.iImage = 0;
    header.SetItem(1, &item);
    item.mask = HDI_FORMAT;
    item.fmt = HDF_LEFT | HDF_STRING | HDF_CHECKBOX | HDF_CHECKED;
    header.SetItem(2, &item);
    const QImage img = vxtest::Render(header);
    EXPECT_GT(vxtest::CountColor(img, CRect(50, 0, 120, 20), RGB(200, 0, 0)), 40);
    // The check box: a white square with the mark in window text.
    EXPECT_GT(vxtest::CountColor(img, CRect(120, 0, 140, 20), GetSysColor(COLOR_WINDOW)), 40);
    EXPECT_GT(vxtest::CountColor(img, CRect(120, 0, 140, 20), GetSysColor(COLOR_WINDOWTEXT)), 12);
    // Titles in button text, faces raised.
    EXPECT_GT(vxtest::CountColor(img, CRect(0, 0, 50, 20), GetSysColor(COLOR_BTNTEXT)), 5);
    EXPECT_PIXEL(img, 0, 0, GetSysColor(COLOR_BTNHIGHLIGHT));

    // A click on the check box is told as such; the header leaves the state to its owner.
    parent.Clear();
    vxtest::Click(header, CPoint(120 + 10, 10));
    EXPECT_EQ(parent.Count(HDN_ITEMSTATEICONCLICK), 1);
    EXPECT_EQ(parent.Count(HDN_ITEMCLICK), 0);
    header.SetImageList(nullptr);
}

class HeaderInList : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.Create());
        ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 300, 200), &parent, 100));
        list.InsertColumn(0, "Device", LVCFMT_LEFT, 80);
        list.InsertColumn(1, "Page", LVCFMT_LEFT, 60);
        list.InsertColumn(2, "Text", LVCFMT_LEFT, 100);
        for (int i = 0; i < 3; ++i) {
            list.InsertItem(i, "K");
            list.SetItemText(i, 1, "P");
            list.SetItemText(i, 2, "T");
        }
    }
    RecordingParent parent;
    CListCtrl list;
};

TEST_F(HeaderInList, DividerDragResizesTheColumn)
{
    CHeaderCtrl& header = *list.GetHeaderCtrl();
    vxtest::Drag(header, CPoint(80, 8), CPoint(110, 8));
    EXPECT_EQ(list.GetColumnWidth(0), 110);
    CRect cell;
    list.GetSubItemRect(0, 1, LVIR_BOUNDS, cell);
    EXPECT_EQ(cell.left, 110);
    // The header's own notices stay with the list.
    EXPECT_EQ(parent.Count(HDN_ENDTRACK), 0);
}

TEST_F(HeaderInList, ColumnClickAndDragWithHeaderDragDrop)
{
    CHeaderCtrl& header = *list.GetHeaderCtrl();
    parent.Clear();
    vxtest::Click(header, CPoint(100, 8));
    ASSERT_EQ(parent.Count(LVN_COLUMNCLICK), 1);
    EXPECT_EQ(parent.listNotes.back().iSubItem, 1);

    // Without LVS_EX_HEADERDRAGDROP columns stay where they are.
    vxtest::Drag(header, CPoint(10, 8), CPoint(200, 8));
    int order[3] = {};
    list.GetColumnOrderArray(order, 3);
    EXPECT_EQ(std::vector<int>(order, order + 3), (std::vector<int>{0, 1, 2}));
    list.SetExtendedStyle(LVS_EX_HEADERDRAGDROP);
    vxtest::Drag(header, CPoint(10, 8), CPoint(200, 8));
    list.GetColumnOrderArray(order, 3);
    EXPECT_EQ(std::vector<int>(order, order + 3), (std::vector<int>{1, 2, 0}));
    CRect cell;
    list.GetSubItemRect(0, 0, LVIR_LABEL, cell);
    EXPECT_EQ(cell.left, 160);
}

TEST_F(HeaderInList, AHeaderOfItsOwnTakesOverItemsAndPlace)
{
    CHeaderCtrl mine;
    const HWND old = list.GetHeaderCtrl()->m_hWnd;
    list.SetHeaderCtrl(&mine);
    EXPECT_EQ(list.GetHeaderCtrl(), &mine);
    EXPECT_FALSE(IsWindow(old));
    EXPECT_EQ(mine.GetItemCount(), 3);
    CRect r;
    mine.GetItemRect(2, &r);
    EXPECT_EQ(r, CRect(140, 0, 240, r.bottom));
    vxtest::Drag(mine, CPoint(80, 8), CPoint(90, 8));
    EXPECT_EQ(list.GetColumnWidth(0), 90);
    list.SetHeaderCtrl(nullptr);
    EXPECT_EQ(mine.m_hWnd, nullptr);
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 3);
}

} // namespace

// The pane tree's arithmetic, without painting: division from the windows'
// places, minima, the placement rules, drag limits, hiding and showing,
// nested trees and the persisted sizes (read back in a new process too).
#include "uisupport/uitest.h"

#include "layout/ksplitpane.h"

#include "config/kprofile.h"
#include "ui/controls/cstatic.h"
#include "ui/gdi/cgdiobject.h"

#include "support/tempdir.h"

#include <unistd.h>
#include <sys/wait.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using Mode = KSplitPane::Mode;

// A parent window (its client area is the whole window) with children.
class PaneTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(parent.CreateEx("panes", "PaneTest", WS_POPUP | WS_VISIBLE, CRect(0, 0, 400, 300)));
    }

    CWnd* Child(int left, int top, int right, int bottom)
    {
        auto w = std::make_unique<CWnd>();
        EXPECT_TRUE(w->CreateEx("", "Child", WS_CHILD | WS_VISIBLE, CRect(left, top, right, bottom), &parent,
                                static_cast<UINT>(100 + children.size())));
        children.push_back(std::move(w));
        return children.back().get();
    }

    CStatic* Label(const char* text, int left, int top, int right, int bottom)
    {
        auto s = std::make_unique<CStatic>();
        EXPECT_TRUE(s->Create(text, WS_CHILD | WS_VISIBLE, CRect(left, top, right, bottom), &parent, 200));
        CStatic* raw = s.get();
        children.push_back(std::move(s));
        return raw;
    }

    static CRect Place(CWnd* w)
    {
        CRect r;
        w->GetWindowRect(&r);
        w->GetParent()->ScreenToClient(&r);
        return r;
    }

    // Left | right: L (10, 10, 150, 290) and R (160, 10, 390, 290), both stretching.
    void TwoSides(KSplitPane& node)
    {
        left = Child(10, 10, 150, 290);
        right = Child(160, 10, 390, 290);
        node.AddWindow(left, KSplitPane::sideLeft, KSplitPane::modeStretch, KSplitPane::modeStretch);
        node.AddWindow(right, KSplitPane::sideRight, KSplitPane::modeStretch, KSplitPane::modeStretch);
        node.SetupPane();
        node.MovePane(-1, -1);
    }

    CWnd parent;
    std::vector<std::unique_ptr<CWnd>> children;
    CWnd* left = nullptr;
    CWnd* right = nullptr;
};

} // namespace

TEST(KSplitPaneUnion, ARectangleOfZeroWidthOnlyStillCounts)
{
    const CRect none(3, 3, 3, 3);
    const CRect a(0, 0, 0, 10); // zero width, but not empty by the class's rule
    const CRect b(5, 5, 6, 6);
    EXPECT_EQ(KSplitPane::UnionRect(&none, &b), b);
    EXPECT_EQ(KSplitPane::UnionRect(&b, &none), b);
    EXPECT_EQ(KSplitPane::UnionRect(&a, &b), CRect(0, 0, 6, 10));
    EXPECT_EQ(KSplitPane::UnionRect(&none, &none), none);
}

TEST_F(PaneTest, DividesAtTheEndOfTheLeftContentAndMeasuresMinima)
{
    KSplitPane node;
    TwoSides(node);
    EXPECT_EQ(node.GetPaneRect(), CRect(10, 10, 390, 290));
    EXPECT_EQ(node.GetLeftRect(), CRect(10, 10, 150, 290));
    // The bar goes where the left content ends, not between the contents.
    EXPECT_EQ(node.GetRightRect(), CRect(154, 10, 390, 290));
    EXPECT_EQ(node.GetSplitterRect(), CRect(150, 10, 154, 290));
    // Window sides never need less than 30 + 30.
    EXPECT_EQ(node.GetLeftMinWidth(), 60);
    EXPECT_EQ(node.GetRightMinWidth(), 60);
    EXPECT_EQ(node.GetLeftMinHeight(), 60);
    EXPECT_EQ(node.GetMinWidth(), 60 + 60 + 4);
    EXPECT_EQ(node.GetMinHeight(), 60 + 4);
    EXPECT_EQ(node.GetLeftWidth(), 140);
    EXPECT_EQ(node.GetLeftHeight(), 280);
    // Laid out at its own size, nothing moves.
    EXPECT_EQ(Place(left), CRect(10, 10, 150, 290));
    EXPECT_EQ(Place(right), CRect(160, 10, 390, 290));
}

TEST_F(PaneTest, ALabelNeedsItsTextAndAMinimumIsCutToThePane)
{
    KSplitPane shortNode;
    shortNode.AddWindow(Label("Ab", 10, 10, 200, 30), KSplitPane::sideLeft, KSplitPane::modeStretch,
                        KSplitPane::modeStretch);
    shortNode.SetupPane();
    KSplitPane longNode;
    longNode.AddWindow(Label("A much longer label than the other", 10, 40, 200, 60), KSplitPane::sideLeft,
                       KSplitPane::modeStretch, KSplitPane::modeStretch);
    longNode.SetupPane();
    EXPECT_GE(shortNode.GetLeftMinWidth(), 60);
    EXPECT_GT(longNode.GetLeftMinWidth(), shortNode.GetLeftMinWidth() + 40);
    EXPECT_LE(longNode.GetLeftMinWidth(), 190);
    // A label of a class of its own is measured as any other window.
    struct OwnLabel : CStatic {};
    auto own = std::make_unique<OwnLabel>();
    ASSERT_TRUE(own->Create("A much longer label than the other", WS_CHILD | WS_VISIBLE, CRect(10, 100, 200, 120),
                            &parent, 201));
    KSplitPane ownNode;
    ownNode.AddWindow(own.get(), KSplitPane::sideLeft, KSplitPane::modeStretch, KSplitPane::modeStretch);
    ownNode.SetupPane();
    EXPECT_EQ(ownNode.GetLeftMinWidth(), 60);
    children.push_back(std::move(own));
    // A pane narrower than 60 has its own width as minimum.
    KSplitPane narrow;
    narrow.AddWindow(Label("A much longer label than the other", 10, 70, 50, 90), KSplitPane::sideLeft,
                     KSplitPane::modeStretch, KSplitPane::modeStretch);
    narrow.SetupPane();
    EXPECT_EQ(narrow.GetLeftMinWidth(), 40);
    EXPECT_EQ(narrow.GetLeftMinHeight(), 20);
}

TEST_F(PaneTest, MinimaFollowTheRulesOfEachSide)
{
    // Left pane (10, 10, 200, 200); right pane (204, 10, 390, 200).
    KSplitPane node;
    node.AddWindow(Child(10, 10, 100, 40), KSplitPane::sideLeft, KSplitPane::modeNear, KSplitPane::modeNear);
    node.AddWindow(Child(120, 150, 200, 200), KSplitPane::sideLeft, KSplitPane::modeFar, KSplitPane::modeFar);
    node.AddWindow(Child(214, 10, 300, 40), KSplitPane::sideRight, KSplitPane::modeFar, KSplitPane::modeFar);
    node.AddWindow(Child(204, 60, 390, 90), KSplitPane::sideRight, KSplitPane::modeStretch, KSplitPane::modeCentre);
    node.SetupPane();
    ASSERT_EQ(node.GetLeftRect(), CRect(10, 10, 200, 200));
    ASSERT_EQ(node.GetRightRect(), CRect(204, 10, 390, 200));
    // Left: near x = relative right 90; far x = offset 0 + width 80 + 3 = 83.
    // Near y = relative bottom 30; far y = offset 0, so 30 stays.
    EXPECT_EQ(node.GetLeftMinWidth(), 90 + 83);
    EXPECT_EQ(node.GetLeftMinHeight(), 30 + 30);
    // Right: far x = max(30, offset 390 - 300 = 90, stretched window's 390 - 390 = 0) = 90; near x =
    // max(30, 0 + 5) = 30. Near y = relative bottom 80 of the centred window; far y = 200 - 40 = 160,
    // so the sum 240 is cut to the pane's height 190.
    EXPECT_EQ(node.GetRightMinWidth(), 30 + 90);
    EXPECT_EQ(node.GetRightMinHeight(), 190);
}

TEST_F(PaneTest, EachModePlacesItsWindowWhenThePaneGrows)
{
    KSplitPane node;
    CWnd* fixed = Child(10, 10, 60, 30);
    CWnd* stretch = Child(10, 40, 60, 60);
    CWnd* nearEdge = Child(20, 70, 60, 90);
    CWnd* farEdge = Child(30, 100, 100, 120);
    CWnd* centred = Child(40, 130, 80, 150);
    CWnd* other = Child(15, 160, 45, 170);
    node.AddWindow(fixed, KSplitPane::sideLeft, KSplitPane::modeFixed, KSplitPane::modeFixed);
    node.AddWindow(stretch, KSplitPane::sideLeft, KSplitPane::modeStretch, KSplitPane::modeFixed);
    node.AddWindow(nearEdge, KSplitPane::sideLeft, KSplitPane::modeNear, KSplitPane::modeFixed);
    node.AddWindow(farEdge, KSplitPane::sideLeft, KSplitPane::modeFar, KSplitPane::modeFixed);
    node.AddWindow(centred, KSplitPane::sideLeft, KSplitPane::modeCentre, KSplitPane::modeFixed);
    node.AddWindow(other, KSplitPane::sideLeft, 7, KSplitPane::modeFixed);
    node.AddWindow(Child(110, 10, 200, 170), KSplitPane::sideRight, KSplitPane::modeFixed, KSplitPane::modeFixed);
    node.SetupPane();
    ASSERT_EQ(node.GetLeftRect(), CRect(10, 10, 100, 170));
    // The left pane grows from 90 to 190 pixels and moves 5 to the right.
    node.SetLeftWidth(190);
    node.MovePane(15, 10, 290, 160);
    EXPECT_EQ(node.GetLeftRect(), CRect(15, 10, 205, 170));
    EXPECT_EQ(Place(fixed), CRect(10, 10, 60, 30));       // where the template put it
    EXPECT_EQ(Place(stretch), CRect(15, 40, 165, 60));    // + growth 100
    EXPECT_EQ(Place(nearEdge), CRect(25, 70, 65, 90));    // 10 from the left edge
    EXPECT_EQ(Place(farEdge), CRect(135, 100, 205, 120)); // 0 from the right edge
    EXPECT_EQ(Place(centred), CRect(90, 130, 130, 150));  // 15 + (190 - 40) / 2
    EXPECT_EQ(Place(other), CRect(20, 160, 50, 170));     // any other value: from the new left edge
}

TEST_F(PaneTest, ADragStopsAtTheMinimaAndTheRightSideWins)
{
    KSplitPane node;
    TwoSides(node);
    node.MoveSplitter(CPoint(300, 50));
    EXPECT_EQ(node.GetLeftWidth(), 290);
    EXPECT_EQ(node.GetSplitterRect(), CRect(300, 10, 304, 290));
    EXPECT_EQ(Place(left), CRect(10, 10, 300, 290));
    EXPECT_EQ(Place(right), CRect(310, 10, 390, 290));
    node.MoveSplitter(CPoint(0, 50));
    EXPECT_EQ(node.GetLeftWidth(), 60);
    node.MoveSplitter(CPoint(1000, 50));
    EXPECT_EQ(node.GetLeftWidth(), 380 - 60);
    EXPECT_EQ(Place(right), CRect(340, 10, 390, 290));
    // A node too narrow for both minima: the right side keeps its own.
    node.MovePane(10, 10, 100, 280);
    EXPECT_EQ(node.GetLeftWidth(), 40);
    node.MoveSplitter(CPoint(50, 50));
    EXPECT_EQ(node.GetLeftWidth(), 40);
    EXPECT_EQ(node.GetRightRect(), CRect(54, 10, 110, 290));
}

TEST_F(PaneTest, HidingTheRightSideRemembersTheLeftSize)
{
    KSplitPane node;
    TwoSides(node);
    node.MoveSplitter(CPoint(250, 0));
    node.ShowRight(0);
    node.MovePane(-1, -1);
    EXPECT_FALSE(right->IsWindowVisible());
    EXPECT_EQ(node.GetLeftRect(), node.GetPaneRect());
    EXPECT_TRUE(node.GetSplitterRect().IsRectEmpty());
    EXPECT_EQ(Place(left), CRect(10, 10, 390, 290));
    // A second hide changes nothing, the memory included.
    node.ShowRight(0);
    node.ShowRight(1);
    node.MovePane(-1, -1);
    EXPECT_TRUE(right->IsWindowVisible());
    EXPECT_EQ(node.GetLeftWidth(), 240);
    EXPECT_EQ(node.GetSplitterRect(), CRect(250, 10, 254, 290));
    EXPECT_EQ(Place(left), CRect(10, 10, 250, 290));
}

TEST_F(PaneTest, HidingTheLeftSideGivesTheRightTheWholeAndBothHiddenMovesNothing)
{
    KSplitPane node;
    TwoSides(node);
    node.ShowLeft(0);
    node.MovePane(-1, -1);
    EXPECT_FALSE(left->IsWindowVisible());
    EXPECT_EQ(node.GetRightRect(), node.GetPaneRect());
    EXPECT_EQ(Place(right), CRect(16, 10, 390, 290));
    EXPECT_TRUE(node.GetSplitterRect().IsRectEmpty());
    node.ShowRight(0);
    const CRect before = node.GetPaneRect();
    node.MovePane(0, 0, 200, 200);
    EXPECT_EQ(node.GetPaneRect(), before);
    EXPECT_EQ(Place(right), CRect(16, 10, 390, 290));
    node.Show(1);
    EXPECT_TRUE(node.IsVisible());
    EXPECT_TRUE(left->IsWindowVisible());
    EXPECT_TRUE(right->IsWindowVisible());
}

TEST_F(PaneTest, AFixedNodeHasNoBarButMovesFromCode)
{
    KSplitPane node;
    node.SetMovable(0);
    TwoSides(node);
    EXPECT_TRUE(node.GetSplitterRect().IsRectEmpty());
    KSplitPane* hit = nullptr;
    EXPECT_EQ(node.IsPointInSplitter(CPoint(151, 100), &hit), nullptr);
    EXPECT_EQ(hit, nullptr);
    node.MoveSplitter(CPoint(200, 0));
    EXPECT_EQ(node.GetLeftWidth(), 190);
    EXPECT_EQ(Place(right), CRect(210, 10, 390, 290));
}

TEST_F(PaneTest, NestedTreesSumTheirMinimaAndMoveTogether)
{
    KSplitPane root;
    auto* child = new KSplitPane;
    child->SetOrientation(0);
    root.AttachChild(child, KSplitPane::sideLeft);
    CWnd* top = Child(10, 10, 150, 100);
    CWnd* bottom = Child(10, 110, 150, 290);
    child->AddWindow(top, KSplitPane::sideLeft, KSplitPane::modeStretch, KSplitPane::modeStretch);
    child->AddWindow(bottom, KSplitPane::sideRight, KSplitPane::modeStretch, KSplitPane::modeStretch);
    right = Child(160, 10, 390, 290);
    root.AddWindow(right, KSplitPane::sideRight, KSplitPane::modeStretch, KSplitPane::modeStretch);
    root.SetupPane();
    root.MovePane(-1, -1);
    EXPECT_EQ(root.GetLeftKind(), KSplitPane::kindPane);
    EXPECT_EQ(child->GetRightRect(), CRect(10, 104, 150, 290));
    EXPECT_EQ(root.GetLeftMinWidth(), 64);        // the child's widest side and its bar
    EXPECT_EQ(root.GetLeftMinHeight(), 124);      // both of the child's sides and its bar
    EXPECT_EQ(root.GetMinWidth(), 64 + 60 + 4);
    EXPECT_EQ(root.GetMinHeight(), 124 + 4);

    KSplitPane* hit = nullptr;
    EXPECT_EQ(root.IsPointInSplitter(CPoint(151, 50), &hit), IDC_SIZEWE);
    EXPECT_EQ(hit, &root);
    EXPECT_EQ(root.IsPointInSplitter(CPoint(50, 101), &hit), IDC_SIZENS);
    EXPECT_EQ(hit, child);
    hit = nullptr;
    EXPECT_EQ(root.IsPointInSplitter(CPoint(50, 50), &hit), nullptr);
    EXPECT_EQ(hit, nullptr);

    root.MoveSplitter(CPoint(250, 0));
    EXPECT_EQ(Place(top), CRect(10, 10, 250, 100));
    EXPECT_EQ(Place(bottom), CRect(10, 110, 250, 290));
    EXPECT_EQ(Place(right), CRect(260, 10, 390, 290));
    child->MoveSplitter(CPoint(0, 200));
    EXPECT_EQ(Place(top), CRect(10, 10, 250, 200));
    EXPECT_EQ(Place(bottom), CRect(10, 210, 250, 290));
    // The child's bottom minimum (60) holds the bar at 290 - 60.
    child->MoveSplitter(CPoint(0, 280));
    EXPECT_EQ(child->GetLeftHeight(), 220);
    // Hiding the child's bottom side hides its window and takes its bar.
    child->ShowRight(0);
    root.MovePane(-1, -1);
    EXPECT_FALSE(bottom->IsWindowVisible());
    EXPECT_EQ(Place(top), CRect(10, 10, 250, 290));
    EXPECT_EQ(root.IsPointInSplitter(CPoint(50, 231), &hit), nullptr);
}

TEST_F(PaneTest, AChildOnTheRightIsKeptButNeverEntered)
{
    KSplitPane root;
    TwoSides(root);
    auto* child = new KSplitPane;
    CWnd* inner = Child(300, 100, 350, 150);
    child->AddWindow(inner, KSplitPane::sideLeft, KSplitPane::modeStretch, KSplitPane::modeStretch);
    root.AttachChild(child, KSplitPane::sideRight);
    EXPECT_EQ(root.GetRightPane(), child);
    EXPECT_EQ(root.GetRightWindows(), nullptr);
    EXPECT_EQ(root.GetRightKind(), KSplitPane::kindWindows); // as it was before the child came
    root.AttachChild(new KSplitPane, KSplitPane::sideLeft);
    EXPECT_EQ(root.GetLeftKind(), KSplitPane::kindPane);
    EXPECT_EQ(root.GetLeftWindows(), nullptr);

    KSplitPane fresh;
    auto* rightChild = new KSplitPane;
    rightChild->AddWindow(inner, KSplitPane::sideLeft, KSplitPane::modeStretch, KSplitPane::modeStretch);
    fresh.AttachChild(rightChild, KSplitPane::sideRight);
    EXPECT_EQ(fresh.GetRightKind(), KSplitPane::kindNothing);
    fresh.SetupPane();
    fresh.MovePane(0, 0, 100, 100);
    // The child was neither measured nor moved.
    EXPECT_TRUE(rightChild->GetPaneRect().IsRectEmpty());
    EXPECT_EQ(Place(inner), CRect(300, 100, 350, 150));
}

TEST_F(PaneTest, RemovingAWindowMeasuresTheNodeAgain)
{
    KSplitPane node;
    TwoSides(node);
    CWnd* extra = Child(10, 295, 380, 299);
    node.AddWindow(extra, KSplitPane::sideLeft, KSplitPane::modeStretch, KSplitPane::modeFixed);
    node.SetupPane();
    EXPECT_EQ(node.GetLeftRect(), CRect(10, 10, 380, 299));
    EXPECT_TRUE(node.RemoveWindow(extra));
    EXPECT_EQ(node.GetLeftRect(), CRect(10, 10, 150, 290));
    EXPECT_FALSE(node.RemoveWindow(extra));
    EXPECT_EQ(node.GetLeftWindows()->GetSize(), 1);
}

namespace {

// A tree of two nodes: root left | right, its left child top / bottom.
struct TwoNodes {
    KSplitPane root;
    KSplitPane* middle = nullptr;
};

} // namespace

// Opens the helpers of the fixture to the tree builder.
class PanePersistenceTest : public PaneTest {
protected:
    void Build(TwoNodes& tree)
    {
        tree.middle = new KSplitPane;
        tree.middle->SetOrientation(0);
        tree.root.AttachChild(tree.middle, KSplitPane::sideLeft);
        const auto add = [&](KSplitPane* node, int side, int l, int t, int r, int b) {
            node->AddWindow(Child(l, t, r, b), side, KSplitPane::modeStretch, KSplitPane::modeStretch);
        };
        add(tree.middle, KSplitPane::sideLeft, 10, 10, 190, 140);
        add(tree.middle, KSplitPane::sideRight, 10, 150, 190, 290);
        add(&tree.root, KSplitPane::sideRight, 200, 10, 390, 290);
        tree.root.SetupPane();
        tree.root.MovePane(-1, -1);
    }

    static void Drag(TwoNodes& tree)
    {
        tree.root.MoveSplitter(CPoint(250, 0));
        tree.middle->MoveSplitter(CPoint(0, 120));
    }
};

TEST_F(PanePersistenceTest, SizesAreWrittenPreorderAndAZeroKeepsTheTemplate)
{
    vxtest::TempDir dir;
    std::strcpy(g_profiledirAT, dir.Path("VXWIN55AT.INI").c_str());
    TwoNodes tree;
    Build(tree);
    Drag(tree);
    int counter = 0;
    tree.root.SaveLeftWidth("Panes", &counter, 10);
    EXPECT_EQ(counter, 2);
    EXPECT_EQ(KProfile::GetProfileIntA("Panes", "Pane0", -1, 10), 240u); // the root: a width
    EXPECT_EQ(KProfile::GetProfileIntA("Panes", "Pane1", -1, 10), 110u); // its child: a height

    // A zero or a missing key leaves the template's size.
    KProfile::WriteProfileInt("Panes", "Pane0", 0, 10);
    KProfile::WriteProfileStringA("Panes", "Pane1", nullptr, 10);
    TwoNodes again;
    Build(again);
    counter = 0;
    again.root.RestoreLeftWidth("Panes", &counter, 10);
    EXPECT_EQ(counter, 2);
    EXPECT_EQ(again.root.GetLeftWidth(), 180);
    EXPECT_EQ(again.middle->GetLeftHeight(), 130);
    g_profiledirAT[0] = 0;
}

// The half of the next test that runs in a process of its own.
TEST_F(PanePersistenceTest, ReadBackInANewProcessChild)
{
    const char* ini = std::getenv("VX_PANE_PERSISTENCE_INI");
    if (!ini)
        GTEST_SKIP() << "runs as the child of SizesComeBackInANewProcess";
    std::strcpy(g_profiledirAT, ini);
    TwoNodes tree;
    Build(tree);
    int counter = 0;
    tree.root.RestoreLeftWidth("Panes", &counter, 10);
    EXPECT_EQ(tree.root.GetLeftWidth(), 240);
    EXPECT_EQ(tree.middle->GetLeftHeight(), 110);
    EXPECT_EQ(Place(children[0].get()), CRect(10, 10, 250, 120));
    EXPECT_EQ(Place(children[1].get()), CRect(10, 130, 250, 290));
    EXPECT_EQ(Place(children[2].get()), CRect(260, 10, 390, 290));
}

TEST_F(PanePersistenceTest, SizesComeBackInANewProcess)
{
    vxtest::TempDir dir;
    const std::string ini = dir.Path("VXWIN55AT.INI");
    std::strcpy(g_profiledirAT, ini.c_str());
    {
        TwoNodes tree;
        Build(tree);
        Drag(tree);
        int counter = 0;
        tree.root.SaveLeftWidth("Panes", &counter, 10);
    }
    g_profiledirAT[0] = 0;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        setenv("VX_PANE_PERSISTENCE_INI", ini.c_str(), 1);
        execl("/proc/self/exe", "test_layout", "--gtest_filter=PanePersistenceTest.ReadBackInANewProcessChild",
              static_cast<char*>(nullptr));
        _exit(127);
    }
    ASSERT_GT(child, 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

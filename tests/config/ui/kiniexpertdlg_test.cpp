// The expert settings editor as a user drives it: the grid it shows, every
// editor started and ended by mouse and keyboard, OK writing each setting to
// the file of its scope, Cancel writing nothing, and what bad control files
// give.
#include "uisupport/uitest.h"

#include "config/ui/kiniexpertdlg.h"

#include "base/vxglobals.h"
#include "config/kprofile.h"
#include "base/libraryframe.h"
#include "platform/windows/messagebox.h"
#include "ui/windows/uiapp.h"
#include "support/tempdir.h"
#include "support/testenv.h"

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

using vxtest::TempDir;
using vxtest::WriteBytes;

namespace {

// A control file with a heading, every kind with a scope, a setting with
// fixed choices, two with scaled choices (whole and floating point), and
// settings without choices.
const char* const kControl =
    "VXINI1.0\r\n"
    "test file\r\n"
    "--- Heading ---\r\n"
    "PRJAT\r\nProjekt\r\nName\r\n1\r\nProject name\r\nDemo\r\n\r\n"
    "PRJIT\r\nProjekt\r\nMode\r\n1\r\nMode\r\nA\r\nA\r\nfirst\r\nB\r\nsecond\r\n\r\n"
    "WINAT\r\nDraw\r\nGrid\r\n0\r\nGrid step\r\n1500\r\n0\r\nnone\r\nx/1000\r\nin mm\r\n\r\n"
    "WINIT\r\nList\r\nGap\r\n2\r\nLine gap\r\n1.500000\r\nx/10\r\nin tenths\r\n\r\n"
    "VEXAL54\r\nPROCESS\r\nExecuteTimeout\r\n0\r\nTimeout\r\n10000\r\n\r\n"
    "VEXAL\r\nPROCESS\r\nSearchMode\r\n0\r\nSearch\r\n0\r\n0\r\nby name\r\n1\r\nby title\r\n";

// Rows of the grid: the heading is row 0, entry i is row i + 1.
enum Row { kHeading = 1, kName, kMode, kGrid, kGap, kTimeout, kSearch };

class ExpertDialog : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.Valid());
        m_pVexalIni = m_pGlobalIniAT = m_pGlobalIniIT = m_pProjectIniAT = m_pProjectIniIT = nullptr;
        g_MainframeType = MainframeAT;
        Set(g_vexalglobalprofiledir, "VEXAL.INI");
        Set(g_vexalprofiledir, "VEXAL55.INI");
        Set(g_profiledirAT, "VXWIN55AT.INI");
        Set(g_profiledirIT, "VXWIN55IT.INI");
        Set(g_projectprofiledirAT, "PROJEKTAT.INI");
        Set(g_projectprofiledirIT, "PROJEKTIT.INI");
        old = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            messages.push_back(r.text);
            return IDOK;
        });
    }
    void TearDown() override
    {
        vx::SetMessageBoxHandler(old);
        for (char* path : {g_vexalprofiledir, g_vexalglobalprofiledir, g_profiledirAT, g_profiledirIT,
                           g_projectprofiledirAT, g_projectprofiledirIT})
            path[0] = 0;
    }

    void Set(char* global, const char* name) { std::strcpy(global, dir.Path(name).c_str()); }

    // Opens the editor modeless over `control` (none: no file).
    void Open(const char* control)
    {
        if (control)
            WriteBytes(dir.Path("VXINI55.DAT"), control);
        dlg = std::make_unique<KIniExpertDlg>();
        ASSERT_TRUE(dlg->Create(KIniExpertDlg::IDD));
        dlg->ShowWindow(SW_SHOW);
        vx::ProcessUiEvents();
    }

    CMSFlexGrid& Grid() { return dlg->GetGrid(); }
    CPoint CellCentre(int row, int column)
    {
        CRect cell;
        EXPECT_TRUE(Grid().GetCellRect(row, column, &cell));
        return cell.CenterPoint();
    }
    void DoubleClick(int row, int column)
    {
        const CPoint at = CellCentre(row, column);
        vxtest::Click(Grid(), at.x, at.y);
        vxtest::DoubleClick(Grid(), at.x, at.y);
        vx::ProcessUiEvents();
    }
    CEdit& Edit() { return *static_cast<CEdit*>(dlg->GetDlgItem(KIniExpertDlg::IDC_INIEXPERT_EDIT)); }
    KVxGridCombo& Combo() { return *static_cast<KVxGridCombo*>(dlg->GetDlgItem(KIniExpertDlg::IDC_INIEXPERT_COMBO)); }
    CString Shown(int row) { return Grid().GetTextMatrix(row, 1); }
    std::string Value(int row) { return std::string(dlg->GetEntry(row - 1)->m_value); }
    void Press(int id)
    {
        CWnd* button = dlg->GetDlgItem(id);
        ASSERT_NE(button, nullptr);
        CRect r;
        button->GetClientRect(&r);
        vxtest::Click(*button, r.CenterPoint().x, r.CenterPoint().y);
        vx::ProcessUiEvents();
    }
    bool Exists(const char* name) { return std::filesystem::exists(dir.Path(name)); }

    TempDir dir;
    std::unique_ptr<KIniExpertDlg> dlg;
    std::vector<std::string> messages;
    vx::MessageBoxHandler old;
};

} // namespace

TEST_F(ExpertDialog, ShowsCaptionsAndValuesUnderTheHeading)
{
    ASSERT_TRUE(KProfile::WriteProfileStringA("Draw", "Grid", "2500", 10));
    Open(kControl);
    EXPECT_TRUE(messages.empty());
    ASSERT_EQ(dlg->GetEntryCount(), 7);
    EXPECT_EQ(Grid().GetRows(), 9); // heading, seven entries, one empty row
    EXPECT_EQ(Grid().GetCols(), 2);
    EXPECT_EQ(Grid().GetFixedRows(), 1);
    CString heading = GetString(6732);
    EXPECT_STREQ(Grid().GetTextMatrix(0, 0), heading.Left(heading.Find('\n')));
    EXPECT_STREQ(Grid().GetTextMatrix(kHeading, 0), "--- Heading ---");
    EXPECT_STREQ(Shown(kHeading), "");
    EXPECT_STREQ(Grid().GetTextMatrix(kName, 0), "Project name");
    EXPECT_STREQ(Shown(kName), "Demo");
    EXPECT_STREQ(Shown(kMode), "first");
    EXPECT_STREQ(Shown(kGrid), "2"); // 2500 in whole millimetres
    EXPECT_STREQ(Shown(kGap), "0.150000");
    EXPECT_STREQ(Shown(kSearch), "by name");
    EXPECT_TRUE(Grid().IsWindowVisible());
    // The current cell is the first value that can be changed.
    EXPECT_EQ(Grid().GetRow(), kName);
    EXPECT_EQ(Grid().GetCol(), 1);
    // Three quarters and a quarter of the grid's width, in twips, filling it.
    const long twips = Grid().GetClientWidth();
    EXPECT_NEAR(Grid().GetColWidth(0), twips * 3 / 4, 15);
    EXPECT_NEAR(Grid().GetColWidth(1), twips / 4, 15);
    EXPECT_LE(Grid().GetColWidth(0) + Grid().GetColWidth(1), twips);
}

TEST_F(ExpertDialog, EachEditorChangesItsValueAndOkWritesEveryFileOfItsScope)
{
    Open(kControl);
    // Text: a double click opens the edit over the cell with its text selected.
    DoubleClick(kName, 1);
    ASSERT_TRUE(Edit().IsWindowVisible());
    EXPECT_EQ(CWnd::GetFocus(), &Edit());
    vxtest::Type("Plant 7");
    vxtest::Key(VK_RETURN);
    EXPECT_FALSE(Edit().IsWindowVisible());
    EXPECT_TRUE(dlg->IsWindowVisible()); // Enter ended the edit, not the dialog
    EXPECT_STREQ(Shown(kName), "Plant 7");

    // Fixed choices: the combo opens with the list down; Down and Enter choose.
    DoubleClick(kMode, 1);
    ASSERT_TRUE(Combo().IsActive());
    EXPECT_TRUE(Combo().GetDroppedState());
    EXPECT_STREQ(Combo().GetChoice(), "first");
    vxtest::Key(VK_DOWN);
    vxtest::Key(VK_RETURN);
    vx::ProcessUiEvents();
    EXPECT_FALSE(Combo().IsActive());
    EXPECT_STREQ(Shown(kMode), "second");
    EXPECT_EQ(Value(kMode), "B");

    // A scaled choice opens the edit for the number at once, in its unit.
    DoubleClick(kGrid, 1);
    ASSERT_TRUE(Combo().IsActive());
    vxtest::Key(VK_DOWN);
    vxtest::Key(VK_RETURN);
    vx::ProcessUiEvents(); // the posted message that opens the edit
    ASSERT_TRUE(Edit().IsWindowVisible());
    EXPECT_STREQ(Edit().GetWindowTextString(), "1");
    vxtest::Type("3");
    vxtest::Key(VK_RETURN);
    EXPECT_EQ(Value(kGrid), "3000");
    EXPECT_STREQ(Shown(kGrid), "3");

    // The floating point one: F2 on the current cell, then its choice.
    const CPoint gap = CellCentre(kGap, 1);
    vxtest::Click(Grid(), gap.x, gap.y);
    vxtest::Key(VK_F2, vxtest::kNone, &Grid());
    ASSERT_TRUE(Combo().IsActive());
    vxtest::Key(VK_RETURN);
    vx::ProcessUiEvents();
    ASSERT_TRUE(Edit().IsWindowVisible());
    vxtest::Type("2.5");
    vxtest::Key(VK_RETURN);
    EXPECT_EQ(Value(kGap), "25.000000");

    // Typing on a cell starts the edit with that character.
    const CPoint timeout = CellCentre(kTimeout, 1);
    vxtest::Click(Grid(), timeout.x, timeout.y);
    Grid().SetFocus();
    vxtest::Type("15000");
    ASSERT_TRUE(Edit().IsWindowVisible());
    EXPECT_STREQ(Edit().GetWindowTextString(), "15000");
    vxtest::Key(VK_RETURN);

    Press(IDOK);
    EXPECT_FALSE(dlg->IsWindowVisible());
    // Every setting went to the file of its scope, changed or not.
    EXPECT_STREQ(KProfile::GetProfileStringA("Projekt", "Name", "", 11), "Plant 7");
    EXPECT_STREQ(KProfile::GetProfileStringA("Projekt", "Mode", "", 21), "B");
    EXPECT_STREQ(KProfile::GetProfileStringA("Draw", "Grid", "", 10), "3000");
    EXPECT_STREQ(KProfile::GetProfileStringA("List", "Gap", "", 20), "25.000000");
    EXPECT_STREQ(KProfile::GetProfileStringA("PROCESS", "ExecuteTimeout", "", -1), "15000");
    EXPECT_STREQ(KProfile::GetProfileStringA("PROCESS", "SearchMode", "", -2), "0");
    const std::string at = vxtest::ReadBytes(dir.Path("VXWIN55AT.INI"));
    EXPECT_NE(at.find("[Draw]\r\nGrid=3000\r\n"), std::string::npos) << at;
    EXPECT_NE(vxtest::ReadBytes(dir.Path("PROJEKTAT.INI")).find("Name=Plant 7"), std::string::npos);
    EXPECT_NE(vxtest::ReadBytes(dir.Path("PROJEKTIT.INI")).find("Mode=B"), std::string::npos);
    EXPECT_NE(vxtest::ReadBytes(dir.Path("VXWIN55IT.INI")).find("Gap=25.000000"), std::string::npos);
    EXPECT_NE(vxtest::ReadBytes(dir.Path("VEXAL55.INI")).find("ExecuteTimeout=15000"), std::string::npos);
    EXPECT_NE(vxtest::ReadBytes(dir.Path("VEXAL.INI")).find("SearchMode=0"), std::string::npos);
}

TEST_F(ExpertDialog, EscDropsAnEditAndCancelWritesNothing)
{
    Open(kControl);
    DoubleClick(kName, 1);
    vxtest::Type("Lost");
    vxtest::Key(VK_ESCAPE);
    EXPECT_FALSE(Edit().IsWindowVisible());
    EXPECT_TRUE(dlg->IsWindowVisible()); // Esc ended the edit, not the dialog
    EXPECT_STREQ(Shown(kName), "Demo");
    EXPECT_EQ(Value(kName), "Demo");

    // Dropping the number of a scaled choice keeps the value before it.
    DoubleClick(kGrid, 1);
    vxtest::Key(VK_DOWN);
    vxtest::Key(VK_RETURN);
    vx::ProcessUiEvents();
    ASSERT_TRUE(Edit().IsWindowVisible());
    vxtest::Key(VK_ESCAPE);
    EXPECT_EQ(Value(kGrid), "1500");
    EXPECT_STREQ(Shown(kGrid), "1");
    EXPECT_EQ(dlg->GetEntry(kGrid - 1)->m_scaleState, 0);

    // Esc in the open combo drops the choice.
    DoubleClick(kMode, 1);
    vxtest::Key(VK_DOWN);
    vxtest::Key(VK_ESCAPE);
    vx::ProcessUiEvents();
    EXPECT_FALSE(Combo().IsActive());
    EXPECT_EQ(Value(kMode), "A");

    DoubleClick(kTimeout, 1);
    vxtest::Type("1");
    Press(IDCANCEL);
    EXPECT_FALSE(dlg->IsWindowVisible());
    for (const char* file : {"VEXAL.INI", "VEXAL55.INI", "VXWIN55AT.INI", "VXWIN55IT.INI", "PROJEKTAT.INI",
                             "PROJEKTIT.INI"}) {
        SCOPED_TRACE(file);
        EXPECT_FALSE(Exists(file));
    }
}

TEST_F(ExpertDialog, TextLinesAndTheHeadingCannotBeEdited)
{
    Open(kControl);
    DoubleClick(kHeading, 1);
    EXPECT_FALSE(Edit().IsWindowVisible());
    EXPECT_FALSE(Combo().IsActive());
    DoubleClick(kName, 0);
    EXPECT_FALSE(Edit().IsWindowVisible());
    // The empty row at the end is not an entry.
    DoubleClick(kSearch + 1, 1);
    EXPECT_FALSE(Edit().IsWindowVisible());
    EXPECT_FALSE(Combo().IsActive());
}

TEST_F(ExpertDialog, BadControlFilesSayWhyOpenAnywayAndWriteNothing)
{
    struct Case {
        const char* name;
        const char* control; // null: no file
        int message;         // 0: none
        int entries;
    };
    const Case cases[] = {
        {"missing file", nullptr, 6731, 0},
        {"empty file", "", 6730, 0},
        {"wrong version", "VXINI2.0\r\nx\r\nWINAT\r\nDraw\r\nGrid\r\n0\r\nGrid\r\n1\r\n", 6729, 0},
        {"truncated entry", "VXINI1.0\r\nx\r\nWINAT\r\nDraw\r\nGrid\r\n", 6730, 0},
        {"empty caption", "VXINI1.0\r\nx\r\nWINAT\r\nDraw\r\nGrid\r\n0\r\n\r\n5\r\n", 6730, 0},
        {"truncated after one", "VXINI1.0\r\nx\r\nWINIT\r\nA\r\nB\r\n1\r\nC\r\nD\r\n\r\nPRJAT\r\nA\r\n", 0, 1},
        {"unknown kind", "VXINI1.0\r\nx\r\nFOO\r\n", 0, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        messages.clear();
        std::filesystem::remove(dir.Path("VXINI55.DAT"));
        Open(c.control);
        if (c.message) {
            ASSERT_EQ(messages.size(), 1u);
            EXPECT_EQ(messages[0], std::string(GetString(c.message)));
        } else {
            EXPECT_TRUE(messages.empty());
        }
        EXPECT_EQ(dlg->GetReadMessage(), static_cast<UINT>(c.message));
        EXPECT_EQ(dlg->GetEntryCount(), c.entries);
        EXPECT_TRUE(dlg->IsWindowVisible());
        EXPECT_EQ(Grid().GetRows(), c.entries + 2);
        Press(IDCANCEL);
        for (const char* file : {"VEXAL.INI", "VEXAL55.INI", "VXWIN55AT.INI", "VXWIN55IT.INI", "PROJEKTAT.INI",
                                 "PROJEKTIT.INI"})
            EXPECT_FALSE(Exists(file)) << file;
        dlg.reset();
    }
}

TEST_F(ExpertDialog, OkKeepsThePlacementUnderItsStateKey)
{
    Open(kControl);
    Press(IDOK);
    // The program's global file holds the placement, with its check marks.
    EXPECT_EQ(static_cast<int>(KProfile::GetProfileIntA("DlgState IniExpert", "(check)", 0, 0)), 32639);
    dlg.reset();
    Open(kControl);
    EXPECT_TRUE(dlg->IsWindowVisible());
}

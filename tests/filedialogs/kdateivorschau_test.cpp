// The drawing preview between two real programs: this test program is AT
// and the peer program IT, which draws vxhost's test picture, answers 0,
// dies in the middle of drawing, or does not know the message.
#include "process/linktest.h"
#include "previewpainter.h"
#include "filedialogs/kvorschauwnd.h"
#include "support/printers.h"
#include "support/scopedenv.h"
#include "uisupport/uitest.h"

#include <vxbase_ui.h>

#include <QFileDialog>
#include <QImage>

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <functional>

namespace {

using linktest::LinkTest;

const char* const kPath = "C:\\Projekte\\Demo\\Schalt.ELD";

// A preview window: a plain window whose client area the preview fills.
class Target : public CWnd {
public:
    Target(int width = 300, int height = 200)
    {
        CreateEx("Vorschau", "VxPreviewTarget", WS_POPUP, CRect(0, 0, width, height));
    }
    ~Target() override { DestroyWindow(); }
    QImage Pixels()
    {
        CClientDC dc(this);
        return vx::ImageOfDC(dc.GetSafeHdc());
    }
};

// KDateiVorschau with its protected steps reachable.
class Preview : public KDateiVorschau {
public:
    using KDateiVorschau::LoadDrawing;
    using KDateiVorschau::ShowDrawing;
};

QImage NoPreviewImage()
{
    HBITMAP none = LoadBitmapA(nullptr, MAKEINTRESOURCE(vx::kKeineVorschauBitmap));
    QImage image = vx::ImageOfBitmap(none);
    DeleteObject(none);
    return image;
}

// Whether `image` holds `part` at (x, y).
bool Holds(const QImage& image, const QImage& part, int x, int y)
{
    return !part.isNull() && image.copy(x, y, part.width(), part.height()) == part;
}

// The path and result in this session's block of the name.
struct BlockContents {
    std::string path;
    std::int32_t result = -1;
};
BlockContents ReadBlock(const char* name)
{
    BlockContents out;
    HANDLE block = OpenFileMappingA(FILE_MAP_READ, FALSE, name);
    if (!block)
        return out;
    const auto* bytes = static_cast<const char*>(MapViewOfFile(block, FILE_MAP_READ, 0, 0, 0));
    out.path.assign(bytes, strnlen(bytes, 260));
    std::memcpy(&out.result, bytes + 260, 4);
    UnmapViewOfFile(bytes);
    CloseHandle(block);
    return out;
}

class PreviewTest : public LinkTest {
protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        m_oldFlag = KDateiVorschau::s_GlobalOnOff;
        KDateiVorschau::s_GlobalOnOff = 1;
        OpenFrame(MainframeAT);
    }
    void TearDown() override
    {
        KDateiVorschau::s_GlobalOnOff = m_oldFlag;
        vxhost::PartnerFrame::SetPreviewHost(nullptr);
        LinkTest::TearDown();
    }
    // IT, drawing in the way of `mode`.
    linktest::Peer StartIt(const char* mode)
    {
        return StartPeer("IT", {}, {std::string("VXPEER_PREVIEW=") + mode});
    }

    // Starts the peer program as `name` with the environment changed by
    // `env` ("NAME=value" entries), without waiting for it.
    static pid_t Spawn(const char* name, const std::vector<std::string>& env)
    {
        const std::string program = linktest::Environment().programs + "/" + name;
        std::vector<std::string> entries;
        for (char** e = environ; *e; ++e) {
            const std::string entry = *e;
            const bool replaced = std::any_of(env.begin(), env.end(), [&](const std::string& mine) {
                return entry.compare(0, mine.find('=') + 1, mine, 0, mine.find('=') + 1) == 0;
            });
            if (!replaced)
                entries.push_back(entry);
        }
        entries.insert(entries.end(), env.begin(), env.end());
        std::vector<char*> envp;
        for (auto& e : entries)
            envp.push_back(e.data());
        envp.push_back(nullptr);
        char* argv[] = {const_cast<char*>(program.c_str()), nullptr};
        pid_t pid = 0;
        return posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, envp.data()) == 0 ? pid : -1;
    }

    // Waits up to 15 s for a child, then kills it.
    static pid_t WaitFor(pid_t child, int& status)
    {
        for (int i = 0; i < 1500; ++i) {
            const pid_t done = waitpid(child, &status, WNOHANG);
            if (done != 0)
                return done;
            usleep(10000);
        }
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        return -1;
    }

private:
    int m_oldFlag = 1;
};

TEST_F(PreviewTest, PartnerDrawsThePictureIntoTheWindowAndTheBitmap)
{
    ASSERT_NE(StartIt("draw").window, nullptr);
    Target target;
    Preview preview;
    CString path = kPath;
    preview.BildUpdate(path, &target, nullptr, 0, 1);
    ASSERT_NE(preview.m_hBitmap, nullptr) << Log();

    // IT's picture, in the window and in the bitmap kept.
    const QImage shown = target.Pixels();
    EXPECT_PIXEL(shown, 3, 3, vxhost::kPictureFrame);
    EXPECT_PIXEL(shown, 296, 196, vxhost::kPictureFrame);
    EXPECT_PIXEL(shown, 1, 1, RGB(255, 255, 255));
    EXPECT_GT(vxtest::CountColor(shown, CRect(0, 0, 300, 200), vxhost::kPictureCircuit), 300);
    EXPECT_GT(vxtest::CountColor(shown, CRect(0, 0, 300, 200), vxhost::kPictureParts), 30);
    // The file's name in the title block at the bottom right.
    const CRect text = vxtest::Ink(shown.copy(100, 160, 200, 40), vxhost::kPictureText);
    EXPECT_FALSE(text.IsRectEmpty());
    EXPECT_EQ(vx::ImageOfBitmap(preview.m_hBitmap), shown);
    EXPECT_EQ(target.GetStyle() & 0xE, 0xEu);

    // The block held the path, and IT's result.
    const BlockContents block = ReadBlock("VEXALIT_PREVIEW");
    EXPECT_EQ(block.path, kPath);
    EXPECT_EQ(block.result, 1);

    // The next file replaces the bitmap; the flag off clears it and stops.
    const HBITMAP first = preview.m_hBitmap;
    path = "C:\\Projekte\\Demo\\Schalt2.ELD";
    preview.BildUpdate(path, &target, nullptr, 0, 1);
    EXPECT_NE(preview.m_hBitmap, nullptr);
    EXPECT_EQ(GetObjectType(first), 0u); // the old one was deleted
    preview.m_OnOff = 0;
    preview.BildUpdate(path, &target, nullptr, 0, 1);
    EXPECT_EQ(preview.m_hBitmap, nullptr);
    EXPECT_EQ(target.GetStyle() & 0xE, 0u);
}

TEST_F(PreviewTest, NoDrawingGivesTheNoPreviewBitmap)
{
    const QImage none = NoPreviewImage();
    ASSERT_EQ(none.size(), QSize(84, 24));
    const auto check = [&](const char* what) {
        SCOPED_TRACE(what);
        Target target;
        Preview preview;
        CString path = kPath;
        // In the middle of the window...
        preview.BildUpdate(path, &target, nullptr, 0, 1);
        EXPECT_EQ(preview.m_hBitmap, nullptr);
        EXPECT_TRUE(Holds(target.Pixels(), none, (300 - 84) / 2, (200 - 24) / 2));
        EXPECT_EQ(preview.LoadDrawing(path, &target, 1), 1);
        // ... or as the window's bitmap, centred.
        preview.BildUpdate(path, &target, nullptr, 1, 1);
        ASSERT_NE(preview.m_hBitmap, nullptr);
        EXPECT_EQ(vx::ImageOfBitmap(preview.m_hBitmap), none);
        EXPECT_EQ(target.GetStyle() & 0x20E, 0x20Eu);
    };
    check("nobody knows the message");
    StartIt("zero");
    check("IT draws but answers 0");
    for (const auto& peer : m_peers)
        kill(peer.pid, SIGKILL);
    ASSERT_TRUE(linktest::PumpUntil([&] { return !KProcessIO::GetVxProg(MainframeIT, 0, 1); }));
    StartIt("none");
    check("IT does not know the message");
    StartIt("die");
    check("IT dies while it draws");
}

TEST_F(PreviewTest, PathThatDoesNotFitTheBlockIsNotSent)
{
    ASSERT_NE(StartIt("draw").window, nullptr);
    Target target;
    Preview preview;
    CString path = kPath;
    ASSERT_EQ(preview.LoadDrawing(path, &target, 1), 0);
    CString longPath = "C:\\" + CString('x', 253) + ".ELD"; // 260 characters
    ASSERT_EQ(longPath.GetLength(), 260);
    EXPECT_EQ(preview.LoadDrawing(longPath, &target, 1), 1);
    EXPECT_EQ(ReadBlock("VEXALIT_PREVIEW").path, kPath); // IT was not asked
    longPath.Delete(0);                                  // 259 fit
    EXPECT_EQ(preview.LoadDrawing(longPath, &target, 1), 0);
    EXPECT_EQ(ReadBlock("VEXALIT_PREVIEW").path, longPath.GetString());
}

// A main frame that records the library's requests and answers them.
struct Requests : vxhost::PartnerFrame::PreviewHost {
    std::vector<std::pair<WPARAM, std::string>> seen;
    LRESULT answer = 1;
    bool Paint(LPARAM, const char*, MainframeType) override { return false; }
    LRESULT Request(WPARAM code, LPARAM lParam, MainframeType) override
    {
        const auto* r = reinterpret_cast<const vx::VorschauRecord*>(lParam);
        seen.emplace_back(code, r && r->path ? r->path->GetString() : "");
        return answer;
    }
};

TEST_F(PreviewTest, ModeAndProgramChooseWhoDraws)
{
    Requests host;
    vxhost::PartnerFrame::SetPreviewHost(&host);
    Target target;
    Preview preview;
    CString path = "C:\\Projekte\\Demo\\plan.0012";
    // AT's own pages (mode 0) and files of the main frame (mode -1) go to
    // the main frame; its answer is the result.
    EXPECT_EQ(preview.LoadDrawing(path, &target, 0), 1);
    host.answer = 0;
    EXPECT_EQ(preview.LoadDrawing(path, &target, -1), 0);
    ASSERT_EQ(host.seen.size(), 2u);
    EXPECT_EQ(host.seen[0], std::make_pair(vx::kVorschauLoad, std::string(path)));
    preview.ShowDrawing(&target);
    preview.Exit();
    ASSERT_EQ(host.seen.size(), 4u);
    EXPECT_EQ(host.seen[2].first, vx::kVorschauShow);
    EXPECT_EQ(host.seen[3].first, vx::kVorschauExit);

    // In IT, the pages of AT (mode 0) go to AT by "VXW_PREVIEW".
    ASSERT_NE(StartPeer("AT", {}, {"VXPEER_PREVIEW=draw"}).window, nullptr);
    g_MainframeType = MainframeIT;
    EXPECT_EQ(preview.LoadDrawing(path, &target, 0), 0);
    EXPECT_EQ(ReadBlock("VXW_PREVIEW").path, std::string(path));
    EXPECT_PIXEL(target.Pixels(), 3, 3, vxhost::kPictureFrame);
    EXPECT_EQ(preview.LoadDrawing(path, &target, 1), 0); // to the main frame
    EXPECT_EQ(host.seen.size(), 5u);

    // Without a main frame nothing is asked, and nothing is drawn.
    CMDIFrameWnd* frame = g_pDLLMainframe;
    g_pDLLMainframe = nullptr;
    EXPECT_EQ(preview.LoadDrawing(path, &target, 1), 1);
    preview.Exit();
    g_pDLLMainframe = frame;
    g_MainframeType = MainframeAT;
    EXPECT_EQ(host.seen.size(), 5u);
}

// The preview window picks who draws by the file: in AT the drawings of IT
// (an extension beginning "ELD", "ARD", "MAT" or "frm", in any case) go to
// IT; anything else to AT's main frame.
TEST_F(PreviewTest, TheWindowAsksTheProgramThatDrawsTheFile)
{
    ASSERT_NE(StartIt("draw").window, nullptr);
    Requests host;
    vxhost::PartnerFrame::SetPreviewHost(&host);
    Target parent(400, 300);
    parent.ShowWindow(SW_SHOWNOACTIVATE);
    KVorschauWnd window;
    ASSERT_TRUE(window.Erstellen(&parent, nullptr, 0, vx::kVorschauRight, 0, 0));
    const auto show = [&](const char* path) {
        window.Anzeigen(path, nullptr, nullptr);
        window.UpdateWindow();
        vx::ProcessUiEvents(50);
    };
    for (const char* drawing : {"C:\\Projekte\\Demo\\Schalt.ELDX", "C:\\Projekte\\Demo\\klemmen.ard"}) {
        SCOPED_TRACE(drawing);
        show(drawing);
        EXPECT_TRUE(linktest::PumpUntil([&] { return window.m_Vorschau.m_hBitmap != nullptr; }));
        EXPECT_EQ(ReadBlock("VEXALIT_PREVIEW").path, std::string(drawing));
    }
    EXPECT_TRUE(host.seen.empty());
    show("C:\\Projekte\\Demo\\Liste.txt");
    EXPECT_TRUE(linktest::PumpUntil([&] { return !host.seen.empty(); }));
    ASSERT_FALSE(host.seen.empty());
    EXPECT_EQ(host.seen.front(), std::make_pair(vx::kVorschauLoad, std::string("C:\\Projekte\\Demo\\Liste.txt")));
    EXPECT_EQ(window.m_Vorschau.m_hBitmap, nullptr);
    window.DestroyWindow();
}

TEST_F(PreviewTest, BrushPaintsTheBackgroundFirst)
{
    KDateiVorschau::s_BkColor = 0;
    Target target;
    {
        CClientDC dc(&target);
        dc.FillSolidRect(0, 0, 300, 200, RGB(10, 20, 30));
    }
    Preview preview;
    HBRUSH brush = CreateSolidBrush(RGB(200, 0, 200));
    // With a path the brush fills the window (nobody draws here).
    CString path = kPath;
    preview.BildUpdate(path, &target, brush, 0, 1);
    EXPECT_EQ(KDateiVorschau::s_BkColor, RGB(10, 20, 30)); // the first window's first pixel
    QImage shown = target.Pixels();
    EXPECT_PIXEL(shown, 1, 1, RGB(200, 0, 200));
    EXPECT_TRUE(Holds(shown, NoPreviewImage(), 108, 88));

    // With an empty path the background colour fills it, and IT draws
    // nothing for no file.
    ASSERT_NE(StartIt("draw").window, nullptr);
    CString empty;
    preview.BildUpdate(empty, &target, brush, 0, 1);
    shown = target.Pixels();
    EXPECT_PIXEL(shown, 1, 1, RGB(10, 20, 30));
    EXPECT_TRUE(Holds(shown, NoPreviewImage(), 108, 88));
    EXPECT_EQ(KDateiVorschau::s_BkColor, RGB(10, 20, 30)); // never read again
    DeleteObject(brush);
}

TEST(KDateiVorschau, FreesTheCursorWhileItLives)
{
    const RECT clip{10, 20, 300, 400};
    ClipCursor(&clip);
    {
        KDateiVorschau preview;
        EXPECT_EQ(preview.m_ClipRect, CRect(clip));
        CRect now;
        GetClipCursor(&now);
        EXPECT_NE(now, CRect(clip)); // the whole screen
        SetCursorPos(500, 500);
        POINT at;
        GetCursorPos(&at);
        EXPECT_EQ(at.x, 500);
    }
    CRect after;
    GetClipCursor(&after);
    EXPECT_EQ(after, CRect(clip));
    ClipCursor(nullptr);
}

// The programs of this test run in a session (bus and blocks) of their own,
// so that the block's end can be seen.
TEST_F(PreviewTest, BlockIsGoneWhenBothProgramsHaveEnded)
{
    vxtest::TempDir session;
    chmod(session.Path().c_str(), 0700);
    std::string object;
    {
        vxtest::ScopedEnv env("XDG_RUNTIME_DIR", session.Path().c_str());
        object = "/dev/shm/" + vx::FileMappingObjectName("VEXALIT_PREVIEW");
    }
    const std::string runtime = "XDG_RUNTIME_DIR=" + session.Path();
    for (const char* mode : {"draw", "die"}) {
        SCOPED_TRACE(mode);
        // IT ends by itself after a while; or dies while it draws.
        const pid_t it = Spawn("IT", {runtime, std::string("VXPEER_PREVIEW=") + mode, "VXPEER_LIFETIME_MS=3000"});
        const pid_t at = Spawn("AT", {runtime, std::string("VXPEER_SHOW=") + kPath});
        ASSERT_GT(it, 0);
        ASSERT_GT(at, 0);
        int status = 0;
        ASSERT_EQ(WaitFor(at, status), at);
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), std::string(mode) == "draw" ? 0 : 1);
        ASSERT_EQ(WaitFor(it, status), it);
        struct stat st {};
        EXPECT_NE(stat(object.c_str(), &st), 0) << object;
    }
}


// The open dialog with the preview: a drawing picked in AT's dialog is drawn
// by the real IT process into the preview window beside the dialog.
class PreviewDialog : public KDateiVorschauDlg {
public:
    using KDateiVorschauDlg::KDateiVorschauDlg;
    std::function<void(PreviewDialog&)> step;

protected:
    void OnInitDone() override
    {
        KDateiVorschauDlg::OnInitDone();
        PostMessage(WM_APP + 12);
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_APP + 12 && step) {
            step(*this);
            return 0;
        }
        return KDateiVorschauDlg::WindowProc(message, wParam, lParam);
    }
};

bool PumpUntil(const std::function<bool()>& done)
{
    return vx::PumpFor(8000, [&] {
        vx::ProcessUiEvents(10);
        return done();
    });
}

TEST_F(PreviewTest, TheOpenDialogShowsTheDrawingITDraws)
{
    ASSERT_NE(StartIt("draw").window, nullptr);
    vxtest::TempDir project;
    project.Write("Schalt.ELD", "x");
    project.Write("Liste.txt", "x");
    const std::string folder = project.Path();
    PreviewDialog dlg(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, "Alle (*.*)|*.*||");
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    QImage drawn;
    QImage none;
    CRect frameRect;
    CRect previewRect;
    dlg.step = [&](PreviewDialog& d) {
        CWnd* frame = d.GetParent();
        QFileDialog* view = vx::WidgetOfWindow(frame->GetDlgItem(lst1))->findChild<QFileDialog*>();
        ASSERT_NE(view, nullptr);
        view->selectFile(QStringLiteral("Schalt.ELD"));
        KVorschauWnd& preview = d.m_Vorschau;
        EXPECT_TRUE(PumpUntil([&] { return preview.m_hWnd && preview.m_Vorschau.m_hBitmap; }));
        if (preview.m_hWnd) {
            drawn = vx::RenderWindow(preview);
            preview.GetWindowRect(&previewRect);
            frame->GetWindowRect(&frameRect);
        }
        // A file nobody draws: "no preview".
        view->selectFile(QStringLiteral("Liste.txt"));
        EXPECT_TRUE(PumpUntil([&] { return preview.m_Path.Find("Liste.txt") >= 0 && !preview.m_Vorschau.m_hBitmap; }));
        vx::ProcessUiEvents(100);
        none = vx::RenderWindow(preview);
        frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
    };
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    // The preview goes with the dialog.
    EXPECT_FALSE(dlg.m_Vorschau.m_hWnd && dlg.m_Vorschau.IsWindowVisible());
    // The preview stands at the dialog's right, as tall as the dialog.
    EXPECT_EQ(previewRect.left, frameRect.right);
    // Centred over AT's small frame, the dialog still stands on the screen.
    EXPECT_GE(frameRect.left, 0);
    EXPECT_GE(frameRect.top, 0);
    // (The offscreen desktop may nudge a tool window down by its 2-pixel
    // frame once it is shown again.)
    EXPECT_NEAR(previewRect.top, frameRect.top, 2);
    EXPECT_EQ(previewRect.Height(), frameRect.Height());
    ASSERT_FALSE(drawn.isNull());
    EXPECT_GT(vxtest::CountColor(drawn, CRect(0, 0, drawn.width(), drawn.height()), vxhost::kPictureFrame), 50);
    const QImage noPreview = NoPreviewImage();
    bool found = false;
    for (int y = 0; y + noPreview.height() <= none.height() && !found; ++y)
        for (int x = 0; x + noPreview.width() <= none.width() && !found; ++x)
            found = Holds(none, noPreview, x, y);
    EXPECT_TRUE(found);
}

// The user turns the preview off and on with the dialog's check, and makes
// the dialog larger: the preview and the skin buttons follow its edge.
TEST_F(PreviewTest, TheUserTurnsThePreviewOffAndOnAndItFollowsTheDialog)
{
    ASSERT_NE(StartIt("draw").window, nullptr);
    vxtest::TempDir project;
    project.Write("Schalt.ELD", "x");
    const std::string folder = project.Path();
    PreviewDialog dlg(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, "Alle (*.*)|*.*||");
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    bool hiddenByCheck = false;
    int flagWhenOff = -1;
    bool drawnAgain = false;
    CRect systemOk, skinOk, skinCancel, frameBefore, frameAfter, previewAfter, okAfter;
    dlg.step = [&](PreviewDialog& d) {
        CWnd* frame = d.GetParent();
        QFileDialog* view = vx::WidgetOfWindow(frame->GetDlgItem(lst1))->findChild<QFileDialog*>();
        ASSERT_NE(view, nullptr);
        view->selectFile(QStringLiteral("Schalt.ELD"));
        KVorschauWnd& preview = d.m_Vorschau;
        ASSERT_TRUE(PumpUntil([&] { return preview.m_hWnd && preview.m_Vorschau.m_hBitmap; }));
        frame->GetDlgItem(IDOK)->GetWindowRect(&systemOk);
        d.GetDlgItem(vx::kSkinOkId)->GetWindowRect(&skinOk);
        d.GetDlgItem(vx::kSkinCancelId)->GetWindowRect(&skinCancel);
        frame->GetWindowRect(&frameBefore);

        CWnd& check = *d.GetDlgItem(vx::kVorschauCheckId);
        vxtest::Click(check, 4, 4);
        hiddenByCheck = PumpUntil([&] { return !preview.IsWindowVisible(); });
        flagWhenOff = KDateiVorschau::s_GlobalOnOff;
        // Shown again, the window asks IT anew: a new bitmap comes.
        const HBITMAP before = preview.m_Vorschau.m_hBitmap;
        vxtest::Click(check, 4, 4);
        drawnAgain = PumpUntil([&] {
            return preview.IsWindowVisible() && preview.m_Vorschau.m_hBitmap && preview.m_Vorschau.m_hBitmap != before;
        });

        frame->MoveWindow(frameBefore.left, frameBefore.top, frameBefore.Width() + 80, frameBefore.Height() + 40);
        vx::ProcessUiEvents(100);
        frame->GetWindowRect(&frameAfter);
        preview.GetWindowRect(&previewAfter);
        d.GetDlgItem(vx::kSkinOkId)->GetWindowRect(&okAfter);
        vxtest::Click(*d.GetDlgItem(vx::kSkinCancelId), 4, 4);
    };
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    // The skin buttons cover the hidden system ones, 7 pixels wider.
    EXPECT_EQ(skinOk, CRect(systemOk.left - 7, systemOk.top, systemOk.right, systemOk.bottom));
    EXPECT_EQ(skinOk.left, frameBefore.right - 99);
    EXPECT_EQ(skinOk.top, frameBefore.bottom - 108);
    EXPECT_EQ(skinCancel.top, frameBefore.bottom - 78);
    EXPECT_TRUE(hiddenByCheck);
    EXPECT_EQ(flagWhenOff, 0);
    EXPECT_TRUE(drawnAgain);
    EXPECT_EQ(KDateiVorschau::s_GlobalOnOff, 1);
    EXPECT_EQ(previewAfter.left, frameAfter.right);
    EXPECT_EQ(previewAfter.Height(), frameAfter.Height());
    EXPECT_EQ(okAfter.TopLeft(), CPoint(frameAfter.right - 99, frameAfter.bottom - 108));
}

// Left off by the last dialog, the preview stays away until the user turns
// it on; then the drawing of the selected file comes.
TEST_F(PreviewTest, APreviewLeftOffComesWhenTheUserTurnsItOn)
{
    ASSERT_NE(StartIt("draw").window, nullptr);
    vxtest::TempDir project;
    project.Write("Schalt.ELD", "x");
    const std::string folder = project.Path();
    KDateiVorschau::s_GlobalOnOff = 0;
    PreviewDialog dlg(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, "Alle (*.*)|*.*||");
    dlg.m_ofn.lpstrInitialDir = folder.c_str();
    UINT checkedAtStart = 2;
    bool stayedAway = false;
    bool came = false;
    dlg.step = [&](PreviewDialog& d) {
        checkedAtStart = d.IsDlgButtonChecked(vx::kVorschauCheckId);
        CWnd* frame = d.GetParent();
        QFileDialog* view = vx::WidgetOfWindow(frame->GetDlgItem(lst1))->findChild<QFileDialog*>();
        ASSERT_NE(view, nullptr);
        view->selectFile(QStringLiteral("Schalt.ELD"));
        KVorschauWnd& preview = d.m_Vorschau;
        PumpUntil([&] { return preview.m_Path.Find("Schalt.ELD") >= 0; });
        vx::ProcessUiEvents(100);
        stayedAway = preview.m_Path.Find("Schalt.ELD") >= 0 && !preview.IsWindowVisible() && !preview.m_Vorschau.m_hBitmap;
        vxtest::Click(*d.GetDlgItem(vx::kVorschauCheckId), 4, 4);
        came = PumpUntil([&] { return preview.IsWindowVisible() && preview.m_Vorschau.m_hBitmap; });
        vxtest::Click(*d.GetDlgItem(vx::kSkinCancelId), 4, 4);
    };
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(checkedAtStart, 0u);
    EXPECT_TRUE(stayedAway);
    EXPECT_TRUE(came);
    EXPECT_EQ(KDateiVorschau::s_GlobalOnOff, 1);
}

} // namespace

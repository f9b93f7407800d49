// The platform controls and models the window classes build on: image lists,
// menus, the plain button, sounds.
#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/images/cbitmap.h"
#include "ui/controls/cbutton.h"
#include "ui/images/cimagelist.h"
#include "ui/desktop/playsound.h"
#include "ui/windows/qtinterop.h"

#include <QTemporaryDir>

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

using vxtest::Canvas;

constexpr COLORREF kMagenta = RGB(255, 0, 255);
constexpr COLORREF kGrey = RGB(90, 90, 90);

TEST(CImageList, SplitsAStripAndDrawsThroughTheMask)
{
    Canvas strip(8, 2, RGB(255, 0, 0));
    strip.dc().FillSolidRect(4, 0, 4, 2, RGB(0, 0, 255));
    strip.dc().SetPixel(0, 0, kMagenta);
    CBitmap bmp;
    bmp.Attach(vx::BitmapFromQImage(strip.Image()));
    CImageList list;
    ASSERT_TRUE(list.Create(4, 2, ILC_COLOR24 | ILC_MASK, 0, 4));
    EXPECT_EQ(list.Add(&bmp, kMagenta), 0);
    EXPECT_EQ(list.GetImageCount(), 2);
    EXPECT_EQ(list.GetImageSize(), CSize(4, 2));
    Canvas c(10, 2, kGrey);
    list.Draw(&c.dc(), 0, CPoint(0, 0), ILD_TRANSPARENT);
    list.Draw(&c.dc(), 1, CPoint(4, 0), ILD_NORMAL); // no background colour: through the mask too
    list.SetBkColor(RGB(0, 255, 0));
    list.Draw(&c.dc(), 0, CPoint(0, 0), ILD_NORMAL);
    QImage img = c.Image();
    EXPECT_PIXEL(img, 0, 0, RGB(0, 255, 0)); // the masked pixel in the background colour
    EXPECT_PIXEL(img, 1, 0, RGB(255, 0, 0));
    EXPECT_PIXEL(img, 4, 0, RGB(0, 0, 255));
    EXPECT_PIXEL(img, 8, 0, kGrey);
    list.Draw(&c.dc(), 0, CPoint(0, 0), ILD_MASK);
    img = c.Image();
    EXPECT_PIXEL(img, 0, 0, RGB(255, 255, 255));
    EXPECT_PIXEL(img, 1, 0, RGB(0, 0, 0));
    list.Draw(&c.dc(), 1, CPoint(4, 0), ILD_TRANSPARENT | ILD_BLEND50);
    const COLORREF hl = GetSysColor(COLOR_HIGHLIGHT);
    EXPECT_PIXEL(c.Image(), 5, 0, RGB(GetRValue(hl) / 2, GetGValue(hl) / 2, (255 + GetBValue(hl)) / 2));

    HICON icon = list.ExtractIcon(0);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(vx::ImageOfIcon(icon, true).pixel(0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(list.Add(icon), 2);
    DestroyIcon(icon);
    EXPECT_TRUE(list.Remove(0));
    EXPECT_EQ(list.GetImageCount(), 2);
    EXPECT_FALSE(list.Remove(5));
    EXPECT_TRUE(list.Remove(-1));
    EXPECT_EQ(list.GetImageCount(), 0);
}

class Clicks : public CWnd {
public:
    std::vector<WPARAM> commands;

protected:
    BOOL OnCommand(WPARAM w, LPARAM) override
    {
        commands.push_back(w);
        return TRUE;
    }
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.FillSolidRect(&r, RGB(0, 0, 0));
    }
};

void Mouse(CWnd& w, UINT message, int x, int y, UINT flags = 0)
{
    vx::DispatchInputMessage(w, message, flags, MAKELPARAM(x, y));
}

TEST(CButton, ClicksCheckBoxesAndRadioGroupsAsTheSystemButtonDid)
{
    Clicks parent;
    parent.CreateEx("p", "P", WS_POPUP | WS_VISIBLE, CRect(0, 0, 200, 200));
    CButton push, check, r1, r2;
    push.Create("Push", WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON, CRect(0, 0, 60, 24), &parent, 1);
    check.Create("Check", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX, CRect(0, 30, 80, 50), &parent, 2);
    r1.Create("One", WS_CHILD | WS_VISIBLE | WS_GROUP | BS_AUTORADIOBUTTON, CRect(0, 60, 80, 80), &parent, 3);
    r2.Create("Two", WS_CHILD | WS_VISIBLE | BS_AUTORADIOBUTTON, CRect(0, 80, 80, 100), &parent, 4);
    Mouse(push, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    EXPECT_TRUE(push.GetState() & BST_PUSHED);
    EXPECT_EQ(CWnd::GetFocus(), &push);
    Mouse(push, WM_LBUTTONUP, 5, 5);
    EXPECT_EQ(parent.commands, std::vector<WPARAM>{MAKEWPARAM(1, BN_CLICKED)});
    Mouse(check, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    Mouse(check, WM_LBUTTONUP, 5, 5);
    EXPECT_EQ(check.GetCheck(), BST_CHECKED);
    r1.SetCheck(BST_CHECKED);
    Mouse(r2, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    Mouse(r2, WM_LBUTTONUP, 5, 5);
    EXPECT_EQ(r1.GetCheck(), BST_UNCHECKED);
    EXPECT_EQ(r2.GetCheck(), BST_CHECKED);
    EXPECT_EQ(r2.SendMessage(WM_GETDLGCODE), DLGC_BUTTON | DLGC_RADIOBUTTON);
    EXPECT_EQ(push.SendMessage(WM_GETDLGCODE), DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON);
    // The classic look: raised edge, face, black text; pushed, a shadow frame.
    parent.SetFocus();
    QImage img = vxtest::Render(push);
    EXPECT_PIXEL(img, 0, 0, GetSysColor(COLOR_3DLIGHT));
    EXPECT_PIXEL(img, 59, 23, GetSysColor(COLOR_3DDKSHADOW));
    push.SetState(TRUE);
    EXPECT_PIXEL(vxtest::Render(push), 0, 0, GetSysColor(COLOR_BTNSHADOW));
    push.SetFocus();
    img = vxtest::Render(push);
    EXPECT_PIXEL(img, 0, 0, RGB(0, 0, 0)); // focused: the black frame first
    EXPECT_PIXEL(img, 1, 1, GetSysColor(COLOR_BTNSHADOW));
    push.SetState(FALSE);
}

TEST(CButton, OwnerDrawGoesThroughTheParentBackToDrawItem)
{
    struct Drawn : CButton {
        UINT state = 0;
        int calls = 0;
        void DrawItem(LPDRAWITEMSTRUCT dis) override
        {
            ++calls;
            state = dis->itemState;
            CDC::FromHandle(dis->hDC)->FillSolidRect(&dis->rcItem, RGB(1, 2, 3));
        }
    };
    Clicks parent;
    parent.CreateEx("p", "P", WS_POPUP | WS_VISIBLE, CRect(0, 0, 100, 100));
    Drawn b;
    b.Create("x", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, CRect(0, 0, 30, 20), &parent, 5);
    b.EnableWindow(FALSE);
    const QImage img = vxtest::Render(b);
    EXPECT_GE(b.calls, 1);
    EXPECT_TRUE(b.state & ODS_DISABLED);
    EXPECT_PIXEL(img, 29, 19, RGB(1, 2, 3));
}

TEST(PlaySound, DefaultPlayerRunsAnInstalledCommandLinePlayer)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string bin = dir.path().toStdString();
    const std::string log = bin + "/played.txt";
    {
        std::ofstream script(bin + "/fakeplay");
        script << "#!/bin/sh\necho \"$1\" >> '" << log << "'\n";
    }
    ASSERT_EQ(chmod((bin + "/fakeplay").c_str(), 0755), 0);
    const std::string sound = bin + "/ding.wav";
    std::ofstream(sound) << "RIFF";
    const char* oldPath = std::getenv("PATH");
    const std::string saved = oldPath ? oldPath : "";
    setenv("PATH", (bin + ":" + saved).c_str(), 1);
    vx::CommandSoundPlayer player({"no-such-player", "fakeplay"});
    setenv("PATH", saved.c_str(), 1);
    EXPECT_EQ(player.Program(), bin + "/fakeplay");
    vx::SoundPlayer* old = vx::SetSoundPlayer(&player);
    EXPECT_TRUE(PlaySoundA(sound.c_str(), nullptr, SND_FILENAME | SND_SYNC));
    EXPECT_FALSE(PlaySoundA((bin + "/missing.wav").c_str(), nullptr, SND_FILENAME));
    EXPECT_FALSE(PlaySoundA("SystemStart", nullptr, SND_ALIAS)); // only files can play
    EXPECT_TRUE(PlaySoundA(nullptr, nullptr, 0));
    vx::SetSoundPlayer(old);
    std::ifstream in(log);
    std::stringstream content;
    content << in.rdbuf();
    EXPECT_EQ(content.str(), sound + "\n");
    // Without any player, sounds are silent.
    vx::CommandSoundPlayer none({"no-such-player"});
    EXPECT_TRUE(none.Program().empty());
    EXPECT_FALSE(none.Play(sound.c_str(), nullptr, SND_FILENAME));
}

} // namespace

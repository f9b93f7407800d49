// AT's open dialog with the drawing preview ("vxhost open"): AT starts IT,
// opens KDateiVorschauDlg on the sample project, and IT draws the preview
// of the drawing the user picks. Without a display, or for screenshots, the
// dialog is driven as a user would drive it.
#include "partneropen.h"

#include "democommand.h"

#include <vxbase.h>
#include <vxbase_ui.h>

#include <QAbstractItemView>
#include <QFileDialog>
#include <QImage>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace vxhost {
namespace {

void Line(const std::string& text)
{
    std::printf("[AT] %s\n", vx::ToUtf8(text).c_str());
    std::fflush(stdout);
}

bool WaitUntil(int milliseconds, const std::function<bool()>& done)
{
    for (int waited = 0; waited < milliseconds && !done(); waited += 20)
        vx::ProcessUiEvents(20);
    return done();
}

// The frame and the preview window as they stand on the screen, in one image.
QImage Shot(CWnd& frame, CWnd* preview)
{
    CRect all;
    frame.GetWindowRect(&all);
    CRect side;
    const bool withPreview = preview && preview->m_hWnd && preview->IsWindowVisible();
    if (withPreview) {
        preview->GetWindowRect(&side);
        all.UnionRect(&all, &side);
    }
    QImage image(all.Width(), all.Height(), QImage::Format_RGB32);
    const COLORREF desk = GetSysColor(COLOR_BACKGROUND);
    image.fill(QColor(GetRValue(desk), GetGValue(desk), GetBValue(desk)));
    QPainter p(&image);
    CRect r;
    frame.GetWindowRect(&r);
    p.drawImage(r.left - all.left, r.top - all.top, vx::RenderWindow(frame));
    if (withPreview)
        p.drawImage(side.left - all.left, side.top - all.top, vx::RenderWindow(*preview));
    return image;
}

// A file dialog that, once it stands, hands itself to its driver.
template <class Base>
class Driven : public Base {
public:
    using Base::Base;
    std::function<void()> m_drive;

protected:
    void OnInitDone() override
    {
        Base::OnInitDone();
        if (m_drive)
            this->PostMessage(kDriveMessage);
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != kDriveMessage)
            return Base::WindowProc(message, wParam, lParam);
        // Once: the drive pumps messages itself.
        const std::function<void()> drive = std::move(m_drive);
        m_drive = nullptr;
        if (drive)
            drive();
        return 0;
    }

private:
    static constexpr UINT kDriveMessage = WM_APP + 12;
};

void Save(const QImage& image, const std::string& shots, const char* name)
{
    if (shots.empty())
        return;
    const std::string file = shots + "/" + name;
    if (image.save(QString::fromStdString(file)))
        std::printf("wrote %s\n", file.c_str());
}

// The preview dialog seen from outside, as a user sees it.
class Driver {
public:
    Driver(KDateiVorschauDlg& dialog, std::string shots) : m_dialog(dialog), m_shots(std::move(shots)) {}

    void Run()
    {
        CWnd* frame = m_dialog.GetParent();
        QWidget* place = frame ? vx::WidgetOfWindow(frame->GetDlgItem(lst1)) : nullptr;
        QFileDialog* view = place ? place->findChild<QFileDialog*>() : nullptr;
        if (!view) {
            Line("the dialog has no folder view");
            m_ok = false;
            End();
            return;
        }
        m_ok = Pick(*frame, *view, "Schalt.ELD", true, "open-preview.png") && m_ok;
        m_ok = Toggle() && m_ok;
        m_ok = Pick(*frame, *view, "Liste.txt", false, "open-nopreview.png") && m_ok;
        End();
    }
    bool Ok() const { return m_ok; }

private:
    bool Pick(CWnd& frame, QFileDialog& view, const char* name, bool drawn, const char* shot)
    {
        Line(std::string("picks ") + name);
        view.selectFile(QString::fromLatin1(name));
        CWnd* field = frame.GetDlgItem(edt1);
        if (!field || !WaitUntil(5000, [&] { return field->GetWindowTextString().Find(name) >= 0; })) {
            Line(std::string("the view did not select ") + name);
            return false;
        }
        KVorschauWnd& preview = m_dialog.m_Vorschau;
        const bool got = WaitUntil(5000, [&] {
            return preview.m_hWnd && preview.IsWindowVisible() && (preview.m_Vorschau.m_hBitmap != nullptr) == drawn &&
                   preview.m_Path.Find(name) >= 0;
        });
        vx::ProcessUiEvents(200);
        Line(drawn ? (got ? "IT drew the preview" : "no preview came from IT")
                   : (got ? "nobody draws it: the preview says so" : "the preview did not change"));
        Save(Shot(frame, &preview), m_shots, shot);
        return got;
    }
    // The user turns the preview off with its check, and on again.
    bool Toggle()
    {
        CWnd* check = m_dialog.GetDlgItem(vx::kVorschauCheckId);
        KVorschauWnd& preview = m_dialog.m_Vorschau;
        if (!check)
            return false;
        check->SendMessage(BM_CLICK);
        const bool off = WaitUntil(2000, [&] { return !preview.IsWindowVisible(); });
        Line(off ? "turns the preview off: its window goes" : "turned the preview off, but it stays");
        // Shown again, the window asks IT anew: a new bitmap comes.
        const HBITMAP before = preview.m_Vorschau.m_hBitmap;
        check->SendMessage(BM_CLICK);
        const bool on = WaitUntil(5000, [&] {
            return preview.IsWindowVisible() && preview.m_Vorschau.m_hBitmap && preview.m_Vorschau.m_hBitmap != before;
        });
        Line(on ? "turns it on again: IT draws it again" : "turned the preview on, but nothing came");
        return off && on;
    }
    void End()
    {
        if (CWnd* frame = m_dialog.GetParent())
            frame->SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
    }

    KDateiVorschauDlg& m_dialog;
    std::string m_shots;
    bool m_ok = true;
};

CString Text(const char* utf8)
{
    return CString(vx::FromUtf8(utf8).c_str());
}

// The save dialog with two options, as AT exports a list: the user turns
// the second option on, names the file and saves. True when it was saved
// with both options on (or, run by a person, whatever was chosen).
bool RunOptionDialog(const CString& folder, const std::string& shots, bool drive)
{
    Driven<KDateiOptionDlg> dialog(FALSE, "xml", nullptr, OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY,
                                   "XML (*.xml)|*.xml||");
    dialog.m_ofn.lpstrInitialDir = folder.GetString();
    dialog.m_strOption1 = Text("Z listą części");
    dialog.m_strOption2 = Text("Otwórz po zapisaniu");
    dialog.m_nOption1 = 1;
    if (drive) {
        dialog.m_drive = [&] {
            CWnd* frame = dialog.GetParent();
            Line("turns on \"" + dialog.m_strOption2.StdString() + "\" and names the file Export");
            if (CWnd* second = dialog.GetDlgItem(vx::kVorschauCheckId))
                second->SendMessage(BM_CLICK);
            if (CWnd* field = frame ? frame->GetDlgItem(edt1) : nullptr)
                field->SetWindowText("Export");
            vx::ProcessUiEvents(200);
            if (frame)
                Save(Shot(*frame, nullptr), shots, "open-options.png");
            if (CWnd* ok = dialog.GetDlgItem(vx::kSkinOkId))
                ok->SendMessage(BM_CLICK);
        };
    }
    Line("opens the save dialog with two options");
    const INT_PTR result = dialog.DoModal();
    if (result != IDOK) {
        Line("cancelled");
        return !drive;
    }
    Line("saves as " + dialog.GetFileName().StdString() + " with the options " + std::to_string(dialog.m_nOption1) +
         " and " + std::to_string(dialog.m_nOption2));
    return !drive || (dialog.GetFileName() == "Export.xml" && dialog.m_nOption1 == 1 && dialog.m_nOption2 == 1);
}

} // namespace

int RunOpenDialog(const std::string& project, const std::string& shots)
{
    if (!shots.empty() && !vxhost::MakePictureDir(shots))
        return 1;
    vx::InitUi();
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    Line(it ? "started IT, which draws the previews of drawings" : "IT could not be started");
    const CString text = vx::PathTextFromHost(project).c_str();
    Driven<KDateiVorschauDlg> dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, "Alle (*.*)|*.*||");
    dialog.m_ofn.lpstrInitialDir = text.GetString();
    const bool drive = !shots.empty() || !vx::HasDisplay();
    Driver driver(dialog, shots);
    if (drive)
        dialog.m_drive = [&] { driver.Run(); };
    Line("opens the dialog on " + text.StdString());
    const INT_PTR result = dialog.DoModal();
    if (!drive)
        Line(result == IDOK ? "chose " + dialog.GetPathName().StdString() : std::string("cancelled"));
    const bool saved = RunOptionDialog(text, shots, drive);
    return it && (!drive || driver.Ok()) && saved ? 0 : 1;
}

} // namespace vxhost

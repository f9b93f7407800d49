#include "look/kskindialog.h"

#include "look/cvxdialog.h"

#include "base/libraryframe.h"
#include "ui/gdi/wingdi.h"

HBRUSH KSkinDialog::m_HgbBrush = nullptr;

namespace {

void DeleteBrush()
{
    if (KSkinDialog::m_HgbBrush) {
        DeleteObject(KSkinDialog::m_HgbBrush);
        KSkinDialog::m_HgbBrush = nullptr;
    }
}

void MakeBrush()
{
    if (KSkinDialog::m_HgbBrush)
        return;
    KSkinDialog::m_HgbBrush = CreateSolidBrush(0x0000FF);
    vx::AtLibraryDetach(&DeleteBrush);
}

} // namespace

KSkinDialog::KSkinDialog()
{
    MakeBrush();
}

KSkinDialog::KSkinDialog(UINT templateId, CWnd* parent) : CDialog(templateId, parent)
{
    MakeBrush();
}

KSkinDialog::~KSkinDialog() = default;

BOOL KSkinDialog::OnInitDialog()
{
    return vx::InitVxDialog(*this, [this] { return CDialog::OnInitDialog(); });
}

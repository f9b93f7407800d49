#include "menus/cnewdialog.h"

CNewDialog::CNewDialog() = default;

CNewDialog::CNewDialog(UINT templateId, CWnd* parent) : CVxDialog(templateId, parent) {}

CNewDialog::~CNewDialog() = default;

#include "menus/cnewtoolbar.h"

int CNewToolBar::m_NewToolbar = 1;

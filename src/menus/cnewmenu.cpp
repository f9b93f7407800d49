#include "menus/cnewmenu.h"

int CNewMenu::m_Enable = 1;
COLORREF CNewMenu::m_InitColor = 0;

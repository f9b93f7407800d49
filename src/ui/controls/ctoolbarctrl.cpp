#include "ui/controls/ctoolbarctrl.h"

#include "ui/controls/toolbarcontrol_p.h"

CToolBarCtrl::CToolBarCtrl() : m_control(std::make_unique<vx::ToolBarControl>(*this)) {}

CToolBarCtrl::~CToolBarCtrl()
{
    if (m_hWnd)
        DestroyWindow();
}

void CToolBarCtrl::PreSubclassWindow() {}

BOOL CToolBarCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "ToolbarWindow32", style, rect, parent, id);
}

LRESULT CToolBarCtrl::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (m_control->Handle(message, wParam, lParam, result))
        return result;
    return CWnd::DefWindowProc(message, wParam, lParam);
}

BOOL CToolBarCtrl::AddButtons(int count, const TBBUTTON* buttons)
{
    return static_cast<BOOL>(SendMessage(TB_ADDBUTTONSA, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(buttons)));
}

BOOL CToolBarCtrl::InsertButton(int index, const TBBUTTON* button)
{
    return static_cast<BOOL>(SendMessage(TB_INSERTBUTTONA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(button)));
}

BOOL CToolBarCtrl::DeleteButton(int index)
{
    return static_cast<BOOL>(SendMessage(TB_DELETEBUTTON, static_cast<WPARAM>(index)));
}

int CToolBarCtrl::GetButtonCount() const
{
    return m_control->Count();
}

BOOL CToolBarCtrl::GetButton(int index, TBBUTTON* button) const
{
    if (index < 0 || index >= m_control->Count() || !button)
        return FALSE;
    *button = m_control->Button(index);
    return TRUE;
}

int CToolBarCtrl::CommandToIndex(UINT command) const
{
    return m_control->IndexOf(static_cast<int>(command));
}

BOOL CToolBarCtrl::GetItemRect(int index, RECT* rect) const
{
    if (index < 0 || index >= m_control->Count() || !rect)
        return FALSE;
    *rect = m_control->ItemRect(index);
    return TRUE;
}

BOOL CToolBarCtrl::EnableButton(int command, BOOL enable)
{
    return static_cast<BOOL>(SendMessage(TB_ENABLEBUTTON, static_cast<WPARAM>(command), enable));
}

BOOL CToolBarCtrl::CheckButton(int command, BOOL check)
{
    return static_cast<BOOL>(SendMessage(TB_CHECKBUTTON, static_cast<WPARAM>(command), check));
}

BOOL CToolBarCtrl::PressButton(int command, BOOL press)
{
    return static_cast<BOOL>(SendMessage(TB_PRESSBUTTON, static_cast<WPARAM>(command), press));
}

BOOL CToolBarCtrl::HideButton(int command, BOOL hide)
{
    return static_cast<BOOL>(SendMessage(TB_HIDEBUTTON, static_cast<WPARAM>(command), hide));
}

BOOL CToolBarCtrl::IsButtonEnabled(int command) const
{
    const int i = m_control->IndexOf(command);
    return i >= 0 && (m_control->Button(i).fsState & TBSTATE_ENABLED);
}

BOOL CToolBarCtrl::IsButtonChecked(int command) const
{
    const int i = m_control->IndexOf(command);
    return i >= 0 && (m_control->Button(i).fsState & TBSTATE_CHECKED);
}

BOOL CToolBarCtrl::SetState(int command, UINT state)
{
    return static_cast<BOOL>(SendMessage(TB_SETSTATE, static_cast<WPARAM>(command), static_cast<LPARAM>(state)));
}

int CToolBarCtrl::GetState(int command) const
{
    const int i = m_control->IndexOf(command);
    return i >= 0 ? m_control->Button(i).fsState : -1;
}

CImageList* CToolBarCtrl::SetImageList(CImageList* list)
{
    const auto old = SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(list ? list->m_hImageList : nullptr));
    return CImageList::FromHandle(reinterpret_cast<HIMAGELIST>(old));
}

CImageList* CToolBarCtrl::SetDisabledImageList(CImageList* list)
{
    const auto old =
        SendMessage(TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(list ? list->m_hImageList : nullptr));
    return CImageList::FromHandle(reinterpret_cast<HIMAGELIST>(old));
}

CImageList* CToolBarCtrl::SetHotImageList(CImageList* list)
{
    const auto old = SendMessage(TB_SETHOTIMAGELIST, 0, reinterpret_cast<LPARAM>(list ? list->m_hImageList : nullptr));
    return CImageList::FromHandle(reinterpret_cast<HIMAGELIST>(old));
}

BOOL CToolBarCtrl::SetButtonSize(CSize size)
{
    return static_cast<BOOL>(SendMessage(TB_SETBUTTONSIZE, 0, MAKELONG(size.cx, size.cy)));
}

BOOL CToolBarCtrl::SetBitmapSize(CSize size)
{
    return static_cast<BOOL>(SendMessage(TB_SETBITMAPSIZE, 0, MAKELONG(size.cx, size.cy)));
}

CSize CToolBarCtrl::GetButtonSize() const
{
    return m_control->ButtonSize();
}

int CToolBarCtrl::GetHotItem() const
{
    return m_control->Hot();
}

int CToolBarCtrl::SetHotItem(int index)
{
    return static_cast<int>(SendMessage(TB_SETHOTITEM, static_cast<WPARAM>(index)));
}

int CToolBarCtrl::HitTest(POINT* point) const
{
    return point ? m_control->HitTest(*point) : -1;
}

BOOL CToolBarCtrl::GetMaxSize(SIZE* size) const
{
    if (!size)
        return FALSE;
    *size = m_control->MaxSize();
    return TRUE;
}

int CToolBarCtrl::GetRows() const
{
    return m_control->Rows();
}

void CToolBarCtrl::AutoSize()
{
    SendMessage(TB_AUTOSIZE);
}

CToolTipCtrl* CToolBarCtrl::GetToolTips() const
{
    return m_control->ToolTips();
}

#include "ui/bars/ctoolbar.h"

#include "ui/bars/ccmdui.h"
#include "ui/controls/toolbarcontrol_p.h"
#include "ui/images/cbitmap.h"
#include "ui/images/toolbarresource.h"

#include <algorithm>
#include <vector>


CToolBar::CToolBar() : m_control(std::make_unique<vx::ToolBarControl>(*this))
{
    m_cxLeftBorder = m_cxRightBorder = 2;
    m_cyTopBorder = m_cyBottomBorder = 2;
}

CToolBar::~CToolBar()
{
    if (m_hWnd)
        DestroyWindow();
}

BOOL CToolBar::Create(CWnd* parent, DWORD style, UINT id)
{
    return CreateEx(parent, 0, style, CRect(m_cxLeftBorder, m_cyTopBorder, m_cxRightBorder, m_cyBottomBorder), id);
}

BOOL CToolBar::CreateEx(CWnd* parent, DWORD ctrlStyle, DWORD style, CRect borders, UINT id)
{
    SetBorders(borders.left, borders.top, borders.right, borders.bottom);
    // The CBRS_ bits are the bar's; the window keeps its own and the control's.
    m_dwStyle = style & CBRS_ALL;
    const DWORD windowStyle = (style & ~CBRS_ALL & 0xFFFF0000) | (ctrlStyle & 0xFFFF) | CCS_NOPARENTALIGN |
                              CCS_NOMOVEY | CCS_NODIVIDER | CCS_NORESIZE;
    const DWORD tips = (style & CBRS_TOOLTIPS) ? TBSTYLE_TOOLTIPS : 0;
    if (!CreateEx0(parent, windowStyle | tips, id))
        return FALSE;
    SendMessage(TB_SETBUTTONSIZE, 0, MAKELONG(m_sizeButton.cx, m_sizeButton.cy));
    SendMessage(TB_SETBITMAPSIZE, 0, MAKELONG(m_sizeImage.cx, m_sizeImage.cy));
    return TRUE;
}

BOOL CToolBar::CreateEx0(CWnd* parent, DWORD windowStyle, UINT id)
{
    return CWnd::CreateEx("", "ToolbarWindow32", windowStyle, CRect(0, 0, 0, 0), parent, id);
}

LRESULT CToolBar::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (m_control->Handle(message, wParam, lParam, result))
        return result;
    return CControlBar::DefWindowProc(message, wParam, lParam);
}

void CToolBar::OnPaint()
{
    Default();
}

BOOL CToolBar::OnEraseBkgnd()
{
    return static_cast<BOOL>(Default());
}

BOOL CToolBar::IsDragPoint(CPoint point)
{
    CRect client;
    GetClientRect(&client);
    // The gripper and borders, and the empty rest of the bar.
    return !client.PtInRect(point) || m_control->HitTest(point) < 0;
}

BOOL CToolBar::LoadToolBar(UINT id)
{
    // version, width, height, count, then the commands (0 a separator)
    const std::vector<WORD> words = vx::ToolBarResource(MAKEINTRESOURCE(id));
    if (words.size() < 4)
        return FALSE;
    std::vector<UINT> commands;
    for (std::size_t i = 4; i < words.size() && i < 4u + words[3]; ++i)
        commands.push_back(words[i]);
    SetSizes(CSize(words[1] + 7, words[2] + 7), CSize(words[1], words[2]));
    if (!SetButtons(commands.data(), static_cast<int>(commands.size())))
        return FALSE;
    return LoadBitmap(id);
}

BOOL CToolBar::LoadToolBar(LPCSTR name)
{
    if (reinterpret_cast<UINT_PTR>(name) < 0x10000)
        return LoadToolBar(static_cast<UINT>(reinterpret_cast<UINT_PTR>(name)));
    return FALSE;
}

BOOL CToolBar::LoadBitmap(UINT id)
{
    CBitmap bitmap;
    if (!bitmap.LoadBitmap(id))
        return FALSE;
    return SetBitmap(static_cast<HBITMAP>(bitmap.Detach()));
}

BOOL CToolBar::SetBitmap(HBITMAP bitmap)
{
    if (!bitmap)
        return FALSE;
    CBitmap strip;
    strip.Attach(bitmap);
    m_images.DeleteImageList();
    if (!m_images.Create(m_sizeImage.cx, m_sizeImage.cy, ILC_COLOR24 | ILC_MASK, 0, 4))
        return FALSE;
    // The button face of the classic scheme is the transparent colour of
    // tool bar strips.
    m_images.Add(&strip, RGB(192, 192, 192));
    SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(m_images.m_hImageList));
    return TRUE;
}

BOOL CToolBar::SetButtons(const UINT* commands, int count)
{
    while (m_control->Count() > 0)
        SendMessage(TB_DELETEBUTTON, 0);
    std::vector<TBBUTTON> buttons;
    int image = 0;
    for (int i = 0; i < count; ++i) {
        TBBUTTON b{};
        b.fsState = TBSTATE_ENABLED;
        if (commands && commands[i] == ID_SEPARATOR) {
            b.fsStyle = TBSTYLE_SEP;
            b.iBitmap = 8;
        } else {
            b.idCommand = commands ? static_cast<int>(commands[i]) : 0;
            b.iBitmap = image++;
        }
        buttons.push_back(b);
    }
    if (buttons.empty())
        return TRUE;
    return static_cast<BOOL>(
        SendMessage(TB_ADDBUTTONSA, buttons.size(), reinterpret_cast<LPARAM>(buttons.data())));
}

void CToolBar::SetSizes(CSize button, CSize image)
{
    m_sizeButton = button;
    m_sizeImage = image;
    if (m_hWnd) {
        SendMessage(TB_SETBITMAPSIZE, 0, MAKELONG(image.cx, image.cy));
        SendMessage(TB_SETBUTTONSIZE, 0, MAKELONG(button.cx, button.cy));
    }
}

int CToolBar::CommandToIndex(UINT command) const
{
    return m_control->IndexOf(static_cast<int>(command));
}

UINT CToolBar::GetItemID(int index) const
{
    if (index < 0 || index >= m_control->Count())
        return 0;
    const TBBUTTON& b = m_control->Button(index);
    return (b.fsStyle & TBSTYLE_SEP) ? ID_SEPARATOR : static_cast<UINT>(b.idCommand);
}

void CToolBar::GetItemRect(int index, RECT* rect) const
{
    if (rect)
        *rect = index >= 0 && index < m_control->Count() ? RECT(m_control->ItemRect(index)) : RECT{0, 0, 0, 0};
}

UINT CToolBar::GetButtonStyle(int index) const
{
    if (index < 0 || index >= m_control->Count())
        return 0;
    const TBBUTTON& b = m_control->Button(index);
    return static_cast<UINT>(b.fsStyle) | (static_cast<UINT>(b.fsState) << 16);
}

void CToolBar::SetButtonStyle(int index, UINT style)
{
    if (index < 0 || index >= m_control->Count())
        return;
    TBBUTTON b = m_control->Button(index);
    b.fsStyle = static_cast<BYTE>(style);
    b.fsState = static_cast<BYTE>(style >> 16);
    SendMessage(TB_DELETEBUTTON, static_cast<WPARAM>(index));
    SendMessage(TB_INSERTBUTTONA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&b));
}

void CToolBar::GetButtonInfo(int index, UINT& id, UINT& style, int& image) const
{
    id = GetItemID(index);
    style = GetButtonStyle(index);
    image = index >= 0 && index < m_control->Count() ? m_control->Button(index).iBitmap : 0;
}

void CToolBar::SetButtonInfo(int index, UINT id, UINT style, int image)
{
    if (index < 0 || index >= m_control->Count())
        return;
    TBBUTTON b = m_control->Button(index);
    b.idCommand = static_cast<int>(id);
    b.fsStyle = static_cast<BYTE>(style);
    b.fsState = static_cast<BYTE>(style >> 16) ? static_cast<BYTE>(style >> 16) : b.fsState;
    b.iBitmap = image;
    SendMessage(TB_DELETEBUTTON, static_cast<WPARAM>(index));
    SendMessage(TB_INSERTBUTTONA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&b));
}

int CToolBar::GetCount() const
{
    return m_control->Count();
}

CSize CToolBar::WrapButtons(int width)
{
    const int count = m_control->Count();
    std::vector<BYTE> states(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        states[static_cast<size_t>(i)] = static_cast<BYTE>(m_control->Button(i).fsState & ~TBSTATE_WRAP);
    auto isSep = [&](int i) { return (m_control->Button(i).fsStyle & TBSTYLE_SEP) != 0; };
    auto extent = [&](int i) {
        const TBBUTTON& b = m_control->Button(i);
        return (b.fsStyle & TBSTYLE_SEP) ? (b.iBitmap > 0 ? b.iBitmap : 8) : m_sizeButton.cx;
    };
    if (width == 0) {
        // One column: every button ends its row, separators become bands.
        for (int i = 0; i < count; ++i) {
            const bool nextIsSep = i + 1 < count && isSep(i + 1);
            if (isSep(i) || !nextIsSep)
                states[static_cast<size_t>(i)] |= TBSTATE_WRAP;
        }
    } else if (width > 0) {
        int x = 0;
        for (int i = 0; i < count; ++i) {
            if (m_control->Button(i).fsState & TBSTATE_HIDDEN)
                continue;
            const int w = extent(i);
            if (x > 0 && x + w > width && !isSep(i)) {
                // Wrap at the separator before, when there is one: it
                // becomes the band between the rows.
                states[static_cast<size_t>(i - 1)] |= TBSTATE_WRAP;
                x = 0;
            }
            x += w;
        }
    }
    // TB_SETSTATE finds buttons by command, which separators lack.
    m_control->SetStates(states);
    return m_control->MaxSize();
}

CSize CToolBar::CalcFixedLayout(BOOL stretch, BOOL horz)
{
    CSize size = WrapButtons(horz ? -1 : 0);
    CRect inside(0, 0, 0, 0);
    CalcInsideRect(inside, horz);
    size.cx -= inside.Width();
    size.cy -= inside.Height();
    if (stretch) {
        if (horz)
            size.cx = 32767;
        else
            size.cy = 32767;
    }
    return size;
}

CSize CToolBar::CalcDynamicLayout(int length, DWORD mode)
{
    if (mode & (LM_HORZDOCK | LM_VERTDOCK))
        return CalcFixedLayout((mode & LM_STRETCH) != 0, (mode & LM_HORZDOCK) != 0);
    int width = length;
    if ((mode & LM_MRUWIDTH) || length < 0)
        width = m_nMRUWidth;
    CSize size = WrapButtons(width);
    if (mode & LM_COMMIT)
        m_nMRUWidth = width;
    CRect inside(0, 0, 0, 0);
    CalcInsideRect(inside, TRUE);
    size.cx -= inside.Width();
    size.cy -= inside.Height();
    return size;
}

namespace {

// A tool bar button's command state.
class CToolCmdUI : public CCmdUI {
public:
    void Enable(BOOL on) override
    {
        m_bEnableChanged = TRUE;
        m_pOther->SendMessage(TB_ENABLEBUTTON, m_nID, on ? TRUE : FALSE);
    }
    void SetCheck(int check) override
    {
        m_pOther->SendMessage(TB_CHECKBUTTON, m_nID, check == 1);
        m_pOther->SendMessage(TB_INDETERMINATE, m_nID, check == 2);
    }
};

} // namespace

void CToolBar::OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler)
{
    UpdateButtons(target, disableIfNoHandler);
}

void CToolBar::UpdateButtons(CWnd* target, BOOL disableIfNoHandler)
{
    CToolCmdUI ui;
    ui.m_pOther = this;
    for (int i = 0; i < m_control->Count(); ++i) {
        const TBBUTTON& b = m_control->Button(i);
        if (b.fsStyle & TBSTYLE_SEP)
            continue;
        ui.m_nIndex = static_cast<UINT>(i);
        ui.m_nID = static_cast<UINT>(b.idCommand);
        ui.DoUpdate(target, disableIfNoHandler);
    }
}

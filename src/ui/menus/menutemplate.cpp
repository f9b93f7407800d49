#include "ui/menus/winmenu.h"

#include "ui/gdi/wingdi.h"

#include "platform/windows/lasterror.h"

#include <map>
#include <string>
#include <utility>

namespace {

// A template is kept with its texts, so that the caller's may go.
struct StoredItem {
    UINT flags = 0;
    UINT id = 0;
    std::string text;
    std::vector<StoredItem> items;
};

std::map<std::string, std::vector<StoredItem>>& Templates()
{
    static auto* templates = new std::map<std::string, std::vector<StoredItem>>;
    return *templates;
}

// Numbers and texts name templates alike: "#12" is number 12.
std::string Key(LPCSTR name)
{
    if (IS_INTRESOURCE(name))
        return "#" + std::to_string(reinterpret_cast<ULONG_PTR>(name));
    std::string key = name ? name : "";
    for (char& c : key) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return key;
}

std::vector<StoredItem> Store(const std::vector<vx::MenuTemplateItem>& items)
{
    std::vector<StoredItem> out;
    for (const auto& i : items)
        out.push_back(StoredItem{i.flags & ~MF_END, i.id, i.text ? i.text : "", Store(i.items)});
    return out;
}

bool Build(HMENU menu, const std::vector<StoredItem>& items)
{
    for (const StoredItem& i : items) {
        if (i.flags & MF_POPUP) {
            HMENU sub = CreatePopupMenu();
            if (!Build(sub, i.items) || !AppendMenuA(menu, i.flags, reinterpret_cast<UINT_PTR>(sub), i.text.c_str()))
                return false;
        } else if (!AppendMenuA(menu, i.flags, i.id, (i.flags & MF_SEPARATOR) ? nullptr : i.text.c_str())) {
            return false;
        }
    }
    return true;
}

} // namespace

namespace vx {

void SetMenuTemplate(LPCSTR name, std::vector<MenuTemplateItem> items)
{
    if (items.empty())
        Templates().erase(Key(name));
    else
        Templates()[Key(name)] = Store(items);
}

} // namespace vx

HMENU LoadMenuA(HINSTANCE, LPCSTR name)
{
    auto it = Templates().find(Key(name));
    if (it == Templates().end()) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    HMENU menu = CreateMenu();
    if (!Build(menu, it->second)) {
        DestroyMenu(menu);
        return nullptr;
    }
    return menu;
}

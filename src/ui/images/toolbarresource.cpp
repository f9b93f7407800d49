#include "ui/images/toolbarresource.h"

#include "ui/gdi/wingdi.h"

#include <map>
#include <string>

namespace {

// The tool bar resources, by number or by name.
std::map<std::string, std::vector<WORD>>& ToolBars()
{
    static auto* table = new std::map<std::string, std::vector<WORD>>;
    return *table;
}

std::string Key(LPCSTR name)
{
    if (IS_INTRESOURCE(name))
        return "#" + std::to_string(reinterpret_cast<ULONG_PTR>(name));
    return name ? std::string(name) : std::string();
}

} // namespace

namespace vx {

void SetToolBarResource(LPCSTR name, std::vector<WORD> words)
{
    if (words.empty())
        ToolBars().erase(Key(name));
    else
        ToolBars()[Key(name)] = std::move(words);
}

std::vector<WORD> ToolBarResource(LPCSTR name)
{
    auto it = ToolBars().find(Key(name));
    return it == ToolBars().end() ? std::vector<WORD>() : it->second;
}

} // namespace vx

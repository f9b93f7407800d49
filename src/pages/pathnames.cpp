#include "pages/pathnames.h"

#include "base/vxglobals.h"
#include "platform/windows/cframewnd.h"
#include "platform/framework/mbstring.h"
#include "platform/framework/util_p.h"
#include "platform/shell/shellapi.h"
#include "platform/windows/windows.h"

#include <cstring>

namespace {

const char* OrEmpty(const char* s)
{
    return s ? s : "";
}

constexpr const char* kUnsafe = "<>:/\\|";

} // namespace

CString GetPfad(const char* path)
{
    const CString text = OrEmpty(path);
    const int slash = text.ReverseFind('\\');
    return slash >= 0 ? text.Left(slash + 1) : CString();
}

CString GetDateiname(const char* path)
{
    const CString text = OrEmpty(path);
    return text.Mid(text.ReverseFind('\\') + 1);
}

int IsPathname(const char* s)
{
    return (s && std::strlen(s) >= 3 && vx::AsciiIsLetter(s[0]) && s[1] == ':' && s[2] == '\\') ? 1 : 0;
}

int IsNetname(const char* s)
{
    return (s && s[0] == '\\' && s[1] == '\\') ? 1 : 0;
}

int IsPfadRelativToPfad(const char* path, const char* base)
{
    if (!path || !base)
        return 0;
    return _strnicmp(path, base, std::strlen(base)) == 0 ? 1 : 0;
}

const char* GetPfadRelativToPfad(const char* path, const char* base)
{
    if (!path)
        return path;
    if (IsPathname(path) && !IsNetname(path) && base && *base) {
        const std::size_t n = std::strlen(base);
        if (_strnicmp(path, base, n) == 0)
            return path + n;
    }
    return path;
}

CString GetPfadFullToPfad(const char* rel, const char* base)
{
    if (!rel || !*rel)
        return CString(base);
    if (IsPathname(rel) || IsNetname(rel))
        return CString(rel);
    return CString(base) + rel;
}

CString GetZusatzDateipfad(CString& base, CString& path)
{
    const CString dir = GetPfad(path);
    if (dir.GetLength() >= base.GetLength() && _mbsicmp(dir.Left(base.GetLength()), base) == 0)
        return path.Mid(base.GetLength());
    return path;
}

void MacheDateinamenSicher(CString& name)
{
    for (const char* c = kUnsafe; *c; ++c)
        name.Replace(*c, '_');
}

void MacheDateinamenSicher(char* name)
{
    for (char* p = name; p && *p; ++p) {
        if (std::strchr(kUnsafe, *p))
            *p = '_';
    }
}

int RemoveToRecycle(const char* path, int hardDelete)
{
    bool forGood = hardDelete != 0;
    if (!hardDelete && g_pDLLMainframe &&
        SendMessageA(g_pDLLMainframe->GetSafeHwnd(), WM_VXBASE, HostQueryFlags, 1) == 0)
        forGood = true;
    // The shell takes a list ended by an empty entry: the second zero.
    char from[264] = {};
    std::strncpy(from, OrEmpty(path), sizeof from - 2);
    if (!from[0])
        return 0;
    SHFILEOPSTRUCTA op{};
    op.wFunc = FO_DELETE;
    op.pFrom = from;
    op.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;
    if (!forGood)
        op.fFlags |= FOF_ALLOWUNDO;
    return SHFileOperationA(&op) == 0 ? 1 : 0;
}

#include "platform/windows/lasterror.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

thread_local DWORD t_lastError = 0;

// The texts of the error codes the platform layer reports, in the words of
// the original's English system messages.
const char* SystemText(DWORD code)
{
    switch (code) {
    case ERROR_SUCCESS: return "The operation completed successfully.";
    case ERROR_FILE_NOT_FOUND: return "The system cannot find the file specified.";
    case ERROR_PATH_NOT_FOUND: return "The system cannot find the path specified.";
    case ERROR_ACCESS_DENIED: return "Access is denied.";
    case ERROR_INVALID_HANDLE: return "The handle is invalid.";
    case ERROR_NOT_ENOUGH_MEMORY: return "Not enough storage is available to process this command.";
    case ERROR_OUTOFMEMORY: return "Not enough storage is available to complete this operation.";
    case ERROR_INVALID_PARAMETER: return "The parameter is incorrect.";
    case ERROR_INSUFFICIENT_BUFFER: return "The data area passed to a system call is too small.";
    case ERROR_MOD_NOT_FOUND: return "The specified module could not be found.";
    case ERROR_PROC_NOT_FOUND: return "The specified procedure could not be found.";
    case ERROR_INVALID_NAME: return "The filename, directory name, or volume label syntax is incorrect.";
    case ERROR_BAD_PATHNAME: return "The specified path is invalid.";
    case ERROR_ALREADY_EXISTS: return "Cannot create a file when that file already exists.";
    case ERROR_FILENAME_EXCED_RANGE: return "The filename or extension is too long.";
    case ERROR_INVALID_ADDRESS: return "Attempt to access invalid address.";
    case ERROR_MAPPED_ALIGNMENT: return "The base address or the file offset specified does not have the proper alignment.";
    case ERROR_INVALID_FLAGS: return "Invalid flags.";
    case ERROR_NOT_FOUND: return "Element not found.";
    case ERROR_INVALID_WINDOW_HANDLE: return "Invalid window handle.";
    case ERROR_INVALID_MENU_HANDLE: return "Invalid menu handle.";
    case ERROR_INVALID_ACCEL_HANDLE: return "Invalid accelerator table handle.";
    case ERROR_INVALID_HOOK_HANDLE: return "Invalid hook handle.";
    case ERROR_CANNOT_FIND_WND_CLASS: return "Cannot find window class.";
    case ERROR_INVALID_INDEX: return "Invalid index.";
    case ERROR_INVALID_HOOK_FILTER: return "Invalid hook procedure type.";
    case ERROR_INVALID_FILTER_PROC: return "Invalid hook procedure.";
    case ERROR_HOOK_NEEDS_HMOD: return "Cannot set nonlocal hook without a module handle.";
    case ERROR_HOOK_NOT_INSTALLED: return "The hook procedure is not installed.";
    case ERROR_INVALID_THREAD_ID: return "Invalid thread identifier.";
    case ERROR_MENU_ITEM_NOT_FOUND: return "A menu item was not found.";
    case ERROR_RESOURCE_TYPE_NOT_FOUND: return "The specified resource type cannot be found in the image file.";
    case ERROR_RESOURCE_NAME_NOT_FOUND: return "The specified resource name cannot be found in the image file.";
    default: return nullptr;
    }
}

// The n-th insert (1-based), or null.
const char* Insert(int n, DWORD flags, va_list* arguments, std::va_list& walk, int& taken)
{
    if (!arguments)
        return nullptr;
    if (flags & FORMAT_MESSAGE_ARGUMENT_ARRAY)
        return reinterpret_cast<const char*>(reinterpret_cast<const DWORD_PTR*>(arguments)[n - 1]);
    // A va_list is read in order; inserts are numbered, so read up to n.
    const char* value = nullptr;
    while (taken < n) {
        value = va_arg(walk, const char*);
        ++taken;
    }
    return value;
}

std::string Expand(const char* text, DWORD flags, va_list* arguments)
{
    std::string out;
    std::va_list walk;
    int taken = 0;
    const bool list = arguments && !(flags & FORMAT_MESSAGE_ARGUMENT_ARRAY);
    if (list)
        va_copy(walk, *arguments);
    for (const char* p = text; *p; ++p) {
        if (*p != '%' || (flags & FORMAT_MESSAGE_IGNORE_INSERTS)) {
            out += *p;
            continue;
        }
        const char c = p[1];
        if (c >= '1' && c <= '9') {
            int n = c - '0';
            ++p;
            if (p[1] >= '0' && p[1] <= '9') {
                n = n * 10 + (p[1] - '0');
                ++p;
            }
            if (p[1] == '!') { // a printf form such as !s!: strings only
                const char* end = std::strchr(p + 2, '!');
                if (end)
                    p = end;
            }
            if (const char* value = Insert(n, flags, arguments, walk, taken))
                out += value;
        } else if (c == '0') {
            break;
        } else if (c == 'n') {
            out += "\r\n";
            ++p;
        } else if (c == 'r') {
            out += '\r';
            ++p;
        } else if (c == 't') {
            out += '\t';
            ++p;
        } else if (c) {
            out += c; // "%%", "%.", "%!" stand for the character itself
            ++p;
        }
    }
    if (list)
        va_end(walk);
    return out;
}

} // namespace

DWORD GetLastError()
{
    return t_lastError;
}

void SetLastError(DWORD error)
{
    t_lastError = error;
}

DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD, LPSTR buffer, DWORD size,
                     va_list* arguments)
{
    std::string text;
    if (flags & FORMAT_MESSAGE_FROM_STRING) {
        if (!source) {
            SetLastError(ERROR_INVALID_PARAMETER);
            return 0;
        }
        text = Expand(static_cast<const char*>(source), flags, arguments);
    } else if (flags & FORMAT_MESSAGE_FROM_SYSTEM) {
        const char* system = SystemText(messageId);
        if (!system) {
            SetLastError(ERROR_NOT_FOUND);
            return 0;
        }
        text = Expand(system, flags, arguments) + "\r\n";
    } else {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (!buffer) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) {
        const std::size_t bytes = std::max<std::size_t>(text.size() + 1, size);
        auto* out = static_cast<char*>(std::malloc(bytes));
        if (!out) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
            return 0;
        }
        std::memcpy(out, text.c_str(), text.size() + 1);
        *reinterpret_cast<char**>(buffer) = out;
        return static_cast<DWORD>(text.size());
    }
    if (text.size() + 1 > size) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return static_cast<DWORD>(text.size());
}

HANDLE LocalFree(HANDLE memory)
{
    std::free(memory);
    return nullptr;
}

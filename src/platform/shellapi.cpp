#include "platform/shellapi.h"

#include "platform/filefind.h"
#include "platform/hostpath.h"
#include "platform/wildcard.h"

#include <gio/gio.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kErrorInvalidFunction = 1;
constexpr int kErrorFileNotFound = 2;
constexpr int kErrorAccessDenied = 5;

bool MoveToTrash(const std::string& hostPath)
{
    GFile* file = g_file_new_for_path(hostPath.c_str());
    GError* error = nullptr;
    const gboolean ok = g_file_trash(file, nullptr, &error);
    if (error)
        g_error_free(error);
    g_object_unref(file);
    return ok;
}

int RemoveOne(const char* path, const struct stat*, int, struct FTW*)
{
    return remove(path);
}

bool RemoveForGood(const std::string& hostPath)
{
    struct stat st {};
    if (lstat(hostPath.c_str(), &st) != 0)
        return false;
    if (!S_ISDIR(st.st_mode))
        return unlink(hostPath.c_str()) == 0;
    // Depth first, never following a link out of the tree.
    return nftw(hostPath.c_str(), RemoveOne, 16, FTW_DEPTH | FTW_PHYS) == 0;
}

// The host paths that one entry of pFrom names.
std::vector<std::string> Expand(const char* pathText, bool filesOnly)
{
    std::vector<std::string> paths;
    const std::string text = pathText;
    const std::size_t sep = text.find_last_of("\\/");
    const std::string mask = sep == std::string::npos ? text : text.substr(sep + 1);
    if (!vx::HasWildcards(mask)) {
        struct stat st {};
        const std::string host = vx::DiskPath(text);
        if (lstat(host.c_str(), &st) == 0 && !(filesOnly && S_ISDIR(st.st_mode)))
            paths.push_back(host);
        return paths;
    }
    CFileFind finder;
    BOOL more = finder.FindFile(pathText);
    while (more) {
        more = finder.FindNextFile();
        if (finder.IsDots() || (filesOnly && finder.IsDirectory()))
            continue;
        paths.push_back(vx::DiskPath(finder.GetFilePath().GetString()));
    }
    return paths;
}

} // namespace

int SHFileOperationA(SHFILEOPSTRUCTA* op)
{
    if (!op || op->wFunc != FO_DELETE || !op->pFrom)
        return kErrorInvalidFunction;
    op->fAnyOperationsAborted = FALSE;
    const bool undo = (op->fFlags & FOF_ALLOWUNDO) != 0;
    const bool filesOnly = (op->fFlags & FOF_FILESONLY) != 0;
    int result = 0;
    for (const char* p = op->pFrom; *p; p += std::strlen(p) + 1) {
        const std::vector<std::string> paths = Expand(p, filesOnly);
        if (paths.empty() && result == 0)
            result = kErrorFileNotFound;
        for (const std::string& host : paths) {
            const bool ok = undo ? MoveToTrash(host) : RemoveForGood(host);
            if (!ok)
                result = kErrorAccessDenied;
        }
    }
    return result;
}

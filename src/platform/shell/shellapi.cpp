#include "platform/shell/shellapi.h"

#include "platform/files/filefind.h"
#include "platform/files/hostpath.h"
#include "platform/files/wildcard.h"

#include <gio/gio.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
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

// A file system root, a mount point or the root of a drive is never
// removed, whatever the path text: the original's shell refused a drive
// root, and "\\" or "C:" map to "/" here.
bool IsProtected(const std::string& hostPath, const char* pathText)
{
    char* real = realpath(hostPath.c_str(), nullptr);
    if (!real)
        return false; // a dangling link: only the link goes
    const std::string resolved = real;
    std::free(real);
    if (resolved == "/")
        return true;
    struct stat self {}, parent {};
    if (stat(resolved.c_str(), &self) != 0)
        return true;
    if (S_ISDIR(self.st_mode)) {
        if (stat((resolved + "/..").c_str(), &parent) != 0)
            return true;
        if (self.st_dev != parent.st_dev || self.st_ino == parent.st_ino)
            return true;
    }
    if (pathText[0] && pathText[1] == ':') {
        char* root = realpath(vx::DriveRoot(pathText[0]).c_str(), nullptr);
        const bool same = root && resolved == root;
        std::free(root);
        if (same)
            return true;
    }
    return false;
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
    if (!*op->pFrom)
        return kErrorFileNotFound;
    int result = 0;
    for (const char* p = op->pFrom; *p; p += std::strlen(p) + 1) {
        const std::vector<std::string> paths = Expand(p, filesOnly);
        if (paths.empty() && result == 0)
            result = kErrorFileNotFound;
        for (const std::string& host : paths) {
            const bool ok = !IsProtected(host, p) && (undo ? MoveToTrash(host) : RemoveForGood(host));
            if (!ok)
                result = kErrorAccessDenied;
        }
    }
    return result;
}

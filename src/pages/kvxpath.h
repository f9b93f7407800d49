// KVxPath: a file path held as its four parts, drive, directory, title and
// extension, each in a fixed buffer, so that one part can be replaced at a
// time. This is how the library derives the name of one page from another.
//
//   KVxPath p("C:\\Projekte\\plan.0012");
//   p.GetDirectory();                    // "\\Projekte\\"
//   p.SetMerge(0, 0, 0, "0013");         // extension ".0013"
//   p.GetFilePath();                     // "C:\\Projekte\\plan.0013"
//   p.GetParentPath();                   // "C:\\"
//
// Path texts keep drive letters and "\" as stored data; only the functions
// that touch the disk (IsFileExisting, MakeFullPath) map them to the host
// (see platform/files/hostpath.h). A part that does not fit its buffer is cut,
// silently: drive 2, the others 255 characters.
#pragma once

#include "platform/framework/cstring.h"
#include "vxbase_export.h"

class VXBASE_EXPORT KVxPath {
public:
    // Empty; then SetFilePath(path) unless `path` is null.
    KVxPath(const char* path = nullptr);
    // Copies the four parts.
    KVxPath(const KVxPath&) = default;
    KVxPath& operator=(const KVxPath&) = default;

    // All four parts empty.
    void Empty();
    // Splits `path` into the parts (by _splitpath, "\" and "/" both
    // separate). 0 for a null pointer, and nothing changes; otherwise 1.
    int SetFilePath(const char* path);
    // Replaces the parts that are not null. A directory gets a leading and a
    // trailing "\" ("" gives "\", the root); an extension gets its "."; a
    // title that is a drive path ("C:\\x\\y.txt") is cut to its file name
    // when a drive is set.
    void SetMerge(const char* drive, const char* dir, const char* title, const char* ext);
    // The parts of `path` that are not empty replace those here, through
    // SetMerge.
    void SetMergeWithExt(const char* path);
    // Appends the subdirectory `sub` (a leading "\" is dropped, a trailing
    // one added). 0 for a null pointer, otherwise 1.
    int AddDir(const char* sub);
    void SetFileTitle(const char* title);
    // Makes the path absolute ("." and ".." resolved, see _fullpath); leaves
    // it as it is if that fails or nothing is set.
    void MakeFullPath();

    CString GetDrive() const { return CString(m_drive); }
    CString GetDirectory() const { return CString(m_dir); }
    CString GetFileTitle() const { return CString(m_fname); }
    CString GetExtension() const { return CString(m_ext); }
    const char* GetPointerToDir() const { return m_dir; }
    const char* GetPointerToFname() const { return m_fname; }

    // The joined forms; each is "" while nothing is set. At most 259
    // characters (_makepath cuts).
    CString GetFilePath() const;  // all four parts
    CString GetFileName() const;  // title and extension
    CString GetPathTitle() const; // drive, directory and title
    CString GetPath() const;      // drive and directory
    // Drive and the directory one level up: C:\\a\\b\\x.txt gives C:\\a\\;
    // the root stays the root.
    CString GetParentPath() const;
    // A copy made full with MakeFullPath, joined; this object is unchanged.
    CString GetFullFilePath() const;
    // The path a copy would have after SetMerge(drive, dir, title, ext),
    // except that a title is taken as it stands.
    CString Merge(const char* drive, const char* dir, const char* title, const char* ext) const;
    // The parts of `path`, each empty one taken from this object, joined.
    CString MergeWithExt(const char* path) const;
    // The last "." in `path`, or null (also for a null `path`).
    static const char* GetExtension(const char* path);

    // 1 if any part is set.
    int IsSet() const;
    // 1 if the path names a file that exists (not a directory); with
    // wildcards, if any matching file exists. 0 if nothing is set.
    int IsFileExisting() const;
    // 0 if nothing is set or a part holds a character its part may not:
    // drive /\*?"<>|, directory /:*?"<>|, title and extension /\:*?"<>|.
    // So a POSIX directory ("/tmp/") is not valid here; such paths work with
    // the file functions but are not judged by these rules.
    int IsValid() const;

protected:
    char m_drive[3];
    char m_dir[256];
    char m_fname[256];
    char m_ext[256];

private:
    void Apply(const char* drive, const char* dir, const char* title, const char* ext, bool cutDrivePathTitle);
};

// Settings by scope: every read and write names its settings file by a
// number, the last argument.
//
//   scope  file                                   document        path
//    -2    older suite file "VEXAL.INI"            (always disk)   g_vexalglobalprofiledir
//    -1    suite file "VEXAL55.INI"                m_pVexalIni     g_vexalprofiledir
//     0    global file of this program             AT or IT by g_MainframeType (1 is AT)
//     1    project file of this program            AT or IT by g_MainframeType
//    10    global file of AT                       m_pGlobalIniAT  g_profiledirAT
//    11    project file of AT                      m_pProjectIniAT g_projectprofiledirAT
//    20    global file of IT                       m_pGlobalIniIT  g_profiledirIT
//    21    project file of IT                      m_pProjectIniIT g_projectprofiledirIT
//
// A call goes to the scope's document in memory when the host has bound one,
// else to the file at the scope's path through the private profile functions,
// else it does nothing. The host sets the documents and the four program
// paths; the library sets the two suite paths when it attaches.
//
//   strcpy(g_profiledirAT, "/home/anna/.config/VEXAL/VXWIN55AT.INI");
//   KProfile::WriteProfileInt("DialogState", "Width", 800, 10);
//   int width = KProfile::GetProfileIntA("DialogState", "Width", 640, 10);
//
// A null key in a write deletes the section, a null value the key.
#pragma once

#include "config/kiniman.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

// The documents of the five files; null means go to the disk. The host owns
// them; the library only reads the pointers.
extern VXBASE_EXPORT KIniMan* m_pVexalIni;
extern VXBASE_EXPORT KIniMan* m_pGlobalIniAT;
extern VXBASE_EXPORT KIniMan* m_pGlobalIniIT;
extern VXBASE_EXPORT KIniMan* m_pProjectIniAT;
extern VXBASE_EXPORT KIniMan* m_pProjectIniIT;
// Full paths (path texts) of the program files, set by the host; empty means
// the scope has no file. g_vexalprofiledir and g_vexalglobalprofiledir, the
// suite files, are in base/vxglobals.h.
extern VXBASE_EXPORT char g_profiledirAT[260];
extern VXBASE_EXPORT char g_profiledirIT[260];
extern VXBASE_EXPORT char g_projectprofiledirAT[260];
extern VXBASE_EXPORT char g_projectprofiledirIT[260];

class VXBASE_EXPORT KProfile {
public:
    // The value, or the default. A scope with neither document nor path
    // gives "" (not the default).
    static CString GetProfileStringA(const char* section, const char* key, const char* defaultValue, int scope);
    // 1 through a document; the private profile result on the disk; 0 when
    // the scope has no file.
    static int WriteProfileStringA(const char* section, const char* key, const char* value, int scope);
    // The value as a number; the default when missing or empty, and when the
    // scope has no file.
    static unsigned int GetProfileIntA(const char* section, const char* key, int defaultValue, int scope);
    // "%d"; results as WriteProfileStringA.
    static int WriteProfileInt(const char* section, const char* key, int value, int scope);
    // A character stored as its number (sign-extended), unlike
    // KIniMan::WriteChar, which stores the character itself.
    static char GetProfileChar(const char* section, const char* key, char defaultValue, int scope);
    static int WriteProfileChar(const char* section, const char* key, char value, int scope);
    // "%f"; an unset key reads back as the default with six decimals.
    static float GetProfileFloat(const char* section, const char* key, float defaultValue, int scope);
    static int WriteProfileFloat(const char* section, const char* key, float value, int scope);
    // The section as "key=value|key=value"; the default (null is "") when
    // it is missing or empty. An empty section of a document gives "=".
    static CString GetProfileSectionA(const char* section, const char* defaultValue, int scope);

    // The suite's settings directory into `buffer` of `size` bytes: the
    // user's folder ("APPDATA" + "\VEXAL") if it holds "VEXAL55.INI", else the
    // Windows directory. Worked out once and cached in m_sWindowsDir. On the
    // first call that finds the machine-wide "VEXAL55.INI" but not the user's,
    // the file and the folders "VEXAL55", "VEXAL55_S" and "VEXAL55_HLK" are
    // copied to the user, with "PFADTEMP" of the program files set to the
    // user's "TEMP". Returns the length + 1; when it does not fit, the text
    // is cut to `size` - 1 bytes and the result is `size`.
    static unsigned int GetWindowsDirectoryA(char* buffer, unsigned int size);

    // The cached directory; empty until the first GetWindowsDirectoryA.
    static CString m_sWindowsDir;
};

namespace vx {

// What a scope resolves to: its document (or null) and its path buffer (or
// null for a number outside the table).
struct ProfileTarget {
    KIniMan* document = nullptr;
    char* path = nullptr;
};
VXBASE_EXPORT ProfileTarget ResolveProfileScope(int scope);

} // namespace vx

// vxhost ini: settings by scope.
//
//   vxhost ini files                          the scopes and their files
//   vxhost ini read SCOPE SECTION KEY         one value
//   vxhost ini write SCOPE SECTION KEY VALUE
//   vxhost ini delete SCOPE SECTION [KEY]     a key, or without KEY the section
//   vxhost ini section SCOPE SECTION          a section as key=value|key=value
//
// Paths are shown as host paths. Add "--dir DIR" to keep every file in DIR; without it the suite files are
// where the library put them when it attached, and the program and project
// files next to them. In the tour, a machine-wide and a user settings folder
// are made in a temporary directory, the first run copies one to the other,
// and every scope writes to its own file there.
#include "democommand.h"

#include <vxbase.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

const int kScopes[] = {-2, -1, 0, 1, 10, 11, 20, 21};

const char* ScopeMeaning(int scope)
{
    switch (scope) {
    case -2: return "older suite file";
    case -1: return "suite file";
    case 0: return "global file of this program";
    case 1: return "project file of this program";
    case 10: return "global file of AT";
    case 11: return "project file of AT";
    case 20: return "global file of IT";
    case 21: return "project file of IT";
    default: return "no file";
    }
}

void SetPath(char* global, const CString& path)
{
    std::strncpy(global, path, 259);
    global[259] = 0;
}

// The folder of a suite path, with its separator.
CString FolderOf(const char* file)
{
    const CString path(file);
    const int cut = std::max(path.ReverseFind('\\'), path.ReverseFind('/'));
    return path.Left(cut + 1);
}

// Gives each scope a file: the suite files in `dir` if one is given, the
// program and project files in the suite's folder (unless the host chose).
void ChooseFiles(const std::optional<std::string>& dir)
{
    CString folder;
    if (dir) {
        folder = CString(vx::PathTextFromHost(*dir).c_str()) + "\\";
        SetPath(g_vexalprofiledir, folder + "VEXAL55.INI");
        SetPath(g_vexalglobalprofiledir, folder + "VEXAL.INI");
    } else {
        folder = FolderOf(g_vexalprofiledir);
    }
    if (dir || !g_profiledirAT[0]) {
        SetPath(g_profiledirAT, folder + "VXWIN55AT.INI");
        SetPath(g_profiledirIT, folder + "VXWIN55IT.INI");
        SetPath(g_projectprofiledirAT, folder + "PROJEKT55AT.INI");
        SetPath(g_projectprofiledirIT, folder + "PROJEKT55IT.INI");
    }
}

void PrintFiles()
{
    for (const int scope : kScopes) {
        const vx::ProfileTarget target = vx::ResolveProfileScope(scope);
        std::printf("  %3d  %-29s ", scope, ScopeMeaning(scope));
        std::printf("%s", target.path ? vx::HostPath(target.path).c_str() : "");
        std::printf("%s\n", target.document ? "  (bound document)" : "");
    }
}

int Usage()
{
    std::fprintf(stderr, "usage: vxhost ini files|read|write|delete|section SCOPE SECTION [KEY [VALUE]] [--dir DIR]\n");
    return 2;
}

bool ParseScope(const std::string& text, int& scope)
{
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end)
        return false;
    scope = static_cast<int>(value);
    for (const int known : kScopes) {
        if (known == scope)
            return true;
    }
    return false;
}

int RunCommand(vxhost::Args& args)
{
    std::optional<std::string> dir;
    std::vector<std::string> words;
    for (std::size_t i = 0; i < args.words.size(); ++i) {
        if (args.words[i] == "--dir" && i + 1 < args.words.size() && !dir)
            dir = args.words[++i];
        else if (vxhost::IsOption(args.words[i]))
            return Usage();
        else
            words.push_back(args.words[i]);
    }
    if (words.empty())
        return Usage();
    ChooseFiles(dir);
    const std::string& verb = words[0];
    if (verb == "files") {
        if (words.size() != 1)
            return Usage();
        PrintFiles();
        return 0;
    }
    int scope = 0;
    if (words.size() < 3 || !ParseScope(words[1], scope)) {
        std::fprintf(stderr, "vxhost ini: SCOPE is one of -2, -1, 0, 1, 10, 11, 20, 21\n");
        return Usage();
    }
    // Arguments arrive in UTF-8; the files hold code page bytes.
    const std::string section = vx::FromUtf8(words[2]);
    const std::string key = words.size() > 3 ? vx::FromUtf8(words[3]) : std::string();
    if (verb == "read" && words.size() == 4) {
        const CString value = KProfile::GetProfileStringA(section.c_str(), key.c_str(), nullptr, scope);
        vxhost::Print(value.StdString() + "\n");
        return 0;
    }
    if (verb == "section" && words.size() == 3) {
        vxhost::Print(KProfile::GetProfileSectionA(section.c_str(), nullptr, scope).StdString() + "\n");
        return 0;
    }
    int written = 0;
    if (verb == "write" && words.size() == 5)
        written = KProfile::WriteProfileStringA(section.c_str(), key.c_str(), vx::FromUtf8(words[4]).c_str(), scope);
    else if (verb == "delete" && (words.size() == 3 || words.size() == 4))
        written = KProfile::WriteProfileStringA(section.c_str(), words.size() == 4 ? key.c_str() : nullptr,
                                                nullptr, scope);
    else
        return Usage();
    if (!written) {
        std::fprintf(stderr, "vxhost ini: could not write %s (does its directory exist, and may we write there?)\n",
                     vx::HostPath(vx::ResolveProfileScope(scope).path).c_str());
        return 1;
    }
    return 0;
}

// --- the tour --------------------------------------------------------------

// Everything the tour changes in the process, put back at its end.
class SavedSettings {
public:
    SavedSettings()
    {
        for (const char* name : {"XDG_CONFIG_DIRS", "XDG_CONFIG_HOME", "TEMP"}) {
            const char* value = std::getenv(name);
            m_env.emplace_back(name, value ? std::optional<std::string>(value) : std::nullopt);
        }
        for (std::size_t i = 0; i < std::size(m_paths); ++i)
            std::memcpy(m_paths[i], Globals()[i], 260);
        m_windowsDir = KProfile::m_sWindowsDir;
        m_program = g_MainframeType;
        m_display = vx::TheDisplayState();
    }
    ~SavedSettings()
    {
        for (const auto& [name, value] : m_env) {
            if (value)
                setenv(name.c_str(), value->c_str(), 1);
            else
                unsetenv(name.c_str());
        }
        for (std::size_t i = 0; i < std::size(m_paths); ++i)
            std::memcpy(Globals()[i], m_paths[i], 260);
        KProfile::m_sWindowsDir = m_windowsDir;
        g_MainframeType = m_program;
        vx::TheDisplayState() = m_display;
        vx::SetWindowsDirectory("");
    }

private:
    static std::array<char*, 6> Globals()
    {
        return {g_vexalprofiledir, g_vexalglobalprofiledir, g_profiledirAT,
                g_profiledirIT,    g_projectprofiledirAT,   g_projectprofiledirIT};
    }

    std::vector<std::pair<std::string, std::optional<std::string>>> m_env;
    char m_paths[6][260];
    CString m_windowsDir;
    MainframeType m_program;
    vx::DisplayState m_display;
};

void Put(const std::filesystem::path& file, const std::string& text)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

int RunTour()
{
    vxhost::Heading("Settings by scope");
    std::string pattern = (std::filesystem::temp_directory_path() / "vxhost-ini-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        return 1;
    const std::filesystem::path root = pattern;
    int rc = 0;
    {
        SavedSettings saved;
        // A machine-wide installation, a user without settings yet.
        Put(root / "xdg/VEXAL/VEXAL55.INI", "[2Monitor]\r\nEnable=0\r\n");
        Put(root / "xdg/VEXAL/VEXAL55/VXWIN55AT.INI",
            "[Konfig Verzeichnisse]\r\nPFADPROJ=C:\\Projekte\\\r\nPFADTEMP=C:\\TEMP\\\r\n");
        std::filesystem::create_directories(root / "config");
        std::filesystem::create_directories(root / "windows");
        std::filesystem::create_directories(root / "project");
        setenv("XDG_CONFIG_DIRS", (root / "xdg").c_str(), 1);
        setenv("XDG_CONFIG_HOME", (root / "config").c_str(), 1);
        setenv("TEMP", (root / "tmp").c_str(), 1);
        vx::SetWindowsDirectory((root / "windows").string());

        vx::AttachLibrary();
        std::printf("Settings directory after the first run: %s\n", vx::HostPath(KProfile::m_sWindowsDir.View()).c_str());
        const CString user = KProfile::m_sWindowsDir;
        SetPath(g_profiledirAT, user + "\\VEXAL55\\VXWIN55AT.INI");
        SetPath(g_profiledirIT, user + "\\VEXAL55\\VXWIN55IT.INI");
        const CString project(vx::PathTextFromHost((root / "project").string()).c_str());
        SetPath(g_projectprofiledirAT, project + "\\PROJEKT55AT.INI");
        SetPath(g_projectprofiledirIT, project + "\\PROJEKT55IT.INI");
        g_MainframeType = MainframeAT;

        std::printf("PFADTEMP in the user's copy of VXWIN55AT.INI: ");
        vxhost::Print(KProfile::GetProfileStringA("Konfig Verzeichnisse", "PFADTEMP", "", 10).StdString() + "\n");

        std::printf("Each scope writes its own file (this program is AT):\n");
        for (const int scope : kScopes) {
            CString value;
            value.Format("%d", scope);
            if (!KProfile::WriteProfileStringA("VxHost", "Scope", value, scope))
                rc = 1;
        }
        PrintFiles();
        std::printf("Read back: ");
        for (const int scope : kScopes)
            std::printf("%s ", KProfile::GetProfileStringA("VxHost", "Scope", "?", scope).GetString());
        std::printf("(for AT, 0 is the file of 10 and 1 that of 11)\n");

        KIniMan document;
        document.ReadFile(g_profiledirAT, 0);
        m_pGlobalIniAT = &document;
        KProfile::WriteProfileInt("VxHost", "Bound", 1, 0);
        char onDisk[64];
        GetPrivateProfileStringA("VxHost", "Bound", "(nothing)", onDisk, sizeof onDisk, g_profiledirAT);
        std::printf("With a bound document, scope 0 writes to memory: the file has %s, the document %s\n", onDisk,
                    KProfile::GetProfileStringA("VxHost", "Bound", "", 0).GetString());
        document.Flush();
        m_pGlobalIniAT = nullptr;
        std::printf("After Flush the file has %s\n",
                    KProfile::GetProfileStringA("VxHost", "Bound", "(nothing)", 0).GetString());

        KProfile::WriteProfileStringA("VxHost", "Scope", nullptr, 21);
        std::printf("Deleted in scope 21, the key reads %s\n",
                    KProfile::GetProfileStringA("VxHost", "Scope", "(default)", 21).GetString());
    }
    std::error_code ec;
    std::filesystem::remove_all(root, ec);
    return rc;
}

int RunIni(vxhost::Args& args)
{
    return args.tour ? RunTour() : RunCommand(args);
}

} // namespace

VXHOST_COMMAND("ini", "files|read|write|delete|section SCOPE SECTION [KEY [VALUE]] [--dir DIR]", 30, RunIni);

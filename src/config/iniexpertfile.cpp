#include "config/iniexpertfile.h"

#include "config/kprofile.h"
#include "config/numbertext_p.h"
#include "platform/files/hostpath.h"
#include "platform/framework/util_p.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

// The file line by line, as the framework's text file read it: a line ends
// at "\n", which is dropped, and a "\r" before it goes too (files written on
// the suite's Windows installations end their lines in CR LF).
class LineReader {
public:
    explicit LineReader(std::string text) : m_text(std::move(text)) {}

    // False at the end of the file; a last line without "\n" is still a line.
    bool Next(CString& line)
    {
        if (m_pos >= m_text.size())
            return false;
        std::size_t end = m_text.find('\n', m_pos);
        if (end == std::string::npos)
            end = m_text.size();
        std::string_view view(m_text.data() + m_pos, end - m_pos);
        if (!view.empty() && view.back() == '\r')
            view.remove_suffix(1);
        // A zero byte ends the line, as it ended the C string it was read into.
        view = view.substr(0, std::min(view.size(), view.find('\0')));
        line = CString(view);
        m_pos = end + 1;
        return true;
    }

private:
    std::string m_text;
    std::size_t m_pos = 0;
};

// Reads the lines of a setting after its kind line into `entry`. False when
// the setting stops short or one of its first four lines is empty.
bool ReadSetting(LineReader& reader, KIniExpertEntry& entry)
{
    CString* const required[] = {&entry.m_section, &entry.m_key, &entry.m_type, &entry.m_caption};
    for (CString* field : required) {
        if (!reader.Next(*field) || field->IsEmpty())
            return false;
    }
    CString defaultValue;
    if (!reader.Next(defaultValue))
        return false;
    entry.m_value = defaultValue;
    // Choices, two lines each, until an empty line or the end; half a pair
    // is dropped.
    for (;;) {
        CString key;
        CString caption;
        if (!reader.Next(key) || key.IsEmpty())
            break;
        if (!reader.Next(caption) || caption.IsEmpty())
            break;
        entry.m_choiceKeys.Add(key);
        entry.m_choiceCaptions.Add(caption);
    }
    return true;
}

bool IsNumberType(const CString& type)
{
    return type == "0" || type == "2";
}

// The value of a number entry divided by a factor that is not 0.
CString ScaledText(const KIniExpertEntry& entry, int factor)
{
    CString shown;
    if (entry.m_type == "0") {
        // Whole numbers divide as C does, towards zero; INT_MIN / -1 is the
        // one quotient that does not fit, and wraps as on x86.
        const int value = vx::TextToInt(entry.m_value);
        const std::int64_t quotient = static_cast<std::int64_t>(value) / factor;
        shown.Format("%d", static_cast<int>(static_cast<std::uint32_t>(quotient)));
    } else {
        shown = vx::FixedText(vx::TextToDouble(entry.m_value) / factor).c_str();
    }
    return shown;
}

} // namespace

namespace vx {

int IniExpertScope(const CString& kind)
{
    static const struct {
        const char* kind;
        int scope;
    } kKinds[] = {{"PRJAT", 11}, {"PRJIT", 21}, {"WINAT", 10}, {"WINIT", 20}, {"VEXAL54", -1}, {"VEXAL", -2}};
    for (const auto& k : kKinds) {
        if (kind == k.kind)
            return k.scope;
    }
    return 0;
}

CString IniControlFilePath()
{
    const CString global(g_profiledirAT);
    const int cut = std::max(global.ReverseFind('\\'), global.ReverseFind('/'));
    return global.Left(cut + 1) + kIniControlFileName;
}

UINT ReadIniControlFile(const char* path, KIniExpertEntryArray& entries)
{
    std::string text;
    if (!path || !*path || !ReadWholeFile(DiskPath(path), text))
        return kIniControlNotFound;
    LineReader reader(std::move(text));
    const int before = entries.GetSize();
    CString line;
    if (reader.Next(line)) {
        if (line != kIniControlVersion)
            return kIniControlWrongVersion;
        reader.Next(line); // the line after the version says nothing
    }
    while (reader.Next(line)) {
        auto* entry = new KIniExpertEntry;
        entry->m_kind = line;
        const int scope = IniExpertScope(line);
        if (scope != 0) {
            if (!ReadSetting(reader, *entry)) {
                delete entry;
                break;
            }
            entry->m_value = KProfile::GetProfileStringA(entry->m_section, entry->m_key, entry->m_value, scope);
        }
        entries.Add(entry);
    }
    return entries.GetSize() == before ? kIniControlError : 0;
}

void FreeIniExpertEntries(KIniExpertEntryArray& entries)
{
    for (int i = 0; i < entries.GetSize(); ++i)
        delete entries[i];
    entries.RemoveAll();
}

int ScaledChoiceFactor(const CString& choiceKey, bool* scaled)
{
    const bool isScaled = !choiceKey.IsEmpty() && choiceKey[0] == 'x';
    if (scaled)
        *scaled = isScaled;
    if (!isScaled)
        return 0;
    if (choiceKey.GetLength() < 3)
        return 1;
    return TextToInt(static_cast<const char*>(choiceKey) + 2);
}

CString IniExpertDisplayText(const KIniExpertEntry& entry)
{
    if (IniExpertScope(entry.m_kind) == 0)
        return CString();
    for (int i = 0; i < entry.m_choiceKeys.GetSize(); ++i) {
        const CString& key = entry.m_choiceKeys[i];
        if (key == entry.m_value)
            return i < entry.m_choiceCaptions.GetSize() ? entry.m_choiceCaptions[i] : CString();
        bool scaled = false;
        const int factor = ScaledChoiceFactor(key, &scaled);
        if (scaled && factor != 0 && IsNumberType(entry.m_type))
            return ScaledText(entry, factor);
    }
    return entry.m_value;
}

CString IniExpertScaledText(const KIniExpertEntry& entry, int choice)
{
    if (choice < 0 || choice >= entry.m_choiceKeys.GetSize() || !IsNumberType(entry.m_type))
        return entry.m_value;
    bool scaled = false;
    const int factor = ScaledChoiceFactor(entry.m_choiceKeys[choice], &scaled);
    return scaled && factor != 0 ? ScaledText(entry, factor) : entry.m_value;
}

CString IniExpertStoredValue(const KIniExpertEntry& entry, int choice, const char* typed)
{
    const CString text(typed ? typed : "");
    if (choice < 0 || choice >= entry.m_choiceKeys.GetSize() || !IsNumberType(entry.m_type))
        return text;
    bool scaled = false;
    const int factor = ScaledChoiceFactor(entry.m_choiceKeys[choice], &scaled);
    if (!scaled || factor == 0)
        return text;
    CString stored;
    if (entry.m_type == "0") {
        const std::uint32_t product =
            static_cast<std::uint32_t>(TextToInt(text)) * static_cast<std::uint32_t>(factor);
        stored.Format("%d", static_cast<int>(product));
    } else {
        stored = FixedText(TextToDouble(text) * factor).c_str();
    }
    return stored;
}

} // namespace vx

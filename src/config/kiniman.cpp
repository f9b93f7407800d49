#include "config/kiniman.h"

#include "config/numbertext_p.h"
#include "platform/files/atomicfile_p.h"
#include "platform/files/hostpath.h"
#include "platform/framework/mbstring.h"
#include "platform/windows/messagebox.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace {

// The line buffer of the original: a read takes at most 999 bytes.
constexpr std::size_t kPieceMax = 999;
// The working buffers for name, key and value held 500 bytes.
constexpr std::size_t kFieldSize = 500;

// Reads a file in the pieces a text-mode read of at most 999 bytes
// returned: CR LF arrives as LF, and a longer line arrives in several
// pieces. Each piece is handed on without its line end and up to its first
// zero byte, as the original's C string functions saw it.
class PieceReader {
public:
    explicit PieceReader(FILE* file) : m_file(file) {}

    bool Next(std::string_view& piece)
    {
        if (!std::fgets(m_buffer, sizeof m_buffer, m_file))
            return false;
        std::size_t length = std::strlen(m_buffer);
        if (length > 0 && m_buffer[length - 1] == '\n') {
            --length;
            if (length > 0 && m_buffer[length - 1] == '\r')
                --length;
        } else if (length == kPieceMax && m_buffer[length - 1] == '\r') {
            // The CR of a CR LF that the read cut apart: text mode counted
            // the pair as one byte.
            const int next = std::getc(m_file);
            if (next == '\n')
                --length;
            else if (next != EOF)
                std::ungetc(next, m_file);
        }
        piece = std::string_view(m_buffer, length);
        return true;
    }

private:
    FILE* m_file;
    char m_buffer[kPieceMax + 1];
};

// Copies a field into a working buffer, cut to what the buffer holds.
const char* Field(char (&buffer)[kFieldSize], const char* begin, std::size_t length)
{
    length = std::min(length, kFieldSize - 1);
    std::memcpy(buffer, begin, length);
    buffer[length] = 0;
    return buffer;
}

} // namespace

KIniMan::KIniMan() = default;

KIniMan::~KIniMan()
{
    Flush();
    RemoveAll();
}

int KIniMan::ReadFile(const char* file, int flushFirst)
{
    if (!m_FileName.IsEmpty()) {
        if (flushFirst)
            Flush();
        RemoveAll();
    }
    vx::WaitCursor wait;
    m_FileName = file;
    if (m_FileName.IsEmpty())
        return 0;
    FILE* stream = std::fopen(vx::HostPath(m_FileName.View()).c_str(), "rb");
    if (!stream)
        return 0;
    // A directory opens on Linux, but is no file to read.
    struct stat st {};
    if (fstat(fileno(stream), &st) != 0 || S_ISDIR(st.st_mode)) {
        std::fclose(stream);
        return 0;
    }
    std::setvbuf(stream, nullptr, _IOFBF, 1 << 16);

    KIniSection* current = nullptr;
    PieceReader reader(stream);
    std::string_view piece;
    char name[kFieldSize];
    char key[kFieldSize];
    char value[kFieldSize];
    while (reader.Next(piece)) {
        const char* line = piece.data();
        const std::size_t length = piece.size();
        if (length == 0)
            continue;
        if (line[0] == '[') {
            const void* close = std::memchr(line, ']', length);
            if (!close)
                continue;
            const std::size_t nameLength = static_cast<std::size_t>(static_cast<const char*>(close) - line) - 1;
            current = CreateSection(Field(name, line + 1, nameLength));
            continue;
        }
        const void* eq = std::memchr(line, '=', length);
        if (!eq)
            continue;
        const std::size_t keyLength = static_cast<std::size_t>(static_cast<const char*>(eq) - line);
        Field(key, line, keyLength);
        Field(value, line + keyLength + 1, length - keyLength - 1);
        if (current)
            current->SetValue(key, value);
        else
            m_Unsectioned.Add(CString(key) + "=" + value);
    }
    std::fclose(stream);
    return 1;
}

int KIniMan::Flush()
{
    vx::WaitCursor wait;
    if (m_FileName.IsEmpty())
        return 0;

    std::string text;
    for (int i = 0; i < m_Unsectioned.GetSize(); ++i) {
        text += m_Unsectioned[i].View();
        text += '\n';
    }
    for (int i = 0; i < m_Sections.GetSize(); ++i) {
        KIniSection* section = m_Sections[i];
        if (i > 0)
            text += '\n';
        text += '[';
        text += section->m_Section.View();
        text += "]\n";
        POSITION pos = section->m_Entries.GetStartPosition();
        CString key, value;
        while (pos) {
            section->m_Entries.GetNextAssoc(pos, key, value);
            if (key.IsEmpty())
                continue;
            text += key.View();
            text += '=';
            text += value.View();
            text += '\n';
        }
    }
    // The text mode of the original turned every line feed into CR LF,
    // those inside a value included.
    std::string disk;
    disk.reserve(text.size() + text.size() / 16);
    for (const char c : text) {
        if (c == '\n')
            disk += '\r';
        disk += c;
    }

    const auto result = vx::UpdateFile(vx::HostPath(m_FileName.View()), [&](const std::string*, std::string& out) {
        out = disk;
        return true;
    });
    return result == vx::UpdateResult::Done ? 1 : 0;
}

int KIniMan::GetAnzSections()
{
    return m_Sections.GetSize();
}

KIniSection* KIniMan::GetSectionAt(int index)
{
    return m_Sections.GetAt(index);
}

KIniSection* KIniMan::GetSection(const char* section)
{
    for (int i = 0; i < m_Sections.GetSize(); ++i) {
        if (!_mbsicmp(m_Sections[i]->m_Section.GetString(), section))
            return m_Sections[i];
    }
    return nullptr;
}

KIniSection* KIniMan::CreateSection(const char* section)
{
    auto* created = new KIniSection(section);
    m_Sections.Add(created);
    return created;
}

CString KIniMan::ReadString(const char* section, const char* key, const char* defaultValue)
{
    CString value;
    if (KIniSection* s = GetSection(section); s && s->GetValue(key, value))
        return value;
    return CString(defaultValue);
}

int KIniMan::ReadInt(const char* section, const char* key, int defaultValue)
{
    CString value;
    if (KIniSection* s = GetSection(section); s && s->GetValue(key, value) && !value.IsEmpty())
        return vx::TextToInt(value);
    return defaultValue;
}

double KIniMan::ReadDouble(const char* section, const char* key, double defaultValue)
{
    CString value;
    if (KIniSection* s = GetSection(section); s && s->GetValue(key, value) && !value.IsEmpty())
        return vx::TextToDouble(value);
    return defaultValue;
}

float KIniMan::ReadFloat(const char* section, const char* key, float defaultValue)
{
    return static_cast<float>(ReadDouble(section, key, static_cast<double>(defaultValue)));
}

char KIniMan::ReadChar(const char* section, const char* key, char defaultValue)
{
    // The stored text is read and then not used: callers rely on getting
    // their default back.
    (void)ReadString(section, key, "");
    return defaultValue;
}

void KIniMan::WriteString(const char* section, const char* key, const char* value)
{
    if (CheckAndRemove(section, key, value))
        return;
    KIniSection* s = GetSection(section);
    if (!s)
        s = CreateSection(section);
    s->SetValue(key, value);
}

void KIniMan::WriteInt(const char* section, const char* key, int value)
{
    if (CheckAndRemove(section, key, "a"))
        return;
    CString text;
    text.Format("%d", value);
    WriteString(section, key, text);
}

void KIniMan::WriteFloat(const char* section, const char* key, float value)
{
    if (CheckAndRemove(section, key, "a"))
        return;
    WriteString(section, key, vx::FixedText(static_cast<double>(value)).c_str());
}

void KIniMan::WriteDouble(const char* section, const char* key, double value)
{
    if (CheckAndRemove(section, key, "a"))
        return;
    WriteString(section, key, (vx::FixedText(value) + "l").c_str());
}

void KIniMan::WriteChar(const char* section, const char* key, char value)
{
    if (CheckAndRemove(section, key, "a"))
        return;
    const char text[2] = {value, 0};
    WriteString(section, key, text);
}

int KIniMan::ReadSection(const char* section, char* buffer, int size)
{
    KIniSection* s = GetSection(section);
    if (!s)
        return 0;
    int used = 0;
    int end = 0;
    int more;
    s->InitQuery();
    do {
        CString key, value;
        more = s->GetNextEntry(key, value);
        const CString entry = key + "=" + value;
        std::memcpy(buffer + used, entry.GetString(), static_cast<std::size_t>(entry.GetLength()) + 1);
        end = used + entry.GetLength();
        used = end + 1;
    } while (more && used < size);
    buffer[used] = 0;
    return end;
}

int KIniMan::CheckAndRemove(const char* section, const char* key, const char* value)
{
    int done = 0;
    if (!key) {
        // The index moves on after a removal too, so the section that slid
        // into the freed place is not looked at.
        for (int i = 0; i < m_Sections.GetSize(); ++i) {
            if (!_mbsicmp(m_Sections[i]->m_Section.GetString(), section)) {
                delete m_Sections[i];
                m_Sections.RemoveAt(i);
                done = 1;
            }
        }
    }
    if (!value && !done) {
        if (KIniSection* s = GetSection(section))
            s->RemoveEntry(key);
        done = 1;
    }
    return done;
}

void KIniMan::RemoveAll()
{
    for (int i = 0; i < m_Sections.GetSize(); ++i)
        delete m_Sections[i];
    m_Sections.RemoveAll();
    m_Unsectioned.RemoveAll();
}

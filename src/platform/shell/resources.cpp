#include "platform/shell/resources.h"

#include "platform/framework/codepage.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace vx {
namespace {

// The library's strings in UTF-8; they are turned into the code page when
// the table is built, so that a host's choice of code page applies to them.
// Numbers without an entry are missing on purpose (6719 among them).
struct Entry {
    UINT id;
    const char* utf8;
};

constexpr Entry kLibraryStrings[] = {
    {6700, "Plik : "},
    {6706, "VEXAL 5.5"},
    {6707, "VEXAL 5.5 Instalacja"},
    {6708, "%s\n\nProgram współpracujący < %s > jest uruchomiony, błąd w komunikacji"},
    {6709, "%s\n\nUruchomienie programu współpracującego < %s > niemożliwy"},
    {6710, "Windows-Desktop#Office 2003#Szary#Srebrny"},
    {6711, "Windows-Desktop#Jasnoszary#Szary#Srebrno-niebieski#Definiowany dowolnie"},
    {6712, "Normalny#Poziomy#Pionowy#Specjalny"},
    {6713, "Baza danych nie może być otworzona."},
    {6714, "Błąd pamięci"},
    {6717, "Brak dostępu. Możliwy brak uprawnień do odczytu i zapisu lub baza danych nie jest "
           "kompatybilna. Prosimy sprawdzić chwilowe ustawienia Access w obszarze parametrów 'Różne'."},
    {6718, "Brak pliku."},
    {6720, "Brak pola bazy danych > %s < !"},
    {6721, "Brak dostępu do tego katalogu."},
    {6725, "Nie wszystkie wiersze mogą zostać wyświetlone. Wyświetlono %1 wierszy."},
    {6726, "ÄäÖöÜüß"},
    {6727, "Wklejenie bloku w tym miejscu nie jest możliwe."},
    {6728, "Kopiowanie tych wierszy nie jest możliwe."},
    {6729, "Błędna wersja pliku sterowania."},
    {6730, "Błąd w pliku sterowania."},
    {6731, "Nie znaleziono pliku sterowania."},
    {6732, "Opis\nWartość\n"},
};

struct Table {
    std::string codePage;
    // Values are heap strings so that returned pointers survive rehashing.
    std::map<UINT, std::unique_ptr<std::string>> strings;
    std::map<UINT, std::unique_ptr<std::string>> hostStrings;
    std::map<UINT, bool> removed;
};

std::mutex g_lock;
Table& TheTable()
{
    static Table table;
    return table;
}

void BuildLocked(Table& t)
{
    const std::string page = CodePage();
    if (t.codePage == page && !t.strings.empty())
        return;
    t.codePage = page;
    t.strings.clear();
    for (const Entry& e : kLibraryStrings)
        t.strings[e.id] = std::make_unique<std::string>(FromUtf8(e.utf8));
}

} // namespace

const char* FindString(UINT id)
{
    std::lock_guard lock(g_lock);
    Table& t = TheTable();
    if (auto h = t.hostStrings.find(id); h != t.hostStrings.end())
        return h->second->c_str();
    if (t.removed.count(id))
        return nullptr;
    BuildLocked(t);
    auto it = t.strings.find(id);
    return it == t.strings.end() ? nullptr : it->second->c_str();
}

void SetString(UINT id, const char* text)
{
    std::lock_guard lock(g_lock);
    Table& t = TheTable();
    t.removed.erase(id);
    t.hostStrings[id] = std::make_unique<std::string>(text ? text : "");
}

void RemoveString(UINT id)
{
    std::lock_guard lock(g_lock);
    Table& t = TheTable();
    t.hostStrings.erase(id);
    t.removed[id] = true;
}

void ResetStrings()
{
    std::lock_guard lock(g_lock);
    Table& t = TheTable();
    t.hostStrings.clear();
    t.removed.clear();
    t.strings.clear();
    t.codePage.clear();
}

} // namespace vx

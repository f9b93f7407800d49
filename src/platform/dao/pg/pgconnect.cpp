// Connect texts of server databases: the ODBC form with KEY=value pairs, and
// libpq's own forms after "ODBC;". All of them become libpq's keywords and
// values, so that libpq alone decides how to reach the server.
#include "platform/dao/daoconnect.h"
#include "platform/dao/pg/pgengine_p.h"

#include "platform/framework/util_p.h"

#include <libpq-fe.h>

#include <cctype>

namespace vx {

namespace {

constexpr std::string_view kPrefix = "ODBC;";

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

// What follows "ODBC;".
std::string_view Body(std::string_view text)
{
    return Trimmed(Trimmed(text).substr(kPrefix.size()));
}

bool IsUri(std::string_view body)
{
    return body.starts_with("postgresql://") || body.starts_with("postgres://");
}

// The ODBC keys and the libpq keywords they stand for.
const char* OdbcKeyword(const std::string& key)
{
    static const struct {
        const char* odbc;
        const char* libpq;
    } keys[] = {{"DATABASE", "dbname"}, {"SERVER", "host"}, {"HOST", "host"}, {"PORT", "port"},
                {"UID", "user"},        {"PWD", "password"}, {"DSN", "service"}};
    for (const auto& k : keys)
        if (AsciiEqualNoCase(key, k.odbc))
            return k.libpq;
    return nullptr;
}

// The ODBC form: "KEY=value;" pairs, a value in braces may hold ";".
// Whether `body` is written so: it has a ";", or is one pair with a known
// key and a value without blanks ("DSN=project").
bool IsOdbcForm(std::string_view body)
{
    if (body.find(';') != std::string_view::npos)
        return true;
    const auto eq = body.find('=');
    if (eq == std::string_view::npos)
        return false;
    const std::string key(Trimmed(body.substr(0, eq)));
    const std::string_view value = Trimmed(body.substr(eq + 1));
    return OdbcKeyword(key) && value.find(' ') == std::string_view::npos;
}

[[noreturn]] void BadText(const std::string& shown, const std::string& why)
{
    ThrowDao(kDaoServerUnreachable, "ODBC--connection to '" + shown + "' failed. " + why);
}

// A value as the ODBC form writes it: in braces where it could not stand
// bare.
std::string Braced(const std::string& value)
{
    if (value.find_first_of(";{}") == std::string::npos && Trimmed(value) == value)
        return value;
    std::string out = "{";
    for (char c : value) {
        out += c;
        if (c == '}')
            out += '}';
    }
    return out + "}";
}

void ParseOdbc(std::string_view body, ServerConnect& out)
{
    std::size_t i = 0;
    std::string shown = "ODBC;";
    while (i < body.size()) {
        const auto eq = body.find('=', i);
        const auto semi = body.find(';', i);
        if (eq == std::string_view::npos || (semi != std::string_view::npos && semi < eq)) {
            // A piece without "=": only blanks may stand between ";".
            const std::string_view piece = Trimmed(body.substr(i, semi == std::string_view::npos ? body.size() - i
                                                                                                 : semi - i));
            if (!piece.empty())
                BadText(shown, "The connect text has a part without a value.");
            if (semi == std::string_view::npos)
                break;
            i = semi + 1;
            continue;
        }
        const std::string key(Trimmed(body.substr(i, eq - i)));
        std::size_t j = eq + 1;
        while (j < body.size() && body[j] == ' ')
            ++j;
        std::string value;
        if (j < body.size() && body[j] == '{') {
            // ODBC's braces: "}}" stands for "}".
            ++j;
            for (; j < body.size(); ++j) {
                if (body[j] == '}') {
                    if (j + 1 < body.size() && body[j + 1] == '}') {
                        value += '}';
                        ++j;
                        continue;
                    }
                    break;
                }
                value += body[j];
            }
            if (j >= body.size())
                BadText(shown, "A value in braces has no closing brace.");
            ++j;
            while (j < body.size() && body[j] != ';')
                ++j;
        } else {
            const auto end = body.find(';', j);
            value = std::string(Trimmed(body.substr(j, end == std::string_view::npos ? body.size() - j : end - j)));
            j = end == std::string_view::npos ? body.size() : end;
        }
        const char* keyword = OdbcKeyword(key);
        if (!keyword)
            BadText(shown, "The connect text has the unknown key '" + key +
                               "' (known: DATABASE, SERVER, HOST, PORT, UID, PWD, DSN).");
        out.Set(keyword, value);
        if (std::string_view(keyword) != "password")
            shown += (shown.size() > kPrefix.size() ? ";" : "") + key + "=" + Braced(value);
        i = j < body.size() ? j + 1 : j;
    }
    out.shown = shown;
}

void ParseLibpq(std::string_view body, ServerConnect& out)
{
    char* error = nullptr;
    const std::string text(body);
    PQconninfoOption* options = PQconninfoParse(text.c_str(), &error);
    if (!options) {
        // libpq's message may quote the text, password and all.
        if (error)
            PQfreemem(error);
        BadText("ODBC;", IsUri(body) ? "The URI is not valid." : "The connection string is not valid.");
    }
    std::string shown;
    for (PQconninfoOption* o = options; o->keyword; ++o) {
        if (!o->val)
            continue;
        out.Set(o->keyword, o->val);
        if (std::string_view(o->keyword) != "password")
            shown += std::string(shown.empty() ? "" : " ") + o->keyword + "=" + o->val;
    }
    PQconninfoFree(options);
    out.shown = "ODBC;" + shown;
}

} // namespace

void ServerConnect::Set(const std::string& keyword, const std::string& value)
{
    for (std::size_t i = 0; i < keys.size(); ++i)
        if (keys[i] == keyword) {
            values[i] = value;
            return;
        }
    keys.push_back(keyword);
    values.push_back(value);
}

std::string ServerConnect::Get(const std::string& keyword) const
{
    for (std::size_t i = 0; i < keys.size(); ++i)
        if (keys[i] == keyword)
            return values[i];
    return std::string();
}

ServerConnect ParseServerConnect(std::string_view text)
{
    ServerConnect out;
    const std::string_view body = Body(text);
    if (body.empty())
        BadText("ODBC;", "The connect text names no server database.");
    if (!IsUri(body) && IsOdbcForm(body))
        ParseOdbc(body, out);
    else
        ParseLibpq(body, out);
    out.database = out.Get("dbname");
    return out;
}

bool IsServerConnect(std::string_view text)
{
    text = Trimmed(text);
    return text.size() >= kPrefix.size() && AsciiEqualNoCase(std::string(text.substr(0, kPrefix.size())),
                                                             std::string(kPrefix));
}

std::string ServerDatabaseName(std::string_view text)
{
    if (!IsServerConnect(text))
        return std::string();
    try {
        return ParseServerConnect(text).database;
    } catch (CDaoException&) {
        return std::string();
    }
}

std::string WithoutPassword(std::string_view text)
{
    if (!IsServerConnect(text))
        return std::string(text);
    try {
        return ParseServerConnect(text).shown;
    } catch (CDaoException&) {
        return "ODBC;";
    }
}

} // namespace vx

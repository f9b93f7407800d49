#include "platform/dao/daostatements_p.h"

namespace vx {

std::string ColumnList(const std::vector<DaoColumn>& columns)
{
    std::string list;
    for (std::size_t i = 0; i < columns.size(); ++i)
        list += (i ? ", " : "") + QuoteName(columns[i].name);
    return list;
}

std::string InsertStatement(const std::string& table, const std::vector<DaoColumn>& columns,
                            const std::string& assigned, const char* mark)
{
    std::string names, values;
    int k = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (assigned[i] != '1')
            continue;
        const char* comma = ++k > 1 ? ", " : "";
        names += comma + QuoteName(columns[i].name);
        values += comma + (mark + std::to_string(k));
    }
    if (k == 0)
        return "INSERT INTO " + QuoteName(table) + " DEFAULT VALUES";
    return "INSERT INTO " + QuoteName(table) + " (" + names + ") VALUES (" + values + ")";
}

std::string AssignmentList(const std::vector<DaoColumn>& columns, const std::string& assigned, const char* mark,
                           int& count)
{
    std::string sets;
    count = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (assigned[i] != '1')
            continue;
        if (count++)
            sets += ", ";
        sets += QuoteName(columns[i].name) + " = " + mark + std::to_string(count);
    }
    return sets;
}

} // namespace vx

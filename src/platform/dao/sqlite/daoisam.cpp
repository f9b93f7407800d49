// The choice of a file driver by connect text.
#include "platform/dao/sqlite/sqliteengine_p.h"

namespace vx {

std::unique_ptr<IsamDriver> MakeExcelDriver();
std::unique_ptr<IsamDriver> MakeDbaseDriver();

std::unique_ptr<IsamDriver> MakeIsamDriver(const std::string& connect)
{
    // The type stands before the first ";" ("Excel 5.0;HDR=YES;").
    const std::string type = TrimSql(connect.substr(0, connect.find(';')));
    if (AsciiStartsWithNoCase(type, "Excel"))
        return MakeExcelDriver();
    if (AsciiStartsWithNoCase(type, "dBASE"))
        return MakeDbaseDriver();
    ThrowDao(kDaoNoInstallableIsam, "Couldn't find installable ISAM.");
}

} // namespace vx

#include "platform/daoengine_p.h"
namespace vx {
std::unique_ptr<IsamDriver> MakeExcelDriver() { ThrowDao(kDaoNoInstallableIsam, "Couldn't find installable ISAM."); }
std::unique_ptr<IsamDriver> MakeDbaseDriver() { ThrowDao(kDaoNoInstallableIsam, "Couldn't find installable ISAM."); }
}

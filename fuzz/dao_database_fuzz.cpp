// An arbitrary file opened as a database file (SQLite in DAO's place).
#include "daowalk.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool quiet = (vxfuzz::QuietBoxes(), true);
    (void)quiet;
    const std::string file = vxfuzz::WriteScratch("in.mdb", data, size);
    vxfuzz::WalkDatabase(file, "");
    return 0;
}

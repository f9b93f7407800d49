// An arbitrary file opened as a dBASE table: the only .dbf file of a
// directory opened with "dBASE IV".
#include "daowalk.h"

#include <sys/stat.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string dir = [] {
        vxfuzz::QuietBoxes();
        const std::string made = vxfuzz::ScratchDir() + "/dbase";
        mkdir(made.c_str(), 0700);
        return made;
    }();
    vxfuzz::WriteScratch("dbase/PARTS.DBF", data, size);
    vxfuzz::WalkDatabase(dir, "dBASE IV;");
    return 0;
}

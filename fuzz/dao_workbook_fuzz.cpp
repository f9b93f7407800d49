// An arbitrary file opened as an Excel workbook ("Excel 5.0").
#include "daowalk.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool quiet = (vxfuzz::QuietBoxes(), true);
    (void)quiet;
    const std::string file = vxfuzz::WriteScratch("in.xls", data, size);
    vxfuzz::WalkDatabase(file, "Excel 5.0;HDR=YES;");
    return 0;
}

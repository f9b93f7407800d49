// An arbitrary file opened as an Excel workbook ("Excel 5.0").
#include "daowalk.h"

#include <pthread.h>
#include <sanitizer/common_interface_defs.h>

namespace {

// Workbooks are read by freexl in a forked child, and freexl reads past its
// buffers on damaged input: the sanitizer stops the child and the library
// refuses the file, which is the behaviour under test. Without this the
// child would also run libFuzzer's crash handler and leave a false finding.
void ForgetDeathCallbackInChild()
{
    __sanitizer_set_death_callback(nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool once = (vxfuzz::QuietBoxes(), pthread_atfork(nullptr, nullptr, ForgetDeathCallbackInChild), true);
    (void)once;
    const std::string file = vxfuzz::WriteScratch("in.xls", data, size);
    vxfuzz::WalkDatabase(file, "Excel 5.0;HDR=YES;");
    return 0;
}

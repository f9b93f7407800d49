// The suite's ANSI code page and the conversions at the library's edges.
//
// Library text is bytes in one single-byte code page (Windows-1250 unless the
// host chooses another). Text is converted only where it leaves the library:
// file names to UTF-8 at the disk, text to UTF-8 on a terminal or for Qt.
//
//   vx::SetCodePage("WINDOWS-1252");
//   std::string path = vx::ToUtf8("Pl\xE4ne");   // "Pläne" in UTF-8
#pragma once

#include "vxbase_export.h"

#include <string>
#include <string_view>

namespace vx {

// Sets the code page by its iconv name. Returns false (and keeps the old one)
// if iconv does not know the name.
VXBASE_EXPORT bool SetCodePage(const char* iconvName);
// The iconv name of the current code page, "WINDOWS-1250" by default.
VXBASE_EXPORT std::string CodePage();

// Code page bytes to UTF-8. Bytes with no character in the code page become
// U+FFFD. Pure ASCII is returned unchanged without a conversion.
VXBASE_EXPORT std::string ToUtf8(std::string_view bytes);
// UTF-8 to code page bytes; characters that the code page lacks and invalid
// UTF-8 sequences become "?".
VXBASE_EXPORT std::string FromUtf8(std::string_view utf8);
// UTF-16 (the wide text of the original platform) and UTF-32 to code page.
VXBASE_EXPORT std::string FromUtf16(std::u16string_view text);
VXBASE_EXPORT std::string FromUtf32(std::u32string_view text);

} // namespace vx

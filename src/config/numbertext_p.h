// Internal; do not include directly.
//
// Numbers as the settings files hold them. The files are shared with the
// suite's Windows installations, whose runtime wrote and read them in the
// "C" locale; a host whose locale has a decimal comma (a Qt program in a
// Polish or German session) must still write "2.500000" and read it back.
#pragma once

#include <string>

namespace vx {

// printf "%f" of `value` in the "C" locale: six decimals.
std::string FixedText(double value);
// atof in the "C" locale: leading blanks skipped, conversion stops at the
// first byte that does not fit, 0 for no number. Null reads as "".
double TextToDouble(const char* text);
// atoi: leading blanks, sign, decimal digits; stops at the first other byte;
// 0 for no number; values beyond int clamp to INT_MAX or INT_MIN.
int TextToInt(const char* text);

} // namespace vx

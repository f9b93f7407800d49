#include "config/numbertext_p.h"

#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale.h>

namespace vx {
namespace {

locale_t CLocale()
{
    static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return c;
}

} // namespace

std::string FixedText(double value)
{
    const locale_t old = uselocale(CLocale());
    char small[64];
    const int n = std::snprintf(small, sizeof small, "%f", value);
    std::string text;
    if (n >= 0 && static_cast<std::size_t>(n) < sizeof small) {
        text.assign(small, static_cast<std::size_t>(n));
    } else if (n >= 0) {
        // Large magnitudes print every integer digit: up to 309 of them.
        text.resize(static_cast<std::size_t>(n) + 1);
        std::snprintf(text.data(), text.size(), "%f", value);
        text.resize(static_cast<std::size_t>(n));
    }
    uselocale(old);
    return text;
}

double TextToDouble(const char* text)
{
    return text ? strtod_l(text, nullptr, CLocale()) : 0.0;
}

int TextToInt(const char* text)
{
    if (!text)
        return 0;
    const long long value = std::strtoll(text, nullptr, 10);
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}

} // namespace vx

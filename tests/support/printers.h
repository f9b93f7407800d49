// Test support: readable GoogleTest output for the framework types.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/framework/rect.h"

#include <ostream>

inline void PrintTo(const CString& s, std::ostream* os)
{
    *os << '"' << s.GetString() << '"';
}

inline void PrintTo(const CPoint& p, std::ostream* os)
{
    *os << '(' << p.x << ", " << p.y << ')';
}

inline void PrintTo(const CRect& r, std::ostream* os)
{
    *os << '(' << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ')';
}

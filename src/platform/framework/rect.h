// Points, sizes and rectangles: the plain structures POINT, SIZE and RECT
// and the framework's classes CPoint, CSize and CRect over them.
//
// A rectangle includes its left and top edge and excludes its right and
// bottom edge; it is empty when its width or height is not positive.
//
//   CRect r(0, 0, 100, 20);
//   r.DeflateRect(2, 2);                 // (2, 2, 98, 18)
//   bool in = r.PtInRect(CPoint(2, 2));  // true
//   bool out = r.PtInRect(CPoint(98, 2)); // false: right edge excluded
#pragma once

#include "platform/framework/wintypes.h"

#include <algorithm>

struct POINT {
    LONG x;
    LONG y;
};
struct SIZE {
    LONG cx;
    LONG cy;
};
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
using LPCRECT = const RECT*;
using LPPOINT = POINT*;

class CSize : public SIZE {
public:
    constexpr CSize() : SIZE{0, 0} {}
    constexpr CSize(int cx, int cy) : SIZE{cx, cy} {}
    constexpr CSize(SIZE s) : SIZE(s) {}
    // A same-class overload keeps C++20's reversed candidates from tying
    // with the base one; != is derived from ==.
    constexpr bool operator==(const CSize& o) const { return cx == o.cx && cy == o.cy; }
    constexpr bool operator==(const SIZE& o) const { return cx == o.cx && cy == o.cy; }
    CSize& operator+=(SIZE o) { cx += o.cx; cy += o.cy; return *this; }
    CSize& operator-=(SIZE o) { cx -= o.cx; cy -= o.cy; return *this; }
    constexpr CSize operator+(SIZE o) const { return CSize(cx + o.cx, cy + o.cy); }
    constexpr CSize operator-(SIZE o) const { return CSize(cx - o.cx, cy - o.cy); }
    constexpr CSize operator-() const { return CSize(-cx, -cy); }
};

class CPoint : public POINT {
public:
    constexpr CPoint() : POINT{0, 0} {}
    constexpr CPoint(int x, int y) : POINT{x, y} {}
    constexpr CPoint(POINT p) : POINT(p) {}
    constexpr CPoint(SIZE s) : POINT{s.cx, s.cy} {}
    void Offset(int dx, int dy) { x += dx; y += dy; }
    void Offset(POINT p) { Offset(p.x, p.y); }
    void Offset(SIZE s) { Offset(s.cx, s.cy); }
    constexpr bool operator==(const CPoint& o) const { return x == o.x && y == o.y; }
    constexpr bool operator==(const POINT& o) const { return x == o.x && y == o.y; }
    CPoint& operator+=(SIZE s) { x += s.cx; y += s.cy; return *this; }
    CPoint& operator-=(SIZE s) { x -= s.cx; y -= s.cy; return *this; }
    CPoint& operator+=(POINT p) { x += p.x; y += p.y; return *this; }
    CPoint& operator-=(POINT p) { x -= p.x; y -= p.y; return *this; }
    constexpr CPoint operator+(SIZE s) const { return CPoint(x + s.cx, y + s.cy); }
    constexpr CPoint operator-(SIZE s) const { return CPoint(x - s.cx, y - s.cy); }
    constexpr CPoint operator+(POINT p) const { return CPoint(x + p.x, y + p.y); }
    // The difference of two points is a size, as in the framework.
    constexpr CSize operator-(POINT p) const { return CSize(x - p.x, y - p.y); }
    constexpr CPoint operator-() const { return CPoint(-x, -y); }
};

class CRect : public RECT {
public:
    constexpr CRect() : RECT{0, 0, 0, 0} {}
    constexpr CRect(int l, int t, int r, int b) : RECT{l, t, r, b} {}
    constexpr CRect(const RECT& r) : RECT(r) {}
    constexpr CRect(const RECT* r) : RECT(r ? *r : RECT{0, 0, 0, 0}) {}
    constexpr CRect(POINT topLeft, SIZE size) : RECT{topLeft.x, topLeft.y, topLeft.x + size.cx, topLeft.y + size.cy} {}
    constexpr CRect(POINT topLeft, POINT bottomRight) : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr CSize Size() const { return CSize(Width(), Height()); }
    CPoint& TopLeft() { return *reinterpret_cast<CPoint*>(&left); }
    CPoint& BottomRight() { return *reinterpret_cast<CPoint*>(&right); }
    constexpr CPoint TopLeft() const { return CPoint(left, top); }
    constexpr CPoint BottomRight() const { return CPoint(right, bottom); }
    constexpr CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }

    operator RECT*() { return this; }
    operator const RECT*() const { return this; }

    constexpr bool IsRectEmpty() const { return right <= left || bottom <= top; }
    constexpr bool IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    constexpr bool PtInRect(POINT p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
    constexpr bool EqualRect(const RECT* r) const
    {
        return r && left == r->left && top == r->top && right == r->right && bottom == r->bottom;
    }

    void SetRect(int l, int t, int r, int b) { left = l; top = t; right = r; bottom = b; }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void CopyRect(const RECT* r) { if (r) *static_cast<RECT*>(this) = *r; }

    void InflateRect(int x, int y) { left -= x; top -= y; right += x; bottom += y; }
    void InflateRect(SIZE s) { InflateRect(s.cx, s.cy); }
    void InflateRect(int l, int t, int r, int b) { left -= l; top -= t; right += r; bottom += b; }
    void InflateRect(const RECT* r) { InflateRect(r->left, r->top, r->right, r->bottom); }
    void DeflateRect(int x, int y) { InflateRect(-x, -y); }
    void DeflateRect(SIZE s) { InflateRect(-s.cx, -s.cy); }
    void DeflateRect(int l, int t, int r, int b) { InflateRect(-l, -t, -r, -b); }
    void DeflateRect(const RECT* r) { DeflateRect(r->left, r->top, r->right, r->bottom); }
    void OffsetRect(int dx, int dy) { left += dx; right += dx; top += dy; bottom += dy; }
    void OffsetRect(POINT p) { OffsetRect(p.x, p.y); }
    void OffsetRect(SIZE s) { OffsetRect(s.cx, s.cy); }
    void MoveToX(int x) { right = x + Width(); left = x; }
    void MoveToY(int y) { bottom = y + Height(); top = y; }
    void MoveToXY(int x, int y) { MoveToX(x); MoveToY(y); }
    void MoveToXY(POINT p) { MoveToXY(p.x, p.y); }
    void NormalizeRect()
    {
        if (left > right)
            std::swap(left, right);
        if (top > bottom)
            std::swap(top, bottom);
    }

    // The overlap of `a` and `b`; an empty overlap gives (0,0,0,0) and false.
    bool IntersectRect(const RECT* a, const RECT* b)
    {
        CRect r(std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                std::min(a->bottom, b->bottom));
        if (r.IsRectEmpty()) {
            SetRectEmpty();
            return false;
        }
        *this = r;
        return true;
    }
    // The smallest rectangle holding both; empty inputs are passed over.
    bool UnionRect(const RECT* a, const RECT* b)
    {
        const CRect ra(a), rb(b);
        if (ra.IsRectEmpty()) {
            *this = rb.IsRectEmpty() ? CRect() : rb;
        } else if (rb.IsRectEmpty()) {
            *this = ra;
        } else {
            SetRect(std::min(ra.left, rb.left), std::min(ra.top, rb.top), std::max(ra.right, rb.right),
                    std::max(ra.bottom, rb.bottom));
        }
        return !IsRectEmpty();
    }

    constexpr bool operator==(const CRect& r) const { return EqualRect(&r); }
    constexpr bool operator==(const RECT& r) const { return EqualRect(&r); }
    CRect& operator+=(POINT p) { OffsetRect(p); return *this; }
    CRect& operator-=(POINT p) { OffsetRect(-p.x, -p.y); return *this; }
    CRect& operator&=(const RECT& r) { IntersectRect(this, &r); return *this; }
    CRect& operator|=(const RECT& r) { UnionRect(this, &r); return *this; }
    CRect operator+(POINT p) const { CRect r(*this); r.OffsetRect(p); return r; }
    CRect operator-(POINT p) const { CRect r(*this); r.OffsetRect(-p.x, -p.y); return r; }
    CRect operator&(const RECT& o) const { CRect r; r.IntersectRect(this, &o); return r; }
    CRect operator|(const RECT& o) const { CRect r; r.UnionRect(this, &o); return r; }
};

// The free rectangle functions of the desktop API.
inline BOOL SetRect(RECT* r, int l, int t, int rt, int b)
{
    if (!r)
        return FALSE;
    *r = RECT{l, t, rt, b};
    return TRUE;
}
inline BOOL SetRectEmpty(RECT* r) { return SetRect(r, 0, 0, 0, 0); }
inline BOOL CopyRect(RECT* dst, const RECT* src)
{
    if (!dst || !src)
        return FALSE;
    *dst = *src;
    return TRUE;
}
inline BOOL IsRectEmpty(const RECT* r) { return !r || CRect(r).IsRectEmpty(); }
inline BOOL PtInRect(const RECT* r, POINT p) { return r && CRect(r).PtInRect(p); }
inline BOOL EqualRect(const RECT* a, const RECT* b) { return a && CRect(a).EqualRect(b); }
inline BOOL OffsetRect(RECT* r, int dx, int dy)
{
    if (!r)
        return FALSE;
    r->left += dx;
    r->right += dx;
    r->top += dy;
    r->bottom += dy;
    return TRUE;
}
inline BOOL InflateRect(RECT* r, int dx, int dy)
{
    if (!r)
        return FALSE;
    r->left -= dx;
    r->right += dx;
    r->top -= dy;
    r->bottom += dy;
    return TRUE;
}
inline BOOL IntersectRect(RECT* dst, const RECT* a, const RECT* b)
{
    CRect r;
    const bool hit = r.IntersectRect(a, b);
    *dst = r;
    return hit;
}
inline BOOL UnionRect(RECT* dst, const RECT* a, const RECT* b)
{
    CRect r;
    const bool any = r.UnionRect(a, b);
    *dst = r;
    return any;
}

#include "geometry/polygontriang.h"

#include "base/vxmessagebox.h"

#include <cmath>
#include <cstdint>

namespace {

// The drawings' coordinates were 32-bit integers and their products wrapped
// around; unsigned arithmetic gives the same bits without overflow.
std::int32_t Wrap32(std::uint32_t v)
{
    return static_cast<std::int32_t>(v);
}

// A float truncated to an integer as the x86 conversion did: a value that
// does not fit (or NaN) becomes the "integer indefinite" 0x80000000.
int TruncateToInt(float f)
{
    if (!(f >= -2147483648.0f && f < 2147483648.0f))
        return INT32_MIN;
    return static_cast<int>(f);
}

} // namespace

int PolygonTriang::orientation(int n, CArray<POINT, POINT>* points)
{
    const POINT* p = points->GetData();
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        const POINT& a = p[i];
        const POINT& b = p[i + 1 < n ? i + 1 : 0];
        std::uint32_t term = static_cast<std::uint32_t>(a.x) * static_cast<std::uint32_t>(b.y)
                           - static_cast<std::uint32_t>(b.x) * static_cast<std::uint32_t>(a.y);
        sum += Wrap32(term);
    }
    return sum < 0 ? 1 : 0;
}

int PolygonTriang::determinant(int p1, int p2, int p3, CArray<POINT, POINT>* points)
{
    const POINT* p = points->GetData();
    double x1 = p[p1].x, y1 = p[p1].y;
    double x2 = p[p2].x, y2 = p[p2].y;
    double x3 = p[p3].x, y3 = p[p3].y;
    double det = (x2 - x1) * (y3 - y1) - (x3 - x1) * (y2 - y1);
    return det < 0 ? 1 : 0;
}

float PolygonTriang::distance2(int x1, int y1, int x2, int y2)
{
    float dx = static_cast<float>(Wrap32(static_cast<std::uint32_t>(x1) - static_cast<std::uint32_t>(x2)));
    float dy = static_cast<float>(Wrap32(static_cast<std::uint32_t>(y1) - static_cast<std::uint32_t>(y2)));
    return dx * dx + dy * dy;
}

int PolygonTriang::no_interior(int p1, int p2, int p3, CArray<POINT, POINT>* points, int* list, int n,
                               int polygonOrientation)
{
    for (int i = 0; i < n; ++i) {
        int p = list[i];
        if (p == p1 || p == p2 || p == p3)
            continue;
        if (determinant(p2, p1, p, points) != polygonOrientation
            && determinant(p1, p3, p, points) != polygonOrientation
            && determinant(p3, p2, p, points) != polygonOrientation)
            return 0;
    }
    return 1;
}

double PolygonTriang::GetPolygonPlane(CArray<POINT, POINT>* points)
{
    if (!points)
        return 0.0;
    int n = points->GetSize();
    if (n > MaxPoints)
        return -1.0;
    // The last step reads three entries of the working list; with fewer
    // points there is no area to measure.
    if (n < 3)
        return 0.0;

    const int polygonOrientation = orientation(n, points);
    const POINT* pts = points->GetData();

    // The working list, and for each of its positions what the ear test said
    // about the triangle of that position and its neighbours. Whether a
    // vertex is an ear depends only on its two neighbours and on which
    // vertices are still in the list, so after a cut only the two new
    // neighbours and the triangles that held the cut vertex are tested
    // again. The choice is exactly that of testing every position on every
    // round, at a fraction of the cost; and it is all on the stack.
    int list[MaxPoints];
    unsigned char convex[MaxPoints]; // the turn at the position has the polygon's orientation
    unsigned char ear[MaxPoints];
    float diagonal[MaxPoints]; // squared closing diagonal of an ear

    auto assess = [&](int i) {
        int prev = list[i == 0 ? n - 1 : i - 1];
        int cur = list[i];
        int next = list[i + 1 == n ? 0 : i + 1];
        convex[i] = determinant(prev, cur, next, points) == polygonOrientation;
        ear[i] = convex[i] && no_interior(prev, cur, next, points, list, n, polygonOrientation);
        if (ear[i])
            diagonal[i] = distance2(pts[prev].x, pts[prev].y, pts[next].x, pts[next].y);
    };

    for (int i = 0; i < n; ++i)
        list[i] = i;
    for (int i = 0; i < n; ++i)
        assess(i);

    double sum = 0.0;
    bool told = false;
    while (n > 3) {
        float smallest = 1.0e30f;
        int chosen = 0;
        bool found = false;
        for (int i = 0; i < n; ++i) {
            if (ear[i] && diagonal[i] < smallest) {
                smallest = diagonal[i];
                chosen = i;
                found = true;
            }
        }
        if (!found && !told) {
            // A polygon that crosses itself can leave no ear on many rounds;
            // one box per call is enough to tell the user.
            VxAfxMessageBox("Error: Didn't find a triangle.\n", MB_OK | MB_ICONERROR, 0);
            told = true;
        }

        const int prevPos = chosen == 0 ? n - 1 : chosen - 1;
        const int nextPos = chosen + 1 == n ? 0 : chosen + 1;
        const int cut = list[chosen];
        const POINT& a = pts[list[prevPos]];
        const POINT& b = pts[cut];
        const POINT& c = pts[list[nextPos]];
        vertex triangle[3] = {{static_cast<float>(a.x), static_cast<float>(a.y)},
                              {static_cast<float>(b.x), static_cast<float>(b.y)},
                              {static_cast<float>(c.x), static_cast<float>(c.y)}};
        sum += GetTriangleFlacheInhalt(triangle);

        --n;
        for (int i = chosen; i < n; ++i) {
            list[i] = list[i + 1];
            convex[i] = convex[i + 1];
            ear[i] = ear[i + 1];
            diagonal[i] = diagonal[i + 1];
        }
        if (n == 3)
            break;

        // The neighbours of the cut now meet each other.
        const int left = chosen == 0 ? n - 1 : chosen - 1;
        const int right = chosen == n ? 0 : chosen;
        for (int i = 0; i < n; ++i) {
            if (i == left || i == right) {
                assess(i);
                continue;
            }
            // An ear stays an ear when a vertex leaves the list. A convex
            // vertex that was no ear may have been blocked only by the cut
            // vertex: test it again if the cut vertex lay in its triangle.
            if (!convex[i] || ear[i])
                continue;
            int p1 = list[i == 0 ? n - 1 : i - 1];
            int p2 = list[i];
            int p3 = list[i + 1 == n ? 0 : i + 1];
            if (determinant(p2, p1, cut, points) != polygonOrientation
                && determinant(p1, p3, cut, points) != polygonOrientation
                && determinant(p3, p2, cut, points) != polygonOrientation)
                assess(i);
        }
    }

    const POINT& a = pts[list[0]];
    const POINT& b = pts[list[1]];
    const POINT& c = pts[list[2]];
    vertex last[3] = {{static_cast<float>(a.x), static_cast<float>(a.y)},
                      {static_cast<float>(b.x), static_cast<float>(b.y)},
                      {static_cast<float>(c.x), static_cast<float>(c.y)}};
    sum += GetTriangleFlacheInhalt(last);
    return sum;
}

double PolygonTriang::GetTriangleFlacheInhalt(vertex* const triangle)
{
    const vertex& t0 = triangle[0];
    const vertex& t1 = triangle[1];
    const vertex& t2 = triangle[2];

    // The sine of the angle at t[0], by way of its cosine. A cosine of
    // exactly 0 counts as no area: the drawings' right angles at the first
    // vertex have always measured 0, and their totals must stay as they were.
    float ax = t2.x - t0.x;
    float ay = t2.y - t0.y;
    float bx = t1.x - t0.x;
    float by = t1.y - t0.y;
    double dot = static_cast<double>(ax) * bx + static_cast<double>(ay) * by;
    double la = std::sqrt(static_cast<double>(ax) * ax + static_cast<double>(ay) * ay);
    double lb = std::sqrt(static_cast<double>(bx) * bx + static_cast<double>(by) * by);
    double c = dot / (la * lb);
    double s = (c == 0.0 || std::isnan(c)) ? 0.0 : std::sqrt(1.0 - c * c);

    // The side lengths come from the truncated coordinates, not from the
    // vectors above.
    int x0 = TruncateToInt(t0.x), y0 = TruncateToInt(t0.y);
    float d1 = distance2(x0, y0, TruncateToInt(t1.x), TruncateToInt(t1.y));
    float d2 = distance2(x0, y0, TruncateToInt(t2.x), TruncateToInt(t2.y));
    if (d1 == 0.0f || d2 == 0.0f)
        return 0.0;
    return std::sqrt(static_cast<double>(d1)) * std::sqrt(static_cast<double>(d2)) * s * 0.5;
}

// The area of a simple polygon in integer coordinates, measured by ear
// clipping: the polygon is cut into triangles, always at the ear with the
// shortest closing diagonal, and the areas of the triangles are added up.
// The triangles themselves are not kept.
//
//   CArray<POINT, POINT> outline;
//   outline.Add(POINT{0, 0});
//   outline.Add(POINT{40, 0});
//   outline.Add(POINT{40, 30});
//   double area = PolygonTriang().GetPolygonPlane(&outline);
//
// The arithmetic is that of the suite's drawings and is kept as it is, with
// its quirks: a triangle whose right angle lies exactly at its first vertex
// counts 0, and the orientation test wraps around in 32 bits for very large
// coordinates. So the result is close to, but not always, the true area.
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/rect.h"
#include "vxbase_export.h"

// A point in floating point; a triangle is passed as an array of three.
struct vertex {
    float x;
    float y;
};

class VXBASE_EXPORT PolygonTriang {
public:
    // The most points a polygon may have: the working list has this many
    // entries, on the stack.
    static constexpr int MaxPoints = 2048;

    // The area of the polygon `points`, given in order in either direction;
    // the last point joins the first and is not repeated. -1.0 if there are
    // more than MaxPoints points; 0.0 for fewer than three points or null.
    // A polygon that is not simple may leave no ear: the user is told once
    // and the result is then wrong, but the call always ends.
    double GetPolygonPlane(CArray<POINT, POINT>* points);

    // The area of the triangle `triangle[0..2]`, by the sine of the angle at
    // triangle[0]: 0 when that angle is exactly a right angle or when two of
    // the points coincide. The side lengths are taken from the coordinates
    // truncated to integers.
    double GetTriangleFlacheInhalt(vertex* const triangle);

private:
    int orientation(int n, CArray<POINT, POINT>* points);
    int determinant(int p1, int p2, int p3, CArray<POINT, POINT>* points);
    float distance2(int x1, int y1, int x2, int y2);
    int no_interior(int p1, int p2, int p3, CArray<POINT, POINT>* points, int* list, int n,
                    int polygonOrientation);
};

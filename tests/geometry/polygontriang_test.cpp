#include "geometry/polygontriang.h"
#include "platform/windows/messagebox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <random>
#include <string>
#include <vector>

// Counts every allocation of the test binary (the library included), to show
// that measuring a polygon allocates nothing.
namespace {
std::atomic<long> g_allocations{0};
}

// GCC cannot see that these two replace each other, and warns.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t size)
{
    ++g_allocations;
    if (void* p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept
{
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    std::free(p);
}
#pragma GCC diagnostic pop

namespace {

using Polygon = CArray<POINT, POINT>;

Polygon Make(const std::vector<POINT>& points)
{
    Polygon polygon;
    for (const POINT& p : points)
        polygon.Add(p);
    return polygon;
}

Polygon Reversed(const Polygon& polygon)
{
    Polygon reversed;
    for (int i = polygon.GetSize() - 1; i >= 0; --i)
        reversed.Add(polygon[i]);
    return reversed;
}

// Star-shaped: radii alternate between `outer` and `inner` around (0, 0).
Polygon Star(int n, double outer, double inner)
{
    Polygon polygon;
    for (int i = 0; i < n; ++i) {
        double angle = 2.0 * M_PI * i / n;
        double r = i % 2 ? inner : outer;
        polygon.Add(POINT{static_cast<LONG>(std::lround(r * std::cos(angle))),
                          static_cast<LONG>(std::lround(r * std::sin(angle)))});
    }
    return polygon;
}

double TrueArea(const Polygon& polygon)
{
    double sum = 0;
    for (int i = 0; i < polygon.GetSize(); ++i) {
        const POINT& a = polygon[i];
        const POINT& b = polygon[(i + 1) % polygon.GetSize()];
        sum += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
    }
    return std::fabs(sum) / 2;
}

// The cutting as it reads, test by test on every round, with none of the
// library's shortcuts. The triangles are measured by the library's own
// function, which is tested on its own below.
struct Reference {
    bool tiesToHigherPosition = false;
    int roundsWithoutEar = 0;

    static int Turn(const POINT& a, const POINT& b, const POINT& c)
    {
        double det = (double(b.x) - a.x) * (double(c.y) - a.y) - (double(c.x) - a.x) * (double(b.y) - a.y);
        return det < 0 ? 1 : 0;
    }

    double Area(const Polygon& polygon)
    {
        const int count = polygon.GetSize();
        if (count > 2048)
            return -1.0;
        if (count < 3)
            return 0.0;
        double shoelace = 0;
        for (int i = 0; i < count; ++i) {
            const POINT& a = polygon[i];
            const POINT& b = polygon[(i + 1) % count];
            std::int64_t term = std::int64_t(a.x) * b.y - std::int64_t(b.x) * a.y;
            shoelace += static_cast<std::int32_t>(static_cast<std::uint32_t>(term));
        }
        const int orient = shoelace < 0 ? 1 : 0;

        std::vector<int> list;
        for (int i = 0; i < count; ++i)
            list.push_back(i);
        auto at = [&](int position) { return polygon[list[position]]; };

        double sum = 0;
        PolygonTriang measure;
        while (list.size() > 3) {
            const int n = static_cast<int>(list.size());
            float best = 1.0e30f;
            int chosen = 0;
            bool found = false;
            for (int i = 0; i < n; ++i) {
                const POINT prev = at((i + n - 1) % n);
                const POINT cur = at(i);
                const POINT next = at((i + 1) % n);
                if (Turn(prev, cur, next) != orient)
                    continue;
                bool empty = true;
                for (int k = 0; k < n && empty; ++k) {
                    if (k == i || k == (i + n - 1) % n || k == (i + 1) % n)
                        continue;
                    const POINT p = at(k);
                    if (Turn(cur, prev, p) != orient && Turn(prev, next, p) != orient
                        && Turn(next, cur, p) != orient)
                        empty = false;
                }
                if (!empty)
                    continue;
                float dx = static_cast<float>(std::int64_t(prev.x) - next.x);
                float dy = static_cast<float>(std::int64_t(prev.y) - next.y);
                float d = dx * dx + dy * dy;
                if (d < best || (tiesToHigherPosition && found && d == best)) {
                    best = d;
                    chosen = i;
                    found = true;
                }
            }
            if (!found)
                ++roundsWithoutEar;
            vertex t[3];
            for (int j = 0; j < 3; ++j) {
                const POINT p = at((chosen + n - 1 + j) % n);
                t[j] = {float(p.x), float(p.y)};
            }
            sum += measure.GetTriangleFlacheInhalt(t);
            list.erase(list.begin() + chosen);
        }
        vertex t[3];
        for (int j = 0; j < 3; ++j)
            t[j] = {float(at(j).x), float(at(j).y)};
        return sum + measure.GetTriangleFlacheInhalt(t);
    }
};

double Library(Polygon polygon)
{
    return PolygonTriang().GetPolygonPlane(&polygon);
}

void ExpectSame(double expected, double actual)
{
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(actual)) << actual;
    else
        EXPECT_EQ(expected, actual);
}

// Catches the library's boxes for the life of the object.
struct BoxCatcher {
    std::vector<std::string> texts;
    vx::MessageBoxHandler previous;
    BoxCatcher()
    {
        previous = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            texts.push_back(r.text);
            return IDOK;
        });
    }
    ~BoxCatcher() { vx::SetMessageBoxHandler(previous); }
};

double Triangle(float x0, float y0, float x1, float y1, float x2, float y2)
{
    vertex t[3] = {{x0, y0}, {x1, y1}, {x2, y2}};
    return PolygonTriang().GetTriangleFlacheInhalt(t);
}

} // namespace

TEST(PolygonTriang, TriangleWithRightAngleAtFirstVertexHasNoArea)
{
    EXPECT_EQ(0.0, Triangle(0, 0, 10, 0, 0, 10));
    // The same triangle, starting at another corner, measures its true area.
    EXPECT_NEAR(50.0, Triangle(10, 0, 0, 10, 0, 0), 1e-9);
    EXPECT_NEAR(50.0, Triangle(0, 10, 0, 0, 10, 0), 1e-9);
}

TEST(PolygonTriang, TriangleWithCoincidingPointsHasNoArea)
{
    EXPECT_EQ(0.0, Triangle(3, 4, 3, 4, 9, 1));
    EXPECT_EQ(0.0, Triangle(3, 4, 9, 1, 3, 4));
    EXPECT_EQ(0.0, Triangle(3, 4, 3, 4, 3, 4));
}

TEST(PolygonTriang, TriangleSidesComeFromTruncatedCoordinates)
{
    // An angle of 45 degrees at (0, 0); the sides 3.9 and 2.9 * sqrt(2) are
    // measured as 3 and 2 * sqrt(2), so the area is 3, not 5.655.
    EXPECT_NEAR(3.0, Triangle(0, 0, 3.9f, 0, 2.9f, 2.9f), 1e-5);
    // Truncation goes toward zero for negative coordinates too.
    EXPECT_NEAR(3.0, Triangle(0, 0, -3.9f, 0, -2.9f, -2.9f), 1e-5);
}

TEST(PolygonTriang, ThreePointsAreOneTriangleMeasuredAtTheFirst)
{
    Polygon right = Make({{0, 0}, {10, 0}, {0, 10}});
    EXPECT_EQ(0.0, Library(right));
    Polygon rotated = Make({{10, 0}, {0, 10}, {0, 0}});
    EXPECT_EQ(Triangle(10, 0, 0, 10, 0, 0), Library(rotated));
}

TEST(PolygonTriang, FewerThanThreePointsHaveNoArea)
{
    EXPECT_EQ(0.0, Library(Make({})));
    EXPECT_EQ(0.0, Library(Make({{5, 5}})));
    EXPECT_EQ(0.0, Library(Make({{5, 5}, {10, 20}})));
    EXPECT_EQ(0.0, PolygonTriang().GetPolygonPlane(nullptr));
}

TEST(PolygonTriang, AcceptsAtMost2048Points)
{
    Polygon largest = Star(2048, 100000, 90000);
    double area = Library(largest);
    EXPECT_NEAR(TrueArea(largest), area, TrueArea(largest) * 0.01);

    largest.Add(POINT{100000, -1});
    EXPECT_EQ(-1.0, Library(largest));
}

TEST(PolygonTriang, SquareIsCutIntoTwoHalves)
{
    for (const Polygon& square : {Make({{0, 0}, {10, 0}, {10, 10}, {0, 10}}),
                                  Reversed(Make({{0, 0}, {10, 0}, {10, 10}, {0, 10}}))}) {
        EXPECT_NEAR(100.0, Library(square), 1e-9);
        ExpectSame(Reference().Area(square), Library(square));
    }
}

TEST(PolygonTriang, EqualDiagonalsCutAtTheLowerPositionFirst)
{
    // Positions 0 and 2 both close the diagonal (10,10)-(0,10). Cutting 0
    // first gives a triangle with its right angle at (0,10), which counts 0;
    // cutting 2 first would have measured all 100.
    Polygon kite = Make({{0, 0}, {10, 10}, {5, 20}, {0, 10}});
    EXPECT_NEAR(50.0, Library(kite), 1e-9);
    Reference higher;
    higher.tiesToHigherPosition = true;
    EXPECT_NEAR(100.0, higher.Area(kite), 1e-9);
}

TEST(PolygonTriang, ConvexAndConcavePolygonsInBothDirections)
{
    const std::vector<Polygon> shapes = {
        Make({{0, 0}, {40, 0}, {55, 20}, {30, 45}, {-5, 25}}),                   // convex
        Make({{0, 0}, {30, 0}, {30, 10}, {10, 10}, {10, 30}, {0, 30}}),          // L
        Make({{0, 0}, {50, 0}, {50, 40}, {25, 10}, {0, 40}}),                    // notch
        Make({{0, 0}, {60, 0}, {60, 60}, {40, 60}, {40, 20}, {20, 20}, {20, 60}, {0, 60}}), // U
        Star(24, 1000, 300),
    };
    for (const Polygon& shape : shapes) {
        for (const Polygon& polygon : {shape, Reversed(shape)}) {
            SCOPED_TRACE(::testing::Message() << polygon.GetSize() << " points, from (" << polygon[0].x << ","
                                              << polygon[0].y << ") to (" << polygon[1].x << ","
                                              << polygon[1].y << ")");
            double area = Library(polygon);
            ExpectSame(Reference().Area(polygon), area);
            // The right-angle rule can only lose area, never add any.
            EXPECT_LE(area, TrueArea(polygon) * (1 + 1e-6));
            EXPECT_GT(area, 0.0);
        }
    }
}

TEST(PolygonTriang, DegeneratePolygonsFollowTheArithmetic)
{
    BoxCatcher boxes;
    const std::vector<Polygon> shapes = {
        Make({{0, 0}, {10, 0}, {20, 0}, {30, 0}}),            // all on a line
        Make({{0, 0}, {10, 10}, {20, 20}, {10, 10}}),         // back and forth
        Make({{0, 0}, {10, 0}, {10, 0}, {10, 10}, {0, 10}}),  // a repeated point
        Make({{0, 0}, {10, 0}, {20, 0}, {20, 10}, {0, 10}}),  // a straight angle
        Make({{5, 5}, {5, 5}, {5, 5}, {5, 5}}),               // one point
        Make({{0, 0}, {10, 10}, {10, 0}, {0, 10}}),           // a bow tie
    };
    for (const Polygon& shape : shapes) {
        for (const Polygon& polygon : {shape, Reversed(shape)}) {
            SCOPED_TRACE(::testing::Message() << polygon.GetSize() << " points from (" << polygon[0].x << ","
                                              << polygon[0].y << ")");
            ExpectSame(Reference().Area(polygon), Library(polygon));
        }
    }
    EXPECT_EQ(0.0, Library(shapes[0]));
    EXPECT_EQ(0.0, Library(shapes[4]));
}

TEST(PolygonTriang, AgreesWithTheReferenceOnRandomPolygons)
{
    BoxCatcher boxes;
    std::mt19937 random(20240611);
    for (int round = 0; round < 300; ++round) {
        const int n = 4 + static_cast<int>(random() % 60);
        Polygon polygon;
        if (round % 3 == 2) {
            // Points in any order: mostly not simple, often without an ear.
            for (int i = 0; i < n; ++i)
                polygon.Add(POINT{LONG(random() % 41), LONG(random() % 41)});
        } else {
            // Star-shaped around the origin, with radii on a coarse grid so
            // that collinear and repeated points occur.
            std::vector<double> angles;
            for (int i = 0; i < n; ++i)
                angles.push_back((random() % 3600) * M_PI / 1800.0);
            std::sort(angles.begin(), angles.end());
            for (double a : angles) {
                double r = 10.0 * (1 + random() % 10);
                polygon.Add(POINT{LONG(std::lround(r * std::cos(a))), LONG(std::lround(r * std::sin(a)))});
            }
            if (round % 2)
                polygon = Reversed(polygon);
        }
        SCOPED_TRACE(::testing::Message() << "round " << round << ", " << n << " points");
        ExpectSame(Reference().Area(polygon), Library(polygon));
    }
}

TEST(PolygonTriang, OrientationWrapsAroundIn32Bits)
{
    // The shoelace terms of this square overflow 32 bits and wrap to
    // negative, so it counts as clockwise although it runs the other way.
    // Then no vertex is an ear: the user is told, and position 0 is cut.
    BoxCatcher boxes;
    Polygon big = Make({{0, 0}, {50000, 0}, {50000, 50000}, {0, 50000}});
    double area = Library(big);
    ASSERT_EQ(1u, boxes.texts.size());
    EXPECT_EQ("Error: Didn't find a triangle.\n", boxes.texts[0]);
    ExpectSame(Reference().Area(big), area);

    // A tenth of the size stays within 32 bits and is cut normally.
    boxes.texts.clear();
    Library(Make({{0, 0}, {5000, 0}, {5000, 5000}, {0, 5000}}));
    EXPECT_TRUE(boxes.texts.empty());
}

TEST(PolygonTriang, TellsOnceWhenRoundsFindNoEar)
{
    // Convex, and taken for clockwise by the wrapped orientation: no round
    // finds an ear.
    BoxCatcher boxes;
    Polygon big = Make({{0, 0}, {50000, 0}, {75000, 25000}, {50000, 50000}, {0, 50000}, {-25000, 25000}});
    Reference reference;
    double expected = reference.Area(big);
    ASSERT_GE(reference.roundsWithoutEar, 2);
    ExpectSame(expected, Library(big));
    EXPECT_EQ(1u, boxes.texts.size());
}

TEST(PolygonTriang, MeasuringAllocatesNothing)
{
    Polygon star = Star(2048, 100000, 40000);
    PolygonTriang triang;
    long before = g_allocations.load();
    double area = triang.GetPolygonPlane(&star);
    EXPECT_EQ(before, g_allocations.load());
    EXPECT_GT(area, 0.0);
}

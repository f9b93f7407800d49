// area: the area of a polygon by ear clipping (PolygonTriang).
//
//   vxhost area 0,0 40,0 40,30 0,30     the points on the command line
//   vxhost area FILE                    a file of "X Y" lines
#include "democommand.h"

#include <vxbase.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using Polygon = CArray<POINT, POINT>;

bool ParsePoint(const std::string& word, POINT& point)
{
    long x = 0, y = 0;
    char comma = 0, rest = 0;
    std::istringstream in(word);
    if (!(in >> x >> comma >> y) || comma != ',' || (in >> rest))
        return false;
    point = POINT{static_cast<LONG>(x), static_cast<LONG>(y)};
    return true;
}

bool ReadOutline(const std::string& path, Polygon& polygon)
{
    std::ifstream in(path);
    if (!in)
        return false;
    long x = 0, y = 0;
    while (in >> x >> y)
        polygon.Add(POINT{static_cast<LONG>(x), static_cast<LONG>(y)});
    return in.eof();
}

double ShoelaceArea(const Polygon& polygon)
{
    double sum = 0;
    for (int i = 0; i < polygon.GetSize(); ++i) {
        const POINT& a = polygon[i];
        const POINT& b = polygon[(i + 1) % polygon.GetSize()];
        sum += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
    }
    return std::fabs(sum) / 2;
}

void Report(const char* what, Polygon& polygon)
{
    double area = PolygonTriang().GetPolygonPlane(&polygon);
    if (area < 0)
        std::printf("  %-34s %d points: too many (at most %d)\n", what, polygon.GetSize(), PolygonTriang::MaxPoints);
    else
        std::printf("  %-34s %4d points: area %.2f (exact %.2f)\n", what, polygon.GetSize(), area,
                    ShoelaceArea(polygon));
}

int Tour()
{
    vxhost::Heading("Polygon area by ear clipping");
    std::string pattern = (std::filesystem::temp_directory_path() / "vxhost-area-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        return 1;
    const std::filesystem::path dir(pattern);

    // A cabinet outline with a cut-out corner, as a file of points.
    const std::string file = (dir / "cabinet.txt").string();
    std::ofstream(file) << "0 0\n600 0\n600 400\n450 400\n450 1800\n0 1800\n";
    Polygon cabinet;
    bool read = ReadOutline(file, cabinet);
    std::filesystem::remove_all(dir);
    if (!read)
        return 1;
    Report("cabinet outline (from a file)", cabinet);

    Polygon square;
    for (POINT p : {POINT{0, 0}, POINT{100, 0}, POINT{100, 100}, POINT{0, 100}})
        square.Add(p);
    Report("square", square);

    // The suite's arithmetic: a right angle at the first vertex of a
    // triangle measures 0.
    Polygon right;
    for (POINT p : {POINT{0, 0}, POINT{30, 0}, POINT{0, 40}})
        right.Add(p);
    Report("right triangle, right angle first", right);
    Polygon turned;
    for (POINT p : {POINT{30, 0}, POINT{0, 40}, POINT{0, 0}})
        turned.Add(p);
    Report("the same, starting elsewhere", turned);
    return 0;
}

int RunArea(vxhost::Args& args)
{
    if (args.tour)
        return Tour();
    if (args.words.empty() || std::any_of(args.words.begin(), args.words.end(), vxhost::IsOption)) {
        std::fprintf(stderr, "area: give the points as X,Y ... or a file of \"X Y\" lines\n");
        return vxhost::Usage("area");
    }
    Polygon polygon;
    if (args.words.size() == 1 && args.words[0].find(',') == std::string::npos) {
        if (!ReadOutline(args.words[0], polygon)) {
            std::fprintf(stderr, "area: cannot read the points of %s\n", args.words[0].c_str());
            return 1;
        }
    } else {
        for (const std::string& word : args.words) {
            POINT p;
            if (!ParsePoint(word, p)) {
                std::fprintf(stderr, "area: not a point X,Y: %s\n", word.c_str());
                return vxhost::Usage("area");
            }
            polygon.Add(p);
        }
    }
    Report("polygon", polygon);
    return 0;
}

} // namespace

VXHOST_COMMAND("area", "X,Y ... | FILE  the area of a polygon by ear clipping", 60, RunArea);

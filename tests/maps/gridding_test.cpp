// The six gridding methods: closed forms that each must meet, the points themselves, and points that are few,
// on one line, double or no numbers. Values against other implementations: benchmarks/peers.
#include "maps/gridding.h"

#include "samples/random.h"
#include "tests/failures.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace orv {
namespace {

using surface = std::function<double(double, double)>;
using enum griddingmethod;

constexpr griddingmethod allmethods[] = {kriging,     minimumcurvature, polynomial,
                                         radialbasis, shepard,          triangulation};

double plane(double x, double y) {
    return 70 + 0.5 * x - 0.25 * y;
}

void add(scatteredpoints& points, double x, double y, double value) {
    points.x.push_back(x);
    points.y.push_back(y);
    points.value.push_back(value);
}

// On the whole numbers of a square, which are nodes of `nodes` below, a few left out; or anywhere.
scatteredpoints onnodes(const surface& value) {
    scatteredpoints points;
    for (int x = 0; x <= 8; ++x)
        for (int y = 0; y <= 8; ++y)
            if ((x * 7 + y * 5) % 4 != 1) add(points, x, y, value(x, y));
    return points;
}
scatteredpoints anywhere(int count, const surface& value) {
    samples::randomstate random{3};
    scatteredpoints points;
    for (int k = 0; k < count; ++k) {
        const double x = 8 * samples::nextuniform(random), y = 8 * samples::nextuniform(random);
        add(points, x, y, value(x, y));
    }
    return points;
}

const gridframe nodes{17, 17, 0, 8, 0, 8};

double worst(const regulargrid& grid, const surface& expected) {
    double most = 0;
    for (int j = 0; j < grid.frame.rows; ++j)
        for (int i = 0; i < grid.frame.columns; ++i)
            if (grid.value(i, j) != blankednode)
                most =
                    std::max(most, std::fabs(grid.value(i, j) - expected(grid.frame.x(i), grid.frame.y(j))));
    return most;
}

TEST(gridding, ReproducesWhatTheMethodIsExactFor) {
    for (const griddingmethod method : {minimumcurvature, polynomial, shepard, triangulation})
        EXPECT_LT(worst(gridpoints(onnodes(plane), nodes, method), plane), 1e-9) << int(method);
    const surface twisted = [](double x, double y) { return plane(x, y) + 0.1 * x * y; };
    EXPECT_LT(worst(gridpoints(anywhere(60, twisted), nodes, polynomial), twisted), 1e-9);
    const surface bowl = [](double x, double y) { return x * x + 0.3 * x * y - 2 * y * y + x; };
    EXPECT_LT(worst(gridpoints(anywhere(200, bowl), nodes, shepard), bowl), 1e-9);
    // Along a line of points kriging with a linear variogram is the broken line between them.
    scatteredpoints line;
    for (const double x : {0.0, 2.0, 3.0, 8.0}) add(line, x, 0, x * x);
    const regulargrid grid = gridpoints(line, {17, 1, 0, 8, 0, 0}, kriging);
    EXPECT_NEAR(grid.value(2, 0), 2, 1e-9);
    EXPECT_NEAR(grid.value(10, 0), 9 + 2 * 11, 1e-9);
}

TEST(gridding, GoesThroughThePoints) {
    const surface wave = [](double x, double y) { return 80 + 5 * std::sin(x) * std::cos(1.3 * y); };
    // Above the limit of one system, on part of the map; the verification holds fewer points.
    scatteredpoints many;
    for (int k = 0; k < 65 * 65; ++k)
        if (k % 7 != 0) add(many, k % 65 / 8.0, k / 65 / 8.0, wave(k % 65 / 8.0, k / 65 / 8.0));
    for (const griddingmethod method : {kriging, minimumcurvature, radialbasis, shepard, triangulation}) {
        const regulargrid fine = gridpoints(many, {9, 9, 3.5, 4.5, 3.5, 4.5}, method);
        for (std::size_t k = 0; k < many.x.size(); ++k) {
            const double i = 8 * (many.x[k] - 3.5), j = 8 * (many.y[k] - 3.5);
            if (i < 0 || i > 8 || j < 0 || j > 8) continue;
            EXPECT_NEAR(fine.value(int(i), int(j)), many.value[k], 1e-9) << int(method);
        }
        EXPECT_LT(worst(fine, wave), 0.1) << int(method); // between the points too
    }
}

TEST(gridding, DoublePointsAreAveragedAndWhatIsNoNumberIsLeftOut) {
    scatteredpoints points;
    add(points, 2, 1, 10);
    add(points, 1, 1, 70);
    add(points, -0.0, 1, 5);
    add(points, 1, 1, 80);
    add(points, 0.0, 1, 6);
    add(points, 3, std::numeric_limits<double>::quiet_NaN(), 1);
    add(points, 3, 3, std::numeric_limits<double>::infinity());
    add(points, 3, 1e191, 1); // the square of its distance is beyond a double
    const scatteredpoints distinct = distinctpoints(points);
    EXPECT_EQ(distinct.x, (std::vector<double>{0, 1, 2}));
    EXPECT_EQ(distinct.value, (std::vector<double>{5.5, 75, 10}));
    EXPECT_EQ(kindof([] { gridpoints({}, nodes, kriging); }), errorkind::domain);
}

TEST(gridding, FewPointsOnALineOrAtOnePlaceGiveASurfaceOrAReason) {
    scatteredpoints one, two, same, line, equal, near;
    add(one, 3, 3, 75);
    add(two, 1, 1, 70);
    add(two, 5, 5, 80);
    for (int k = 0; k < 5; ++k) {
        add(same, 2, 2, 70 + k);
        add(line, k, 2.0 * k, 70 + 2 * k + k % 2);
        add(equal, k, k * k % 5, 75);
        add(near, 4 + 1e-9 * k, 4 + 1e-9 * (k * k % 3), 70 + k);
    }
    for (const griddingmethod method : allmethods)
        for (const scatteredpoints* points : {&one, &two, &same, &line, &equal, &near}) {
            const bool flat = points != &equal && points != &near;
            if (method == triangulation && flat) {
                EXPECT_EQ(kindof([&] { gridpoints(*points, nodes, method); }), errorkind::domain);
                continue;
            }
            if (method == triangulation && points == &near) continue; // no node may lie in such a triangle
            const regulargrid grid = gridpoints(*points, nodes, method);
            double zlo = 0, zhi = 0;
            ASSERT_TRUE(valuerange(grid, zlo, zhi));
            if (points == &near || method == polynomial) continue;
            EXPECT_GT(zlo, 20) << int(method);
            EXPECT_LT(zhi, 130) << int(method);
            if (points == &one || points == &equal) {
                EXPECT_NEAR(zlo, 75, 1e-9) << int(method) << " " << points->count();
                EXPECT_NEAR(zhi, 75, 1e-9) << int(method);
            }
        }
}

TEST(gridding, TriangulationIsBlankOutsideTheHull) {
    scatteredpoints points;
    for (const auto& [x, y] : {std::pair{0, 0}, {8, 0}, {0, 8}, {2, 2}}) add(points, x, y, plane(x, y));
    const regulargrid grid = gridpoints(points, nodes, triangulation);
    for (int j = 0; j < 17; ++j)
        for (int i = 0; i < 17; ++i) EXPECT_EQ(grid.value(i, j) == blankednode, i + j > 16) << i << " " << j;
    // A single column or row stands in the middle.
    EXPECT_NEAR(gridpoints(points, {1, 1, 2, 4, 2, 4}, triangulation).value(0, 0), plane(3, 3), 1e-9);
}

} // namespace
} // namespace orv

// Contour lines of known functions against their closed forms, and how lines begin, end and join.
#include "maps/contouring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace orv {
namespace {

regulargrid sampled(const gridframe& frame, const std::function<double(double, double)>& value) {
    regulargrid grid(frame);
    for (int j = 0; j < frame.rows; ++j)
        for (int i = 0; i < frame.columns; ++i) grid.row(j)[i] = value(frame.x(i), frame.y(j));
    return grid;
}

std::vector<contourline> linesat(const regulargrid& grid, double level) {
    return contourlines(grid, {level + 1e9, level})[1];
}

bool closed(const contourline& line) {
    return line.points.front().x == line.points.back().x && line.points.front().y == line.points.back().y;
}

double length(const contourline& line) {
    double sum = 0;
    for (std::size_t k = 1; k < line.points.size(); ++k)
        sum += std::hypot(line.points[k].x - line.points[k - 1].x, line.points[k].y - line.points[k - 1].y);
    return sum;
}

TEST(contouring, APlaneHasOneStraightLineForEachLevel) {
    const regulargrid grid = sampled({21, 11, 0, 20, 0, 10}, [](double x, double y) { return 2 * x + y; });
    const auto lines = linesat(refinedgrid(grid, 3), 12.5);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NEAR(length(lines[0]), std::hypot(5, 10), 1e-12);
    for (const contourpoint& p : lines[0].points) EXPECT_NEAR(2 * p.x + p.y, 12.5, 1e-12);
}

TEST(contouring, CirclesAreClosedAndRefiningBringsThemCloser) {
    const regulargrid grid =
        sampled({41, 41, -2, 2, -2, 2}, [](double x, double y) { return x * x + y * y; });
    for (const double radius : {0.3, 1.0, 1.7}) {
        double farthest[2];
        for (const int factor : {1, 4}) {
            const auto lines = linesat(refinedgrid(grid, factor), radius * radius);
            ASSERT_EQ(lines.size(), 1U);
            EXPECT_TRUE(closed(lines[0]));
            EXPECT_NEAR(length(lines[0]), 2 * std::numbers::pi * radius, 0.03);
            double most = 0;
            for (const contourpoint& p : lines[0].points)
                most = std::max(most, std::fabs(std::hypot(p.x, p.y) - radius));
            farthest[factor == 4] = most;
        }
        EXPECT_LT(farthest[0], 0.1 * 0.1 / 8 / radius + 1e-12); // the chord of a parabola over one step
        EXPECT_LT(farthest[1], farthest[0] / 10);
    }
}

TEST(contouring, ASaddleIsDecidedByTheMeanOfItsCell) {
    const gridframe square{2, 2, 0, 1, 0, 1};
    const auto ends = [&](double low, double high) {
        regulargrid grid(square);
        grid.values = {high, low, low, high};
        const auto lines = linesat(grid, 0);
        EXPECT_EQ(lines.size(), 2U);
        // Whether the first line cuts the high corner (0, 0) off.
        return lines[0].points.front().x + lines[0].points.front().y < 1 &&
               lines[0].points.back().x + lines[0].points.back().y < 1;
    };
    EXPECT_TRUE(ends(-3, 1));
    EXPECT_FALSE(ends(-1, 3));
    // x y over many cells: four arms for the level 0 would cross; off it there are two branches.
    const regulargrid saddle = sampled({40, 40, -1, 1, -1, 1}, [](double x, double y) { return x * y; });
    const auto branches = linesat(saddle, 0.1);
    EXPECT_EQ(branches.size(), 2U);
    for (const contourline& branch : branches)
        for (const contourpoint& p : branch.points) EXPECT_NEAR(p.x * p.y, 0.1, 1e-9); // bilinear along edges
}

TEST(contouring, BlankedNodesEndLinesAndStayBlankWhenRefined) {
    regulargrid grid = sampled({11, 11, 0, 10, 0, 10}, [](double, double y) { return y; });
    grid.row(5)[5] = blankednode;
    const auto lines = linesat(refinedgrid(grid, 4), 4.5);
    ASSERT_EQ(lines.size(), 2U); // four cells round the node are left out
    EXPECT_NEAR(length(lines[0]) + length(lines[1]), 8, 1e-9);
    grid.row(5)[5] = 5;
    grid.values.back() = blankednode;
    EXPECT_EQ(linesat(grid, 4.5).size(), 1U);
    EXPECT_TRUE(linesat(grid, 50).empty());
    EXPECT_TRUE(linesat(regulargrid({1, 5, 0, 1, 0, 1}), 0).empty());
}

TEST(contouring, LevelsThatNodesHaveAndPlateausGiveWholeLines) {
    // A plateau at the level counts as above it: one closed line round it.
    regulargrid plateau({7, 7, 0, 6, 0, 6});
    for (int j = 2; j <= 4; ++j)
        for (int i = 2; i <= 4; ++i) plateau.row(j)[i] = 1;
    const auto round = linesat(plateau, 1);
    ASSERT_EQ(round.size(), 1U);
    EXPECT_TRUE(closed(round[0]));
    EXPECT_DOUBLE_EQ(length(round[0]), 8);
    // A diagonal through the nodes: one line, no point twice.
    const regulargrid diagonal = sampled({6, 6, 0, 5, 0, 5}, [](double x, double y) { return x + y; });
    const auto through = linesat(diagonal, 5);
    ASSERT_EQ(through.size(), 1U);
    EXPECT_EQ(through[0].points.size(), 6U);
}

} // namespace
} // namespace orv

// Gridding by triangulation.
#pragma once

#include "maps/gridding.h"

#include <array>
#include <vector>

namespace orv {

// The triangles of Delaunay, each by the numbers of its points from 0; none where all points lie on a line.
std::vector<std::array<int, 3>> delaunay(const std::vector<double>& x, const std::vector<double>& y);

// Fills the nodes within a triangle linearly and blanks the others. `points` has no place twice. Raises
// domain where there is no triangle, or no node in one.
void gridtriangles(const scatteredpoints& points, regulargrid& grid);

} // namespace orv

// Contour lines of a regular grid.
#pragma once

#include "maps/gridfile.h"

#include <vector>

namespace orv {

struct contourpoint {
    double x, y;
};

// One line; a closed one repeats its first point as its last.
struct contourline {
    std::vector<contourpoint> points;
};

// The lines at each of the levels, which stand in any order: one list for each. A line is as long as it can
// be: it ends only at the edge of the grid or beside a blanked node, or it is closed. Values equal to a level
// count as above it. Lines are cut linearly along the edges of the cells; a cell with two opposite corners
// above joins them when the mean of its corners is above.
std::vector<std::vector<contourline>> contourlines(const regulargrid& grid,
                                                   const std::vector<double>& levels);

// The grid with each cell cut into `factor` x `factor`, by a cubic through the nodes along the rows and then
// along the columns (R. G. Keys, IEEE Transactions ASSP 29, 1981), so that lines become smooth and still
// cannot cross. The nodes keep their values; a new node is blanked unless all corners of its cell are there.
regulargrid refinedgrid(const regulargrid& grid, int factor);

} // namespace orv

// Gridding by the modified method of Shepard: R. J. Renka, ACM Transactions on Mathematical Software 14,
// 1988.
#pragma once

#include "maps/gridding.h"

namespace orv {

// Fills every node with the mean of the nodal functions of its nearest points. A nodal function is a
// quadratic through its point, fitted to the nearest other points with the weights ((R - d) / (R d))^2; the
// mean has the same weights. R is the distance of the first point that is left out. `points` has at least one
// point and no place twice.
void gridshepard(const scatteredpoints& points, regulargrid& grid);

} // namespace orv

// Scattered values to a regular grid, by six methods. All compute in double precision.
#pragma once

#include "maps/gridfile.h"

#include <vector>

namespace orv {

// Values at places of a plane, m; three arrays of equal length.
struct scatteredpoints {
    std::vector<double> x, y, value;

    int count() const { return static_cast<int>(x.size()); }
};

// The numbers are those of the exchange.
enum class griddingmethod {
    kriging = 1,      // ordinary kriging, linear variogram without nugget
    minimumcurvature, // thin plate under a little tension
    polynomial,       // least squares of a + b x + c y + d x y
    radialbasis,      // multiquadric
    shepard,          // modified: quadratic nodal functions
    triangulation     // linear in the triangles of Delaunay; blanked outside their hull
};

// A method of that number, kriging for any other.
griddingmethod methodof(int number);

// The points whose three numbers are finite, those of one place made one with their mean value, ordered by
// place.
scatteredpoints distinctpoints(const scatteredpoints& points);

// The grid. All methods but the polynomial go through the points. Above 3000 distinct points kriging, minimum
// curvature and radial basis take the two hundred nearest of them for each block of nodes. Raises domain with
// the reason when there is no finite point, or when all nodes are outside every triangle.
regulargrid gridpoints(const scatteredpoints& points, const gridframe& frame, griddingmethod method);

} // namespace orv

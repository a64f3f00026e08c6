// Gridding by radial functions of the distance r from each point, with a low polynomial as their tail.
#pragma once

#include "maps/gridding.h"

namespace orv {

enum class radialkernel {
    // -r with a constant tail: the same as ordinary kriging with a linear variogram without nugget, whose
    // slope has no influence (N. Cressie, Statistics for Spatial Data, 1993, 3.4.5).
    linear,
    // -sqrt(r^2 + s^2) with a constant tail (R. L. Hardy, J. Geophys. Res. 76, 1971), s^2 being the square of
    // the diagonal of the points' box divided by 25 times their number.
    multiquadric,
    // The thin plate under tension p: the Green's function K0(p r) + ln(p r) of P. Wessel and D. Bercovici
    // (Mathematical Geology 30, 1998) with a plane as its tail. p is 1 over the diagonal of the map, which
    // leaves r^2 ln r, the plate alone, nearly as it is.
    plate
};

// Fills every node. `points` has at least one point and no place twice.
void gridradial(const scatteredpoints& points, radialkernel kernel, regulargrid& grid);

} // namespace orv

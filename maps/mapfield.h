// The field behind every map: which rectangle of the view plane is covered and how it is divided, the value
// at a point between the receivers, the range of levels, and the colour index of a value.
//
// The plane's two axes are those of viewPlane: x and y, y and z, or x and z.
#pragma once

#include <span>
#include <vector>

namespace orv {

// The rectangle of a map in the plane's two axes and the size of its Nx x Ny cells, m.
struct maprectangle {
    double lo1, hi1, lo2, hi2;
    double cellWidth, cellHeight;
};

// The room's box, or with useBlanking the box of the blanking lines that are to be kept (inside flag 0),
// where there is one. Raises divisionbyzero for Nx or Ny of 0. Changes nothing.
maprectangle mapextent();

// The receivers' places in the plane (m) and their values of the chosen parameter and band, as they are now;
// three arrays of equal length, receiver 1 first. The arrays stand still while a map is drawn. Raises
// divisionbyzero when there are no receivers, and what parametervalue raises.
struct mapreceivers {
    std::vector<double> first, second, value;
};
mapreceivers receiversofmap();

// The value at the point (c1, c2) of the plane: the mean over all receivers, each weighted by the inverse
// square of its distance in the plane (D. Shepard, Proc. 23rd ACM National Conference, 1968, power 2). A
// squared distance below 0.1 m2 counts as that, so that the map does not pass exactly through a receiver's
// value.
double fieldvalue(const mapreceivers& receivers, double c1, double c2);

// fieldvalue at (c1, each of c2), into `values`, which has as many elements; bit by bit the same.
void fieldcolumn(const mapreceivers& receivers, double c1, std::span<const double> c2,
                 std::span<double> values);

// The step of the level scale for a range of `range` (dB or the parameter's unit): .01 up to 5.
double levelstepfor(double range);

// Sets minLevel, maxLevel and levelStep from the receivers' values of the chosen parameter and band, both
// ends on a step, the upper one above the highest value. `receivers` is not empty. Raises overflow.
void autorangelevels(const mapreceivers& receivers);

// The colour index 0..255 of `value`, a real number; values beyond the levels take the ends. Raises
// divisionbyzero when minLevel and maxLevel are equal.
double levelindex(double value);

} // namespace orv

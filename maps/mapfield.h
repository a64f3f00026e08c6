// The field behind every map: which rectangle of the view plane is covered and how it is divided, the value
// at a point between the receivers, the range of levels, and the colour index of a value.
//
// The plane's two axes are those of viewPlane: x and y, y and z, or x and z.
#pragma once

#include "base/table.h"

#include <cstdint>
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

// The step of the level scale for a range of `range` (dB or the parameter's unit): .01 up to 5.
double levelstepfor(double range);

// Sets minLevel, maxLevel and levelStep from the receivers' values of the chosen parameter and band, both
// ends on a step, the upper one above the highest value. Without receivers the ends are 1E+06 and -1E+06
// widened by a step. Raises overflow.
void autorangelevels();

// The colour index 0..255 of `value`, a real number; values beyond the levels take the ends. Raises
// divisionbyzero when minLevel and maxLevel are equal.
double levelindex(double value);

} // namespace orv

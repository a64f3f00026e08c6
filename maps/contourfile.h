// The contour file: contour lines as a DXF drawing that other programs open too.
#pragma once

#include "maps/contouring.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orv {

// Lines of one colour number.
struct colouredlines {
    std::int32_t colourNumber;
    std::vector<contourline> lines;
};

// Writes a drawing of release 2000 whose entities are light polylines, each with its colour number before its
// count, on layer 0, coordinates in m with six decimals. Raises fileaccess.
void writecontours(const std::string& path, const std::vector<colouredlines>& contours);

} // namespace orv

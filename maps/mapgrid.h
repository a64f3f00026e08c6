// MapGrid: the field of a map as gridded values, where a gridding engine has computed it. Lives as long as
// the process; surfergrid fills it, and gridReady says whether it fits the settings.
#pragma once

#include "base/table.h"

namespace orv {

constexpr int highestgridnode = 500;

// The value of a node that blanking took out, compared exactly.
constexpr float blankedvalue = 1.70141e38F;

// Row 0..500, column 0..500; the first Ny rows and Nx columns mean something.
extern fixedtable<"MapGrid", float, highestgridnode, highestgridnode> MapGrid;

} // namespace orv

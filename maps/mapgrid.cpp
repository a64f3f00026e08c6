// The one map grid.
#include "maps/mapgrid.h"

namespace orv {

fixedtable<"MapGrid", float, highestgridnode, highestgridnode> MapGrid;

} // namespace orv

// Gridded and contour maps by a gridding engine: what goes to it and what comes back, as files and calls of
// its automation object; and the menu that starts the separate programs of old engines.
#pragma once

#include <string>

namespace orv {

// The files that are exchanged. Point data and grid lie beside the result, the others in the data directory.
std::string pointdataname();
std::string gridname();
std::string levelfilename();
std::string contourfilename();

// Writes the receivers' values as point data (with `mirror` once more on the other side of the axis), has
// them gridded by surferMethod at Nx x Ny nodes within the rectangle lo1..hi1, lo2..hi2 of the view plane
// (m), a tenth of a cell inside it, blanked with useBlanking, and reads MapGrid. With autorange the levels
// and their step follow from the grid. Sets gridReady; a grid of another size leads to a box and leaves
// MapGrid and gridReady. Raises what files and engine raise, and overflow for levels that no single holds.
void surfergrid(double lo1, double hi1, double lo2, double hi2);

// Writes the sixteen levels between minLevel and maxLevel, has the grid's contour lines exported, and sets
// contourReady. Raises what files and engine raise.
void surfertopo();

// --- The "Surfer" menu. Each starts a program and does not wait for it; one that cannot be started is named
// in a box. ---

void SurfGrid(); // a grid made there replaces the map's: gridReady becomes 0
void SurfTopo(); // likewise contourReady
void SurfSurf();
void SurfPlot();
void SurfSetP();
void SurfEnable(); // shows the four others than Grid, or hides them

} // namespace orv

// Gridding of a map by an engine outside.
#pragma once

namespace orv {

// Fills MapGrid for the rectangle lo1..hi1, lo2..hi2 of the view plane (m) and sets gridReady. Raises
// filenotfound: there is no engine.
[[noreturn]] void surfergrid(double lo1, double hi1, double lo2, double hi2);

} // namespace orv

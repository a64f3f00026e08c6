// The source description file that a result names: power and directivity of the source by octave band.
#pragma once

#include <string>

namespace orv {

// Reads the file into ResultSet.sourcePower (dB) and sourceDirectivity (dB), prints the source's name and its
// number of bands on the log, and replaces the sums over the bands at bandIndex 11 (A-weighted) and 12 by
// their levels. A record that cannot be read ends the reading, a band number outside 1..10 loses that record;
// what was stored stays. Levels of an earlier load are not cleared, and a file without any band record leaves
// them all. Raises nothing.
void readsourcedescription(const std::string& path);

} // namespace orv

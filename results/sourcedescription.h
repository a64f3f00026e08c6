// The source description file that a result names: power and directivity of the source by octave band.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orv {

// What such a file holds.
struct sourceband {
    std::int32_t band;         // as it stands in the file, which may be outside 1..10
    double level, directivity; // dB
};
struct sourcefile {
    std::string heading; // the text and the number of band records
    std::vector<sourceband> bands;
};

// The path of a source's file whose name stands in a result or room: as it stands from the current directory,
// else in the directory beside it, there or not.
std::string sourcefilepath(const std::string& stated, const std::string& beside);

// Reads the file into `file`, where everything up to the first record that cannot be read stands when it
// raises filenotfound, fileaccess, pastend, typemismatch or overflow.
void readsourcefile(const std::string& path, sourcefile& file);

// Reads the file into ResultSet.sourcePower (dB) and sourceDirectivity (dB), prints the source's name and its
// number of bands on the log, and replaces the sums over the bands at bandIndex 11 (A-weighted) and 12 by
// their levels. A record that cannot be read ends the reading, a band number outside 1..10 loses that record;
// what was stored stays. Levels of an earlier load are not cleared, and a file without any band record leaves
// them all. Raises nothing.
void readsourcedescription(const std::string& path);

} // namespace orv

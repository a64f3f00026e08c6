// The sample hall as files, and files of any size for benchmarks. All text has CR LF line ends and numbers of
// at most seven digits.
#pragma once

#include "samples/hall.h"

#include <cstdint>
#include <string>

namespace orv::samples {

// Name of the source description file, as geometry and results state it.
constexpr const char* sourceFileName = "Dodeca.spk";

// The geometry file: the faces of hallfaces() in their wall groups with their openings, both sources, all
// receivers and some loose ray lines.
std::string geometrytext();

// The source description file: power level and directivity index of each band (0 dB, either source sends
// alike into all directions).
std::string sourcetext();

// The speed of sound and the mean free path as a result reader has them after reading resulttext().
double readspeed();
double readmeanfreepath();

// The result file of the given sources: true energies (respond) times the late energy factor. The time of the
// factor counts from the slot of the direct sound, and for that slot itself from slot 0, as readers have it.
std::string resulttext(const halloptions& options, sourcelist sources);

// The ray path file beside it: the paths of hallpaths(), sorted by time within each receiver, with energies
// times the late energy factor of the time since emission.
std::string pathstext(const halloptions& options, sourcelist sources);

// Writes the sample hall into a directory, which must exist: hall.RAY, Dodeca.spk and the results
//   hall._01 source 1    hall._02 source 2    hall._03 both    hall._04 both, a fourth of the pyramids
//   hall._05 source 1 in the old layout
// with the ray path files hall.@01, hall.@02 and hall.@03. Raises fileaccess.
void writehall(const std::string& directory);

// What writebigresult() makes. The defaults suit any size.
struct bigoptions {
    std::uint64_t seed = 7;
    int receivers = 200;
    int slots = 2000;
    double timeStep = 0.001; // s
    double alfa = 0.9;
    double beta = 1;
    double pyramidCount = 32768;
};

// Decay time (s) of a band 0..9 in such a file; it falls with the band and keeps within the response.
double bigdecaytime(const bigoptions& options, int band);

// A result file of the new layout with exponential decays that vary by receiver, slot by slot, from a
// direct sound whose delay follows from the receiver's place. Energies carry the late energy factor.
// Raises fileaccess.
void writebigresult(const std::string& path, const bigoptions& options);

// A ray path file of `paths` paths, dealt out to the receivers 1..`receivers` in turn, with up to seven
// reflection points each. Each receiver's come in order of time, or in none. Raises fileaccess.
void writebigpaths(const std::string& path, int paths, int receivers, bool sorted);

// A geometry file of a box room whose six sides are divided into tiles, `faces` of them in all (1 or more),
// each in a wall group, with two sources and the given number of receivers on a level grid. Counts are not
// limited, so that files beyond a reader's capacity can be made. Raises fileaccess.
void writebiggeometry(const std::string& path, int faces, int receivers);

} // namespace orv::samples

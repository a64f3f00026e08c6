// The result file of a calculation: the one central format, read in one pass with everything that is derived
// from it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

struct listreader;

// The key of a receiver block: an empty line and the beginning of a title.
constexpr std::string_view blockkey = "\r\n[Microph";

// Reads the result file `name` (a path) into ResultSet, ImpulseResponse and ParameterSet, with the settings
// file before it and the source description and ray path files behind it. Extends x and y of the room's box,
// stores receiver positions in RoomModel, names SessionState.geometryFileName by the sibling rule, prints its
// log, and sets SessionState.parameterSource to 1. A reverberation time that the responses are too short for
// is told in a box.
//
// Any statement that fails until the end of the averages is skipped and the next one runs: a truncated file
// repeats its last number to the end of its block, and a file that is not there leaves the tables with their
// former sizes. Raises filenotfound for the date of a result that is not there, and what loadchiocc
// (response/raypathreader.h) raises.
void loadresult(const std::string& name);

// The names beside a result, by position in its name: geometry (all but the last four characters, ".RAY"),
// output listing (all but three, "OUT") and ray paths (all but three, "@", the last two). Raise domain for a
// name that is too short.
std::string geometrynameof(const std::string& result);
std::string listingnameof(const std::string& result);
std::string raypathnameof(const std::string& result);

// Up to ten characters of a file, one at a time, as a record's key is read. Fewer at the end of the file.
std::string inp10char(listreader& file);

// The receiver of a block's title: what follows the first "_", 0 without one. Numbers outside 0..100000
// become -1 or 100001, which have no place in the tables.
std::int32_t blocknumber(std::string_view title);

} // namespace orv

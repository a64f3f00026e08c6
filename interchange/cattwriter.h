// Writing Catt Acoustics geometry (*.GEO), in the layout that stands at the top of cattreader.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// Writes RoomModel as a Catt file of this name, which replaces any that is there: faces, the materials they
// use, and behind comment marks climate, sources and receivers, so that loadcatt reads them back. Openings
// and ray lines are left out. Vertices of exactly the same single-precision coordinates are one corner. The
// source levels come from each source's directivity file, looked for in the current directory and then beside
// the room's file; without one the fields stay empty.
//
// Reads the material table anew. Progress goes to the status panels, where the last text stays. Raises what
// loadmaterials and readsourcefile raise, subscript for a 101st material in use and for a material outside
// the table, overflow for a level or percentage that no single holds, all before a file is touched, and
// fileaccess when it cannot be written; a file of that name then keeps its old contents.
void savecatt(const std::string& name);

// Sets `result` to -1 if the file exists and to 0 otherwise.
void fileexists(const std::string& path, std::int16_t& result);

// Sets `result` to the value in the pattern, right-aligned in a field as wide as the pattern. Of a wider one
// the right-hand part is left.
void padformat(float value, std::string_view pattern, std::string& result);

} // namespace orv

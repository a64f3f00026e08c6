// Writing the room as an AutoCAD DXF file of release 12, which loaddxf reads back.
#pragma once

#include <string>

namespace orv {

// Writes RoomModel into a file that replaces any of that name. The layer of a face or door is its material
// number, 2000 more with its flag set. A face of three vertices gets a fourth that repeats the third; one of
// more than four goes on with codes that drawing programs do not know.
//
// Raises subscript for more than 100 layers of materials, and fileaccess; either leaves the former file.
void savedxf(const std::string& name);

} // namespace orv

// Reading a room from an AutoCAD DXF file, whose layout stands at the top of dxfreader.cpp.
#pragma once

#include <string>

namespace orv {

// Asks whether 3DFACEs are to be checked for planarity, reads the names of the material file, and replaces
// the contents of RoomModel by those of the file, a path as the file system has it, found in any letter case.
//
// Of faces with four corners, the check drops those whose first three lie on a line and splits those whose
// fourth lies more than 0.01 m off the plane of the others. Holes and doors are attached to the first face
// whose bounding box holds all their vertices; those of no face keep the owner 0. The main window goes
// through the load as with a geometry file, each entity is logged, and the pan is put back to 0.
//
// Raises filenotfound and fileaccess, for the material file before the room is changed; then, naming file and
// line, typemismatch for words in the place of numbers, overflow for numbers that their tables cannot hold
// (and for an opening of a face above 32767), subscript beyond a capacity of RoomModel. All counts then are
// 0. A file that ends early gives what stood in it, and the log says so.
void loaddxf(const std::string& name);

} // namespace orv

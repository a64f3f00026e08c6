// Reading Catt Acoustics geometry (*.GEO), of which the forms at the top of cattreader.cpp are taken.
#pragma once

#include <string>

namespace orv {

// Replaces the room by a Catt file's faces, sources and receivers, all flags of the faces 0, without openings
// and ray lines; takes over its temperature and humidity into SessionState and its materials into
// MaterialTable, and writes both material files with them and with the row TOTABS. A face whose material has
// no row of exactly this name gets material 0; a corner that the file does not define lies at 0, 0, 0. Sets
// what finishroomload of room/roomload.h sets. Sources, receivers and faces are logged. Until the end all
// counts are 0, and they stay 0 when the import fails; the material files are then as they were.
//
// Raises filenotfound and fileaccess for the file before anything is changed, and what loadmaterials and
// savematerials raise; then, naming file and line, pastend for a file that ends inside a source, typemismatch
// for a material without "=" and for a plane without its two "/" and "]", overflow for numbers that their
// tables cannot hold, subscript for a corner number outside 0..100000 and beyond a capacity of RoomModel or
// MaterialTable.
void loadcatt(const std::string& name);

} // namespace orv

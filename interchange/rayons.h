// Rayons geometry: reading a set of its text files, and writing the faces as one of them. The layouts stand
// at the top of rayons.cpp.
#pragma once

#include <string>

namespace orv {

// Replaces the room by the faces, sources and receivers of the set that the named geo file belongs to. The
// files beside it have its name up to the first point and the extensions mat, sou and rec. Faces whose
// material has no row of exactly this name among the rows 0..1024 of Orvanta.mat keep the one that their slot
// of RoomModel had; their flags become 0. The box is that of the vertices as they stand in the file. Sets
// what finishroomload of room/roomload.h sets. Until the end all counts are 0, and they stay 0 when the
// import fails.
//
// Raises filenotfound and fileaccess for the named file before anything is changed, and the same for the
// others; then, naming file and line, pastend, typemismatch, overflow, and subscript beyond a capacity of
// RoomModel.
void loadrayons(const std::string& name);

// Writes the corners 1 to 4 of all faces, whatever their vertex counts, as a file of this name, which
// replaces any that is there. Raises fileaccess; the old file then stays.
void saverayons(const std::string& name);

} // namespace orv

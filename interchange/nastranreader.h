// Reading Nastran bulk data in free format (*.nas), whose layout stands at the top of nastranreader.cpp.
#pragma once

#include <string>

namespace orv {

// Replaces the room by the triangles of a Nastran file: faces with three vertices and the card's material,
// all their flags 0; no sources, receivers, openings or ray lines. A node that no card defines lies at 0, 0,
// 0. Sets what finishroomload of room/roomload.h sets. Nodes and faces are logged, and as the last line how
// many of them came in. Until the end all counts are 0, and they stay 0 when the import fails.
//
// The number of each element goes through ResultSet.lastSlot, so that a loaded result is of no use behind an
// import, finished or not.
//
// Raises filenotfound and fileaccess before anything is changed; then, naming file and line, pastend for a
// file without the marker line, without a CTRIA3 or one that ends inside a card, typemismatch for words in
// the place of numbers, overflow for numbers that their tables cannot hold, subscript for a node number
// outside 0..100000 and for a 75001st face.
void loadnastran(const std::string& name);

} // namespace orv

// Finding the faces that the holes and doors of a drawing belong to.
#pragma once

#include "room/roomload.h"

#include <string>

namespace orv {

// Gives every hole 1..counts.holes and then every door 1..counts.doors of RoomModel its face: the first one
// of 1..counts.faces whose bounding box, 0.001 m wider to all sides, holds all vertices of the opening; 0
// without one. The box alone decides, not the plane: an opening may go to a face across its own. Such a face
// counts as one in a wall and with openings. Each answer is logged.
//
// Raises overflow, with the name of the file, for an owner above 32767.
void attachopenings(const roomcounts& counts, const std::string& file);

} // namespace orv

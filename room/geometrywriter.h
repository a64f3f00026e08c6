// Writing the native geometry file (*.ray), in the layout that geometryreader.cpp tells.
#pragma once

#include <string>

namespace orv {

// Writes RoomModel as a geometry file of this name (a path as the file system has it), which replaces any
// that is there; first the present temperature and humidity of SessionState go into the settings file.
//
// Left out: faces whose size (facesize, twice the area) is not above 0.001 m2, with their openings; openings
// of faces outside a wall; all ray lines. Every face comes to stand in a wall group.
//
// Progress goes to the status panels, and the event loop runs once a face. Raises what updatesettings of
// shell/settings.h raises, overflow for a face too large to have a size, both before the geometry file is
// touched, and fileaccess when that cannot be written; a file of that name then keeps its old contents.
void savegeometry(const std::string& name);

} // namespace orv

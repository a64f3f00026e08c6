// Reading the native geometry file (*.ray), whose layout stands at the top of geometryreader.cpp.
#pragma once

#include <string>

namespace orv {

// Replaces the contents of RoomModel by those of a geometry file. `name` is a path as the file system has
// it, found in any letter case; "*.ray" and "*.*", which a dialog leaves when no file was picked, do nothing.
//
// Beside RoomModel (counts, records from 1 upwards, box and centre) it sets the target of SessionState to the
// room's centre, clears the two map flags, hides the views of the main window and enables the commands that
// need a room. Progress goes to the status panels and the event loop runs once a line; until the end all
// counts are 0, and they stay 0 when the load fails.
//
// Raises filenotfound and fileaccess before anything is changed; then, naming file and line, pastend for a
// file that ends inside a record, typemismatch for words in the place of numbers, overflow for numbers that
// their tables cannot hold (and for an opening of a face above 32767), subscript beyond a capacity of
// RoomModel, divisionbyzero for a file of 1 to 64 bytes. A file whose records do not end with their lines
// stops the program at the next End line, without a word.
void loadgeometry(const std::string& name);

} // namespace orv

// The commands of the File menu that bring a room or a result into the session or write it out: dialog,
// reader or writer, then menus, title and picture in line with what is now loaded.
//
// All show the wait pointer from the dialog to their end, suspend the other commands meanwhile, and leave
// everything as it was when their dialog is cancelled. What a reader or writer raises passes on to who runs
// the command.
#pragma once

#include <string>

namespace orv {

void FLoad();   // "Open Geometry File..."
void Fsave();   // "Save Geometry File..."
void OpenRes(); // "Open Imp.Resp.+Geometry files...": asks for the room (FLoad) when none lies beside the
                // result
void MapLoad(); // "Open Imp.Resp. file only...": a result over the present room; the current room file's name
                // becomes that of the file beside the result all the same

// Opens a file that the desktop has named at the start: a result with its room as OpenRes does, any other
// file as FLoad does. A parameter file stands for the result that it lies beside. Nothing happens under a
// region that the program does not run in.
void openfile(const std::string& name);

// Whether the parameter file beside a result holds what a load of the result would compute: it is there, and
// it is older (strictly) neither than the result nor than the settings file, if there is one. Raises
// filenotfound for a result that is not there.
bool parameterfileusable(const std::string& result);

// The name that Fsave proposes: the room's file name when it ends in RAY in any case, otherwise the last DXF
// file name with RAY as its last three characters, otherwise a pattern.
std::string savedroomproposal();

// The window's title for a file, given as the file system has its name; the program's title alone for none.
void showtitle(const std::string& filename);

// Draws the scene afresh on the main picture, in 3D when the camera group is shown.
void showscene();

// What follows a room read from the file `name`: the commands that write it, the scene, and with a result in
// memory the commands that need both. A box tells that nothing came in.
void showloadedroom(const std::string& name);

// Enables the commands that need a room in memory, and those that need parameters (contour maps only with a
// contour step).
void enableroomcommands();
void enablemapcommands();

} // namespace orv

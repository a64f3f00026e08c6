// The commands of the File menu that bring a room or a result into the session or write it out: dialog,
// reader or writer, then menus, title and picture in line with what is now loaded.
//
// All show the wait pointer from the dialog to their end, suspend the other commands meanwhile, and leave
// everything as it was when their dialog is cancelled. What a reader or writer raises passes on to who runs
// the command.
#pragma once

#include "platform/platform.h"

#include <optional>
#include <string>

namespace orv {

void FLoad();   // "Open Geometry File..."
void Fsave();   // "Save Geometry File..."
void OpenRes(); // "Open Imp.Resp.+Geometry files...": asks for the room (FLoad) when none lies beside the
                // result
void MapLoad(); // "Open Imp.Resp. file only...": a result over the present room; the current room file's name
                // becomes that of the file beside the result all the same

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

// What the workflows of other folders share with these.

// A command from its dialog to its end: wait pointer, and the other commands suspended. One that runs inside
// another leaves both to the outer one.
struct runningcommand {
    const bool outermost;

    runningcommand();
    ~runningcommand();
    runningcommand(const runningcommand&) = delete;
    runningcommand& operator=(const runningcommand&) = delete;
};

// What a file dialog gave; nothing when it was cancelled.
using filedialog = std::string (*)(const platform::filerequest&);
std::optional<std::string> chosenfile(filedialog ask, const char* title, const char* filter,
                                      const std::string& proposal);

// The name with its extension, from the last point of the file name proper that is not its first character,
// replaced or added; "hall.ray" for hall.dxf and "ray".
std::string withextension(const std::string& name, const std::string& extension);

// The name with an extension added when it has none.
std::string withdefaultextension(const std::string& name, const std::string& extension);

// Brings commands and picture in line with a room that has come in.
void showroom();

// Enables the commands that need a room in memory, and those that need parameters (contour maps only with a
// contour step).
void enableroomcommands();
void enablemapcommands();

} // namespace orv

// Start-up, and what the main window does with its keys, its size and its end.
#pragma once

#include <string>

namespace orv {

// Brings the program up, once, at the load of the main window: data directory, the check of the region's
// number marks, the start values of SessionState and RoomModel's box, the data directory's files (RGB.BIN,
// which is created empty when missing, orvanta.ini, orvcolor.mat), the fields and the menus.
//
// Under a region whose marks are not a decimal point and a group comma a box says so, and the rest is left
// out: the window stays empty. Raises fileaccess when the data directory cannot be entered; from the
// constants on, a step that fails is left out without a word.
void startup();

// The part of it that any computation needs: the A-weighting, the modulation frequencies, and the weights and
// voice spectra of the speech index, in SessionState.
void computeconstants();

// The data directory for a program that lies in `programdirectory`.
std::string datadirectoryfor(const std::string& programdirectory);

// A key of the main window (platform/keycodes.h), seen before any control gets it.
void mainkey(int code);

// The picture has a new size in pixels. Draws the scene again when there is a room.
void mainresized(int width, int height);

void FQuit();  // "Exit": closes all windows, asks nothing
void Hhelp();  // "Help..."
void HAbout(); // "About..."

} // namespace orv

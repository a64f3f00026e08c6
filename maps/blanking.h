// Blanking lines: polygons in the map plane that say where a map is valid, their file, and the commands of
// the "Blanking" menu.
#pragma once

#include "base/table.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orv {

constexpr int highestblankline = 50, blanklinehighestpoint = 150;

// What a line does to a map.
constexpr std::int32_t blankinside = 1, blankoutside = 0;

// The lines 1..blanklineCount with the points 1..blanklinePoints of each, in the two coordinates (m) of
// whatever plane is viewed; the last point of a closed polygon repeats its first. A load replaces all lines,
// a clear sets the count alone. A wrong index raises subscript. Drawn by scene/scenedrawing.cpp.
struct blankinglines {
    std::int32_t blanklineCount = 0;
    fixedtable<"blanklinePoints", float, highestblankline> blanklinePoints{};
    fixedtable<"blanklineFlag", std::int32_t, highestblankline> blanklineFlag{};
    fixedtable<"blanklineX", float, highestblankline, blanklinehighestpoint> blanklineX{};
    fixedtable<"blanklineY", float, highestblankline, blanklinehighestpoint> blanklineY{};
    std::string blankingFile; // that was loaded or saved last; "" at first

    // The line that is being entered (maps/blankingeditor.h), which is the last one of the table.
    float addingLine = 0;                  // -1 meanwhile
    float rubberBand = 0;                  // -1 while its band follows the pointer
    std::int32_t pointIndex = 0;           // of the point that the next click sets
    double lastPointX = 0, lastPointY = 0; // where the band ends
};

extern blankinglines BlankingLines;

// How the next line is drawn, as the "BLN Options" dialog shows it.
struct blankingoptions {
    bool outside = false;       // it blanks its outside, else its inside
    std::string gridsize = "1"; // m, as typed
    bool ortho = false;         // segments along the axes only
    bool snap = false;          // points on the grid only
};

extern blankingoptions BlankingOptions;

// Whether lines can be drawn so: not where points snap to a grid whose size reads as 0, which a box then
// says.
bool checkblankingoptions();

// Reads a file over the present lines and widens x and y of the room's box by every point. A failure leaves
// all as it was. Raises subscript for a 51st line or a 151st point, else as the readers of list input do,
// with file and line.
void readblanking(const std::string& path);

// Writes all lines; raises fileaccess.
void writeblanking(const std::string& path);

// A polygon of a file, for who takes it apart from the session's lines.
struct blankingpolygon {
    std::int32_t flag = blankinside;
    std::vector<double> x, y;
};
std::vector<blankingpolygon> blankingpolygons(const std::string& path); // without limits of its own

// Asks for a file and reads it: blankingFile, the lines, the menu entries; a grid or contour map made before
// is none any more, and a line that is being entered is given up. A box tells of a file without lines. Raises
// cancelled, and what readblanking raises.
void loadblanking();

// A grid or contour map that uses the lines is none any more, since they or their file have changed.
void forgetblankedmap();

// Runs what a command asks for. A failure is told in a box and ends the command alone, since lines that stand
// in no file yet would end with the program; a cancel ends it without a word. Returns whether the step went
// to its own end.
bool unlessrefused(const std::function<void()>& step);

// Enables or disables "Clear", "Delete Line" and "Save..." together.
void enableblankingcommands(bool enabled);

// --- The commands of the menu that need no pointer. A file that cannot be read or written is told in a box.
// ---

void BLNnew();  // "Clear": the lines go, and with them their use in maps
void BLNload(); // "Load..."
void BLNsave(); // "Save..."
void BLNview(); // "View BLNs" of both menus: one setting, two marks

} // namespace orv

// A drawing surface that writes down what would be seen, one line of text for each item, for tests and for
// runs without windows.
//
// Forms, numbers in window coordinates as they stood at that time, rounded to six places, colours as six
// hexadecimal digits RRGGBB:
//   clear RRGGBB                         window LEFT TOP RIGHT BOTTOM
//   line X1 Y1 X2 Y2 RRGGBB              plot X Y RRGGBB
//   box X1 Y1 X2 Y2 RRGGBB [fill RRGGBB] filledbox X1 Y1 X2 Y2 RRGGBB
//   circle X Y RADIUS RRGGBB [fill RRGGBB]
//   text X Y RRGGBB TEXT                 keep, restore
// A pen other than the plain one adds " width N", " dotted", " mode N" to lines, plots, boxes and circles.
// What is cut off at the edge of the surface is written as it is cut; what is dropped is not written.
#pragma once

#include "scene/drawsurface.h"

#include <string>
#include <vector>

namespace orv {

// The font: every character is 8 pixels wide, every line 16 high.
constexpr double recordcharwidth = 8, recordlineheight = 16;

// Stays where it is made: the surface's device points back at it.
struct recordsurface {
    DrawSurface surface;
    std::vector<std::string> lines;

    // A surface of the given size in pixels, `scale` 1, default coordinates, nothing recorded.
    recordsurface(double width, double height);
    recordsurface(const recordsurface&) = delete;
    recordsurface& operator=(const recordsurface&) = delete;
};

} // namespace orv

// The six colour schemes of the maps, and the scale that is drawn on each map.
//
// A level index c is a real number 0..255, the lowest level to the highest; colours are 0x00BBGGRR, and each
// component of one is rounded to nearest, halves to even.
#pragma once

#include "scene/drawsurface.h"

#include <cstdint>

namespace orv {

constexpr double highestlevelindex = 255;

// The scheme of that number in colourSchemeNames, which SessionState.colourSchemeIndex holds.
enum class colourscheme { bluered = 1, greenred, whiteblue, whiteblack, rgbtable, iris };
colourscheme chosenscheme();

// The colour of c in the chosen scheme. Raises overflow where c is no number.
std::int32_t schemecolour(double c);

// The colour of c in the table that the user edits: entry Int(c / 16) of SessionState.rgbTable. Raises
// subscript beyond its seventeen entries.
std::int32_t rgbcolour(double c);

// The colour of c in a spectrum from violet (0) to red (255), its low end stretched.
std::int32_t iriscolour(double c);

// A strip of sixteen boxes with the levels at their edges, from minLevel to maxLevel, at the left of the
// surface. Leaves the fill transparent and the pen black.
void drawcolourscale(DrawSurface& surface);

} // namespace orv

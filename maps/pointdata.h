// The point data that gridding starts from: a text file of places and values.
#pragma once

#include "maps/gridding.h"

#include <string>

namespace orv {

// Appends one line: three number texts at the columns 1, 15 and 29. What is no finite number is the word
// "nan".
void appendpoint(std::string& text, double x, double y, double value);

// The points of a file; lines without three numbers are left out. Raises filenotfound and fileaccess.
scatteredpoints readpointdata(const std::string& path);

} // namespace orv

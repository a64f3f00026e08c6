// The point data. Text, one point a line:
//
//   X Y VALUE          m, m, and the parameter's unit; separated by blanks or commas
//
// as written in columns of 14 characters:
//
//    12.5          3.25          81.0625
//   -1             .5            nan
#include "maps/pointdata.h"

#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orv {

namespace {

constexpr std::string_view separators = " ,\t";

// The next number of a line, taken off its front.
bool takenumber(std::string_view& line, double& value) {
    line.remove_prefix(std::min(line.find_first_not_of(separators), line.size()));
    const numberprefix number = readprefix(line);
    if (number.length == 0 || number.overflow) return false;
    value = number.value;
    line.remove_prefix(number.length);
    return true;
}

} // namespace

void appendpoint(std::string& text, double x, double y, double value) {
    std::string line;
    for (const double field : {x, y, value}) {
        if (!line.empty()) printzone(line);
        line += std::isfinite(field) ? numbertext(field) : "nan";
    }
    text.append(line).append(lineend);
}

scatteredpoints readpointdata(const std::string& path) {
    const filebytes bytes = readfile(path);
    listreader file = openlist(bytes, pagetext(path));
    scatteredpoints points;
    while (!atend(file)) {
        std::string_view line = readline(file);
        std::array<double, 3> number{};
        if (!takenumber(line, number[0]) || !takenumber(line, number[1]) || !takenumber(line, number[2]))
            continue;
        points.x.push_back(number[0]);
        points.y.push_back(number[1]);
        points.value.push_back(number[2]);
    }
    return points;
}

} // namespace orv

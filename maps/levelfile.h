// The level file: at which values contour lines are drawn, and in which colours.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

constexpr int levelcount = 16;

// The colours of the levels 0..15: their names in the level file, and the colour numbers by which their lines
// are known in a contour file.
struct levelcolour {
    std::string_view line, fill;
    std::int32_t number;
};
constexpr std::array<levelcolour, levelcount> levelcolours = {{
    {"Plum", "Black", 204},
    {"Deep Navy Blue", "R17 G17 B17", 174},
    {"Navy Blue", "R34 G34 B34", 162},
    {"Blue", "80% Black", 5},
    {"Baby Blue", "R68 G68 B68", 161},
    {"Sky Blue", "R85 G85 B85", 140},
    {"Ice Blue", "60% Black", 131},
    {"Sea Green", "R119 G119 B119", 123},
    {"Green", "R136 G136 B136", 3},
    {"Moon Green", "40% Black", 71},
    {"Light Yellow", "R170 G170 B170", 51},
    {"Yellow", "R187 G187 B187", 2},
    {"Deep Yellow", "20% Black", 40},
    {"Orange", "R221 G221 B221", 30},
    {"Neon Red", "R238 G238 B238", 230},
    {"Red", "R255 G255 B255", 1},
}};

// The text of the file for the sixteen levels from `lowest`, a sixteenth of the way to `highest` apart.
std::string leveltext(double lowest, double highest);

// A level and the colour number of its lines.
struct contourlevel {
    double value;
    std::int32_t colourNumber;
};

// The rows of a file; a colour whose name is not among the sixteen has the number 7. Raises filenotfound,
// fileaccess, and typemismatch with file and line for a file of another kind or a row without level and
// colour.
std::vector<contourlevel> readlevels(const std::string& path);

} // namespace orv

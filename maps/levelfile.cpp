// The level file. Text:
//
//   LVL2
//   'Level Flags LColor LStyle LWidth FFGColor FBGColor FPattern FMode
//    80 1 "Plum" "Solid" 0 "Black" "White" "Solid" 2
//
// with one row of the third form for each level: its value, flags, then colour and style of the line, its
// width, colours and pattern of the fill, and its mode. Fields are separated by blanks, names stand in double
// quotes; a blank stands in front of a row, unless its level is negative, and behind it.
#include "maps/levelfile.h"

#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"

#include <algorithm>

namespace orv {

namespace {

constexpr std::string_view levelmark = "LVL2";
constexpr std::string_view heading = "'Level Flags LColor LStyle LWidth FFGColor FBGColor FPattern FMode";
constexpr std::int32_t othercolour = 7;

void printquoted(std::string& line, std::string_view word) {
    line.append(1, '"').append(word).append("\" ");
}

std::string levelrow(double level, const levelcolour& colour) {
    constexpr int flags = 1, linewidth = 0, fillmode = 2;
    std::string row;
    printnumber(row, static_cast<double>(static_cast<float>(level)));
    // The blank in front of a whole number is the one behind what stands before it.
    row += std::to_string(flags) + " ";
    printquoted(row, colour.line);
    printquoted(row, "Solid");
    row += std::to_string(linewidth) + " ";
    printquoted(row, colour.fill);
    printquoted(row, "White");
    printquoted(row, "Solid");
    row += std::to_string(fillmode) + " ";
    return row;
}

std::int32_t numberof(std::string_view name) {
    const auto found = std::find_if(levelcolours.begin(), levelcolours.end(),
                                    [&](const levelcolour& colour) { return colour.line == name; });
    return found == levelcolours.end() ? othercolour : found->number;
}

// The word between the first two double quotes, empty where there are none.
std::string_view firstquoted(std::string_view row) {
    const std::size_t start = row.find('"');
    if (start == std::string_view::npos) return {};
    const std::size_t end = row.find('"', start + 1);
    return end == std::string_view::npos ? std::string_view{} : row.substr(start + 1, end - start - 1);
}

} // namespace

std::string leveltext(double lowest, double highest) {
    std::string text;
    text.append(levelmark).append(lineend).append(heading).append(lineend);
    for (std::size_t k = 0; k < levelcolours.size(); ++k) {
        const double level = lowest + static_cast<double>(k) * (highest - lowest) / levelcount;
        text.append(levelrow(level, levelcolours[k])).append(lineend);
    }
    return text;
}

std::vector<contourlevel> readlevels(const std::string& path) {
    const filebytes bytes = readfile(path);
    listreader file = openlist(bytes, pagetext(path));
    if (atend(file) || trimboth(readline(file)) != levelmark)
        inputfailure(file, errorkind::typemismatch, "a level file begins with the word LVL2");
    std::vector<contourlevel> levels;
    while (!atend(file)) {
        const listreader start = file;
        const std::string_view row = trimboth(readline(file));
        if (row.empty() || row.front() == '\'') continue;
        const numberprefix level = readprefix(row);
        const std::string_view colour = firstquoted(row);
        if (level.length == 0 || level.overflow || colour.empty())
            inputfailure(start, errorkind::typemismatch, "a level and the name of its colour were expected");
        levels.push_back({level.value, numberof(colour)});
    }
    return levels;
}

} // namespace orv

// The material table and its files.
//
// Orvanta.mat, a line to a material, rows from 0:
//
//     LABEL NAME , ABSORPTION , SECOND SET , SCATTERING
//       5  Concrete block painted      ,    0.080 ... 0.096, 0.0 ... 0.0, 0.020 ... 0.070
//
// The label is the first word and is not read: the line's number is the row. The name runs from the first
// blank to the first comma. Each group is ten numbers for the octave bands 31.5 Hz to 16 kHz, separated by
// blanks; the second and third may be missing. A line without a comma, such as an empty one, is a row without
// data, so that the rows below keep their numbers.
//
// orvcolor.mat: a whole number to a line, red + 256 x green + 65536 x blue.
#include "interchange/materialtable.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/formatpattern.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "platform/platform.h"

#include <optional>

namespace orv {

materialtable MaterialTable;

namespace {

constexpr std::string_view totalname = "TOTABS";

// A line as it is written.
constexpr std::size_t labelwidth = 3, namewidth = 65;
constexpr std::string_view labelblanks = "     ";
constexpr std::string_view fractionpattern = " #0.000", secondpattern = " ###0.0";

constexpr std::size_t shortestgroup = 3; // characters behind the name that count as a group

std::string datafile(const std::string& name) {
    return existingpath(joinpath(SessionState.dataDirectory, name));
}

std::string_view trimbehind(std::string_view text) {
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

// A text cut at its first comma; one at its very beginning does not count.
struct cuttext {
    std::string_view left;
    std::optional<std::string_view> right;
};
cuttext cutatcomma(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos || comma == 0) return {text, std::nullopt};
    return {trimbehind(text.substr(0, comma)), trimfront(text.substr(comma + 1))};
}

// A line in its parts; nothing for one without data.
struct materialline {
    std::string_view name;
    std::string_view groups;
};
std::optional<materialline> takeapart(std::string_view line) {
    line = trimfront(line);
    const std::size_t comma = line.find(',');
    if (comma == std::string_view::npos || comma == 0) return std::nullopt;
    const std::size_t blank = line.find(' ');
    const std::size_t begin = blank == std::string_view::npos ? 0 : blank + 1;
    const std::string_view name = comma < begin ? std::string_view() : line.substr(begin, comma - begin);
    return materialline{trimboth(name), trimfront(line.substr(comma + 1))};
}

void readrow(std::string_view line, int row) {
    materialtable& m = MaterialTable;
    m.hasAbsorption(row) = 0;
    const auto parts = takeapart(line);
    if (!parts) return;
    m.materialName(row) = parts->name;
    m.hasAbsorption(row) = parts->groups.size() >= shortestgroup ? -1 : 0;

    const cuttext first = cutatcomma(parts->groups);
    const cuttext second = first.right ? cutatcomma(*first.right) : cuttext{};
    m.hasSecondSet(row) = first.right ? -1 : 0;
    m.hasScattering(row) = second.right ? -1 : 0;
    readbandvalues(m.absorption, first.left, row);
    if (!second.left.empty()) readbandvalues(m.secondSet, second.left, row);
    if (second.right && !second.right->empty()) readbandvalues(m.scattering, *second.right, row);
}

// Hands each line of Orvanta.mat to `take(line, row)`. Returns the number of the last row.
template <class taker>
int readlines(int highestrow, taker take) {
    platform::statustext(1, "Reading data from Orvanta.MAT");
    const std::string path = datafile("Orvanta.mat");
    const filebytes bytes = readfile(path);
    listreader lines = openlist(bytes, pagetext(path));
    int row = -1;
    while (!atend(lines)) {
        const listreader here = lines;
        if (++row > highestrow)
            inputfailure(here, errorkind::subscript,
                         "subscript out of range, the last row of the material table is " +
                             std::to_string(highestrow));
        try {
            take(readline(lines), row);
        } catch (const runtimeerror& error) {
            inputfailure(here, error);
        }
    }
    return row;
}

void readcolours() {
    const std::string path = datafile("orvcolor.mat");
    const filebytes bytes = readfile(path);
    listreader lines = openlist(bytes, pagetext(path));
    for (int row = 0; !nothingleft(lines); ++row) {
        if (row > highestmaterial)
            inputfailure(lines, errorkind::subscript, "subscript out of range, too many colours");
        SessionState.materialColour(row) = readwhole32(lines);
    }
}

void addgroup(std::string& text, const bandtable& values, int row, std::string_view pattern) {
    for (int band = 1; band <= octavebands; ++band) appendformatted(text, values(row, band), pattern);
}

void addline(std::string& text, int row) {
    const materialtable& m = MaterialTable;
    const std::string label = std::string(labelblanks) + wholetext(row);
    std::string name = m.materialName(row);
    name.resize(namewidth, ' ');
    // Row 1000 is labelled 000; no reader minds.
    text.append(label, label.size() - labelwidth).append("  ").append(name).append(",   ");
    const bool third = m.hasScattering(row) != 0;
    const bool second = third || m.hasSecondSet(row) != 0;
    if (second || m.hasAbsorption(row) != 0) addgroup(text, m.absorption, row, fractionpattern);
    if (second) addgroup(text.append(1, ','), m.secondSet, row, secondpattern);
    if (third) addgroup(text.append(1, ','), m.scattering, row, fractionpattern);
    text += lineend;
}

} // namespace

void loadmaterials() {
    MaterialTable.materialCount = readlines(highestmaterial, readrow);
    readcolours();
}

void savematerials() {
    platform::statustext(1, "Writing data from Orvanta.MAT");
    std::string materials, colours;
    for (int row = 0; row <= MaterialTable.materialCount; ++row) {
        addline(materials, row);
        colours.append(wholetext(SessionState.materialColour(row))).append(lineend);
    }
    filewriter materialfile(datafile("Orvanta.mat"));
    filewriter colourfile(datafile("orvcolor.mat"));
    materialfile.write(materials);
    colourfile.write(colours);
    // Both are whole before either takes the place of its former one.
    materialfile.flush();
    colourfile.flush();
    materialfile.finish();
    colourfile.finish();
}

void readbandvalues(bandtable& target, std::string_view text, int row) {
    for (int band = 1; band <= octavebands; ++band) {
        const std::size_t blank = band < octavebands ? text.find(' ') : std::string_view::npos;
        target(row, band) = single(lenientnumber(text.substr(0, blank)));
        text = blank == std::string_view::npos ? std::string_view() : trimfront(text.substr(blank));
    }
}

int materialrow(std::string_view name, int first) {
    for (int row = first; row <= MaterialTable.materialCount; ++row)
        if (MaterialTable.materialName(row) == name) return row;
    return -1;
}

int totalabsorber() {
    materialtable& m = MaterialTable;
    int row = materialrow(totalname);
    if (row < 0) {
        row = m.materialCount + 1;
        m.materialName(row) = totalname;
        m.materialCount = row;
    }
    for (int band = 1; band <= octavebands; ++band) {
        m.absorption(row, band) = 1;
        m.secondSet(row, band) = m.scattering(row, band) = 0;
    }
    m.hasAbsorption(row) = m.hasSecondSet(row) = m.hasScattering(row) = -1;
    SessionState.materialColour(row) = rgb(0, 0, 0);
    return row;
}

std::vector<std::string> materialnames(int highestrow) {
    std::vector<std::string> names;
    readlines(highestrow, [&](std::string_view line, int) {
        const auto parts = takeapart(line);
        names.emplace_back(parts ? parts->name : std::string_view());
    });
    return names;
}

} // namespace orv

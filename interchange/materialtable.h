// MaterialTable, the materials that faces name by row number, and its two files in the data directory:
// Orvanta.mat with a line for each material and orvcolor.mat with a colour for each, in the same order. The
// layout of a line stands at the top of materialtable.cpp.
#pragma once

#include "base/table.h"
#include "shell/sessionstate.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

// Rows 0..highestmaterial, octave bands 1..10 (31.5 Hz to 16 kHz).
using bandtable = fixedtable<"a material's bands", float, highestmaterial, octavebands>;

// Filled by loadmaterials, and by the Catt import, which adds rows; read by the converters. A load overwrites
// the rows of its lines and leaves those behind. The colours are in SessionState.materialColour, row by row.
struct materialtable {
    std::int32_t materialCount = -1; // number of the last row; -1 without any
    fixedtable<"materialName", std::string, highestmaterial> materialName;
    bandtable absorption; // 0..1
    bandtable secondSet;
    bandtable scattering; // 0..1
    // -1 where the line held the group, else 0.
    fixedtable<"hasAbsorption", std::int16_t, highestmaterial> hasAbsorption;
    fixedtable<"hasSecondSet", std::int16_t, highestmaterial> hasSecondSet;
    fixedtable<"hasScattering", std::int16_t, highestmaterial> hasScattering;
};

extern materialtable MaterialTable;

// Reads both files. Rows count from the first line, whatever their labels say. A line without a comma, or
// with one as its first character, only clears its hasAbsorption: the rest of the row stays as it was. Groups
// 2 and 3 that a line does not have leave their values and clear their flags.
//
// Raises filenotfound and fileaccess; then, naming file and line, subscript beyond row 2000, overflow for a
// number that its table cannot hold, typemismatch for a colour that is no number. materialCount changes last
// but for the colours, of which a short file leaves the rest.
void loadmaterials();

// Writes rows 0..materialCount into both files. Either both are replaced or, as far as the disk allows, none.
// Raises fileaccess.
void savematerials();

// Ten numbers separated by blanks, each the longest numeric prefix of its word, into the bands 1..10 of a
// row; missing ones are 0. Raises overflow and subscript.
void readbandvalues(bandtable& target, std::string_view text, int row);

// The first row from `first` on whose name is exactly this; -1 when none is.
int materialrow(std::string_view name, int first = 0);

// The row of "TOTABS", which absorbs all: the one of that name or the next free one, with its values set.
// Raises subscript when the table is full.
int totalabsorber();

// The names of Orvanta.mat alone, by row, as loadmaterials would store them; empty for lines without one.
// MaterialTable stays as it is. Raises filenotfound, fileaccess, and subscript beyond `highestrow`.
std::vector<std::string> materialnames(int highestrow = highestmaterial);

} // namespace orv

// What the table window shows, as plain data: its arrangement, the text of each cell, and the text that is
// copied. Cells are made when they are asked for, so that a table of 100001 rows costs nothing to open.
#pragma once

#include "base/table.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// Writes a parameter's value for a receiver 0..100000 and a bandIndex 1..12 into `cell`, in the format of its
// table: levels with one decimal, clarity and times with two, D50, LE, LF and LFC in per cent, STI empty in
// the bands 1, 2 and 10 that have none. A name that no table shows (Aeq2 and ITDGeq too; meant) leaves the
// cell as it is. Raises subscript outside the tables.
void filltablecell(std::string& cell, std::string_view parameter, std::int32_t receiver, std::int32_t band);

// One parameter for all receivers, all parameters of one receiver, or a set of parameters for all receivers
// in one band.
enum class tablekind { oneparameter, onereceiver, roundrobin };

struct parametergrid {
    tablekind kind = tablekind::oneparameter;
    std::string mode;                   // SessionState.tableMode at the opening
    std::int32_t rows = 0, columns = 0; // row 0 and column 0 are the headings
    // What the values are of: a receiver (one receiver) or a bandIndex (round robin); -1 as long as nothing
    // has been chosen, when the cells are empty.
    std::int32_t chosen = -1;
};

// The grid of SessionState.tableMode over receivers 0..RoomModel.receiverCount, with nothing chosen.
parametergrid opengrid();

// Title of the window, and the label and entries of the selection box RecNo; there is none for one parameter.
std::string gridtitle(const parametergrid& grid);
std::string selectionlabel(const parametergrid& grid);
std::int32_t selectioncount(const parametergrid& grid);
std::string selectionentry(const parametergrid& grid, std::int32_t entry); // 0..count-1
std::int32_t firstselection(const parametergrid& grid);                    // the entry that is chosen at once

// An entry of the selection box is chosen: beeps, and the values become those of its receiver or band.
void chooseentry(parametergrid& grid, std::int32_t entry);

// A receiver's number is typed and entered, of one receiver only: beeps. 0 shows the room. Raises subscript
// for a number outside 0..100000.
void typereceiver(parametergrid& grid, const std::string& text);

// The text of a cell, row 0..rows-1 and column 0..columns-1. Raises subscript.
std::string gridcell(const parametergrid& grid, std::int32_t row, std::int32_t column);

// All cells, headings included: columns separated by a tab, rows by CR LF, none behind the last.
std::string gridtext(const parametergrid& grid);

// Sets SessionState.tableMode and opens the window; the second form is the routine of a menu entry.
void showtable(std::string_view mode);
template <tablename name>
void opentable() {
    showtable(name.text);
}

} // namespace orv

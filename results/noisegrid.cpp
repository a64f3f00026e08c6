// The grid of background noise levels, key by key.
#include "results/noisegrid.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/numbertext.h"
#include "platform/keycodes.h"
#include "platform/platform.h"
#include "shell/sessionstate.h"

namespace orv {

namespace {

float& levelof(int column) {
    return SessionState.noiseLevel.at(static_cast<std::size_t>(column - 1));
}

std::string& cellof(noisegrid& grid, int column) {
    return grid.cell.at(static_cast<std::size_t>(column));
}

void endentry(noisegrid& grid) {
    grid.buffer.clear();
    grid.column = 0;
}

// Stores a text as the column's level and shows it by the pattern.
void store(noisegrid& grid, int column, const std::string& text, const char* pattern) {
    levelof(column) = single(lenientnumber(text));
    cellof(grid, column) = formatnumber(levelof(column), pattern);
}

} // namespace

noisegrid opennoisegrid() {
    noisegrid grid;
    grid.cell[0] = "SPL (dB)";
    for (int column = 1; column <= speechbands; ++column)
        cellof(grid, column) = formatnumber(levelof(column), "###.#");
    return grid;
}

void noisecharacter(noisegrid& grid, int column, int character) {
    if (column < 1 || column > speechbands) return;
    if ((character >= '0' && character <= '9') || character == '.') {
        if (grid.column == 0) {
            cellof(grid, column).clear();
            grid.column = column;
        }
        grid.buffer += static_cast<char>(character);
        cellof(grid, column) = grid.buffer;
    } else if (character == keyenter && grid.column != 0) {
        store(grid, grid.column, grid.buffer, "##0.0#");
        endentry(grid);
    } else if (character == keybackspace && !grid.buffer.empty()) {
        grid.buffer.pop_back();
        cellof(grid, column) = grid.buffer;
    }
}

void noisemove(noisegrid& grid, int key) {
    if (key < keypageup || key > keydown || grid.column == 0) return;
    store(grid, grid.column, grid.buffer, "###0.0#");
    endentry(grid);
}

void noiseenter(noisegrid& grid) {
    endentry(grid);
}

void noiseleave(noisegrid& grid, int column) {
    if (grid.column == 0 || column < 1) return;
    const std::string text = cellof(grid, column);
    if (lenientnumber(text) == 0) platform::halt(0);
    store(grid, column, text, "##0.0#");
    endentry(grid);
}

} // namespace orv

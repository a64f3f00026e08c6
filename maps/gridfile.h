// A regular grid of values and its text file, which the gridding engine writes and both it and the maps read.
#pragma once

#include "base/listinput.h"

#include <cstddef>
#include <string>
#include <vector>

namespace orv {

// The value of a node that is left out.
constexpr double blankednode = 1.70141e38;

// Where the nodes stand: columns x rows of them, the outer ones on the edges of the rectangle; a single
// column or row stands in the middle of it.
struct gridframe {
    int columns = 0, rows = 0;
    double xlo = 0, xhi = 0, ylo = 0, yhi = 0;

    double stepx() const { return columns > 1 ? (xhi - xlo) / (columns - 1) : 0; }
    double stepy() const { return rows > 1 ? (yhi - ylo) / (rows - 1) : 0; }
    double x(int column) const { return columns > 1 ? xlo + column * stepx() : (xlo + xhi) / 2; }
    double y(int row) const { return rows > 1 ? ylo + row * stepy() : (ylo + yhi) / 2; }
};

// The values row by row, the lowest y first; blanked nodes hold blankednode.
struct regulargrid {
    gridframe frame;
    std::vector<double> values;

    explicit regulargrid(const gridframe& at = {})
        : frame(at), values(static_cast<std::size_t>(at.columns) * static_cast<std::size_t>(at.rows)) {}
    double* row(int j) { return values.data() + place(0, j); }
    const double* row(int j) const { return values.data() + place(0, j); }
    double value(int i, int j) const { return values[place(i, j)]; }
    std::size_t place(int i, int j) const {
        return static_cast<std::size_t>(j) * static_cast<std::size_t>(frame.columns) +
               static_cast<std::size_t>(i);
    }
};

// Lowest and highest value of the nodes that are not blanked; false when all are.
bool valuerange(const regulargrid& grid, double& zlo, double& zhi);

// The two counts that stand behind the first line, without a judgement of them.
struct gridcounts {
    double columns, rows;
};
gridcounts readgridcounts(listreader& file);

// Reads a whole file; any node whose text reads as blankednode or above is blanked. Raises filenotfound, and
// with file and line pastend, typemismatch, overflow, or subscript for counts below 1 or beyond what the file
// can hold.
regulargrid readgrid(const std::string& path);

// Writes the file in the form of gridfile.cpp. At least one node is not blanked. Raises fileaccess.
void writegrid(const std::string& path, const regulargrid& grid);

} // namespace orv

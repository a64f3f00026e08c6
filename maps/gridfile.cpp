// The grid file. Text, numbers as list input in the order
//
//   DSAA               a word, and the rest of its line is of no matter
//   COLUMNS ROWS
//   XLO XHI            of the outer nodes
//   YLO YHI
//   ZLO ZHI            of the nodes that are not blanked
//   Z Z Z ...          row by row, the lowest y first, COLUMNS values each; 1.70141E+38 is a blanked node
//
// How the values are broken into lines is of no matter to this reader. The reader of the maps drops what
// stands behind the last value of a row up to the line's end, having taken that value's own line end already;
// so a row is written ten values a line with an empty line behind it.
#include "maps/gridfile.h"

#include "base/files.h"
#include "base/listoutput.h"
#include "base/numbertext.h"

#include <algorithm>

namespace orv {

namespace {

constexpr std::string_view gridmark = "DSAA";
constexpr std::string_view blankedtext = "1.70141E+38";
constexpr int valuesperline = 10;

void pairline(std::string& text, const std::string& first, const std::string& second) {
    text.append(first).append(1, ' ').append(second).append(lineend);
}

void appendvalue(std::string& text, double value) {
    if (value == blankednode) {
        text += blankedtext;
        return;
    }
    const std::size_t start = text.size();
    appendnumber(text, value);
    if (text[start] == ' ') text.erase(start, 1);
}

// A row is never shorter in the file than two characters a value.
void checkcounts(const listreader& file, const gridcounts& counts) {
    const double most = static_cast<double>(file.buffer.size());
    if (!(counts.columns >= 1 && counts.rows >= 1 && counts.columns * counts.rows <= most))
        inputfailure(file, errorkind::subscript,
                     "subscript out of range, the file cannot hold a grid of " +
                         trimmednumber(counts.columns) + " x " + trimmednumber(counts.rows) + " nodes");
}

} // namespace

bool valuerange(const regulargrid& grid, double& zlo, double& zhi) {
    bool any = false;
    for (const double value : grid.values) {
        if (value == blankednode) continue;
        zlo = any ? std::min(zlo, value) : value;
        zhi = any ? std::max(zhi, value) : value;
        any = true;
    }
    return any;
}

gridcounts readgridcounts(listreader& file) {
    readline(file);
    const double columns = readnumber(file);
    return {columns, readnumber(file)};
}

regulargrid readgrid(const std::string& path) {
    const filebytes bytes = readfile(path);
    listreader file = openlist(bytes, pagetext(path));
    const gridcounts counts = readgridcounts(file);
    checkcounts(file, counts);
    gridframe frame;
    frame.columns = static_cast<int>(counts.columns);
    frame.rows = static_cast<int>(counts.rows);
    for (double* edge : {&frame.xlo, &frame.xhi, &frame.ylo, &frame.yhi}) *edge = readnumber(file);
    readnumber(file); // zlo, zhi
    readnumber(file);
    regulargrid grid(frame);
    for (double& value : grid.values) {
        value = readnumber(file);
        if (value >= blankednode) value = blankednode;
    }
    return grid;
}

void writegrid(const std::string& path, const regulargrid& grid) {
    const gridframe& f = grid.frame;
    double zlo = 0, zhi = 0;
    valuerange(grid, zlo, zhi);
    std::string text(gridmark);
    text += lineend;
    pairline(text, std::to_string(f.columns), std::to_string(f.rows));
    pairline(text, trimmednumber(f.xlo), trimmednumber(f.xhi));
    pairline(text, trimmednumber(f.ylo), trimmednumber(f.yhi));
    pairline(text, trimmednumber(zlo), trimmednumber(zhi));
    for (int j = 0; j < f.rows; ++j) {
        const double* row = grid.row(j);
        for (int i = 0; i < f.columns; ++i) {
            appendvalue(text, row[i]);
            const bool lineends = (i + 1) % valuesperline == 0 || i + 1 == f.columns;
            text += lineends ? lineend : std::string_view(" ");
        }
        text += lineend;
    }
    replacefile(path, text);
}

} // namespace orv

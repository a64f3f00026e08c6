// Marching squares, each line followed from cell to cell.
#include "maps/contouring.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace orv {

namespace {

// The edges of a cell. Column i, row j has its corners at nodes (i, j) .. (i + 1, j + 1).
enum edge : int { bottom, right, top, left };
constexpr int edges = 4;
constexpr int opposite(int e) {
    return (e + 2) % edges;
}
constexpr int noedge = -1;

// For each case the other end of the line that meets an edge, noedge where none does. Bits of a case: corners
// (i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1) above the level. The two saddles stand with their high
// corners parted; highjoined has the other way.
using endtable = std::array<int, edges>;
constexpr int firstsaddle = 5, secondsaddle = 10, allabove = 15;
constexpr std::array<endtable, 16> otherends = {{
    {noedge, noedge, noedge, noedge}, // 0
    {left, noedge, noedge, bottom},   // 1
    {right, bottom, noedge, noedge},  // 2
    {noedge, left, noedge, right},    // 3
    {noedge, top, right, noedge},     // 4
    {left, top, right, bottom},       // 5
    {top, noedge, bottom, noedge},    // 6
    {noedge, noedge, left, top},      // 7
    {noedge, noedge, left, top},      // 8
    {top, noedge, bottom, noedge},    // 9
    {right, bottom, left, top},       // 10
    {noedge, top, right, noedge},     // 11
    {noedge, left, noedge, right},    // 12
    {right, bottom, noedge, noedge},  // 13
    {left, noedge, noedge, bottom},   // 14
    {noedge, noedge, noedge, noedge}, // 15
}};

struct cell {
    int i, j;
};

// One level's walk over the grid.
struct tracing {
    const regulargrid& grid;
    double level;
    int columns, rows;                // of cells
    std::vector<std::uint8_t> cases;  // per cell; 0 where a corner is blanked
    std::vector<std::uint8_t> walked; // per cell, a bit for each edge that a line came through

    std::size_t place(const cell& at) const {
        return static_cast<std::size_t>(at.j) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(at.i);
    }
    bool inside(const cell& at) const { return at.i >= 0 && at.j >= 0 && at.i < columns && at.j < rows; }
};

// The case of a saddle is turned into the other one where its mean joins the high corners, so that one table
// serves both: parted high corners of one are joined ones of the other.
std::uint8_t caseof(const double* low, const double* high, int i, double level) {
    const double a = low[i], b = low[i + 1], c = high[i + 1], d = high[i];
    if (a == blankednode || b == blankednode || c == blankednode || d == blankednode) return 0;
    const int bits =
        (a >= level ? 1 : 0) | (b >= level ? 2 : 0) | (c >= level ? 4 : 0) | (d >= level ? 8 : 0);
    if ((bits == firstsaddle || bits == secondsaddle) && (a + b + c + d) / 4 >= level)
        return static_cast<std::uint8_t>(firstsaddle + secondsaddle - bits);
    return static_cast<std::uint8_t>(bits);
}

void findcases(tracing& work) {
    for (int j = 0; j < work.rows; ++j) {
        const double *low = work.grid.row(j), *high = work.grid.row(j + 1);
        std::uint8_t* out = work.cases.data() + work.place({0, j});
        for (int i = 0; i < work.columns; ++i) out[i] = caseof(low, high, i, work.level);
    }
}

contourpoint crossing(const tracing& work, const cell& at, int side) {
    const gridframe& f = work.grid.frame;
    const bool across = side == bottom || side == top;
    const int i = at.i + (side == right ? 1 : 0), j = at.j + (side == top ? 1 : 0);
    const double from = work.grid.value(i, j);
    const double to = across ? work.grid.value(i + 1, j) : work.grid.value(i, j + 1);
    const double share = (work.level - from) / (to - from);
    if (across) return {f.x(i) + share * (f.x(i + 1) - f.x(i)), f.y(j)};
    return {f.x(i), f.y(j) + share * (f.y(j + 1) - f.y(j))};
}

cell neighbour(const cell& at, int side) {
    constexpr int stepi[] = {0, 1, 0, -1}, stepj[] = {-1, 0, 1, 0};
    return {at.i + stepi[side], at.j + stepj[side]};
}

// A line through a node meets it on several edges.
void addpoint(contourline& line, const contourpoint& point) {
    if (line.points.empty() || line.points.back().x != point.x || line.points.back().y != point.y)
        line.points.push_back(point);
}

// Whether the cell is there and a line runs through it.
bool crossed(const tracing& work, const cell& at) {
    return work.inside(at) && work.cases[work.place(at)] % allabove != 0;
}

bool walked(const tracing& work, const cell& at, int side) {
    return (work.walked[work.place(at)] >> side & 1) != 0;
}

// Follows the line that enters a cell by an edge to its end. True when it came back to where it began.
bool follow(tracing& work, cell at, int entry, contourline& line) {
    addpoint(line, crossing(work, at, entry));
    while (!walked(work, at, entry)) {
        const int exit = otherends[work.cases[work.place(at)]][static_cast<std::size_t>(entry)];
        work.walked[work.place(at)] |= static_cast<std::uint8_t>(1 << entry | 1 << exit);
        addpoint(line, crossing(work, at, exit));
        at = neighbour(at, exit);
        if (!crossed(work, at)) return false;
        entry = opposite(exit);
    }
    return true;
}

// The line through a cell's edge, both ways.
contourline traced(tracing& work, const cell& at, int side) {
    contourline line;
    if (follow(work, at, side, line)) return line;
    const cell before = neighbour(at, side);
    if (!crossed(work, before)) return line;
    std::reverse(line.points.begin(), line.points.end());
    follow(work, before, opposite(side), line);
    return line;
}

// --- Refining ---

// The cubic convolution between the middle two of four values in equal steps.
double cubic(const std::array<double, 4>& p, double t) {
    return p[1] + t / 2 *
                      (p[2] - p[0] +
                       t * (2 * p[0] - 5 * p[1] + 4 * p[2] - p[3] + t * (3 * (p[1] - p[2]) + p[3] - p[0])));
}

// Refines one line of nodes `from` (count of them, `fromstep` apart in memory) into `to`.
void refineline(const double* from, std::size_t fromstep, int count, double* to, std::size_t tostep,
                int factor) {
    const auto node = [&](int i) { return from[static_cast<std::size_t>(i) * fromstep]; };
    const auto present = [&](int i) { return i >= 0 && i < count && node(i) != blankednode; };
    for (int i = 0; i < count; ++i) {
        double* out = to + static_cast<std::size_t>(i * factor) * tostep;
        *out = node(i);
        if (i + 1 == count) break;
        std::array<double, 4> p{};
        const bool drawn = present(i) && present(i + 1);
        if (drawn) {
            p[1] = node(i);
            p[2] = node(i + 1);
            p[0] = present(i - 1) ? node(i - 1) : 2 * p[1] - p[2];
            p[3] = present(i + 2) ? node(i + 2) : 2 * p[2] - p[1];
        }
        for (int k = 1; k < factor; ++k) {
            out += tostep;
            *out = drawn ? cubic(p, static_cast<double>(k) / factor) : blankednode;
        }
    }
}

} // namespace

std::vector<contourline> contourlines(const regulargrid& grid, double level) {
    std::vector<contourline> lines;
    tracing work{grid, level, grid.frame.columns - 1, grid.frame.rows - 1, {}, {}};
    if (work.columns < 1 || work.rows < 1) return lines;
    const std::size_t cells = static_cast<std::size_t>(work.columns) * static_cast<std::size_t>(work.rows);
    work.cases.resize(cells);
    work.walked.resize(cells);
    findcases(work);
    for (int j = 0; j < work.rows; ++j)
        for (int i = 0; i < work.columns; ++i) {
            const cell at{i, j};
            if (!crossed(work, at)) continue;
            const endtable& ends = otherends[work.cases[work.place(at)]];
            for (int side = 0; side < edges; ++side) {
                if (ends[static_cast<std::size_t>(side)] == noedge || walked(work, at, side)) continue;
                contourline line = traced(work, at, side);
                if (line.points.size() > 1) lines.push_back(std::move(line));
            }
        }
    return lines;
}

regulargrid refinedgrid(const regulargrid& grid, int factor) {
    const gridframe& f = grid.frame;
    gridframe fine = f;
    fine.columns = (f.columns - 1) * factor + 1;
    fine.rows = (f.rows - 1) * factor + 1;
    regulargrid result(fine);
    const auto width = static_cast<std::size_t>(fine.columns);
    std::vector<double> wide(width * static_cast<std::size_t>(f.rows));
    for (int j = 0; j < f.rows; ++j)
        refineline(grid.row(j), 1, f.columns, wide.data() + static_cast<std::size_t>(j) * width, 1, factor);
    for (int i = 0; i < fine.columns; ++i)
        refineline(wide.data() + i, width, f.rows, result.row(0) + i, width, factor);
    return result;
}

} // namespace orv

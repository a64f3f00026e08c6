// Marching squares, each line followed from cell to cell.
#include "maps/contouring.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>

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
constexpr int firstsaddle = 5, secondsaddle = 10;
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

// The walk over the grid. The rank of a node is the number of levels that its value is not below.
constexpr std::int32_t norank = -1; // of a blanked node
struct tracing {
    const regulargrid& grid;
    int columns, rows; // of cells
    std::vector<std::int32_t> ranks{};
    std::vector<std::uint8_t> walked{}; // per cell, a bit for each edge that a line of the level came through
    std::int32_t rank = 0;              // of nodes below the present level, at most
    double level = 0;

    std::size_t place(const cell& at) const {
        return static_cast<std::size_t>(at.j) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(at.i);
    }
    bool inside(const cell& at) const { return at.i >= 0 && at.j >= 0 && at.i < columns && at.j < rows; }
};

// Neighbouring nodes have nearly the same rank, so that few steps lead to the next one.
std::vector<std::int32_t> ranksof(const regulargrid& grid, const std::vector<double>& sorted) {
    const auto count = static_cast<std::int32_t>(sorted.size());
    const auto level = [&](std::int32_t k) { return sorted[static_cast<std::size_t>(k)]; };
    std::vector<std::int32_t> ranks(grid.values.size(), norank);
    std::int32_t rank = 0;
    for (std::size_t node = 0; node < ranks.size(); ++node) {
        const double value = grid.values[node];
        if (value == blankednode) continue;
        while (rank < count && value >= level(rank)) ++rank;
        while (rank > 0 && value < level(rank - 1)) --rank;
        ranks[node] = rank;
    }
    return ranks;
}

// The cells that each level runs through.
std::vector<std::vector<cell>> crossedcells(const tracing& work, std::size_t levels) {
    std::vector<std::vector<cell>> found(levels);
    for (int j = 0; j < work.rows; ++j) {
        const std::int32_t* low = work.ranks.data() + work.grid.place(0, j);
        const std::int32_t* high = work.ranks.data() + work.grid.place(0, j + 1);
        for (int i = 0; i < work.columns; ++i) {
            const std::int32_t a = low[i], b = low[i + 1], c = high[i + 1], d = high[i];
            if (a == b && b == c && c == d) continue;
            const std::int32_t least = std::min({a, b, c, d}), most = std::max({a, b, c, d});
            if (least == norank) continue;
            for (std::int32_t k = least; k < most; ++k) found[static_cast<std::size_t>(k)].push_back({i, j});
        }
    }
    return found;
}

// The case of a saddle is turned into the other one where its mean joins the high corners, so that one table
// serves both: parted high corners of one are joined ones of the other.
int caseof(const tracing& work, const cell& at) {
    const std::size_t low = work.grid.place(at.i, at.j), high = work.grid.place(at.i, at.j + 1);
    const std::array<std::size_t, 4> corners = {low, low + 1, high + 1, high};
    int bits = 0;
    for (std::size_t k = 0; k < corners.size(); ++k) {
        if (work.ranks[corners[k]] == norank) return 0;
        if (work.ranks[corners[k]] > work.rank) bits |= 1 << k;
    }
    if (bits != firstsaddle && bits != secondsaddle) return bits;
    double sum = 0;
    for (const std::size_t node : corners) sum += work.grid.values[node];
    return sum / 4 >= work.level ? firstsaddle + secondsaddle - bits : bits;
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

bool walked(const tracing& work, const cell& at, int side) {
    return (work.walked[work.place(at)] >> side & 1) != 0;
}

// The edge by which a line leaves that enters a cell by another; noedge where there is no cell, or none does.
int exitof(const tracing& work, const cell& at, int entry) {
    return work.inside(at)
               ? otherends[static_cast<std::size_t>(caseof(work, at))][static_cast<std::size_t>(entry)]
               : noedge;
}

// Follows the line that enters a cell by an edge to its end. True when it came back to where it began.
bool follow(tracing& work, cell at, int entry, contourline& line) {
    addpoint(line, crossing(work, at, entry));
    for (int exit = exitof(work, at, entry); exit != noedge; exit = exitof(work, at, entry)) {
        if (walked(work, at, entry)) return true;
        work.walked[work.place(at)] |= static_cast<std::uint8_t>(1 << entry | 1 << exit);
        addpoint(line, crossing(work, at, exit));
        at = neighbour(at, exit);
        entry = opposite(exit);
    }
    return false;
}

// The line through a cell's edge, both ways.
contourline traced(tracing& work, const cell& at, int side) {
    contourline line;
    if (follow(work, at, side, line)) return line;
    const cell before = neighbour(at, side);
    if (exitof(work, before, opposite(side)) == noedge) return line;
    std::reverse(line.points.begin(), line.points.end());
    follow(work, before, opposite(side), line);
    return line;
}

std::vector<contourline> tracelevel(tracing& work, const std::vector<cell>& cells) {
    std::vector<contourline> lines;
    for (const cell& at : cells)
        for (int side = 0; side < edges; ++side) {
            if (exitof(work, at, side) == noedge || walked(work, at, side)) continue;
            contourline line = traced(work, at, side);
            if (line.points.size() > 1) lines.push_back(std::move(line));
        }
    for (const cell& at : cells) work.walked[work.place(at)] = 0;
    return lines;
}

// --- Refining ---

// The cubic convolution between the middle two of four values in equal steps.
double cubic(const std::array<double, 4>& p, double t) {
    return p[1] + t / 2 *
                      (p[2] - p[0] +
                       t * (2 * p[0] - 5 * p[1] + 4 * p[2] - p[3] + t * (3 * (p[1] - p[2]) + p[3] - p[0])));
}

// A line of nodes, `step` apart in memory.
template <class value>
struct nodeline {
    value* first;
    std::size_t step;

    value& operator[](int i) const { return first[static_cast<std::size_t>(i) * step]; }
};

// Refines a line of so many nodes into another.
void refineline(const nodeline<const double>& from, int count, const nodeline<double>& to, int factor) {
    const auto present = [&](int i) { return i >= 0 && i < count && from[i] != blankednode; };
    for (int i = 0; i < count; ++i) {
        to[i * factor] = from[i];
        if (i + 1 == count) break;
        std::array<double, 4> p{};
        const bool drawn = present(i) && present(i + 1);
        if (drawn) {
            p[1] = from[i];
            p[2] = from[i + 1];
            p[0] = present(i - 1) ? from[i - 1] : 2 * p[1] - p[2];
            p[3] = present(i + 2) ? from[i + 2] : 2 * p[2] - p[1];
        }
        for (int k = 1; k < factor; ++k)
            to[i * factor + k] = drawn ? cubic(p, static_cast<double>(k) / factor) : blankednode;
    }
}

} // namespace

std::vector<std::vector<contourline>> contourlines(const regulargrid& grid,
                                                   const std::vector<double>& levels) {
    std::vector<std::vector<contourline>> lines(levels.size());
    tracing work{grid, grid.frame.columns - 1, grid.frame.rows - 1};
    if (work.columns < 1 || work.rows < 1) return lines;
    std::vector<std::size_t> order(levels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return levels[a] < levels[b]; });
    std::vector<double> sorted;
    for (const std::size_t k : order) sorted.push_back(levels[k]);
    work.ranks = ranksof(grid, sorted);
    work.walked.resize(static_cast<std::size_t>(work.columns) * static_cast<std::size_t>(work.rows));
    const auto cells = crossedcells(work, levels.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
        work.rank = static_cast<std::int32_t>(k);
        work.level = sorted[k];
        lines[order[k]] = tracelevel(work, cells[k]);
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
        refineline({grid.row(j), 1}, f.columns, {wide.data() + static_cast<std::size_t>(j) * width, 1},
                   factor);
    for (int i = 0; i < fine.columns; ++i)
        refineline({wide.data() + i, width}, f.rows, {result.row(0) + i, width}, factor);
    return result;
}

} // namespace orv

// Radial functions: one system over all points, or, for many points, one over the nearest of each block of
// nodes.
#include "maps/griddingradial.h"

#include "base/wideloops.h"
#include "maps/griddingalgebra.h"
#include "maps/griddingneighbours.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <numeric>

namespace orv {

namespace {

constexpr int mostpoints = 3000;         // of one system
constexpr std::size_t localpoints = 200; // of the system of a block
constexpr double smoothingshare = 25;
constexpr double tension = 1; // p times the map's diagonal

// --- The kernels, added up over a row of places ---

// The series of the plate: with u = (p r / 2)^2 the kernel is, but for its sign and a constant,
// A(u) ln(u) / 2 + B(u), A = sum u^k / k!^2, B = sum u^k (gamma - H_k) / k!^2, k from 1. u is at most
// tension^2 / 4, so that what follows the last term is lost in rounding.
constexpr int seriesterms = 8;
struct plateseries {
    std::array<double, seriesterms> a{}, b{};
};
constexpr plateseries makeseries() {
    plateseries series;
    double factorial = 1, harmonic = 0;
    for (std::size_t k = 1; k <= seriesterms; ++k) {
        factorial *= static_cast<double>(k);
        harmonic += 1 / static_cast<double>(k);
        series.a[k - 1] = 1 / (factorial * factorial);
        series.b[k - 1] = (std::numbers::egamma - harmonic) * series.a[k - 1];
    }
    return series;
}
constexpr plateseries series = makeseries();

// Natural logarithm to about 1e-15 of a value of 0 or above, without a branch, so that loops become wide; a
// large negative number for 0. The value is 2^e m with m around 1, ln m = 2 artanh((m - 1) / (m + 1)).
inline double widelog(double value) {
    constexpr std::uint64_t one = 0x3FF0000000000000, roothalf = 0x3FE6A09E667F3BCD;
    constexpr std::uint64_t whole = 0x4330000000000000; // 2^52, whose low bits count ones
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const std::uint64_t exponent = (bits + (one - roothalf)) >> 52;
    const auto m = std::bit_cast<double>(bits - ((exponent - 1023) << 52));
    const double e = std::bit_cast<double>(whole | exponent) - (0x1p52 + 1023);
    const double s = (m - 1) / (m + 1), q = s * s;
    double sum = 1.0 / 17;
    for (int k = 15; k >= 1; k -= 2) sum = sum * q + 1.0 / k;
    return e * std::numbers::ln2 + 2 * s * sum;
}

// sums[i] += weight sqrt((x[i] - px)^2 + square)
ORV_WIDELOOPS
void addroots(double* sums, const double* x, int count, double px, double square, double weight) {
    for (int i = 0; i < count; ++i) {
        const double dx = x[i] - px;
        sums[i] += weight * std::sqrt(dx * dx + square);
    }
}

// sums[i] += weight plate(u) with u = scale ((x[i] - px)^2 + square)
ORV_WIDELOOPS
void addplates(double* sums, const double* x, int count, double px, double square, double scale,
               double weight) {
    for (int i = 0; i < count; ++i) {
        const double dx = x[i] - px, u = scale * (dx * dx + square);
        double a = series.a[seriesterms - 1], b = series.b[seriesterms - 1];
        for (std::size_t k = seriesterms - 1; k-- > 0;) {
            a = a * u + series.a[k];
            b = b * u + series.b[k];
        }
        sums[i] += weight * (u * (a * widelog(u) * 0.5 + b));
    }
}

// --- One system ---

// Lengths are shares of the map's diagonal, from its middle.
struct radialfit {
    radialkernel kernel{};
    double smoothing = 0; // s^2
    std::vector<double> x, y;
    double meanx = 0, meany = 0; // where the plane of the tail has its origin
    interpolant solution;
};

void addkernel(const radialfit& fit, double* sums, const double* x, int count, double px, double dy,
               double weight) {
    if (fit.kernel == radialkernel::plate)
        addplates(sums, x, count, px, dy * dy, tension * tension / 4, weight);
    else
        addroots(sums, x, count, px, dy * dy + fit.smoothing, -weight);
}

// The kernel between all pairs of points, a column for each.
densematrix kernelmatrix(const radialfit& fit) {
    const std::size_t points = fit.x.size();
    const int n = static_cast<int>(points);
    densematrix kernel(n, n);
    std::vector<double> distances(points);
    for (int k = 0; k < n; ++k) {
        const auto at = static_cast<std::size_t>(k);
        double* column = kernel.column(k);
        if (fit.kernel == radialkernel::plate) {
            for (std::size_t i = 0; i < points; ++i)
                distances[i] = std::hypot(fit.x[i] - fit.x[at], fit.y[i] - fit.y[at]);
            addplates(column, distances.data(), n, 0, 0, tension * tension / 4, 1);
        } else {
            for (std::size_t i = 0; i < points; ++i) {
                const double dx = fit.x[i] - fit.x[at], dy = fit.y[i] - fit.y[at];
                column[i] = -std::sqrt(dx * dx + dy * dy + fit.smoothing);
            }
        }
    }
    return kernel;
}

// The tail's terms at all points: 1, and x and y from their means for a plane.
densematrix tailbasis(const radialfit& fit) {
    const bool plane = fit.kernel == radialkernel::plate;
    const int n = static_cast<int>(fit.x.size());
    densematrix basis(n, plane ? 3 : 1);
    for (int k = 0; k < n; ++k) {
        basis(k, 0) = 1;
        if (!plane) continue;
        basis(k, 1) = fit.x[static_cast<std::size_t>(k)] - fit.meanx;
        basis(k, 2) = fit.y[static_cast<std::size_t>(k)] - fit.meany;
    }
    return basis;
}

// Finds the solution for the values at the points of the fit.
void solve(radialfit& fit, const std::vector<double>& values) {
    const auto n = static_cast<double>(fit.x.size());
    fit.meanx = std::accumulate(fit.x.begin(), fit.x.end(), 0.0) / n;
    fit.meany = std::accumulate(fit.y.begin(), fit.y.end(), 0.0) / n;
    densematrix kernel = kernelmatrix(fit);
    fit.solution = solveinterpolant(kernel, tailbasis(fit), values);
}

void evaluate(const radialfit& fit, const double* x, int count, double y, double* out) {
    const std::vector<double>& tail = fit.solution.tail;
    for (int i = 0; i < count; ++i)
        out[i] =
            tail.size() == 1 ? tail[0] : tail[0] + tail[1] * (x[i] - fit.meanx) + tail[2] * (y - fit.meany);
    for (std::size_t k = 0; k < fit.x.size(); ++k)
        addkernel(fit, out, x, count, fit.x[k], y - fit.y[k], fit.solution.weight[k]);
}

// --- The map ---

struct mapscale {
    double middlex, middley, length;
};

// All nodes and points lie within.
mapscale scaleof(const scatteredpoints& points, const gridframe& frame) {
    const auto [x0, x1] = std::minmax_element(points.x.begin(), points.x.end());
    const auto [y0, y1] = std::minmax_element(points.y.begin(), points.y.end());
    const double left = std::min(*x0, frame.xlo), right = std::max(*x1, frame.xhi);
    const double low = std::min(*y0, frame.ylo), high = std::max(*y1, frame.yhi);
    const double diagonal = std::hypot(right - left, high - low);
    return {left / 2 + right / 2, low / 2 + high / 2, diagonal > 0 ? diagonal : 1};
}

double smoothingof(const scatteredpoints& points, const mapscale& scale) {
    const auto [x0, x1] = std::minmax_element(points.x.begin(), points.x.end());
    const auto [y0, y1] = std::minmax_element(points.y.begin(), points.y.end());
    const double diagonal = std::hypot(*x1 - *x0, *y1 - *y0) / scale.length;
    return diagonal * diagonal / (smoothingshare * points.count());
}

// A rectangle of nodes, first and behind the last.
struct nodeblock {
    int column, columnend, row, rowend;
};

struct localgridding {
    const scatteredpoints& points; // scaled
    radialfit form;                // kernel and smoothing
    std::vector<double> nodex, nodey;
    neighbourtree tree{points.x, points.y};
    regulargrid& grid;
};

void fillblock(localgridding& work, const nodeblock& block, std::span<const std::uint32_t> near) {
    radialfit fit = work.form;
    std::vector<double> values;
    for (const std::uint32_t point : near) {
        fit.x.push_back(work.points.x[point]);
        fit.y.push_back(work.points.y[point]);
        values.push_back(work.points.value[point]);
    }
    solve(fit, values);
    for (int j = block.row; j < block.rowend; ++j)
        evaluate(fit, work.nodex.data() + block.column, block.columnend - block.column,
                 work.nodey[static_cast<std::size_t>(j)], work.grid.row(j) + block.column);
}

// A block is filled at once when all its nodes lie well within its neighbourhood, so that each has neighbours
// on all sides; otherwise it is halved along both axes.
void gridblock(localgridding& work, const nodeblock& block) {
    const auto node = [](const std::vector<double>& at, int i) { return at[static_cast<std::size_t>(i)]; };
    const double x0 = node(work.nodex, block.column), x1 = node(work.nodex, block.columnend - 1);
    const double y0 = node(work.nodey, block.row), y1 = node(work.nodey, block.rowend - 1);
    std::array<std::uint32_t, localpoints> near;
    std::array<double, localpoints> square;
    work.tree.nearest((x0 + x1) / 2, (y0 + y1) / 2, near, square);
    const int columns = block.columnend - block.column, rows = block.rowend - block.row;
    if (std::hypot(x1 - x0, y1 - y0) <= std::sqrt(square.back()) || (columns == 1 && rows == 1)) {
        fillblock(work, block, near);
        return;
    }
    const int column = block.column + (columns + 1) / 2, row = block.row + (rows + 1) / 2;
    for (const nodeblock& part :
         {nodeblock{block.column, column, block.row, row}, nodeblock{column, block.columnend, block.row, row},
          nodeblock{block.column, column, row, block.rowend},
          nodeblock{column, block.columnend, row, block.rowend}})
        if (part.column < part.columnend && part.row < part.rowend) gridblock(work, part);
}

} // namespace

void gridradial(const scatteredpoints& points, radialkernel kernel, regulargrid& grid) {
    const gridframe& frame = grid.frame;
    const mapscale scale = scaleof(points, frame);
    const auto scaledx = [&](double x) { return (x - scale.middlex) / scale.length; };
    const auto scaledy = [&](double y) { return (y - scale.middley) / scale.length; };
    scatteredpoints scaled = points;
    std::transform(points.x.begin(), points.x.end(), scaled.x.begin(), scaledx);
    std::transform(points.y.begin(), points.y.end(), scaled.y.begin(), scaledy);
    std::vector<double> nodex, nodey;
    for (int i = 0; i < frame.columns; ++i) nodex.push_back(scaledx(frame.x(i)));
    for (int j = 0; j < frame.rows; ++j) nodey.push_back(scaledy(frame.y(j)));

    radialfit fit;
    fit.kernel = kernel;
    if (kernel == radialkernel::multiquadric) fit.smoothing = smoothingof(points, scale);
    if (points.count() > mostpoints) {
        localgridding work{scaled, fit, nodex, nodey, {scaled.x, scaled.y}, grid};
        gridblock(work, {0, frame.columns, 0, frame.rows});
        return;
    }
    fit.x = scaled.x;
    fit.y = scaled.y;
    solve(fit, points.value);
    for (int j = 0; j < frame.rows; ++j)
        evaluate(fit, nodex.data(), frame.columns, nodey[static_cast<std::size_t>(j)], grid.row(j));
}

} // namespace orv

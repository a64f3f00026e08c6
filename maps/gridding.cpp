// Preparing the points, choosing the method, and the one method that is short.
#include "maps/gridding.h"

#include "base/runtimeerror.h"
#include "maps/griddingalgebra.h"
#include "maps/griddingradial.h"
#include "maps/griddingshepard.h"
#include "maps/griddingtriangles.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orv {

namespace {

// Farther out no double holds the square of a distance; no receiver lies there, only a point of a broken
// file.
constexpr double farthest = 1e100; // m

bool isusable(const scatteredpoints& p, std::size_t k) {
    return std::fabs(p.x[k]) < farthest && std::fabs(p.y[k]) < farthest && std::isfinite(p.value[k]);
}

// Values that no grid file can hold are none.
void blankunusable(regulargrid& grid) {
    for (double& value : grid.values)
        if (!std::isfinite(value) || value > blankednode) value = blankednode;
    double zlo = 0, zhi = 0;
    if (!valuerange(grid, zlo, zhi))
        throw runtimeerror{errorkind::domain, "The receivers give no node of the grid a value."};
}

// In coordinates from the points' middle, so that far-away rooms cost no digits.
void gridpolynomial(const scatteredpoints& points, regulargrid& grid) {
    constexpr int terms = 4;
    const int n = points.count();
    const double mx = std::accumulate(points.x.begin(), points.x.end(), 0.0) / n;
    const double my = std::accumulate(points.y.begin(), points.y.end(), 0.0) / n;
    densematrix matrix(n, terms);
    for (int k = 0; k < n; ++k) {
        const double x = points.x[static_cast<std::size_t>(k)] - mx;
        const double y = points.y[static_cast<std::size_t>(k)] - my;
        matrix(k, 0) = 1;
        matrix(k, 1) = x;
        matrix(k, 2) = y;
        matrix(k, 3) = x * y;
    }
    const std::vector<double> c = leastsquares(matrix, points.value);
    for (int j = 0; j < grid.frame.rows; ++j) {
        const double y = grid.frame.y(j) - my;
        const double constant = c[0] + c[2] * y, slope = c[1] + c[3] * y;
        double* row = grid.row(j);
        for (int i = 0; i < grid.frame.columns; ++i) row[i] = constant + slope * (grid.frame.x(i) - mx);
    }
}

} // namespace

griddingmethod methodof(int number) {
    constexpr int first = static_cast<int>(griddingmethod::kriging);
    constexpr int last = static_cast<int>(griddingmethod::triangulation);
    return number < first || number > last ? griddingmethod::kriging : static_cast<griddingmethod>(number);
}

scatteredpoints distinctpoints(const scatteredpoints& points) {
    std::vector<std::size_t> order;
    for (std::size_t k = 0; k < points.x.size(); ++k)
        if (isusable(points, k)) order.push_back(k);
    const auto before = [&](std::size_t a, std::size_t b) {
        return points.x[a] != points.x[b] ? points.x[a] < points.x[b] : points.y[a] < points.y[b];
    };
    std::stable_sort(order.begin(), order.end(), before);
    scatteredpoints distinct;
    for (std::size_t first = 0, next = 0; first < order.size(); first = next) {
        double sum = 0;
        while (next < order.size() && !before(order[first], order[next])) sum += points.value[order[next++]];
        distinct.x.push_back(points.x[order[first]]);
        distinct.y.push_back(points.y[order[first]]);
        distinct.value.push_back(sum / static_cast<double>(next - first));
    }
    return distinct;
}

regulargrid gridpoints(const scatteredpoints& points, const gridframe& frame, griddingmethod method) {
    const scatteredpoints distinct = distinctpoints(points);
    if (distinct.count() == 0)
        throw runtimeerror{errorkind::domain,
                           "No receiver has a place and a value that are numbers; there is nothing to grid."};
    regulargrid grid(frame);
    switch (method) {
    case griddingmethod::minimumcurvature:
        gridradial(distinct, radialkernel::plate, grid);
        break;
    case griddingmethod::polynomial:
        gridpolynomial(distinct, grid);
        break;
    case griddingmethod::radialbasis:
        gridradial(distinct, radialkernel::multiquadric, grid);
        break;
    case griddingmethod::shepard:
        gridshepard(distinct, grid);
        break;
    case griddingmethod::triangulation:
        gridtriangles(distinct, grid);
        break;
    default:
        gridradial(distinct, radialkernel::linear, grid);
    }
    blankunusable(grid);
    return grid;
}

} // namespace orv

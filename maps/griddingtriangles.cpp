// Triangulation by Qhull, and the planes over the triangles.
#include "maps/griddingtriangles.h"

#include "base/runtimeerror.h"

#include <libqhull_r/qhull_ra.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>

namespace orv {

namespace {

// How far outside a triangle a node counts as on its edge, as a share of the nodes' step.
constexpr double edgeslack = 1e-9;

using scratchfile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// The library's state, freed at the end.
struct hullstate {
    qhT state{};

    explicit hullstate(std::FILE* messages) { qh_zero(&state, messages); }
    ~hullstate() {
        int count = 0, bytes = 0;
        qh_freeqhull(&state, !qh_ALL);
        qh_memfreeshort(&state, &count, &bytes);
    }
    hullstate(const hullstate&) = delete;
    hullstate& operator=(const hullstate&) = delete;
};

std::array<int, 3> corners(qhT* qh, facetT* facet) {
    std::array<int, 3> triangle{};
    std::size_t k = 0;
    vertexT *vertex, **vertexp;
    FOREACHvertex_(facet->vertices) if (k < 3) triangle[k++] = qh_pointid(qh, vertex->point);
    return triangle;
}

// Where the triangle meets the line of nodes at height y.
struct span {
    double from = std::numeric_limits<double>::max(), to = -std::numeric_limits<double>::max();

    void take(double x) {
        from = std::min(from, x);
        to = std::max(to, x);
    }
};
span crossing(const std::array<double, 3>& x, const std::array<double, 3>& y, double height) {
    span found;
    for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t next = (k + 1) % 3;
        if (height < std::min(y[k], y[next]) || height > std::max(y[k], y[next])) continue;
        if (y[k] == y[next]) {
            found.take(x[k]);
            found.take(x[next]);
        } else
            found.take(x[k] + (height - y[k]) / (y[next] - y[k]) * (x[next] - x[k]));
    }
    return found;
}

// The nodes first..last whose coordinate lies in from..to, on the edges too; none when first > last.
struct noderange {
    int first, last;
};
noderange nodeswithin(double from, double to, double start, double step, int count) {
    const double slack = edgeslack * (step > 0 ? step : 1);
    if (step <= 0)
        return from - slack <= start && start <= to + slack ? noderange{0, count - 1} : noderange{0, -1};
    const double low = std::ceil((from - start) / step - edgeslack);
    const double high = std::floor((to - start) / step + edgeslack);
    return {static_cast<int>(std::clamp(low, 0.0, static_cast<double>(count))),
            static_cast<int>(std::clamp(high, -1.0, static_cast<double>(count - 1)))};
}

void filltriangle(const scatteredpoints& points, const std::array<int, 3>& triangle, regulargrid& grid) {
    std::array<double, 3> x{}, y{}, z{};
    for (std::size_t k = 0; k < 3; ++k) {
        const auto point = static_cast<std::size_t>(triangle[k]);
        x[k] = points.x[point];
        y[k] = points.y[point];
        z[k] = points.value[point];
    }
    const double ax = x[1] - x[0], ay = y[1] - y[0], bx = x[2] - x[0], by = y[2] - y[0];
    const double area = ax * by - ay * bx;
    if (area == 0) return;
    const double slopex = ((z[1] - z[0]) * by - (z[2] - z[0]) * ay) / area;
    const double slopey = ((z[2] - z[0]) * ax - (z[1] - z[0]) * bx) / area;
    const gridframe& f = grid.frame;
    const double low = std::min({y[0], y[1], y[2]}), high = std::max({y[0], y[1], y[2]});
    const noderange rows = nodeswithin(low, high, f.y(0), f.stepy(), f.rows);
    for (int j = rows.first; j <= rows.last; ++j) {
        const double height = std::clamp(f.y(j), low, high);
        const span across = crossing(x, y, height);
        const noderange columns = nodeswithin(across.from, across.to, f.x(0), f.stepx(), f.columns);
        double* row = grid.row(j);
        for (int i = columns.first; i <= columns.last; ++i)
            row[i] = z[0] + slopex * (f.x(i) - x[0]) + slopey * (height - y[0]);
    }
}

} // namespace

std::vector<std::array<int, 3>> delaunay(const std::vector<double>& x, const std::vector<double>& y) {
    std::vector<std::array<int, 3>> triangles;
    if (x.size() < 3) return triangles;
    const auto [x0, x1] = std::minmax_element(x.begin(), x.end());
    const auto [y0, y1] = std::minmax_element(y.begin(), y.end());
    const double length = std::max(*x1 - *x0, *y1 - *y0);
    std::vector<double> coordinates;
    for (std::size_t k = 0; k < x.size(); ++k) {
        coordinates.push_back((x[k] - *x0) / length);
        coordinates.push_back((y[k] - *y0) / length);
    }
    // What the library has to say, pages for points on a line, goes nowhere.
    const scratchfile messages(std::tmpfile(), std::fclose);
    if (!messages) throw runtimeerror{errorkind::fileaccess, "No temporary file can be made."};
    char options[] = "qhull d Qt Qbb Qc Q12";
    hullstate hull(messages.get());
    qhT* qh = &hull.state;
    if (qh_new_qhull(qh, 2, static_cast<int>(x.size()), coordinates.data(), False, options, messages.get(),
                     messages.get()) != 0)
        return triangles;
    facetT* facet;
    FORALLfacets {
        if (!facet->upperdelaunay) triangles.push_back(corners(qh, facet));
    }
    return triangles;
}

void gridtriangles(const scatteredpoints& points, regulargrid& grid) {
    const auto triangles = delaunay(points.x, points.y);
    if (triangles.empty())
        throw runtimeerror{errorkind::domain,
                           "Triangulation needs three receivers that are not on one line."};
    std::fill(grid.values.begin(), grid.values.end(), blankednode);
    for (const auto& triangle : triangles) filltriangle(points, triangle, grid);
}

} // namespace orv

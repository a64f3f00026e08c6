// What a map shows: the field between receivers, gridding and contours.
#include "maps/contouring.h"
#include "maps/gridding.h"
#include "maps/mapfield.h"
#include "room/geometryreader.h"
#include "samples/hall.h"
#include "samples/random.h"
#include "samples/samplefiles.h"
#include "shell/sessionstate.h"
#include "verification/session.h"
#include "verification/subjects.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv::verification {

namespace {

// --- The field ---

constexpr int cells = 40;
constexpr real nearest = 0.1L; // m2

struct planepoint {
    real first, second;
};
planepoint inplaneof(planechoice plane, const samples::point& p) {
    switch (plane) {
    case planechoice::YZ:
        return {p.y, p.z};
    case planechoice::XZ:
        return {p.x, p.z};
    default:
        return {p.x, p.y};
    }
}

double levelof(std::size_t receiver) {
    return 72.5 + 0.25 * static_cast<double>(receiver * 37 % 61);
}

// The mean of all receivers by the inverse square of the distance, as singles are stored.
real plainfield(planechoice plane, real first, real second) {
    real sum = 0, weights = 0;
    const std::vector<samples::point>& receivers = samples::hallreceivers();
    for (std::size_t i = 0; i < receivers.size(); ++i) {
        const planepoint at = inplaneof(plane, receivers[i]);
        const real d1 = real(static_cast<float>(at.first)) - first;
        const real d2 = real(static_cast<float>(at.second)) - second;
        const real weight = 1 / std::max(d1 * d1 + d2 * d2, nearest);
        weights += weight;
        sum += weight * real(static_cast<float>(levelof(i)));
    }
    return sum / weights;
}

void comparefield(table& into, std::string_view name, planechoice plane) {
    SessionState.viewPlane = plane;
    SessionState.Nx = SessionState.Ny = cells;
    const maprectangle map = mapextent();
    const mapreceivers receivers = receiversofmap();
    std::vector<double> second(cells), values(cells);
    for (std::size_t j = 0; j < cells; ++j)
        second[j] = map.lo2 + (static_cast<double>(j) + 0.5) * map.cellHeight;
    for (int i = 0; i < cells; ++i) {
        const double first = map.lo1 + (i + 0.5) * map.cellWidth;
        fieldcolumn(receivers, first, second, values);
        for (std::size_t j = 0; j < cells; ++j)
            compare(into, std::string("Cells of the map, ") + std::string(name), 1e-12,
                    static_cast<double>(plainfield(plane, first, second[j])), values[j]);
    }
    for (const samples::point& receiver : samples::hallreceivers()) {
        const planepoint at = inplaneof(plane, receiver);
        const auto first = static_cast<double>(at.first), upwards = static_cast<double>(at.second);
        compare(into, std::string("At the receivers, ") + std::string(name), 1e-12,
                static_cast<double>(plainfield(plane, at.first, at.second)),
                fieldvalue(receivers, first, upwards));
    }
}

table fields(const session& in) {
    table found{
        "The field of a map",
        "Levels of the sample hall's thirty receivers, from a parameter file: 40 x 40 cells of a map in each "
        "plane and the receivers' own places, dB. The mean by the inverse square of the distance, of which a "
        "square below 0.1 m&sup2; counts as that (D. Shepard, 1968), in extended precision."};
    in.write("hall.RAY", samples::geometrytext());
    loadgeometry(in.inside("hall.RAY"));
    std::vector<parameterblock> receivers;
    for (std::size_t i = 0; i < samples::hallreceivers().size(); ++i) receivers.push_back({levelof(i), {}});
    loadparameterfile(in, "hall.-01", receivers, {});
    SessionState.parameterName = "Leq";
    SessionState.bandIndex = linearband;
    comparefield(found, "XY", planechoice::XY);
    comparefield(found, "YZ", planechoice::YZ);
    comparefield(found, "XZ", planechoice::XZ);
    return found;
}

// --- Gridding ---

double plane(double x, double y) {
    return 70 + 0.5 * x - 0.25 * y;
}

double wave(double x, double y) {
    return 80 + 5 * std::sin(x) * std::cos(1.3 * y);
}

constexpr gridframe nodes{33, 33, 0, 8, 0, 8};

// Points anywhere in the frame.
scatteredpoints anywhere(int count, double (*value)(double, double)) {
    samples::randomstate random{5};
    scatteredpoints points;
    for (int i = 0; i < count; ++i) {
        points.x.push_back(8 * samples::nextuniform(random));
        points.y.push_back(8 * samples::nextuniform(random));
        points.value.push_back(value(points.x.back(), points.y.back()));
    }
    return points;
}

// Points on nodes of the frame, every fourth left out.
scatteredpoints onnodes(double (*value)(double, double)) {
    scatteredpoints points;
    for (int i = 0; i < 81; ++i) {
        if (i % 4 == 1) continue;
        points.x.push_back(i % 9);
        points.y.push_back(i / 9);
        points.value.push_back(value(points.x.back(), points.y.back()));
    }
    return points;
}

constexpr struct {
    griddingmethod method;
    std::string_view name;
    bool flat, through; // whether it keeps a plane, and goes through the points
} methods[] = {{griddingmethod::kriging, "Kriging", false, true},
               {griddingmethod::minimumcurvature, "Minimum curvature", true, true},
               {griddingmethod::polynomial, "Polynomial regression", true, false},
               {griddingmethod::radialbasis, "Radial basis function", false, true},
               {griddingmethod::shepard, "Shepard", true, true},
               {griddingmethod::triangulation, "Triangulation", true, true}};

table griddings() {
    table found{"Gridding",
                "A plane through sixty points anywhere, at the nodes between them, for the methods that keep "
                "a plane; and a wavy surface at nodes that are points themselves."};
    for (const auto& each : methods) {
        if (each.flat) {
            const regulargrid grid = gridpoints(anywhere(60, plane), nodes, each.method);
            for (int j = 0; j < nodes.rows; ++j)
                for (int i = 0; i < nodes.columns; ++i)
                    if (grid.value(i, j) < blankednode)
                        compare(found, std::string(each.name) + ", a plane", 1e-9,
                                plane(nodes.x(i), nodes.y(j)), grid.value(i, j));
        }
        if (!each.through) continue;
        const scatteredpoints points = onnodes(wave);
        const regulargrid grid = gridpoints(points, nodes, each.method);
        for (std::size_t k = 0; k < points.x.size(); ++k)
            compare(found, std::string(each.name) + ", at the points", 1e-9, points.value[k],
                    grid.value(static_cast<int>(4 * points.x[k]), static_cast<int>(4 * points.y[k])));
    }
    return found;
}

// --- Contours ---

table circles() {
    table found{"Contours of a cone",
                "Lines of equal distance from a point, out of a grid of 101 x 101 nodes 0.2 m apart: each "
                "must be one closed circle. Straight cuts of the cells leave h&sup2; / 8 r, at most 1.3 mm.",
                {"4 m", "6.5 m", "9 m"}};
    regulargrid grid({101, 101, -10, 10, -10, 10});
    for (int j = 0; j < grid.frame.rows; ++j)
        for (int i = 0; i < grid.frame.columns; ++i)
            grid.row(j)[i] = std::hypot(grid.frame.x(i), grid.frame.y(j));
    const std::vector<double> radii = {4, 6.5, 9};
    const auto lines = contourlines(grid, radii);
    for (std::size_t k = 0; k < radii.size(); ++k) {
        compare(found, "Lines", 0, 1, static_cast<double>(lines[k].size()), k);
        const std::vector<contourpoint>& points = lines[k].front().points;
        compare(found, "From end to beginning, m", 0, 0,
                std::hypot(points.front().x - points.back().x, points.front().y - points.back().y), k);
        double around = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            compare(found, "Distance from the middle, m", 1.3e-3, radii[k],
                    std::hypot(points[i].x, points[i].y), k);
            if (i > 0) around += std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
        }
        compare(found, "Length, m", 0.02, 2 * std::numbers::pi * radii[k], around, k);
    }
    return found;
}

} // namespace

subject verifyfield() {
    subject found{"field", "Maps", "The values that maps are drawn of."};
    const session here;
    found.tables.push_back(fields(here));
    found.tables.push_back(griddings());
    found.tables.push_back(circles());
    return found;
}

} // namespace orv::verification

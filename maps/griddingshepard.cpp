// The modified method of Shepard.
#include "maps/griddingshepard.h"

#include "maps/griddingalgebra.h"
#include "maps/griddingneighbours.h"

#include <array>
#include <cmath>

namespace orv {

namespace {

constexpr std::size_t fitted = 13, averaged = 19; // points of a nodal function, and of a node's mean
constexpr double beyondall = 1.1; // R to the distance of the farthest point where none is left out
constexpr std::size_t terms = 5;

// z + c0 dx + c1 dy + c2 dx^2 + c3 dx dy + c4 dy^2 around the point.
using nodalfunction = std::array<double, terms>;

std::array<double, terms> monomials(double dx, double dy) {
    return {dx, dy, dx * dx, dx * dy, dy * dy};
}

// Nearest first; the one that only gives R is taken off.
template <std::size_t most>
struct neighbourhood {
    std::array<std::uint32_t, most + 1> point{};
    std::array<double, most + 1> square{};
    std::size_t count = 0;
    double radius = 0; // R

    neighbourhood(const neighbourtree& tree, double x, double y) {
        count = static_cast<std::size_t>(tree.nearest(x, y, point, square));
        if (count == 0) return;
        radius = std::sqrt(square[count - 1]);
        if (count > most)
            --count;
        else
            radius *= beyondall;
    }
    // The root of the weight.
    double root(std::size_t k) const {
        const double d = std::sqrt(square[k]);
        return (radius - d) / (radius * d);
    }
};

nodalfunction fitnodal(const scatteredpoints& points, const neighbourtree& tree, std::size_t centre) {
    // The point is its own nearest one.
    const neighbourhood<fitted + 1> near(tree, points.x[centre], points.y[centre]);
    const std::size_t others = near.count - 1;
    nodalfunction coefficients{};
    if (others == 0) return coefficients;
    densematrix matrix(static_cast<int>(others), terms);
    std::vector<double> right(others);
    for (std::size_t k = 1; k <= others; ++k) {
        const std::size_t point = near.point[k];
        const double weight = near.root(k) * near.radius;
        const auto row = monomials((points.x[point] - points.x[centre]) / near.radius,
                                   (points.y[point] - points.y[centre]) / near.radius);
        for (std::size_t t = 0; t < terms; ++t)
            matrix(static_cast<int>(k - 1), static_cast<int>(t)) = weight * row[t];
        right[k - 1] = weight * (points.value[point] - points.value[centre]);
    }
    const std::vector<double> solution = leastsquares(matrix, right);
    const auto lengths = monomials(near.radius, near.radius);
    for (std::size_t t = 0; t < terms; ++t) coefficients[t] = solution[t] / lengths[t];
    return coefficients;
}

double valueat(const nodalfunction& function, double value, double dx, double dy) {
    const auto row = monomials(dx, dy);
    for (std::size_t t = 0; t < terms; ++t) value += function[t] * row[t];
    return value;
}

} // namespace

void gridshepard(const scatteredpoints& points, regulargrid& grid) {
    const neighbourtree tree(points.x, points.y);
    std::vector<nodalfunction> nodal;
    for (std::size_t k = 0; k < points.x.size(); ++k) nodal.push_back(fitnodal(points, tree, k));
    for (int j = 0; j < grid.frame.rows; ++j) {
        const double y = grid.frame.y(j);
        double* row = grid.row(j);
        for (int i = 0; i < grid.frame.columns; ++i) {
            const double x = grid.frame.x(i);
            const neighbourhood<averaged> near(tree, x, y);
            if (near.square[0] == 0) {
                row[i] = points.value[near.point[0]];
                continue;
            }
            double sum = 0, weights = 0;
            for (std::size_t k = 0; k < near.count; ++k) {
                const std::size_t p = near.point[k];
                const double root = near.root(k), weight = root * root;
                weights += weight;
                sum += weight * valueat(nodal[p], points.value[p], x - points.x[p], y - points.y[p]);
            }
            row[i] = sum / weights;
        }
    }
}

} // namespace orv

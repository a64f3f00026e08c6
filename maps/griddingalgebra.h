// The decompositions that gridding takes, behind plain functions: this is the one place that knows the
// library of linear algebra.
#pragma once

#include <vector>

namespace orv {

// A dense matrix, column by column.
struct densematrix {
    int rows = 0, columns = 0;
    std::vector<double> cells;

    densematrix(int height, int width)
        : rows(height), columns(width),
          cells(static_cast<std::size_t>(height) * static_cast<std::size_t>(width)) {}
    double* column(int j) {
        return cells.data() + static_cast<std::size_t>(j) * static_cast<std::size_t>(rows);
    }
    double& operator()(int i, int j) { return column(j)[i]; }
};

// The interpolant sum weight(k) kernel(x, x_k) + sum tail(l) basis_l(x) through n given values.
struct interpolant {
    std::vector<double> weight, tail;
};

// Solves it. `kernel` (n x n, symmetric, destroyed) is positive definite on all weights that are orthogonal
// to the columns of `basis` (n x m, m small); where those depend on each other the tail of the smallest norm
// is taken. A kernel that is indefinite by rounding, as points that nearly coincide make it, is stiffened on
// its diagonal as little as needed; the values are then met nearly.
interpolant solveinterpolant(densematrix& kernel, const densematrix& basis,
                             const std::vector<double>& values);

// The x of the smallest norm that minimises |matrix x - values|.
std::vector<double> leastsquares(const densematrix& matrix, const std::vector<double>& values);

} // namespace orv

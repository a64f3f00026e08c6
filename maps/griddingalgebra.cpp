// Dense decompositions by Eigen.
#include "maps/griddingalgebra.h"

#include <Eigen/Dense>

namespace orv {

namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double dependent = 1e-10; // pivots below this share of the largest count as 0
constexpr double firststiffening = 1e-13, laststiffening = 1; // shares of the mean of the diagonal

// Cholesky decomposition of the lower half, stiffened where rounding made the matrix indefinite.
VectorXd solvedefinite(const MatrixXd& matrix, const VectorXd& right) {
    Eigen::LLT<MatrixXd> factor(matrix);
    const double mean = matrix.rows() == 0 ? 0 : matrix.diagonal().cwiseAbs().mean();
    for (double share = firststiffening; factor.info() != Eigen::Success && share <= laststiffening;
         share *= 10)
        factor.compute(matrix + share * mean * MatrixXd::Identity(matrix.rows(), matrix.cols()));
    return factor.solve(right);
}

} // namespace

// With basis = Q R the weights are Q (0, y), so that the lower right block of Q' kernel Q alone decides y,
// and the tail follows from the rows above it (G. E. Fasshauer, Meshfree Approximation Methods with MATLAB,
// 2007, chapter 6 has the system).
interpolant solveinterpolant(densematrix& kernel, const densematrix& basis,
                             const std::vector<double>& values) {
    const int n = kernel.rows, m = basis.columns;
    Eigen::Map<MatrixXd> a(kernel.cells.data(), n, n);
    const Eigen::Map<const MatrixXd> p(basis.cells.data(), n, m);
    Eigen::ColPivHouseholderQR<MatrixXd> qr;
    qr.setThreshold(dependent);
    qr.compute(p);
    const auto q = qr.householderQ();
    a.applyOnTheLeft(q.adjoint());
    a.applyOnTheRight(q);
    VectorXd z = Eigen::Map<const VectorXd>(values.data(), n);
    z.applyOnTheLeft(q.adjoint());

    const Eigen::Index rank = qr.rank(), rest = n - rank;
    VectorXd weight = VectorXd::Zero(n);
    if (rest > 0) weight.tail(rest) = solvedefinite(a.bottomRightCorner(rest, rest), z.tail(rest));
    const VectorXd remainder = z.head(rank) - a.topRightCorner(rank, rest) * weight.tail(rest);
    const MatrixXd r = qr.matrixQR().topRows(rank).template triangularView<Eigen::Upper>();
    const VectorXd tail =
        qr.colsPermutation() * Eigen::CompleteOrthogonalDecomposition<MatrixXd>(r).solve(remainder);
    weight.applyOnTheLeft(q);
    return {{weight.begin(), weight.end()}, {tail.begin(), tail.end()}};
}

std::vector<double> leastsquares(const densematrix& matrix, const std::vector<double>& values) {
    Eigen::CompleteOrthogonalDecomposition<MatrixXd> decomposition;
    decomposition.setThreshold(dependent);
    decomposition.compute(Eigen::Map<const MatrixXd>(matrix.cells.data(), matrix.rows, matrix.columns));
    const VectorXd solution = decomposition.solve(Eigen::Map<const VectorXd>(values.data(), matrix.rows));
    return {solution.begin(), solution.end()};
}

} // namespace orv

// Nearest points by nanoflann.
#include "maps/griddingneighbours.h"

#include <nanoflann.hpp>

namespace orv {

namespace {

// What the library asks of a set of points.
struct pointset {
    const std::vector<double>&x, &y;

    std::size_t kdtree_get_point_count() const { return x.size(); }
    double kdtree_get_pt(std::size_t point, std::size_t axis) const {
        return axis == 0 ? x[point] : y[point];
    }
    template <class box>
    bool kdtree_get_bbox(box&) const {
        return false;
    }
};

using kdtree =
    nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, pointset>, pointset, 2>;

} // namespace

struct neighbourindex {
    pointset points;
    kdtree tree{2, points};
};

neighbourtree::neighbourtree(const std::vector<double>& x, const std::vector<double>& y)
    : index(new neighbourindex{{x, y}}) {}

neighbourtree::~neighbourtree() = default;

int neighbourtree::nearest(double x, double y, std::span<std::uint32_t> point,
                           std::span<double> square) const {
    const double asked[] = {x, y};
    return static_cast<int>(index->tree.knnSearch(asked, point.size(), point.data(), square.data()));
}

} // namespace orv

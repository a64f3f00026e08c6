// The nearest ones among points of a plane.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orv {

struct neighbourindex; // in griddingneighbours.cpp

struct neighbourtree {
    // `x` and `y` stay where they are as long as the tree is used.
    neighbourtree(const std::vector<double>& x, const std::vector<double>& y);
    ~neighbourtree();
    neighbourtree(const neighbourtree&) = delete;
    neighbourtree& operator=(const neighbourtree&) = delete;

    // The nearest points to (x, y), nearest first, into `point` (their numbers from 0) and `square` (of the
    // distance), which have room for as many as are asked for. Returns how many there are.
    int nearest(double x, double y, std::span<std::uint32_t> point, std::span<double> square) const;

private:
    std::unique_ptr<neighbourindex> index;
};

} // namespace orv

// Rectangle, values and levels of a map.
#include "maps/mapfield.h"

#include "base/arithmetic.h"
#include "base/runtimeerror.h"
#include "base/wideloops.h"
#include "maps/blanking.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "scene/camera.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace orv {

namespace {

constexpr double nearest = 0.1;       // m2, the squared distance below which a receiver gains no more weight
constexpr double beyond = 100000;     // m, where the search for the lines' box begins
constexpr std::size_t blocksize = 32; // cells of a column whose sums run side by side
constexpr float outside = 1e6F;       // beyond every value, where the search for the range begins

// The step of the level scale for a range above a limit; the last row that fits holds.
constexpr struct {
    double above, step;
} levelsteps[] = {{0.2, 0.02}, {0.5, 0.05}, {1, 0.1}, {2, 0.2}, {5, 0.5}, {10, 1}, {20, 2}, {50, 5}};
constexpr double smalleststep = 0.01;

struct mapbox {
    double lo1, hi1, lo2, hi2;
};

mapbox roombox() {
    const roommodel& r = RoomModel;
    const picturepoint lo = inplane({wide(r.roomMinX), wide(r.roomMinY), wide(r.roomMinZ)});
    const picturepoint hi = inplane({wide(r.roomMaxX), wide(r.roomMaxY), wide(r.roomMaxZ)});
    return {lo.x, hi.x, lo.y, hi.y};
}

// Takes the box of the blanking lines whose inside is kept instead, where there is one.
void taketolines(mapbox& box) {
    const blankinglines& lines = BlankingLines;
    mapbox found{beyond, -beyond, beyond, -beyond};
    bool any = false;
    for (int i = 1; i <= lines.blanklineCount; ++i) {
        if (lines.blanklineFlag(i) != blankoutside) continue;
        any = true;
        for (int k = 1; k <= static_cast<int>(lines.blanklinePoints(i)); ++k) {
            const double p = wide(lines.blanklineX(i, k)), q = wide(lines.blanklineY(i, k));
            found = {std::min(found.lo1, p), std::max(found.hi1, p), std::min(found.lo2, q),
                     std::max(found.hi2, q)};
        }
    }
    if (any) box = found;
}

struct weightedsums {
    std::array<double, blocksize> weight{}, value{};
};

// Sums for the cells (c1, c2[0]), (c1, c2[1]), .. of a block. The cells run side by side, so that each one's
// sums have the order of the receivers.
ORV_WIDELOOPS
void addreceivers(weightedsums& sums, const double* first, const double* second, const double* value,
                  std::size_t count, double c1, const double* c2) {
    double at[blocksize], weights[blocksize], values[blocksize];
    for (std::size_t k = 0; k < blocksize; ++k) {
        at[k] = c2[k];
        weights[k] = sums.weight[k];
        values[k] = sums.value[k];
    }
    for (std::size_t i = 0; i < count; ++i) {
        const double d1 = first[i] - c1, across = d1 * d1, r2 = second[i], v = value[i];
        for (std::size_t k = 0; k < blocksize; ++k) {
            const double d2 = r2 - at[k];
            double squared = across + d2 * d2;
            squared = squared < nearest ? nearest : squared;
            const double w = 1 / squared;
            weights[k] += w;
            values[k] += w * v;
        }
    }
    for (std::size_t k = 0; k < blocksize; ++k) {
        sums.weight[k] = weights[k];
        sums.value[k] = values[k];
    }
}

} // namespace

maprectangle mapextent() {
    mapbox box = roombox();
    if (SessionState.useBlanking) taketolines(box);
    return {box.lo1,
            box.hi1,
            box.lo2,
            box.hi2,
            quotient(box.hi1 - box.lo1, SessionState.Nx),
            quotient(box.hi2 - box.lo2, SessionState.Ny)};
}

mapreceivers receiversofmap() {
    if (RoomModel.receiverCount < 1)
        throw runtimeerror{errorkind::divisionbyzero, "There are no receivers to take values from."};
    mapreceivers receivers;
    const std::size_t count = static_cast<std::size_t>(RoomModel.receiverCount);
    receivers.first.reserve(count);
    receivers.second.reserve(count);
    receivers.value.reserve(count);
    for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i) {
        const picturepoint place = inplane(
            {wide(RoomModel.receiverX(i)), wide(RoomModel.receiverY(i)), wide(RoomModel.receiverZ(i))});
        receivers.first.push_back(place.x);
        receivers.second.push_back(place.y);
        receivers.value.push_back(parametervalue(i, SessionState.bandIndex));
    }
    return receivers;
}

double fieldvalue(const mapreceivers& receivers, double c1, double c2) {
    double value = 0;
    fieldcolumn(receivers, c1, {&c2, 1}, {&value, 1});
    return value;
}

void fieldcolumn(const mapreceivers& receivers, double c1, std::span<const double> c2,
                 std::span<double> values) {
    for (std::size_t begin = 0; begin < c2.size(); begin += blocksize) {
        // A last block that is not full repeats its last cell.
        std::array<double, blocksize> at{};
        for (std::size_t k = 0; k < blocksize; ++k) at[k] = c2[std::min(begin + k, c2.size() - 1)];
        weightedsums sums;
        addreceivers(sums, receivers.first.data(), receivers.second.data(), receivers.value.data(),
                     receivers.value.size(), c1, at.data());
        for (std::size_t k = 0; k < blocksize && begin + k < c2.size(); ++k)
            values[begin + k] = quotient(sums.value[k], sums.weight[k]);
    }
}

double levelstepfor(double range) {
    double step = smalleststep;
    for (const auto& row : levelsteps)
        if (range > row.above) step = row.step;
    return step;
}

void autorangelevels(const mapreceivers& receivers) {
    sessionstate& s = SessionState;
    s.maxLevel = -outside;
    s.minLevel = outside;
    for (const double v : receivers.value) {
        if (v > wide(s.maxLevel)) s.maxLevel = single(v);
        if (v < wide(s.minLevel)) s.minLevel = single(v);
    }
    // From the stored single, so that a value of 100.1 alone lies on a step.
    s.levelStep = single(levelstepfor(wide(s.maxLevel) - wide(s.minLevel)));
    const double step = wide(s.levelStep);
    s.minLevel = single(Int(wide(s.minLevel) / step) * step);
    s.maxLevel = single(Int((step + wide(s.maxLevel)) / step) * step);
}

double levelindex(double value) {
    const double lowest = wide(SessionState.minLevel), highest = wide(SessionState.maxLevel);
    if (lowest == highest)
        throw runtimeerror{errorkind::divisionbyzero, "The lowest and the highest level are the same."};
    return std::clamp(quotient(255 * (value - lowest), highest - lowest), 0.0, 255.0);
}

} // namespace orv

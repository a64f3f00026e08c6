// The faces that openings belong to.
#include "interchange/attachopenings.h"

#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "room/roommodel.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace orv {

namespace {

constexpr float boxmargin = 0.001F; // m
constexpr float unsetbox = 100000;  // m, where a face's box starts from

using axes = std::array<float, 3>;
struct box {
    axes low, high;
};

constexpr box boxfrom(float low, float high) {
    return {{low, low, low}, {high, high, high}};
}

void extend(box& b, const axes& p) {
    for (std::size_t axis = 0; axis < p.size(); ++axis) {
        b.low[axis] = std::min(b.low[axis], p[axis]);
        b.high[axis] = std::max(b.high[axis], p[axis]);
    }
}

bool holds(const box& outer, const box& inner) {
    for (std::size_t axis = 0; axis < inner.low.size(); ++axis)
        if (outer.low[axis] > inner.low[axis] || outer.high[axis] < inner.high[axis]) return false;
    return true;
}

box facebox(std::int32_t face) {
    box b = boxfrom(unsetbox, -unsetbox);
    for (int v = 1; v <= RoomModel.faceVertexCount(face); ++v)
        extend(b, {RoomModel.faceVertexX(face, v), RoomModel.faceVertexY(face, v),
                   RoomModel.faceVertexZ(face, v)});
    for (float& low : b.low) low -= boxmargin;
    for (float& high : b.high) high += boxmargin;
    return b;
}

// The boxes of all faces in runs of neighbours in space, each run with a box around it and its lowest face,
// so that most runs are passed at one look.
constexpr std::size_t run = 64;
struct placedbox {
    box around;
    std::int32_t face = 0;
};
struct faceboxes {
    std::vector<placedbox> each;
    std::vector<placedbox> ofrun;
};

void arrange(std::span<placedbox> boxes, std::size_t axis) {
    if (boxes.size() <= run) return;
    const std::size_t middle = (boxes.size() / run + 1) / 2 * run;
    std::nth_element(
        boxes.begin(), boxes.begin() + static_cast<std::ptrdiff_t>(middle), boxes.end(),
        [axis](const placedbox& a, const placedbox& b) { return a.around.low[axis] < b.around.low[axis]; });
    arrange(boxes.first(middle), (axis + 1) % 3);
    arrange(boxes.subspan(middle), (axis + 1) % 3);
}

faceboxes boxesof(std::int32_t faces) {
    faceboxes boxes;
    boxes.each.reserve(static_cast<std::size_t>(faces));
    for (std::int32_t face = 1; face <= faces; ++face) boxes.each.push_back({facebox(face), face});
    arrange(boxes.each, 0);
    for (std::size_t i = 0; i < boxes.each.size(); ++i) {
        const placedbox& b = boxes.each[i];
        if (i % run == 0) boxes.ofrun.push_back(b);
        placedbox& around = boxes.ofrun.back();
        extend(around.around, b.around.low);
        extend(around.around, b.around.high);
        around.face = std::min(around.face, b.face);
    }
    return boxes;
}

// The first face whose box holds the other, 0 when none does.
std::int32_t owner(const faceboxes& boxes, const box& opening) {
    constexpr std::int32_t none = std::numeric_limits<std::int32_t>::max();
    std::int32_t first = none;
    for (std::size_t r = 0; r < boxes.ofrun.size(); ++r) {
        if (boxes.ofrun[r].face >= first || !holds(boxes.ofrun[r].around, opening)) continue;
        const std::size_t end = std::min((r + 1) * run, boxes.each.size());
        for (std::size_t i = r * run; i < end; ++i)
            if (boxes.each[i].face < first && holds(boxes.each[i].around, opening))
                first = boxes.each[i].face;
    }
    return first == none ? 0 : first;
}

box openingbox(std::int32_t slot, const auto& count, const auto& x, const auto& y, const auto& z) {
    constexpr float huge = std::numeric_limits<float>::max();
    box b = boxfrom(huge, -huge);
    for (int v = 1; v <= count(slot); ++v) extend(b, {x(slot, v), y(slot, v), z(slot, v)});
    return b;
}

// Notes and logs the owner of a hole or door; returns it as the tables hold it.
std::int16_t attached(const std::string& file, const std::string& what, std::int32_t slot,
                      std::int32_t face) {
    const std::string number = wholetext(slot);
    if (face == 0) {
        logload("No FACE found for " + what + " no. " + number + " !!!");
        return 0;
    }
    if (face > std::numeric_limits<std::int16_t>::max())
        throw runtimeerror{errorkind::overflow, file + ": overflow, face " + std::to_string(face) +
                                                    " cannot have " + what + number +
                                                    ", since only the first 32767 can have one."};
    RoomModel.faceInWall(face) = RoomModel.faceHasOpening(face) = -1;
    logload("Attched " + what + " no." + number + " to FACE no." + wholetext(face));
    return static_cast<std::int16_t>(face);
}

} // namespace

void attachopenings(const roomcounts& counts, const std::string& file) {
    platform::statustext(1, "Attaching doors and holes...");
    roommodel& r = RoomModel;
    const faceboxes boxes = boxesof(counts.holes + counts.doors > 0 ? counts.faces : 0);
    for (std::int32_t hole = 1; hole <= counts.holes; ++hole) {
        const box b = openingbox(hole, r.holeVertexCount, r.holeVertexX, r.holeVertexY, r.holeVertexZ);
        r.holeFace(hole) = attached(file, "HOLE", hole, owner(boxes, b));
    }
    for (std::int32_t door = 1; door <= counts.doors; ++door) {
        const box b = openingbox(door, r.doorVertexCount, r.doorVertexX, r.doorVertexY, r.doorVertexZ);
        r.doorFace(door) = attached(file, "DOOR", door, owner(boxes, b));
    }
}

} // namespace orv

// RayPathSet: the sound paths that a calculation stored beside its result, by receiver.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace orv {

constexpr int pathpoints = 10; // reflection points kept of a path

// One path from a source to a receiver.
struct raypath {
    std::int32_t source = 0;                         // pathSource, an index of RoomModel's sources
    double time = 0;                                 // pathTime, arrival in s
    std::array<float, 13> energy{};                  // pathEnergy, bandIndex 1..12, linear
    std::int32_t pointCount = 0;                     // pathPointCount, 0..10
    std::array<std::int32_t, pathpoints + 1> face{}; // pathFace, points 1..pointCount
    std::array<float, pathpoints + 1> x{}, y{}, z{}; // pathPointX, pathPointY, pathPointZ, m
};

struct raypathset {
    std::vector<std::int32_t> pathCountOf;   // receiver 0..N; entry 0 the sum over all receivers
    std::vector<std::vector<raypath>> paths; // receiver 0..N, path number 1..pathCountOf at index number - 1
};

extern raypathset RayPathSet;

// Sizes the store for receivers 0..RoomModel.receiverCount with one path of zeros each and all counts 0, for
// results that have no ray path file, so that its users need no special case. Clears SessionState.pathsExist.
void dummyredim();

} // namespace orv

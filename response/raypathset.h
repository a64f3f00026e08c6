// RayPathSet: the sound paths that a calculation stored beside its result, by receiver.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace orv {

constexpr int pathpoints = 10; // reflection points kept of a path

// One path from a source to a receiver.
struct raypath {
    std::int32_t source = 0;        // pathSource, an index of RoomModel's sources
    double time = 0;                // pathTime, arrival in s
    std::array<float, 13> energy{}; // pathEnergy, bandIndex 1..12, linear
    std::int32_t pointCount = 0;    // pathPointCount, up to 10; as stated where that is below 0
    std::array<std::int32_t, pathpoints + 1> face{}; // pathFace, points 1..pointCount
    std::array<float, pathpoints + 1> x{}, y{}, z{}; // pathPointX, pathPointY, pathPointZ, m
};

// Lives until the next load of a result. The paths of receivers 1..N are sorted by time. Receiver 0 can have
// some of its own, which no count tells: its count is the sum over the others.
struct raypathset {
    std::vector<std::int32_t> pathCountOf;   // receiver 0..N; entry 0 the sum over receivers 1..N
    std::vector<std::vector<raypath>> paths; // receiver 0..N, path number 1..pathCountOf at index number - 1
};

extern raypathset RayPathSet;

// Empties the store and sizes it for receivers 0..RoomModel.receiverCount, all counts 0, for results that
// have no ray path file, so that its users need no special case. Clears SessionState.pathsExist.
void dummyredim();

// How many paths a receiver 1..N has; 0 for any other.
std::int32_t pathsof(std::int32_t receiver);

// Path 1..pathsof(receiver) of a receiver, or null outside.
const raypath* findpath(std::int32_t receiver, std::int32_t path);

} // namespace orv

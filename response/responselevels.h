// The decibel tables of the response that the impulse response window shows: of every slot, of its decay, of
// every stored path. They are computed from ImpulseResponse and RayPathSet, not taken from ParameterSet.
#pragma once

#include <cstdint>
#include <vector>

namespace orv {

struct raypath;

// Single-precision levels in dB re an energy of 1. Kept until another receiver or band is asked for.
struct responselevels {
    std::int32_t shownReceiver = -1, shownBand = -1; // 0..N and bandIndex 1..12; -1 before the first
    bool withPaths = false;                          // stored paths have been taken out of responseLevel
    std::vector<float> responseLevel;                // slot 0..lastSlot; 0 for an energy of 1 or less
    std::vector<float> schroederLevel; // slot 0..lastSlot; of the energy from there to the end, plus 1
    std::vector<float> pathLevel;      // path 0..pathCount, 0 unused; 0 for an energy of 1 or less
    std::int32_t pathCount = 0;        // of the receiver, 0 without paths
};

extern responselevels ResponseLevels;

// Fills the tables for a receiver (0 is the room) and band, unless they hold just that already. With `paths`
// each stored path's energy is taken out of its slot, so that the levels are what the paths do not explain.
// Returns whether anything was computed. Decay by backward integration (M. R. Schroeder, New method of
// measuring reverberation time, 1965), from 1 and not from 0, which is its floor of 0 dB.
bool computelevels(std::int32_t receiver, std::int32_t band, bool paths);

// Has the tables computed anew the next time, as a load of other responses needs it.
void forgetlevels();

// The slot of a path's arrival, or -1 for a path before or behind the response, which plot and scene leave
// out.
std::int32_t slotofpath(const raypath& path);

// The value of a table at an index; 0 outside it.
float levelat(const std::vector<float>& levels, std::int64_t index);

} // namespace orv

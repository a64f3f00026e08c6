// Room-acoustic parameters from energy responses: the sums of one receiver, its parameters and decay times,
// and the averages over the room.
//
// Everything is computed in double from the stored single-precision energies and rounded once, when it is
// stored in ParameterSet. A step that fails (a division by zero, the logarithm of zero) leaves its target as
// it was.
#pragma once

#include "results/resultset.h"
#include "shell/sessionstate.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace orv {

// Factor between a natural logarithm and decibels, with the digits that all levels share.
constexpr double decibelsperneper = 4.342944819;

// The level in dB of a linear value: 4.342944819 ln(value); 0 for a value of 0. Raises domain for a negative
// one.
double dB(double value);

// What a receiver's slots sum up to, by bandIndex 1..12 (slot 0 of each unused). Times count from the first
// arrival.
struct workingsums {
    using bybandindex = std::array<double, bandcount + 1>;
    bybandindex directEnergy{}; // of the first slot with energy
    bybandindex energyTo50{};   // up to 50 ms
    bybandindex momentEarly{};  // time x energy up to 50 ms, fading out to 100 ms
    bybandindex energyTo80{};   // up to 80 ms
    bybandindex energyFade{};   // 50..100 ms, fading out
    bybandindex energyTotal{};
    bybandindex momentTotal{};                                                    // s
    std::array<std::array<double, modulationcount + 1>, speechbands> mtfSine{};   // band 3..9 as 0..6
    std::array<std::array<double, modulationcount + 1>, speechbands> mtfCosine{}; // frequency 1..14
};

// The energies of a receiver, slots x 12, the band running fastest.
struct energyrows {
    const float* first;
    std::int32_t slots;
    float timeStep; // s
};

// Tables that depend on the slot's offset from the first arrival alone, computed once a load.
struct offsettables {
    float timeStep = 0;
    std::vector<double> cosine[modulationcount + 1]; // frequency 1..14, by offset
    std::vector<double> sine[modulationcount + 1];
};

// Adds all slots of a receiver to `sums` (directEnergy excepted, which the caller has set). Time counts from
// slot 0 and anew from each of `arrivals`, ascending slots: the first arrival, none where nothing arrived, in
// extreme cases more.
void addslots(workingsums& sums, offsettables& tables, const energyrows& rows,
              std::span<const std::int32_t> arrivals);

// Stores the parameters of a receiver (0..100000) from its sums, for bandIndex firstBand..12 without the
// octave bands above lastBand; changes energyTotal as the definitions of C50 and C80 ask. LE, LF and LFC are
// finished here. Definitions: ISO 3382-1 for Leq, C50, C80 and Ts. Raises nothing; an index outside the
// tables stores nothing.
void storeparameters(std::int32_t receiver, workingsums& sums);

// Modulation transfer values of a receiver: sqrt(sine^2 + cosine^2) / energyTotal (M. R. Schroeder,
// Modulation transfer functions: definition and measurement, 1981).
void storemodulation(std::int32_t receiver, const workingsums& sums);

// The decay curve of the band computed last. It outlives bands and receivers: where a point's logarithm
// fails, it keeps the value of the curve before.
struct decaycurve {
    std::vector<float> level; // dB, by slot
    std::vector<double> sums; // backward integrated energy, by slot, of a group of four bands
    std::size_t lane = 0;     // the band's place in its group, 0..3
    std::int32_t filled = 0;  // points 0..filled-1 of `level` are computed from `sums`
};

// Stores EDT, T10, T15, T20 and T30 of a receiver by backward integration (M. R. Schroeder, New method of
// measuring reverberation time, 1965) for every band of storeparameters whose total energy is above 1.
void storedecays(std::int32_t receiver, const workingsums& sums, decaycurve& curve, const energyrows& rows);

// Decay time in s from the straight line through a level curve (regression of ISO 3382-1) between `top` and
// `bottom`, in dB relative to curve[1], the second point. `curve` holds the points 0..n and perhaps more,
// `step` seconds apart. The first point below `bottom` is included; a curve that does not reach it gives 0.
// Leaves the slope in SessionState.decaySlope. Raises subscript for a curve that never falls by `top`,
// overflow beyond 32767 points, and divisionbyzero where no line can be laid; `result` stays then.
void reverb(float& result, double top, double bottom, std::span<const float> curve, std::int32_t n,
            double step);

// Row 0 of ParameterSet: the averages over receivers 1..N as they stand, and LeqLw of every receiver. LE, LF,
// LFC and the modulation transfer have no row 0.
void storeaverages();

// Receiver 0 of ImpulseResponse: the mean of receivers 1..N, added to what stands there.
void addroommean();

} // namespace orv

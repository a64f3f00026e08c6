// Energies that are sums of geometric series over the time slots, and closed forms of their sums.
#pragma once

#include <complex>
#include <span>
#include <vector>

namespace orv::verification {

using real = long double;

// Slots n = 0..slots-1 behind the first arrival hold the sum over the terms of amplitude x ratio ^ n.
struct series {
    struct term {
        real amplitude, ratio;
    };
    std::vector<term> terms;
    int slots = 0;
};

// A term that decays by 60 dB in so many seconds, for slots of `step` s.
series::term decayterm(real amplitude, real seconds, real step);

// The series of all parts together, each times its weight. All have the same number of slots.
series weightedsum(std::span<const series> parts, std::span<const real> weights);

// One slot.
real energy(const series& of, int slot);

// Sums over the slots from..to-1, within those that there are, of the energy, n times and n^2 times it.
real sumof(const series& of, int from, int to);
real firstmoment(const series& of, int from, int to);
real secondmoment(const series& of, int from, int to);

// The sum of energy x exp(-i phase n) over all slots.
std::complex<real> transform(const series& of, real phase);

} // namespace orv::verification

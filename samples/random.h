// A small seeded generator, so that the samples are the same on every machine (the standard library's
// distributions are not).
#pragma once

#include <cstdint>

namespace orv::samples {

struct randomstate {
    std::uint64_t state;
};

// The next 64 bits: a Weyl sequence, its terms mixed (Steele, Lea, Flood: Fast Splittable Pseudorandom
// Number Generators, 2014).
inline std::uint64_t nextbits(randomstate& random) {
    random.state += 0x9E3779B97F4A7C15ULL;
    std::uint64_t bits = random.state;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9ULL;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBULL;
    return bits ^ (bits >> 31);
}

// A number in 0 <= x < 1, with 53 random bits.
inline double nextuniform(randomstate& random) {
    return static_cast<double>(nextbits(random) >> 11) / 9007199254740992.0;
}

// A generator of its own for each pair of indices, so that the order of work does not change the numbers.
inline randomstate branch(std::uint64_t seed, std::uint64_t first, std::uint64_t second) {
    randomstate random{seed ^ (first * 0xD1B54A32D192ED03ULL) ^ (second * 0x8CB92BA72F3D8DD7ULL)};
    nextbits(random);
    return random;
}

} // namespace orv::samples

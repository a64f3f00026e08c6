// The samples of one exported file while sounds are added to them. A sound is a copy of the ten filters
// (export/filterbank.h), each within its window and times the amplitude of its band, added up; it is placed
// in every block and channel, times a directional gain.
//
// Sounds are collected and added many at a time, since samples are read and written far more slowly than they
// are computed: a piece of all channels is kept in the cache while every sound that touches it is added.
#pragma once

#include "export/exportformats.h"
#include "export/filterbank.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orv {

struct exportedsound {
    double time = 0;                             // samples from the start of a block
    std::array<double, octavebands> amplitude{}; // band - 1
    std::array<double, mostchannels> receiver{}; // gain of each channel
    std::array<double, mostblocks> source{};     // gain of each block
};

struct accumulator {
    int channels = 0, blocks = 0;
    std::int32_t blockSamples = 0;
    std::size_t rowLength = 0;  // samples 0..blocks x blockSamples + 8192 of a channel
    std::vector<float> samples; // channel after channel

    std::size_t sounds = 0;                                 // collected
    std::vector<double> times;                              // of each, as above
    std::array<std::vector<float>, octavebands> amplitudes; // of each, by band - 1
    std::vector<float> gains;                               // by sound, block and channel
    std::array<std::vector<float>, octavebands> filters;    // zero outside their windows
    std::vector<float> waves;                               // by sound, with silence at both ends
};

// Samples of zeros, and the filters as FilterBank has them now. Raises memory when the samples would take
// more than three quarters of the machine's.
accumulator createaccumulator(int channels, int blocks, std::int32_t blockSamples);

// Collects a sound; there must be room for it. Its filter tap j goes to the sample of a row that is nearest
// to (block - 1) x blockSamples + time + j, halves to even: where that is a half, every other sample gets two
// taps and the ones between get none. Raises subscript where a tap falls beyond a row.
void collectsound(accumulator& all, const exportedsound& sound);

// Whether there is no room for another sound.
bool isfull(const accumulator& all);

// Adds all collected sounds to the samples. Takes some ten milliseconds at most.
void addsounds(accumulator& all);

} // namespace orv

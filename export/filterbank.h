// The filter bank: ten band-pass impulse responses, of which every sound of an export is made. They are data
// of the data directory, one file for each sample rate, in the form that filterbank.cpp begins with.
#pragma once

#include "shell/sessionstate.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orv {

constexpr int filtertaps = 8192;
constexpr int filtermiddle = 4096; // where the filters have their peak

// The taps that are used of each band's filter, first and last inclusive, at index band - 1. The upper three
// windows are one tap longer than those below them would suggest, which is meant.
constexpr std::array<int, octavebands> bandStart = {0, 0, 2048, 3072, 3584, 3840, 3968, 4032, 4064, 4080};
constexpr std::array<int, octavebands> bandEnd = {8191, 8191, 6143, 5119, 4607, 4351, 4223, 4160, 4128, 4112};

// The file's layout in bytes.
constexpr std::size_t filterdatachunk = 144; // the data chunk, with its samples 8 bytes further on
constexpr std::size_t filterfilesize = filterdatachunk + 8 + sizeof(float) * filtertaps * octavebands;

// Lasts as long as the process: zeros, then what the last good file held.
struct filterbank {
    std::array<float, static_cast<std::size_t>(filtertaps* octavebands)>
        samples{}; // the band running fastest

    // Bands 1..10, taps 0..8191.
    float operator()(int band, int tap) const {
        return samples[static_cast<std::size_t>(tap * octavebands + band - 1)];
    }
};

extern filterbank FilterBank;

// The file's name in the data directory: "Filterbank-44-multi.wav" for 44100 Hz, that of 48 for 48000.
std::string filterbankname(std::int32_t sampleRate);

// Fills FilterBank and adds a line to List1; or shows a message, when the file's header has another number
// of channels than 10 or other bits per sample than 32, and leaves it as it was. Of a file that is too short
// only the taps that it holds are replaced. A file that is not there is made, empty. Raises fileaccess.
void readfilterbank(const std::string& path);

} // namespace orv

// The samples of an export by its definition: one tap of one band of one sound at a time, each rounded to its
// place, in single precision. It follows savewave step by step and draws the same random numbers.
#pragma once

#include "export/encoders.h"
#include "export/exportformats.h"
#include "export/filterbank.h"
#include "export/synthesis.h"
#include "response/raypathset.h"
#include "results/resultset.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orv {

struct plainexport {
    int formatRow = 0;
    std::int32_t sampleRate = 48000;
    double density = 1; // pulses per slot
    std::int32_t requestedSamples = 0;
    double slotsUsed = 0;

    int channels = 0, blocks = 0;
    std::size_t rowLength = 0;
    std::vector<float> samples; // channel after channel
};

inline void addplain(plainexport& plain, int block, int channel, double time, double gain,
                     const double* energies) {
    const double start = static_cast<double>(block - 1) * plain.requestedSamples + time;
    float* const row = plain.samples.data() + static_cast<std::size_t>(channel - 1) * plain.rowLength;
    for (int band = 1; band <= octavebands; ++band) {
        const double a = std::sqrt(std::fabs(energies[band - 1])) * gain;
        const auto at = static_cast<std::size_t>(band - 1);
        for (int j = bandStart[at]; j <= bandEnd[at]; ++j) {
            float& sample = row[static_cast<std::size_t>(std::nearbyint(j + start))];
            sample = static_cast<float>(static_cast<double>(sample) +
                                        static_cast<double>(FilterBank(band, j)) * a);
        }
    }
}

inline direction plaindirection() {
    for (;;) {
        const double x = 2 * nextuniform() - 1, y = 2 * nextuniform() - 1, z = 2 * nextuniform() - 1;
        const double length = std::sqrt(x * x + y * y + z * z);
        if (length <= 1) return {x / length, y / length, z / length};
    }
}

inline void beginplain(plainexport& plain) {
    const exportformat& format = exportformats[static_cast<std::size_t>(plain.formatRow)];
    plain.channels = format.channels;
    plain.blocks = format.blocks;
    plain.rowLength = static_cast<std::size_t>(plain.requestedSamples * format.blocks + 8193);
    plain.samples.assign(plain.rowLength * static_cast<std::size_t>(plain.channels), 0.0F);
}

// The paths of a receiver, then its pulses. Needs the filter bank loaded.
inline void renderplain(plainexport& plain, std::int32_t receiver) {
    beginplain(plain);
    std::vector<float> left(static_cast<std::size_t>(std::nearbyint(plain.slotsUsed) + 1) * octavebands);
    for (int t = 0; t <= plain.slotsUsed - 1; ++t)
        for (int band = 1; band <= octavebands; ++band)
            left[static_cast<std::size_t>(t * octavebands + band - 1)] = ImpulseResponse(t, band, receiver);
    const auto step = static_cast<double>(ResultSet.timeStep);
    double energies[octavebands];
    for (std::int32_t ray = 1; ray <= pathsof(receiver); ++ray) {
        const raypath& path = *findpath(receiver, ray);
        for (std::size_t i = 0; i < octavebands; ++i) energies[i] = static_cast<double>(path.energy[i + 1]);
        for (int k = 1; k <= plain.blocks; ++k)
            for (int c = 1; c <= plain.channels; ++c)
                addplain(plain, k, c, path.time * plain.sampleRate,
                         raygain(k, c, receiver, ray, plain.formatRow), energies);
        const auto slot = static_cast<std::size_t>(std::floor(path.time / step));
        for (std::size_t i = 0; i < octavebands; ++i) left[slot * octavebands + i] -= path.energy[i + 1];
    }
    for (int t = 0; t <= plain.slotsUsed - 1; ++t)
        for (int pulse = 1; pulse <= plain.density; ++pulse) {
            const double time = plain.sampleRate * step * (t + nextuniform());
            const direction r = plaindirection();
            const direction s = plaindirection();
            for (std::size_t i = 0; i < octavebands; ++i)
                energies[i] =
                    static_cast<double>(left[static_cast<std::size_t>(t) * octavebands + i]) / plain.density;
            for (int k = 1; k <= plain.blocks; ++k)
                for (int c = 1; c <= plain.channels; ++c)
                    addplain(plain, k, c, time,
                             encodegain(s.x, s.y, s.z, r.x, r.y, r.z, plain.formatRow, k, c), energies);
        }
}

// A sample of the file: channel from 1, frame from 0.
inline float plainsample(const plainexport& plain, int channel, std::size_t frame) {
    return plain.samples[static_cast<std::size_t>(channel - 1) * plain.rowLength + frame + 4096] / 50000;
}

} // namespace orv

// The octave filters that ship with the program.
#include "data/filterbankdesign.h"

#include "base/files.h"
#include "export/filterbank.h"
#include "export/wavfile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string_view>

namespace orv {

namespace {

constexpr double windowshape = 4.53; // by Kaiser's formula for 50 dB in the stop band
constexpr double lowestedge = 16; // Hz; an octave filter begins at 22.4 Hz, and this one is whole from 25 Hz
constexpr std::string_view remark =
    "Octave band filters 31.5 Hz - 16 kHz, one to a channel; linear phase about sample 4096";

constexpr std::size_t slot(int band) {
    return static_cast<std::size_t>(band - 1);
}

// The edge between a band and the next, in Hz; 1000 Hz is the middle of band 6.
double upperedge(int band) {
    return 1000 * std::pow(10, 0.3 * (band + 0.5 - 6));
}

// How far a band's window reaches to both sides of the middle tap.
int reach(int band) {
    return std::min(filtermiddle - bandStart[slot(band)], bandEnd[slot(band)] - filtermiddle);
}

using taps = std::vector<double>;

// Pass band up to `edge` in Hz, half the amplitude there, `reach` taps on both sides of the middle.
taps lowpass(double edge, int reach, std::int32_t sampleRate) {
    taps filter(filtertaps, 0.0);
    double sum = 0;
    for (int n = -reach; n <= reach; ++n) {
        const double phase = 2 * std::numbers::pi * edge / sampleRate * n;
        const double place = static_cast<double>(n) / (reach + 1);
        double& tap = filter[static_cast<std::size_t>(filtermiddle + n)];
        tap = (n == 0 ? 1 : std::sin(phase) / phase) *
              std::cyl_bessel_i(0, windowshape * std::sqrt(1 - place * place));
        sum += tap;
    }
    for (double& tap : filter) tap /= sum;
    return filter;
}

taps unitimpulse() {
    taps filter(filtertaps, 0.0);
    filter[filtermiddle] = 1;
    return filter;
}

} // namespace

filterdesign designfilters(std::int32_t sampleRate) {
    filterdesign filters;
    taps below = lowpass(lowestedge, reach(1), sampleRate);
    for (int band = 1; band <= octavebands; ++band) {
        const taps upto =
            band == octavebands ? unitimpulse() : lowpass(upperedge(band), reach(band + 1), sampleRate);
        std::vector<float>& filter = filters[slot(band)];
        for (std::size_t j = 0; j < upto.size(); ++j)
            filter.push_back(static_cast<float>(upto[j] - below[j]));
        below = upto;
    }
    return filters;
}

std::string filterbankbytes(const filterdesign& filters, std::int32_t sampleRate) {
    std::string bytes = "RIFF";
    appendlittle(bytes, filterfilesize - 8, 4);
    bytes += waveformat(octavebands, sampleRate);
    bytes += "LIST";
    appendlittle(bytes, static_cast<std::uint32_t>(filterdatachunk - bytes.size() - 4), 4);
    bytes += "INFOICMT";
    appendlittle(bytes, static_cast<std::uint32_t>(filterdatachunk - bytes.size() - 4), 4);
    bytes += remark;
    bytes.resize(filterdatachunk);
    bytes += "data";
    appendlittle(bytes, filterfilesize - filterdatachunk - 8, 4);
    for (std::size_t j = 0; j < filtertaps; ++j)
        for (const std::vector<float>& filter : filters)
            appendlittle(bytes, std::bit_cast<std::uint32_t>(filter[j]), 4);
    return bytes;
}

void writefilterbanks(const std::string& directory) {
    for (const std::int32_t sampleRate : {44100, 48000})
        replacefile(joinpath(directory, filterbankname(sampleRate)),
                    filterbankbytes(designfilters(sampleRate), sampleRate));
}

} // namespace orv

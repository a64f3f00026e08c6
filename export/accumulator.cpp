// The samples of one exported file while sounds are added to them.
#include "export/accumulator.h"

#include "base/runtimeerror.h"
#include "base/table.h"
#include "base/wideloops.h"
#include "platform/platform.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace orv {

namespace {

constexpr std::size_t mostsounds = 64;             // collected at a time
constexpr std::size_t wavelength = filtertaps + 1; // one more, since a folded wave is longer
constexpr std::size_t wavestride = filtertaps + 16;
constexpr std::size_t piecesamples = 8192; // of all channels, 32 kB

constexpr std::size_t slot(int number) {
    return static_cast<std::size_t>(number - 1);
}

// --- Waves ---

ORV_WIDELOOPS
void scalefilter(float* __restrict wave, const float* __restrict filter, float amplitude, std::size_t count) {
    for (std::size_t j = 0; j < count; ++j) wave[j] = filter[j] * amplitude;
}

ORV_WIDELOOPS
void addfilter(float* __restrict wave, const float* __restrict filter, float amplitude, std::size_t count) {
    for (std::size_t j = 0; j < count; ++j) wave[j] += filter[j] * amplitude;
}

// The ten bands of a sound as one wave: they share its time and direction.
void mixbands(const accumulator& all, const exportedsound& sound, float* wave) {
    static_assert(bandStart[0] == 0 && bandEnd[0] == filtertaps - 1, "the lowest band covers the wave");
    scalefilter(wave, all.filters[0].data(), static_cast<float>(sound.amplitude[0]), filtertaps);
    for (int band = 2; band <= octavebands; ++band) {
        const std::vector<float>& filter = all.filters[slot(band)];
        addfilter(wave + bandStart[slot(band)], filter.data(),
                  static_cast<float>(sound.amplitude[slot(band)]), filter.size());
    }
}

// The wave of a start between two samples, the lower of which is even or odd: pairs of taps fall on the even
// samples.
std::vector<float> foldwave(const float* wave, bool odd) {
    std::vector<float> folded(wavelength, 0.0F);
    for (std::size_t j = 0; j < filtertaps; ++j) folded[odd ? j / 2 * 2 : (j + 1) / 2 * 2] += wave[j];
    return folded;
}

// --- Places ---

// The forms of a sound's wave: as it is, and folded as they are needed.
struct waveforms {
    const float* plain;
    const float* folded[2] = {nullptr, nullptr};
};

accumulator::placement placewave(accumulator& all, waveforms& forms, double start) {
    const double below = std::floor(start);
    if (start - below != 0.5) return {forms.plain, std::llrint(start)};
    const bool odd = std::fmod(below, 2) != 0;
    if (!forms.folded[odd]) forms.folded[odd] = all.folded.emplace_back(foldwave(forms.plain, odd)).data();
    return {forms.folded[odd], std::llrint(start)};
}

void checkplace(const accumulator& all, double start) {
    const double last = std::nearbyint(start + filtertaps - 1);
    if (!(std::nearbyint(start) >= 0 && last < static_cast<double>(all.rowLength)))
        throw runtimeerror{errorkind::subscript, "its samples do not all lie within the file"};
}

// --- Adding ---

// Adds a wave to the same samples of every channel, times the channel's gain.
ORV_WIDELOOPS
void addwave(float* __restrict piece, std::size_t stride, const float* __restrict wave, std::size_t count,
             const float* __restrict gain, int channels) {
    for (int c = 0; c < channels; ++c, piece += stride) {
        const float factor = gain[c];
        for (std::size_t i = 0; i < count; ++i) piece[i] += wave[i] * factor;
    }
}

ORV_WIDELOOPS
void addsamples(float* __restrict to, const float* __restrict from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) to[i] += from[i];
}

// Adds what all collected sounds have in a block to samples from..from + count - 1 of every row.
void addpiece(accumulator& all, std::size_t block, std::int64_t from, std::size_t count) {
    std::fill(all.piece.begin(), all.piece.end(), 0.0F);
    const auto blocks = static_cast<std::size_t>(all.blocks),
               channels = static_cast<std::size_t>(all.channels);
    const std::int64_t to = from + static_cast<std::int64_t>(count);
    for (std::size_t sound = 0; sound < all.sounds; ++sound) {
        const std::size_t at = sound * blocks + block;
        const accumulator::placement& placed = all.placements[at];
        const std::int64_t begin = std::max(from, placed.first);
        const std::int64_t end = std::min(to, placed.first + static_cast<std::int64_t>(wavelength));
        if (begin >= end) continue;
        addwave(all.piece.data() + (begin - from), count, placed.wave + (begin - placed.first),
                static_cast<std::size_t>(end - begin), all.gains.data() + at * channels, all.channels);
    }
    for (std::size_t c = 0; c < channels; ++c)
        addsamples(all.samples.data() + c * all.rowLength + from, all.piece.data() + c * count, count);
}

} // namespace

accumulator createaccumulator(int channels, int blocks, std::int32_t blockSamples) {
    accumulator all;
    all.channels = channels;
    all.blocks = blocks;
    all.blockSamples = blockSamples;
    const auto rows = static_cast<std::size_t>(channels), copies = static_cast<std::size_t>(blocks);
    all.rowLength = copies * static_cast<std::size_t>(blockSamples) + filtertaps + 1;
    if (all.rowLength * rows * sizeof(float) > platform::memorybytes() / 4 * 3)
        throw runtimeerror{errorkind::memory, "There is no room for " + std::to_string(all.rowLength * rows) +
                                                  " samples in the machine's memory."};
    all.samples.resize(all.rowLength * rows);
    for (int band = 1; band <= octavebands; ++band)
        for (int j = bandStart[slot(band)]; j <= bandEnd[slot(band)]; ++j)
            all.filters[slot(band)].push_back(FilterBank(band, j));
    all.waves.resize(mostsounds * wavestride);
    all.placements.resize(mostsounds * copies);
    all.gains.resize(mostsounds * copies * rows);
    all.piece.resize(piecesamples / rows * rows);
    return all;
}

void collectsound(accumulator& all, const exportedsound& sound) {
    const auto blocks = static_cast<std::size_t>(all.blocks),
               channels = static_cast<std::size_t>(all.channels);
    const auto startof = [&](std::size_t block) {
        return static_cast<double>(block) * all.blockSamples + sound.time;
    };
    for (std::size_t block = 0; block < blocks; ++block) checkplace(all, startof(block));
    float* const wave = all.waves.data() + all.sounds * wavestride;
    mixbands(all, sound, wave);
    waveforms forms{wave};
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::size_t at = all.sounds * blocks + block;
        all.placements[at] = placewave(all, forms, startof(block));
        for (std::size_t c = 0; c < channels; ++c)
            all.gains[at * channels + c] = static_cast<float>(sound.receiver[c] * sound.source[block]);
    }
    ++all.sounds;
}

bool isfull(const accumulator& all) {
    return all.sounds == mostsounds;
}

void addsounds(accumulator& all) {
    // The same range of every block; the starts of a sound in the blocks differ by their rounding.
    std::int64_t lowest = std::numeric_limits<std::int64_t>::max(), highest = 0;
    const auto blocks = static_cast<std::size_t>(all.blocks);
    for (std::size_t at = 0; at < all.sounds * blocks; ++at) {
        const std::int64_t first =
            all.placements[at].first - static_cast<std::int64_t>(at % blocks) * all.blockSamples;
        lowest = std::min(lowest, first);
        highest = std::max(highest, first + static_cast<std::int64_t>(wavelength));
    }
    const std::size_t step = all.piece.size() / static_cast<std::size_t>(all.channels);
    for (std::int64_t from = lowest; from < highest; from += static_cast<std::int64_t>(step))
        for (std::size_t block = 0; block < blocks; ++block) {
            const std::int64_t place = from + static_cast<std::int64_t>(block) * all.blockSamples;
            const std::int64_t left = static_cast<std::int64_t>(all.rowLength) - place;
            if (left <= 0) continue;
            addpiece(all, block, place,
                     std::min(step, static_cast<std::size_t>(std::min(left, highest - from))));
        }
    all.sounds = 0;
    all.folded.clear();
}

} // namespace orv

// The samples of one exported file while sounds are added to them.
#include "export/accumulator.h"

#include "base/runtimeerror.h"
#include "base/wideloops.h"
#include "platform/platform.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <string>

namespace orv {

namespace {

constexpr std::size_t mostsounds = 32;     // collected at a time
constexpr std::size_t piecesamples = 8192; // of all channels, 32 kB
constexpr std::size_t longestpiece = 512;  // of one channel
constexpr std::size_t mixedpiece = 256;    // of the waves
constexpr std::size_t lanes = 16;          // of the widest vectors
constexpr std::size_t together = 4;        // waves that are added at a time

// A wave is as long as the filters and one sample more, since a folded one is; a piece may begin before it
// and end behind it. Waves do not lie a power of two apart, which would crowd them in the cache.
constexpr std::size_t wavelength = filtertaps + 1;
constexpr std::size_t wavestride = longestpiece + filtertaps + longestpiece + 11 * lanes;

// The samples 0..count - 1 of some rows, which lie `stride` apart.
struct sampleblock {
    float* rows;
    std::size_t stride, rowcount, count;
};

// A few waves, each with its gain for every row.
struct wavegroup {
    std::size_t size = 0;
    const float* wave[together] = {};
    const float* gain[together] = {};
};

// Adds waves to the rows r..r + rowcount - 1, or sets these to their sum. Rows go together, so that a sample
// of a wave is read once for all of them.
template <std::size_t waves, std::size_t rowcount, bool fresh>
[[gnu::always_inline]] inline void addtorows(const sampleblock& to, std::size_t r, const wavegroup& group) {
    float gain[waves][rowcount];
    const float* wave[waves];
    for (std::size_t k = 0; k < waves; ++k) {
        wave[k] = group.wave[k];
        for (std::size_t i = 0; i < rowcount; ++i) gain[k][i] = group.gain[k][r + i];
    }
    const std::size_t stride = to.stride, count = to.count;
    float* const first = to.rows + r * stride;
    for (std::size_t j = 0; j < count; ++j)
        for (std::size_t i = 0; i < rowcount; ++i) {
            float sum = wave[0][j] * gain[0][i];
            for (std::size_t k = 1; k < waves; ++k) sum += wave[k][j] * gain[k][i];
            float& sample = first[i * stride + j];
            sample = fresh ? sum : sample + sum;
        }
}

template <std::size_t waves, bool fresh>
[[gnu::always_inline]] inline void addwaves(const sampleblock& to, const wavegroup& group) {
    std::size_t r = 0;
    for (; r + 2 <= to.rowcount; r += 2) addtorows<waves, 2, fresh>(to, r, group);
    if (r < to.rowcount) addtorows<waves, 1, fresh>(to, r, group);
}

template <bool fresh>
[[gnu::always_inline]] inline void addgroup(const sampleblock& to, const wavegroup& group) {
    switch (group.size) {
    case 1:
        return addwaves<1, fresh>(to, group);
    case 2:
        return addwaves<2, fresh>(to, group);
    case 3:
        return addwaves<3, fresh>(to, group);
    default:
        return addwaves<together, fresh>(to, group);
    }
}

ORV_WIDELOOPS
void setrows(const sampleblock& to, const wavegroup& group) {
    addgroup<true>(to, group);
}

ORV_WIDELOOPS
void addrows(const sampleblock& to, const wavegroup& group) {
    addgroup<false>(to, group);
}

// Takes waves one by one and adds them by groups; the first group sets the rows.
struct wavequeue {
    sampleblock to;
    wavegroup group{};
    bool fresh = true;

    void add(const float* wave, const float* gain) {
        group.wave[group.size] = wave;
        group.gain[group.size] = gain;
        if (++group.size == together) flush();
    }
    void flush() {
        if (group.size == 0) return;
        (fresh ? setrows : addrows)(to, group);
        fresh = false;
        group.size = 0;
    }
};

ORV_WIDELOOPS
void addsamples(float* __restrict to, const float* __restrict from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) to[i] += from[i];
}

// --- Waves ---

const float* filterof(const accumulator& all, std::size_t band) {
    return all.filters[band].data() + longestpiece;
}

float* waveof(accumulator& all, std::size_t sound) {
    return all.waves.data() + sound * wavestride + longestpiece;
}

// The ten bands of every sound as one wave each: they share time and direction.
void mixwaves(accumulator& all) {
    for (std::size_t from = 0; from < filtertaps; from += mixedpiece) {
        wavequeue queue{{waveof(all, 0) + from, wavestride, all.sounds, mixedpiece}};
        for (std::size_t band = 0; band < octavebands; ++band)
            if (from + mixedpiece > static_cast<std::size_t>(bandStart[band]) &&
                from <= static_cast<std::size_t>(bandEnd[band]))
                queue.add(filterof(all, band) + from, all.amplitudes[band].data());
        queue.flush();
    }
}

// The wave of a start between two samples, the lower of which is even or odd: pairs of taps fall on the even
// samples.
std::vector<float> foldwave(const float* wave, bool odd) {
    std::vector<float> folded(wavestride, 0.0F);
    for (std::size_t j = 0; j < filtertaps; ++j)
        folded[longestpiece + (odd ? j / 2 * 2 : (j + 1) / 2 * 2)] += wave[j];
    return folded;
}

// --- Places ---

// A sound's wave in a block: at samples first..first + 8192 of every row. Without a wave it is the ten
// filters one by one.
struct placement {
    const float* wave = nullptr;
    std::int64_t first = 0;
};

bool ishalf(double start) {
    return start - std::floor(start) == 0.5;
}

// Whether a sound comes once only, so that a wave of its own would not pay.
bool issingle(const accumulator& all) {
    return all.channels == 1 && all.blocks == 1;
}

// By sound and block; the folded waves belong to it.
struct placements {
    std::vector<placement> placed;
    std::deque<std::vector<float>> folded;
};

double startof(const accumulator& all, double time, std::size_t block) {
    return static_cast<double>(block) * all.blockSamples + time;
}

placements placewaves(accumulator& all) {
    const bool single = issingle(all);
    const auto end = all.times.begin() + static_cast<std::ptrdiff_t>(all.sounds);
    if (!single || std::any_of(all.times.begin(), end, ishalf)) mixwaves(all);
    placements made;
    for (std::size_t sound = 0; sound < all.sounds; ++sound) {
        const float* const plain = waveof(all, sound);
        const float* folded[2] = {nullptr, nullptr};
        for (std::size_t block = 0; block < static_cast<std::size_t>(all.blocks); ++block) {
            const double start = startof(all, all.times[sound], block);
            const float* wave = single ? nullptr : plain;
            if (ishalf(start)) {
                const bool odd = std::fmod(std::floor(start), 2) != 0;
                if (!folded[odd])
                    folded[odd] = made.folded.emplace_back(foldwave(plain, odd)).data() + longestpiece;
                wave = folded[odd];
            }
            made.placed.push_back({wave, std::llrint(start)});
        }
    }
    return made;
}

// --- Adding ---

// Samples from..from + length - 1 of all channels while waves are added to them.
struct alignas(64) piece {
    std::array<float, piecesamples> samples;
};

// The taps of every filter from `from` on.
void addfilters(wavequeue& queue, const accumulator& all, std::size_t sound, std::int64_t from) {
    for (std::size_t band = 0; band < octavebands; ++band)
        if (from + static_cast<std::int64_t>(queue.to.count) > bandStart[band] && from <= bandEnd[band])
            queue.add(filterof(all, band) + from, &all.amplitudes[band][sound]);
}

// Adds what all collected sounds have in a block to `count` samples of every row from `from` on.
void addpiece(accumulator& all, const placements& made, std::size_t block, std::int64_t from,
              std::size_t length, std::size_t count) {
    static piece here;
    const auto blocks = static_cast<std::size_t>(all.blocks),
               channels = static_cast<std::size_t>(all.channels);
    wavequeue queue{{here.samples.data(), length, channels, length}};
    for (std::size_t at = block; at < made.placed.size(); at += blocks) {
        const std::int64_t into = from - made.placed[at].first;
        if (into <= -static_cast<std::int64_t>(length) || into >= static_cast<std::int64_t>(wavelength))
            continue;
        if (made.placed[at].wave)
            queue.add(made.placed[at].wave + into, all.gains.data() + at * channels);
        else
            addfilters(queue, all, at, into);
    }
    queue.flush();
    if (queue.fresh) return;
    for (std::size_t c = 0; c < channels; ++c)
        addsamples(all.samples.data() + c * all.rowLength + static_cast<std::size_t>(from),
                   here.samples.data() + c * length, count);
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
    for (std::size_t band = 0; band < octavebands; ++band) {
        all.filters[band].resize(wavestride);
        for (int j = bandStart[band]; j <= bandEnd[band]; ++j)
            all.filters[band][longestpiece + static_cast<std::size_t>(j)] =
                FilterBank(static_cast<int>(band) + 1, j);
        all.amplitudes[band].resize(mostsounds);
    }
    all.times.resize(mostsounds);
    all.gains.resize(mostsounds * copies * rows);
    all.waves.resize(mostsounds * wavestride);
    return all;
}

void collectsound(accumulator& all, const exportedsound& sound) {
    const auto blocks = static_cast<std::size_t>(all.blocks),
               channels = static_cast<std::size_t>(all.channels);
    for (std::size_t block = 0; block < blocks; ++block) {
        const double start = startof(all, sound.time, block);
        if (!(std::nearbyint(start) >= 0 &&
              std::nearbyint(start + filtertaps - 1) < static_cast<double>(all.rowLength)))
            throw runtimeerror{errorkind::subscript, "its samples do not all lie within the file"};
    }
    all.times[all.sounds] = sound.time;
    const double only = issingle(all) ? sound.receiver[0] * sound.source[0] : 1;
    for (std::size_t band = 0; band < octavebands; ++band)
        all.amplitudes[band][all.sounds] = static_cast<float>(sound.amplitude[band] * only);
    float* gain = all.gains.data() + all.sounds * blocks * channels;
    for (std::size_t block = 0; block < blocks; ++block)
        for (std::size_t c = 0; c < channels; ++c)
            *gain++ = static_cast<float>(sound.receiver[c] * sound.source[block]);
    ++all.sounds;
}

bool isfull(const accumulator& all) {
    return all.sounds == mostsounds;
}

void addsounds(accumulator& all) {
    const placements made = placewaves(all);
    // The same range of every block; the starts of a sound in the blocks differ by their rounding.
    std::int64_t lowest = std::numeric_limits<std::int64_t>::max(), highest = 0;
    const auto blocks = static_cast<std::size_t>(all.blocks);
    for (std::size_t at = 0; at < made.placed.size(); ++at) {
        const std::int64_t first =
            made.placed[at].first - static_cast<std::int64_t>(at % blocks) * all.blockSamples;
        lowest = std::min(lowest, first);
        highest = std::max(highest, first + static_cast<std::int64_t>(wavelength));
    }
    const std::size_t share = piecesamples / static_cast<std::size_t>(all.channels) / lanes * lanes;
    const std::size_t length = std::min(share, longestpiece);
    for (std::int64_t from = lowest; from < highest; from += static_cast<std::int64_t>(length))
        for (std::size_t block = 0; block < blocks; ++block) {
            const std::int64_t place = from + static_cast<std::int64_t>(block) * all.blockSamples;
            const std::int64_t left = static_cast<std::int64_t>(all.rowLength) - place;
            if (left > 0)
                addpiece(all, made, block, place, length, std::min(length, static_cast<std::size_t>(left)));
        }
    all.sounds = 0;
}

} // namespace orv

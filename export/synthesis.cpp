// The synthesis of impulse responses.
#include "export/synthesis.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/formatpattern.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "base/table.h"
#include "export/accumulator.h"
#include "export/encoders.h"
#include "export/exportformats.h"
#include "export/filterbank.h"
#include "export/wavfile.h"
#include "platform/platform.h"
#include "response/raypathset.h"
#include "results/parameterset.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace orv {

namespace {

constexpr float fullscale = 50000; // what a sample is divided by: 94 dB is full scale
constexpr std::size_t writtenframes = 4096;
constexpr const char* rmsfield = "#########."; // of a value that is never measured: nothing is shown

std::mt19937_64 stream;

std::size_t slot(int number) {
    return static_cast<std::size_t>(number - 1);
}

// What is the same for all receivers of an export.
struct exportjob {
    std::int32_t first = 0, last = 0; // receivers
    int formatRow = 0;
    std::string formatText;
    int channels = 0, blocks = 0;
    std::int32_t sampleRate = 0;
    double pulsesPerSlot = 0;
    double slotsUsed = 0; // a fraction where the length was shortened
    std::int64_t totalSamples = 0;
};

// Energies of the slots 0..round(slotsUsed) and ten bands that are still to be rendered.
struct residual {
    std::int32_t highest;
    std::vector<float> energy;

    float& operator()(double asked, int band) {
        if (!(asked >= 0 && asked <= highest))
            subscriptfailure("residualEnergy", static_cast<long long>(asked), 0, highest);
        return energy[static_cast<std::size_t>(asked) * octavebands + slot(band)];
    }
};

void log(const std::string& text) {
    platform::addrow("List1", text, true);
}

// The first lines of a file's log do not take the selection.
void logfirst(const std::string& text) {
    platform::addrow("List1", text, false);
}

bool stopped() {
    return !platform::isenabled("StopExport");
}

// --- Set-up ---

double slotlength() {
    return static_cast<double>(ResultSet.timeStep);
}

void readreceivers(exportjob& job) {
    job.first = job.last = whole32(lenientnumber(platform::gettext("RecNo")));
    if (job.first != 0) return;
    job.first = 1; // "All"
    job.last = RoomModel.receiverCount;
}

// The length of a block, not beyond that of the response. The response's last slot is not rendered; meant.
void setlength(exportjob& job) {
    std::int32_t& requested = SessionState.requestedSamples;
    const std::int32_t full = whole32(ResultSet.lastSlot * slotlength() * job.sampleRate);
    job.slotsUsed = ResultSet.lastSlot;
    if (requested >= full)
        requested = full;
    else
        job.slotsUsed = quotient(quotient(requested, slotlength()), job.sampleRate);
    if (requested < 0)
        throw runtimeerror{errorkind::subscript,
                           "A response of" + wholetext(requested) + " samples cannot be exported."};
    job.totalSamples = std::int64_t{requested} * job.blocks;
    wavfilelength(job.channels, job.totalSamples); // fails before the work and not after it
}

exportjob readjob() {
    exportjob job;
    readreceivers(job);
    job.pulsesPerSlot = Int(slotlength() * 1000 + 0.5) * lenientnumber(platform::gettext("Density"));
    job.sampleRate = platform::ischosen("f48") ? 48000 : 44100;
    job.formatText = platform::gettext("Outformat");
    job.formatRow = exportformatof(job.formatText);
    const exportformat& format = exportformats[static_cast<std::size_t>(job.formatRow)];
    job.channels = format.channels;
    job.blocks = format.blocks;
    setlength(job);
    return job;
}

// The radix without its extension, the result's extension, format, receiver and ".wav". A receiver has three
// digits, so that 1001 has the name of 1; meant.
std::string wavname(const exportjob& job, std::int32_t receiver) {
    constexpr int extension = 4, resultextension = 3;
    std::string name, result = SessionState.resultFileName;
    attempt([&] { name = withoutlast(SessionState.fileRadix, extension); }); // a shorter one gives nothing
    attempt([&] { result = result.substr(withoutlast(result, resultextension).size()); });
    const std::string number = "000" + trimmedwhole(receiver);
    return name + result + "_" + job.formatText + "_" + number.substr(number.size() - 3) + ".wav";
}

residual copyresponse(const exportjob& job, std::int32_t receiver) {
    residual left{whole32(job.slotsUsed), {}};
    left.energy.resize((static_cast<std::size_t>(left.highest) + 1) * octavebands);
    for (std::int32_t t = 0; t <= job.slotsUsed - 1; ++t)
        for (int band = 1; band <= octavebands; ++band) left(t, band) = ImpulseResponse(t, band, receiver);
    return left;
}

// --- Sounds ---

void setgains(exportedsound& sound, const exportjob& job, const pathdirections& path) {
    for (int c = 1; c <= job.channels; ++c)
        sound.receiver[slot(c)] = receivergain(path.receiver, job.formatRow, c);
    for (int k = 1; k <= job.blocks; ++k) sound.source[slot(k)] = sourcegain(path.source, job.formatRow, k);
}

double energyof(const raypath& path, int band) {
    return static_cast<double>(path.energy[static_cast<std::size_t>(band)]);
}

exportedsound pathsound(const raypath& path, const exportjob& job, std::int32_t receiver, std::int32_t ray) {
    exportedsound sound;
    sound.time = path.time * job.sampleRate;
    for (int band = 1; band <= octavebands; ++band)
        sound.amplitude[slot(band)] = squareroot(energyof(path, band));
    // The omnidirectional format does not look at the path, which may have no direction.
    setgains(sound, job, job.formatRow == 0 ? pathdirections{} : directionsof(receiver, ray));
    return sound;
}

// A path's sound, and its energy taken out of its slot; the slot's energy may fall below 0.
void renderpath(accumulator& all, residual& left, const raypath& path, const exportedsound& sound) {
    if (isfull(all)) addsounds(all);
    collectsound(all, sound);
    const double place = Int(quotient(path.time, slotlength()));
    for (int band = 1; band <= octavebands; ++band) {
        float& energy = left(place, band);
        energy = single(static_cast<double>(energy) - energyof(path, band));
    }
}

void directionalfield(accumulator& all, residual& left, const exportjob& job, std::int32_t receiver) {
    log("Exporting directional field...");
    const std::int32_t count = pathsof(receiver);
    for (std::int32_t ray = 1; ray <= count; ++ray) {
        platform::setprogress("ProgressBar1", 100.0 * ray / count);
        const raypath& path = *findpath(receiver, ray);
        try {
            renderpath(all, left, path, pathsound(path, job, receiver, ray));
        } catch (const runtimeerror& error) {
            throw runtimeerror{error.kind, "Path" + wholetext(ray) + " of receiver" + wholetext(receiver) +
                                               ", which arrives at" + numbertext(path.time) +
                                               " s, cannot be exported in a response of" +
                                               wholetext(SessionState.requestedSamples) +
                                               " samples: " + error.text};
        }
    }
    addsounds(all);
}

// A direction that is uniform over the sphere: points of the cube until one lies in the sphere.
direction randomdirection() {
    for (;;) {
        const double x = 2 * nextuniform() - 1;
        const double y = 2 * nextuniform() - 1;
        const double z = 2 * nextuniform() - 1;
        const double length = std::sqrt(x * x + y * y + z * z);
        if (length <= 1) return {quotient(x, length), quotient(y, length), quotient(z, length)};
    }
}

// One pulse of slot t, whose amplitudes are those of `sound`. Time, receiver and source are drawn in this
// order.
void renderpulse(accumulator& all, exportedsound& sound, const exportjob& job, std::int32_t t) {
    sound.time = job.sampleRate * slotlength() * (t + nextuniform());
    pathdirections path;
    path.receiver = randomdirection();
    path.source = randomdirection();
    setgains(sound, job, path);
    collectsound(all, sound);
}

// The pulses of slot t, each with an even share of the slot's energy. Many of them let events in between.
void renderslot(accumulator& all, residual& left, const exportjob& job, std::int32_t t) {
    if (job.pulsesPerSlot < 1) return;
    exportedsound sound;
    for (int band = 1; band <= octavebands; ++band) {
        const double energy = static_cast<double>(left(t, band)) / job.pulsesPerSlot;
        sound.amplitude[slot(band)] =
            std::sqrt(std::fabs(energy)); // paths may have taken more than there was
    }
    for (double pulse = 1; pulse <= job.pulsesPerSlot; ++pulse) {
        if (isfull(all)) {
            addsounds(all);
            platform::yield();
            if (stopped()) return;
        }
        renderpulse(all, sound, job, t);
    }
}

void diffusefield(accumulator& all, residual& left, const exportjob& job) {
    log("Exporting diffuse field...");
    for (std::int32_t t = 0; t <= job.slotsUsed - 1; ++t) {
        platform::setprogress("ProgressBar1", 100.0 * t / job.slotsUsed);
        platform::yield();
        renderslot(all, left, job, t);
        if (stopped()) break;
    }
    addsounds(all);
}

// --- The file ---

// Frames first..first + count - 1 of the file.
std::vector<float> framesof(const accumulator& all, std::size_t first, std::size_t count) {
    const auto channels = static_cast<std::size_t>(all.channels);
    std::vector<float> frames(count * channels);
    for (std::size_t c = 0; c < channels; ++c) {
        // The filters' delay is taken out again, and what they have before their peak at the start is lost.
        const float* const from = all.samples.data() + c * all.rowLength + filtermiddle + first;
        for (std::size_t j = 0; j < count; ++j) frames[j * channels + c] = from[j] / fullscale;
    }
    return frames;
}

void writewav(const accumulator& all, const exportjob& job, const std::string& name) {
    const auto total = static_cast<std::size_t>(job.totalSamples);
    wavwriter file(name);
    log("Nsamples =" + wholetext(job.totalSamples));
    file.write(wavheader(job.channels, job.sampleRate, job.totalSamples));
    log("FileLen=" + wholetext(wavfilelength(job.channels, job.totalSamples)));
    log("Nbytes=" + wholetext(wavdatabytes(job.channels, job.totalSamples)));
    for (std::size_t first = 0; first < total; first += writtenframes)
        file.write(framesof(all, first, std::min(writtenframes, total - first)));
    file.finish();
}

void exportreceiver(const exportjob& job, std::int32_t receiver) {
    platform::setrows("List1", {});
    logfirst("Npulses =" + numbertext(job.pulsesPerSlot));
    logfirst("Receiver number: " + wholetext(receiver));
    logfirst("Export format: " + job.formatText);
    const std::string name = wavname(job, receiver);
    platform::statustext(2, "Exporting impulse response to " + pagetext(name) + " ...");
    logfirst("Exporting impulse response to " + pagetext(name) + " ...");
    readfilterbank(joinpath(SessionState.dataDirectory, filterbankname(job.sampleRate)));
    platform::yield();
    accumulator all = createaccumulator(job.channels, job.blocks, SessionState.requestedSamples);
    log("Total number of samples being generated:" + wholetext(job.totalSamples));
    residual left = copyresponse(job, receiver);
    if (SessionState.pathsExist) directionalfield(all, left, job, receiver);
    diffusefield(all, left, job);
    RoomModel.roomMaxX = fullscale; // one shared variable; meant
    log("Rescaling RMS value: " + formatnumber(0.0, rmsfield) +
        " to Leq= " + formatnumber(ParameterSet.Leq(receiver, linearband), "###.#") + "dB");
    log("Saving WAV file: " + pagetext(name));
    writewav(all, job, name);
}

} // namespace

double nextuniform() {
    return static_cast<double>(stream() >> 11) / 9007199254740992.0; // 2^53
}

void restartuniform() {
    stream.seed();
}

void savewave() {
    const exportjob job = readjob();
    for (std::int32_t receiver = job.first; receiver <= job.last; ++receiver) {
        exportreceiver(job, receiver);
        if (stopped()) break;
        platform::yield();
    }
    log("Complete!");
    platform::beep();
    platform::yield();
}

} // namespace orv

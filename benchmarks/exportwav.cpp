// How fast an export adds sounds to the samples of its file, against the plainest form of the loop, which
// adds every tap of every band by itself and rounds its place each time (benchmarks/plainsynthesis.h). A
// contribution is one sound in one channel of one block. Both forms render the same response in turn, the
// plain one its first milliseconds only, and the ratio is that of their times by contribution: 25 or above
// for one channel (format 0), 60 or above for 32x32 (format 17). `difference` is the largest of all samples
// of these milliseconds, by their peak (1e-5 or below).
//
// export_s is the whole export of a response of 2 s at 48 kHz with its file (32x32: below 20 s), stop_ms the
// longest time between two yields in the diffuse field (below 200), peak_by_file the memory that the first
// export takes at most, by the bytes of its file (32x32: 1.2 or below).
#include "base/files.h"
#include "benchmarks/floor.h"
#include "benchmarks/memory.h"
#include "benchmarks/plainsynthesis.h"
#include "data/filterbankdesign.h"
#include "export/synthesis.h"
#include "platform/platform.h"
#include "platform/scripted/scripted.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>

namespace {

constexpr int slots = 2000, sampleRate = 48000;
constexpr int largestrow = 17;
constexpr int plainslots = 6; // of which the plain form renders the pulses

// A decaying response of receiver 1 without stored paths, and the controls of the dialog.
void prepare(const std::string& directory, const orv::exportformat& format, int density) {
    std::filesystem::create_directories(directory);
    orv::scripted::reset();
    orv::scripted::record(false);
    orv::SessionState.dataDirectory = directory;
    orv::SessionState.fileRadix = directory + "/bench.wav";
    orv::SessionState.resultFileName = "bench._01";
    orv::writefilterbanks(directory);
    orv::RoomModel.receiverCount = 1;
    orv::ResultSet.timeStep = 0.001F;
    orv::ResultSet.lastSlot = slots;
    orv::createresponse(slots + 1, 1);
    float* const row = orv::takeresponse(1);
    for (int t = 0; t <= slots; ++t)
        for (int i = 0; i < orv::bandcount; ++i)
            row[t * orv::bandcount + i] = 1e8F * std::exp(-0.004F * static_cast<float>(t));
    orv::dummyredim();
    orv::platform::setchosen("f48", true);
    orv::platform::setenabled("StopExport", true);
    orv::platform::settext("RecNo", " 1");
    orv::platform::settext("Density", std::to_string(density));
    orv::platform::settext("Outformat", std::string(format.label));
}

double processorseconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// The whole export up to a length in slots, in seconds.
double exporttime(int length) {
    orv::SessionState.requestedSamples = length * sampleRate / 1000;
    orv::restartuniform();
    const auto start = std::chrono::steady_clock::now();
    orv::savewave();
    return orv::secondssince(start);
}

double longestgap() {
    double longest = 0;
    const auto begin = orv::scripted::yieldcount();
    auto last = std::chrono::steady_clock::now();
    std::function<void()> watch = [&] {
        longest = std::max(longest, orv::secondssince(last));
        last = std::chrono::steady_clock::now();
        if (orv::scripted::yieldcount() < begin + slots) orv::scripted::atyield(1, watch);
    };
    orv::scripted::atyield(4, [&] {
        last = std::chrono::steady_clock::now();
        orv::scripted::atyield(1, watch);
    });
    exporttime(slots);
    return longest;
}

// The largest difference between the file of `plainslots` slots and the plain form of it, by the peak.
double differencefrom(const orv::plainexport& plain, const std::string& file) {
    const orv::filebytes bytes = orv::readfile(file);
    const auto* const samples = reinterpret_cast<const float*>(bytes.data.get() + 44);
    double peak = 0, difference = 0;
    const auto channels = static_cast<std::size_t>(plain.channels);
    const auto frames = static_cast<std::size_t>(plain.requestedSamples * plain.blocks);
    for (std::size_t i = 0; i < frames * channels; ++i) {
        const auto wanted =
            static_cast<double>(orv::plainsample(plain, static_cast<int>(i % channels) + 1, i / channels));
        peak = std::max(peak, std::fabs(wanted));
        difference = std::max(difference, std::fabs(static_cast<double>(samples[i]) - wanted));
    }
    return difference / peak;
}

void exportwav(benchmark::State& state) {
    const int row = static_cast<int>(state.range(0)), density = static_cast<int>(state.range(1));
    const orv::exportformat& format = orv::exportformats[static_cast<std::size_t>(row)];
    const std::string directory =
        (std::filesystem::temp_directory_path() / "orvanta_export_benchmark").string();
    prepare(directory, format, density);
    const std::string file = directory + "/bench_01_" + std::string(format.label) + "_001.wav";

    const double before = orv::memoryfigure("VmRSS");
    exporttime(slots);
    const double peak = orv::memoryfigure("VmHWM") - before;
    const double filesize = static_cast<double>(orv::filesize(file));
    const double gap = longestgap();
    std::filesystem::remove(file);

    orv::plainexport plain;
    plain.formatRow = row;
    plain.density = density;
    plain.requestedSamples = plainslots * sampleRate / 1000;
    plain.slotsUsed = plain.requestedSamples / static_cast<double>(orv::ResultSet.timeStep) / sampleRate;
    double plaintime = 1e9, processortime = 1e9, best = 1e9;
    for (auto _ : state) {
        orv::restartuniform();
        double start = processorseconds();
        orv::renderplain(plain, 1);
        plaintime = std::min(plaintime, processorseconds() - start);
        start = processorseconds();
        const double seconds = exporttime(slots);
        processortime = std::min(processortime, processorseconds() - start);
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
    }
    std::filesystem::remove(file);
    exporttime(plainslots);
    state.counters["difference"] = differencefrom(plain, file);
    std::filesystem::remove_all(directory);

    const double copies = static_cast<double>(format.channels) * format.blocks;
    const double plaincontribution = plaintime / (std::floor(plain.slotsUsed) * density * copies);
    const double contribution = processortime / (static_cast<double>(slots) * density * copies);
    state.counters["plain_us"] = plaincontribution * 1e6;
    state.counters["contribution_us"] = contribution * 1e6;
    state.counters["ratio"] = plaincontribution / contribution;
    state.counters["export_s"] = best;
    state.counters["stop_ms"] = gap * 1000;
    if (row == largestrow) state.counters["peak_by_file"] = peak / filesize;
    state.counters["file_MB"] = filesize / 1e6;
}
// The largest first: only the first export of the process shows what it takes.
BENCHMARK(exportwav)
    ->ArgNames({"format", "density"})
    ->Args({largestrow, 1})
    ->Args({13, 1})
    ->Args({6, 1})
    ->Args({1, 1})
    ->Args({0, 10})
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

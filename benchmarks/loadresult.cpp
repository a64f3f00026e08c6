// How fast loadresult reads a result of 200 receivers x 2000 slots and computes everything from it, against the
// floor of a bare std::from_chars loop over the same bytes in memory. Both run in turn, so that whatever slows
// the machine slows both; the ratio is that of the best times and should be 0.5 or above. `peak_ratio` is the
// memory that a load takes, in units of the file plus the ImpulseResponse table.
#include "base/files.h"
#include "benchmarks/floor.h"
#include "platform/scripted/scripted.h"
#include "results/parameterset.h"
#include "results/resultreader.h"
#include "results/resultset.h"
#include "samples/samplefiles.h"
#include "tests/results/startvalues.h"

#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>

namespace {

constexpr int receivers = 200, slots = 2000;

// The most memory that the process has had so far, in bytes.
double peakmemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

void loadresult(benchmark::State& state) {
    const std::string path = (std::filesystem::temp_directory_path() / "orvanta_benchmark._01").string();
    orv::samples::bigoptions options;
    options.receivers = receivers;
    options.slots = slots;
    orv::setstartvalues();
    orv::scripted::record(false);

    // The parameter tables have their fixed place whether or not a result is loaded; touch it before.
    orv::ParameterSet.modulationTransfer.clearrows(receivers);
    double peak = 0;
    {
        // Written and forgotten before the first measure, so that the peak is that of the load.
        orv::samples::writebigresult(path, options);
        const double before = peakmemory();
        orv::loadresult(path);
        peak = peakmemory() - before;
    }
    const orv::filebytes bytes = orv::readfile(path);
    double bestfloor = std::numeric_limits<double>::max(), bestload = bestfloor;
    for (auto _ : state) {
        auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(orv::parseall(bytes));
        bestfloor = std::min(bestfloor, orv::secondssince(start));

        start = std::chrono::steady_clock::now();
        orv::loadresult(path);
        const double seconds = orv::secondssince(start);
        bestload = std::min(bestload, seconds);
        state.SetIterationTime(seconds);
    }
    std::filesystem::remove(path);
    if (orv::ImpulseResponse.taken != receivers + 1 || !(orv::ParameterSet.T30(receivers, 6) > 0))
        state.SkipWithError("the result was not read whole");

    const double megabytes = static_cast<double>(bytes.size) / 1e6;
    const double table = 4.0 * orv::bandcount * (slots + 1) * (receivers + 1) / 1e6;
    state.counters["MB"] = megabytes;
    state.counters["load_MBps"] = megabytes / bestload;
    state.counters["floor_MBps"] = megabytes / bestfloor;
    state.counters["ratio"] = bestfloor / bestload;
    state.counters["peak_MB"] = peak / 1e6;
    state.counters["allowed_MB"] = megabytes + 1.1 * table;
}
BENCHMARK(loadresult)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace

// How fast loadresult reads a result of 200 receivers x 2000 slots and computes everything from it, against
// the floor of a bare std::from_chars loop over the same bytes in memory. Both run in turn, so that whatever
// slows the machine slows both; the ratio is that of the best times and should be 0.5 or above. `peak_MB` is
// the memory that a load takes at most, `allowed_MB` the file and 1.1 times the ImpulseResponse table.
#include "base/files.h"
#include "benchmarks/floor.h"
#include "benchmarks/memory.h"
#include "platform/scripted/scripted.h"
#include "results/parameterset.h"
#include "results/resultreader.h"
#include "results/resultset.h"
#include "samples/samplefiles.h"
#include "shell/startup.h"

#include <benchmark/benchmark.h>

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace {

constexpr int receivers = 200, slots = 2000;

void loadresult(benchmark::State& state) {
    const std::string path = (std::filesystem::temp_directory_path() / "orvanta_benchmark._01").string();
    orv::samples::bigoptions options;
    options.receivers = receivers;
    options.slots = slots;
    orv::computeconstants();
    orv::scripted::record(false);

    // The parameter tables have their fixed place whether or not a result is loaded; touch it before.
    orv::ParameterSet.modulationTransfer.clearrows(receivers);
    // Written by another process, so that the most memory of this one is that of the load.
    if (const pid_t child = fork(); child == 0) {
        orv::samples::writebigresult(path, options);
        _exit(0);
    } else {
        waitpid(child, nullptr, 0);
    }
    // Only the first load of the process has no more of its own.
    static const double peak = [&path] {
        const double before = orv::memoryfigure("VmRSS");
        orv::loadresult(path);
        return orv::memoryfigure("VmHWM") - before;
    }();

    const orv::filebytes bytes = orv::readfile(path);
    const orv::besttimes best = orv::timeinturn(
        state, [&] { benchmark::DoNotOptimize(orv::parseall(bytes)); }, [&] { orv::loadresult(path); });
    std::filesystem::remove(path);
    if (orv::ImpulseResponse.taken != receivers + 1 || !(orv::ParameterSet.T30(receivers, 6) > 0))
        state.SkipWithError("the result was not read whole");

    const double megabytes = static_cast<double>(bytes.size) / 1e6;
    const double table = 4.0 * orv::bandcount * (slots + 1) * (receivers + 1) / 1e6;
    orv::tellrates(state, bytes.size, best);
    state.counters["peak_MB"] = peak / 1e6;
    state.counters["allowed_MB"] = megabytes + 1.1 * table;
}
BENCHMARK(loadresult)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace

// How fast loadchiocc reads 1,000,000 paths of 200 receivers, against the floor of a bare std::from_chars
// loop over the same bytes in memory, which should be at most twice as fast; and what a file costs whose
// paths come in no order, against the same in order, which should be at most 1.3 times as much. `store_MB` is
// the memory that the paths take.
#include "base/files.h"
#include "benchmarks/floor.h"
#include "platform/scripted/scripted.h"
#include "response/raypathreader.h"
#include "response/raypathset.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"
#include "shell/startup.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

constexpr int paths = 1000000, receivers = 200;

std::string writepaths(bool sorted) {
    const std::string name = sorted ? "orvanta_benchmark.@01" : "orvanta_benchmark.@02";
    const std::string path = (std::filesystem::temp_directory_path() / name).string();
    orv::samples::writebigpaths(path, paths, receivers, sorted);
    return path;
}

void prepare() {
    orv::computeconstants();
    orv::scripted::record(false);
    orv::RoomModel.receiverCount = receivers;
    orv::ResultSet.receiverDelay.assign(receivers + 1, 0);
    orv::ResultSet.criticalTime = 1;
    orv::ResultSet.alfaConstant = 0.9F;
    orv::ResultSet.betaConstant = 1;
}

void checkpaths(benchmark::State& state) {
    if (orv::RayPathSet.pathCountOf[0] != paths) state.SkipWithError("the paths were not read whole");
}

void loadpaths(benchmark::State& state) {
    prepare();
    const std::string path = writepaths(true);
    const orv::filebytes bytes = orv::readfile(path);
    const orv::besttimes best = orv::timeinturn(
        state, [&] { benchmark::DoNotOptimize(orv::parseall(bytes)); }, [&] { orv::loadchiocc(path); });
    std::filesystem::remove(path);
    checkpaths(state);
    const double megabytes = static_cast<double>(bytes.size) / 1e6;
    state.counters["MB"] = megabytes;
    state.counters["load_MBps"] = megabytes / best.routine;
    state.counters["floor_MBps"] = megabytes / best.floor;
    state.counters["ratio"] = best.floor / best.routine;
    state.counters["store_MB"] = static_cast<double>(paths) * sizeof(orv::raypath) / 1e6;
}
BENCHMARK(loadpaths)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

void unsortedpaths(benchmark::State& state) {
    prepare();
    const std::string sorted = writepaths(true), unsorted = writepaths(false);
    const orv::besttimes best = orv::timeinturn(
        state, [&] { orv::loadchiocc(sorted); }, [&] { orv::loadchiocc(unsorted); });
    std::filesystem::remove(sorted);
    std::filesystem::remove(unsorted);
    checkpaths(state);
    state.counters["sorted_ms"] = best.floor * 1000;
    state.counters["unsorted_ms"] = best.routine * 1000;
    state.counters["ratio"] = best.routine / best.floor;
}
BENCHMARK(unsortedpaths)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace

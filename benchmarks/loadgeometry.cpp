// How fast loadgeometry reads the largest room there can be, against the floor of a bare std::from_chars loop
// over the same bytes in memory. Both run in turn, so that whatever slows the machine slows both; the ratio
// is that of the best times. It should be 0.5 or above.
#include "base/files.h"
#include "benchmarks/floor.h"
#include "platform/scripted/scripted.h"
#include "room/geometryreader.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>

namespace {

void loadgeometry(benchmark::State& state) {
    const std::string path = (std::filesystem::temp_directory_path() / "orvanta_benchmark_room.ray").string();
    orv::samples::writebiggeometry(path, orv::highestface, orv::highestreceiver);
    const orv::filebytes bytes = orv::readfile(path);
    orv::scripted::record(false);

    const auto start = std::chrono::steady_clock::now();
    orv::loadgeometry(path);
    const double firstload = orv::secondssince(start);
    const orv::besttimes best = orv::timeinturn(
        state, [&] { benchmark::DoNotOptimize(orv::parseall(bytes)); }, [&] { orv::loadgeometry(path); });
    std::filesystem::remove(path);
    if (orv::RoomModel.faceCount != orv::highestface || orv::RoomModel.receiverCount != orv::highestreceiver)
        state.SkipWithError("the room was not read whole");

    orv::tellrates(state, bytes.size, best);
    state.counters["first_MBps"] = static_cast<double>(bytes.size) / 1e6 / firstload;
}
BENCHMARK(loadgeometry)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace

// How fast loadnastran reads 100000 nodes and 75000 elements, against the floor of a bare std::from_chars
// loop over the same bytes in memory. The ratio of the rates should be 0.4 or above.
#include "base/files.h"
#include "benchmarks/floor.h"
#include "interchange/nastranreader.h"
#include "platform/scripted/scripted.h"
#include "room/roommodel.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

constexpr int nodes = 100000;

// Coordinates with eight characters, as mesh programs write them.
std::string filetext() {
    std::string text = "$ Grid data section\r\n";
    const auto coordinate = [](int thousandths) {
        std::string digits = std::to_string(1000000 + thousandths % 1000000);
        digits.insert(digits.size() - 4, 1, '.');
        return digits.substr(1) + "0";
    };
    for (int i = 1; i <= nodes; ++i)
        text += "GRID," + std::to_string(i) + ",0," + coordinate(i * 37) + "," + coordinate(i * 101) + "," +
                coordinate(i * 7) + "\r\n";
    for (int i = 1; i <= orv::highestface; ++i)
        text += "CTRIA3," + std::to_string(i) + ",1," + std::to_string(i) + "," + std::to_string(i + 1) +
                "," + std::to_string(nodes - i) + "\r\n";
    return text + "ENDDATA\r\n";
}

void importnastran(benchmark::State& state) {
    const std::string path = (std::filesystem::temp_directory_path() / "orvanta_benchmark.nas").string();
    orv::replacefile(path, filetext());
    const orv::filebytes bytes = orv::readfile(path);
    orv::scripted::record(false);
    const orv::besttimes best = orv::timeinturn(
        state, [&] { benchmark::DoNotOptimize(orv::parseall(bytes)); }, [&] { orv::loadnastran(path); });
    std::filesystem::remove(path);
    if (orv::RoomModel.faceCount != orv::highestface) state.SkipWithError("the file was not read whole");

    orv::tellrates(state, bytes.size, best);
}
BENCHMARK(importnastran)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace

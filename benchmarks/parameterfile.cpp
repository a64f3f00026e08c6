// How fast saveparameters and loadparameters go through 5000 receivers, against the bare conversion of the
// same numbers in memory: std::to_chars in the scientific form with six decimals, and std::from_chars over
// the file's own text. Each pair runs in turn; the ratios are those of the best rates and should be 0.5 or
// above.
#include "results/parameterfile.h"
#include "base/files.h"
#include "benchmarks/floor.h"
#include "platform/scripted/scripted.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "samples/random.h"
#include "shell/startup.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr int receivers = 5000;

// Values as parameters have them, of all seven digits, and a list of all that the file holds.
std::vector<float> fillparameters() {
    orv::samples::randomstate random{5};
    std::vector<float> all;
    const auto fill = [&](auto& table, int firstband, double scale) {
        for (int r = 0; r <= receivers; ++r)
            for (int band = firstband; band <= orv::bandcount; ++band) {
                if (firstband == 3 && band == 10) continue;
                table(r, band) = static_cast<float>(scale * (orv::samples::nextuniform(random) - 0.3));
                all.push_back(table(r, band));
            }
    };
    orv::parameterset& set = orv::ParameterSet;
    fill(set.Leq, 1, 100), fill(set.Ldir, 1, 100), fill(set.Lrev, 1, 100), fill(set.LdirLrev, 1, 20);
    fill(set.LeqLw, 1, -80), fill(set.C50, 1, 20), fill(set.C80, 1, 20), fill(set.Ts, 1, 300);
    fill(set.Aeq, 1, 4), fill(set.LE, 1, 1), fill(set.LF, 1, 1), fill(set.LFC, 1, 1), fill(set.Aeq2, 1, 4);
    fill(set.ITDGeq, 1, 50), fill(set.STI, 3, 1), fill(set.EDT, 1, 4), fill(set.T10, 1, 4);
    fill(set.T15, 1, 4), fill(set.T20, 1, 4), fill(set.T30, 1, 4);
    for (int r = 0; r <= receivers; ++r)
        for (int i = 1; i <= orv::modulationcount; ++i)
            for (int band = 0; band < 7; ++band) {
                float& value = set.modulationTransfer(r, i, band);
                value = static_cast<float>(orv::samples::nextuniform(random));
                all.push_back(value);
            }
    return all;
}

std::size_t writeall(const std::vector<float>& values) {
    char text[32];
    std::size_t length = 0;
    for (const float value : values) {
        const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, 6).ptr;
        benchmark::DoNotOptimize(text);
        length += static_cast<std::size_t>(end - text);
    }
    return length;
}

void parameterfile(benchmark::State& state) {
    const auto folder = std::filesystem::temp_directory_path();
    const std::string result = (folder / "orvanta_benchmark._01").string();
    const std::string path = orv::parameternameof(result);
    orv::scripted::record(false);
    orv::computeconstants();
    orv::RoomModel.receiverCount = receivers;
    const std::vector<float> values = fillparameters();

    double bestwrite = std::numeric_limits<double>::max(), bestparse = bestwrite;
    double bestsave = bestwrite, bestload = bestwrite;
    std::size_t size = 0;
    const auto timed = [](double& best, auto run) {
        const auto start = std::chrono::steady_clock::now();
        run();
        best = std::min(best, orv::secondssince(start));
    };
    for (auto _ : state) {
        timed(bestwrite, [&] { benchmark::DoNotOptimize(writeall(values)); });
        timed(bestsave, [&] { orv::saveparameters(result); });
        const orv::filebytes bytes = orv::readfile(path);
        size = bytes.size;
        timed(bestparse, [&] { benchmark::DoNotOptimize(orv::parseall(bytes)); });
        timed(bestload, [&] { orv::loadparameters(path); });
        state.SetIterationTime(bestsave + bestload);
    }
    std::filesystem::remove(path);
    state.counters["MB"] = static_cast<double>(size) / 1e6;
    state.counters["tochars_ms"] = bestwrite * 1000;
    state.counters["save_ms"] = bestsave * 1000;
    state.counters["save_ratio"] = bestwrite / bestsave;
    state.counters["fromchars_ms"] = bestparse * 1000;
    state.counters["load_ms"] = bestload * 1000;
    state.counters["load_ratio"] = bestparse / bestload;
}
BENCHMARK(parameterfile)->Iterations(8)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

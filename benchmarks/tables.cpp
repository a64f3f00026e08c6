// How long the whole copy of a one-parameter table of 100001 rows takes, against the formatting of its values
// alone, in the same pattern and with nothing kept. Both run in turn; the ratio is that of the best times and
// should be 2 or below. Opening the table and asking for the cells of one screen costs next to nothing, since
// cells are made when they are seen: `open_ms` is both.
#include "base/formatpattern.h"
#include "benchmarks/floor.h"
#include "platform/scripted/scripted.h"
#include "results/parameterset.h"
#include "results/tablecells.h"
#include "room/roommodel.h"
#include "samples/random.h"
#include "shell/sessionstate.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>

namespace {

using orv::highestreceiver;
constexpr int rowsonscreen = 50;

std::size_t formatall() {
    std::size_t length = 0;
    for (int r = 0; r <= highestreceiver; ++r)
        for (int band = 1; band <= orv::bandcount; ++band)
            length += orv::formatnumber(orv::ParameterSet.T20(r, band), "##0.00").size();
    return length;
}

void tables(benchmark::State& state) {
    orv::samples::randomstate random{3};
    for (int r = 0; r <= highestreceiver; ++r)
        for (int band = 1; band <= orv::bandcount; ++band)
            orv::ParameterSet.T20(r, band) = static_cast<float>(4 * orv::samples::nextuniform(random));
    orv::scripted::record(false);
    orv::RoomModel.receiverCount = highestreceiver;
    orv::SessionState.tableMode = "T20";

    double bestfloor = std::numeric_limits<double>::max(), bestcopy = bestfloor, bestopen = bestfloor;
    std::size_t size = 0;
    for (auto _ : state) {
        auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(formatall());
        bestfloor = std::min(bestfloor, orv::secondssince(start));

        start = std::chrono::steady_clock::now();
        const orv::parametergrid grid = orv::opengrid();
        for (int row = 0; row < rowsonscreen; ++row)
            for (int column = 0; column < grid.columns; ++column)
                benchmark::DoNotOptimize(orv::gridcell(grid, row, column));
        bestopen = std::min(bestopen, orv::secondssince(start));

        start = std::chrono::steady_clock::now();
        size = orv::gridtext(grid).size();
        const double seconds = orv::secondssince(start);
        bestcopy = std::min(bestcopy, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["MB"] = static_cast<double>(size) / 1e6;
    state.counters["open_ms"] = bestopen * 1000;
    state.counters["format_ms"] = bestfloor * 1000;
    state.counters["copy_ms"] = bestcopy * 1000;
    state.counters["ratio"] = bestcopy / bestfloor;
}
BENCHMARK(tables)->Iterations(8)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

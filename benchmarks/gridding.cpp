// How long the six gridding methods take for 1000 points on 100 x 100 nodes and for 20000 points on 500 x
// 500, and the tracing of 16 levels on 500 x 500 nodes. The peers that the first and the last are measured
// against run in benchmarks/peers, which starts this program too and prints the ratios; with a folder named
// in ORV_PEERS the points and grids are left there for it, as bare doubles.
#include "maps/gridding.h"
#include "benchmarks/floor.h"
#include "maps/contouring.h"
#include "samples/random.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr double width = 40, depth = 25; // m

// A level that falls with the distance from a source, and a wave over it.
double field(double x, double y) {
    return 90 - 8 * std::log10(1 + x * x + y * y) + std::sin(x) * std::cos(y);
}

orv::scatteredpoints makepoints(int count) {
    orv::samples::randomstate random{7};
    orv::scatteredpoints points;
    for (int k = 0; k < count; ++k) {
        const double x = width * orv::samples::nextuniform(random);
        const double y = depth * orv::samples::nextuniform(random);
        points.x.push_back(x);
        points.y.push_back(y);
        points.value.push_back(field(x, y));
    }
    return points;
}

orv::gridframe frame(int columns, int rows) {
    return {columns, rows, 0.1, width - 0.1, 0.1, depth - 0.1};
}

void leave(const std::string& name, const std::vector<double>& values) {
    const char* folder = std::getenv("ORV_PEERS");
    if (!folder) return;
    std::ofstream file(std::string(folder) + "/" + name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(values.data()),
               static_cast<std::streamsize>(values.size() * sizeof(double)));
}

void gridding(benchmark::State& state) {
    const auto method = static_cast<orv::griddingmethod>(state.range(0));
    const int side = static_cast<int>(state.range(2));
    const orv::scatteredpoints points = makepoints(static_cast<int>(state.range(1)));
    double best = std::numeric_limits<double>::max();
    orv::regulargrid grid(frame(side, side));
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        grid = orv::gridpoints(points, frame(side, side), method);
        best = std::min(best, orv::secondssince(start));
    }
    state.counters["best_ms"] = best * 1000;
    const std::string count = std::to_string(points.count());
    leave("method" + std::to_string(state.range(0)) + "." + count, grid.values);
    leave("x." + count, points.x);
    leave("y." + count, points.y);
    leave("value." + count, points.value);
}
BENCHMARK(gridding)
    ->ArgNames({"method", "points", "side"})
    ->ArgsProduct({{1, 2, 3, 4, 5, 6}, {1000}, {100}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(gridding)
    ->ArgNames({"method", "points", "side"})
    ->ArgsProduct({{1, 2, 3, 4, 5, 6}, {20000}, {500}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// Sixteen levels of the field that the points were taken from.
void contouring(benchmark::State& state) {
    orv::regulargrid grid({500, 500, 0, width, 0, depth});
    for (int j = 0; j < 500; ++j)
        for (int i = 0; i < 500; ++i) grid.row(j)[i] = field(grid.frame.x(i), grid.frame.y(j));
    double low = 0, high = 0, best = std::numeric_limits<double>::max();
    orv::valuerange(grid, low, high);
    std::vector<double> levels;
    for (int k = 0; k < 16; ++k) levels.push_back(low + k * (high - low) / 16);
    std::size_t lines = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        const auto traced = orv::contourlines(grid, levels);
        best = std::min(best, orv::secondssince(start));
        lines = 0;
        for (const auto& level : traced) lines += level.size();
    }
    state.counters["best_ms"] = best * 1000;
    state.counters["lines"] = static_cast<double>(lines);
    leave("field.500", grid.values);
}
BENCHMARK(contouring)->Unit(benchmark::kMillisecond);

} // namespace

// How long updategraph takes with two files of 3000 slots, and the drawing of its chart on a picture of 900 x
// 500 pixels: together below 30 ms, which a user who steps through receivers does not notice.
#define QT_NO_KEYWORDS // "slots" is a word of ours too

#include "tools/optimizer.h"
#include "benchmarks/floor.h"
#include "benchmarks/offscreen.h"
#include "platform/scripted/scripted.h"
#include "samples/samplefiles.h"
#include "scene/paintersurface.h"
#include "shell/startup.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

void optimizer(benchmark::State& state) {
    const orv::offscreenqt qt;
    orv::scripted::record(false);
    orv::computeconstants();
    const std::string path = (std::filesystem::temp_directory_path() / "orvanta_benchmark._01").string();
    orv::samples::bigoptions options;
    options.receivers = 2;
    options.slots = 3001;
    orv::samples::writebigresult(path, options);
    orv::openoptimizer();
    orv::Optimizer.alfa = ".9";
    orv::Optimizer.beta = "1";
    for (int file = 0; file < orv::optimizerfiles; ++file) orv::loadoptimizerfile(path, file);
    std::filesystem::remove(path);
    orv::paintersurface picture(900, 500, 1);

    const orv::besttimes best = orv::timeinturn(
        state, [] { orv::updategraph(); },
        [&picture] {
            orv::drawoptimizerchart(picture.surface);
            orv::picturecontents(picture);
        });
    if (orv::Optimizer.chart.series[1].size() != 3000) state.SkipWithError("the chart is not whole");
    state.counters["updategraph_ms"] = best.floor * 1000;
    state.counters["draw_ms"] = best.routine * 1000;
}
BENCHMARK(optimizer)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

// How fast computesti goes through 100000 receivers, against a loop that only takes the logarithms that the
// options call for: 98 a receiver, or 196 with the spectrum. Both run in turn; the ratio is that of the best
// times and should be 2 or below. The three runs are those without noise, with noise, and with noise and
// spectrum.
#include "results/speechindex.h"
#include "benchmarks/floor.h"
#include "platform/scripted/scripted.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "samples/random.h"
#include "shell/startup.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

using orv::highestreceiver;
constexpr int speechbands = 7;

// Modulations as in rooms, and levels around the noise.
void fillparameters() {
    orv::samples::randomstate random{11};
    for (int r = 1; r <= highestreceiver; ++r) {
        for (int i = 1; i <= orv::modulationcount; ++i)
            for (int band = 0; band < speechbands; ++band)
                orv::ParameterSet.modulationTransfer(r, i, band) =
                    static_cast<float>(orv::samples::nextuniform(random));
        for (int band = 0; band < speechbands; ++band)
            orv::ParameterSet.Leq(r, band + 3) =
                static_cast<float>(40 + 30 * orv::samples::nextuniform(random));
    }
}

double takelogarithms(int times) {
    double sum = 0;
    for (int r = 1; r <= highestreceiver; ++r)
        for (int i = 1; i <= orv::modulationcount; ++i)
            for (int band = 0; band < speechbands; ++band)
                for (int n = 1; n <= times; ++n)
                    sum +=
                        std::log10(n * static_cast<double>(orv::ParameterSet.modulationTransfer(r, i, band)));
    return sum;
}

void speechindex(benchmark::State& state) {
    const bool noise = state.range(0) != 0, spectrum = state.range(1) != 0;
    orv::scripted::reset();
    orv::scripted::record(false);
    orv::scripted::onfailure([](const std::string&) {}); // the options
    orv::computeconstants();
    fillparameters();
    orv::sessionstate& session = orv::SessionState;
    session.parameterSource = 1;
    session.backgroundNoiseFlag = noise ? -1 : 0;
    session.equalizeSpectrumFlag = spectrum ? -1 : 0;
    session.noiseLevel.fill(45);
    orv::RoomModel.receiverCount = highestreceiver;

    const orv::besttimes best = orv::timeinturn(
        state, [spectrum] { benchmark::DoNotOptimize(takelogarithms(spectrum ? 2 : 1)); },
        [] { orv::computesti(); });
    if (!(orv::ParameterSet.STI(highestreceiver, 11) > 0)) state.SkipWithError("nothing was computed");
    state.counters["floor_ms"] = best.floor * 1000;
    state.counters["computesti_ms"] = best.routine * 1000;
    state.counters["ratio"] = best.routine / best.floor;
}
BENCHMARK(speechindex)
    ->ArgNames({"noise", "spectrum"})
    ->Args({0, 0})
    ->Args({1, 0})
    ->Args({1, 1})
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

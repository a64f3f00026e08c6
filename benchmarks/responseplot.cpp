// How long the impulse response window takes to draw 20000 slots with their decay curve on a plot 1600 pixels
// wide, levels computed anew or kept, against QPainter handed 1600 black columns and as many curve segments
// ready made; and how long a cursor takes to move. Wanted: a drawing below 30 ms, a cursor's move below 2 ms.
#include "response/responseplot.h"
#include "benchmarks/floor.h"
#include "benchmarks/offscreen.h"
#include "platform/scripted/scripted.h"
#include "response/responselevels.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "scene/paintersurface.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

constexpr int slotcount = 20000, width = 1600, height = 900;

struct openplot {
    orv::offscreenqt qt;
    orv::paintersurface picture{width, height, 1};

    openplot() {
        orv::scripted::record(false);
        orv::resetcommands();
        orv::ResultSet.timeStep = 0.0001F;
        orv::ResultSet.lastSlot = slotcount - 1;
        orv::ResultSet.soundSpeed = 340;
        orv::RoomModel.receiverCount = 1;
        orv::createresponse(slotcount, 1);
        float* const row = orv::takeresponse(1);
        for (int t = 0; t < slotcount; ++t)
            for (int band = 0; band < orv::bandcount; ++band)
                row[t * orv::bandcount + band] =
                    static_cast<float>(1e10 * std::exp(-t * 6e-4) * (1 + 0.9 * std::sin(t * 1.7)));
        orv::SessionState.schroederOn = -1;
        orv::showwholeresponse();
        orv::openplot(picture.surface);
    }
    void draw() {
        orv::impulsedraw(0, static_cast<double>(orv::SessionState.viewEnd));
        benchmark::DoNotOptimize(orv::picturecontents(picture).constBits());
    }
};

void impulsedraw(benchmark::State& state) {
    openplot open;
    const bool fresh = state.range(0) != 0;
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    const auto handover = [&] {
        image.fill(Qt::white);
        for (int x = 0; x < width; ++x) painter.fillRect(x, x / 2, 1, height, Qt::black);
        painter.setPen(QPen(Qt::blue, 2));
        for (int x = 1; x < width; ++x) painter.drawLine(x - 1, x / 2, x, (x + 1) / 2);
    };
    const orv::besttimes best = orv::timeinturn(state, handover, [&] {
        if (fresh) orv::forgetlevels();
        open.draw();
    });
    state.counters["handed_ms"] = best.floor * 1000;
    state.counters["impulsedraw_ms"] = best.routine * 1000;
    state.counters["ratio"] = best.routine / best.floor;
}
BENCHMARK(impulsedraw)->Arg(0)->Arg(1)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

void movecursor(benchmark::State& state) {
    openplot open;
    open.draw();
    const orv::besttimes best = orv::timeinturn(
        state, [&] { open.draw(); },
        [&] {
            orv::updatecursor(orv::ResponsePlot.cursorStart > 1 ? 0.5 : 1.5, 1);
            benchmark::DoNotOptimize(orv::picturecontents(open.picture).constBits());
        });
    state.counters["whole_ms"] = best.floor * 1000;
    state.counters["move_ms"] = best.routine * 1000;
    state.counters["ratio"] = best.routine / best.floor;
}
BENCHMARK(movecursor)->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

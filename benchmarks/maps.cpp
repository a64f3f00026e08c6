// How fast a map of 500 x 500 cells comes: its field from 5000 receivers, against the tightest loop in double
// over flat arrays and against the plain loop that asks parametervalue for every weight; its cells painted,
// against QPainter filling the same rectangles; and the time of one column at the largest size, which is how
// long Escape waits for its answer.
#include "base/wideloops.h"
#include "benchmarks/floor.h"
#include "benchmarks/offscreen.h"
#include "maps/mapfield.h"
#include "maps/mapgrid.h"
#include "maps/mosaicmaps.h"
#include "platform/scripted/scripted.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "scene/paintersurface.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <benchmark/benchmark.h>

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

constexpr int cells = 500, receivers = 5000, width = 1600, height = 1000;
constexpr double roomlength = 80, roomwidth = 50;

void fillsession(std::int32_t count) {
    orv::scripted::record(false);
    orv::resetcommands();
    orv::RoomModel.receiverCount = count;
    for (std::int32_t i = 1; i <= count; ++i) {
        const float k = static_cast<float>(i);
        orv::RoomModel.receiverX(i) = std::fmod(k * 7.31F, static_cast<float>(roomlength));
        orv::RoomModel.receiverY(i) = std::fmod(k * 3.77F, static_cast<float>(roomwidth));
        orv::RoomModel.receiverZ(i) = 1.2F;
        orv::ParameterSet.Leq(i, 12) = 60 + std::fmod(k * 1.13F, 20.0F);
    }
    orv::extendbox(0, 0, 0);
    orv::extendbox(static_cast<float>(roomlength), static_cast<float>(roomwidth), 10);
    orv::sessionstate& s = orv::SessionState;
    s.focalLength = 0.05F;
    s.parameterName = "Leq";
    s.bandIndex = 12;
    s.Nx = s.Ny = cells;
    s.minLevel = 60;
    s.maxLevel = 80;
    s.colourSchemeIndex = 6;
}

double place(int cell, double length) {
    return (cell + 0.5) * length / cells;
}

// One cell of the field by a loop that has nothing else to do, its sums in parts.
ORV_WIDELOOPS
double tightest(const double* first, const double* second, const double* value, std::size_t count, double c1,
                double c2) {
    constexpr std::size_t parts = 16;
    double weights[parts] = {}, values[parts] = {};
    for (std::size_t i = 0; i + parts <= count; i += parts)
        for (std::size_t k = 0; k < parts; ++k) {
            const double d1 = first[i + k] - c1, d2 = second[i + k] - c2;
            const double squared = d1 * d1 + d2 * d2;
            const double w = 1 / (squared < 0.1 ? 0.1 : squared);
            weights[k] += w;
            values[k] += w * value[i + k];
        }
    double weight = 0, sum = 0;
    for (std::size_t k = 0; k < parts; ++k) {
        weight += weights[k];
        sum += values[k];
    }
    return sum / weight;
}

double plain(double c1, double c2) {
    double weights = 0, values = 0;
    for (std::int32_t i = 1; i <= orv::RoomModel.receiverCount; ++i) {
        const double d1 = static_cast<double>(orv::RoomModel.receiverX(i)) - c1;
        const double d2 = static_cast<double>(orv::RoomModel.receiverY(i)) - c2;
        const double w = 1 / std::max(0.1, d1 * d1 + d2 * d2);
        weights += w;
        values += w * orv::parametervalue(i, orv::SessionState.bandIndex);
    }
    return values / weights;
}

void field(benchmark::State& state) {
    fillsession(receivers / 16 * 16);
    const double weights = 1.0 * cells * cells * orv::RoomModel.receiverCount;
    const orv::mapreceivers flat = orv::receiversofmap();
    std::vector<double> c2, column(cells), floor(cells * cells), routine(cells * cells);
    for (int j = 0; j < cells; ++j) c2.push_back(place(j, roomwidth));
    const orv::besttimes best = orv::timeinturn(
        state,
        [&] {
            for (int i = 0; i < cells; ++i)
                for (int j = 0; j < cells; ++j)
                    floor[static_cast<std::size_t>(i * cells + j)] =
                        tightest(flat.first.data(), flat.second.data(), flat.value.data(), flat.value.size(),
                                 place(i, roomlength), c2[static_cast<std::size_t>(j)]);
        },
        [&] {
            for (int i = 0; i < cells; ++i) {
                orv::fieldcolumn(flat, place(i, roomlength), c2, column);
                std::copy(column.begin(), column.end(), routine.begin() + i * cells);
            }
        });
    // The plain loop over one column in fifty.
    const auto start = std::chrono::steady_clock::now();
    double difference = 0, asked = 0;
    for (int i = 0; i < cells; i += 50)
        for (int j = 0; j < cells; ++j) {
            const double expected = plain(place(i, roomlength), c2[static_cast<std::size_t>(j)]);
            asked += orv::RoomModel.receiverCount;
            difference = std::max(difference,
                                  std::fabs(routine[static_cast<std::size_t>(i * cells + j)] / expected - 1));
        }
    state.counters["plain_ns"] = orv::secondssince(start) / asked * 1e9;
    state.counters["tightest_ns"] = best.floor / weights * 1e9;
    state.counters["field_ns"] = best.routine / weights * 1e9;
    state.counters["ratio"] = best.routine / best.floor;
    state.counters["gain"] = state.counters["plain_ns"] / state.counters["field_ns"];
    state.counters["difference"] = difference;
}
BENCHMARK(field)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

// One column of 500 cells over 100000 receivers.
void column(benchmark::State& state) {
    fillsession(orv::highestreceiver);
    const orv::mapreceivers flat = orv::receiversofmap();
    std::vector<double> c2, values(cells);
    for (int j = 0; j < cells; ++j) c2.push_back(place(j, roomwidth));
    for (auto _ : state) orv::fieldcolumn(flat, 1, c2, values);
}
BENCHMARK(column)->Unit(benchmark::kMillisecond);

// A map from a grid, so that no field is computed.
void fillgrid() {
    fillsession(1);
    orv::SessionState.useSurfer = true;
    orv::SessionState.gridReady = -1;
    for (int j = 0; j < cells; ++j)
        for (int i = 0; i < cells; ++i)
            orv::MapGrid(j, i) = 60 + static_cast<float>((i * 7 + j * 3) % 200) / 10;
}

// The cells of the map in pixels, with their colours.
struct painted {
    QRect where;
    QColor colour;
};
std::vector<painted> paintedcells(const orv::DrawSurface& like) {
    std::vector<painted> ready;
    orv::DrawSurface surface = like;
    surface.device.context = &ready;
    surface.device.box = [](void* to, const orv::surfacepen& pen, const std::int32_t*, double x1, double y1,
                            double x2, double y2) {
        const auto pixel = [](double value) { return static_cast<int>(std::floor(value)); };
        static_cast<std::vector<painted>*>(to)->push_back(
            {QRect(QPoint(pixel(x1), pixel(y1)), QPoint(pixel(x2), pixel(y2))),
             QColor(pen.colour & 255, pen.colour >> 8 & 255, pen.colour >> 16 & 255)});
    };
    surface.device.filledbox = [](void*, const orv::surfacepen&, double, double, double, double) {};
    surface.device.line = [](void*, const orv::surfacepen&, double, double, double, double) {};
    surface.device.circle = [](void*, const orv::surfacepen&, const std::int32_t*, double, double, double) {};
    surface.device.text = [](void*, const orv::surfacepen&, double, double, std::string_view) {};
    surface.device.textwidth = [](void*, std::string_view) { return 8.0; };
    surface.device.keep = surface.device.restore = nullptr;
    orv::drawdither2d(surface);
    return ready;
}

double secondsof3dmap(orv::DrawSurface& surface) {
    orv::sessionstate& s = orv::SessionState;
    orv::platform::setvisible("Frame1", true);
    s.cameraX = s.cameraY = -60;
    s.cameraZ = 60;
    s.targetX = 40;
    s.targetY = 25;
    const auto start = std::chrono::steady_clock::now();
    orv::drawdither3d(surface, true);
    return orv::secondssince(start);
}

void painting(benchmark::State& state) {
    const orv::offscreenqt qt;
    fillgrid();
    orv::paintersurface picture(width, height, 1);
    orv::scripted::setpicture(&picture.surface);
    const std::vector<painted> ready = paintedcells(picture.surface);
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    const orv::besttimes best = orv::timeinturn(
        state,
        [&] {
            for (const painted& cell : ready) painter.fillRect(cell.where, cell.colour);
        },
        [&] { orv::drawdither2d(picture.surface); });
    state.counters["filled_ms"] = best.floor * 1000;
    state.counters["map_ms"] = best.routine * 1000;
    state.counters["ratio"] = best.routine / best.floor;
    state.counters["map3d_ms"] = secondsof3dmap(picture.surface) * 1000;
}
BENCHMARK(painting)->Iterations(10)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

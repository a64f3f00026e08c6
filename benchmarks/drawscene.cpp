// How fast draw3dview draws the largest room with all its receivers and their labels on a picture of 1600 x
// 1000, against the time that QPainter takes when it is handed the very same lines, circles and texts in
// whole pixels, ready made and sorted by pen. Both run in turn; the ratio is that of the best times. It
// should be 3 or below.
#include "benchmarks/floor.h"
#include "benchmarks/offscreen.h"
#include "platform/scripted/scripted.h"
#include "room/geometryreader.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"
#include "scene/paintersurface.h"
#include "scene/scenedrawing.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <benchmark/benchmark.h>

#include <QString>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int width = 1600, height = 1000;

// What reaches the device of a drawing, in whole pixels.
struct handedover {
    struct word {
        QPoint at;
        QString text;
    };
    std::vector<QLine> lines;
    std::vector<QRect> circles;
    std::vector<word> words;
};

handedover& collected(void* context) {
    return *static_cast<handedover*>(context);
}

// A surface that draws like `like` and collects instead.
orv::DrawSurface collector(const orv::DrawSurface& like, handedover& into) {
    orv::DrawSurface surface = like;
    const auto whole = [](double value) { return static_cast<int>(std::floor(value)); };
    static constexpr auto pixel = whole;
    surface.device.context = &into;
    surface.device.clear = [](void*, std::int32_t) {};
    surface.device.line = [](void* to, const orv::surfacepen&, double x1, double y1, double x2, double y2) {
        collected(to).lines.emplace_back(pixel(x1), pixel(y1), pixel(x2), pixel(y2));
    };
    surface.device.box = [](void* to, const orv::surfacepen&, const std::int32_t*, double x1, double y1,
                            double x2, double y2) {
        const int l = pixel(x1), t = pixel(y1), r = pixel(x2), b = pixel(y2);
        for (const QLine side : {QLine(l, t, r, t), QLine(r, t, r, b), QLine(r, b, l, b), QLine(l, b, l, t)})
            collected(to).lines.push_back(side);
    };
    surface.device.circle = [](void* to, const orv::surfacepen&, const std::int32_t*, double x, double y,
                               double radius) {
        const int r = static_cast<int>(std::lround(radius));
        collected(to).circles.emplace_back(pixel(x) - r, pixel(y) - r, 2 * r, 2 * r);
    };
    surface.device.text = [](void* to, const orv::surfacepen&, double x, double y, std::string_view words) {
        collected(to).words.push_back(
            {QPoint(pixel(x), pixel(y)), QString::fromStdString(std::string(words))});
    };
    surface.device.textwidth = [](void*, std::string_view words) {
        return 8.0 * static_cast<double>(words.size());
    };
    surface.device.keep = surface.device.restore = nullptr;
    return surface;
}

void loadlargestroom() {
    const std::string path =
        (std::filesystem::temp_directory_path() / "orvanta_benchmark_scene.ray").string();
    orv::samples::writebiggeometry(path, orv::highestface, orv::highestreceiver);
    orv::scripted::record(false);
    orv::resetcommands();
    orv::loadgeometry(path);
    std::filesystem::remove(path);
}

// Outside the room, with all of it in view.
void setcamera() {
    const orv::roommodel& r = orv::RoomModel;
    orv::sessionstate& s = orv::SessionState;
    s.focalLength = 0.05F;
    s.cameraX = r.roomMinX - (r.roomMaxX - r.roomMinX);
    s.cameraY = r.roomMinY - (r.roomMaxY - r.roomMinY);
    s.cameraZ = 2 * r.roomMaxZ;
    s.targetX = r.roomCentreX;
    s.targetY = r.roomCentreY;
    s.targetZ = r.roomCentreZ;
}

void drawscene(benchmark::State& state) {
    const orv::offscreenqt qt;
    loadlargestroom();
    setcamera();
    orv::paintersurface picture(width, height, 1);
    orv::scripted::setpicture(&picture.surface);
    handedover ready;
    {
        orv::DrawSurface surface = collector(picture.surface, ready);
        orv::draw3dview(surface, true);
    }

    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(picture.font);
    const auto handover = [&] {
        image.fill(Qt::white);
        painter.setPen(Qt::black);
        painter.drawLines(ready.lines.data(), static_cast<int>(ready.lines.size()));
        painter.setPen(Qt::darkBlue);
        for (const QRect& circle : ready.circles) painter.drawEllipse(circle);
        painter.setPen(Qt::black);
        for (const handedover::word& word : ready.words) painter.drawText(word.at, word.text);
    };
    const orv::besttimes best = orv::timeinturn(state, handover, [&] {
        orv::draw3dview(picture.surface, true);
        benchmark::DoNotOptimize(orv::picturecontents(picture).constBits());
    });
    state.counters["handed_ms"] = best.floor * 1000;
    state.counters["draw3dview_ms"] = best.routine * 1000;
    state.counters["ratio"] = best.routine / best.floor;
    state.counters["lines"] = static_cast<double>(ready.lines.size());
    state.counters["circles"] = static_cast<double>(ready.circles.size());
    state.counters["texts"] = static_cast<double>(ready.words.size());
}
BENCHMARK(drawscene)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

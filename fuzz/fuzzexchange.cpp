// Fuzz target of the files that maps are exchanged in: blanking lines, grid, levels, point data and contours.
// The first byte says which. Any input is taken or refused by an error of its own; what was read can be
// written and is read again.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "maps/automation.h"
#include "maps/blanking.h"
#include "maps/contourmaps.h"
#include "maps/pointdata.h"
#include "maps/surfer.h"
#include "room/roommodel.h"
#include "scene/recordsurface.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>

namespace {

constexpr const char* name = "exchanged";
constexpr const char* copy = "copied";
constexpr std::size_t fewnodes = 2500; // above, tracing takes too long

orv::recordsurface canvas(100, 100);

void prepare() {
    orv::enterscratch();
    orv::scripted::setpicture(&canvas.surface);
}

std::string bytesof(const char* path) {
    const orv::filebytes bytes = orv::readfile(path);
    return std::string(std::string_view(bytes));
}

void blanking() {
    orv::blankingpolygons(name);
    orv::readblanking(name);
    orv::writeblanking(name);
    const std::int32_t count = orv::BlankingLines.blanklineCount;
    if (!orv::attempt([] { orv::readblanking(name); }) || orv::BlankingLines.blanklineCount != count)
        std::abort();
}

void grid() {
    const orv::regulargrid read = orv::readgrid(name);
    if (read.values.size() > fewnodes) return;
    double zlo = 0, zhi = 0;
    if (!orv::valuerange(read, zlo, zhi)) return;
    orv::writegrid(copy, read);
    const std::string first = bytesof(copy);
    orv::writegrid(copy, orv::readgrid(copy));
    if (bytesof(copy) != first) std::abort();
    orv::engine::application engine = orv::engine::start();
    orv::engine::document& plot = orv::engine::DocumentsAdd(engine);
    orv::engine::contouroverlay& overlay = orv::engine::AddContourMap(plot, copy).Overlays.front();
    overlay.Levels = {{zlo, 1}, {zlo / 2 + zhi / 2, 5}, {zhi, 2}};
    overlay.SmoothContours = 4;
    orv::engine::Export(plot, copy);
}

void points() {
    const orv::scatteredpoints read = orv::readpointdata(name);
    if (read.count() > 40) return;
    for (int method = 1; method <= 6; ++method)
        orv::attempt([&] { orv::gridpoints(read, {5, 4, 0, 8, 0, 6}, orv::methodof(method)); });
}

void contours() {
    orv::replacefile(orv::contourfilename(), bytesof(name));
    orv::SessionState.gridReady = orv::SessionState.contourReady = -1;
    orv::SessionState.Nx = orv::SessionState.Ny = 5;
    orv::SessionState.maxLevel = 1;
    orv::SessionState.focalLength = 0.05F;
    orv::SessionState.colourSchemeIndex = 6;
    orv::resetroom();
    orv::extendbox(0, 0, 0);
    orv::extendbox(8, 6, 2);
    orv::drawcontour2d(canvas.surface);
    canvas.lines.clear();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    if (size == 0) return 0;
    orv::replacefile(name, {reinterpret_cast<const char*>(data) + 1, size - 1});
    constexpr void (*targets[])() = {blanking, grid, [] { orv::readlevels(name); }, points, contours};
    orv::attempt(targets[data[0] % std::size(targets)]);
    return 0;
}

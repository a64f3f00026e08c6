// How fast loaddxf reads the largest drawing there can be, with the planarity check, against the floor of a
// bare std::from_chars loop over the same bytes in memory, and how long attaching all openings to its faces
// takes.
#include "base/files.h"
#include "benchmarks/floor.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
#include "platform/scripted/scripted.h"
#include "room/geometryreader.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"
#include "shell/sessionstate.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

const std::string home = (std::filesystem::temp_directory_path() / "orvanta_benchmark_dxf").string();
const std::string drawing = home + "/room.dxf";

// The room of tiles, with as many openings as there can be: each a small square on the tile of a face, spread
// over the first faces that may have some, or, lying in no face, beside the room.
void writedrawing(bool openings, bool infaces) {
    orv::roommodel& r = orv::RoomModel;
    const std::string room = home + "/room.ray";
    std::filesystem::create_directories(home);
    orv::scripted::record(false);
    orv::samples::writebiggeometry(room, orv::highestface, 1);
    orv::loadgeometry(room);
    const auto place = [&](int i, int v, auto& x, auto& y, auto& z) {
        const std::int32_t face = 1 + i * 23; // up to 32767
        const float shift = infaces ? 0 : 1000;
        x(i, v) = r.faceVertexX(face, v) + shift;
        y(i, v) = r.faceVertexY(face, v);
        z(i, v) = r.faceVertexZ(face, v);
    };
    r.holeCount = openings ? orv::highesthole : 0;
    r.doorCount = openings ? orv::highestdoor : 0;
    for (int i = 1; i <= r.holeCount; ++i)
        for (int v = r.holeVertexCount(i) = 4; v > 0; --v)
            place(i, v, r.holeVertexX, r.holeVertexY, r.holeVertexZ);
    for (int i = 1; i <= r.doorCount; ++i) {
        r.doorMaterial(i) = 1;
        for (int v = r.doorVertexCount(i) = 4; v > 0; --v)
            place(i, v, r.doorVertexX, r.doorVertexY, r.doorVertexZ);
    }
    orv::savedxf(drawing);
    orv::replacefile(home + "/Orvanta.mat", "0 neutral,\r\n1 wall,\r\n");
    orv::SessionState.dataDirectory = home;
}

void load() {
    orv::scripted::expectbox("DXFIN", orv::platform::answer::yes);
    orv::loaddxf(drawing);
}

void loaddxf(benchmark::State& state) {
    writedrawing(false, false);
    const orv::filebytes bytes = orv::readfile(drawing);
    load();
    const orv::besttimes best = orv::timeinturn(
        state, [&] { benchmark::DoNotOptimize(orv::parseall(bytes)); }, load);
    if (orv::RoomModel.faceCount != orv::highestface) state.SkipWithError("the room was not read whole");
    orv::tellrates(state, bytes.size, best);
    std::filesystem::remove_all(home);
}
BENCHMARK(loaddxf)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

// What a load takes longer for its 400 holes and 1000 doors, reading them included.
void attachopenings(benchmark::State& state) {
    writedrawing(false, false);
    load();
    const std::string plain = home + "/plain.dxf";
    std::filesystem::rename(drawing, plain);
    writedrawing(true, state.range(0) != 0);
    const auto loadplain = [&] {
        orv::scripted::expectbox("DXFIN", orv::platform::answer::yes);
        orv::loaddxf(plain);
    };
    const orv::besttimes best = orv::timeinturn(state, loadplain, load);
    if (orv::RoomModel.doorCount != orv::highestdoor) state.SkipWithError("the room was not read whole");
    state.counters["attach_ms"] = (best.routine - best.floor) * 1e3;
    std::filesystem::remove_all(home);
}
BENCHMARK(attachopenings)
    ->ArgName("infaces")
    ->Arg(1)
    ->Arg(0)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2);

} // namespace

// How fast savecatt writes 75000 faces, most of whose corners are shared, against the floor of writing the
// same text with a list of corners that is known already: every corner's coordinates by their pattern, every
// face's corner numbers by std::to_chars, and the file. The time should be at most 3 times the floor's.
#include "base/files.h"
#include "base/formatpattern.h"
#include "benchmarks/floor.h"
#include "interchange/cattwriter.h"
#include "platform/scripted/scripted.h"
#include "room/geometryreader.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"
#include "shell/sessionstate.h"

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace {

using corner = std::array<float, 3>;

struct knownlist {
    std::vector<corner> corners;
    std::vector<int> numbers;
};

// By an ordered search, independent of the writer's.
knownlist listcorners() {
    knownlist list;
    std::map<corner, int> found;
    const orv::roommodel& r = orv::RoomModel;
    for (int face = 1; face <= r.faceCount; ++face) {
        for (int v = 1; v <= r.faceVertexCount(face); ++v) {
            const corner at = {r.faceVertexX(face, v), r.faceVertexY(face, v), r.faceVertexZ(face, v)};
            const auto [entry, added] = found.try_emplace(at, static_cast<int>(list.corners.size()) + 1);
            if (added) list.corners.push_back(at);
            list.numbers.push_back(entry->second);
        }
    }
    return list;
}

void addwhole(std::string& text, int number) {
    char form[16];
    text.append(1, ' ').append(form, std::to_chars(form, form + sizeof form, number).ptr);
}

std::string barefile(const knownlist& list) {
    std::string text;
    int number = 0;
    for (const corner& at : list.corners) {
        addwhole(text, ++number);
        for (const float coordinate : at)
            orv::appendformatted(text.append(1, ' '), coordinate, "#####0.000000");
        text += "\r\n";
    }
    std::size_t vertex = 0;
    for (int face = 1; face <= orv::RoomModel.faceCount; ++face) {
        text += "[1 concrete / ";
        for (int v = 1; v <= orv::RoomModel.faceVertexCount(face); ++v)
            addwhole(text, list.numbers[vertex++]);
        text += " / Concrete ]\r\n";
    }
    return text;
}

void exportcatt(benchmark::State& state) {
    const auto directory = std::filesystem::temp_directory_path();
    const std::string room = (directory / "orvanta_benchmark_catt.ray").string();
    const std::string file = (directory / "orvanta_benchmark_catt.geo").string();
    orv::scripted::record(false);
    orv::SessionState.dataDirectory = DATA_FILES;
    orv::samples::writebiggeometry(room, orv::highestface, 1);
    orv::loadgeometry(room);
    const knownlist list = listcorners();
    const orv::besttimes best = orv::timeinturn(
        state, [&] { orv::replacefile(file, barefile(list)); }, [&] { orv::savecatt(file); });

    const orv::filebytes bytes = orv::readfile(file);
    const std::string last = "\r\n " + std::to_string(list.corners.size()) + " ";
    const std::string more = "\r\n " + std::to_string(list.corners.size() + 1) + " ";
    const std::string_view text = bytes;
    if (text.find(last) == text.npos || text.find(more) != text.npos)
        state.SkipWithError("the corners are not those of the ordered search");
    state.counters["MB"] = static_cast<double>(bytes.size) / 1e6;
    state.counters["corners"] = static_cast<double>(list.corners.size());
    state.counters["save_ms"] = best.routine * 1e3;
    state.counters["floor_ms"] = best.floor * 1e3;
    state.counters["ratio"] = best.routine / best.floor;
    std::filesystem::remove(room);
    std::filesystem::remove(file);
}
BENCHMARK(exportcatt)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace

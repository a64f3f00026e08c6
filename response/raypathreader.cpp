// The ray path file. Text, CR LF or LF; numbers separated by any mix of blanks, commas and line ends, without
// header or count. One record after another until the end of the file:
//
//   receiver, source, time,         whole, whole, s
//   ten energies,                   bands 31.5 Hz to 16 kHz
//   P,                              how many reflection points follow
//   face, x, y, z, ...              P times: whole, m
//
// Of more than ten points the first ten are read, and what is left of the line that the reader then stands
// on is dropped; nowhere else do line ends matter. Receiver 0 may have paths too.
#include "response/raypathreader.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "base/table.h"
#include "platform/platform.h"
#include "response/raypathset.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

namespace orv {

namespace {

// What is the same for all records of a file.
struct correction {
    bool wanted = false; // without beta there is none, whatever alfa is
    double reference = 0, critical = 0, alfa = 0;
    std::array<double, octavebands> weight{};
};

correction presentcorrection() {
    const resultset& R = ResultSet;
    correction now;
    now.wanted = R.betaConstant > 0;
    // Receiver 0's delay for every receiver; meant.
    now.reference = R.receiverDelay.empty() ? 0 : R.receiverDelay[0];
    now.critical = wide(R.criticalTime);
    now.alfa = wide(R.alfaConstant);
    for (std::size_t i = 0; i < octavebands; ++i) now.weight[i] = wide(SessionState.aWeight[i + 1]);
    return now;
}

// The late energy factor of an arrival, 1 at the reference time and before.
double latefactor(const correction& now, double time) {
    const double behind = time - now.reference;
    if (!now.wanted || !(behind > 0)) return 1;
    const double w = lateenergyfactor(now.critical, now.alfa, behind);
    if (std::isnan(w)) throw runtimeerror{errorkind::domain, "the late energy factor cannot be computed"};
    return w;
}

// The ten energies, corrected, with their weighted and linear sums.
void readenergies(listreader& file, const correction& now, raypath& path) {
    const double w = latefactor(now, path.time);
    double weighted = 0, linear = 0;
    for (std::size_t i = 0; i < octavebands; ++i) {
        path.energy[i + 1] = single(quotient(readnumber(file), w));
        const auto stored = wide(path.energy[i + 1]);
        linear += stored;
        weighted += stored * now.weight[i];
    }
    path.energy[weightedband] = single(weighted);
    path.energy[linearband] = single(linear);
}

void readpoints(listreader& file, raypath& path) {
    const std::int32_t stated = readwhole32(file);
    path.pointCount = std::min(stated, pathpoints);
    for (std::int32_t j = 1; j <= path.pointCount; ++j) {
        const auto i = static_cast<std::size_t>(j);
        path.face[i] = readwhole32(file);
        float place[3];
        readsingles(file, place);
        path.x[i] = place[0];
        path.y[i] = place[1];
        path.z[i] = place[2];
    }
    if (stated > pathpoints) readline(file);
}

// Reads one record. Returns false where the file or the load ends.
bool readrecord(listreader& file, const correction& now) {
    if (nothingleft(file)) return false;
    const std::int32_t receiver = readwhole32(file);
    if (receiver > RoomModel.receiverCount) return false;
    if (receiver < 0) subscriptfailure("RayPathSet receiver", receiver, 0, RoomModel.receiverCount);
    const auto r = static_cast<std::size_t>(receiver);
    raypath& path = RayPathSet.paths[r].emplace_back();
    ++RayPathSet.pathCountOf[r];
    path.source = readwhole32(file);
    path.time = readnumber(file);
    readenergies(file, now, path);
    readpoints(file, path);
    return true;
}

// Passes a failure on with the record's number in front.
[[noreturn]] void recordfailure(const listreader& file, std::int64_t record, const runtimeerror& error) {
    const std::string_view text = error.text;
    const std::string begun = file.name + ", ";
    throw runtimeerror{error.kind,
                       begun + "record " + trimmedwhole(record) + ": " +
                           std::string(text.starts_with(begun) ? text.substr(begun.size()) : text)};
}

void readrecords(listreader& file) {
    const correction now = presentcorrection();
    const double blocks = progressblocks(file);
    double percent = -1;
    std::string progress;
    for (std::int64_t record = 1;; ++record) {
        try {
            if (!readrecord(file, now)) return;
        } catch (const runtimeerror& error) {
            recordfailure(file, record, error);
        }
        if (blocks > 0) { // a file of half a block or less has no progress to tell
            const double reached = Int(static_cast<double>(file.position) / progressblock / blocks * 100);
            if (std::exchange(percent, reached) != reached) progress = numbertext(reached) + "%";
            platform::statustext(2, progress);
        }
        platform::yield();
    }
}

// The paths by time, equal ones as they were. Their places are sorted and each path is moved once.
void sortbytime(std::vector<raypath>& paths) {
    const auto earlier = [](const raypath& a, const raypath& b) { return a.time < b.time; };
    if (std::is_sorted(paths.begin(), paths.end(), earlier)) return;
    std::vector<std::pair<double, std::uint32_t>> order(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) order[i] = {paths[i].time, static_cast<std::uint32_t>(i)};
    std::sort(order.begin(), order.end());
    std::vector<raypath> sorted;
    sorted.reserve(paths.size());
    for (const auto& [time, place] : order) sorted.push_back(paths[place]);
    paths = std::move(sorted);
}

} // namespace

void loadchiocc(const std::string& name) {
    platform::statustext(1, "Loading ray paths from " + pagetext(name) + " ...");
    dummyredim();
    SessionState.pathsExist = true;
    {
        const filebytes bytes = readfile(name);
        listreader file = openlist(bytes, pagetext(name));
        readrecords(file);
    }
    auto& counts = RayPathSet.pathCountOf;
    counts[0] = std::accumulate(counts.begin() + 1, counts.end(), 0);
    for (std::size_t r = 1; r < RayPathSet.paths.size(); ++r) sortbytime(RayPathSet.paths[r]);
    platform::statustext(1, "");
    platform::statustext(2, "");
}

} // namespace orv

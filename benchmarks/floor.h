// The floor that readers are measured against: a bare std::from_chars loop over the same bytes in memory.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <limits>
#include <string_view>

namespace orv {

inline double secondssince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Best seconds of a floor and of a routine, which run in turn, so that whatever slows the machine slows both.
struct besttimes {
    double floor = std::numeric_limits<double>::max();
    double routine = std::numeric_limits<double>::max();
};
template <class first, class second>
besttimes timeinturn(benchmark::State& state, first floor, second routine) {
    besttimes best;
    for (auto _ : state) {
        auto start = std::chrono::steady_clock::now();
        floor();
        best.floor = std::min(best.floor, secondssince(start));

        start = std::chrono::steady_clock::now();
        routine();
        const double seconds = secondssince(start);
        best.routine = std::min(best.routine, seconds);
        state.SetIterationTime(seconds);
    }
    return best;
}

// The counters of a reader that has been timed in turn with the floor over a file of so many bytes.
inline void tellrates(benchmark::State& state, std::size_t bytes, const besttimes& best) {
    const double megabytes = static_cast<double>(bytes) / 1e6;
    state.counters["MB"] = megabytes;
    state.counters["load_MBps"] = megabytes / best.routine;
    state.counters["floor_MBps"] = megabytes / best.floor;
    state.counters["ratio"] = best.floor / best.routine;
}

// All numbers of a text, added up so that none can be left out.
inline double parseall(std::string_view text) {
    double sum = 0;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        if ((*at < '0' || *at > '9') && *at != '-' && *at != '.') {
            ++at;
            continue;
        }
        double value = 0;
        const auto parsed = std::from_chars(at, end, value);
        sum += value;
        at = parsed.ptr == at ? at + 1 : parsed.ptr;
    }
    return sum;
}

} // namespace orv

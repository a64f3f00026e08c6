// The tour again and again: does memory come back?
#define QT_NO_KEYWORDS // "slots" is a word of ours too

#include "tour/rounds.h"

#include "base/files.h"
#include "platform/qt/answers.h"
#include "results/resultset.h"
#include "samples/samplefiles.h"
#include "tour/checks.h"

#include <QPixmapCache>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <malloc.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace orv::tour {

namespace {

constexpr int growth = 50; // receivers that a round's large result has more than that of the round before
constexpr double megabyte = 1e6;
constexpr double highestgrowth = 0.5; // MB of heap that may be in use beyond that of the second round

int presentround = 0;

// Opens a result that is larger in each round, in a room of its own.
void largeresult() {
    samples::bigoptions options;
    options.receivers = growth * presentround;
    options.slots = 1000;
    samples::writebiggeometry(datafile("large.RAY"), growth * presentround, options.receivers);
    samples::writebigresult(datafile("large._01"), options);
    answers::expectfile("Load an Impulse Response File and its Geometry", datafile("large._01"));
    expectspeechindex(platform::answer::no);
    choose("OpenRes");
    check(ImpulseResponse.receivers == options.receivers, "the large result was not read whole");
}

// Opens the sample hall, whose memory is that of the first time then.
void smallresult() {
    std::filesystem::remove(datafile("hall.-01"));
    answers::expectfile("Load an Impulse Response File and its Geometry", datafile("hall._01"));
    expectspeechindex(platform::answer::no);
    choose("OpenRes");
    check(ImpulseResponse.receivers == receivers, "the result was not read whole");
}

constexpr step sizes[] = {{"A large result", largeresult, ""}, {"The small result again", smallresult, ""}};

// Live bytes of the heap, after what is free has gone back to the system.
std::size_t liveheap() {
    malloc_trim(0);
    const struct mallinfo2 state = mallinfo2();
    return state.uordblks + state.hblkhd;
}

std::size_t resident() {
    const filebytes text = readfile("/proc/self/statm"); // pages: of the address space, resident, ...
    const std::string_view pages(text);
    return std::stoul(std::string(pages.substr(pages.find(' ') + 1))) *
           static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

bool runrounds(std::span<const step> steps, std::size_t begin, const std::string& output, int rounds) {
    QPixmapCache::setCacheLimit(0); // Qt keeps pictures of icons, up to 10 MB, which would hide what we keep
    bool good = run(steps.first(begin), output);
    double second = 0;
    const auto round = steps.subspan(begin, steps.size() - begin - 1);
    for (presentround = 1; presentround <= rounds; ++presentround) {
        good = run(round, output) && good;
        good = run(sizes, output) && good;
        const double heap = static_cast<double>(liveheap()) / megabyte;
        if (presentround == 2) second = heap;
        std::printf("Round %d: %.1f MB resident, %.2f MB of heap in use\n", presentround,
                    static_cast<double>(resident()) / megabyte, heap);
        if (presentround < 3 || heap < second + highestgrowth) continue;
        std::puts("Memory does not come back.");
        good = false;
    }
    return run(steps.last(1), output) && good;
}

} // namespace orv::tour

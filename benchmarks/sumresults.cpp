// How fast sumresults adds up four results of 200 receivers x 2000 slots (about 40 MB each), delayed by
// broken slots and weighed, against a bare loop that reads the numbers of the four with std::from_chars and
// writes those of one with std::to_chars, all in memory. Both run in turn; the ratio is that of the best
// times and should be 0.5 or above. `peak_MB` is the memory that the sum takes at most: one receiver of the
// output and of an input, and the index.
#include "tools/sumresults.h"
#include "base/files.h"
#include "benchmarks/floor.h"
#include "benchmarks/memory.h"
#include "platform/scripted/scripted.h"
#include "samples/samplefiles.h"
#include "tools/jobfile.h"

#include <benchmark/benchmark.h>

#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int receivers = 200, slots = 2000, inputs = 4;
constexpr std::size_t linelength = 16; // characters that a number takes at most, and a blank

// The numbers of a text, as parseall finds them.
std::vector<double> numbersof(std::string_view text) {
    std::vector<double> values;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        double value = 0;
        const auto parsed = std::from_chars(at, end, value);
        if (parsed.ptr != at) values.push_back(value);
        at = parsed.ptr == at ? at + 1 : parsed.ptr;
    }
    return values;
}

void writeall(const std::vector<double>& values, std::vector<char>& text) {
    char* at = text.data();
    char* const end = at + text.size();
    for (const double value : values) {
        at = std::to_chars(at, end, value, std::chars_format::scientific, 6).ptr;
        *at++ = ' ';
    }
    benchmark::DoNotOptimize(text.data());
}

void sumresults(benchmark::State& state) {
    orv::scripted::record(false);
    const auto folder = std::filesystem::temp_directory_path() / "orvanta_benchmark";
    std::filesystem::create_directories(folder);
    orv::sumjob job{folder.string(), "sum.___", {}};
    for (int i = 1; i <= inputs; ++i) {
        addjobfile(job, "part._0" + std::to_string(i));
        orv::jobrow& row = job.files.back();
        row.cell[0] = std::to_string(i) + ".5";
        row.cell[6] = "-3";
        orv::samples::bigoptions options;
        options.receivers = receivers;
        options.slots = slots;
        options.seed = static_cast<std::uint64_t>(i);
        orv::samples::writebigresult((folder / row.name).string(), options);
    }
    const std::string jobfile = (folder / "sum.job").string();
    orv::writejob(jobfile, job);

    static const double peak = [&jobfile] {
        const double before = orv::memoryfigure("VmHWM");
        orv::sumresults(jobfile);
        return orv::memoryfigure("VmHWM") - before;
    }();
    std::vector<orv::filebytes> bytes;
    for (const orv::jobrow& row : job.files) bytes.push_back(orv::readfile((folder / row.name).string()));
    const orv::filebytes summed = orv::readfile((folder / job.output).string());
    const std::vector<double> numbers = numbersof(summed);
    std::vector<char> text(numbers.size() * linelength);

    const orv::besttimes best = orv::timeinturn(
        state,
        [&] {
            for (const orv::filebytes& each : bytes) benchmark::DoNotOptimize(orv::parseall(each));
            writeall(numbers, text);
        },
        [&] { orv::sumresults(jobfile); });
    std::filesystem::remove_all(folder);
    if (summed.size < bytes[0].size / 2) state.SkipWithError("the sum was not written whole");
    state.counters["floor_ms"] = best.floor * 1000;
    state.counters["sum_ms"] = best.routine * 1000;
    state.counters["ratio"] = best.floor / best.routine;
    state.counters["peak_MB"] = peak / 1e6;
}
BENCHMARK(sumresults)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

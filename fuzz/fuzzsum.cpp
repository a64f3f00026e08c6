// Fuzz target of the readers of results in the summation engine and the optimizer. Any input is a sum or an
// error that leaves no output behind, and a chart or an error that leaves nothing loaded.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "shell/startup.h"
#include "tools/jobfile.h"
#include "tools/optimizer.h"
#include "tools/sumresults.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr std::uint64_t memory = std::uint64_t{32} << 20; // so that no input is slow

void prepare() {
    orv::enterscratch();
    orv::scripted::setmemory(memory);
    orv::computeconstants();
    orv::sumjob job{"", "sum", {}};
    for (int file = 0; file < 2; ++file) {
        orv::addjobfile(job, "a");
        job.files.back().cell = {
            file == 0 ? "0" : "1.5", "1", "2", "3", "4", "5", "-6", "7", "8", "9", "-30"};
    }
    orv::writejob("job", job);
}

void sum() {
    std::filesystem::remove("sum");
    try {
        orv::sumresults("job");
    } catch (const orv::runtimeerror&) {
        if (std::filesystem::exists("sum") || std::filesystem::exists("sum.new")) std::abort();
    }
}

void chart() {
    orv::openoptimizer();
    for (const int file : {0, 1, 0}) {
        try {
            orv::loadoptimizerfile("a", file);
        } catch (const orv::runtimeerror&) {
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    orv::replacefile("a", {reinterpret_cast<const char*>(data), size});
    sum();
    chart();
    return 0;
}

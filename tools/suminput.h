// The inputs of a sum: where the blocks of their receivers begin, what their headers state, and how the job
// delays and weighs them. Their responses stay in the files.
#pragma once

#include "base/files.h"
#include "base/runtimeerror.h"
#include "shell/sessionstate.h"
#include "tools/jobfile.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orv {

constexpr int sumbands = octavebands;
using bandrow = std::array<double, sumbands>; // 31.5 Hz..16 kHz

// A header line: its ten characters, and all of it.
struct headerline {
    std::string key, text;
};

struct blockplace {
    std::int32_t receiver = 0;
    std::uint64_t begin = 0, end = 0; // bytes, from the title on
    std::size_t line = 0;             // of the title, from 1
};

struct suminput {
    std::string name; // for messages
    partreader file;
    std::vector<headerline> header;
    std::vector<blockplace> blocks; // as they stand in the file
    std::vector<blockplace> sorted; // by receiver, each once; the last block of a receiver counts

    double receivers = 0;               // as declared
    double length = 0, step = 0;        // s
    double firstband = 0, lastband = 9; // from 0, as the files count
    double format = 0;
    std::string source;
    std::int32_t slots = 0;

    std::int32_t shift = 0; // delay in slots: the whole ones, and the rest
    double fraction = 0;
    double delay = 0; // s
    bandrow gain{};   // factor of the energy

    suminput(const std::string& path, std::string shown) : name(std::move(shown)), file(path) {}
};

// Opens all inputs of a job in its order; yields and tells each in the status panel. Raises what sumresults
// raises for inputs that cannot be summed, but for the places of receivers, which are not read here.
std::vector<suminput> openinputs(const sumjob& job);

// The last header line with a key of ten characters; null when none has it.
const headerline* findheader(const suminput& input, std::string_view key);

// The block of a receiver that the input has.
const blockplace& placeof(const suminput& input, std::int32_t receiver);

// Raise domain: why there is no sum, or why two results have none.
[[noreturn]] void refusesum(const std::string& reason);
[[noreturn]] void refusepair(const suminput& first, const suminput& other, const std::string& reason);

// Runs a step. A failure of its arithmetic is raised with the file whose values led to it.
template <class step>
void tellfile(const suminput& input, step run) {
    try {
        run();
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::overflow && error.kind != errorkind::divisionbyzero) throw;
        throw runtimeerror{error.kind, input.name + ": " + error.text};
    }
}

// Yields. Raises cancelled when the sum has been stopped meanwhile.
void yieldunlessstopped();

} // namespace orv

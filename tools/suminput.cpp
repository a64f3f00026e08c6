// The first pass over the inputs of a sum. The format of a result stands in results/resultreader.cpp.
#include "tools/suminput.h"

#include "base/arithmetic.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "results/resultreader.h"
#include "tools/sumresults.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orv {

namespace {

constexpr std::size_t partsize = std::size_t{1} << 20; // bytes read at once
constexpr std::string_view titlekey = "[Microph";
constexpr double wholeslot = 1e-9; // a delay so near to whole slots is whole

// --- Where the blocks begin ---

// Whether an empty line ends in front of `at`, which is the start of a line and not of the text.
bool behindempty(std::string_view text, std::size_t at) {
    std::size_t end = at - 1; // the line feed
    if (end > 0 && text[end - 1] == '\r') --end;
    return end == 0 || text[end - 1] == '\n';
}

// The whole lines of a file from `position` on, about a part's size, or the rest of it.
void readlines(partreader& file, std::uint64_t position, std::string& part) {
    for (std::size_t count = partsize;; count *= 2) {
        file.read(position, count, part);
        if (part.size() < count) return;
        const std::size_t last = part.rfind('\n');
        if (last == std::string::npos) continue;
        part.resize(last + 1);
        return;
    }
}

// The search for titles, part by part.
struct titlesearch {
    std::uint64_t position = 0; // bytes in front of the part
    std::size_t line = 1;       // that the part begins with
    bool behindempty = false;   // the line in front of the part is an empty one
};

// Notes the titles in a part; one counts behind an empty line only.
void findtitles(suminput& input, titlesearch& search, std::string_view text) {
    std::size_t counted = 0; // lines up to here are in search.line
    const auto countlines = [&](std::size_t to) {
        search.line +=
            static_cast<std::size_t>(std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                                                text.begin() + static_cast<std::ptrdiff_t>(to), '\n'));
        counted = to;
    };
    for (std::size_t at = 0; (at = text.find(titlekey, at)) != std::string_view::npos;
         at += titlekey.size()) {
        if (at == 0 ? !search.behindempty : text[at - 1] != '\n' || !behindempty(text, at)) continue;
        countlines(at);
        const std::string_view title = text.substr(at, text.find('\n', at) - at);
        if (!input.blocks.empty()) input.blocks.back().end = search.position + at;
        input.blocks.push_back(
            {blocknumber(title.substr(titlekey.size())), search.position + at, 0, search.line});
    }
    countlines(text.size());
    search.behindempty = text.back() == '\n' && behindempty(text, text.size());
    search.position += text.size();
}

// By receiver, each once.
std::vector<blockplace> sortedblocks(const std::vector<blockplace>& blocks) {
    std::vector<blockplace> sorted = blocks;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const blockplace& a, const blockplace& b) { return a.receiver < b.receiver; });
    std::size_t kept = 0;
    for (const blockplace& block : sorted) {
        kept += kept == 0 || sorted[kept - 1].receiver != block.receiver;
        sorted[kept - 1] = block;
    }
    sorted.resize(kept);
    return sorted;
}

void indexblocks(suminput& input) {
    titlesearch search;
    std::string part;
    for (readlines(input.file, 0, part); !part.empty(); readlines(input.file, search.position, part)) {
        findtitles(input, search, part);
        yieldunlessstopped();
    }
    if (input.blocks.empty()) refusesum(input.name + " holds no receivers.");
    input.blocks.back().end = search.position;
    input.sorted = sortedblocks(input.blocks);
}

// --- Headers ---

// The lines in front of the first block, in the units that a load reads them in.
void readheader(suminput& input) {
    std::string text;
    input.file.read(0, static_cast<std::size_t>(input.blocks.front().begin), text);
    listreader file = openlist(text, input.name);
    while (!atend(file)) {
        const std::size_t begin = file.position;
        const std::string key = inp10char(file);
        if (!atend(file)) readline(file);
        std::string_view line = std::string_view(text).substr(begin, file.position - begin);
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
        if (!line.empty()) input.header.push_back({key, std::string(line)});
    }
}

std::string_view valueof(const headerline& line) {
    return behindmark(std::string_view(line.text).substr(line.key.size()), '=');
}

void takenumber(const suminput& input, std::string_view key, double& value) {
    if (const headerline* line = findheader(input, key)) value = lenientnumber(valueof(*line));
}

// The highest slot + 1 of a response, as a load computes it.
std::int32_t slotsof(double length, double step) {
    return whole32(Int(quotient(length, static_cast<double>(single(step))) + 0.5)) + 1;
}

void takeheader(suminput& input) {
    readheader(input);
    takenumber(input, "Microphone", input.receivers);
    takenumber(input, "First band", input.firstband);
    takenumber(input, "Last band ", input.lastband);
    takenumber(input, "Time      ", input.length);
    takenumber(input, "Precision ", input.step);
    takenumber(input, "Format    ", input.format);
    if (const headerline* line = findheader(input, "Name      ")) input.source = trimboth(valueof(*line));
    if (!(single(input.step) > 0)) refusesum(input.name + " states no time step (\"Precision\").");
    if (!(findheader(input, "Time      ") && input.length >= 0 &&
          input.length / input.step < std::numeric_limits<std::int32_t>::max() - 1.0))
        refusesum(input.name + " states no length of its responses (\"Time\") that can be used.");
    input.slots = slotsof(input.length, input.step);
}

// --- The job ---

double cellvalue(const jobrow& row, std::size_t cell) {
    return lenientnumber(row.cell.at(cell));
}

void takeweights(suminput& input, const jobrow& row) {
    const double milliseconds = cellvalue(row, 0);
    if (milliseconds < 0) refusesum("The delay of " + input.name + " is negative.");
    input.delay = milliseconds / 1000;
    double slots = quotient(input.delay, input.step);
    if (const double whole = std::nearbyint(slots);
        std::fabs(slots - whole) <= wholeslot * std::max(1.0, whole))
        slots = whole;
    if (!(slots + input.slots + 1 < std::numeric_limits<std::int32_t>::max()))
        refusesum("The delay of " + input.name + " is too long.");
    input.shift = static_cast<std::int32_t>(slots);
    input.fraction = slots - input.shift;
    for (std::size_t b = 0; b < sumbands; ++b) input.gain[b] = power(10, cellvalue(row, b + 1) / 10);
}

void comparevalues(const suminput& first, const suminput& other, const char* what, double a, double b) {
    if (a == b) return;
    refusepair(first, other,
               std::string(what) + " is " + trimmednumber(a) + " in the first and " + trimmednumber(b) +
                   " in the second");
}

// What one result has and another must have too. Places of receivers are compared when they are read.
void compare(const suminput& first, const suminput& other) {
    comparevalues(first, other, "the number of receivers (\"Microphones\")", first.receivers,
                  other.receivers);
    comparevalues(first, other, "the number of blocks of receivers", static_cast<double>(first.sorted.size()),
                  static_cast<double>(other.sorted.size()));
    for (std::size_t i = 0; i < first.sorted.size(); ++i)
        comparevalues(first, other, "a receiver", first.sorted[i].receiver, other.sorted[i].receiver);
    comparevalues(first, other, "the time step (\"Precision\")", static_cast<double>(single(first.step)),
                  static_cast<double>(single(other.step)));
    comparevalues(first, other, "the first band", first.firstband, other.firstband);
    comparevalues(first, other, "the last band", first.lastband, other.lastband);
}

} // namespace

std::vector<suminput> openinputs(const sumjob& job) {
    const std::string directory = existingpath(job.directory);
    std::vector<suminput> inputs;
    for (const jobrow& row : job.files) {
        platform::statustext(1, "Reading " + pagetext(row.name) + " ...");
        suminput& input =
            inputs.emplace_back(existingpath(joinpath(directory, row.name)), pagetext(row.name));
        indexblocks(input);
        tellfile(input, [&] {
            takeheader(input);
            takeweights(input, row);
        });
    }
    for (const suminput& input : inputs) compare(inputs.front(), input);
    return inputs;
}

const headerline* findheader(const suminput& input, std::string_view key) {
    const headerline* found = nullptr;
    for (const headerline& line : input.header)
        if (line.key == key) found = &line;
    return found;
}

const blockplace& placeof(const suminput& input, std::int32_t receiver) {
    return *std::lower_bound(
        input.sorted.begin(), input.sorted.end(), receiver,
        [](const blockplace& block, std::int32_t wanted) { return block.receiver < wanted; });
}

void refusesum(const std::string& reason) {
    throw runtimeerror{errorkind::domain, reason};
}

void refusepair(const suminput& first, const suminput& other, const std::string& reason) {
    refusesum(first.name + " and " + other.name + " cannot be summed: " + reason + ".");
}

void yieldunlessstopped() {
    platform::yield();
    if (SumRun.stop) throw runtimeerror{errorkind::cancelled, "The sum was stopped."};
}

} // namespace orv

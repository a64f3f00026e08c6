// Summing results receiver by receiver. A first pass over each file (tools/suminput.cpp) has noted where its
// blocks begin; the blocks of one receiver are read from all files, added up and written. The format of a
// result stands in results/resultreader.cpp.
#include "tools/sumresults.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "results/resultreader.h"
#include "results/resultset.h"
#include "tools/jobfile.h"
#include "tools/suminput.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

namespace orv {

sumrun SumRun;

namespace {

constexpr std::size_t positionlabel = 11, rowlabel = 6; // characters in front of the numbers
constexpr int positionnumbers = 6;
constexpr double earlytime = 0.08;   // s
constexpr double sameplace = 0.001;  // m
constexpr double memoryshare = 0.75; // of the machine's memory for the output's receiver
constexpr int bands = sumbands;
constexpr std::string_view outputformat = "1.2", nosource = "NONE";

// --- The job ---

// Raises where the output cannot take its place.
std::string outputpath(const sumjob& job, const std::string& jobfile) {
    if (job.files.empty()) refusesum("The job " + pagetext(jobfile) + " names no input files.");
    if (job.output.empty()) refusesum("The job " + pagetext(jobfile) + " names no output file.");
    const std::string directory = existingpath(job.directory);
    std::string output = joinpath(directory, job.output);
    for (const jobrow& row : job.files) {
        const std::string input = existingpath(joinpath(directory, row.name));
        std::error_code error;
        if (input == output || std::filesystem::equivalent(input, output, error))
            refusesum("The output file " + pagetext(job.output) + " is one of the input files.");
    }
    std::error_code error;
    if (std::filesystem::equivalent(jobfile, output, error))
        refusesum("The output file " + pagetext(job.output) + " is the job file.");
    return output;
}

// --- Blocks ---

// One receiver of one input.
struct inputblock {
    std::string bytes;
    listreader file;
    const suminput* input = nullptr;
    const blockplace* place = nullptr;
};

// The number at the block's reader. Raises with the line in the file.
double readvalue(inputblock& block) {
    const numberfield field = tryreadnumber(block.file);
    if (field.outcome == fieldoutcome::read) return field.value;
    const bool end = field.outcome == fieldoutcome::pastend;
    const std::size_t line = block.place->line + linenumber(block.file) - 1;
    throw runtimeerror{
        end ? errorkind::pastend : errorkind::typemismatch,
        block.input->name + ", line " + std::to_string(line) + ": the block of receiver " +
            trimmedwhole(block.place->receiver) +
            (end ? " ends where a number was expected." : " has no usable number where one was expected.")};
}

bandrow readrow(inputblock& block) {
    bandrow row;
    for (double& value : row) value = readvalue(block);
    return row;
}

void readblockline(inputblock& block, std::string_view& line) {
    if (atend(block.file)) readvalue(block); // raises
    line = readline(block.file);
}

// What a block has in front of its energies.
struct blockhead {
    std::string title, position; // as they stand
    std::array<double, 3> place{};
    double delay = 0; // s
    bandrow lateral[3]{};
};
enum lateralrow { lfc, le, lf };

void readplace(inputblock& block, blockhead& head) {
    const std::size_t begin = block.file.position;
    for (std::size_t i = 0; i < positionnumbers; ++i) {
        const double value = readvalue(block);
        if (i < head.place.size()) head.place[i] = value;
    }
    std::string_view text = block.file.buffer.substr(begin, block.file.position - begin);
    const auto separates = [](char c) { return c == ' ' || c == '\t' || c == ',' || c == '\r' || c == '\n'; };
    while (!text.empty() && separates(text.back())) text.remove_suffix(1);
    while (!text.empty() && separates(text.front())) text.remove_prefix(1);
    head.position = text;
}

blockhead readhead(inputblock& block) {
    blockhead head;
    std::string_view line;
    readblockline(block, line);
    head.title = line;
    if (block.input->format < newformat) {
        readplace(block, head);
        head.lateral[le] = readrow(block);
        head.delay = readvalue(block);
        return head;
    }
    skipcharacters(block.file, positionlabel);
    readplace(block, head);
    readblockline(block, line);
    head.delay = lenientnumber(behindmark(line, '='));
    for (const lateralrow row : {lfc, le, lf}) {
        skipcharacters(block.file, rowlabel);
        head.lateral[row] = readrow(block);
    }
    readblockline(block, line);
    return head;
}

// --- The sum of one receiver ---

struct receiversum {
    std::vector<double> energy; // slot x 10
    double delay = 0;           // s
    bandrow weight[3]{}, weighted[3]{};
    bandrow plain[3]{}; // sums without weights, for bands in which nothing arrives early
    int rows[3]{};      // how many inputs have the row
    blockhead first;    // of the first input
};

void addrow(double* energy, const double* row, const bandrow& gain, double share) {
    for (std::size_t b = 0; b < bands; ++b) energy[b] += row[b] * gain[b] * share;
}

// Adds the energies of a block. Returns what of them, before the gain, comes up to 80 ms.
bandrow addenergies(receiversum& sum, inputblock& block) {
    const suminput& input = *block.input;
    const auto step = static_cast<double>(single(input.step));
    bandrow early{};
    std::int32_t arrival = -1;
    double* energy = sum.energy.data() + static_cast<std::size_t>(input.shift) * bands;
    for (std::int32_t t = 0; t < input.slots; ++t, energy += bands) {
        double row[bands], all = 0;
        for (double& value : row) all += value = readvalue(block);
        if (arrival < 0 && all > 0) arrival = t;
        if (arrival >= 0 && step * (t - arrival) < earlytime)
            for (std::size_t b = 0; b < bands; ++b) early[b] += std::fabs(row[b]);
        addrow(energy, row, input.gain, 1 - input.fraction);
        if (input.fraction > 0) addrow(energy + bands, row, input.gain, input.fraction);
    }
    return early;
}

void addlateral(receiversum& sum, const blockhead& head, const suminput& input, const bandrow& early) {
    const bool old = input.format < newformat;
    for (const lateralrow row : {lfc, le, lf}) {
        if (old && row != le) continue; // it has none
        ++sum.rows[row];
        for (std::size_t b = 0; b < bands; ++b) {
            double ratio = head.lateral[row][b];
            if (old) ratio = early[b] > 0 ? ratio / early[b] : 0; // it was the lateral energy itself
            const double weight = early[b] * input.gain[b];
            sum.weighted[row][b] += ratio * weight;
            sum.weight[row][b] += weight;
            sum.plain[row][b] += ratio;
        }
    }
}

void addblock(receiversum& sum, inputblock& block, const suminput& first) {
    const suminput& input = *block.input;
    const bool begins = &input == &first;
    blockhead head = readhead(block);
    const bandrow early = addenergies(sum, block);
    addlateral(sum, head, input, early);
    const double delay = head.delay + input.delay;
    sum.delay = begins ? delay : std::min(sum.delay, delay);
    if (begins)
        sum.first = std::move(head);
    else
        for (std::size_t i = 0; i < head.place.size(); ++i)
            if (std::fabs(head.place[i] - sum.first.place[i]) > sameplace)
                refusepair(first, input,
                           "receiver " + trimmedwhole(block.place->receiver) + " stands at " +
                               sum.first.position + " in the first and at " + head.position +
                               " in the second");
}

// --- Writing ---

void addline(std::string& text, std::string_view line) {
    text.append(line).append(lineend);
}

// Ten numbers, without the blank that the first one has in front.
void addnumbers(std::string& text, const double* row) {
    std::string line;
    for (int b = 0; b < bands; ++b) appendnumber(line, row[b]);
    addline(text, std::string_view(line).substr(line.front() == ' '));
}

// A header line with another value behind its "=".
std::string changedheader(const headerline& line, std::string_view value) {
    const std::size_t mark = line.text.find('=', line.key.size());
    return (mark == std::string::npos ? line.key : line.text.substr(0, mark)) + "= " + std::string(value);
}

std::string headertext(const std::vector<suminput>& inputs, std::int32_t slots) {
    const suminput& first = inputs.front();
    const bool samesource = std::all_of(inputs.begin(), inputs.end(),
                                        [&](const suminput& input) { return input.source == first.source; });
    const struct {
        std::string_view key;
        bool changes, missing;
        std::string value;
    } changes[] = {
        {"Time      ", slots != first.slots, false, trimmednumber((slots - 1) * first.step)},
        {"Format    ", first.format < newformat, !findheader(first, "Format    "), std::string(outputformat)},
        {"Name      ", !samesource, !samesource && !findheader(first, "Name      "), std::string(nosource)},
    };
    std::string text;
    for (const headerline& line : first.header) {
        std::string written = line.text;
        for (const auto& change : changes)
            if (change.changes && line.key == change.key) written = changedheader(line, change.value);
        addline(text, written);
    }
    for (const auto& change : changes)
        if (change.missing) addline(text, std::string(change.key) + " = " + change.value);
    return text;
}

std::string blocktext(const receiversum& sum, std::int32_t receiver) {
    std::string text;
    addline(text, "");
    addline(text, sum.first.title);
    addline(text, "Position = " + sum.first.position);
    addline(text, "Delay = " + trimmednumber(sum.delay));
    constexpr std::string_view labels[] = {"LFC = ", "LE  = ", "LF  = "};
    for (const lateralrow row : {lfc, le, lf}) {
        bandrow mean{};
        for (std::size_t b = 0; b < bands; ++b) {
            if (sum.weight[row][b] > 0)
                mean[b] = sum.weighted[row][b] / sum.weight[row][b];
            else if (sum.rows[row] > 0)
                mean[b] = sum.plain[row][b] / sum.rows[row];
        }
        text += labels[row];
        addnumbers(text, mean.data());
    }
    addline(text, "31.5 63 125 250 500 1000 2000 4000 8000 16000");
    for (std::size_t cell = 0; cell < sum.energy.size(); cell += bands)
        addnumbers(text, sum.energy.data() + cell);
    for (const double energy : sum.energy)
        if (!(energy <= static_cast<double>(std::numeric_limits<float>::max())))
            throw runtimeerror{errorkind::overflow, "The summed energies of receiver " +
                                                        trimmedwhole(receiver) + " are too large."};
    return text;
}

std::int32_t outputslots(const std::vector<suminput>& inputs) {
    std::int32_t slots = 0;
    for (const suminput& input : inputs)
        slots = std::max(slots, input.slots + input.shift + (input.fraction > 0));
    const double bytes = static_cast<double>(slots) * bands * sizeof(double);
    if (bytes > memoryshare * static_cast<double>(platform::memorybytes()))
        throw runtimeerror{errorkind::memory, "Not enough memory for the summed responses."};
    return slots;
}

void showprogress(double share) {
    SumRun.percent = static_cast<std::int32_t>(Int(100 * share));
    platform::statustext(2, numbertext(SumRun.percent) + "%");
    yieldunlessstopped();
}

void writesum(filewriter& output, std::vector<suminput>& inputs) {
    const std::int32_t slots = outputslots(inputs);
    output.write(headertext(inputs, slots));
    const suminput& first = inputs.front();
    const double blocks = static_cast<double>(first.blocks.size()) * static_cast<double>(inputs.size());
    double done = 0;
    receiversum sum;
    inputblock block;
    for (const blockplace& place : first.blocks) {
        if (placeof(first, place.receiver).begin != place.begin) continue; // a later one counts
        std::vector<double> energy = std::move(sum.energy);
        energy.assign(static_cast<std::size_t>(slots) * bands, 0.0);
        sum = {};
        sum.energy = std::move(energy);
        for (suminput& input : inputs) {
            block.input = &input;
            block.place = &placeof(input, place.receiver);
            input.file.read(block.place->begin,
                            static_cast<std::size_t>(block.place->end - block.place->begin), block.bytes);
            block.file = openlist(block.bytes, input.name);
            tellfile(input, [&] { addblock(sum, block, first); });
            showprogress(++done / blocks);
        }
        output.write(blocktext(sum, place.receiver));
    }
}

// The status panels are empty again in the end, however it comes.
struct progresspanels {
    progresspanels() { SumRun = {}; }
    ~progresspanels() {
        platform::statustext(1, "");
        platform::statustext(2, "");
    }
    progresspanels(const progresspanels&) = delete;
    progresspanels& operator=(const progresspanels&) = delete;
};

} // namespace

void sumresults(const std::string& jobfile) {
    const progresspanels shown;
    const sumjob job = readjob(jobfile);
    const std::string path = outputpath(job, jobfile);
    std::vector<suminput> inputs = openinputs(job);
    platform::statustext(1, "Summing into " + pagetext(job.output) + " ...");
    filewriter output(path);
    writesum(output, inputs);
    output.finish();
}

} // namespace orv

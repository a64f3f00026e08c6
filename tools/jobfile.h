// The job of a sum: which results are added up, each with its delay and gains, into which file; and the text
// file that keeps it.
#pragma once

#include "shell/sessionstate.h"

#include <array>
#include <string>
#include <vector>

namespace orv {

constexpr std::size_t highestinput = 199;         // files in a job
constexpr std::size_t jobcells = octavebands + 1; // of a file: the delay, then the gains of the ten bands

// One input file. Cells are texts, written as they stand: number text where a slider or a job file has set
// them, "0" where nothing has.
struct jobrow {
    std::string name;                       // as the file system has it, without directory
    std::array<std::string, jobcells> cell; // delay in ms, then gains in dB of 31.5 Hz..16 kHz
};

struct sumjob {
    std::string directory; // of the inputs and of the output, as the file system has it
    std::string output;    // without directory
    std::vector<jobrow> files;
};

// Puts a file that nothing is set for behind the others. Raises subscript for the 200th.
void addjobfile(sumjob& job, const std::string& name);

// Reads a job file; cells become the number text of what stands there. Raises filenotfound, fileaccess,
// pastend where the last line is short, typemismatch or overflow at a field that is no number, and subscript
// at a 200th file, with file and line.
sumjob readjob(const std::string& path);

// Writes a job file in place of the old one. Raises fileaccess, and domain for a name with a quotation mark.
void writejob(const std::string& path, const sumjob& job);

} // namespace orv

// The summation engine: adds up result files, each delayed and weighed by band, into one.
#pragma once

#include <cstdint>
#include <string>

namespace orv {

// What a running sum shows, and is told.
struct sumrun {
    std::int32_t percent = 0; // of the receivers' blocks that have been read
    bool stop = false;        // set during a yield: the sum is given up
};
extern sumrun SumRun;

// Sums the results that a job file (tools/jobfile.h) lists into the result that it names, in format 1.2.
//
// The results, of either format, are taken as their text stands, with neither the late energy correction nor
// the changes that a load makes to header values. Energy e of slot t with the delay d goes to t + d / step,
// in proportion to the two slots beside it where that is broken, times 10^(gain / 10) of its band. The output
// is as long as the longest delayed input. Its direct sound delay is the earliest one of the delayed inputs.
// LE, LF and LFC are the means of the inputs', weighed in each band by the energy up to 80 ms from the first
// slot with energy, behind the gain; the lateral energy that an old result has for LE becomes a ratio first,
// and it has no LF and LFC (ISO 3382-1, annex A, for what the rows mean). Where no input has early energy the
// plain mean is taken. Positions and header lines come from the first file as text; "Time", "Format" and
// "Name" change where they have to ("NONE" for sources that differ).
//
// Holds one receiver of the output and one of an input in memory, however large the files are. Tells its
// progress in the status panels and in SumRun, and yields, for each block of each input.
//
// Raises filenotfound, fileaccess, typemismatch, pastend or overflow with file and line for what it cannot
// read; domain for a job without inputs or output, an output that is an input, a negative delay, a result
// without a time step or a receiver, and results whose receivers (number and place), time steps or bands
// differ; memory; cancelled when stopped. In each case a former output file stays as it was.
void sumresults(const std::string& jobfile);

} // namespace orv

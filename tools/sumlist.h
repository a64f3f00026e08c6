// The list of "Sum & Equalize" and the rules of its sliders. Plain data; the window shows it.
#pragma once

#include "tools/jobfile.h"

#include <cstddef>
#include <string>

namespace orv {

constexpr int highestdelay = 500; // ms
constexpr int highestgain = 30;   // dB, up and down
constexpr std::size_t norow = static_cast<std::size_t>(-1);

struct sumlist {
    sumjob job;
    std::string jobname;              // the job file that was loaded, empty until then
    std::size_t row = norow;          // the selected file, from 0
    bool ganged = false;              // "Gange together"
    int delayslider = 0;              // 0..500
    int gainslider[octavebands] = {}; // -30..30, the gain with its sign turned, so that up means louder
};

// Headings of a column 0..11 of the grid: the band above the gains ("31.5Hz", "1kHz"), and what the column
// holds.
std::string bandheading(std::size_t column);
std::string columnheading(std::size_t column);

// The text of a cell: column 0 is the name, 1 the delay in ms, 2..11 the gains in dB.
std::string listcell(const sumlist& list, std::size_t row, std::size_t column);

// "Select input files ...": asks for them, and puts them behind those of the list. One whose name ends in JOB
// in any case is a job: its directory, output and files are taken, and it is the job file from then on.
// Selects the first row when none is. Raises what readjob and addjobfile raise, and the list then stays as it
// was, as it does when the dialog is cancelled.
void selectinputs(sumlist& list);

// "Select output file ...": asks for it. Its directory becomes that of the inputs too.
void selectoutput(sumlist& list);

// Selects a row: the sliders go to its values, rounded to nearest and held within their ranges, and its cells
// stay as they are.
void selectrow(sumlist& list, std::size_t row);

// A slider was moved to a value of its own scale: its cell of the selected row takes its number text. With
// `ganged` the other gain sliders move by the same step as far as they can, and the cells of those that move
// follow. Nothing without a selected row.
void movegain(sumlist& list, std::size_t band, int value);
void movedelay(sumlist& list, int value);

// "OK - Compute the sum": writes the job file, Jobsummer.job of the current directory unless one was loaded,
// and sums it with the data directory as the current one, under the wait pointer. Raises what writejob and
// sumresults raise; the directory and the pointer come back in each case.
void computesum(const sumlist& list);

// The menu command "Sum & Equalize".
void SumEq();

} // namespace orv

// The Alfa-Beta optimizer: two results of one room, calculated with different numbers of pyramids, whose
// responses are charted after the late energy correction with trial constants. With good constants the two
// curves coincide; judging that is left to the eye.
#pragma once

#include "scene/drawsurface.h"
#include "shell/sessionstate.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orv {

constexpr int optimizerfiles = 2;
constexpr std::int32_t mostchartslots = 3000;

// Columns of a file's grid.
enum optimizercolumn { pyramidscolumn, freepathcolumn, deviationcolumn, historycolumn, criticalcolumn };
constexpr std::array<std::string_view, 5> optimizerheadings = {" N. of pyramids", " Mean Free Path (m)",
                                                               " Standard deviation (m)", " Mean History (m)",
                                                               " Critical Time (s)"};

// One of the two results as it stands in its file.
struct optimizerfile {
    std::string name;                                       // in upper case, as TextFile1 shows it
    std::int32_t pyramids = 0;                              // below 1: not loaded
    float meanFreePath = 0;                                 // m
    std::array<std::string, optimizerheadings.size()> cell; // of its grid
    std::int32_t percent = 0;                               // read so far

    // fileEnergy: by receiver 0..receiverCount slots x 12, bands 1..10 and then, other than everywhere else,
    // the linear sum as 11 and the A-weighted as 12, in the order of the list of bands. A receiver that was
    // not read has no row and reads as zero.
    std::vector<std::unique_ptr<float[]>> energy;
    std::vector<float> delay; // fileDelay: of the direct sound in s, by receiver
};

// What the chart shows.
struct optimizerchart {
    bool shown = false;
    std::string title;
    double top = 100;                                      // of the y axis in dB; it begins at 0
    double step = 0;                                       // s between points
    std::array<std::vector<float>, optimizerfiles> series; // dB, points 0..lastSlot-1
};

// Lives as long as the window is open.
struct optimizer {
    std::array<optimizerfile, optimizerfiles> file;
    std::int16_t fileReceivers = -1, fileSlots = -1; // of the last allocation; -1: none yet
    std::vector<double> decayCurve;                  // of the file charted last, by slot
    optimizerchart chart;
    bool stop = false; // set during a yield: the load is given up

    // The window's fields, as they stand.
    int band = 0;                           // entry of the list of bands, from 0
    std::string receiver = "1", alfa, beta; // the receiver is a number or "Room"
    bool schroeder = false;                 // "Schroeder Plot", otherwise "Impulse Response"
};
extern optimizer Optimizer;

// The entries of the list of bands: the octave bands with " Hz", "LIN", "A".
std::vector<std::string> optimizerbands();

// Begins anew with an empty chart: reads the settings file as start-up does, and takes Alfa and Beta from it.
void openoptimizer();

// Drops all that was loaded.
void closeoptimizer();

// Reads a result as file 0 or 1 and charts it. Stores the header in ResultSet and RoomModel as it stands:
// the speed of sound and the bands without what a load adds to them. Where the receivers or slots differ from
// those of the other file, that one is dropped with a beep. Raises filenotfound, fileaccess, typemismatch,
// pastend and overflow with file and line, overflow beyond 32767 receivers or slots, memory, domain for a
// file without receivers, and cancelled when stopped; the file then counts as not loaded.
void loadoptimizerfile(const std::string& name, int index);

// Computes the chart from the fields. lastSlot is cut to 3000, which stays so; roomMaxY of RoomModel takes
// the largest value charted. The energy v of slot k is divided by w = 1 - exp(-((tc / t) ^ alfa)), with t =
// (k + 0.5) timeStep - delay in s and the critical time tc = mean free path / 4 / sound speed * sqrt(pyramids
// / beta), where beta is above 0 and t too, and w is not 0. Raises subscript for a receiver that no file has,
// and divisionbyzero without a speed of sound.
void updategraph();

// The previous or next receiver, from 0 (shown as "Room") to receiverCount and around.
void stepreceiver(bool up);

// Charts, then writes Alfa and Beta of the fields into the settings file. Raises what updatesettings raises.
void saveconstants();

// Draws the chart over the whole surface.
void drawoptimizerchart(DrawSurface& surface);

// The menu command "AlfaBeta Optimizer".
void AlfaBetaOpt();

} // namespace orv

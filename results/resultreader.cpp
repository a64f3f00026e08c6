// The result file. Text, in the files' code page; CR LF or LF. A header of keyed lines, then a block for each
// receiver, in units of exactly ten characters at the start of each record:
//
//   Microphones = 30            keys are the first ten characters of a line, padded with blanks; the value
//   Time       = 2.5            stands behind the first "=". Other lines are skipped. "Time" and "Precision"
//   ...                         must stand above the first block.
//
//   [Microphone_1]              a block begins with an empty line: its key is CR LF "[Microph". The number
//                               behind "_" is the receiver.
//
//   Format 1.2 and above:                            Below 1.2:
//   Position = x y z - - -      11 characters, 6     x y z - - -
//   Direct delay = t            behind "="           ten values of LE
//   LFC = ten values            6 characters, 10     t
//   LE  = ten values            6 characters, 10
//   LF  = ten values            6 characters, 10
//   one line                    skipped
//   lastSlot + 1 rows of ten energies, bands 1..10   the same
//
// The numbers of a block are free list input, and rows are not checked.
#include "results/resultreader.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/formatpattern.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "platform/platform.h"
#include "response/raypathreader.h"
#include "response/raypathset.h"
#include "response/responseplot.h"
#include "results/acousticparameters.h"
#include "results/parameterset.h"
#include "results/resultset.h"
#include "results/sourcedescription.h"
#include "room/roomload.h"
#include "shell/menucommands.h"
#include "shell/settings.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace orv {

namespace {

constexpr std::size_t keylength = 10;
constexpr float defaultspeed = 340;                         // m/s
constexpr float nocorrection = 1E9F;                        // s, a critical time that no slot reaches
constexpr std::size_t positionlabel = 11, rowlabel = 6;     // characters in front of the numbers
constexpr std::int64_t oldestrayfile = 864'000'000'000'000; // ns before the result: 10 days
constexpr std::int32_t keptcorrections = 65536;             // offsets; later ones compute theirs anew

// The source that stands for one whose description is not to be had, dB.
constexpr float unknownpower = 110, unknownweightedpower = 114, unknownlinearpower = 120;

// What one load carries from statement to statement. A read that fails leaves these as they were, and the
// next statement uses them.
struct loading {
    listreader file;
    std::string line;               // the last line read
    std::int32_t receiver = 0;      // of the present block
    double value = 0;               // the last number of the rows
    bool allocated = false;         // ImpulseResponse has been created
    std::vector<double> correction; // w by slot offset, with what it was computed from
    float correctioncritical = 0, correctionstep = 0;
    offsettables waves;
    decaycurve decay;
};

void nextline(loading& load) {
    attempt([&] { load.line = readline(load.file); });
}

double headervalue(const loading& load) {
    return lenientnumber(behindmark(load.line, '='));
}

std::string bandtext(float band) {
    const std::int32_t entry = whole32(wide(band));
    if (entry < 1 || entry > bandcount) subscriptfailure("band", entry, 1, bandcount);
    return std::string(bandName[static_cast<std::size_t>(entry)]);
}

// --- Header keys: what the value sets, and what is printed ---

struct headerkey {
    std::string_view key;
    void (*take)(const loading& load);
    std::string (*message)(const loading& load);
};

std::string valuemessage(std::string_view label, double value, std::string_view unit) {
    return std::string(label) + numbertext(value) + std::string(unit);
}

void takepyramids(const loading& load) {
    ResultSet.pyramidCount = headervalue(load);
}
std::string pyramidmessage(const loading&) {
    return valuemessage("Nunber of pyramids emitted =", ResultSet.pyramidCount, "");
}

const headerkey headerkeys[] = {
    {"Microphone",
     [](const loading& load) {
         RoomModel.receiverCount = std::min(whole32(headervalue(load)), highestreceiver);
     },
     [](const loading&) { return "Number of Microphones = " + wholetext(RoomModel.receiverCount); }},
    {"SoundSpeed", // the +1 belongs to the format
     [](const loading& load) { ResultSet.soundSpeed = single(headervalue(load) + 1); },
     [](const loading& load) { return valuemessage("Sound Speed           = ", headervalue(load), " m/s"); }},
    {"First band", [](const loading& load) { ResultSet.firstBand = single(headervalue(load) + 1); },
     [](const loading&) { return "Lower  frequency band = " + bandtext(ResultSet.firstBand) + "Hz"; }},
    {"Last band ", [](const loading& load) { ResultSet.lastBand = single(headervalue(load) + 1); },
     [](const loading&) { return "Higher frequency band = " + bandtext(ResultSet.lastBand) + "Hz"; }},
    {"Rays gener", takepyramids, pyramidmessage},
    {"Pyramids t", takepyramids, pyramidmessage},
    {"Mean free ", [](const loading& load) { ResultSet.meanFreePath = headervalue(load); },
     [](const loading& load) { return valuemessage("mean Free Path =", headervalue(load), " m"); }},
    {"Time      ", [](const loading& load) { ResultSet.responseLength = headervalue(load); },
     [](const loading& load) { return valuemessage("Impulse Response Lenght =", headervalue(load), " s"); }},
    {"Precision ", [](const loading& load) { ResultSet.timeStep = single(headervalue(load)); },
     [](const loading&) {
         return valuemessage("Time Resolution =", wide(ResultSet.timeStep) * 1000, " ms");
     }},
    {"Format    ", [](const loading& load) { ResultSet.resultFormat = headervalue(load); },
     [](const loading& load) { return valuemessage("Format =", headervalue(load), ""); }},
    {"Name      ", [](const loading& load) { ResultSet.sourceName = trimfront(behindmark(load.line, '=')); },
     nullptr},
};

void readheader(loading& load, std::string_view key) {
    const auto* const row = std::find_if(std::begin(headerkeys), std::end(headerkeys),
                                         [key](const headerkey& known) { return known.key == key; });
    if (row == std::end(headerkeys)) {
        attempt([&] { readline(load.file); });
        return;
    }
    nextline(load);
    attempt([&] { row->take(load); });
    if (row->message) attempt([&] { platform::logline(row->message(load)); });
}

// --- Receiver blocks ---

// The next number of a row into load.value, which keeps the last one when the read fails.
void nextvalue(loading& load) {
    const numberfield field = tryreadnumber(load.file);
    if (field.outcome == fieldoutcome::read) load.value = field.value;
}

// Whether the present block's number has a place in the tables; one without is read past and stores nothing.
bool hasplace(const loading& load) {
    return load.receiver >= 0 && load.receiver <= highestreceiver;
}

// A statement that stores a number which may be too large for single precision: it keeps its target then.
void storesingle(float& target, double value) {
    const auto stored = static_cast<float>(value);
    if (std::isfinite(stored)) target = stored;
}

// Ten band values and their two sums into a lateral row of the receiver.
template <class table>
void readlateral(loading& load, table& target) {
    double weighted = 0, linear = 0;
    for (int b = 1; b <= octavebands; ++b) {
        nextvalue(load);
        if (hasplace(load)) storesingle(target(load.receiver, b), load.value);
        weighted += load.value * wide(SessionState.aWeight[static_cast<std::size_t>(b)]);
        linear += load.value;
    }
    if (!hasplace(load)) return;
    storesingle(target(load.receiver, weightedband), weighted);
    storesingle(target(load.receiver, linearband), linear);
}

template <class table>
void clearlateral(const loading& load, table& target) {
    for (int b = 1; b <= bandcount && hasplace(load); ++b) target(load.receiver, b) = 0;
}

// Six numbers: the position and three that are not kept.
void readposition(loading& load) {
    float position[6] = {};
    for (float& coordinate : position) {
        const numberfield field = tryreadnumber(load.file);
        if (field.outcome == fieldoutcome::read) storesingle(coordinate, field.value);
    }
    if (!hasplace(load)) return;
    RoomModel.receiverX(load.receiver) = position[0];
    RoomModel.receiverY(load.receiver) = position[1];
    RoomModel.receiverZ(load.receiver) = position[2];
    // The box grows in x and y only, and its centre stays: wanted so.
    RoomModel.roomMaxX = std::max(RoomModel.roomMaxX, position[0]);
    RoomModel.roomMinX = std::min(RoomModel.roomMinX, position[0]);
    RoomModel.roomMaxY = std::max(RoomModel.roomMaxY, position[1]);
    RoomModel.roomMinY = std::min(RoomModel.roomMinY, position[1]);
}

void storedelay(const loading& load, double delay) {
    const auto& delays = ResultSet.receiverDelay;
    if (load.receiver >= 0 && static_cast<std::size_t>(load.receiver) < delays.size())
        ResultSet.receiverDelay[static_cast<std::size_t>(load.receiver)] = delay;
}

// The late energy factor of a slot's offset from the first arrival; 1 at 0 and where it cannot be computed.
// Without beta there is no correction, whatever alfa is.
double correctionof(std::int32_t offset) {
    const resultset& R = ResultSet;
    const double time = wide(R.timeStep) * offset;
    if (!(time > 0) || !(R.betaConstant > 0)) return 1;
    const double w = lateenergyfactor(wide(R.criticalTime), wide(R.alfaConstant), time);
    return std::isfinite(w) ? w : 1;
}

// Keeps the first corrections in a table, which serves all blocks of one header.
void computecorrection(loading& load, std::int32_t slots) {
    const auto wanted = static_cast<std::size_t>(std::min(slots, keptcorrections));
    const bool same = load.correction.size() == wanted && load.correctioncritical == ResultSet.criticalTime &&
                      load.correctionstep == ResultSet.timeStep;
    if (same) return;
    load.correctioncritical = ResultSet.criticalTime;
    load.correctionstep = ResultSet.timeStep;
    load.correction.resize(wanted);
    for (std::size_t i = 0; i < wanted; ++i) load.correction[i] = correctionof(static_cast<std::int32_t>(i));
}

// Reads the energy rows into `row` (slots x 12), corrected, with their two sums. Returns the slot of the
// first arrival, none where nothing arrived; `direct` takes that slot's energies. Where their linear sum is
// too large to be stored, the next slot counts as the first arrival once more.
std::vector<std::int32_t> readenergies(loading& load, float* row, std::int32_t slots,
                                       workingsums::bybandindex& direct) {
    double weights[octavebands];
    for (std::size_t i = 0; i < octavebands; ++i) weights[i] = wide(SessionState.aWeight[i + 1]);
    std::vector<std::int32_t> arrivals;
    std::int32_t origin = 0;
    for (std::int32_t t = 0; t < slots; ++t) {
        float* const e = row + static_cast<std::size_t>(t) * bandcount;
        const std::int32_t offset = t - origin;
        const double w = offset < keptcorrections ? load.correction[static_cast<std::size_t>(offset)]
                                                  : correctionof(offset);
        double values[octavebands];
        if (atend(load.file)) { // every further read fails
            std::fill(std::begin(values), std::end(values), load.value);
            if (t > 0 && t % keptcorrections == 0) platform::yield();
        } else {
            for (double& value : values) {
                nextvalue(load);
                value = load.value;
            }
        }
        double weighted = 0, linear = 0;
        for (std::size_t i = 0; i < octavebands; ++i) {
            const auto stored = static_cast<float>(values[i] / w);
            e[i] = std::isfinite(stored) ? stored : e[i]; // a w of 0 fails the division
        }
        for (std::size_t i = 0; i < octavebands; ++i) {
            const auto energy = wide(e[i]);
            linear += energy;
            weighted += energy * weights[i];
        }
        storesingle(e[weightedband - 1], weighted);
        storesingle(e[linearband - 1], linear);
        if (direct[linearband] == 0 && linear > 0) {
            arrivals.push_back(origin = t);
            for (std::size_t i = 0; i < bandcount; ++i) direct[i + 1] = std::fabs(wide(e[i]));
        }
    }
    return arrivals;
}

// Reads the rows past where there is no room for them.
void skipenergies(loading& load, std::int32_t slots) {
    for (std::int64_t i = 0; i < std::int64_t{slots} * octavebands && !atend(load.file); ++i) nextvalue(load);
}

// Slots 0..lastSlot; the highest number that counts them stands for one more, which no machine has room for.
std::int32_t slotcount() {
    return ResultSet.lastSlot < std::numeric_limits<std::int32_t>::max() ? ResultSet.lastSlot + 1
                                                                         : ResultSet.lastSlot;
}

// Makes the tables when the first block shows that the header is complete.
void allocate(loading& load) {
    resultset& R = ResultSet;
    if (load.allocated) return;
    const std::int32_t receivers = std::max(RoomModel.receiverCount, 0);
    attempt([&] { R.lastSlot = whole32(Int(quotient(R.responseLength, wide(R.timeStep)) + 0.5)); });
    attempt([&] { createresponse(slotcount(), receivers); });
    attempt([&] { R.receiverDelay.assign(static_cast<std::size_t>(receivers) + 1, 0.0); });
    load.allocated = true;
}

// What the header has left open or the correction needs.
void completeheader() {
    resultset& R = ResultSet;
    if (R.betaConstant > 0) {
        attempt([&] {
            const double ratio = quotient(R.pyramidCount, wide(R.betaConstant));
            R.criticalTime = single(quotient(R.meanFreePath / 4, wide(R.soundSpeed)) * squareroot(ratio));
        });
    } else {
        R.criticalTime = nocorrection;
    }
    if (R.firstBand == 0) R.firstBand = 1;
    if (R.lastBand == 0) R.lastBand = octavebands;
}

// The block's title; a receiver beyond those declared adds itself to the tables.
void readtitle(loading& load) {
    nextline(load);
    load.receiver = blocknumber(load.line);
    if (load.receiver <= RoomModel.receiverCount || load.receiver > highestreceiver) return;
    RoomModel.receiverCount = load.receiver;
    attempt([&] { growresponse(load.receiver); });
    attempt([&] { ResultSet.receiverDelay.resize(static_cast<std::size_t>(load.receiver) + 1); });
}

// Place, delay and lateral energies in the order of the file's format.
void readblockhead(loading& load) {
    parameterset& P = ParameterSet;
    if (ResultSet.resultFormat >= newformat) {
        skipcharacters(load.file, positionlabel);
        readposition(load);
        nextline(load);
        attempt([&] { storedelay(load, headervalue(load)); });
        skipcharacters(load.file, rowlabel);
        readlateral(load, P.LFC);
        skipcharacters(load.file, rowlabel);
        readlateral(load, P.LE);
        skipcharacters(load.file, rowlabel);
        readlateral(load, P.LF);
        nextline(load);
        return;
    }
    readposition(load);
    readlateral(load, P.LE);
    clearlateral(load, P.LF);
    clearlateral(load, P.LFC);
    if (const numberfield delay = tryreadnumber(load.file); delay.outcome == fieldoutcome::read)
        storedelay(load, delay.value);
}

// The response and all that is computed from it.
void readresponse(loading& load) {
    workingsums sums;
    const std::int32_t slots = slotcount();
    float* row = nullptr;
    if (slots == ImpulseResponse.slots) attempt([&] { row = takeresponse(load.receiver); });
    if (row != nullptr) {
        computecorrection(load, slots);
        const auto arrivals = readenergies(load, row, slots, sums.directEnergy);
        addslots(sums, load.waves, {row, slots, ResultSet.timeStep}, arrivals);
    } else {
        skipenergies(load, slots);
    }
    storeparameters(load.receiver, sums);
    storemodulation(load.receiver, sums);
    if (row != nullptr) storedecays(load.receiver, sums, load.decay, {row, slots, ResultSet.timeStep});
}

void readblock(loading& load) {
    allocate(load);
    completeheader();
    readtitle(load);
    readblockhead(load);
    readresponse(load);
}

// --- The whole file ---

void readrecords(loading& load) {
    const double blocks = progressblocks(load.file);
    while (!atend(load.file)) {
        const std::string key = inp10char(load.file);
        attempt([&] {
            const std::size_t position = load.file.position / progressblock;
            const double percent = Int(quotient(100.0 * static_cast<double>(position), blocks));
            platform::statustext(2, numbertext(percent) + "%");
        });
        platform::yield();
        if (key == blockkey) {
            readblock(load);
        } else {
            readheader(load, key);
        }
        clearfulllog();
    }
}

void loadsource(const std::string& result) {
    resultset& R = ResultSet;
    attempt([&] {
        if (R.sourceName.empty() || R.sourceName == "NONE") return;
        const std::string path = sourcefilepath(R.sourceName, directoryof(result));
        if (filesize(path) > 0) readsourcedescription(path);
    });
    if (R.sourcePower(linearband) == 0) {
        R.sourceName = "NONE";
        for (int b = 1; b <= octavebands; ++b) R.sourcePower(b) = unknownpower;
        for (int b = 1; b <= octavebands; ++b) R.sourceDirectivity(b) = 0;
        R.sourcePower(weightedband) = unknownweightedpower;
        R.sourcePower(linearband) = unknownlinearpower;
    }
}

// The source's levels in the seven bands of speech. The voice correction moves the source's free-field level
// at 1 m on its axis to 60 dB per band.
void printsource() {
    const resultset& R = ResultSet;
    std::string power = "Lw:", directivity = "DI:", voice = "VC:";
    for (std::size_t i = 0; i < speechbands; ++i) {
        const int b = firstspeechband + static_cast<int>(i);
        attempt([&] {
            SessionState.voiceCorrection[i] =
                single(60 - ((wide(R.sourcePower(b)) - 11) + wide(R.sourceDirectivity(b))));
        });
        power += formatnumber(R.sourcePower(b), " ###0.0");
        directivity += formatnumber(R.sourceDirectivity(b), " ###0.0");
        voice += formatnumber(SessionState.voiceCorrection[i], " ###0.0");
    }
    platform::logline("Source Name = " + R.sourceName);
    platform::logline(power);
    platform::logline(directivity);
    platform::logline(voice);
}

// Tested on the linear column and told from the A-weighted one, on purpose.
void warnofreverberation() {
    const double length = 1.5 * ResultSet.lastSlot * wide(ResultSet.timeStep);
    if (!(length < wide(ParameterSet.T10(0, linearband)))) return;
    platform::messagebox("Warning !",
                         "The reverberation time is quite longer than the lenght of the computed Impulse "
                         "Responses - It is suggested to repeat the computation with an impulse response "
                         "lenght (Time) at least of " +
                             formatnumber(ParameterSet.T10(0, weightedband), "###.# s"),
                         platform::buttons::ok, platform::icon::exclamation, platform::answer::ok);
}

// Shows that a load runs. Returns the window's former background.
std::int32_t startload(const std::string& name) {
    forgetresponse(); // the window of the former one
    platform::statustext(1, "Loading data from " + pagetext(name) + " ...");
    attempt([&] { SessionState.geometryFileName = geometrynameof(name); });
    ResultSet.soundSpeed = defaultspeed;
    const std::int32_t formerbackground = showloading();
    platform::clearlog();
    platform::logline("Loading " + pagetext(name) + " ....");
    platform::pointer(platform::shape::wait);
    return formerbackground;
}

void takesettings() {
    attempt(readsettings);
    platform::logline(valuemessage("Alfa =", wide(ResultSet.alfaConstant), ""));
    platform::logline(valuemessage("Beta =", wide(ResultSet.betaConstant), ""));
}

void readresult(const std::string& name) {
    filebytes bytes;
    attempt([&] { bytes = readfile(name); });
    loading load;
    load.file = openlist(bytes, pagetext(name));
    attempt([&] { ResultSet.listingFileName = listingnameof(name); });
    readrecords(load);
}

// The ray paths beside the result, unless they are much older than it.
void loadpaths(const std::string& result) {
    resultset& R = ResultSet;
    const auto path = [&result] { return existingpath(raypathnameof(result)); };
    R.resultDate = filedate(result);
    R.rayFilePresent = attempt([&] { R.rayFileDate = filedate(path()); });
    const bool usable = R.rayFilePresent && R.resultDate - R.rayFileDate <= oldestrayfile;
    if (usable)
        loadchiocc(path());
    else
        dummyredim();
    enablecommand("viewraypaths", usable);
}

} // namespace

void loadresult(const std::string& name) {
    const std::int32_t formerbackground = startload(name);
    takesettings();
    readresult(name);
    platform::logline("File Loaded OK!");
    platform::statustext(1, "Computing parameters ...");
    platform::statustext(2, "");

    loadsource(name);
    printsource();
    storeaverages();
    warnofreverberation();
    attempt([] { addroommean(); });
    if (ResultSet.resultFormat >= newformat)
        for (const std::string_view table : {"T_LF", "T_LFC"}) enablecommand(table, true);
    loadpaths(name);

    platform::pointer(platform::shape::normal);
    platform::background(formerbackground);
    platform::statustext(1, "");
    SessionState.parameterSource = 1;
}

std::string geometrynameof(const std::string& result) {
    return withoutlast(result, 4) + ".RAY";
}

std::string listingnameof(const std::string& result) {
    return withoutlast(result, 3) + "OUT";
}

std::string raypathnameof(const std::string& result) {
    return withoutlast(result, 3) + "@" + result.substr(withoutlast(result, 2).size());
}

std::string inp10char(listreader& file) {
    return readcharacters(file, keylength);
}

std::int32_t blocknumber(std::string_view title) {
    const std::size_t mark = title.find('_');
    if (mark == std::string_view::npos) return 0;
    std::string_view behind = title.substr(mark + 1);
    behind.remove_prefix(std::min(behind.find_first_not_of(" \t"), behind.size()));
    const numberprefix number = readprefix(behind);
    if (number.overflow) return behind.front() == '-' ? -1 : highestreceiver + 1;
    return whole32(std::clamp(number.value, -1.0, highestreceiver + 1.0));
}

} // namespace orv

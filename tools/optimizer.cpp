// Reading and charting the two results of the Alfa-Beta optimizer. The format of a result stands in
// results/resultreader.cpp.
#include "tools/optimizer.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/formatpattern.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "results/acousticparameters.h"
#include "results/resultreader.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "shell/settings.h"

#include <algorithm>
#include <cmath>

namespace orv {

optimizer Optimizer;

namespace {

constexpr float defaultspeed = 340;                   // m/s
constexpr double nocorrection = 1E9;                  // s, a critical time that no slot reaches
constexpr int linearcolumn = 11, weightedcolumn = 12; // the other way round than bandIndex has them
constexpr double memoryshare = 0.75;                  // of the machine's memory for the energies
constexpr double emptytop = 100;                      // dB
constexpr std::string_view room = "Room";

// --- Reading ---

struct loading {
    listreader file;
    optimizerfile& target;
    optimizerfile& other;
    std::string line; // the last line read
    bool any = false; // receivers
};

double headervalue(const loading& load) {
    return lenientnumber(behindmark(load.line, '='));
}

void showcell(loading& load, optimizercolumn column) {
    load.target.cell[column] = trimmednumber(headervalue(load));
}

void dropresponses(optimizerfile& file) {
    file.energy.clear();
    file.rows = 0;
    file.delay.clear();
}

void dropfile(optimizerfile& file) {
    dropresponses(file);
    file.pyramids = 0;
    file.name.clear();
    file.cell.fill("");
    file.percent = 0;
}

// Room for receivers 0..receiverCount, keeping what is there.
void growtables() {
    const auto rows = static_cast<std::size_t>(std::max(RoomModel.receiverCount, 0)) + 1;
    for (optimizerfile& file : Optimizer.file) {
        if (file.energy.size() >= rows) continue;
        file.energy.resize(rows);
        file.delay.resize(rows);
    }
}

void takeprecision(loading& load) {
    resultset& R = ResultSet;
    R.timeStep = single(headervalue(load));
    const std::int32_t last = whole32(quotient(R.responseLength, static_cast<double>(R.timeStep)));
    if (last < 0) inputfailure(load.file, errorkind::subscript, "the responses have a length below 0");
    const std::int16_t receivers = whole16(RoomModel.receiverCount), slots = whole16(last);
    R.lastSlot = last; // from here on nothing fails: it never passes what the tables hold
    optimizer& o = Optimizer;
    if (o.fileReceivers == receivers && o.fileSlots == slots) return;
    if (o.fileReceivers >= 0) platform::beep();
    dropfile(load.other);
    dropresponses(load.target);
    o.fileReceivers = receivers;
    o.fileSlots = slots;
    o.chart = {};
    growtables();
}

void takepyramids(loading& load) {
    load.target.pyramids = whole32(headervalue(load));
    showcell(load, pyramidscolumn);
}

// What is stored stands in the file: nothing is added to the speed of sound and the bands here.
const struct {
    std::string_view key;
    void (*take)(loading& load);
} headerkeys[] = {
    {"Microphone",
     [](loading& load) {
         RoomModel.receiverCount = std::clamp(whole32(headervalue(load)), 0, highestreceiver);
     }},
    {"SoundSpeed", [](loading& load) { ResultSet.soundSpeed = single(headervalue(load)); }},
    {"First band", [](loading& load) { ResultSet.firstBand = single(headervalue(load)); }},
    {"Last band ", [](loading& load) { ResultSet.lastBand = single(headervalue(load)); }},
    {"Rays gener", takepyramids},
    {"Pyramids t", takepyramids},
    {"Mean free ",
     [](loading& load) {
         load.target.meanFreePath = single(headervalue(load));
         showcell(load, freepathcolumn);
     }},
    {"Standard d", [](loading& load) { showcell(load, deviationcolumn); }},
    {"Mean histo", [](loading& load) { showcell(load, historycolumn); }},
    {"Time      ", [](loading& load) { ResultSet.responseLength = headervalue(load); }},
    {"Precision ", takeprecision},
    {"Format    ", [](loading& load) { ResultSet.resultFormat = headervalue(load); }},
    {"Name      ", [](loading& load) { ResultSet.sourceName = trimfront(behindmark(load.line, '=')); }},
};

// The receiver's row of slots x 12 energies, zero-filled when it is new.
float* takerow(loading& load, std::int32_t receiver) {
    auto& row = load.target.energy.at(static_cast<std::size_t>(receiver));
    const auto cells = (static_cast<std::size_t>(Optimizer.fileSlots) + 1) * bandcount;
    if (row) return row.get();
    const std::size_t rows = load.target.rows + load.other.rows + 1;
    const double bytes = static_cast<double>(rows) * static_cast<double>(cells) * sizeof(float);
    if (bytes > memoryshare * static_cast<double>(platform::memorybytes()))
        throw runtimeerror{errorkind::memory, "Not enough memory for the responses."};
    row = std::make_unique<float[]>(cells);
    ++load.target.rows;
    return row.get();
}

void readenergies(loading& load, float* row) {
    for (std::int32_t t = 0; t <= Optimizer.fileSlots; ++t, row += bandcount) {
        readsingles(load.file, {row, octavebands});
        double linear = 0, weighted = 0;
        for (std::size_t i = 0; i < octavebands; ++i) {
            const auto energy = static_cast<double>(row[i]);
            linear += energy;
            weighted += energy * static_cast<double>(SessionState.aWeight[i + 1]);
        }
        try {
            row[linearcolumn - 1] = single(linear);
            row[weightedcolumn - 1] = single(weighted);
        } catch (const runtimeerror& error) {
            inputfailure(load.file, error);
        }
    }
}

// The line of a block that states the delay.
float readdelay(loading& load) {
    const listreader start = load.file;
    load.line = readline(load.file);
    try {
        return single(headervalue(load));
    } catch (const runtimeerror& error) {
        inputfailure(start, error);
    }
}

void readblock(loading& load) {
    const std::int32_t receiver = blocknumber(readline(load.file));
    if (receiver < 0 || receiver > highestreceiver)
        inputfailure(load.file, errorkind::subscript, "the receiver's number is outside 0..100000");
    if (Optimizer.fileSlots < 0)
        inputfailure(load.file, errorkind::subscript, "no \"Precision\" stands above the first receiver");
    if (receiver > RoomModel.receiverCount) RoomModel.receiverCount = receiver;
    growtables();
    load.any = true;
    float& delay = load.target.delay.at(static_cast<std::size_t>(receiver));
    const auto skiplines = [&load](int count) {
        while (count-- > 0) readline(load.file);
    };
    if (ResultSet.resultFormat < newformat) {
        skiplines(2);
        delay = readsingle(load.file);
    } else {
        skiplines(1);
        delay = readdelay(load);
        skiplines(4);
    }
    readenergies(load, takerow(load, receiver));
}

// A value that its variable cannot hold is told with its line.
void takevalue(loading& load, const listreader& start, const std::string& key, void (*take)(loading&)) {
    try {
        take(load);
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::overflow && error.kind != errorkind::divisionbyzero) throw;
        inputfailure(start, error.kind, "the value of \"" + std::string(trimboth(key)) + "\" cannot be used");
    }
}

void readrecord(loading& load) {
    const listreader start = load.file;
    const std::string key = inp10char(load.file);
    if (key == blockkey) return readblock(load);
    if (atend(load.file)) return;
    load.line = readline(load.file);
    for (const auto& known : headerkeys)
        if (known.key == key) takevalue(load, start, key, known.take);
}

void readrecords(loading& load) {
    while (!atend(load.file)) {
        readrecord(load);
        load.target.percent = static_cast<std::int32_t>(100.0 * static_cast<double>(load.file.position) /
                                                        static_cast<double>(load.file.buffer.size()));
        platform::yield();
        if (Optimizer.stop) throw runtimeerror{errorkind::cancelled, "The load was stopped."};
    }
    // Without pyramids it would count as not loaded all the same, but silently.
    if (!load.any && load.target.pyramids < 1)
        throw runtimeerror{errorkind::domain, load.file.name + " holds no receivers."};
}

// --- The chart ---

// The fields as numbers.
struct fields {
    std::int32_t receiver;
    double alfa, beta;
};

double criticaltime(const optimizerfile& file, double beta) {
    if (!(beta > 0)) return nocorrection;
    return quotient(static_cast<double>(file.meanFreePath) / 4, static_cast<double>(ResultSet.soundSpeed)) *
           squareroot(file.pyramids / beta);
}

// What the energy of a time (s from the direct sound) is divided by. Without beta there is no correction,
// whatever alfa is; nothing is divided by 0.
double correctionof(double time, double critical, const fields& given) {
    if (!(given.beta > 0) || !(critical > 0) || !(time > 0)) return 1;
    const double w = lateenergyfactor(critical, given.alfa, time);
    return w > 0 ? w : 1;
}

// decayCurve of a file, from the last slot down. Returns its largest value, or `largest`.
double computecurve(const optimizerfile& file, const fields& given, double critical, double largest) {
    const std::int32_t last = ResultSet.lastSlot;
    const auto step = static_cast<double>(ResultSet.timeStep);
    const auto receiver = static_cast<std::size_t>(given.receiver);
    const float* row = file.energy[receiver].get();
    const auto delay = static_cast<double>(file.delay[receiver]);
    const auto band = static_cast<std::size_t>(Optimizer.band);
    Optimizer.decayCurve.assign(static_cast<std::size_t>(last) + 1, 0.0);
    double sum = 0;
    for (std::int32_t k = last; k >= 0; --k) {
        const auto slot = static_cast<std::size_t>(k);
        const double energy = row ? static_cast<double>(row[slot * bandcount + band]) : 0;
        const double value = energy / correctionof((k + 0.5) * step - delay, critical, given);
        sum = Optimizer.schroeder ? sum + value : value;
        Optimizer.decayCurve[slot] = sum;
        largest = std::max(largest, sum);
    }
    return largest;
}

void writeseries(std::vector<float>& series) {
    for (std::size_t j = 0; j < series.size(); ++j) {
        const double value = Optimizer.decayCurve[j];
        series[j] = value > 1 ? static_cast<float>(decibelsperneper * std::log(value)) : 0.0F;
    }
}

void checkreceiver(const optimizerfile& file, std::int32_t receiver) {
    const auto rows = static_cast<std::int32_t>(file.energy.size());
    const std::int32_t highest = std::min(RoomModel.receiverCount, rows - 1);
    if (receiver < 0 || receiver > highest) subscriptfailure("fileEnergy receiver", receiver, 0, highest);
}

// The chart's top: whole tens above the largest value, which is an energy.
double topof(double largest) {
    if (!(largest > 0)) return emptytop;
    return Int((10 * decimallog(largest) + 0.5) / 10) * 10 + 10;
}

void chartfile(optimizerfile& file, std::vector<float>& series, const fields& given, double& largest) {
    if (file.pyramids < 1) return;
    checkreceiver(file, given.receiver);
    const double critical = criticaltime(file, given.beta);
    file.cell[criticalcolumn] =
        critical < nocorrection ? formatnumber(critical, " #######0.###") : std::string(" Infinite");
    largest = computecurve(file, given, critical, largest);
    writeseries(series);
}

// The pointer of a routine that may fail.
struct waiting {
    waiting() { platform::pointer(platform::shape::wait); }
    ~waiting() { platform::pointer(platform::shape::normal); }
    waiting(const waiting&) = delete;
    waiting& operator=(const waiting&) = delete;
};

} // namespace

std::vector<std::string> optimizerbands() {
    std::vector<std::string> entries;
    for (std::size_t b = 1; b <= octavebands; ++b) entries.push_back(std::string(bandName[b]) + " Hz");
    entries.insert(entries.end(), {"LIN", "A"});
    return entries;
}

void openoptimizer() {
    Optimizer = optimizer{};
    attempt(readsettings);
    Optimizer.alfa = trimmednumber(static_cast<double>(ResultSet.alfaConstant));
    Optimizer.beta = trimmednumber(static_cast<double>(ResultSet.betaConstant));
}

void closeoptimizer() {
    Optimizer = optimizer{};
}

void loadoptimizerfile(const std::string& name, int index) {
    optimizer& o = Optimizer;
    const auto place = static_cast<std::size_t>(index);
    optimizerfile& target = o.file.at(place);
    o.stop = false;
    {
        const waiting pointer;
        const filebytes bytes = readfile(name);
        target.name = pageuppercase(pagetext(name));
        ResultSet.soundSpeed = defaultspeed;
        loading load{openlist(bytes, pagetext(name)), target, o.file.at(1 - place), {}};
        try {
            readrecords(load);
        } catch (...) {
            dropfile(target);
            throw;
        }
        target.percent = 0;
    }
    updategraph();
}

void updategraph() {
    optimizer& o = Optimizer;
    resultset& R = ResultSet;
    R.lastSlot = std::min(R.lastSlot, mostchartslots);
    const fields given{whole32(lenientnumber(o.receiver)), lenientnumber(o.alfa), lenientnumber(o.beta)};
    o.chart = {};
    const waiting pointer;
    double largest = 0; // over both files
    for (std::size_t f = 0; f < optimizerfiles; ++f) {
        o.chart.series[f].assign(static_cast<std::size_t>(std::max(R.lastSlot, 0)), 0.0F);
        chartfile(o.file[f], o.chart.series[f], given, largest);
    }
    // The room's box is overwritten here, and stays so until the next room.
    attempt([&] { RoomModel.roomMaxY = single(largest); });
    o.chart.top = topof(largest);
    o.chart.step = static_cast<double>(R.timeStep);
    o.chart.title = "Freq. = " + optimizerbands().at(static_cast<std::size_t>(o.band)) +
                    "  - Rec. = " + o.receiver + "  - Alfa = " + numbertext(given.alfa) +
                    "  - Beta = " + numbertext(given.beta);
    o.chart.shown = true;
}

void stepreceiver(bool up) {
    const std::int32_t count = std::max(RoomModel.receiverCount, 0) + 1; // with the room
    const std::int32_t present = std::clamp(whole32(lenientnumber(Optimizer.receiver)), 0, count - 1);
    const std::int32_t next = (present + (up ? 1 : count - 1)) % count;
    Optimizer.receiver = next == 0 ? std::string(room) : trimmedwhole(next);
}

void saveconstants() {
    updategraph();
    updatesettings(
        {{"Alfa", std::string(trimfront(Optimizer.alfa))}, {"Beta", std::string(trimfront(Optimizer.beta))}},
        behindvalue::kept);
}

void AlfaBetaOpt() {
    platform::showwindow("Alfa-Beta Optimizer", true);
}

} // namespace orv

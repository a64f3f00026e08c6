// The parameter file. Text in the files' code page, lines ended by CR LF. The current layout:
//
//   "New File Format - Version 1.7 and above!"
//   "Acoustic Parameters from file:","NAME"
//   "Geometry file:","NAME"
//   "Number of receivers =",N
//   fourteen tables, then STI, each:
//     "Parameter =","TITLE"
//     "Rec.","Frequency Bands"
//     "Num.","31.5", ... ,"16k","L","A"    the last two labels are swapped against the data: 11 is A, 12
//     linear
//      0 , 27.1, ...                       receivers 0..N with bandIndex 1..12; STI has 3..9, 11 and 12
//   "Parameter =","Modulation Transfer Functions" and the two lines of labels, then for receivers 0..N:
//     "Rec.",0,"Frequency bands"
//     "Fmod","125","250","500","1k","2k","4k","8k"
//      .63, .98, ...                       fourteen rows: modulation frequency in Hz, seven values
//   "STI parameters"
//   "Background Noise Flag =",0  and two more flags, each a line
//   "Freq. (Hz)","125", ... ,"8k"
//   "Noise Level", 0, ...                  seven values
//   "Voice Correction",-39, ...
//   five tables of decay times; missing in files of versions that ended before them
//
// The older layout, read only: "Acoustic Parameters from file:","NAME", two lines, then for each receiver
// twelve rows (receiver number, a text, twelve values) and fourteen rows of modulation transfer (receiver
// number, three texts, seven values, three texts).
#include "results/parameterfile.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "platform/platform.h"
#include "results/parameterset.h"
#include "results/speechindex.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <array>
#include <cmath>
#include <initializer_list>
#include <span>
#include <string_view>

namespace orv {

namespace {

constexpr double progresssteps = 21;
constexpr double wholefile = 99; // per cent of a file read, from which on no tables of decay times follow
constexpr std::size_t oldnamestart = 34, oldnametail = 5; // the result's name in the older first line

constexpr std::string_view firstline = "New File Format - Version 1.7 and above!";
constexpr std::string_view oldfirstline = "\"Aco";

constexpr std::string_view bandlabels[] = {"Num.", "31.5", "63", "125", "250", "500", "1k",
                                           "2k",   "4k",   "8k", "16k", "L",   "A"};
constexpr std::string_view modulationlabels[] = {"125", "250", "500", "1k", "2k", "4k", "8k"};

// A table with its title and its step of the progress shown, and a receiver's row of it by bandIndex.
struct filetable {
    std::string_view title;
    int step;
    float* (*row)(std::int32_t receiver);
};
auto& P = ParameterSet;
template <auto table>
float* rowof(std::int32_t receiver) {
    return &(P.*table)(receiver, 0);
}
constexpr filetable maintables[] = {
    {"Leq", 1, rowof<&parameterset::Leq>},        {"Ldir", 2, rowof<&parameterset::Ldir>},
    {"Lrev", 3, rowof<&parameterset::Lrev>},      {"Riv/Direct", 4, rowof<&parameterset::LdirLrev>},
    {"Lp - Lw", 5, rowof<&parameterset::LeqLw>},  {"C50", 6, rowof<&parameterset::C50>},
    {"C80", 7, rowof<&parameterset::C80>},        {"Center Time", 8, rowof<&parameterset::Ts>},
    {"Aeq", 8, rowof<&parameterset::Aeq>}, // 8 twice on purpose
    {"LE", 9, rowof<&parameterset::LE>},          {"LF", 10, rowof<&parameterset::LF>},
    {"LFC", 11, rowof<&parameterset::LFC>},       {"Aeq2", 12, rowof<&parameterset::Aeq2>},
    {"ITDGeq", 13, rowof<&parameterset::ITDGeq>},
};
constexpr filetable speechtable = {"STI", 14, rowof<&parameterset::STI>};
constexpr filetable decaytables[] = {
    {"EDT", 17, rowof<&parameterset::EDT>}, {"T10", 18, rowof<&parameterset::T10>},
    {"T15", 19, rowof<&parameterset::T15>}, {"T20", 20, rowof<&parameterset::T20>},
    {"T30", 21, rowof<&parameterset::T30>},
};
constexpr int modulationstep = 15, optionsstep = 16;
constexpr std::string_view modulationtitle = "Modulation Transfer Functions";

constexpr std::array<std::int32_t, 12> allbands = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
constexpr std::array<std::int32_t, 9> speechcolumns = {3, 4, 5, 6, 7, 8, 9, 11, 12};

// The options' flags with their labels, whose blanks are exact.
struct optionflag {
    std::string_view label;
    std::int32_t sessionstate::*flag;
};
constexpr optionflag optionflags[] = {
    {"Background Noise Flag =", &sessionstate::backgroundNoiseFlag},
    {"Force VoiceSPL   Flag =", &sessionstate::forceVoiceSplFlag},
    {"Equalize SpectrumFlag =", &sessionstate::equalizeSpectrumFlag},
};

// --- Writing ---

void endline(filewriter& file, std::string& line) {
    line += lineend;
    file.write(line);
    line.clear();
}

void writetexts(filewriter& file, std::initializer_list<std::string_view> texts) {
    std::string line;
    for (const std::string_view text : texts) listtext(line, text);
    endline(file, line);
}

void writelabels(filewriter& file, std::string_view first, std::span<const std::string_view> labels) {
    std::string line;
    if (!first.empty()) listtext(line, first);
    for (const std::string_view label : labels) listtext(line, label);
    endline(file, line);
}

void showstep(int step) {
    platform::statustext(2, numbertext(std::trunc(step / progresssteps * 100)) + "%");
}

void writehead(filewriter& file, std::string_view title) {
    writetexts(file, {"Parameter =", title});
    writetexts(file, {"Rec.", "Frequency Bands"});
    writelabels(file, "", bandlabels);
}

void writevalues(std::string& line, std::span<const float> values) {
    for (const float value : values) {
        line += ',';
        appendnumber(line, wide(value));
    }
}

void writetable(filewriter& file, const filetable& table, std::span<const std::int32_t> bands) {
    showstep(table.step);
    writehead(file, table.title);
    std::string line;
    const std::int32_t N = RoomModel.receiverCount;
    for (std::int32_t r = 0; r <= N; ++r) {
        printwhole(line, r);
        const float* const row = table.row(r);
        for (const std::int32_t band : bands) {
            line += ',';
            appendnumber(line, wide(row[band]));
        }
        endline(file, line);
    }
    platform::yield();
}

void writemodulation(filewriter& file) {
    showstep(modulationstep);
    writehead(file, modulationtitle);
    std::array<std::string, modulationcount + 1> frequency;
    for (std::size_t i = 1; i <= modulationcount; ++i)
        frequency[i] = numbertext(
            wide(single(wide(SessionState.modulationOmega[i]) / 2 / SessionState.halfTurnConstant)));
    std::string line;
    const std::int32_t N = RoomModel.receiverCount;
    for (std::int32_t r = 0; r <= N; ++r) {
        listtext(line, "Rec.");
        listwhole(line, r);
        listtext(line, "Frequency bands");
        endline(file, line);
        writelabels(file, "Fmod", modulationlabels);
        for (int i = 1; i <= modulationcount; ++i) {
            line = frequency[static_cast<std::size_t>(i)];
            writevalues(line, std::span<const float>(&P.modulationTransfer(r, i, 0), speechbands));
            endline(file, line);
        }
        showstep(modulationstep);
        platform::yield();
    }
}

void writeoptions(filewriter& file) {
    showstep(optionsstep);
    writetexts(file, {"STI parameters"});
    std::string line;
    for (const optionflag& option : optionflags) {
        listtext(line, option.label);
        listwhole(line, SessionState.*option.flag);
        endline(file, line);
    }
    writelabels(file, "Freq. (Hz)", modulationlabels);
    listtext(line, "Noise Level");
    writevalues(line, SessionState.noiseLevel);
    endline(file, line);
    listtext(line, "Voice Correction");
    writevalues(line, SessionState.voiceCorrection);
    endline(file, line);
    platform::yield();
}

// --- Reading ---

// A file that is being read.
struct loading {
    listreader file;
    double blocks = progressblocks(file);
};

// The share of it that has been read, in per cent.
double percentread(const loading& load) {
    if (load.blocks == 0) inputfailure(load.file, errorkind::divisionbyzero, "the file is too short");
    return static_cast<double>(load.file.position) / progressblock / load.blocks * 100;
}

void showread(const loading& load) {
    platform::statustext(2, numbertext(std::trunc(percentread(load))) + "%");
    platform::yield();
}

void skiplines(listreader& file, int count) {
    for (int i = 0; i < count; ++i) readline(file);
}

// The number that a row begins with. It decides where the row goes.
std::int32_t readreceiver(listreader& file) {
    const listreader start = file;
    const std::int32_t receiver = readwhole32(file);
    if (receiver < 0 || receiver > highestreceiver)
        inputfailure(start, errorkind::subscript,
                     "subscript out of range, receiver " + std::to_string(receiver) + " is outside 0.." +
                         std::to_string(highestreceiver));
    return receiver;
}

void readrow(listreader& file, const filetable& table, std::int32_t receiver,
             std::span<const std::int32_t> bands) {
    std::array<float, bandcount> values;
    readsingles(file, std::span(values).first(bands.size()));
    float* const row = table.row(receiver);
    for (std::size_t i = 0; i < bands.size(); ++i) row[bands[i]] = values[i];
}

void readmodulationrow(listreader& file, std::int32_t receiver, int frequency) {
    std::array<float, speechbands> values;
    readsingles(file, values);
    for (int band = 0; band < speechbands; ++band)
        P.modulationTransfer(receiver, frequency, band) = values[static_cast<std::size_t>(band)];
}

// The rows run on the file's own numbers: the table ends when the one behind the last row's exceeds N.
void readtable(loading& load, const filetable& table, std::span<const std::int32_t> bands) {
    skiplines(load.file, 3);
    std::int32_t next = 0;
    while (next <= RoomModel.receiverCount) {
        const std::int32_t receiver = readreceiver(load.file);
        readrow(load.file, table, receiver, bands);
        next = receiver + 1;
    }
    showread(load);
}

void readmodulation(loading& load) {
    skiplines(load.file, 3);
    for (std::int32_t r = 0; r <= RoomModel.receiverCount; ++r) {
        skiplines(load.file, 2);
        for (int i = 1; i <= modulationcount; ++i) {
            readtext(load.file); // the frequency
            readmodulationrow(load.file, r, i);
        }
        showread(load);
    }
}

void readoptions(listreader& file) {
    readline(file);
    for (const optionflag& option : optionflags) {
        readtext(file);
        SessionState.*option.flag = readwhole32(file);
    }
    readline(file);
    readtext(file);
    readsingles(file, SessionState.noiseLevel);
    readtext(file);
    readsingles(file, SessionState.voiceCorrection);
}

// A file name, which may hold double quotes itself: all up to the last one of its line.
std::string_view readname(listreader& file) {
    const std::string_view line = trimboth(readline(file));
    const std::size_t last = line.rfind('"');
    return line.starts_with('"') && last > 0 ? line.substr(1, last - 1) : line;
}

void readcurrent(loading& load) {
    readline(load.file);
    readtext(load.file);
    SessionState.geometryFileName = utf8text(readname(load.file));
    readtext(load.file);
    RoomModel.receiverCount = readreceiver(load.file); // N, the last of them
    for (const filetable& table : maintables) readtable(load, table, allbands);
    readtable(load, speechtable, speechcolumns);
    readmodulation(load);
    readoptions(load.file);
    // The only test for the tables of decay times: a tail that is short against the file counts as none.
    // Meant.
    if (percentread(load) < wholefile)
        for (const filetable& table : decaytables) readtable(load, table, allbands);
}

// The tables of the older layout, which has neither LF nor LFC.
bool inolderfile(const filetable& table) {
    return table.title != "LF" && table.title != "LFC";
}

void readolder(loading& load, std::string_view first) {
    platform::beep();
    if (first.size() < oldnamestart + oldnametail)
        inputfailure(openlist(load.file.buffer, load.file.name), errorkind::typemismatch,
                     "the first line holds no file name");
    const std::string_view name = first.substr(oldnamestart);
    SessionState.geometryFileName = utf8text(name.substr(0, name.size() - oldnametail)) + ".RAY";
    skiplines(load.file, 2);
    while (!nothingleft(load.file)) {
        for (const filetable& table : maintables) {
            if (!inolderfile(table)) continue;
            const std::int32_t receiver = readreceiver(load.file);
            readtext(load.file);
            readrow(load.file, table, receiver, allbands);
            if (&table == std::begin(maintables) || &table == std::prev(std::end(maintables))) showread(load);
        }
        for (int i = 1; i <= modulationcount; ++i) {
            const std::int32_t receiver = readreceiver(load.file);
            for (int text = 0; text < 3; ++text) readtext(load.file);
            readmodulationrow(load.file, receiver, i);
            for (int text = 0; text < 3; ++text) readtext(load.file);
        }
    }
}

// The older file's tables in the current layout, if the user wants it. N is that of the session and may be
// smaller than the file's: the old file is kept.
void convertolder(const std::string& name) {
    platform::pointer(platform::shape::normal);
    computesti();
    if (platform::messagebox(
            "Warning",
            "STI values have been calculated - Do You want to update the compressed parameter "
            "file with new file format?",
            platform::buttons::okcancel, platform::icon::exclamation,
            platform::answer::ok) != platform::answer::ok)
        return;
    std::string kept = name + ".old";
    for (int i = 1; canopen(kept); ++i)
        kept = name + ".old" + std::to_string(i); // that of an earlier time stays
    replacefile(kept, readfile(name));
    saveparameters(name);
}

} // namespace

std::string parameternameof(const std::string& name) {
    return withoutlast(name, 3) + "-" + name.substr(withoutlast(name, 2).size());
}

bool isparameterfile(const std::string& name) {
    return parameternameof(name) == name;
}

void saveparameters(const std::string& name) {
    platform::beep();
    platform::pointer(platform::shape::wait);
    const std::string path = parameternameof(name);
    platform::statustext(1, "Saving parameters to " + pagetext(path) + " ...");
    filewriter file(path);
    writetexts(file, {firstline});
    writetexts(file, {"Acoustic Parameters from file:", pagetext(name)});
    writetexts(file, {"Geometry file:", pagetext(SessionState.geometryFileName)});
    std::string line;
    listtext(line, "Number of receivers =");
    listwhole(line, RoomModel.receiverCount);
    endline(file, line);
    for (const filetable& table : maintables) writetable(file, table, allbands);
    writetable(file, speechtable, speechcolumns);
    writemodulation(file);
    writeoptions(file);
    for (const filetable& table : decaytables) writetable(file, table, allbands);
    file.finish();
    platform::pointer(platform::shape::normal);
    platform::statustext(1, "");
    platform::statustext(2, "");
}

void loadparameters(const std::string& name) {
    platform::statustext(1, "Loading acoustics parameters from " + pagetext(name) + " ...");
    platform::pointer(platform::shape::wait);
    {
        const filebytes bytes = readfile(name);
        loading load{openlist(bytes, pagetext(name))};
        const std::string_view first = readline(load.file);
        if (first.starts_with(oldfirstline)) {
            readolder(load, first);
            convertolder(name);
        } else {
            readcurrent(load);
        }
    }
    SessionState.parameterSource = -1;
    platform::pointer(platform::shape::normal);
    platform::statustext(1, "");
    platform::statustext(2, "");
}

} // namespace orv

// Sessions and files of the verification.
#include "verification/session.h"

#include "base/files.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/scripted/scripted.h"
#include "results/parameterfile.h"
#include "results/parameterset.h"
#include "results/resultreader.h"
#include "results/resultset.h"
#include "results/speechindex.h"
#include "room/roommodel.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"
#include "shell/startup.h"

#include <cmath>
#include <cstdlib>
#include <system_error>

namespace orv::verification {

namespace {

constexpr std::string_view lineend = "\r\n";
constexpr std::string_view lateralfield[] = {"LFC = ", "LE  = ", "LF  = "};

void addline(std::string& text, const std::string& line) {
    text.append(line).append(lineend);
}

std::string numbers(const std::array<double, octaves>& values) {
    std::string line;
    for (const double value : values) line += " " + trimmednumber(value);
    return line;
}

std::string headertext(const resultfile& file) {
    std::string text;
    addline(text, "Microphones = " + trimmedwhole(static_cast<int>(file.receivers.size())));
    addline(text, "SoundSpeed  = " + trimmednumber(file.soundSpeed - 1)); // readers add one
    addline(text, "First band  = 0");
    addline(text, "Last band   = 9");
    addline(text, "Rays generated = " + trimmednumber(file.pyramids));
    addline(text, "Mean free path = " + trimmednumber(file.freePath));
    addline(text, "Time        = " + trimmednumber(file.length));
    addline(text, "Precision   = " + trimmednumber(file.step));
    addline(text, "Format      = " + trimmednumber(file.format));
    addline(text, "Name        = " + file.source);
    return text;
}

// The share of the late energy that the calculation found.
real latefactor(const resultfile& file, int slot) {
    if (!(file.beta > 0) || slot <= 0) return 1;
    const real critical =
        real(file.freePath) / 4 / file.soundSpeed * std::sqrt(real(file.pyramids) / file.beta);
    return 1 - std::exp(-std::pow(critical / (slot * real(file.step)), real(file.alfa)));
}

std::string blocktext(const resultfile& file, const receiverblock& block, int number) {
    const bool labelled = file.format >= 1.2;
    const auto& [x, y, z] = block.place;
    const std::string place = trimmednumber(x) + " " + trimmednumber(y) + " " + trimmednumber(z) + " 0 0 0";
    const std::string delay = trimmednumber(block.arrival * file.step);
    std::string text(lineend);
    addline(text, "[Microphone_" + trimmedwhole(number) + "]");
    addline(text, labelled ? "Position = " + place : place);
    if (labelled) {
        addline(text, "Delay = " + delay);
        const std::array<double, octaves>* const rows[] = {&block.lfc, &block.le, &block.lf};
        for (std::size_t i = 0; i < std::size(rows); ++i)
            addline(text, std::string(lateralfield[i]) + numbers(*rows[i]));
        addline(text, "31.5 63 125 250 500 1000 2000 4000 8000 16000");
    } else {
        addline(text, numbers(block.le));
        addline(text, delay);
    }
    for (int t = 0; t < file.slots(); ++t) {
        std::array<double, octaves> energies{};
        const int slot = t - block.arrival;
        const real factor = latefactor(file, slot);
        for (std::size_t b = 0; b < octaves; ++b)
            energies[b] = static_cast<double>(energy(block.bands[b], slot) * factor);
        addline(text, numbers(energies));
    }
    return text;
}

// --- Parameter files ---

constexpr std::string_view maintitles[] = {"Leq", "Ldir", "Lrev",        "Riv/Direct", "Lp - Lw",
                                           "C50", "C80",  "Center Time", "Aeq",        "LE",
                                           "LF",  "LFC",  "Aeq2",        "ITDGeq"};
constexpr std::string_view decaytitles[] = {"EDT", "T10", "T15", "T20", "T30"};
constexpr std::string_view bandlabels =
    R"("Num.","31.5","63","125","250","500","1k","2k","4k","8k","16k","L","A")";
constexpr std::string_view speechlabels = R"("125","250","500","1k","2k","4k","8k")";

std::string commas(const std::array<double, speechbands>& values) {
    std::string line;
    for (const double value : values) line += "," + trimmednumber(value);
    return line;
}

void addtable(std::string& text, std::string_view title, const std::vector<parameterblock>& receivers,
              int columns) {
    addline(text, "\"Parameter =\",\"" + std::string(title) + "\"");
    addline(text, R"("Rec.","Frequency Bands")");
    addline(text, std::string(bandlabels));
    for (std::size_t r = 0; r <= receivers.size(); ++r) {
        std::string line = numbertext(static_cast<double>(r)) + " ";
        const double value = title == "Leq" && r > 0 ? receivers[r - 1].level : 0;
        for (int i = 0; i < columns; ++i) line += "," + trimmednumber(value);
        addline(text, line);
    }
}

void addmodulation(std::string& text, const std::vector<parameterblock>& receivers) {
    addline(text, R"("Parameter =","Modulation Transfer Functions")");
    addline(text, R"("Rec.","Frequency Bands")");
    addline(text, std::string(bandlabels));
    for (std::size_t r = 0; r <= receivers.size(); ++r) {
        addline(text, "\"Rec.\"," + trimmedwhole(static_cast<int>(r)) + ",\"Frequency bands\"");
        addline(text, "\"Fmod\"," + std::string(speechlabels));
        const matrix rows = r > 0 ? receivers[r - 1].modulation : matrix{};
        for (const auto& row : rows) addline(text, " 1 " + commas(row)); // nobody reads the frequency
    }
}

void addoptions(std::string& text, const speechoptions& options) {
    const auto flag = [](bool set) { return std::string(set ? ",-1" : ",0"); };
    addline(text, "\"STI parameters\"");
    addline(text, "\"Background Noise Flag =\"" + flag(options.noise));
    addline(text, "\"Force VoiceSPL   Flag =\"" + flag(options.voicelevel));
    addline(text, "\"Equalize SpectrumFlag =\"" + flag(options.spectrum));
    addline(text, "\"Freq. (Hz)\"," + std::string(speechlabels));
    addline(text, "\"Noise Level\"" + commas(options.noiselevel));
    addline(text, "\"Voice Correction\"" + commas(options.voicecorrection));
}

} // namespace

session::session() : before(std::filesystem::current_path()) {
    std::string form = (std::filesystem::temp_directory_path() / "orvverify-XXXXXX").string();
    if (!mkdtemp(form.data()))
        throw runtimeerror{errorkind::fileaccess, "No directory can be made in the temporary one."};
    directory = form;
    scripted::reset();
    scripted::record(false);
    scripted::setpicture(&picture.surface);
    scripted::setprogramdirectory(directory);
    resetcommands();
    SessionState = sessionstate{};
    ResultSet = resultset{};
    ImpulseResponse = impulseresponse{};
    startup();
}

session::~session() {
    std::error_code ignored;
    std::filesystem::current_path(before, ignored);
    std::filesystem::remove_all(directory, ignored);
    scripted::setpicture(nullptr);
}

std::string session::inside(const std::string& name) const {
    return joinpath(directory, name);
}

void session::write(const std::string& name, std::string_view text) const {
    replacefile(inside(name), text);
}

int resultfile::slots() const {
    return static_cast<int>(std::lround(length / step)) + 1;
}

void loadresultfile(const session& in, const std::string& name, const resultfile& file) {
    in.write("orvanta.ini",
             "Alfa=" + trimmednumber(file.alfa) + "\r\nBeta=" + trimmednumber(file.beta) + "\r\n");
    std::string text = headertext(file);
    int number = 0;
    for (const receiverblock& block : file.receivers) text += blocktext(file, block, ++number);
    in.write(name, text);
    SessionState.resultFileName = in.inside(name);
    loadresult(in.inside(name));
}

void loadparameterfile(const session& in, const std::string& name,
                       const std::vector<parameterblock>& receivers, const speechoptions& options) {
    std::string text;
    addline(text, "\"New File Format - Version 1.7 and above!\"");
    addline(text, "\"Acoustic Parameters from file:\",\"" + name + "\"");
    addline(text, R"("Geometry file:","hall.RAY")");
    addline(text, "\"Number of receivers =\"," + trimmedwhole(static_cast<int>(receivers.size())));
    for (const std::string_view title : maintitles) addtable(text, title, receivers, bandcount);
    addtable(text, "STI", receivers, 9);
    addmodulation(text, receivers);
    addoptions(text, options);
    for (const std::string_view title : decaytitles) addtable(text, title, receivers, bandcount);
    in.write(name, text);
    SessionState.resultFileName = in.inside(name);
    loadparameters(in.inside(name));
}

void computespeech() {
    scripted::expectwindow("STI Options");
    computesti();
}

} // namespace orv::verification

// A session of the program for one subject of the verification, and the files that it loads, written without
// the program's own writers.
#pragma once

#include "scene/recordsurface.h"
#include "verification/series.h"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orv::verification {

constexpr int octaves = 10;

// A session as start-up leaves it, in an empty data directory that is the current one, for the time of a
// subject.
struct session {
    session();
    ~session();
    session(const session&) = delete;
    session& operator=(const session&) = delete;

    std::string inside(const std::string& name) const;
    void write(const std::string& name, std::string_view text) const; // a file of the data directory

private:
    std::string directory;
    std::filesystem::path before;
    recordsurface picture{800, 500};
};

// What a result file holds of a receiver. Energies are as they arrived; the file carries them times the late
// energy factor.
struct receiverblock {
    std::array<double, 3> place{};
    int arrival = 0; // slots of silence in front
    std::array<series, octaves> bands;
    std::array<double, octaves> lfc{}, le{}, lf{};
};

struct resultfile {
    double length = 1, step = 0.001; // s
    double format = 1.2;             // below 1.2 only `le` is written
    double alfa = 1, beta = 0;       // of the settings, for the late energy factor; 0 for none
    double pyramids = 32768, freePath = 12, soundSpeed = 340;
    std::string source = "NONE";
    std::vector<receiverblock> receivers = {};

    int slots() const; // in all, before and behind an arrival
};

// Writes the result with the settings it asks for and loads it.
void loadresultfile(const session& in, const std::string& name, const resultfile& file);

// What a parameter file holds of a receiver, for the speech index: the level of each band 31.5 Hz to 16 kHz
// and the modulation by frequency and octave band from 125 Hz.
constexpr int frequencies = 14, speechbands = 7;
using matrix = std::array<std::array<double, speechbands>, frequencies>;
struct parameterblock {
    double level = 0;
    matrix modulation{};
};
struct speechoptions {
    bool noise = false, voicelevel = false, spectrum = false;
    std::array<double, speechbands> noiselevel{}, voicecorrection{};
};

// Writes a parameter file of these receivers and loads it.
void loadparameterfile(const session& in, const std::string& name,
                       const std::vector<parameterblock>& receivers, const speechoptions& options);

// The speech index of all receivers, as its command computes it from what is loaded.
void computespeech();

} // namespace orv::verification

// The sample hall and its true sound field.
//
// Acoustically the hall is a rectangular box, for which image sources are exact: x 0..36 m along the hall
// (the platform stands at the low end), y -10..10 m across, z 0..12 m upwards. Doors, windows and grilles
// lie in its sides. Platform, balconies and reflectors are drawn, but take no part in the sound.
//
// The field is the sum of all image sources up to an order, each weakened by the absorption and the
// scattering of the sides it meets, and of a decaying diffuse tail that carries what was scattered or
// reflected more often. Everything here is the truth, without the late energy factor that the result and
// ray path files carry (see latefactor).
//
// Bands are counted 0..9 here: 31.5 Hz to 16 kHz. Receivers and sources are counted from 1 as in the files.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orv::samples {

constexpr int bandCount = 10;
constexpr int hallSides = 6; // x low, x high, y low, y high, z low, z high

struct point {
    double x = 0;
    double y = 0;
    double z = 0;
};

// One material as the hall uses it: the row of the material table that its figures stand in.
struct hallmaterial {
    int row;
    std::string name;
    std::array<double, bandCount> absorption;
    std::array<double, bandCount> scattering;
};

// A hole or door in a face.
struct hallopening {
    bool door;
    int material;
    std::vector<point> corners;
};

// A face of the geometry file; its number there is its place in hallfaces() + 1. `side` is 0..5 for a part of
// the box and -1 for what is only drawn. `wall` counts the wall group that it stands in, 0 for none.
struct hallface {
    int side;
    int wall;
    int material;
    std::vector<point> corners;
    std::vector<hallopening> openings;
};

// What a response is made of. The defaults are those of the shipped samples; alfa and beta are those of the
// shipped settings file.
struct halloptions {
    std::uint64_t seed = 20240611;
    double timeStep = 0.002;   // s
    double responseLength = 3; // s
    double alfa = 0.9;
    double beta = 1;
    double pyramidCount = 32768;
    int order = 4;       // highest number of reflections of an image source, 0..10
    double format = 1.2; // of the result file; below 1.2 is the old layout
};

// The path of one image source.
struct hallpath {
    int source = 0;
    double time = 0; // s from emission, rounded to the seven digits it is written with
    std::array<double, bandCount> energy{};
    std::vector<int> faces;    // one per reflection, in order
    std::vector<point> points; // where it is reflected
    double lateral = 0;        // |cosine| between its arrival and the line through the listener's ears
};

// The true response of one receiver.
struct hallresponse {
    double delay = 0;                // of the first direct sound, s
    int firstSlot = 0;               // its slot
    int slotCount = 0;               // slots 0..slotCount-1
    std::vector<double> energy;      // slot * 10 + band; re 0 dB = 1
    std::vector<double> imageEnergy; // the part of it that image sources carry, same shape

    // Energy per band for the lateral rows: early (to 80 ms), figure of eight by cosine squared from 5 ms and
    // from 25 ms, and by cosine from 5 ms; LF, LE and LFC are the latter three over the first (ISO 3382-1
    // annex A; 25 ms: Jordan's lateral efficiency).
    std::array<double, bandCount> early{};
    std::array<double, bandCount> lateral5{};
    std::array<double, bandCount> lateral25{};
    std::array<double, bandCount> cosine5{};
};

// The sources that take part, by number.
using sourcelist = std::span<const int>;

const std::vector<hallmaterial>& hallmaterials();
const std::vector<hallface>& hallfaces();
const std::vector<point>& hallsources();                // two
const std::vector<point>& hallreceivers();              // thirty
const std::array<double, bandCount>& hallsourcepower(); // dB re 1 pW per octave band, of either source

// Where listeners look at (the middle of the platform) and where the sources are aimed (the stalls).
point halllisteneraim();
point hallsourceaim();

double hallvolume();       // m3
double hallmeanfreepath(); // 4 V / S, m
double hallsoundspeed();   // m/s at 20 degrees C

// Energy absorption of the air per metre, at 20 degrees C, 50 % relative humidity and 101.325 kPa
// (ISO 9613-1, at the exact octave band centre).
double airabsorption(int band);

// Area-weighted absorption of a side of the box, openings included.
double sideabsorption(int side, int band);

// Decay time of the diffuse tail, s: Eyring's with the area-weighted absorption, and air.
double halldecaytime(int band);

// The share of the tail in the field at a time (s from emission): sound that was scattered, or reflected
// more than `order` times, when reflections come as a Poisson process at one per mean free path.
double tailshare(int band, double time, int order);

// All paths of a receiver (1..30) from one source (1..2), sorted by time.
std::vector<hallpath> hallpaths(int receiver, int source, int order);

// The response of a receiver (1..30) to the given sources together: the sum of the responses to each.
hallresponse respond(const halloptions& options, int receiver, sourcelist sources);

// A number as the files hold it, with seven digits.
double seven(double value);

// Highest slot of a response: whole number nearest to length / step, with the step held in single
// precision as the result reader has it.
int highestslot(const halloptions& options);

// The time, in s, from which late energy is thinned out: mean free path / 4 / speed * sqrt(pyramids / beta),
// 1E9 for a beta of 0 or below. Constants held in single precision as the result reader holds them.
double criticaltime(const halloptions& options, double meanFreePath, double soundSpeed);

// The factor w that the energy found at a time (s, from the first arrival) has been thinned out by, and that
// a reader divides by: 1 - exp(-(critical / time) ^ alfa), 1 at a time of 0 or below.
double latefactor(double criticalTime, double time, double alfa);

} // namespace orv::samples

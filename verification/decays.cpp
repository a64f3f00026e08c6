// Room-acoustic parameters of decays that are sums of geometric series, against closed forms.
#include "base/numbertext.h"
#include "results/parameterfile.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "samples/hall.h"
#include "samples/samplefiles.h"
#include "shell/sessionstate.h"
#include "verification/session.h"
#include "verification/subjects.h"

#include <algorithm>
#include <cmath>

namespace orv::verification {

namespace {

// A-weighting of the octave bands (IEC 61672-1), dB.
constexpr double weightlevels[octaves] = {-39.4, -26.2, -16.1, -8.6, -3.2, 0, 1.2, 1, -1.1, -6.6};
constexpr int bandorder[] = {6, 1, 2, 3, 4, 5, 7, 8, 9, 10, 11, 12}; // what is shown of equals is 1 kHz
constexpr double strengthoffset = 31; // dB, a free field's level at 10 m below the power level

std::array<real, octaves> linearweights() {
    std::array<real, octaves> weights{};
    weights.fill(1);
    return weights;
}

std::array<real, octaves> aweights() {
    std::array<real, octaves> weights{};
    for (std::size_t b = 0; b < octaves; ++b) weights[b] = std::pow(real(10), real(weightlevels[b]) / 10);
    return weights;
}

// One of the twelve bands of a receiver, with all that its parameters depend on.
struct response {
    series heard;
    int arrival = 0; // slots of silence in front
    real step = 0;   // s
    real power = 0;  // dB, of the source
    real lfc = 0, le = 0, lf = 0;

    int slotsto(real seconds) const { return static_cast<int>(std::lround(seconds / step)); }
};

real level(real energy) {
    return 10 * std::log10(energy);
}

// As levels are told: rounded to 0.1 dB.
real told(real value) {
    return std::floor(10 * value + real(0.5)) / 10;
}

real total(const response& r) {
    return sumof(r.heard, 0, r.heard.slots);
}
real direct(const response& r) {
    return energy(r.heard, 0);
}

real clarity(const response& r, real limit) {
    const int slots = r.slotsto(limit);
    return std::floor(1000 * std::log10(sumof(r.heard, 0, slots) / sumof(r.heard, slots, r.heard.slots))) /
           100;
}

// Sums over the early reflections: whole up to 50 ms, then fading out to 100 ms by f = (100 ms - t) / 50 ms.
struct earlysums {
    real energy, moment; // moment in s
};
earlysums earlyof(const response& r) {
    const int half = r.slotsto(0.05L), end = r.slotsto(0.1L);
    const series& e = r.heard;
    const real tail = sumof(e, half, end), tailmoment = firstmoment(e, half, end);
    const real scale = r.step / 0.05L;
    return {sumof(e, 0, half) + 2 * tail - scale * tailmoment,
            r.step * (firstmoment(e, 0, half) + 2 * tailmoment - scale * secondmoment(e, half, end))};
}

// The time of a straight line through the backward integrated curve between two levels below its second
// point, in long double: what ISO 3382-1 has, with the beginning and the end that the program promises.
real decaytime(const response& r, real top, real bottom) {
    const int slots = r.arrival + r.heard.slots;
    const auto curve = [&r](int slot) {
        return level(1 + sumof(r.heard, std::max(slot - r.arrival, 0), r.heard.slots));
    };
    const real reference = curve(1);
    int first = 2;
    while (curve(first) >= reference + top) ++first;
    real n = 0, x = 0, y = 0, xx = 0, xy = 0;
    for (int i = first - 1;; ++i) {
        if (i >= slots - 1) return 0; // not reached
        const real time = (i - first + 1) * r.step, fall = curve(i) - reference;
        n += 1;
        x += time;
        y += fall;
        xx += time * time;
        xy += time * fall;
        if (fall < bottom) break;
    }
    return -60 * (n * xx - x * x) / (n * xy - x * y);
}

// Every parameter by its name, with what its rounding leaves of an exact value and of a decay time.
struct parameter {
    std::string_view name, shown;
    double allowed;
    real (*form)(const response& r);
};
constexpr double asrounded = 0, sevendigits = 2e-6, decayslack = 2e-6, fractionslack = 6e-4;
const parameter parameters[] = {
    {"Leq", "Leq, dB", asrounded, [](const response& r) { return told(level(total(r))); }},
    {"Ldir", "Ldir, dB", asrounded, [](const response& r) { return told(level(direct(r))); }},
    {"Lrev", "Lrev, dB", asrounded, [](const response& r) { return told(level(total(r) - direct(r))); }},
    {"Ldir-Lrev", "Ldir-Lrev, dB", 2e-5,
     [](const response& r) { return told(level(direct(r))) - told(level(total(r) - direct(r))); }},
    {"Leq-Lw", "Leq-Lw, dB", 2e-5, [](const response& r) { return told(level(total(r))) - r.power; }},
    {"G", "G, dB", 2e-5, [](const response& r) { return told(level(total(r))) - r.power + strengthoffset; }},
    {"C50", "C50, dB", asrounded, [](const response& r) { return clarity(r, 0.05L); }},
    {"C80", "C80, dB", asrounded, [](const response& r) { return clarity(r, 0.08L); }},
    {"D50", "D50", fractionslack,
     [](const response& r) { return sumof(r.heard, 0, r.slotsto(0.05L)) / total(r); }},
    {"Ts", "Ts, ms", asrounded,
     [](const response& r) {
         return told(1000 * r.step * firstmoment(r.heard, 0, r.heard.slots) / total(r));
     }},
    {"Aeq", "Aeq", 2e-5, [](const response& r) { return std::sqrt(total(r) / direct(r) - 1); }},
    {"Aeq2", "Aeq2", 2e-5, [](const response& r) { return std::sqrt(earlyof(r).energy / direct(r) - 1); }},
    {"ITDGeq", "ITDGeq, ms", asrounded,
     [](const response& r) {
         const earlysums early = earlyof(r);
         return std::floor(1000 * early.moment / (early.energy - direct(r)) + real(0.5));
     }},
    {"EDT", "EDT, s", decayslack, [](const response& r) { return decaytime(r, -0.5L, -10); }},
    {"T10", "T10, s", decayslack, [](const response& r) { return decaytime(r, -5, -15); }},
    {"T15", "T15, s", decayslack, [](const response& r) { return decaytime(r, -5, -20); }},
    {"T20", "T20, s", decayslack, [](const response& r) { return decaytime(r, -5, -25); }},
    {"T30", "T30, s", decayslack, [](const response& r) { return decaytime(r, -5, -35); }},
    {"LE", "LE", sevendigits, [](const response& r) { return r.le; }},
    {"LF", "LF", sevendigits, [](const response& r) { return r.lf; }},
    {"LFC", "LFC", sevendigits, [](const response& r) { return r.lfc; }},
};
constexpr std::string_view lateral[] = {"LE", "LF", "LFC"};

bool islateral(std::string_view name) {
    return std::find(std::begin(lateral), std::end(lateral), name) != std::end(lateral);
}

real weightedmean(const std::array<double, octaves>& values, const std::array<real, octaves>& weights) {
    real sum = 0, weight = 0;
    for (std::size_t b = 0; b < octaves; ++b) {
        sum += weights[b] * values[b];
        weight += weights[b];
    }
    return sum / weight;
}

// The twelve bands of a receiver by bandIndex, 0 unused.
using receiverbands = std::array<response, bandcount + 1>;
receiverbands bandsof(const resultfile& file, const receiverblock& block, const std::array<real, 13>& power) {
    receiverbands bands;
    const std::array<real, octaves> weights[] = {aweights(), linearweights()};
    for (std::size_t b = 1; b <= bandcount; ++b) {
        response& r = bands[b];
        r.arrival = block.arrival;
        r.step = file.step;
        r.power = power[b];
        if (b <= octaves) {
            r.heard = block.bands[b - 1];
            r.lfc = block.lfc[b - 1];
            r.le = block.le[b - 1];
            r.lf = block.lf[b - 1];
        } else {
            const std::array<real, octaves>& w = weights[b - weightedband];
            r.heard = weightedsum(block.bands, w);
            r.lfc = weightedmean(block.lfc, w);
            r.le = weightedmean(block.le, w);
            r.lf = weightedmean(block.lf, w);
        }
    }
    return bands;
}

double computedvalue(std::string_view name, int receiver, int band) {
    SessionState.parameterName = name;
    return parametervalue(receiver, band);
}

// A value as a table of single precision takes it; D50 is computed in double.
double stored(std::string_view name, real value) {
    return name == "D50" ? static_cast<double>(value) : static_cast<double>(static_cast<float>(value));
}

// Power levels of the sample hall's source, dB, with the sums of the columns A and Lin.
std::array<real, 13> sourcepower() {
    std::array<real, 13> levels{};
    const std::array<real, octaves> weights = aweights();
    real weighted = 0, linear = 0;
    for (std::size_t b = 0; b < octaves; ++b) {
        levels[b + 1] = samples::hallsourcepower()[b];
        const real energy = std::pow(real(10), levels[b + 1] / 10);
        weighted += weights[b] * energy;
        linear += energy;
    }
    levels[weightedband] = level(weighted);
    levels[linearband] = level(linear);
    return levels;
}

void compareparameters(table& into, const receiverbands& bands, int receiver, std::size_t atcase) {
    for (const parameter& each : parameters)
        for (const int b : bandorder)
            compare(into, each.shown, each.allowed,
                    stored(each.name, each.form(bands[static_cast<std::size_t>(b)])),
                    computedvalue(each.name, receiver, b), atcase);
}

// --- Decays ---

// A receiver whose bands decay alike but for their levels, or by themselves.
receiverblock blockof(const resultfile& file, int number) {
    receiverblock block;
    block.place = {1.0 * number, 2, 1.2};
    block.arrival = 7 * number;
    for (std::size_t b = 0; b < octaves; ++b) {
        const auto band = static_cast<double>(b);
        block.bands[b].slots = file.slots() - block.arrival;
        block.lf[b] = 0.08 + 0.02 * band + 0.003 * number;
        block.lfc[b] = 0.1 + 0.021 * band + 0.002 * number;
        block.le[b] = 0.05 + 0.01 * band + 0.001 * number;
    }
    return block;
}

// dB of the first slot of a band 0..9, each band its own.
real bandlevel(std::size_t band) {
    return 91 + real(1.3) * static_cast<real>(band);
}

struct slope {
    double seconds, below; // dB below the first
};
receiverblock slopesblock(const resultfile& file, int number, std::initializer_list<slope> slopes,
                          real lift = 0) {
    receiverblock block = blockof(file, number);
    for (std::size_t b = 0; b < octaves; ++b)
        for (const slope& each : slopes)
            block.bands[b].terms.push_back(decayterm(
                std::pow(real(10), (bandlevel(b) + lift - each.below) / 10), each.seconds, file.step));
    return block;
}

receiverblock mixedblock(const resultfile& file, int number) {
    receiverblock block = blockof(file, number);
    for (std::size_t b = 0; b < octaves; ++b)
        block.bands[b].terms.push_back(decayterm(std::pow(real(10), bandlevel(b) / 10),
                                                 4 - real(0.35) * static_cast<real>(b), file.step));
    return block;
}

constexpr double seconds[] = {0.5, 1, 2, 4};

resultfile wholedecays() {
    resultfile file;
    file.length = 6;
    file.source = samples::sourceFileName;
    int number = 0;
    for (const double T : seconds) file.receivers.push_back(slopesblock(file, ++number, {{T, 0}}));
    file.receivers.push_back(slopesblock(file, ++number, {{0.5, 0}, {2, 10}}));
    file.receivers.push_back(slopesblock(file, ++number, {{1, 0}, {4, 20}}));
    file.receivers.push_back(mixedblock(file, ++number));
    return file;
}

std::vector<receiverbands> allbands(const resultfile& file, const std::array<real, 13>& power) {
    std::vector<receiverbands> bands;
    for (const receiverblock& block : file.receivers) bands.push_back(bandsof(file, block, power));
    return bands;
}

table exponentials(const std::vector<receiverbands>& bands) {
    table found{"Exponential decays of 0.5, 1, 2 and 4 s",
                "6 s in slots of 1 ms, twelve bands each; the first slot of a band has 91 to 103 dB.",
                {"0.5 s", "1 s", "2 s", "4 s"}};
    for (std::size_t i = 0; i < 4; ++i) compareparameters(found, bands[i], static_cast<int>(i) + 1, i);
    return found;
}

table doubleslopes(const std::vector<receiverbands>& bands) {
    table found{
        "Double slopes",
        "Two decays in each band, the second beginning so much lower; and ten bands that decay by "
        "themselves, so that A and Lin are sums of ten exponentials.",
        {"0.5 s, and 2 s 10 dB lower", "1 s, and 4 s 20 dB lower", "4 s at 31.5 Hz to 0.85 s at 16 kHz"}};
    for (std::size_t i = 0; i < 3; ++i) compareparameters(found, bands[i + 4], static_cast<int>(i) + 5, i);
    return found;
}

// --- The mean of the room ---

bool islevelmean(std::string_view name) {
    return name == "Leq" || name == "Leq-Lw" || name == "G";
}

real meanof(const parameter& of, const std::vector<receiverbands>& bands, int band) {
    const auto N = static_cast<real>(bands.size());
    real sum = 0;
    for (const receiverbands& each : bands) {
        const real value = of.form(each[static_cast<std::size_t>(band)]);
        sum += (islevelmean(of.name) ? std::pow(real(10), value / 10) : value) / N;
    }
    return islevelmean(of.name) ? level(sum) : sum;
}

table roommeans(const std::vector<receiverbands>& bands) {
    table found{"The mean of the room", "Energy means of Leq, Leq-Lw and G, plain means of the rest, over "
                                        "the seven receivers above; lateral parameters and D50 have none."};
    for (const parameter& each : parameters)
        for (const int b : bandorder)
            if (!islateral(each.name) && each.name != "D50")
                compare(found, each.shown, 2e-5, static_cast<double>(meanof(each, bands, b)),
                        computedvalue(each.name, 0, b));
    return found;
}

// --- The parameter file ---

using valuetable = std::vector<double>; // by parameter, receiver and band
valuetable allvalues(std::size_t receivers) {
    valuetable values;
    for (const parameter& each : parameters)
        for (int r = 0; r <= static_cast<int>(receivers); ++r)
            for (const int b : bandorder) values.push_back(computedvalue(each.name, r, b));
    return values;
}

void forgetparameters(std::int32_t last) {
    auto& P = ParameterSet;
    const auto clear = [last](auto&... tables) { (tables.clearrows(last), ...); };
    clear(P.Leq, P.Ldir, P.Lrev, P.LdirLrev, P.LeqLw, P.C50, P.C80, P.Ts, P.Aeq, P.Aeq2, P.ITDGeq, P.EDT,
          P.T10, P.T15, P.T20, P.T30, P.LE, P.LF, P.LFC);
}

table throughparameterfile(const session& in, std::size_t receivers) {
    table found{"Through the parameter file",
                "All parameters of all receivers, saved, forgotten and loaded; the file has seven digits, "
                "which are four decimals above 100."};
    const valuetable before = allvalues(receivers);
    saveparameters(in.inside("decays._01"));
    forgetparameters(static_cast<std::int32_t>(receivers));
    loadparameters(in.inside("decays.-01"));
    const valuetable after = allvalues(receivers);
    for (std::size_t i = 0; i < before.size(); ++i)
        compare(found, "Value read against value saved", 6e-5, before[i], after[i]);
    return found;
}

// --- Cut off, thinned out, quiet ---

constexpr double cutlength = 1.5; // s

resultfile cutdecays() {
    resultfile file;
    file.length = cutlength;
    file.alfa = 0.9;
    file.beta = 1;
    int number = 0;
    for (const double T : seconds) file.receivers.push_back(slopesblock(file, ++number, {{T, 0}}));
    constexpr real quiet = -95; // dB
    file.receivers.push_back(slopesblock(file, ++number, {{1, 0}}, quiet));
    return file;
}

table cutoff(const session& in) {
    table found{"Short, thinned out and quiet responses",
                "1.5 s only, so that the sums end before the decay; energies carry the late energy factor of "
                "Alfa 0.9 and Beta 1, which loading has to take out. The last one is less than 30 dB above "
                "the floor of the decay curve, so that T30 is 0, \"not reached\".",
                {"0.5 s", "1 s", "2 s", "4 s", "1 s, quiet"}};
    const resultfile file = cutdecays();
    loadresultfile(in, "cut._01", file);
    std::array<real, 13> power;
    power.fill(110); // what a result without a source has, and below
    power[weightedband] = 114;
    power[linearband] = 120;
    const std::vector<receiverbands> bands = allbands(file, power);
    for (std::size_t i = 0; i < bands.size(); ++i)
        compareparameters(found, bands[i], static_cast<int>(i) + 1, i);
    return found;
}

// --- Below format 1.2 ---

// The lateral energy of a band that makes `ratio` of its first 80 ms, with the digits of a file.
double lateralenergy(const series& heard, const resultfile& file, double ratio) {
    const int early = static_cast<int>(std::lround(0.08 / file.step));
    return lenientnumber(numbertext(ratio * static_cast<double>(sumof(heard, 0, early))));
}

table oldlayout(const session& in) {
    table found{"Results below format 1.2",
                "LE is an energy there, over that of the first 80 ms.",
                {"0.5 s", "1 s", "2 s", "4 s", "1 s, quiet"}};
    resultfile file = cutdecays();
    file.format = 1;
    for (receiverblock& block : file.receivers)
        for (std::size_t b = 0; b < octaves; ++b)
            block.le[b] = lateralenergy(block.bands[b], file, 0.1 + 0.02 * static_cast<double>(b));
    loadresultfile(in, "old._01", file);
    const std::array<real, octaves> weights[] = {aweights(), linearweights()};
    for (std::size_t i = 0; i < file.receivers.size(); ++i) {
        const receiverblock& block = file.receivers[i];
        const receiverbands bands = bandsof(file, block, {});
        for (const int b : bandorder) {
            const response& r = bands[static_cast<std::size_t>(b)];
            real numerator = b <= octaves ? block.le[static_cast<std::size_t>(b - 1)] : 0;
            for (std::size_t k = 0; b > octaves && k < octaves; ++k)
                numerator += weights[b - weightedband][k] * block.le[k];
            compare(found, "LE", sevendigits, stored("LE", numerator / sumof(r.heard, 0, r.slotsto(0.08L))),
                    computedvalue("LE", static_cast<int>(i) + 1, b), i);
        }
    }
    return found;
}

void addwhole(subject& to) {
    const session here;
    here.write(samples::sourceFileName, samples::sourcetext());
    const resultfile whole = wholedecays();
    loadresultfile(here, "decays._01", whole);
    const std::vector<receiverbands> bands = allbands(whole, sourcepower());
    to.tables.push_back(exponentials(bands));
    to.tables.push_back(doubleslopes(bands));
    to.tables.push_back(roommeans(bands));
    to.tables.push_back(throughparameterfile(here, bands.size()));
}

void addshort(subject& to) {
    const session here;
    to.tables.push_back(cutoff(here));
    to.tables.push_back(oldlayout(here));
}

} // namespace

subject verifydecays() {
    subject found{"decays", "Decays",
                  "Result files with energies <i>A r<sup>n</sup></i> in the time slots, or sums of such, are "
                  "written with seven digits and loaded. What is expected are sums of geometric series, "
                  "which have closed forms (&Sigma; r<sup>n</sup>, &Sigma; n r<sup>n</sup>, &Sigma; n&sup2; "
                  "r<sup>n</sup>), put into the formulas of ISO 3382-1 and rounded as the program promises: "
                  "levels to 0.1 dB and Ts to 0.1 ms, C50 and C80 cut down to 0.01 dB. Decay times are a "
                  "least-squares line through the closed form of the backward integrated curve. D50 follows "
                  "from C50, which is cut down, and is compared with the exact share of energy."};
    addwhole(found);
    addshort(found);
    return found;
}

} // namespace orv::verification

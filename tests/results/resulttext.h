// Result files for tests, put together line by line, and the session that loads them.
#pragma once

#include "base/numbertext.h"
#include "results/resultreader.h"
#include "shell/startup.h"
#include "tests/testsupport.h"

#include <cmath>
#include <string>
#include <vector>

namespace orv {

// Energies of one receiver: slot by slot ten bands, as they stand in the file.
using slotrows = std::vector<std::array<double, octavebands>>;

struct resulttext {
    std::string format = "1.2";
    double length = 0.01, step = 0.001; // s, so eleven slots
    double pyramids = 1000, freepath = 4;
    std::string extra; // further header lines
    std::string body;

    std::string header() const {
        return "Microphones = 1\r\nSoundSpeed  = 339\r\nFirst band  = 0\r\nLast band   = 9\r\nPyramids tr =" +
               numbertext(pyramids) + "\r\nMean free p =" + numbertext(freepath) +
               "\r\nTime        =" + numbertext(length) + "\r\nPrecision   =" + numbertext(step) +
               "\r\nFormat      = " + format + "\r\n" + extra;
    }

    void block(const std::string& title, const slotrows& rows, double delay = 0.005) {
        const std::string lateral = ".1 .2 .3 .4 .5 .6 .7 .8 .9 1\r\n";
        body += "\r\n" + title + "\r\n";
        if (format == "1.2") {
            body += "Position = 1 2 3 0 0 0\r\nDelay =" + numbertext(delay) + "\r\nLFC = " + lateral +
                    "LE  = " + lateral + "LF  = " + lateral + "31.5 63 and so on\r\n";
        } else {
            body += "1 2 3 0 0 0\r\n" + lateral + numbertext(delay) + "\r\n";
        }
        for (const auto& row : rows) {
            for (const double energy : row) body += " " + numbertext(energy);
            body += "\r\n";
        }
    }

    std::string text() const { return header() + body; }
};

// `slots` rows of the same ten energies.
inline slotrows flatrows(std::size_t slots, double energy) {
    slotrows rows(slots);
    for (auto& row : rows) row.fill(energy);
    return rows;
}

// An exponential decay of `seconds` in every band from slot `arrival` on, `energy` in its first slot.
inline slotrows decayrows(std::size_t slots, std::size_t arrival, double energy, double seconds,
                          double step) {
    slotrows rows(slots);
    for (std::size_t t = arrival; t < slots; ++t)
        rows[t].fill(energy * std::pow(10.0, -6 * step * static_cast<double>(t - arrival) / seconds));
    return rows;
}

// A session with the constants that a load needs.
struct resultsession : sessiontest {
    resulttext file;

    void SetUp() override {
        computeconstants();
        clearparameters(20);
        settings("Alfa = 1\r\nBeta = 0\r\n");
    }

    void settings(const std::string& text) { writetext(inside("orvanta.ini"), text); }

    void load(const std::string& text, const std::string& name = "room._ab") {
        writetext(inside(name), text);
        loadresult(inside(name));
    }
};

} // namespace orv

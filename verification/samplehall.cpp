// The decay times of the sample hall: a plausibility of everything at once.
#include "samples/hall.h"

#include "results/parameterset.h"
#include "results/resultreader.h"
#include "samples/samplefiles.h"
#include "shell/sessionstate.h"
#include "verification/session.h"
#include "verification/subjects.h"

#include <cmath>
#include <string>

namespace orv::verification {

namespace {

constexpr int source[] = {1};
constexpr real length = 36, width = 20, height = 12; // m
constexpr real volume = length * width * height;
// x low, x high, y low, y high, z low, z high
constexpr real sideareas[samples::hallSides] = {width * height, width* height, length* height,
                                                length* height, length* width, length* width};
constexpr double allowed = 0.02; // s

// 24 ln 10 V / (c (- S ln(1 - mean absorption) + 4 m V))
real eyring(int band) {
    real area = 0, absorption = 0;
    for (int side = 0; side < samples::hallSides; ++side) {
        area += sideareas[side];
        absorption += sideareas[side] * samples::sideabsorption(side, band);
    }
    const real walls = -area * std::log(1 - absorption / area);
    return 24 * std::log(real(10)) * volume /
           (samples::hallsoundspeed() * (walls + 4 * samples::airabsorption(band) * volume));
}

} // namespace

subject verifysamplehall() {
    subject found{
        "samplehall", "The sample hall",
        "A plausibility of the whole way from a calculation's file to a parameter: the mean T30 of the "
        "thirty receivers of hall._01, by band, against Eyring's reverberation time of the hall's volume, "
        "materials and air. The sample's late sound decays by this formula, less what the calculation is "
        "taken to have lost of it; image sources, chance and the late energy correction lie in between."};
    const session here;
    here.write("orvanta.ini", "Alfa=.9\r\nBeta=1\r\n");
    here.write(samples::sourceFileName, samples::sourcetext());
    here.write("hall._01", samples::resulttext({}, source));
    loadresult(here.inside("hall._01"));
    table times{"Reverberation times", "Eyring's and the mean T30, s."};
    for (int band = 1; band <= samples::bandCount; ++band)
        compare(times, std::string(bandName[static_cast<std::size_t>(band)]) + " Hz", allowed,
                static_cast<double>(eyring(band - 1)), static_cast<double>(ParameterSet.T30(0, band)));
    found.tables.push_back(times);
    return found;
}

} // namespace orv::verification

// The acoustic parameters: against figures of a plain evaluation, against closed forms, and where a step
// fails.
#include "results/acousticparameters.h"
#include "results/parameterfile.h"
#include "tests/failures.h"
#include "tests/golden.h"
#include "tests/results/resulttext.h"

#include <random>

namespace orv {

namespace {

struct parameters : resultsession {
    using resultsession::load;
    void load() { load(file.text()); }
};

} // namespace

// All parameters of energies of every kind, with all bands and with some (and bare line feeds), and of long
// responses: slots beyond those whose sines and cosines are kept are computed one by one, and a fit counts to
// 32767. The golden file holds what a plain evaluation gave that took every statement of the definitions for
// itself, slot by slot.
TEST_F(parameters, agreeWithThePlainEvaluation) {
    std::string all;
    const auto take = [&](bool carriagereturns) {
        clearparameters(20);
        SessionState.decaySlope = 0;
        std::string text = file.text();
        if (!carriagereturns) std::erase(text, '\r');
        load(text);
        SessionState.geometryFileName = "room.RAY";
        saveparameters("room._ab");
        all += readtext("room.-ab") + numbertext(SessionState.decaySlope) + "\r\n";
    };
    std::mt19937 numbers(12345);
    const auto random = [&] { return static_cast<double>(numbers()) / 4294967296.0; };
    file.length = 0.6;
    file.step = 0.005;
    for (std::size_t r = 1; r <= 6; ++r) {
        slotrows rows = decayrows(121, r % 5, 1e7, 0.1 + 0.9 * random(), file.step);
        for (auto& row : rows)
            for (double& energy : row) {
                energy *= random();
                // Receivers 2 and 4 hold energies that no calculation writes: below zero.
                if (r == 2 || r == 4) energy *= random() < 0.3 ? -3 : 1;
            }
        if (r == 5) rows = flatrows(121, 0);
        if (r == 6) rows = flatrows(121, 1e-9);
        file.block("[Microphone_" + std::to_string(r) + "]", rows);
    }
    take(true);
    file.extra = "First band  = 2\r\nLast band   = 7\r\n";
    take(false);
    // The second one's early energy lies before its arrival only, and its late energy within 50 to 80 ms.
    file = resulttext{};
    file.length = 66;
    file.block("[Microphone_1]", decayrows(66001, 3, 1e9, 90, 0.001));
    slotrows rows = flatrows(66001, 0);
    rows[60].fill(1000);
    rows[61 + 55].fill(500);
    file.block("[Microphone_2]", rows);
    take(true);
    expectgolden("energies.txt", all);
}

// An exponential decay has its decay time in all of them, as far as its points carry seven digits.
TEST_F(parameters, anExponentialDecayHasItsDecayTime) {
    file.length = 3;
    const double times[] = {0.5, 1, 2};
    for (std::size_t k = 0; k < 3; ++k)
        file.block("[Microphone_" + std::to_string(k + 1) + "]", decayrows(3001, 20, 1e12, times[k], 0.001));
    load();
    for (std::int32_t r = 1; r <= 3; ++r) {
        const double seconds = times[r - 1];
        const double fall = std::pow(10.0, -0.006 / seconds); // energy left after a slot
        for (int b = 1; b <= 12; ++b) {
            EXPECT_NEAR(ParameterSet.T20(r, b), seconds, 1e-4 * seconds);
            EXPECT_NEAR(ParameterSet.T30(r, b), seconds, 2e-4 * seconds);
            EXPECT_NEAR(ParameterSet.EDT(r, b), seconds, 1e-4 * seconds);
        }
        // Sums of a geometric series; C is cut down to 0.01 dB and Ts rounded to 0.1 ms.
        const double after80 = std::pow(fall, 80), after50 = std::pow(fall, 50);
        EXPECT_NEAR(ParameterSet.C80(r, 6), 10 * std::log10((1 - after80) / after80), 0.011);
        EXPECT_NEAR(ParameterSet.C50(r, 6), 10 * std::log10((1 - after50) / after50), 0.011);
        EXPECT_NEAR(ParameterSet.Ts(r, 6), fall / (1 - fall), 0.051);
        EXPECT_NEAR(ParameterSet.Leq(r, 6), 120 - 10 * std::log10(1 - fall), 0.051);
        EXPECT_NEAR(ParameterSet.Ldir(r, 6), 120, 0.051);
    }
}

// Averages are summed in double and stored once: a sum in single precision would drift.
TEST_F(parameters, averagesOfManyReceiversStay) {
    RoomModel.receiverCount = highestreceiver;
    for (std::int32_t r = 1; r <= highestreceiver; ++r) {
        ParameterSet.C80(r, 6) = 80;
        ParameterSet.Leq(r, 6) = 80;
    }
    ResultSet.sourcePower(6) = 100;
    storeaverages();
    EXPECT_EQ(ParameterSet.C80(0, 6), 80.0F);
    EXPECT_EQ(ParameterSet.Leq(0, 6), 80.0F);
    EXPECT_EQ(ParameterSet.LeqLw(0, 6), -20.0F);
    EXPECT_EQ(ParameterSet.LeqLw(highestreceiver, 6), -20.0F);
    clearparameters(highestreceiver);
}

TEST(reverb, failsWhereNoDecayCanBeMeasured) {
    SessionState.decaySlope = 0;
    std::vector<float> curve(101);
    for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = 90 - 0.5F * static_cast<float>(i);
    float result = -1;
    reverb(result, -5, -25, curve, 100, 0.01);
    EXPECT_FLOAT_EQ(result, 1.2F);
    EXPECT_NEAR(SessionState.decaySlope, -50, 1e-9);
    reverb(result, -5, -60, curve, 100, 0.01);
    EXPECT_EQ(result, 0.0F); // the lower end is not reached
    result = 7;
    reverb(result, -5, -25, curve, 51, 0.01);
    EXPECT_EQ(result, 0.0F); // not even when the very last point falls below it
    const struct {
        std::vector<float> curve;
        double top;
        errorkind kind;
    } cases[] = {{std::vector<float>(50, 60.0F), -5, errorkind::subscript}, // never falls
                 {{60.0F}, -5, errorkind::subscript},                       // has no second point
                 {std::vector<float>(40000, 60.0F), -5, errorkind::overflow},
                 {{60, 60, 32, 10}, -30, errorkind::divisionbyzero}}; // one point is no line
    result = 7;
    for (const auto& one : cases) {
        const auto last = static_cast<std::int32_t>(one.curve.size()) - 1;
        EXPECT_EQ(kindof([&] { reverb(result, one.top, -25, one.curve, last, 0.01); }), one.kind);
        EXPECT_EQ(result, 7.0F); // what failed leaves the result
    }
}

TEST_F(parameters, areReadByName) {
    auto& P = ParameterSet;
    P.LeqLw(2, 6) = -30.5F;
    P.C50(2, 6) = 3;
    P.STI(2, 3) = 0.5F;
    P.ITDGeq(2, 6) = 12;
    P.T20(2, 6) = 0.345F;
    const auto valueof = [](const char* name, int band) {
        SessionState.parameterName = name;
        return parametervalue(2, band);
    };
    EXPECT_EQ(valueof("G", 6), 0.5);
    EXPECT_EQ(valueof("Leq-Lw", 6), -30.5);
    EXPECT_DOUBLE_EQ(valueof("D50", 6), 1 / (1 + std::pow(10.0, -0.3)));
    EXPECT_EQ(valueof("STI", 3), 0.5);
    EXPECT_THROW(valueof("STI", 2), runtimeerror);
    EXPECT_EQ(valueof("ITDGeq", 6), 12);
    EXPECT_EQ(valueof("Loudness", 6), 0);
    // A single-precision value is shown from its seven digits, so that .345 goes up.
    SessionState.parameterName = "T20";
    EXPECT_EQ(parametertext(2, 6, "###0.##"), "0.35");
    SessionState.parameterName = "D50";
    EXPECT_EQ(parametertext(2, 6, "##0.00"), "0.67");
}

} // namespace orv

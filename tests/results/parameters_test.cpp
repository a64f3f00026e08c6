// The acoustic parameters: against a plain model that takes every statement for itself, against closed forms,
// and where a step fails.
#include "base/arithmetic.h"
#include "results/acousticparameters.h"
#include "tests/failures.h"
#include "tests/results/resulttext.h"

#include <map>
#include <random>

namespace orv {

namespace {

// One receiver's parameters the slow way: one statement after the other, each skipped when it fails.
struct plainmodel {
    std::map<std::string, std::array<float, 13>> tables; // by name
    std::vector<float> curve;
    double slope = 0;

    void decay(float& result, double top, double bottom) {
        const auto level = [this](int i) {
            if (i >= static_cast<int>(curve.size())) throw runtimeerror{errorkind::subscript, ""};
            return static_cast<double>(curve[static_cast<std::size_t>(i)]);
        };
        const int n = ResultSet.lastSlot;
        const double step = static_cast<double>(ResultSet.timeStep);
        const double reference = level(1);
        int i = 2;
        const auto next = [&i] {
            if (i == 32767) throw runtimeerror{errorkind::overflow, ""};
            ++i;
        };
        while (!(level(i) < reference + top)) next();
        const int start = --i;
        double x = 0, y = 0, xy = 0, xx = 0, yy = 0, last = 0;
        do {
            const double time = (i - start) * step;
            last = level(i) - reference;
            x += time;
            y += last;
            xy += time * last;
            xx += time * time;
            yy += last * last;
            next();
        } while (!(i > n || last < bottom));
        if (i > n) {
            result = 0;
            return;
        }
        const double N = i - start;
        slope = quotient(N * xy - x * y, N * xx - x * x);
        result = single(quotient(-60, slope));
    }

    void receiver(const std::vector<std::array<float, 13>>& e, int arrival) {
        const auto step = static_cast<double>(ResultSet.timeStep);
        curve.resize(e.size());
        for (int b = 1; b <= 12; ++b) {
            const auto band = static_cast<float>(b);
            const bool computed = band >= ResultSet.firstBand && (b > 10 || band <= ResultSet.lastBand);
            const auto i = static_cast<std::size_t>(b);
            double to50 = 0, early = 0, to80 = 0, fade = 0, E = 0, moment = 0;
            double D =
                arrival < 0 ? 0 : std::fabs(static_cast<double>(e[static_cast<std::size_t>(arrival)][i]));
            for (std::size_t t = 0; t < e.size(); ++t) {
                const int slot = static_cast<int>(t);
                const double time = step * (arrival < 0 || slot < arrival ? slot : slot - arrival);
                const double energy = std::fabs(static_cast<double>(e[t][i]));
                if (time < 0.05) to50 += energy, early += time * energy;
                if (time < 0.08) to80 += energy;
                if (0.05 <= time && time < 0.1) {
                    const double f = (0.1 - time) / 0.05;
                    fade += energy * f;
                    early += time * energy * f;
                }
                E += energy;
                moment += time * energy;
            }
            const auto set = [&](const char* name, auto value) {
                if (computed) attempt([&] { tables[name][i] = single(value()); });
            };
            const auto zero = [&](const char* name) { tables[name][i] = 0; };
            zero("Leq");
            if (E > 0) set("Leq", [&] { return Int(100 * decimallog(E) + 0.5) / 10; });
            if (computed && E == to50) E += 1;
            zero("C50");
            if (to50 > 0) set("C50", [&] { return Int(1000 * decimallog(quotient(to50, E - to50))) / 100; });
            if (computed && E == to80) E += 1;
            zero("C80");
            if (to80 > 0) set("C80", [&] { return Int(1000 * decimallog(quotient(to80, E - to80))) / 100; });
            zero("Aeq");
            if (E > 0) set("Aeq", [&] { return squareroot(quotient(E - D, D)); });
            set("Ts", [&] { return Int(quotient(10000 * moment, E) + 0.5) / 10; });
            set("Aeq2", [&] { return squareroot(quotient(std::fabs(to50 + fade - D), D)); });
            if (to50 + fade - D > 0)
                set("ITDGeq", [&] { return Int(1000 * early / (to50 + fade - D) + 0.5); });
            zero("Ldir");
            if (D > 0) set("Ldir", [&] { return Int(100 * decimallog(D) + 0.5) / 10; });
            zero("Lrev");
            if (E - D > 0) set("Lrev", [&] { return Int(100 * decimallog(E - D) + 0.5) / 10; });
            if (b >= 3 && b <= 9)
                for (int m = 1; m <= 14; ++m) {
                    double sine = 0, cosine = 0;
                    for (std::size_t t = 0; t < e.size(); ++t) {
                        const int slot = static_cast<int>(t);
                        const double time = step * (arrival < 0 || slot < arrival ? slot : slot - arrival);
                        const auto omega =
                            static_cast<double>(SessionState.modulationOmega[static_cast<std::size_t>(m)]);
                        sine += static_cast<double>(e[t][i]) * std::sin(omega * time);
                        cosine += static_cast<double>(e[t][i]) * std::cos(omega * time);
                    }
                    attempt([&] {
                        tables["m" + std::to_string(m)][i] =
                            single(quotient(std::sqrt(sine * sine + cosine * cosine), E));
                    });
                }
            if (!computed || !(E > 1)) continue;
            double S = 1;
            for (std::size_t t = e.size(); t-- > 0;) {
                S += static_cast<double>(e[t][i]);
                attempt([&] { curve[t] = single(4.342944819 * naturallog(S)); });
            }
            attempt([&] { decay(tables["EDT"][i], -0.5, -10); });
            attempt([&] { decay(tables["T10"][i], -5, -15); });
            attempt([&] { decay(tables["T15"][i], -5, -20); });
            attempt([&] { decay(tables["T20"][i], -5, -25); });
            attempt([&] { decay(tables["T30"][i], -5, -35); });
        }
    }
};

struct parameters : resultsession {
    using resultsession::load;
    void load() { load(file.text()); }

    // Holds every table of receivers 1..count against the plain model, bit by bit.
    void expectmodel(std::int32_t count) {
        plainmodel model;
        for (std::int32_t r = 1; r <= count; ++r) {
            std::vector<std::array<float, 13>> e(static_cast<std::size_t>(ImpulseResponse.slots));
            int arrival = -1;
            for (std::int32_t t = 0; t < ImpulseResponse.slots; ++t) {
                double linear = 0;
                for (int b = 1; b <= 12; ++b)
                    e[static_cast<std::size_t>(t)][static_cast<std::size_t>(b)] = ImpulseResponse(t, b, r);
                for (int b = 1; b <= 10; ++b) linear += static_cast<double>(ImpulseResponse(t, b, r));
                if (arrival < 0 && linear > 0) arrival = t;
            }
            model.tables.clear(); // a table keeps what the load before gave, which here is 0
            model.receiver(e, arrival);
            for (int b = 1; b <= 12; ++b) {
                const auto i = static_cast<std::size_t>(b);
                const auto same = [&](const std::string& name, float actual) {
                    EXPECT_EQ(actual, model.tables[name][i]) << name << " receiver " << r << " band " << b;
                };
                eachcomputed([&](const char* name, const auto& table) { same(name, table(r, b)); });
                for (int m = 1; m <= 14 && b >= 3 && b <= 9; ++m)
                    same("m" + std::to_string(m), ParameterSet.modulationTransfer(r, m, b - 3));
            }
        }
        EXPECT_EQ(SessionState.decaySlope, model.slope);
    }
};

} // namespace

TEST_F(parameters, followThePlainModelOnAnyEnergies) {
    std::mt19937 numbers(12345);
    const auto random = [&] { return static_cast<double>(numbers()) / 4294967296.0; };
    file.length = 0.6;
    file.step = 0.005;
    const std::size_t slots = 121;
    for (int r = 1; r <= 12; ++r) {
        const double seconds = 0.1 + 0.9 * random();
        slotrows rows = decayrows(slots, static_cast<std::size_t>(r % 5), 1e7, seconds, file.step);
        for (auto& row : rows)
            for (double& energy : row) {
                energy *= random();
                // Receivers 4, 8 and 12 hold energies that no calculation writes: below zero.
                if (r % 4 == 0 && random() < 0.3) energy = -energy * 3;
            }
        if (r == 7) rows = flatrows(slots, 0);
        if (r == 11) rows = flatrows(slots, 1e-9);
        file.block("[Microphone_" + std::to_string(r) + "]", rows);
    }
    for (const char* bands :
         {"First band  = 0\r\nLast band   = 9\r\n", "First band  = 2\r\nLast band   = 7\r\n"}) {
        clearparameters(20);
        SessionState.decaySlope = 0;
        file.extra = bands;
        load();
        expectmodel(12);
    }
}

// Slots beyond those whose sines and cosines are kept are computed one by one, and a fit counts to 32767. The
// early energy of the second receiver lies before its arrival only, and its late energy within 50 to 80 ms.
TEST_F(parameters, followThePlainModelOnLongResponses) {
    file.length = 66;
    file.block("[Microphone_1]", decayrows(66001, 3, 1e9, 90, 0.001));
    slotrows rows = flatrows(66001, 0);
    rows[60].fill(1000);
    rows[61 + 55].fill(500);
    file.block("[Microphone_2]", rows);
    load();
    expectmodel(2);
    EXPECT_NEAR(ParameterSet.T15(1, 6), 90, 0.1);
    EXPECT_EQ(ParameterSet.T20(1, 6), 0.0F);
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

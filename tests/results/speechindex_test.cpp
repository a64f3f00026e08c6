// The speech transmission index: closed forms, a plain model that goes by the method's text, and what the
// command around it shows and leaves.
#include "results/speechindex.h"

#include "samples/random.h"
#include "tests/failures.h"
#include "tests/results/startvalues.h"
#include "tests/testsupport.h"

#include <cmath>
#include <vector>

namespace orv {

namespace {

auto& P = ParameterSet;

struct speechindex : sessiontest {
    speechindex() {
        clearparameters(6);
        setstartvalues();
        setspeechconstants();
        SessionState.parameterSource = 1;
        RoomModel.receiverCount = 1;
    }

    // The same modulation and level in all bands of a receiver.
    void setreceiver(int receiver, float modulation, float level = 0) {
        for (int band = 3; band <= 9; ++band) {
            P.Leq(receiver, band) = level;
            for (int i = 1; i <= modulationcount; ++i)
                P.modulationTransfer(receiver, i, band - 3) = modulation;
        }
    }

    void compute() {
        scripted::expectwindow("STI Options");
        computesti();
    }
};

// All bands alike with index x give STI-Male of x times the weights less those of redundancy.
constexpr double malesum = 1.2713 - 0.381, femalesum = 1.328 - 0.328;

double bandindex(double modulation) {
    const double ratio = 10 * std::log10(modulation / (1 - modulation));
    return (std::min(std::max(ratio, -15.0), 15.0) + 15) / 30;
}

TEST_F(speechindex, ClosedForms) {
    const std::pair<float, double> cases[] = {{1.5F, 0.818081},  // counts as .9
                                              {0.9F, 0.818081},  //
                                              {0.99F, 1},        // 19.96 dB are 15
                                              {0.5F, 0.5},       //
                                              {0.25F, 0.340960}, // -4.771 dB
                                              {-0.5F, 0}};       // counts as .01
    for (const auto& [modulation, index] : cases) {
        setreceiver(1, modulation);
        compute();
        EXPECT_NEAR(P.STI(1, 3), index, 1e-6) << modulation;
        EXPECT_NEAR(P.STI(1, 11), malesum * index, 2e-6) << modulation;
        EXPECT_EQ(P.modulationTransfer(1, 1, 0), modulation); // the caps work on a copy
    }
    setreceiver(1, 1); // a perfect channel counts as .9 too, and has no more than this
    compute();
    EXPECT_NEAR(P.STI(1, 11), 0.7283, 5e-5);
}

// The method word by word, one value after the other.
struct plainindex {
    double mf = 0;
    std::vector<std::array<float, 13>> rows;

    double ratio(double m) const { return std::min(15.0, std::max(-15.0, 10 * std::log10(m / (1 - m)))); }

    void run(int receivers) {
        const sessionstate& s = SessionState;
        const bool noise = s.backgroundNoiseFlag != 0, force = s.forceVoiceSplFlag != 0,
                   spectrum = s.equalizeSpectrumFlag != 0;
        rows.assign(static_cast<std::size_t>(receivers) + 1, {});
        std::array<double, 13> room{};
        for (int r = 1; r <= receivers; ++r) {
            auto& row = rows[static_cast<std::size_t>(r)];
            double male = 0, female = 0, femalebelow = 0;
            for (std::size_t k = 0; k < 7; ++k) {
                double summale = 0, sumfemale = 0;
                for (int i = 1; i <= 14; ++i) {
                    double m = P.modulationTransfer(r, i, k);
                    if (m >= 1) m = 0.9;
                    if (m <= 0) m = 0.01;
                    if (noise) {
                        double S = static_cast<double>(P.Leq(r, k + 3)) - s.noiseLevel[k];
                        if (force) S += s.voiceCorrection[k];
                        if (spectrum) S += s.maleVoiceSpectrum[k];
                        const double Sf = S - s.maleVoiceSpectrum[k] + s.femaleVoiceSpectrum[k];
                        mf = m / (1 + std::pow(10, -Sf / 10));
                        m = m / (1 + std::pow(10, -S / 10));
                    }
                    summale += ratio(m);
                    sumfemale = spectrum ? sumfemale + ratio(mf) : 0;
                }
                row[k + 3] = static_cast<float>((summale / 14 + 15) / 30);
                const double femaleband = (sumfemale / 14 + 15) / 30;
                room[k + 3] += row[k + 3];
                male += static_cast<double>(s.maleAlpha[k]) * row[k + 3];
                female += s.femaleAlpha[k] * femaleband;
                if (k > 0) {
                    const double below = row[k + 2];
                    male -= s.maleBeta[k - 1] * std::sqrt(row[k + 3] * below);
                    female -= s.femaleBeta[k - 1] * std::sqrt(femaleband * femalebelow);
                }
                femalebelow = femaleband;
            }
            row[11] = static_cast<float>(male);
            row[12] = static_cast<float>(female);
            room[11] += row[11];
        }
        for (std::size_t b = 3; b <= 12; ++b) rows[0][b] = static_cast<float>(room[b] / receivers);
    }
};

TEST_F(speechindex, EveryCombinationOfOptionsAgreesWithAPlainModel) {
    constexpr int receivers = 5;
    RoomModel.receiverCount = receivers;
    samples::randomstate random{99};
    sessionstate& s = SessionState;
    for (int r = 1; r <= receivers; ++r)
        for (int band = 3; band <= 9; ++band) {
            P.Leq(r, band) = static_cast<float>(30 + 40 * samples::nextuniform(random));
            for (int i = 1; i <= modulationcount; ++i)
                P.modulationTransfer(r, i, band - 3) =
                    static_cast<float>(1.2 * samples::nextuniform(random) - 0.1);
        }
    for (std::size_t k = 0; k < 7; ++k) {
        s.noiseLevel[k] = static_cast<float>(50 - 3 * static_cast<int>(k));
        s.voiceCorrection[k] = static_cast<float>(static_cast<int>(k) - 6);
    }
    plainindex model;
    // The last one counts its bits down, so that the spectrum alone finds a female modulation.
    for (int options = 7; options >= 0; --options) {
        s.backgroundNoiseFlag = (options & 1) != 0 ? -1 : 0;
        s.forceVoiceSplFlag = (options & 2) != 0 ? -1 : 0;
        s.equalizeSpectrumFlag = (options & 4) != 0 ? -1 : 0;
        compute();
        model.run(receivers);
        for (int r = 0; r <= receivers; ++r)
            for (int b = 3; b <= 12; ++b)
                EXPECT_NEAR(P.STI(r, b), model.rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(b)],
                            1e-7)
                    << "options " << options << " receiver " << r << " band " << b;
        EXPECT_EQ(P.STI(0, 12), 0.0F); // has no mean
        if (s.equalizeSpectrumFlag == 0) {
            EXPECT_EQ(P.STI(3, 12), 0.5F);
        }
    }
}

TEST_F(speechindex, TheFemaleModulationIsThatOfTheLastEvaluation) {
    sessionstate& s = SessionState;
    setreceiver(1, 0.8F, 60);
    P.STI(0, 5) = P.STI(1, 5) = 7;
    s.equalizeSpectrumFlag = -1; // without noise, and without a former evaluation
    scripted::expectwindow("STI Options");
    EXPECT_EQ(kindof(computesti), errorkind::domain); // a logarithm of zero
    EXPECT_EQ(P.STI(0, 5), 0.0F);                     // zeroed before
    EXPECT_EQ(P.STI(1, 5), 7.0F);

    s.backgroundNoiseFlag = -1;
    compute();
    s.backgroundNoiseFlag = 0;
    compute();
    const double last = 0.8 / (1 + std::pow(10, -(60.0 - 18) / 10)); // at 8 kHz
    EXPECT_NEAR(P.STI(1, 12), femalesum * bandindex(last), 1e-6);
}

TEST_F(speechindex, WithoutParametersOrReceiversOnlyTheRoomsRowIsZeroed) {
    const std::pair<float, int> cases[] = {{0.0F, 1}, {-1.0F, 0}}; // parameter source and receivers
    for (const auto& [source, receivers] : cases) {
        for (int b = 1; b <= 12; ++b) P.STI(0, b) = P.STI(1, b) = 3;
        SessionState.parameterSource = source;
        RoomModel.receiverCount = receivers;
        compute();
        for (int b = 1; b <= 12; ++b) {
            EXPECT_EQ(P.STI(0, b), b < 3 ? 3.0F : 0.0F) << b;
            EXPECT_EQ(P.STI(1, b), 3.0F) << b;
        }
    }
}

TEST_F(speechindex, TheCommandForgetsItsMapsAndAsksWhetherToSave) {
    sessionstate& s = SessionState;
    s.resultFileName = inside("hall._01");
    setreceiver(1, 0.5F);
    const std::pair<const char*, platform::answer> cases[] = {{"T20", platform::answer::cancel},
                                                              {"STI", platform::answer::ok}};
    for (const auto& [name, given] : cases) {
        s.parameterName = name;
        s.gridReady = s.contourReady = -1;
        scripted::expectwindow("STI Options");
        scripted::expectbox("Warning", given);
        STIopt();
        EXPECT_EQ(s.gridReady, s.parameterName == "STI" ? 0 : -1);
        EXPECT_EQ(s.contourReady, s.gridReady);
        EXPECT_EQ(canopen(inside("hall.-01")), given == platform::answer::ok);
    }
    EXPECT_TRUE(scripted::called("box|Warning|STI values could have been changed - Do You want to update the "
                                 "compressed parameter file?|okcancel|exclamation|ok"));
}

TEST_F(speechindex, ASecondOneIsRefusedUntilTheFirstEnds) {
    RoomModel.receiverCount = 2;
    scripted::atyield(1, [] { computesti(); });
    scripted::atyield(2, [] { STIopt(); });
    compute();
    EXPECT_EQ(scripted::countcalls("beep"), 2U);
    EXPECT_EQ(scripted::countcalls("window"), 1U);
    EXPECT_EQ(scripted::callswith("status 2| "),
              (std::vector<std::string>{"status 2| 50%", "status 2| 100%"}));
    SessionState.equalizeSpectrumFlag = -1;
    for (int i = 0; i < 2; ++i) { // free again, also behind a failure
        scripted::expectwindow("STI Options");
        EXPECT_THROW(computesti(), runtimeerror);
    }
}

} // namespace

} // namespace orv

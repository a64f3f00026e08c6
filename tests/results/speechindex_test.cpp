// The speech transmission index: closed forms, a plain model that goes by the method's text, and what the
// command around it shows and leaves.
#include "results/speechindex.h"

#include "base/numbertext.h"
#include "samples/random.h"
#include "shell/startup.h"
#include "tests/failures.h"
#include "tests/golden.h"
#include "tests/testsupport.h"

#include <vector>

namespace orv {

namespace {

auto& P = ParameterSet;

struct speechindex : sessiontest {
    speechindex() {
        clearparameters(6);
        computeconstants();
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
constexpr double malesum = 1.2713 - 0.381;

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

// The golden file holds what the method gave word by word, one value after the other: eight combinations of
// the options, their room (whose female index has no mean) and five receivers.
TEST_F(speechindex, EveryCombinationOfOptionsAgreesWithThePlainMethod) {
    RoomModel.receiverCount = 5;
    samples::randomstate random{99};
    sessionstate& s = SessionState;
    for (int r = 1; r <= 5; ++r)
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
    std::string figures;
    // Counted down, so that the spectrum alone finds a female modulation.
    for (int options = 7; options >= 0; --options) {
        s.backgroundNoiseFlag = (options & 1) != 0 ? -1 : 0;
        s.forceVoiceSplFlag = (options & 2) != 0 ? -1 : 0;
        s.equalizeSpectrumFlag = (options & 4) != 0 ? -1 : 0;
        compute();
        for (int r = 0; r <= 5; ++r) {
            for (int b = 3; b <= 12; ++b) figures += numbertext(static_cast<double>(P.STI(r, b)));
            figures += "\r\n";
        }
    }
    expectgolden("speechindex.txt", figures);
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
    EXPECT_NEAR(P.STI(1, 12), 0.7006410, 1e-6); // of .8 / (1 + 10^-4.2), that at 8 kHz
}

TEST_F(speechindex, WithoutParametersOrReceiversOnlyTheRoomsRowIsZeroed) {
    const std::pair<float, int> cases[] = {{0.0F, 1}, {-1.0F, 0}}; // parameter source and receivers
    for (const auto& [source, receivers] : cases) {
        P.STI(0, 2) = P.STI(0, 3) = P.STI(0, 12) = P.STI(1, 3) = 3;
        SessionState.parameterSource = source;
        RoomModel.receiverCount = receivers;
        compute();
        EXPECT_EQ(P.STI(0, 2), 3.0F);
        EXPECT_EQ(P.STI(0, 3) + P.STI(0, 12), 0.0F);
        EXPECT_EQ(P.STI(1, 3), 3.0F);
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

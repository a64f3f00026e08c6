// The synthesis, against its definition and against gains worked out by hand.
#include "export/synthesis.h"

#include "benchmarks/plainsynthesis.h"
#include "tests/export/exporttest.h"

#include <cmath>

namespace orv {
namespace {

TEST_F(exporttest, SamplesAreThoseOfThePlainForm) {
    writefilterbanks(directory.path);
    addpath(0.0031, {});
    addpath(0.005, {{2, 5, 2}, {3, 2, 4}});
    addpath(0.0119, {{7, 0, 1}});
    RayPathSet.paths[1][2].time = 571.5 / 48000; // between two samples, the lower one odd
    // The first two blocks start evenly, the third begins at an odd sample.
    for (const int row : {0, 1, 6, 8, 11}) {
        const std::string label(exportformats[static_cast<std::size_t>(row)].label);
        restartuniform();
        run(label, " 1", "3.7", row == 11 ? "901" : nullptr);
        plainexport plain;
        plain.formatRow = row;
        plain.density = 3.7;
        plain.requestedSamples = row == 11 ? 901 : 960;
        plain.slotsUsed = row == 11 ? 901 / 0.001F / 48000.0 : slots - 1;
        restartuniform();
        renderplain(plain, 1);
        const std::vector<float> samples = samplesof("hall_07_" + label + "_001.wav");
        ASSERT_EQ(samples.size(),
                  static_cast<std::size_t>(plain.requestedSamples * plain.blocks * plain.channels));
        float peak = 0, difference = 0;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const auto channels = static_cast<std::size_t>(plain.channels);
            const float wanted = plainsample(plain, static_cast<int>(i % channels) + 1, i / channels);
            peak = std::max(peak, std::fabs(wanted));
            difference = std::max(difference, std::fabs(samples[i] - wanted));
        }
        EXPECT_LT(difference, 1e-5F * peak) << label;
        EXPECT_GT(peak, 0.1F);
    }
}

// With unit filters a path is one sample: the sum of the roots of its band energies, times its gains.
TEST_F(exporttest, UnitFiltersGiveTheGainsThemselves) {
    writeunitbank();
    addpath(0.01, {{1, 5, 1}, {4, 2, -3}}); // leaves along +y, arrives from -z
    double amplitude = 0;
    for (int band = 1; band <= octavebands; ++band) amplitude += std::sqrt(band * 1e9) / 50000;
    const double edge = std::pow(0.5 * (1 - 0.933), 4); // microphone 13 against the sound
    const struct {
        int row, channel, block;
        double gain;
    } cases[] = {{0, 1, 1, 1},
                 {1, 2, 1, 0.5},
                 {2, 3, 1, -1},
                 {13, 3, 2, -1},
                 {13, 13, 7, 0.5}, // 0.5 z (5 z2 - 3) = -1, 0.5 (3 z2 - 1) = -0.5
                 {17, 13, 7, std::pow(0.9665, 4) * edge},
                 {14, 7, 4, std::pow(0.9253428565, 3)}};
    for (const auto& [row, channel, block, gain] : cases) {
        const exportformat& format = exportformats[static_cast<std::size_t>(row)];
        run(format.label, " 1", "0");
        const std::vector<float> samples = samplesof("hall_07_" + std::string(format.label) + "_001.wav");
        const auto channels = static_cast<std::size_t>(format.channels);
        for (std::size_t i = 0; i < samples.size(); ++i)
            ASSERT_TRUE(i / channels % 960 == 480 || samples[i] == 0) << i;
        const std::size_t at = (static_cast<std::size_t>(block - 1) * 960 + 480) * channels;
        EXPECT_NEAR(static_cast<double>(samples[at + static_cast<std::size_t>(channel - 1)]),
                    amplitude * gain, 1e-6 * amplitude)
            << format.label;
    }
}

TEST_F(exporttest, LogHeaderAndAfterEffects) {
    writefilterbanks(directory.path);
    ParameterSet.Leq(1, linearband) = 83.25F;
    const std::string name = inside("hall_07_2ch_Stereo_001.wav");
    writetext(name, std::string(9000, 'x'));
    run("2ch_Stereo", " 1", ".75");
    const std::vector<std::string> log = {"Npulses = .75",
                                          "Receiver number:  1",
                                          "Export format: 2ch_Stereo",
                                          "Exporting impulse response to " + name + " ...",
                                          "Reading filterbank from " + inside("Filterbank-48-multi.wav") +
                                              "...",
                                          "Total number of samples being generated: 960",
                                          "Exporting diffuse field...",
                                          "Rescaling RMS value:  to Leq= 83.3dB",
                                          "Saving WAV file: " + name,
                                          "Nsamples = 960",
                                          "FileLen= 7716",
                                          "Nbytes= 7680",
                                          "Complete!"};
    EXPECT_EQ(scripted::rowsof("List1"), log);
    const std::string bytes = readtext(name);
    EXPECT_EQ(bytes.substr(0, 44),
              std::string("RIFF\x24\x1E\0\0WAVEfmt \x10\0\0\0\3\0\2\0\x80\xBB\0\0\0\xDC\5\0\x8\0\x20\0"
                          "data\0\x1E\0\0",
                          44));
    EXPECT_EQ(bytes.substr(7700), std::string(24, '\0') + std::string(1276, 'x'))
        << "no pulse at this density; the older file's tail stays";
    EXPECT_EQ(RoomModel.roomMaxX, 50000);
    EXPECT_TRUE(scripted::called("beep"));
}

TEST_F(exporttest, LengthDensityAndStreamFollowTheirRules) {
    writefilterbanks(directory.path);
    run("1ch_Omni", "All", "1", "99999");
    EXPECT_EQ(SessionState.requestedSamples, 960) << "lowered to the response's length";
    const std::vector<float> first = samplesof("hall_07_1ch_Omni_001.wav");
    EXPECT_EQ(samplesof("hall_07_1ch_Omni_002.wav").size(), first.size());
    run("1ch_Omni");
    EXPECT_NE(samplesof("hall_07_1ch_Omni_001.wav"), first) << "the stream runs on";
    restartuniform();
    run("1ch_Omni");
    EXPECT_EQ(samplesof("hall_07_1ch_Omni_001.wav"), first);
    ResultSet.timeStep = 0.0004F;
    run("1ch_Omni", " 2", "5");
    EXPECT_EQ(scripted::rowsof("List1").front(), "Npulses = 0") << "the slot is rounded to 0 ms first";
    run("1ch_Omni", " 1", "1", "0");
    SessionState.fileRadix = "abc"; // shorter than an extension
    run("1ch_Omni", " 1002", "1", "0");
    EXPECT_TRUE(canopen(inside("hall_07_1ch_Omni_002.wav")));
}

// A slot that paths took more from than it held sounds by what is missing.
TEST_F(exporttest, PathsTakeTheirEnergyFromTheirSlot) {
    writeunitbank();
    for (int i = 0; i < slots * bandcount; ++i) takeresponse(1)[i] = 0;
    addpath(0.005, {}); // slot 4, since the step is a little more than 1 ms
    run("1ch_Omni");
    const std::vector<float> samples = samplesof("hall_07_1ch_Omni_001.wav");
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (samples[i] != 0) places.push_back(i);
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(places[1], 240U);
    EXPECT_EQ(places[0] / 48, 4U);
    EXPECT_EQ(samples[places[0]], samples[240]);
}

TEST_F(exporttest, StopLeavesTheLoopsAndWritesTheFile) {
    writefilterbanks(directory.path);
    run("1ch_Omni");
    restartuniform();
    const std::vector<float> whole = samplesof("hall_07_1ch_Omni_001.wav");
    // Two yields of the filter bank, one at the start, one for each slot.
    scripted::atyield(3 + 10, stopexport);
    run("1ch_Omni", "All");
    const std::vector<float> samples = samplesof("hall_07_1ch_Omni_001.wav");
    EXPECT_EQ(samples.size(), whole.size());
    EXPECT_NE(samples, whole);
    EXPECT_FALSE(canopen(inside("hall_07_1ch_Omni_002.wav")));
    EXPECT_TRUE(platform::isenabled("StartExport"));

    // Many pulses of one slot let events in too.
    const auto before = scripted::yieldcount();
    scripted::atyield(10, stopexport);
    run("1ch_Omni", " 1", "100000");
    EXPECT_LT(scripted::yieldcount(), before + 20);
}

TEST_F(exporttest, FailuresSayWhichPathSizeOrFile) {
    writefilterbanks(directory.path);
    const auto failure = [](std::string_view format, const char* receiver = " 1",
                            const char* length = nullptr) {
        return failureof([&] { run(format, receiver, "1", length); });
    };
    EXPECT_EQ(failure("1ch_Omni", " 3").kind, errorkind::subscript);
    EXPECT_EQ(failure("1ch_Omni", " 1", "-4").kind, errorkind::subscript);
    addpath(0.0121, {});
    runtimeerror late = failure("4x4_MIMO_Ambix1xAmbix1", " 1", "500");
    EXPECT_EQ(late.kind, errorkind::subscript);
    for (const char* told : {"Path 1 of receiver 1", " .0121 s", " 500 samples"})
        EXPECT_NE(late.text.find(told), std::string::npos) << late.text;
    run("1ch_Omni", " 1", "1", "580"); // 0.0121 s are 580.8 samples: one behind the end is still in the table
    ResultSet.lastSlot = 60000;
    RayPathSet.pathCountOf[1] = 0;
    const runtimeerror large = failure("32x32_MIMO_SPS32xSPS32", " 1", "600000");
    EXPECT_EQ(large.kind, errorkind::overflow);
    EXPECT_NE(large.text.find("2457600036"), std::string::npos) << large.text;
    scripted::setmemory(1 << 20);
    EXPECT_EQ(failure("36ch_5th_order_Ambisonics_(Ambix)", " 1", "900").kind, errorkind::memory);
    std::filesystem::create_directory(inside("hall_07_1ch_Omni_002.wav"));
    const runtimeerror closed = failure("1ch_Omni", " 2", "900");
    EXPECT_EQ(closed.kind, errorkind::fileaccess);
    EXPECT_NE(closed.text.find("1ch_Omni_002.wav"), std::string::npos) << closed.text;
}

TEST_F(exporttest, RadixFollowsTheSaveDialog) {
    openexport();
    scripted::expectsave(scripted::cancelled, "Save a .WAV File");
    browseradix();
    EXPECT_EQ(SessionState.fileRadix, inside("hall.wav"));
    scripted::expectsave(inside("other"));
    browseradix();
    EXPECT_EQ(platform::gettext("FileRadix"), inside("other.DXF"));
    typeradix("");
    scripted::expectsave(inside("a.wav"));
    browseradix();
    EXPECT_NE(scripted::callswith("save").back().find("|" + inside("hall.wav") + "|"), std::string::npos);
    EXPECT_EQ(SessionState.fileRadix, inside("a.wav"));
}

} // namespace
} // namespace orv

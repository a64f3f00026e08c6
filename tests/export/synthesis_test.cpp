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

TEST_F(exporttest, LogHeaderAndAfterEffects) {
    writefilterbanks(directory.path);
    ParameterSet.Leq(1, linearband) = 83.25F;
    const std::string name = inside("hall_07_2ch_Stereo_001.wav");
    writetext(name, std::string(9000, 'x'));
    run("2ch_Stereo", " 1", ".75");
    expectgolden("exportlog.txt", scripted::rowsof("List1"));
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
    ResultSet.timeStep = 0.0006F;
    run("1ch_Omni", " 2", "5");
    EXPECT_EQ(scripted::rowsof("List1").front(), "Npulses = 5") << "the slot is rounded to 1 ms first";
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
    std::vector<std::string> told;
    const auto tell = [&](std::string_view format, const char* receiver, const char* length) {
        told.push_back(refusalof([&] { run(format, receiver, "1", length); }));
    };
    tell("1ch_Omni", " 3", nullptr);
    tell("1ch_Omni", " 1", "-4");
    addpath(0.0121, {});
    tell("4x4_MIMO_Ambix1xAmbix1", " 1", "500");
    run("1ch_Omni", " 1", "1", "580"); // 0.0121 s are 580.8 samples: one behind the end is still in the table
    ResultSet.lastSlot = 60000;
    RayPathSet.pathCountOf[1] = 0;
    tell("32x32_MIMO_SPS32xSPS32", " 1", "600000");
    scripted::setmemory(1 << 20);
    tell("36ch_5th_order_Ambisonics_(Ambix)", " 1", "900");
    std::filesystem::create_directory(inside("hall_07_1ch_Omni_002.wav"));
    tell("1ch_Omni", " 2", "900");
    expectgolden("refusedexports.txt", told);
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

// The optimizer: reading, the correction by closed form, what the chart says, and the constants' way into the
// settings file.
#include "tools/optimizer.h"

#include "base/listinput.h"

#include "tests/failures.h"
#include "tests/golden.h"
#include "tests/results/resulttext.h"

#include <algorithm>

using namespace orv;

namespace {

struct optimizers : resultsession {
    void SetUp() override {
        resultsession::SetUp();
        openoptimizer();
        Optimizer.beta = "0";
    }
    void TearDown() override {
        closeoptimizer();
        resultsession::TearDown();
    }

    void loadas(int index, const resulttext& result) const {
        writetext(inside("room._ab"), result.text());
        loadoptimizerfile(inside("room._ab"), index);
    }
    static const std::vector<float>& series(std::size_t file) { return Optimizer.chart.series[file]; }
    static void chart(const std::string& receiver, int band = 0) {
        Optimizer.receiver = receiver;
        Optimizer.band = band;
        updategraph();
    }
};

resulttext flat(std::size_t slots, double energy, const std::string& format = "1.2") {
    resulttext result;
    result.format = format;
    result.length = result.step * static_cast<double>(slots - 1);
    result.block("[Microphone_1]", flatrows(slots, energy));
    return result;
}

TEST_F(optimizers, HeadersAsTheyStandInBothFormats) {
    for (const char* format : {"1.2", "1"}) {
        resulttext result = flat(11, 100, format);
        result.extra = "Standard dev= 2.5\r\nMean history= 12\r\n";
        loadas(0, result);
        EXPECT_EQ(ResultSet.soundSpeed, 339) << "without the 1 that a load adds";
        EXPECT_EQ(ResultSet.firstBand + ResultSet.lastBand, 9);
        EXPECT_EQ(Optimizer.file[0].name, uppercase(inside("room._ab")));
        const auto& cell = Optimizer.file[0].cell;
        EXPECT_EQ(cell[0] + "|" + cell[1] + "|" + cell[2] + "|" + cell[3] + "|" + cell[4],
                  "1000|4|2.5|12| Infinite");
        EXPECT_EQ(Optimizer.file[0].delay[1], 0.005F);
        // Column 11 is the linear sum here and 12 the A-weighted one.
        const float* row = Optimizer.file[0].energy[1].get();
        EXPECT_EQ(row[10], 1000);
        EXPECT_LT(row[11], row[10]);
        ASSERT_EQ(series(0).size(), 10U) << "lastSlot points";
        EXPECT_NEAR(series(0)[9], 20, 1e-5);
        EXPECT_TRUE(std::all_of(series(1).begin(), series(1).end(), [](float level) { return level == 0; }));
    }
}

// What a calculation has thinned out by w comes back flat with its constants, in both files.
TEST_F(optimizers, TheRightConstantsUndoTheThinning) {
    const double pyramids[] = {1000, 250};
    for (int f = 0; f < 2; ++f) {
        resulttext result = flat(1, 1);
        result.body.clear();
        result.length = 0.4;
        result.pyramids = pyramids[f];
        const double critical = 4.0 / 4 / 339 * std::sqrt(pyramids[f] / 2);
        slotrows rows(401);
        for (std::size_t k = 0; k < rows.size(); ++k) {
            const double time = (static_cast<double>(k) + 0.5) * 0.001 - 0.005;
            rows[k].fill(1E6 * (time > 0 ? 1 - std::exp(-std::pow(critical / time, 0.9)) : 1));
        }
        result.block("[Microphone_1]", rows);
        loadas(f, result);
    }
    EXPECT_LT(series(1)[399], series(0)[399]) << "the fewer pyramids, the more is lost";
    Optimizer.alfa = ".9";
    Optimizer.beta = "2";
    chart("1", 3);
    for (std::size_t f = 0; f < 2; ++f)
        for (const float level : series(f)) ASSERT_NEAR(level, 60, 2e-5) << "seven digits";
    EXPECT_EQ(Optimizer.file[1].cell[criticalcolumn], " 0.033");
    EXPECT_EQ(Optimizer.chart.title, "Freq. = 250 Hz  - Rec. = 1  - Alfa =  .9  - Beta =  2");
    EXPECT_EQ(Optimizer.chart.top, 70);

    // The backward sum of n equal energies; the running maximum is its first point, also in roomMaxY.
    Optimizer.schroeder = true;
    chart("1", 3);
    EXPECT_NEAR(series(0)[0], 60 + 10 * std::log10(401), 1e-4);
    EXPECT_NEAR(RoomModel.roomMaxY / 401E6, 1, 1e-6);
    Optimizer.alfa = "-1000"; // w is 0 within the critical time: uncorrected
    chart("1", 3);
    EXPECT_TRUE(std::isfinite(series(0)[0]));
}

TEST_F(optimizers, LongResponsesAreCutAndSmallEnergiesAreZero) {
    resulttext result = flat(5001, 1);
    loadas(0, result);
    EXPECT_EQ(ResultSet.lastSlot, 3000);
    EXPECT_EQ(series(0).size(), 3000U);
    EXPECT_EQ(series(0)[0], 0) << "an energy of 1 is not above 1";
    EXPECT_EQ(Optimizer.chart.top, 10);
    loadas(1, result);
    EXPECT_EQ(Optimizer.file[0].pyramids, 1000) << "compared uncut, both have the same slots";
    chart("Room");
    EXPECT_EQ(Optimizer.chart.top, 100) << "nothing is there";
}

TEST_F(optimizers, OtherDimensionsDropTheOtherFile) {
    loadas(0, flat(11, 100));
    EXPECT_FALSE(scripted::called("beep"));
    loadas(1, flat(12, 100));
    EXPECT_TRUE(scripted::called("beep"));
    EXPECT_EQ(Optimizer.file[0].pyramids, 0);
    EXPECT_EQ(Optimizer.file[0].name + Optimizer.file[0].cell[0], "");
    EXPECT_EQ(series(0), std::vector<float>(11));

    // A number above the declared ones grows the tables.
    resulttext more = flat(12, 100);
    more.block("[Microphone_3]", flatrows(12, 1000));
    loadas(0, more);
    chart("3");
    EXPECT_NEAR(series(0)[0], 30, 1e-5);
}

TEST_F(optimizers, ReceiversGoAroundAndEndAtTheLast) {
    resulttext result = flat(11, 100);
    result.block("[Microphone_2]", flatrows(11, 100));
    loadas(0, result);
    std::string seen;
    for (int i = 0; i < 4; ++i) stepreceiver(i < 3), seen += Optimizer.receiver + " ";
    EXPECT_EQ(seen, "2 Room 1 Room ");
    for (const char* receiver : {"3", "-1"}) {
        EXPECT_EQ(kindof([&] { chart(receiver); }), errorkind::subscript) << receiver;
        EXPECT_EQ(Optimizer.chart.title, "");
    }
}

TEST_F(optimizers, BadFilesAreToldAndNotLoaded) {
    loadas(0, flat(11, 100));
    const std::string good = flat(11, 100).text();
    const auto changed = [&good](const std::string& from, const std::string& to) {
        std::string text = good;
        return text.replace(text.find(from), from.size(), to);
    };
    const std::string files[] = {
        good.substr(0, good.size() - 30),
        changed("  100  100", " word 100"),
        changed("  100  100", " 3E38 3E38"),
        changed("Delay = .005", "Delay = 1E999"),
        changed("Precision   = .001", "Precision   = 0"),
        changed("Precision   = .001", "Precision   = 1E-12"),
        changed("Time        = .01", "Time        = 40"),
        changed("Time        = .01", "Time        = -1"),
        good.substr(0, good.find("[Microph")),
    };
    std::vector<std::string> told;
    for (const std::string& text : files) {
        writetext("bad", text);
        told.push_back(refusalof([&] { loadoptimizerfile("bad", 1); }));
        EXPECT_EQ(Optimizer.file[1].pyramids, 0);
        chart("1"); // the other file is still there
        EXPECT_EQ(series(0).size(), 10U) << told.back();
        EXPECT_EQ(series(0).back(), 20) << told.back();
    }
    expectgolden("refusedoptimizer.txt", told);
}

TEST_F(optimizers, ConstantsKeepWhatStandsBehindThem) {
    settings("Alfa=0.9 exponent\r\nother\r\nBeta= 1\r\n");
    openoptimizer();
    EXPECT_EQ(Optimizer.alfa + "/" + Optimizer.beta, ".9/1");
    Optimizer.alfa = "  1.25";
    Optimizer.beta = "2,5";
    saveconstants();
    EXPECT_EQ(readtext(inside("orvanta.ini")), "Alfa=1.25 exponent\r\nother\r\nBeta=2,5\r\n");
}

TEST_F(optimizers, TheChartSaysWhatItShows) {
    recordsurface surface(700, 400);
    drawoptimizerchart(surface.surface);
    EXPECT_TRUE(surface.lines.back().ends_with("with \"Browse...\""));
    loadas(1, flat(17, 1000));
    surface.lines.clear();
    drawoptimizerchart(surface.surface);
    expectgolden("optimizerchart.txt", surface.lines);
}

} // namespace

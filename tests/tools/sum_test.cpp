// Sums of results by hand and by closed forms, and what is refused.
#include "tools/sumresults.h"

#include "samples/samplefiles.h"
#include "tests/failures.h"
#include "tests/golden.h"
#include "tests/results/resulttext.h"
#include "tools/jobfile.h"

using namespace orv;

namespace {

// An input: its text, delay and the gain of all bands.
struct part {
    std::string text;
    std::string delay = "0", gain = "0";
};

struct sums : resultsession {
    sumjob job;

    // Writes the parts as files 1, 2, ... and their job, and sums them into `sum`.
    void sum(const std::vector<part>& parts) {
        job = {directory.path, "sum", {}};
        for (const part& each : parts) {
            addjobfile(job, std::to_string(job.files.size() + 1));
            writetext(inside(job.files.back().name), each.text);
            job.files.back().cell.fill(each.gain);
            job.files.back().cell[0] = each.delay;
        }
        run();
    }
    void run() const {
        writejob(inside("job"), job);
        sumresults(inside("job"));
    }
    std::string summed() const { return readtext(inside("sum")); }

    // What stands behind a beginning in the sum's line of it.
    std::string line(const std::string& beginning) const {
        const std::string text = "\r\n" + summed();
        const std::size_t at = text.find("\r\n" + beginning);
        if (at == std::string::npos) return "no line";
        const std::size_t begin = at + 2 + beginning.size();
        return text.substr(begin, text.find("\r\n", begin) - begin);
    }

    // The first band of each slot of the sum's one receiver.
    std::vector<std::string> energies() const {
        std::vector<std::string> all;
        const std::string text = summed();
        std::size_t at = text.find("\r\n", text.find("31.5 63")) + 2;
        for (; at < text.size(); at = text.find("\r\n", at) + 2)
            all.push_back(text.substr(at, text.find(' ', at) - at));
        return all;
    }
};

// One receiver whose slots hold the given energies in every band.
resulttext response(const std::vector<double>& energies, const std::string& format = "1.2") {
    resulttext result;
    result.format = format;
    result.length = result.step * static_cast<double>(energies.size() - 1);
    slotrows rows;
    for (const double energy : energies) {
        rows.emplace_back();
        rows.back().fill(energy);
    }
    result.block("[Microphone_1]", rows);
    return result;
}

TEST_F(sums, OneFileAsItIsComesBackByteByByte) {
    samples::halloptions options;
    options.timeStep = 0.01;
    options.responseLength = 0.3;
    options.order = 1;
    const int sources[] = {1};
    const std::string text = samples::resulttext(options, sources);
    sum({{text}});
    EXPECT_EQ(summed(), text);
}

// Longer than the parts that files are read in, and of several receivers.
TEST_F(sums, TwiceTheSameIsTwiceTheEnergyAndThreeDecibels) {
    samples::bigoptions options;
    options.receivers = 20;
    options.slots = 1200;
    samples::writebigresult(inside("big"), options);
    loadresult(inside("big"));
    const float level = ParameterSet.Leq(20, linearband), clarity = ParameterSet.C80(20, linearband);
    const float energy = ImpulseResponse(500, 6, 20);
    const std::string text = readtext(inside("big"));
    ASSERT_GT(text.size(), std::size_t{1} << 20);
    sum({{text}, {text}});
    loadresult(inside("sum"));
    EXPECT_NEAR(ImpulseResponse(500, 6, 20) / energy, 2, 2e-6) << "seven digits";
    EXPECT_NEAR(ParameterSet.Leq(20, linearband) - level, 3.01, 0.1) << "levels have one decimal";
    EXPECT_NEAR(ParameterSet.C80(20, linearband), clarity, 0.0101) << "cut down to two decimals";
}

TEST_F(sums, DelaysAndGainsByHand) {
    // 1 ms slots: one slot, half a slot, and ten times the energy.
    sum({{response({8, 4, 0}).text()},
         {response({100, 0}).text(), " 1"},
         {response({2, 2}).text(), ".5", "10"}});
    EXPECT_EQ(energies(), (std::vector<std::string>{"18", "124", "10"}));
    EXPECT_EQ(line("Delay = "), ".005") << "the earliest";
    sum({{response({8, 4}).text(), "2.25"}});
    EXPECT_EQ(energies(), (std::vector<std::string>{"0", "0", "6", "5", "1"})) << "as much as before";
    EXPECT_EQ(line("Time        = "), ".004");
    EXPECT_EQ(line("Delay = "), ".00725");
}

// Slots of 10 ms, of which the last one comes after 80 ms; the rows of both files are .1 .2 ... 1.
TEST_F(sums, LateralRowsAreMeansByEarlyEnergy) {
    resulttext loud = response({30, 0, 0, 0, 0, 0, 0, 0, 0, 1000});
    resulttext old = response({4, 0, 0, 0, 0, 0, 0, 6, 0, 900}, "1");
    for (resulttext* each : {&loud, &old}) each->step = 0.01, each->length = 0.09;
    sum({{loud.text()}, {old.text(), "0", "10"}});
    // In the second band (.2 * 30 + .2 / 10 * 100) / 130; the old file has neither LF nor LFC.
    EXPECT_EQ(line("LE  = ").substr(0, 18), "3.076923E-02 6.153");
    EXPECT_EQ(line("LF  = ").substr(0, 5), ".1 .2");
    EXPECT_EQ(line("LFC = ").substr(0, 5), ".1 .2");
    EXPECT_EQ(line("Format      = "), "1.2");
    sum({{old.text()}});
    EXPECT_EQ(line("Format      = "), "1.2");
    EXPECT_EQ(line("Position = "), "1 2 3 0 0 0");
    EXPECT_EQ(line("LF  = "), "0 0 0 0 0 0 0 0 0 0");
}

TEST_F(sums, SourcesAndHeaderLinesOfTheFirst) {
    resulttext first = response({1}), second = response({1});
    first.extra = "Humidity of the air, 50 %\r\nName        = a.spk\r\n";
    second.extra = "Name        =  a.spk\r\n";
    sum({{first.text()}, {second.text()}});
    EXPECT_EQ(line("Name        = "), "a.spk");
    EXPECT_EQ(line("Humidity"), " of the air, 50 %");
    EXPECT_EQ(line("SoundSpeed  = "), "339") << "nothing is added";
    second.extra = "";
    sum({{first.text()}, {second.text()}});
    EXPECT_EQ(line("Name        = "), "NONE");
}

TEST_F(sums, WhatCannotBeSummedLeavesTheFormerOutput) {
    const resulttext good = response({1, 2});
    const auto changed = [&good](const std::string& from, const std::string& to) {
        std::string text = good.text();
        return text.replace(text.find(from), from.size(), to);
    };
    const std::vector<part> refused[] = {
        {{good.text()}, {changed("Precision   = .001", "Precision   = .002")}},
        {{good.text()}, {changed("Last band   = 9", "Last band   = 8")}},
        {{good.text()}, {changed("phone_1]", "phone_2]")}},
        {{good.text()}, {changed("1 2 3 0", "1 2.5 3 0")}},
        {{good.header()}},
        {{changed("Precision ", "Previous  ")}},
        {{changed("Time      ", "Length    ")}},
        {{good.text(), "-1"}},
        {{good.text(), "0", "4000"}},
        {{changed("Delay = ", "Delay = 1E999")}},
        {{good.text()}, {changed("\r\n  2  2", "\r\n word  2")}},
        {{good.text().substr(0, good.text().size() - 6)}},
        {{good.text(), "0", "390"}},
        {},
    };
    writetext(inside("sum"), "former");
    std::vector<std::string> told;
    for (const auto& parts : refused) {
        told.push_back(refusalof([&] { sum(parts); }));
        EXPECT_EQ(summed(), "former") << told.back();
        EXPECT_FALSE(canopen(inside("sum.new"))) << told.back();
    }
    for (const auto& [output, input] :
         {std::pair("", "1"), {"./1", "1"}, {"job", "1"}, {"sum", "missing._01"}}) {
        job = {directory.path, output, {}};
        addjobfile(job, input);
        told.push_back(refusalof([&] { run(); }));
    }
    expectgolden("refusedsums.txt", told);

    // Stopped in the first index, and halfway, with its progress told and the panels empty again.
    for (const int yield : {1, 4}) { // 4 is behind two indexes and the first block
        scripted::clearcalls();
        const std::int64_t former = scripted::yieldcount();
        scripted::atyield(yield, [] { SumRun.stop = true; });
        EXPECT_EQ(kindof([&] { sum({{good.text()}, {good.text()}}); }), errorkind::cancelled);
        EXPECT_EQ(scripted::yieldcount() - former, yield);
    }
    EXPECT_TRUE(scripted::called("status 2| 50%"));
    EXPECT_EQ(scripted::statustext(1) + scripted::statustext(2), "");
    EXPECT_EQ(summed(), "former");
}

} // namespace

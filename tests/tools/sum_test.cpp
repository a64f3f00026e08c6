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
    std::vector<std::string> told;

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

    // Writes down what parts sum up to.
    void tell(const std::string& what, const std::vector<part>& parts) {
        sum(parts);
        told.push_back("# " + what);
        std::string text = summed();
        std::erase(text, '\r');
        told.push_back(text);
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

// The numbers that the headings name were worked out by hand.
TEST_F(sums, DelaysGainsLateralRowsAndHeaders) {
    // 1 ms slots: one slot, half a slot, and ten times the energy.
    tell("18, 124, 10; the delay is the earliest", {{response({8, 4, 0}).text()},
                                                    {response({100, 0}).text(), " 1"},
                                                    {response({2, 2}).text(), ".5", "10"}});
    tell("0, 0, 6, 5, 1, as much as before; a delay of .00725", {{response({8, 4}).text(), "2.25"}});

    // Slots of 10 ms, of which the last one comes after 80 ms; the rows of both files are .1 .2 ... 1.
    resulttext loud = response({30, 0, 0, 0, 0, 0, 0, 0, 0, 1000});
    resulttext old = response({4, 0, 0, 0, 0, 0, 0, 6, 0, 900}, "1");
    for (resulttext* each : {&loud, &old}) each->step = 0.01, each->length = 0.09;
    tell("LE is (.2 * 30 + .2 / 10 * 100) / 130 in the second band; the old file has neither LF nor LFC",
         {{loud.text()}, {old.text(), "0", "10"}});
    tell("LF and LFC of 0, and the new format", {{old.text()}});

    resulttext first = response({1}), second = response({1});
    first.extra = "Humidity of the air, 50 %\r\nName        = a.spk\r\n";
    second.extra = "Name        =  a.spk\r\n";
    tell("The header of the first; nothing is added to the speed of sound",
         {{first.text()}, {second.text()}});
    second.extra = "";
    tell("Different sources are NONE", {{first.text()}, {second.text()}});
    expectgolden("sums.txt", told);
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

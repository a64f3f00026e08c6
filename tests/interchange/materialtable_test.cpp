// The material table: how lines are taken apart, and what a save makes of them.
#include "tests/failures.h"
#include "tests/testsupport.h"

#include "base/numbertext.h"
#include "interchange/materialtable.h"

using namespace orv;

namespace {

struct materials : sessiontest {
    materials() {
        materialtable& m = MaterialTable;
        for (int row = 0; row <= 20; ++row) m.materialName(row).clear();
        for (auto* each : {&m.absorption, &m.secondSet, &m.scattering}) each->clearrows(20);
        m.hasSecondSet.clearrows(20);
        m.hasScattering.clearrows(20);
    }

    static void load(std::string_view lines, std::string_view colours = "") {
        writetext("ORVANTA.MAT", lines); // found in any letter case
        writetext("orvcolor.mat", colours);
        loadmaterials();
    }
};

std::string band(const bandtable& values, int row, int number) {
    return numbertext(static_cast<double>(values(row, number)));
}

TEST_F(materials, TakesLinesApart) {
    const struct {
        const char* line;
        const char* expected; // flags, then the first band of each group
    } lines[] = {
        {"  0  Wall, rough ,.5 .6,.7,.8", "Wall-1-1-1 0 .5 .7"}, // "rough" is no number
        {"9 Label does not count,   0.1 0.2,,.4", "Label does not count-1-1 0 .1 0 0"},
        {"", " 0 0 0 0 0 0"},
        {"no comma here .1 .2", " 0 0 0 0 0 0"},
        {"Nolabel,.25", "Nolabel-1 0 0 .25 0 0"},
        {"Nolabel, .25", "-1 0 0 .25 0 0"}, // the name ends before the first blank
        {"5 Short,.1", "Short 0 0 0 .1 0 0"},
        {" ,.1 .2", " 0 0 0 0 0 0"},
        {"7 a,.1,   ,  .3", "a-1-1 0 .1 0 0"}, // behind a comma in front nothing is cut
    };
    std::string text;
    for (const auto& one : lines) text.append(one.line).append("\r\n");
    load(text, " 255\r\n0\n+7\r\n\r\n");
    const materialtable& m = MaterialTable;
    ASSERT_EQ(m.materialCount, 8);
    for (int row = 0; row <= 8; ++row) {
        std::string found = m.materialName(row);
        for (const int flag : {m.hasAbsorption(row), m.hasSecondSet(row), m.hasScattering(row)})
            found += wholetext(flag);
        for (const bandtable* each : {&m.absorption, &m.secondSet, &m.scattering})
            found += band(*each, row, 1);
        EXPECT_EQ(found, lines[row].expected);
        EXPECT_EQ(materialnames()[static_cast<std::size_t>(row)], m.materialName(row));
    }
    EXPECT_EQ(SessionState.materialColour(2), 7);
    EXPECT_EQ(materialrow("a"), 8);
    EXPECT_EQ(materialrow("A"), -1);
    EXPECT_EQ(materialrow("", 3), 3);

    load("0\r\n"); // a line that lost its comma keeps name and values
    EXPECT_EQ(m.materialName(0) + band(m.scattering, 0, 1), "Wall .7");
    load("");
    EXPECT_EQ(m.materialCount, -1);
}

TEST_F(materials, ReadsTenNumbersOfAText) {
    const auto read = [](const char* text) {
        readbandvalues(MaterialTable.absorption, text, 3);
        std::string numbers;
        for (int i = 1; i <= octavebands; ++i) numbers += band(MaterialTable.absorption, 3, i);
        return numbers;
    };
    EXPECT_EQ(read("1   2,5 x -.5e1 5 6 7 8 9 10 11"), " 1 2 0-5 5 6 7 8 9 10");
    EXPECT_EQ(read("4"), " 4 0 0 0 0 0 0 0 0 0");
}

TEST_F(materials, WritesItsForm) {
    const std::string shipped = readtext(std::string(DATA_FILES) + "/Orvanta.mat");
    load(shipped);
    EXPECT_EQ(totalabsorber(), 1);
    savematerials();
    EXPECT_EQ(readtext("ORVANTA.MAT"), shipped);

    const std::string name(70, 'n'), blank(65, ' ');
    load("0 x,\r\n0 " + name + ",.12345 12,1234.56\r\n", "255\r\n-1\r\n");
    EXPECT_EQ(totalabsorber(), 2);
    EXPECT_EQ(totalabsorber(), 2);
    savematerials();
    const auto repeated = [](const char* text, int count) {
        std::string all;
        while (count-- > 0) all += text;
        return all;
    };
    EXPECT_EQ(readtext("ORVANTA.MAT"), "  0  x" + blank.substr(1) + ",   \r\n  1  " + name.substr(0, 65) +
                                           ",    0.123 12.000" + repeated(" 0.000", 8) + ", 1234.6" +
                                           repeated(" 0.0", 9) + "\r\n  2  TOTABS" + blank.substr(6) +
                                           ",   " + repeated(" 1.000", 10) + "," + repeated(" 0.0", 10) +
                                           "," + repeated(" 0.000", 10) + "\r\n");
    EXPECT_EQ(readtext("orvcolor.mat"), " 255\r\n-1\r\n 0\r\n");
}

TEST_F(materials, NamesFileLineAndReason) {
    std::string full;
    for (int row = 0; row <= highestmaterial; ++row) full += "0 a,\n";
    load(full);
    EXPECT_EQ(kindof([] { totalabsorber(); }), errorkind::subscript);
    const struct {
        std::string lines, colours;
        const char* message;
    } cases[] = {{full + ",", "", "ORVANTA.MAT, line 2002: subscript out of range"},
                 {"\n1 a,1E40", "", "ORVANTA.MAT, line 2: Overflow: a number is too large"},
                 {"1 a,1", "1\nred", "orvcolor.mat, line 2: expected a number, found \"red\""}};
    for (const auto& one : cases) {
        const runtimeerror error = failureof([&] { load(one.lines, one.colours); });
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
    }
    std::filesystem::remove("ORVANTA.MAT");
    EXPECT_EQ(kindof(loadmaterials), errorkind::filenotfound);
    // Neither is replaced where the other cannot be.
    writetext("ORVANTA.MAT", "kept");
    std::filesystem::remove("orvcolor.mat");
    std::filesystem::create_symlink("/dev/full", "orvcolor.mat");
    EXPECT_EQ(kindof(savematerials), errorkind::fileaccess);
    EXPECT_EQ(readtext("ORVANTA.MAT"), "kept");
}

} // namespace

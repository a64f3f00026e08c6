// The material table: how lines are taken apart, and what a save makes of them.
#include "tests/failures.h"
#include "tests/golden.h"

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
    const char* lines[] = {
        "  0  Wall, rough ,.5 .6,.7,.8", // "rough" is no number
        "9 Label does not count,   0.1 0.2,,.4",
        "",
        "no comma here .1 .2",
        "Nolabel,.25",
        "Nolabel, .25", // the name ends before the first blank
        "5 Short,.1",
        " ,.1 .2",
        "7 a,.1,   ,  .3", // behind a comma in front nothing is cut
    };
    std::string text;
    for (const char* line : lines) text.append(line).append("\r\n");
    load(text, " 255\r\n0\n+7\r\n\r\n");
    const materialtable& m = MaterialTable;
    ASSERT_EQ(m.materialCount, 8);
    std::vector<std::string> told; // the line, its name, flags, and the first band of each group
    for (int row = 0; row <= 8; ++row) {
        told.push_back(std::string(lines[row]) + " = " + m.materialName(row));
        for (const int flag : {m.hasAbsorption(row), m.hasSecondSet(row), m.hasScattering(row)})
            told.back() += wholetext(flag);
        for (const bandtable* each : {&m.absorption, &m.secondSet, &m.scattering})
            told.back() += band(*each, row, 1);
    }
    expectgolden("materiallines.txt", told);
    EXPECT_EQ(materialnames()[8], "a");
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

    load("0 x,\r\n0 " + std::string(70, 'n') + ",.12345 12,1234.56\r\n", "255\r\n-1\r\n");
    EXPECT_EQ(totalabsorber(), 2);
    EXPECT_EQ(totalabsorber(), 2);
    savematerials();
    expectgolden("materials.mat", readtext("ORVANTA.MAT"));
    EXPECT_EQ(readtext("orvcolor.mat"), " 255\r\n-1\r\n 0\r\n");
}

TEST_F(materials, NamesFileLineAndReason) {
    std::string full;
    for (int row = 0; row <= highestmaterial; ++row) full += "0 a,\n";
    load(full);
    EXPECT_EQ(kindof([] { totalabsorber(); }), errorkind::subscript);
    std::vector<std::string> told;
    for (const auto& [lines, colours] :
         {std::pair<std::string, std::string>(full + ",", ""), {"\n1 a,1E40", ""}, {"1 a,1", "1\nred"}})
        told.push_back(refusalof([&] { load(lines, colours); }));
    expectgolden("refusedmaterials.txt", told);
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

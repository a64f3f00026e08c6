// The material table: how lines are taken apart, and what a save makes of them.
#include "tests/failures.h"
#include "tests/testsupport.h"

#include "base/numbertext.h"
#include "interchange/materialtable.h"

using namespace orv;

namespace {

struct materials : sessiontest {
    materials() {
        MaterialTable.materialCount = -1;
        for (int row = 0; row <= 20; ++row) MaterialTable.materialName(row).clear();
        for (bandtable* each :
             {&MaterialTable.absorption, &MaterialTable.secondSet, &MaterialTable.scattering})
            each->clearrows(20);
        MaterialTable.hasAbsorption.clearrows(20);
        MaterialTable.hasSecondSet.clearrows(20);
        MaterialTable.hasScattering.clearrows(20);
    }

    static void load(std::string_view lines, std::string_view colours = "") {
        writetext("ORVANTA.MAT", lines); // found in any letter case
        writetext("orvcolor.mat", colours);
        loadmaterials();
    }

    static std::vector<int> flags(int row) {
        return {MaterialTable.hasAbsorption(row), MaterialTable.hasSecondSet(row),
                MaterialTable.hasScattering(row)};
    }
};

TEST_F(materials, TakesLinesApart) {
    const struct {
        const char* line;
        const char* name;
        std::vector<int> has;
        float first, second, third; // of band 1
    } lines[] = {
        {"  0  Wall, rough ,.5 .6,.7,.8", "Wall", {-1, -1, -1}, 0, .5F, .7F}, // "rough" is no number
        {"9 Label does not count,   0.1 0.2,,.4", "Label does not count", {-1, -1, 0}, .1F, 0, 0},
        {"", "", {0, 0, 0}, 0, 0, 0},
        {"no comma here .1 .2", "", {0, 0, 0}, 0, 0, 0},
        {"Nolabel,.25", "Nolabel", {-1, 0, 0}, .25F, 0, 0},
        {"Nolabel, .25", "", {-1, 0, 0}, .25F, 0, 0}, // the name ends before the first blank
        {"5 Short,.1", "Short", {0, 0, 0}, .1F, 0, 0},
        {" ,.1 .2", "", {0, 0, 0}, 0, 0, 0},
        {"7 a,.1,   ,  .3", "a", {-1, -1, 0}, .1F, 0, 0}, // behind a comma in front nothing is cut
    };
    std::string text;
    for (const auto& one : lines) text.append(one.line).append("\r\n");
    load(text, " 255\r\n0\n+7\r\n\r\n");
    ASSERT_EQ(MaterialTable.materialCount, 8);
    for (int row = 0; row <= 8; ++row) {
        EXPECT_EQ(MaterialTable.materialName(row), lines[row].name) << row;
        EXPECT_EQ(flags(row), lines[row].has) << row;
        EXPECT_EQ(MaterialTable.absorption(row, 1), lines[row].first) << row;
        EXPECT_EQ(MaterialTable.secondSet(row, 1), lines[row].second) << row;
        EXPECT_EQ(MaterialTable.scattering(row, 1), lines[row].third) << row;
    }
    EXPECT_EQ(MaterialTable.absorption(1, 2), .2F);
    EXPECT_EQ(SessionState.materialColour(0), 255);
    EXPECT_EQ(SessionState.materialColour(2), 7);
    EXPECT_EQ(materialnames(), (std::vector<std::string>{"Wall", "Label does not count", "", "", "Nolabel",
                                                         "", "Short", "", "a"}));
    EXPECT_EQ(materialrow("a"), 8);
    EXPECT_EQ(materialrow("A"), -1);
    EXPECT_EQ(materialrow("", 3), 3);

    // A line that lost its comma keeps name and values; an empty file leaves no row.
    load("0\r\n");
    EXPECT_EQ(MaterialTable.materialName(0), "Wall");
    EXPECT_EQ(MaterialTable.scattering(0, 1), .7F);
    load("");
    EXPECT_EQ(MaterialTable.materialCount, -1);
}

TEST_F(materials, ReadsTenNumbersOfAText) {
    const auto read = [](const char* text) {
        readbandvalues(MaterialTable.absorption, text, 3);
        std::string numbers;
        for (int band = 1; band <= octavebands; ++band)
            numbers += numbertext(static_cast<double>(MaterialTable.absorption(3, band)));
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
    load("0 lost\r\n0 " + name + ",.12345 12,1234.56\r\n0 bare,\r\n", "255\r\n-1\r\n7\r\n");
    MaterialTable.hasAbsorption(0) = MaterialTable.hasSecondSet(0) = MaterialTable.hasScattering(0) = 0;
    MaterialTable.materialName(0) = "x";
    EXPECT_EQ(totalabsorber(), 3);
    EXPECT_EQ(totalabsorber(), 3);
    savematerials();
    const auto repeated = [](const char* text, int count) {
        std::string all;
        while (count-- > 0) all += text;
        return all;
    };
    EXPECT_EQ(readtext("ORVANTA.MAT"), "  0  x" + blank.substr(1) + ",   \r\n  1  " + name.substr(0, 65) +
                                           ",    0.123 12.000" + repeated(" 0.000", 8) + ", 1234.6" +
                                           repeated(" 0.0", 9) + "\r\n  2  bare" + blank.substr(4) +
                                           ",   \r\n  3  TOTABS" + blank.substr(6) + ",   " +
                                           repeated(" 1.000", 10) + "," + repeated(" 0.0", 10) + "," +
                                           repeated(" 0.000", 10) + "\r\n");
    EXPECT_EQ(readtext("orvcolor.mat"), " 255\r\n-1\r\n 7\r\n 0\r\n");
    EXPECT_TRUE(scripted::called("status 1|Writing data from Orvanta.MAT"));
}

TEST_F(materials, NamesFileLineAndReason) {
    const std::string full(highestmaterial + 1, '\n');
    load(full);
    EXPECT_EQ(kindof([] { totalabsorber(); }), errorkind::subscript);
    const struct {
        std::string lines, colours;
        errorkind kind;
        const char* message;
    } cases[] = {
        {full + ",", "", errorkind::subscript, "ORVANTA.MAT, line 2002: subscript out of range"},
        {"\n1 a,1E40", "", errorkind::overflow, "ORVANTA.MAT, line 2: "},
        {"1 a,1", "1\nred", errorkind::typemismatch,
         "orvcolor.mat, line 2: expected a number, found \"red\""},
    };
    for (const auto& one : cases) {
        const runtimeerror error = failureof([&] { load(one.lines, one.colours); });
        EXPECT_EQ(error.kind, one.kind);
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
    }
    std::filesystem::remove("ORVANTA.MAT");
    EXPECT_EQ(kindof(loadmaterials), errorkind::filenotfound);
    // A file that cannot be written leaves both as they were.
    writetext("ORVANTA.MAT", "kept");
    std::filesystem::remove("orvcolor.mat");
    SessionState.dataDirectory += "/ORVANTA.MAT";
    EXPECT_EQ(kindof(savematerials), errorkind::fileaccess);
    EXPECT_EQ(readtext("ORVANTA.MAT"), "kept");
}

} // namespace

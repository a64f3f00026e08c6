// Catt files: what the reader takes, byte by byte what the writer gives, and that the one reads the other.
#include "tests/failures.h"
#include "tests/testsupport.h"

#include "interchange/cattreader.h"
#include "interchange/cattwriter.h"
#include "interchange/materialtable.h"
#include "samples/samplefiles.h"

#include <cmath>
#include <regex>

using namespace orv;

namespace {

constexpr std::string_view materialfile = "0 Neutral,0 0 .1\r\n1 Wood \xC4"
                                          "d,.01 .02 .15 .16\r\n2 Glass\r\n";
constexpr std::string_view colourfile = "1\r\n2\r\n3\r\n";

struct catt : sessiontest {
    catt() {
        for (int row = 0; row <= 10; ++row) MaterialTable.materialName(row).clear();
        for (bandtable* each :
             {&MaterialTable.absorption, &MaterialTable.secondSet, &MaterialTable.scattering})
            each->clearrows(10);
        writetext("Orvanta.mat", materialfile);
        writetext("orvcolor.mat", colourfile);
    }

    static void load(std::string_view text) {
        writetext("hall.geo", text);
        loadcatt("hall.geo");
    }

    static void addface(std::int16_t material, const std::vector<std::array<float, 3>>& corners) {
        const std::int32_t face = ++RoomModel.faceCount;
        RoomModel.faceMaterial(face) = material;
        RoomModel.faceVertexCount(face) = static_cast<std::int16_t>(corners.size());
        int v = 0;
        for (const auto& [x, y, z] : corners) {
            RoomModel.faceVertexX(face, ++v) = x;
            RoomModel.faceVertexY(face, v) = y;
            RoomModel.faceVertexZ(face, v) = z;
        }
    }

    // Every number of the room that a Catt file holds.
    static std::vector<float> roomnumbers() {
        const roommodel& r = RoomModel;
        std::vector<float> all;
        const auto add = [&all](auto... values) { (all.push_back(static_cast<float>(values)), ...); };
        add(r.faceCount, r.sourceCount, r.receiverCount, SessionState.temperature, SessionState.humidity);
        for (int i = 1; i <= r.faceCount; ++i) {
            add(r.faceMaterial(i), r.faceVertexCount(i));
            for (int v = 1; v <= r.faceVertexCount(i); ++v)
                add(r.faceVertexX(i, v), r.faceVertexY(i, v), r.faceVertexZ(i, v));
        }
        for (int i = 1; i <= r.sourceCount; ++i)
            add(r.sourceX(i), r.sourceY(i), r.sourceZ(i), r.sourceAimX(i), r.sourceAimY(i), r.sourceAimZ(i));
        for (int i = 1; i <= r.receiverCount; ++i) add(r.receiverX(i), r.receiverY(i), r.receiverZ(i));
        return all;
    }
};

constexpr std::string_view sample =
    ";TEMPERATURE 21.5\r\n"
    ";HUMIDITY-60\r\n"
    ";SOURCE A1\r\n"
    "; DIRECTIVITY = \"Left.SD0\" \"no.SD0\"\r\n"
    "; POS = 1  2\t3m\r\n"
    "; AIMPOS = -1 .5\r\n"
    ";END\r\n"
    ";RECEIVERS\r\n"
    ";  1  5.5 6 7\r\n"
    ";TEMPERATURE 1 2 3\r\n"
    "ABS Glass = < 10 20 30 40 50 60 : 70 80> L < 1 2 3 4 5 6 : 7 8> {255 1 2}\r\n"
    "ABS new one=<12.5>\r\n"
    "CORNERS\r\n"
    "1 9 9 9\r\n"
    "\r\n"
    " 1   0.000 0 0\r\n"
    "2\t4.00000 0 0\r\n"
    " 100000 4 3 .25\r\n"
    "PLANES\r\n"
    "; [1 no plane / 1 / Glass ]\r\n"
    "[7 a floor / 1 2 100000 / Glass ] more\r\n"
    "[8 / 3 2/ glass ]\r\n"
    ";RECEIVERS\r\n"
    "CORNERS\r\n"
    " 2  1.00000 1 1\r\n";

TEST_F(catt, ReadsARoomWithItsMaterials) {
    const roommodel& r = RoomModel;
    RoomModel.faceInWall(1) = RoomModel.faceLayerFlag(1) = RoomModel.faceHasOpening(1) =
        -1; // of a former room
    load(sample);
    EXPECT_EQ(SessionState.temperature, 21.5F);
    EXPECT_EQ(SessionState.humidity, 60.0F); // where its sign stands, nothing is read: kept
    const std::vector<int> whole = {r.faceCount,       r.sourceCount,        r.receiverCount,
                                    r.faceMaterial(1), r.faceVertexCount(1), r.faceMaterial(2),
                                    r.faceInWall(1),   r.faceLayerFlag(1),   r.faceHasOpening(1)};
    EXPECT_EQ(whole, (std::vector<int>{2, 1, 2, 4, 3, 0, 0, 0, 0}));
    const std::vector<float> numbers = {r.sourceZ(1),        r.sourceAimX(1),     r.sourceAimY(1),
                                        r.sourceAimZ(1),     r.receiverX(1),      r.receiverZ(2),
                                        r.receiverAimY(2),   r.faceVertexX(1, 2), r.faceVertexZ(1, 3),
                                        r.faceVertexX(2, 1), r.roomMaxZ,          r.roomCentreX};
    EXPECT_EQ(numbers, (std::vector<float>{3, -1, .5F, 0, 5.5F, 3, 2, 4, .25F, 0, 7, 2.75F}));
    EXPECT_EQ(r.sourceFile(1), "Left.spk");

    const std::vector<std::string> log = {"searching for entities...",
                                          "Source:  1  1  2  3 -1  .5  0 ",
                                          "Receiver:  1  5.5  6  7  1  2  3 ",
                                          "Receiver:  2  1  2  3  1  2  3 ",
                                          "Face n. 1 name:a floor - Material: 4 - N. nodes= 3 ",
                                          "Face n. 2 name: - Material: 0 - N. nodes= 2 "};
    EXPECT_EQ(scripted::logtext(), log);
    EXPECT_TRUE(scripted::called("status 1|Writing data from Orvanta.MAT"));

    // The line of row 2 holds no data, so that Glass is a new row, behind that of TOTABS.
    EXPECT_EQ(materialrow("TOTABS"), 3);
    EXPECT_EQ(materialrow("new one"), 5);
    EXPECT_EQ(MaterialTable.absorption(4, 3), .1F);
    EXPECT_EQ(MaterialTable.scattering(4, 10), .08F);
    EXPECT_EQ(MaterialTable.absorption(5, 3), .125F);
    const std::string materials = readtext("Orvanta.mat");
    EXPECT_EQ(readtext("orvcolor.mat"), " 1\r\n 2\r\n 3\r\n 0\r\n 131583\r\n 0\r\n");
    load(sample); // adds no rows
    EXPECT_EQ(readtext("Orvanta.mat"), materials);
}

// Byte by byte but for the time. ORV_REWRITE_GOLDEN in the environment writes the file anew.
TEST_F(catt, WritesTheGoldenFile) {
    SessionState.geometryFileName = inside("rooms/hall.ray");
    SessionState.temperature = -2.5F;
    SessionState.humidity = 50;
    addface(1, {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, -.5F}});
    addface(0, {{4, -0.0F, 0}, {4, 3, 0}, {std::nextafter(4.0F, 5.0F), 3, 0}}); // differs in the last bit
    addface(1, {{-12345.678F, 1234567, 1E-8F}, {0, 0, 0}, {.1F, 1.0F / 3, 123.4567F}});
    RoomModel.sourceCount = 2;
    for (int i = 1; i <= 2; ++i) {
        RoomModel.sourceX(i) = 1, RoomModel.sourceY(i) = 2.5F, RoomModel.sourceZ(i) = 12345678;
        RoomModel.sourceAimX(i) = RoomModel.sourceAimY(i) = 0, RoomModel.sourceAimZ(i) = -.25F;
        RoomModel.receiverX(i) = -1.5F, RoomModel.receiverY(i) = 123456.7F, RoomModel.receiverZ(i) = 0;
    }
    RoomModel.sourceFile(1) = "Omni.spk"; // beside the room, and found in any case
    RoomModel.sourceFile(2) = "sp";
    std::filesystem::create_directory("rooms");
    writetext("rooms/OMNI.SPK", samples::sourcetext());
    RoomModel.receiverCount = 2;

    savecatt("room.geo");
    std::string bytes = readtext("room.geo");
    const std::regex time(";\\d+/\\d+/\\d{4} \\d+:\\d\\d:\\d\\d [AP]M\r\n");
    EXPECT_TRUE(std::regex_search(bytes, time));
    bytes = std::regex_replace(bytes, time, ";TIME\r\n", std::regex_constants::format_first_only);
    bytes = std::regex_replace(bytes, std::regex(directory.path), "DIRECTORY");
    const std::string path = std::string(TEST_FILES) + "/golden/room.geo";
    if (std::getenv("ORV_REWRITE_GOLDEN")) writetext(path, bytes);
    EXPECT_EQ(bytes, readtext(path));
    EXPECT_EQ(scripted::statustext(1), "Succesfully saved the .GEO file named room.geo");

    std::string field;
    padformat(1000, "### ", field); // the right-hand part, on purpose
    EXPECT_EQ(field, "000 ");
}

// Corners have seven digits at most, which a file keeps; the sign of the temperature does not come back.
TEST_F(catt, ReadsWhatItWrote) {
    load(sample);
    addface(4, {{1, 2, 3}, {.015625F, 2, 3}, {1, -2.5F, 3}});
    const std::vector<float> room = roomnumbers();
    savecatt("again.geo");
    resetroom();
    loadcatt("again.geo");
    EXPECT_EQ(roomnumbers(), room);
    EXPECT_EQ(RoomModel.sourceFile(1), "Left.spk");
    EXPECT_EQ(MaterialTable.materialCount, 5);
}

TEST_F(catt, WritesNothingThatItsFormCannotHold) {
    writetext("room.geo", "as it was");
    addface(2001, {{0, 0, 0}});
    EXPECT_EQ(kindof([] { savecatt("room.geo"); }), errorkind::subscript);
    RoomModel.faceCount = 0;
    for (std::int16_t i = 0; i < 100; ++i) addface(i, {{0, 0, 0}});
    savecatt("other.geo");
    addface(100, {{0, 0, 0}});
    EXPECT_EQ(kindof([] { savecatt("room.geo"); }), errorkind::subscript);
    RoomModel.faceCount = 1;
    RoomModel.sourceCount = 1;
    RoomModel.sourceFile(1) = "broken.spk";
    writetext("broken.spk", "1\n2\n3\n4\n7, words\n");
    EXPECT_EQ(kindof([] { savecatt("room.geo"); }), errorkind::typemismatch);
    EXPECT_EQ(readtext("room.geo"), "as it was");
}

TEST_F(catt, NamesFileLineAndReason) {
    std::string plane = "[1 a /";
    for (int v = 0; v <= facevertices; ++v) plane += " 1";
    const struct {
        std::string text;
        errorkind kind;
        const char* message;
    } cases[] = {
        {";SOURCE\n; DIRECTIVITY = \"a\"\n", errorkind::pastend, "line 3: the file ends"},
        {"\nABS Wood <1 2 3 4 5 6>\n", errorkind::typemismatch, "line 2: expected \"=\" behind the name"},
        {"PLANES\n[2 wall \\ 1 2 3 \\ Wood ]\n", errorkind::typemismatch,
         "line 2: expected \"/\" behind the name"},
        {"PLANES\n[2 wall / 1 2 3 \\ Wood ]\n", errorkind::typemismatch, "behind the corners"},
        {"PLANES\n[2 wall / 1 2 3 / Wood\n", errorkind::typemismatch, "line 2: expected \"]\""},
        {"CORNERS\n 100001 0 0 0\n", errorkind::subscript, "line 2: subscript"},
        {"PLANES\n[2 w / -1 / Wood ]\n", errorkind::subscript, "line 2: subscript"},
        {"PLANES\n" + plane + " / Wood ]\n", errorkind::subscript, "at most 120 vertices"},
        {"ABS new =< 1E42 >\n", errorkind::overflow, "line 1: the number \"1E42\""},
        {"ABS new = {1 1E9 1}\n", errorkind::overflow, "line 1: the colour"},
        {"CORNERS\n1 1E39 00000\nPLANES\n[2 w / 1 / Wood ]\n", errorkind::overflow,
         "line 4: the coordinates"},
    };
    for (const auto& one : cases) {
        const runtimeerror error = failureof([&] { load(one.text); });
        EXPECT_EQ(error.kind, one.kind) << error.text;
        EXPECT_TRUE(error.text.starts_with("hall.geo, line ")) << error.text;
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
        EXPECT_EQ(RoomModel.faceCount + RoomModel.sourceCount, 0);
    }
    EXPECT_EQ(readtext("Orvanta.mat"), materialfile); // as it was, with every failure
    EXPECT_EQ(readtext("orvcolor.mat"), colourfile);

    RoomModel.faceCount = 5;
    EXPECT_EQ(kindof([] { loadcatt("absent.geo"); }), errorkind::filenotfound);
    std::filesystem::remove("Orvanta.mat");
    EXPECT_EQ(kindof([] { load(sample); }), errorkind::filenotfound);
    EXPECT_EQ(RoomModel.faceCount, 5);
}

} // namespace

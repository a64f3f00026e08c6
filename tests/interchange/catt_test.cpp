// Catt files: what the reader takes, byte by byte what the writer gives, and that the one reads the other.
#include "tests/interchange/roomtext.h"

#include "interchange/cattreader.h"
#include "interchange/cattwriter.h"
#include "interchange/materialtable.h"
#include "samples/samplefiles.h"

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
    RoomModel.faceInWall(1) = RoomModel.faceLayerFlag(1) = -1; // of a former room
    load(sample);
    EXPECT_EQ(SessionState.temperature, 21.5F);
    EXPECT_EQ(SessionState.humidity, 60.0F); // where its sign stands, nothing is read: kept
    // The line of row 2 holds no data, so that Glass is row 4, behind that of TOTABS. Face 2 has no size.
    EXPECT_EQ(roomtext(), " Wall\n Face 0  4  3     0  0  0  4  0  0  4  3  .25\n End\n"
                          " Source  1  2  3 -1  .5  0  0 Left.spk\n"
                          " Receiver  5.5  6  7  1  2  3\n Receiver  1  2  3  1  2  3\n");
    EXPECT_EQ(SessionState.targetX, 2.75F);
    EXPECT_EQ(RoomModel.roomMaxZ, 7.0F);
    expectgolden("cattlog.txt", scripted::logtext());

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

// Byte by byte but for the time.
TEST_F(catt, WritesTheGoldenFile) {
    SessionState.geometryFileName = inside("rooms/hall.ray");
    SessionState.temperature = -2.5F;
    SessionState.humidity = 50;
    makeroom("Face 0 1 4 0 0 0 4 0 0 4 3 0 0 3 -.5\n"
             "Face 0 0 3 4 -0 0 4 3 0 4.0000005 3 0\n" // differs in the last bit
             "Face 0 1 3 -12345.678 1234567 1E-8 0 0 0 .1 .3333333 123.4567\n"
             "Source 1 2.5 12345678 0 0 -.25 0 Omni.spk\n" // beside the room, and found in any case
             "Source 1 2 3 0 0 0 0 sp\n"
             "Receiver -1.5 123456.7 0 0 0 0\n");
    std::filesystem::create_directory("rooms");
    writetext("rooms/OMNI.SPK", samples::sourcetext());

    savecatt("room.geo");
    std::string bytes = readtext("room.geo");
    const std::size_t time = bytes.find(";", bytes.find("\n;") + 2), end = bytes.find("\r\n", time);
    const std::string shown = bytes.substr(time, end - time);
    EXPECT_TRUE(shown.ends_with(" AM") || shown.ends_with(" PM")) << shown;
    EXPECT_EQ(shown.find_first_not_of("0123456789", shown.find(':') + 1), shown.rfind(':')) << shown;
    bytes.replace(time, end - time, ";TIME");
    bytes.replace(bytes.find(directory.path), directory.path.size(), "DIRECTORY");
    expectgolden("room.geo", bytes);
    EXPECT_EQ(scripted::statustext(1), "Succesfully saved the .GEO file named room.geo");

    std::string field;
    padformat(1000, "### ", field); // the right-hand part, on purpose
    EXPECT_EQ(field, "000 ");
}

TEST_F(catt, ReadsWhatItWrote) {
    load(sample);
    const std::string room = roomtext();
    savecatt("again.geo");
    loadcatt("again.geo");
    EXPECT_EQ(roomtext(), room);
    EXPECT_EQ(SessionState.temperature, 21.5F);
    EXPECT_EQ(MaterialTable.materialCount, 5);
}

TEST_F(catt, WritesNothingThatItsFormCannotHold) {
    std::string faces;
    for (int i = 0; i < 100; ++i) faces += "Face 0 " + std::to_string(i) + " 1 0 0 0\n";
    makeroom(faces);
    savecatt("room.geo");
    const std::string former = readtext("room.geo");
    writetext("broken.spk", "1\n2\n3\n4\n7, words\n");
    const std::pair<std::string, errorkind> cases[] = {
        {faces + "Face 0 100 1 0 0 0\n", errorkind::subscript},
        {"Face 0 2001 1 0 0 0\n", errorkind::subscript},
        {"Source 0 0 0 0 0 0 0 broken.spk", errorkind::typemismatch}};
    for (const auto& [room, kind] : cases) {
        makeroom(room);
        EXPECT_EQ(kindof([] { savecatt("room.geo"); }), kind) << room;
    }
    EXPECT_EQ(readtext("room.geo"), former);
}

TEST_F(catt, NamesFileLineAndReason) {
    std::string plane = "[1 a /";
    for (int v = 0; v <= facevertices; ++v) plane += " 1";
    expectrefusals("refusedcatt.txt",
                   {";SOURCE\n; DIRECTIVITY = \"a\"\n", "\nABS Wood <1 2 3 4 5 6>\n",
                    "PLANES\n[2 wall \\ 1 2 3 \\ Wood ]\n", "PLANES\n[2 wall / 1 2 3 / Wood\n",
                    "CORNERS\n 100001 0 0 0\n", "PLANES\n" + plane + " / Wood ]\n", "ABS new =< 1E42 >\n",
                    "ABS new = {1 1E9 1}\n", "CORNERS\n1 1E39 00000\nPLANES\n[2 w / 1 / Wood ]\n"},
                   load);
    EXPECT_EQ(readtext("Orvanta.mat"), materialfile); // as it was, with every failure
    EXPECT_EQ(readtext("orvcolor.mat"), colourfile);

    RoomModel.faceCount = 5;
    EXPECT_EQ(kindof([] { loadcatt("absent.geo"); }), errorkind::filenotfound);
    std::filesystem::remove("Orvanta.mat");
    EXPECT_EQ(kindof([] { load(sample); }), errorkind::filenotfound);
    EXPECT_EQ(RoomModel.faceCount, 5);
}

} // namespace

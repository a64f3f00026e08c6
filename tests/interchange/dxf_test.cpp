// Drawings in and out: what entities and layers become, the stream of pairs, planes, openings, and the
// commands.
#include "tests/failures.h"
#include "tests/testsupport.h"

#include "base/listinput.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
#include "interchange/interchangecommands.h"
#include "room/geometryreader.h"
#include "samples/samplefiles.h"

#include <algorithm>

using namespace orv;

namespace {

// "8 12|10 0" as pairs, each a line with the code and a line with the value.
std::string pairs(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        const std::string_view pair = text.substr(0, text.find('|'));
        text.remove_prefix(std::min(text.size(), pair.size() + 1));
        const std::size_t blank = std::min(pair.find(' '), pair.size() - 1);
        lines.append(pair.substr(0, blank)).append("\r\n").append(pair.substr(blank + 1)).append("\r\n");
    }
    return lines;
}

// The other way round, as the writer prints codes.
std::string inpairs(const std::string& lines) {
    std::string text;
    listreader reader = openlist(lines, "");
    while (!atend(reader)) {
        const std::string code(readline(reader));
        EXPECT_TRUE(code.starts_with(' ') && code.ends_with(' ')) << code;
        text.append(trimboth(code)).append(1, ' ').append(readline(reader)).append(1, '|');
    }
    return text;
}

// Corners "x y z" of an entity that begins with its name and layer.
std::string entity(const std::string& name, const std::string& layer, const std::vector<const char*>& points,
                   bool vertices = false) {
    std::string text = "0 " + name + "|8 " + layer + "|";
    for (int i = vertices ? 10 : 9; const char* each : points) {
        listreader xyz = openlist(each, "");
        if (vertices) text += "0 VERTEX|8 " + layer + "|";
        if (!vertices) ++i;
        for (const int code : {i, i + 10, i + 20})
            text += std::to_string(code) + " " + std::string(readtext(xyz)) + "|";
    }
    return vertices ? text + "0 SEQEND|8 0|" : text;
}

std::string door(const std::string& layer, const std::vector<const char*>& points) {
    return entity("POLYLINE", layer, points, true);
}

const std::vector<const char*> square = {"0 0 0", "1 0 0", "1 1 0", "0 1 0"};

struct dxf : sessiontest {
    dxf() {
        writetext("orvanta.mat", "0 Wood,\r\n1 Wood,\r\n2 wood,\r\n3 12Wood,\r\n4 Citt\xE0,\r\n");
        RoomModel.doorMaterial(0) = 0;
    }

    void load(const std::string& entities, platform::answer check = platform::answer::yes) {
        loadtext(pairs("0 SECTION|2 ENTITIES|" + entities + "0 ENDSEC|0 EOF|"), check);
    }
    void loadtext(std::string_view text, platform::answer check = platform::answer::yes) {
        writetext("room.dxf", text);
        scripted::expectbox("planarity check on 3DFACE entities ?", check);
        loaddxf("room.dxf");
    }

    // How many faces, holes, doors, sources, receivers and ray lines there are.
    static std::vector<int> counts() {
        const roommodel& r = RoomModel;
        return {r.faceCount, r.holeCount, r.doorCount, r.sourceCount, r.receiverCount, r.rayLineCount};
    }
};

TEST_F(dxf, TakesMaterialsFromLayers) {
    const struct {
        const char* layer;
        int material, flag;
    } faces[] = {
        {"12", 12, 0},     {"12ABC", 12, 0}, {"ABC12", 0, 0},  {"12.6", 13, 0},    {"2.5", 2, 0},
        {"2000", 2000, 0}, {"2001", 1, 1},   {"2005", 5, 1},   {"ab", 0, 0},       {"-5", -5, 0},
        {"WOOD", 1, 0},    {" wood", 0, 0},  {"12wOOD", 3, 0}, {"12WOODS", 12, 0}, {"CITT\xC0", 4, 0},
    };
    std::string text;
    for (const auto& face : faces) text += entity("3DFACE", face.layer, square);
    load(text);
    ASSERT_EQ(RoomModel.faceCount, static_cast<int>(std::size(faces)));
    for (int i = 1; const auto& face : faces) {
        EXPECT_EQ(RoomModel.faceMaterial(i), face.material) << face.layer;
        EXPECT_EQ(RoomModel.faceLayerFlag(i), face.flag) << face.layer;
        ++i;
    }
    EXPECT_EQ(RoomModel.roomMaxX, 1.0F);
    EXPECT_EQ(SessionState.targetY, .5F);
    EXPECT_TRUE(
        scripted::called("log|FACE n. 1  0.0  0.0  0.0  1.0  0.0  0.0  1.0  1.0  0.0  0.0  1.0  0.0"));
}

TEST_F(dxf, MakesDoorsOfFourVertices) {
    const std::vector<const char*> closed = {"0 0 0", "1 0 0", "1 1 0", "0 2 0", "0 0 0"};
    const std::vector<const char*> five = {"0 0 0", "1 0 0", "1 1 0", "0 1 0", "0 .5 0"};
    const std::vector<const char*> six = {"0 0 0", "1 0 0", "1 1 0", "0 3 0", "0 .5 0", "0 0 0"};
    load(door("7", closed) + door("8", five) + door("2009", six) + door("9", {"0 0 0", "1 1 1", "2 2 2"}));
    ASSERT_EQ(counts(), (std::vector<int>{0, 0, 2, 0, 0, 0}));
    EXPECT_EQ(RoomModel.doorMaterial(1), 7);
    EXPECT_EQ(RoomModel.doorVertexY(1, 4), 2.0F);
    EXPECT_EQ(RoomModel.doorMaterial(2), 9);
    EXPECT_EQ(RoomModel.doorLayerFlag(2), 1);
    EXPECT_EQ(RoomModel.doorVertexY(2, 4), 3.0F);
    EXPECT_EQ(RoomModel.doorVertexCount(2), 4);

    // A layer's name replaces the door before it; without a hit it does as well, by the material that is
    // there.
    load(door("7", square) + door("wood", six) + door("ab", five));
    EXPECT_EQ(counts()[2], 1);
    EXPECT_EQ(RoomModel.doorMaterial(1), 1);
    EXPECT_EQ(RoomModel.doorVertexY(1, 4), 3.0F);
    load(door("7", six) + door("glass", square));
    EXPECT_EQ(RoomModel.doorMaterial(1), 7);
    EXPECT_EQ(RoomModel.doorVertexY(1, 4), 1.0F);
    load(door("7", six) + door("glass", five)); // it takes that door away with it
    EXPECT_EQ(counts()[2], 0);
    load(door("-1", six) + door("glass", five)); // no material above 0 there: ignored
    EXPECT_EQ(counts()[2], 1);
    load(door("glass", square) + door("wood", five)); // slot 0 stands in for a door before the first
    EXPECT_EQ(counts()[2], 0);
    EXPECT_EQ(RoomModel.doorMaterial(0), 1);
}

TEST_F(dxf, HoldsHolesOfUpTo64Vertices) {
    std::vector<const char*> points(64, "0 1 0");
    points[0] = "0 0 0";
    load(door("HOLES", points) + door("HOLES", {"1 1 1", "2 2 2"}) + entity("3DFACE", "1", square));
    EXPECT_EQ(counts(), (std::vector<int>{1, 2, 0, 0, 0, 0}));
    EXPECT_EQ(RoomModel.holeVertexCount(1), 64);
    EXPECT_EQ(RoomModel.holeVertexCount(2), 2);
    points.push_back("0 0 0");
    EXPECT_EQ(kindof([&] { load(door("HOLES", points)); }), errorkind::subscript);
}

TEST_F(dxf, ChecksPlanes) {
    const std::string flat = entity("3DFACE", "1", {"0 0 0", "1 0 0", "1 1 0", "0 1 .01"}),
                      bent = entity("3DFACE", "2", {"0 0 0", "1 0 0", "1 1 0", "0 1 -.02"}),
                      folded = entity("3DFACE", "3", {"0 0 0", "1 0 0", "1 1 0", "1 1 0"}),
                      line = entity("3DFACE", "4", {"0 0 0", "1 0 0", "2 0 0", "0 9 0"});
    RoomModel.faceMaterial(3) = 77; // of a room before
    load(flat + bent + folded + line);
    ASSERT_EQ(RoomModel.faceCount, 4);
    std::vector<int> vertices, materials;
    for (int face = 1; face <= 4; ++face) {
        vertices.push_back(RoomModel.faceVertexCount(face));
        materials.push_back(RoomModel.faceMaterial(face));
    }
    EXPECT_EQ(vertices, (std::vector<int>{4, 3, 3, 4}));
    EXPECT_EQ(materials, (std::vector<int>{1, 2, 77, 3})); // the second half has what stands there
    EXPECT_EQ(RoomModel.faceVertexY(3, 2), 1.0F);
    EXPECT_EQ(RoomModel.faceVertexZ(3, 3), -.02F);
    EXPECT_EQ(RoomModel.roomMaxY, 1.0F); // a dropped face extends nothing

    load(flat + bent + folded + line, platform::answer::no);
    EXPECT_EQ(RoomModel.faceCount, 4);
    EXPECT_EQ(RoomModel.faceVertexCount(2), 4);
    EXPECT_EQ(RoomModel.faceMaterial(4), 4);
}

TEST_F(dxf, AttachesOpeningsByTheBoxAlone) {
    const std::string away = entity("3DFACE", "1", {"5 5 5", "6 5 5", "6 6 5", "5 6 5"});
    const std::string wide = entity("3DFACE", "1", {"0 0 -4", "4 0 4", "4 4 4", "0 4 -4"});
    const std::string wall = entity("3DFACE", "1", {"0 0 0", "4 0 0", "4 4 0", "0 4 0"});
    const std::vector<const char*> edge = {"0 0 .001", "4.001 0 0", "4 4 0", "-.001 4 0"};
    const std::vector<const char*> over = {"0 0 .0011", "4.0011 0 0", "4 4 0", "0 4 0"};
    load(away + wall + wide + door("HOLES", over) + door("HOLES", edge) +
         door("6", {"1 0 3", "2 0 3", "2 1 3", "1 1 3"}) + door("6", {"9 0 3", "2 0 3", "2 1 3", "1 1 3"}));
    EXPECT_EQ(RoomModel.holeFace(1), 0);
    EXPECT_EQ(RoomModel.holeFace(2), 2);
    EXPECT_EQ(RoomModel.doorFace(1), 3);
    const std::vector<int> flags = {RoomModel.faceInWall(1), RoomModel.faceHasOpening(1),
                                    RoomModel.faceInWall(2), RoomModel.faceHasOpening(3)};
    EXPECT_EQ(flags, (std::vector<int>{0, 0, -1, -1}));
    EXPECT_EQ(scripted::callswith("log|No FACE"),
              (std::vector<std::string>{"log|No FACE found for HOLE no.  1 !!!",
                                        "log|No FACE found for DOOR no.  2 !!!"}));
    EXPECT_EQ(scripted::callswith("log|Att"),
              (std::vector<std::string>{"log|Attched HOLE no. 2 to FACE no. 2",
                                        "log|Attched DOOR no. 1 to FACE no. 3"}));
}

TEST_F(dxf, ReadsLinesAndSources) {
    load(entity("LINE", "RECEIVERS", {"1 2 3", "4 5 6"}) + entity("LINE", "receivers", {"9 9 9", "9 9 9"}) +
         entity("LINE", "RAYS", {"1 2 3", "6 2 -2"}) + entity("ATTDEF", "NAMES", {"9 9 9"}) +
         entity("ATTDEF", "SOURCES", {"1 2 3", "4 5 6"}) + "40 8|1 label|2 Omni.spk|70 0|51 .5|" +
         "0 LINE|10 7|20 7|8 RECEIVERS|30 1|");
    const roommodel& r = RoomModel;
    EXPECT_EQ(counts(), (std::vector<int>{0, 0, 0, 1, 2, 1}));
    EXPECT_EQ(r.receiverAimZ(1), 6.0F);
    EXPECT_EQ(r.receiverX(2), 0.0F); // coordinates in front of the layer are lost
    EXPECT_EQ(r.receiverZ(2), 1.0F);
    EXPECT_EQ(r.rayLineX2(1), .1F);
    EXPECT_EQ(r.rayLineZ2(1), -.1F);
    const std::vector<float> source = {r.sourceX(1), r.sourceZ(1), r.sourceAimY(1), r.sourceAimZ(1),
                                       r.sourceAimExtra(1)};
    EXPECT_EQ(source, (std::vector<float>{1, 3, 5, 6, .5F}));
    EXPECT_EQ(r.sourceFile(1), "Omni.spk");
    EXPECT_EQ(r.roomMinX, 0.0F);
    EXPECT_TRUE(scripted::called("log|RAY  1  1  2  3  .1  0 -.1"));
}

TEST_F(dxf, TakesPairsLiterally) {
    const std::string receiver = entity("LINE", "RECEIVERS", {"1 2 3", "4 5 6"});
    // Without Y, 3 is the next code, with the line "11" as its text, and so on to the end.
    loadtext(pairs("0 SECTION|2 ENTITIES|0 LINE|8 RECEIVERS|10 1|30 3|11 4|21 5|31 6|"));
    EXPECT_TRUE(scripted::called("log|Invalid Y coord code  30"));
    EXPECT_EQ(RoomModel.receiverX(1), 1.0F);
    EXPECT_EQ(RoomModel.receiverZ(1), 0.0F);
    load("1 ENDSEC|" + receiver);
    EXPECT_EQ(counts()[4], 0);
    // Sections in front, comments, blanks around codes, and an end at any place.
    const std::string whole = pairs("999 made by hand|0 SECTION|0 SECTION|2 HEADER|0 LINE|8 RECEIVERS|0 "
                                    "ENDSEC|0 SECTION|2 ENTITIES|999 x|" +
                                    receiver + entity("3DFACE", "1", square));
    loadtext(whole);
    EXPECT_EQ(counts(), (std::vector<int>{1, 0, 0, 0, 1, 0}));
    loadtext(std::string_view(whole).substr(0, whole.find("3DFACE")));
    EXPECT_EQ(counts(), (std::vector<int>{0, 0, 0, 0, 1, 0}));
    loadtext(std::string_view(whole).substr(0, whole.rfind("13")), platform::answer::no);
    EXPECT_EQ(counts()[0], 1);
    EXPECT_EQ(RoomModel.faceVertexX(1, 4), 1.0F); // what the place held last
    loadtext("");
    EXPECT_EQ(counts(), std::vector<int>(6, 0));
}

TEST_F(dxf, NamesFileLineAndReason) {
    const std::string face = entity("3DFACE", "1", square);
    std::string doors;
    for (int i = 0; i <= highestdoor; ++i) doors += door("1", square);
    const struct {
        std::string entities;
        errorkind kind;
        const char* message;
    } cases[] = {
        {face + "POLYLINE|", errorkind::typemismatch,
         "room.dxf, line 33: expected a number, found \"POLYLIN\""},
        {"0 3DFACE|8 32768|", errorkind::overflow, "room.dxf, line 7: overflow, the layer \"32768\""},
        {"0 3DFACE|8 1|10 1E39|20 1|", errorkind::overflow, "room.dxf, line 9: "},
        {"40000 1|", errorkind::overflow, "room.dxf, line 5: "},
        {doors, errorkind::subscript, "subscript out of range, a room holds at most 1000 doors"},
    };
    for (const auto& one : cases) {
        load(face);
        const runtimeerror error = failureof([&] { load(one.entities); });
        EXPECT_EQ(error.kind, one.kind) << error.text;
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
        EXPECT_EQ(counts(), std::vector<int>(6, 0));
    }
    load(face);
    std::filesystem::remove("orvanta.mat");
    EXPECT_EQ(kindof([&] { load(face); }), errorkind::filenotfound);
    EXPECT_EQ(counts()[0], 1); // the names are read before the room is emptied
}

TEST_F(dxf, WritesPairs) {
    load(entity("3DFACE", "2003", {"0 0 0", "1 0 0", "1 1 -.5", "1 1 -.5"}) +
         entity("ATTDEF", "SOURCES", {"1 2 3", "4 5 6"}) + "2 a.spk|51 -2|" + door("7", square) +
         door("HOLES", {"0 0 0", "1 0 0"}) + entity("LINE", "RAYS", {"1 1 1", "6 1 1"}) +
         entity("LINE", "RECEIVERS", {"1E-8 2 3", "4 5 6"}));
    RoomModel.faceVertexCount(1) = 3;
    savedxf("out.dxf");
    const std::string layer = "|70 64|62 2|6 CONTINUOUS|0 LAYER|2 ";
    const std::string corners = "10 0|20 0|30 0|70 32|0 VERTEX|8 HOLES|10 1|20 0|30 0|70 32|0 SEQEND|8 0|";
    EXPECT_EQ(inpairs(readtext("out.dxf")),
              "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|70 6|"
              "0 LAYER|2 2003|70 64|62 7|6 CONTINUOUS|0 LAYER|2 7|70 64|62 7|6 CONTINUOUS|"
              "0 LAYER|2 SOURCES|70 64|62 3|6 CONTINUOUS|0 LAYER|2 HOLES|70 64|62 1|6 CONTINUOUS|"
              "0 LAYER|2 RECEIVERS|70 64|62 2|6 CONTINUOUS|0 LAYER|2 RAYS|70 64|62 2|6 CONTINUOUS|"
              "0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES|"
              "0 3DFACE|8 2003|10 0|20 0|30 0|11 1|21 0|31 0|12 1|22 1|32 -.5|13 1|23 1|33 -.5|"
              "0 POLYLINE|8 HOLES|66 1|10 0.0|20 0.0|30 0.0|70 8|0 VERTEX|8 HOLES|" +
                  corners +
                  "0 POLYLINE|8 7|66 1|10 0.0|20 0.0|30 0.0|70 8|0 VERTEX|8 7|10 0|20 0|30 0|70 32|"
                  "0 VERTEX|8 7|10 1|20 0|30 0|70 32|0 VERTEX|8 7|10 1|20 1|30 0|70 32|0 VERTEX|8 7|10 0|20 "
                  "1|30 0|70 32|"
                  "0 SEQEND|8 0|"
                  "0 LINE|8 RECEIVERS|10 1E-08|20 2|30 3|11 4|21 5|31 6|0 LINE|8 RAYS|10 1|20 1|30 1|11 6|21 "
                  "1|31 1|"
                  "0 ATTDEF|8 SOURCES|10 1|20 2|30 3|40 0|1 |3 |2 a.spk|70 0|51 -2|72 5|11 4|21 5|31 6|0 "
                  "ENDSEC|0 EOF|");
}

TEST_F(dxf, AgreesWithTheShoebox) {
    const std::string folder = std::string(SHARED_FILES) + "/examples/shoebox/";
    if (!canopen(folder + "input.ray")) GTEST_SKIP() << "no worked example here";
    loadgeometry(folder + "input.ray");
    savedxf("out.dxf");
    EXPECT_EQ(readtext("out.dxf"), readtext(folder + "written.dxf"));
}

TEST_F(dxf, ComesBackFromItsOwnFile) {
    writetext("hall.ray", samples::geometrytext());
    loadgeometry("hall.ray");
    const std::vector<int> before = counts();
    std::string former, text;
    for (int i = 0; i < 2; ++i) { // corners beyond the fourth go with the first round
        savedxf("room.dxf");
        former = text;
        text = readtext("room.dxf");
        scripted::expectbox("DXFIN", platform::answer::no);
        loaddxf("room.dxf");
        EXPECT_EQ(counts(), before);
    }
    savedxf("room.dxf");
    EXPECT_TRUE(readtext("room.dxf") == text);
    EXPECT_LT(text.size(), former.size());
}

TEST_F(dxf, ListsAHundredLayers) {
    std::string text;
    for (int layer = 1; layer <= 100; ++layer) text += entity("3DFACE", std::to_string(layer), square);
    load(text + entity("3DFACE", "100", square));
    savedxf("out.dxf");
    const std::string former = readtext("out.dxf");
    load(text + door("2100", square));
    EXPECT_EQ(kindof([] { savedxf("out.dxf"); }), errorkind::subscript);
    EXPECT_EQ(readtext("out.dxf"), former);
}

TEST_F(dxf, RunsItsCommands) {
    scripted::expectopen(scripted::cancelled, "Load an AutoCAD (TM) DXF File");
    DXFIN();
    EXPECT_EQ(
        scripted::calls(),
        (std::vector<std::string>{
            "open|Load an AutoCAD (TM) DXF File|Drawing Exch.Files (*.DXF)|*.DXF|*.DXF|" + directory.path}));
    writetext("hall.dxf", pairs("0 SECTION|2 ENTITIES|" + entity("3DFACE", "1", square) + "0 ENDSEC|0 EOF|"));
    SessionState.gridReady = -1;
    SessionState.panX = .5F;
    SessionState.parameterSource = 1;
    scripted::expectopen(inside("hall.dxf"));
    scripted::expectbox("DXFIN", platform::answer::yes);
    DXFIN();
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_EQ(SessionState.gridReady, 0);
    EXPECT_EQ(SessionState.panX, 0.0F);
    for (const char* command : {"DXFOUT", "Fsave", "Redraw", "MapLoad", "MapDoDither2D", "ExportWAV"})
        EXPECT_TRUE(orv::isenabled(command)) << command;
    EXPECT_FALSE(picture.lines.empty());
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_NE(scripted::title().find("hall.dxf - "), std::string::npos);

    scripted::expectsave(inside("other"), "Save a .DXF AutoCAD File");
    DXFOUT();
    EXPECT_EQ(scripted::callswith("save|").back(),
              "save|Save a .DXF AutoCAD File|Drawing Exch.Files (*.dxf)|*.dxf|" + inside("hall.dxf") + "|" +
                  directory.path);
    EXPECT_TRUE(canopen("other.DXF"));
    EXPECT_EQ(SessionState.dxfFileName, inside("other.DXF"));
    EXPECT_EQ(SessionState.geometryFileName, inside("hall.dxf"));
}

} // namespace

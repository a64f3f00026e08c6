// Drawings in and out: what entities and layers become, the stream of pairs, planes, openings, and the
// commands.
#include "tests/failures.h"
#include "tests/testsupport.h"

#include "base/listinput.h"
#include "base/numbertext.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
#include "interchange/interchangecommands.h"
#include "room/geometryreader.h"
#include "samples/samplefiles.h"

#include <algorithm>
#include <cstdlib>

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

// Of each face material, flag, number of vertices, in-wall and opening flags; of each door the first three,
// the Y of its last vertex and its face.
std::string faces() {
    const roommodel& r = RoomModel;
    std::string text;
    for (int i = 1; i <= r.faceCount; ++i, text += '|')
        for (const int number : {r.faceMaterial(i), r.faceLayerFlag(i), r.faceVertexCount(i), r.faceInWall(i),
                                 r.faceHasOpening(i)})
            text += wholetext(number);
    return text;
}
std::string doors() {
    const roommodel& r = RoomModel;
    std::string text;
    for (int i = 1; i <= r.doorCount; ++i, text += '|')
        for (const double number :
             {r.doorMaterial(i) + 0.0, r.doorLayerFlag(i) + 0.0, r.doorVertexCount(i) + 0.0,
              static_cast<double>(r.doorVertexY(i, 4)), r.doorFace(i) + 0.0})
            text += numbertext(number);
    return text;
}

TEST_F(dxf, TakesMaterialsFromLayers) {
    const char* layers[] = {"12", "12ABC", "ABC12", "12.6",  "2.5",    "2000",    "2001",    "2005",
                            "ab", "-5",    "WOOD",  " wood", "12wOOD", "12WOODS", "CITT\xC0"};
    std::string text;
    for (const char* layer : layers) text += entity("3DFACE", layer, square);
    load(text);
    EXPECT_EQ(faces(), " 12 0 4 0 0| 12 0 4 0 0| 0 0 4 0 0| 13 0 4 0 0| 2 0 4 0 0| 2000 0 4 0 0| 1 1 4 0 0| "
                       "5 1 4 0 0| 0 0 4 0 0|-5 0 4 0 0|"
                       " 1 0 4 0 0| 0 0 4 0 0| 3 0 4 0 0| 12 0 4 0 0| 4 0 4 0 0|");
    EXPECT_EQ(SessionState.targetY, .5F);
    EXPECT_TRUE(
        scripted::called("log|FACE n. 1  0.0  0.0  0.0  1.0  0.0  0.0  1.0  1.0  0.0  0.0  1.0  0.0"));
}

TEST_F(dxf, MakesDoorsOfFourVertices) {
    const std::vector<const char*> closed = {"0 0 0", "1 0 0", "1 1 0", "0 2 0", "0 0 0"};
    const std::vector<const char*> five = {"0 0 0", "1 0 0", "1 1 0", "0 1 0", "0 .5 0"};
    const std::vector<const char*> six = {"0 0 0", "1 0 0", "1 1 0", "0 3 0", "0 .5 0", "0 0 0"};
    const struct {
        std::string read, expected;
    } cases[] = {
        {door("7", closed) + door("8", five) + door("2009", six) + door("9", {"0 0 0", "1 1 1"}),
         " 7 0 4 2 0| 9 1 4 3 0|"},
        // A name replaces the door before it, without a hit by the material that stands there.
        {door("7", square) + door("wood", six) + door("ab", five), " 1 0 4 3 0|"},
        {door("7", six) + door("glass", square), " 7 0 4 1 0|"},
        {door("7", six) + door("glass", five), ""},             // and takes it away
        {door("-1", six) + door("glass", five), "-1 0 4 3 0|"}, // nothing above 0 stands there
        {door("glass", square) + door("wood", five), ""},       // slot 0 is the door before the first
    };
    for (const auto& one : cases) {
        load(one.read);
        EXPECT_EQ(doors(), one.expected);
    }
    EXPECT_EQ(RoomModel.doorMaterial(0), 1);
}

TEST_F(dxf, HoldsHolesOfUpTo64Vertices) {
    std::vector<const char*> points(64, "0 1 0");
    points[0] = "0 0 0";
    load(door("HOLES", points) + door("HOLES", {"1 1 1", "2 2 2"}));
    EXPECT_EQ(RoomModel.holeVertexCount(1), 64);
    EXPECT_EQ(RoomModel.holeVertexCount(2), 2);
    points.push_back("0 0 0"); // even though it repeats the first
    EXPECT_EQ(kindof([&] { load(door("HOLES", points)); }), errorkind::subscript);
}

TEST_F(dxf, ChecksPlanes) {
    const std::string read = entity("3DFACE", "1", {"0 0 0", "1 0 0", "1 1 0", "0 1 .01"}) +
                             entity("3DFACE", "2", {"0 0 0", "1 0 0", "1 1 0", "0 1 -.02"}) +
                             entity("3DFACE", "3", {"0 0 0", "1 0 0", "1 1 0", "1 1 0"}) +
                             entity("3DFACE", "4", {"0 0 0", "1 0 0", "2 0 0", "0 9 0"});
    RoomModel.faceMaterial(3) = 77; // of a room before, which the second half of a split face keeps
    RoomModel.faceLayerFlag(3) = 1;
    load(read);
    EXPECT_EQ(faces(), " 1 0 4 0 0| 2 0 3 0 0| 77 1 3 0 0| 3 0 4 0 0|");
    EXPECT_EQ(RoomModel.faceVertexY(3, 2), 1.0F);
    EXPECT_EQ(RoomModel.faceVertexZ(3, 3), -.02F);
    EXPECT_EQ(RoomModel.roomMaxY, 1.0F); // a dropped face extends nothing
    load(read, platform::answer::no);
    EXPECT_EQ(faces(), " 1 0 4 0 0| 2 0 4 0 0| 3 0 4 0 0| 4 0 4 0 0|");
}

TEST_F(dxf, AttachesOpeningsByTheBoxAlone) {
    load(entity("3DFACE", "1", {"5 5 5", "6 5 5", "6 6 5", "5 6 5"}) +
         entity("3DFACE", "2", {"0 0 0", "4 0 0", "4 4 0", "0 4 0"}) +
         entity("3DFACE", "3", {"0 0 -4", "4 0 4", "4 4 4", "0 4 -4"}) +
         door("HOLES", {"0 0 .0011", "4.0011 0 0", "4 4 0"}) +
         door("HOLES", {"0 0 .001", "4.001 0 0", "4 4 0", "-.001 4 0"}) +
         door("6", {"1 0 3", "2 0 3", "2 1 3", "1 1 3"}) + door("6", {"9 0 3", "2 0 3", "2 1 3", "1 1 3"}));
    EXPECT_EQ(faces(), " 1 0 4 0 0| 2 0 4-1-1| 3 0 4-1-1|");
    EXPECT_EQ(RoomModel.holeFace(1), 0);
    EXPECT_EQ(RoomModel.holeFace(2), 2);
    EXPECT_EQ(doors(), " 6 0 4 1 3| 6 0 4 1 0|");
    for (const char* line : {"No FACE found for HOLE no.  1 !!!", "No FACE found for DOOR no.  2 !!!",
                             "Attched HOLE no. 2 to FACE no. 2", "Attched DOOR no. 1 to FACE no. 3"})
        EXPECT_TRUE(scripted::called(std::string("log|") + line)) << line;
}

TEST_F(dxf, ReadsLinesAndSources) {
    load(entity("LINE", "RECEIVERS", {"1 2 3", "4 5 6"}) + entity("LINE", "receivers", {"9 9 9", "9 9 9"}) +
         entity("LINE", "RAYS", {"1 2 3", "6 2 -2"}) + entity("ATTDEF", "NAMES", {"9 9 9"}) +
         entity("ATTDEF", "SOURCES", {"1 2 3", "4 5 6"}) + "40 8|1 label|2 Omni.spk|70 0|51 .5|" +
         "0 LINE|10 7|20 7|8 RECEIVERS|30 1|"); // coordinates in front of the layer are lost
    EXPECT_EQ(counts(), (std::vector<int>{0, 0, 0, 1, 2, 1}));
    EXPECT_EQ(RoomModel.sourceFile(1), "Omni.spk");
    for (const char* line : {"SOURCE  1  1  2  3  4  5  6  .5", "RECEIVER  1  1  2  3  4  5  6",
                             "RECEIVER  2  0  0  1  0  0  0", "RAY  1  1  2  3  .1  0 -.1"})
        EXPECT_TRUE(scripted::called(std::string("log|") + line)) << line;
}

TEST_F(dxf, TakesPairsLiterally) {
    const std::string receiver = entity("LINE", "RECEIVERS", {"1 2 3", "4 5 6"});
    // Without Y, 3 is the next code, with the line "11" as its text, and so on to the end.
    loadtext(pairs("0 SECTION|2 ENTITIES|0 LINE|8 RECEIVERS|10 1|30 3|11 4|21 5|31 6|"));
    EXPECT_TRUE(scripted::called("log|Invalid Y coord code  30"));
    EXPECT_TRUE(scripted::called("log|RECEIVER  1  1  0  0  0  0  0"));
    load("1 ENDSEC|" + receiver);
    EXPECT_EQ(counts()[4], 0);
    // Sections in front, comments, and an end at any place.
    const std::string whole =
        pairs("999 by hand|0 SECTION|0 SECTION|2 HEADER|0 LINE|8 RECEIVERS|0 ENDSEC|0 SECTION|"
              "2 ENTITIES|999 x|" +
              receiver + entity("3DFACE", "1", square));
    loadtext(whole);
    EXPECT_EQ(counts(), (std::vector<int>{1, 0, 0, 0, 1, 0}));
    loadtext(std::string_view(whole).substr(0, whole.rfind("13")), platform::answer::no);
    EXPECT_EQ(counts()[0], 1);
    EXPECT_EQ(RoomModel.faceVertexX(1, 4), 1.0F); // what the place held last
    loadtext("");
    EXPECT_EQ(counts(), std::vector<int>(6, 0));
}

TEST_F(dxf, NamesFileLineAndReason) {
    const std::string face = entity("3DFACE", "1", square);
    std::string doorways;
    for (int i = 0; i <= highestdoor; ++i) doorways += door("1", square);
    const struct {
        std::string entities;
        errorkind kind;
        const char* message;
    } cases[] = {
        {face + "POLYLINE|", errorkind::typemismatch, "line 33: expected a number, found \"POLYLIN\""},
        {"0 3DFACE|8 32768|", errorkind::overflow, "line 7: overflow, the layer \"32768\""},
        {"0 3DFACE|8 1|10 1E39|20 1|", errorkind::overflow, "line 9: "},
        {doorways, errorkind::subscript, "a room holds at most 1000 doors"},
    };
    for (const auto& one : cases) {
        load(face);
        const runtimeerror error = failureof([&] { load(one.entities); });
        EXPECT_EQ(error.kind, one.kind) << error.text;
        EXPECT_TRUE(error.text.starts_with("room.dxf, line ")) << error.text;
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
        EXPECT_EQ(counts(), std::vector<int>(6, 0));
    }
    load(face);
    std::filesystem::remove("orvanta.mat");
    EXPECT_EQ(kindof([&] { load(face); }), errorkind::filenotfound);
    EXPECT_EQ(counts()[0], 1); // the names are read before the room is emptied
}

// Byte by byte; ORV_REWRITE_GOLDEN in the environment writes the file anew.
TEST_F(dxf, WritesTheGoldenFile) {
    load(entity("3DFACE", "2003", {"0 0 0", "1 0 0", "1 1 -.5", "1 1 -.5"}) +
         entity("ATTDEF", "SOURCES", {"1 2 3", "4 5 6"}) + "2 a.spk|51 -2|" + door("7", square) +
         door("HOLES", {"0 0 0", "1 0 0"}) + entity("LINE", "RAYS", {"1 1 1", "6 1 1"}) +
         entity("LINE", "RECEIVERS", {"1E-8 2 3", "4 5 6"}));
    RoomModel.faceVertexCount(1) = 3;
    const std::string path = std::string(TEST_FILES) + "/golden/room.dxf";
    if (std::getenv("ORV_REWRITE_GOLDEN")) savedxf(path);
    savedxf("out.dxf");
    EXPECT_EQ(readtext("out.dxf"), readtext(path));
}

TEST_F(dxf, ComesBackFromItsOwnFile) {
    writetext("hall.ray", samples::geometrytext());
    loadgeometry("hall.ray");
    const std::vector<int> before = counts();
    std::string text;
    for (int i = 0; i < 2; ++i) { // corners beyond the fourth go with the first round
        savedxf("room.dxf");
        text = readtext("room.dxf");
        scripted::expectbox("DXFIN", platform::answer::no);
        loaddxf("room.dxf");
        EXPECT_EQ(counts(), before);
    }
    savedxf("room.dxf");
    EXPECT_TRUE(readtext("room.dxf") == text);
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
    EXPECT_TRUE(scripted::called(
        "open|Load an AutoCAD (TM) DXF File|Drawing Exch.Files (*.DXF)|*.DXF|*.DXF|" + directory.path));
    writetext("hall.dxf", pairs("0 SECTION|2 ENTITIES|" + entity("3DFACE", "1", square) + "0 ENDSEC|0 EOF|"));
    SessionState.gridReady = -1;
    SessionState.panX = .5F;
    SessionState.parameterSource = 1;
    scripted::expectopen(inside("hall.dxf"));
    scripted::expectbox("DXFIN", platform::answer::yes);
    DXFIN();
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

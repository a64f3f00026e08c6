// Drawings in and out: what entities and layers become, the stream of pairs, planes, openings, the commands.
#include "tests/failures.h"
#include "tests/testsupport.h"

#include "base/listinput.h"
#include "base/numbertext.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
#include "interchange/interchangecommands.h"
#include "room/geometryreader.h"
#include "samples/samplefiles.h"

using namespace orv;

namespace {

// "8 12|10 0|" as pairs, each a line with the code and a line with the value.
std::string pairs(const std::string& text) {
    std::string lines;
    for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
        end = text.find('|', at);
        const std::size_t blank = text.find(' ', at);
        lines += text.substr(at, blank - at) + "\r\n" + text.substr(blank + 1, end - blank - 1) + "\r\n";
    }
    return lines;
}

// The pairs of the coordinates "x y z x y z ..." behind an entity's name and layer: those of an entity with
// corners, and of an outline with vertices.
std::string entity(const std::string& name, const std::string& layer, const std::string& points) {
    std::string text = "0 " + name + "|8 " + layer + "|";
    listreader numbers = openlist(points, "");
    for (int i = 0; !atend(numbers); ++i)
        text += std::to_string(10 + i / 3 + i % 3 * 10) + " " + std::string(readtext(numbers)) + "|";
    return text;
}
std::string outline(const std::string& layer, const std::string& points) {
    std::string text = "0 POLYLINE|8 " + layer + "|66 1|";
    listreader numbers = openlist(points, "");
    for (int i = 0; !atend(numbers); ++i) {
        if (i % 3 == 0) text += "0 VERTEX|8 " + layer + "|";
        text += std::to_string(10 + i % 3 * 10) + " " + std::string(readtext(numbers)) + "|";
    }
    return text + "0 SEQEND|8 0|";
}

const std::string square = "0 0 0 1 0 0 1 1 0 0 1 0";
const std::string face = entity("3DFACE", "1", square);

struct dxf : sessiontest {
    dxf() {
        writetext("orvanta.mat", "0 Wood,\r\n1 Wood,\r\n2 wood,\r\n3 12Wood,\r\n4 Citt\xE0,\r\n");
        RoomModel.doorMaterial(0) = 0;
    }

    static void load(const std::string& entities, platform::answer check = platform::answer::yes) {
        loadtext(pairs("0 SECTION|2 ENTITIES|" + entities + "0 ENDSEC|0 EOF|"), check);
    }
    static void loadtext(std::string_view text, platform::answer check = platform::answer::yes) {
        writetext("room.dxf", text);
        scripted::expectbox("planarity check on 3DFACE entities ?", check);
        loaddxf("room.dxf");
    }

    // How many faces, holes, doors, sources, receivers and ray lines there are.
    static std::vector<int> counts() {
        const roommodel& r = RoomModel;
        return {r.faceCount, r.holeCount, r.doorCount, r.sourceCount, r.receiverCount, r.rayLineCount};
    }

    static void expectlog(std::initializer_list<const char*> lines) {
        for (const char* line : lines) EXPECT_TRUE(scripted::called(std::string("log|") + line)) << line;
    }
};

// Of each face material, flag, number of vertices, in-wall and opening flags.
std::string faces() {
    const roommodel& r = RoomModel;
    std::string text;
    for (int i = 1; i <= r.faceCount; ++i, text += '|')
        for (const int number : {r.faceMaterial(i), r.faceLayerFlag(i), r.faceVertexCount(i), r.faceInWall(i),
                                 r.faceHasOpening(i)})
            text += wholetext(number);
    return text;
}

// Of each door material, flag, number of vertices, face and the Y of its last vertex.
std::string doors() {
    const roommodel& r = RoomModel;
    std::string text;
    for (int i = 1; i <= r.doorCount; ++i) {
        for (const int number : {r.doorMaterial(i), r.doorLayerFlag(i), r.doorVertexCount(i), r.doorFace(i)})
            text += wholetext(number);
        text += numbertext(static_cast<double>(r.doorVertexY(i, 4))) + "|";
    }
    return text;
}

TEST_F(dxf, TakesMaterialsFromLayers) {
    std::string text;
    for (const char* layer : {"12", "12ABC", "ABC12", "12.6", "2.5", "2000", "2001", "2005", "ab", "-5",
                              "WOOD", " wood", "12wOOD", "12WOODS", "CITT\xC0"})
        text += entity("3DFACE", layer, square);
    load(text);
    EXPECT_EQ(faces(), " 12 0 4 0 0| 12 0 4 0 0| 0 0 4 0 0| 13 0 4 0 0| 2 0 4 0 0| 2000 0 4 0 0| 1 1 4 0 0|"
                       " 5 1 4 0 0| 0 0 4 0 0|-5 0 4 0 0| 1 0 4 0 0| 0 0 4 0 0| 3 0 4 0 0| 12 0 4 0 0|"
                       " 4 0 4 0 0|");
    EXPECT_EQ(SessionState.targetY, .5F);
    expectlog({"FACE n. 1  0.0  0.0  0.0  1.0  0.0  0.0  1.0  1.0  0.0  0.0  1.0  0.0"});
}

TEST_F(dxf, MakesDoorsOfFourVertices) {
    const std::string closed = "0 0 0 1 0 0 1 1 0 0 2 0 0 0 0", five = square + " 0 .5 0",
                      six = "0 0 0 1 0 0 1 1 0 0 3 0 0 .5 0 0 0 0";
    const struct {
        std::string read, expected;
    } cases[] = {
        {outline("7", closed) + outline("8", five) + outline("2009", six) + outline("9", "0 0 0 1 1 1"),
         " 7 0 4 0 2| 9 1 4 0 3|"},
        // A name replaces the door before it, without a hit by the material that stands there.
        {outline("7", square) + outline("wood", six) + outline("ab", five), " 1 0 4 0 3|"},
        {outline("7", six) + outline("glass", square), " 7 0 4 0 1|"},
        {outline("7", six) + outline("glass", five), ""},             // and takes it away
        {outline("-1", six) + outline("glass", five), "-1 0 4 0 3|"}, // nothing above 0 stands there
        {outline("glass", square) + outline("wood", five), ""},       // slot 0 is the door before the first
    };
    for (const auto& one : cases) {
        load(one.read);
        EXPECT_EQ(doors(), one.expected);
    }
    EXPECT_EQ(RoomModel.doorMaterial(0), 1);
}

TEST_F(dxf, ChecksPlanes) {
    const std::string read = entity("3DFACE", "1", "0 0 0 1 0 0 1 1 0 0 1 .01") +
                             entity("3DFACE", "2", "0 0 0 1 0 0 1 1 0 0 1 -.02") +
                             entity("3DFACE", "3", "0 0 0 1 0 0 1 1 0 1 1 0") +
                             entity("3DFACE", "4", "0 0 0 1 0 0 2 0 0 0 9 0");
    RoomModel.faceMaterial(3) = 77; // of a room before, which the second half of a split face keeps
    load(read);
    EXPECT_EQ(faces(), " 1 0 4 0 0| 2 0 3 0 0| 77 0 3 0 0| 3 0 4 0 0|");
    expectlog({"FACE n. 3  0.0  0.0  0.0  1.0  1.0  0.0  0.0  1.0  -0.02"});
    EXPECT_EQ(RoomModel.roomMaxY, 1.0F); // a dropped face extends nothing
    load(read, platform::answer::no);
    EXPECT_EQ(faces(), " 1 0 4 0 0| 2 0 4 0 0| 3 0 4 0 0| 4 0 4 0 0|");
}

TEST_F(dxf, AttachesOpeningsByTheBoxAlone) {
    load(entity("3DFACE", "1", "5 5 5 6 5 5 6 6 5 5 6 5") + entity("3DFACE", "2", "0 0 0 4 0 0 4 4 0 0 4 0") +
         entity("3DFACE", "3", "0 0 -4 4 0 4 4 4 4 0 4 -4") + outline("HOLES", "0 0 .0011 4.0011 0 0 4 4 0") +
         outline("HOLES", "0 0 .001 4.001 0 0 4 4 0 -.001 4 0") + outline("6", "1 0 3 2 0 3 2 1 3 1 1 3") +
         outline("6", "9 0 3 2 0 3 2 1 3 1 1 3"));
    EXPECT_EQ(faces(), " 1 0 4 0 0| 2 0 4-1-1| 3 0 4-1-1|");
    EXPECT_EQ(RoomModel.holeFace(1), 0);
    EXPECT_EQ(RoomModel.holeFace(2), 2);
    EXPECT_EQ(doors(), " 6 0 4 3 1| 6 0 4 0 1|");
    expectlog({"No FACE found for HOLE no.  1 !!!", "No FACE found for DOOR no.  2 !!!",
               "Attched HOLE no. 2 to FACE no. 2", "Attched DOOR no. 1 to FACE no. 3"});
}

TEST_F(dxf, ReadsLinesAndSources) {
    load(entity("LINE", "RECEIVERS", "1 2 3 4 5 6") + entity("LINE", "receivers", "9 9 9 9 9 9") +
         entity("LINE", "RAYS", "1 2 3 6 2 -2") + entity("ATTDEF", "NAMES", "9 9 9") +
         entity("ATTDEF", "SOURCES", "1 2 3 4 5 6") + "40 8|1 label|2 Omni.spk|70 0|51 .5|" +
         "0 LINE|10 7|20 7|8 RECEIVERS|30 1|"); // coordinates in front of the layer are lost
    EXPECT_EQ(counts(), (std::vector<int>{0, 0, 0, 1, 2, 1}));
    EXPECT_EQ(RoomModel.sourceFile(1), "Omni.spk");
    expectlog({"SOURCE  1  1  2  3  4  5  6  .5", "RECEIVER  1  1  2  3  4  5  6",
               "RECEIVER  2  0  0  1  0  0  0", "RAY  1  1  2  3  .1  0 -.1"});
}

TEST_F(dxf, TakesPairsLiterally) {
    // Without Y, 3 is the next code, with the line "11" as its text, and so on to the end.
    loadtext(pairs("0 SECTION|2 ENTITIES|0 LINE|8 RECEIVERS|10 1|30 3|11 4|21 5|31 6|"));
    expectlog({"Invalid Y coord code  30", "RECEIVER  1  1  0  0  0  0  0"});
    load("1 ENDSEC|" + face);
    EXPECT_EQ(RoomModel.faceCount, 0);
    // Sections in front, comments, and an end at any place.
    const std::string whole = pairs("999 by hand|0 SECTION|0 SECTION|2 HEADER|0 LINE|8 RAYS|0 ENDSEC|"
                                    "0 SECTION|2 ENTITIES|999 x|" +
                                    face + face);
    loadtext(whole.substr(0, whole.rfind("13")), platform::answer::no);
    EXPECT_EQ(counts(), (std::vector<int>{2, 0, 0, 0, 0, 0}));
    EXPECT_EQ(RoomModel.faceVertexX(2, 4), 1.0F); // what the place held last
    loadtext("");
    EXPECT_EQ(RoomModel.faceCount, 0);
}

TEST_F(dxf, NamesFileLineAndReason) {
    std::string holes = "0 0 0", doorways;
    for (int i = 1; i < holevertices; ++i) holes += " 0 1 0";
    for (int i = 0; i <= highestdoor; ++i) doorways += outline("1", square);
    load(outline("HOLES", holes));
    EXPECT_EQ(RoomModel.holeVertexCount(1), holevertices);
    const struct {
        std::string entities;
        errorkind kind;
        const char* message;
    } cases[] = {
        {face + "POLYLINE |", errorkind::typemismatch, ", line 33: expected a number, found \"POLYLINE\""},
        {"0 3DFACE|8 32768|", errorkind::overflow, ", line 7: overflow, the layer \"32768\""},
        {"0 3DFACE|8 1|10 1E39|20 1|", errorkind::overflow, ", line 9: "},
        {outline("HOLES", holes + " 0 0 0"), errorkind::subscript, ", line 655: Subscript out of range"},
        {doorways, errorkind::subscript, "a room holds at most 1000 doors"},
    };
    for (const auto& one : cases) {
        load(face);
        const runtimeerror error = failureof([&] { load(one.entities); });
        EXPECT_EQ(error.kind, one.kind) << error.text;
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
        EXPECT_EQ(counts(), std::vector<int>(6, 0));
    }
    load(face);
    std::filesystem::remove("orvanta.mat"); // which is read before the room is emptied
    EXPECT_EQ(kindof([&] { load(face); }), errorkind::filenotfound);
    EXPECT_EQ(RoomModel.faceCount, 1);
}

// Byte by byte; ORV_REWRITE_GOLDEN in the environment writes the file anew.
TEST_F(dxf, WritesTheGoldenFile) {
    load(entity("3DFACE", "2003", "0 0 0 1 0 0 1 1 -.5 1 1 -.5") +
         entity("ATTDEF", "SOURCES", "1 2 3 4 5 6") + "2 a.spk|51 -2|" + outline("7", square) +
         outline("HOLES", "0 0 0 1 0 0") + entity("LINE", "RAYS", "1 1 1 6 1 1") +
         entity("LINE", "RECEIVERS", "1E-8 2 3 4 5 6"));
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
        savedxf("hall.dxf");
        text = readtext("hall.dxf");
        loadtext(text, platform::answer::no);
        EXPECT_EQ(counts(), before);
    }
    savedxf("hall.dxf");
    EXPECT_TRUE(readtext("hall.dxf") == text);
}

TEST_F(dxf, ListsAHundredLayers) {
    std::string text = face;
    for (int layer = 1; layer <= 100; ++layer) text += entity("3DFACE", std::to_string(layer), square);
    load(text);
    savedxf("out.dxf");
    const std::string former = readtext("out.dxf");
    load(text + outline("2100", square));
    EXPECT_EQ(kindof([] { savedxf("out.dxf"); }), errorkind::subscript);
    EXPECT_EQ(readtext("out.dxf"), former);
}

TEST_F(dxf, RunsItsCommands) {
    writetext("hall.dxf", pairs("0 SECTION|2 ENTITIES|" + face + "0 ENDSEC|0 EOF|"));
    SessionState.gridReady = -1;
    SessionState.panX = .5F;
    SessionState.parameterSource = 1;
    scripted::expectopen(inside("hall.dxf"));
    scripted::expectbox("DXFIN", platform::answer::yes);
    DXFIN();
    EXPECT_TRUE(scripted::called(
        "open|Load an AutoCAD (TM) DXF File|Drawing Exch.Files (*.DXF)|*.DXF|*.DXF|" + directory.path));
    EXPECT_EQ(SessionState.gridReady, 0);
    EXPECT_EQ(SessionState.panX, 0.0F);
    for (const char* command : {"DXFOUT", "Fsave", "Redraw", "MapLoad", "MapDoDither2D", "ExportWAV"})
        EXPECT_TRUE(orv::isenabled(command)) << command;
    EXPECT_FALSE(picture.lines.empty());
    EXPECT_TRUE(scripted::title().starts_with(inside("hall.dxf") + " - "));

    scripted::expectsave(inside("other"));
    DXFOUT();
    EXPECT_TRUE(scripted::called("save|Save a .DXF AutoCAD File|Drawing Exch.Files (*.dxf)|*.dxf|" +
                                 inside("hall.dxf") + "|" + directory.path));
    EXPECT_TRUE(canopen("other.DXF"));
    EXPECT_EQ(SessionState.dxfFileName, inside("other.DXF"));
    EXPECT_EQ(SessionState.geometryFileName, inside("hall.dxf"));
}

} // namespace

// Drawings in and out: what entities and layers become, the stream of pairs, planes, openings.
#include "tests/interchange/roomtext.h"

#include "base/listinput.h"
#include "base/numbertext.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
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
    std::vector<std::string> told;

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

    // Loads a room and writes down what the load told of it, and what it does not tell.
    void tell(const std::string& what, const std::string& entities,
              platform::answer check = platform::answer::yes) {
        scripted::clearcalls();
        load(entities, check);
        told.push_back("# " + what);
        for (const std::string& line : scripted::callswith("log|")) told.push_back(line.substr(4));
        const roommodel& r = RoomModel;
        const auto add = [&](std::string text, std::initializer_list<int> numbers) {
            for (const int number : numbers) text += wholetext(number);
            told.push_back(text);
        };
        for (int i = 1; i <= r.faceCount; ++i)
            add("face: material, flag, vertices, in wall, opening:",
                {r.faceMaterial(i), r.faceLayerFlag(i), r.faceVertexCount(i), r.faceInWall(i),
                 r.faceHasOpening(i)});
        for (int i = 1; i <= r.doorCount; ++i)
            add("door: material, flag, vertices, face:",
                {r.doorMaterial(i), r.doorLayerFlag(i), r.doorVertexCount(i), r.doorFace(i)});
        for (int i = 1; i <= r.holeCount; ++i) add("hole: face:", {r.holeFace(i)});
        for (int i = 1; i <= r.sourceCount; ++i) told.push_back("source: " + r.sourceFile(i));
        told.push_back("reaches to y =" + numbertext(static_cast<double>(r.roomMaxY)));
    }
};

TEST_F(dxf, ReadsEachEntity) {
    std::string text;
    for (const char* layer : {"12", "12ABC", "ABC12", "12.6", "2.5", "2000", "2001", "2005", "ab", "-5",
                              "WOOD", " wood", "12wOOD", "12WOODS", "CITT\xC0", "Citt\xC3\xA0"})
        text += entity("3DFACE", layer, square);
    tell("Materials from layers", text);
    EXPECT_EQ(SessionState.targetY, .5F);

    const std::string closed = "0 0 0 1 0 0 1 1 0 0 2 0 0 0 0", five = square + " 0 .5 0",
                      six = "0 0 0 1 0 0 1 1 0 0 3 0 0 .5 0 0 0 0";
    tell("Doors of four vertices",
         outline("7", closed) + outline("8", five) + outline("2009", six) + outline("9", "0 0 0 1 1 1"));
    tell("A name replaces the door before it, without a hit by the material that stands there",
         outline("7", square) + outline("wood", six) + outline("ab", five));
    tell("A name of no material leaves the material that stands there",
         outline("7", six) + outline("glass", square));
    tell("and takes the door away where its vertices are not four",
         outline("7", six) + outline("glass", five));
    tell("Nothing above 0 stands there", outline("-1", six) + outline("glass", five));
    tell("Slot 0 is the door before the first", outline("glass", square) + outline("wood", five));
    EXPECT_EQ(RoomModel.doorMaterial(0), 1);

    const std::string planes = entity("3DFACE", "1", "0 0 0 1 0 0 1 1 0 0 1 .01") +
                               entity("3DFACE", "2", "0 0 0 1 0 0 1 1 0 0 1 -.02") +
                               entity("3DFACE", "3", "0 0 0 1 0 0 1 1 0 1 1 0") +
                               entity("3DFACE", "4", "0 0 0 1 0 0 2 0 0 0 9 0");
    RoomModel.faceMaterial(3) = 77;
    tell("The second half of a split face keeps what stood there; a dropped one extends nothing", planes);
    tell("Planes as they are", planes, platform::answer::no);

    tell("Openings go to faces by the box alone, within a millimetre",
         entity("3DFACE", "1", "5 5 5 6 5 5 6 6 5 5 6 5") + entity("3DFACE", "2", "0 0 0 4 0 0 4 4 0 0 4 0") +
             entity("3DFACE", "3", "0 0 -4 4 0 4 4 4 4 0 4 -4") +
             outline("HOLES", "0 0 .0011 4.0011 0 0 4 4 0") +
             outline("HOLES", "0 0 .001 4.001 0 0 4 4 0 -.001 4 0") +
             outline("6", "1 0 3 2 0 3 2 1 3 1 1 3") + outline("6", "9 0 3 2 0 3 2 1 3 1 1 3"));

    tell("Coordinates in front of the layer are lost",
         entity("LINE", "RECEIVERS", "1 2 3 4 5 6") + entity("LINE", "receivers", "9 9 9 9 9 9") +
             entity("LINE", "RAYS", "1.4 2 1.2 6.4 2 .9") + entity("ATTDEF", "NAMES", "9 9 9") +
             entity("ATTDEF", "SOURCES", "1 2 3 4 5 6") + "40 8|1 label|2 Omni.spk|70 0|51 .5|" +
             "0 LINE|10 7|20 7|8 RECEIVERS|30 1|");
    expectgolden("dxf.txt", told);
}

TEST_F(dxf, TakesPairsLiterally) {
    // Without Y, 3 is the next code, with the line "11" as its text, and so on to the end.
    loadtext(pairs("0 SECTION|2 ENTITIES|0 LINE|8 RECEIVERS|10 1|30 3|11 4|21 5|31 6|"));
    for (const char* line : {"log|Invalid Y coord code  30", "log|RECEIVER  1  1  0  0  0  0  0"})
        EXPECT_TRUE(scripted::called(line)) << line;
    load("1 ENDSEC|" + face);
    EXPECT_EQ(RoomModel.faceCount, 0);
    // Sections in front, comments, and an end at any place.
    const std::string whole = pairs("999 by hand|0 SECTION|0 SECTION|2 HEADER|0 LINE|8 RAYS|0 ENDSEC|"
                                    "0 SECTION|2 ENTITIES|999 x|" +
                                    face + face);
    loadtext(whole.substr(0, whole.rfind("13")), platform::answer::no);
    EXPECT_EQ(counts(), (std::vector<int>{2, 0, 0, 0, 0, 0}));
    EXPECT_EQ(RoomModel.faceVertexX(2, 4), 1.0F); // what the place held last
    loadtext(whole + pairs("0 3DFACE|5 A1|"), platform::answer::no);
    EXPECT_EQ(RoomModel.faceCount, 2); // no face without its layer
    EXPECT_TRUE(scripted::called("log|The file ends without ENDSEC. It may be cut."));
    loadtext("");
    EXPECT_EQ(RoomModel.faceCount, 0);
}

TEST_F(dxf, NamesFileLineAndReason) {
    std::string holes = "0 0 0", doorways;
    for (int i = 1; i < holevertices; ++i) holes += " 0 1 0";
    for (int i = 0; i <= highestdoor; ++i) doorways += outline("1", square);
    load(outline("HOLES", holes));
    EXPECT_EQ(RoomModel.holeVertexCount(1), holevertices);
    expectrefusals("refuseddxf.txt",
                   {face + "POLYLINE |", "0 3DFACE|8 32768|", "0 3DFACE|8 1|10 1E39|20 1|",
                    outline("HOLES", holes + " 0 0 0"), doorways, std::string("\1\0z", 3)},
                   [](const std::string& entities) { load(entities); });
    load(face);
    std::filesystem::remove("orvanta.mat"); // which is read before the room is emptied
    EXPECT_EQ(kindof([&] { load(face); }), errorkind::filenotfound);
    EXPECT_EQ(RoomModel.faceCount, 1);
}

TEST_F(dxf, WritesTheGoldenFile) {
    load(entity("3DFACE", "2003", "0 0 0 1 0 0 1 1 -.5 1 1 -.5") +
         entity("ATTDEF", "SOURCES", "1 2 3 4 5 6") + "2 a.spk|51 -2|" + outline("7", square) +
         outline("HOLES", "0 0 0 1 0 0") + entity("LINE", "RAYS", "1 1 1 6 1 1") +
         entity("LINE", "RECEIVERS", "1E-8 2 3 4 5 6"));
    RoomModel.faceVertexCount(1) = 3;
    savedxf("out.dxf");
    expectgolden("room.dxf", readtext("out.dxf"));
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

} // namespace

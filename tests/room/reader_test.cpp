// The geometry reader: records, quirks, progress and failures.
#include "tests/room/roomfixture.h"

#include "base/numbertext.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"

using namespace orv;

namespace {

struct reader : roomtest {};

constexpr std::string_view sample = "EntityList\r\n"
                                    " Wall\r\n"
                                    "  Face 1  7  3     0  0  0  4  0  0  4  3  0\r\n"
                                    "  Hole 0  2  4   1  1  0  2  1  0  2  2  0  1  2  0\r\n"
                                    "  Door 0  3  3   1  0  0  2  0  0  2  1  0\r\n"
                                    " End\r\n"
                                    " Face 0 8 3, -1,-2,.5 4 0 1E+1 4 3 0\r\n"
                                    " Source   1  1  1  2  2  1  .25 Omni.spk\r\n"
                                    " Receiver   3  2  1.5  0  0  -1\r\n"
                                    " Ray 1 2 3 .1 .2 .3\r\n"
                                    "End\r\n";

std::string barelinefeeds(std::string_view text) {
    std::string bare(text);
    std::erase(bare, '\r');
    return bare;
}

// How many faces, holes, doors, sources, receivers and ray lines there are.
std::vector<int> counts() {
    const roommodel& r = RoomModel;
    return {r.faceCount, r.holeCount, r.doorCount, r.sourceCount, r.receiverCount, r.rayLineCount};
}

TEST_F(reader, FillsTheRoom) {
    const roommodel& r = RoomModel;
    for (const std::string& text : {std::string(sample), barelinefeeds(sample)}) {
        resetroom();
        load(text);
        EXPECT_EQ(counts(), (std::vector<int>{2, 1, 1, 1, 1, 1}));
        const std::vector<int> whole = {r.faceMaterial(1), r.faceVertexCount(1), r.faceInWall(1),
                                        r.faceInWall(2),   r.faceHasOpening(1),  r.faceHasOpening(2),
                                        r.holeMaterial(1), r.holeVertexCount(1), r.doorMaterial(1)};
        EXPECT_EQ(whole, (std::vector<int>{7, 3, -1, 0, -1, 0, 2, 4, 3}));
        const std::vector<float> coordinates = {r.faceVertexY(2, 1), r.faceVertexZ(2, 2), r.holeVertexY(1, 4),
                                                r.doorVertexX(1, 3), r.sourceAimExtra(1), r.receiverAimZ(1),
                                                r.rayLineX1(1),      r.rayLineZ2(1),      r.roomMinX,
                                                r.roomMaxZ,          r.roomCentreX};
        EXPECT_EQ(coordinates, (std::vector<float>{-2, 10, 2, 2, .25F, -1, 1, .3F, -1, 10, 1.5F}));
        EXPECT_EQ(r.sourceFile(1), "Omni.spk");
    }
}

TEST_F(reader, ShowsWholeBlocksBehindEachLineAndYields) {
    std::string text;
    std::vector<std::string> expected;
    // 41 bytes a line: 5 blocks of 128 to a file of 16 lines (656 bytes).
    for (int i = 1; i <= 16; ++i) {
        text += "; this line is just as long as the rest\r\n";
        expected.push_back("status 2|" + wholetext(41 * i / 128 * 20) + "%");
    }
    expected.emplace_back("status 2|");
    load(text);
    EXPECT_EQ(scripted::callswith("status 2|"), expected);
    EXPECT_EQ(scripted::countcalls("yield"), 17U);
}

TEST_F(reader, RecognisesThreeLettersInAnyCase) {
    load(padded("FACET 0 1 3 0 0 0 1 0 0 0 1 0\n"
                "   fac 0 2 3 0 0 0 1 0 0 0 1 0\n"
                "sound 1 1 1 2 2 2 0 T.spk\n"
                "RECIPE 1 2 3 4 5 6\n"
                "\tFace 0 1 is not recognised behind a tab\n"
                "F 0 1, nor are one or two letters\n"
                "XFace 0 1\n"
                "wallet\nENDLESS\n"));
    EXPECT_EQ(counts(), (std::vector<int>{2, 0, 0, 1, 1, 0}));
}

TEST_F(reader, TakesASourcesNameAsItStands) {
    load(padded("Source 1 1 1 0 0 0 0 My Speaker, left.spk \r\n"
                "Source 2 1 1 0 0 0 0 \r\n"
                "Source 3,1,1,0,0,0,0,Z\xFC.spk"));
    const char* names[] = {"My Speaker, left.spk ", "", "Z\xFC.spk"};
    ASSERT_EQ(RoomModel.sourceCount, 3); // behind an empty name the next line is still a source
    for (int i = 1; i <= 3; ++i) EXPECT_EQ(RoomModel.sourceFile(i), names[i - 1]);
}

TEST_F(reader, AttachesOpeningsToTheLastFaceEvenBehindItsWall) {
    RoomModel.faceHasOpening(2) = -1; // of a load before, which nobody clears
    load(padded("Hole 0 1 3 0 0 0 1 0 0 0 1 0\n"
                "Wall\nFace 0 1 3 0 0 0 1 0 0 0 1 0\nEnd\n"
                "Door 0 1 3 0 0 0 99 0 0 0 1 0\n"
                "Face 0 1 3 0 0 0 1 0 0 0 1 0\n"));
    EXPECT_EQ(RoomModel.holeFace(1), 0);
    EXPECT_EQ(RoomModel.doorFace(1), 1);
    EXPECT_EQ(RoomModel.faceHasOpening(1), -1);
    EXPECT_EQ(RoomModel.faceHasOpening(2), -1);
    EXPECT_EQ(RoomModel.roomMaxX, 1.0F); // openings do not extend the box
}

// A number too many lets the field position fall behind, one too few lets it run ahead; the next End sees it.
TEST_F(reader, StopsWithoutAWordWhereRecordsDoNotEndWithTheirLines) {
    for (const char* text : {"Wall\nFace 0 1 3 0 0 0 1 0 0 0 1 0 99\nEnd\n", "Face 0 1 1 0 0 0,\nEnd\n",
                             "Receiver 1 2 3 4 5\n6\nnot the end\nEnd\nmore\n"})
        EXPECT_THROW(load(padded(text)), scripted::halted) << text;
    EXPECT_EQ(scripted::countcalls("halt 0"), 3U);
    EXPECT_EQ(scripted::countcalls("box"), 0U);
    load(padded("Face 0 1 1 0 0 0   \r\n  end of it\r\n"));
}

TEST_F(reader, DividesByZeroForAFileOfUpTo64Bytes) {
    std::string text = "Face 0 1 3 0 0 0 1 0 0 0 1 0\r\n";
    text.resize(64, ' ');
    EXPECT_EQ(kindof([&] { load(text); }), errorkind::divisionbyzero);
    load(text + " ");
    EXPECT_EQ(RoomModel.faceCount, 1);
}

TEST_F(reader, ChangesNothingWithoutAFile) {
    load(sample);
    scripted::clearcalls();
    loadgeometry("*.ray"); // a pattern is no name
    EXPECT_EQ(kindof([] { loadgeometry("absent.ray"); }), errorkind::filenotfound);
    EXPECT_TRUE(scripted::calls().empty());
    EXPECT_EQ(RoomModel.faceCount, 2);
}

TEST_F(reader, NamesFileLineAndReason) {
    const struct {
        const char* text;
        errorkind kind;
        const char* message;
    } cases[] = {
        {"Face 0 1 3 0 0 0 1 0 0", errorkind::pastend, "line 2: the file ends where a number was expected"},
        {"Face 0 1 2 0 0 0\nEnd\n", errorkind::typemismatch, "line 3: expected a number, found \"End\""},
        {"Face 40000 1 3\n", errorkind::overflow, "line 2: the number \"40000\" is too large"},
        {"Face 0 1 121\n", errorkind::subscript, "at most 120 vertices, not 121"},
        {"Face 0 1 1 0 0 0\nHole 0 1 65\n", errorkind::subscript, "at most 64 vertices, not 65"},
        {"Face 0 1 1 0 0 0\nDoor 0 1 6\n", errorkind::subscript, "at most 5 vertices, not 6"},
    };
    for (const auto& one : cases) {
        const runtimeerror error = failureof([&] { load(padded(one.text)); });
        EXPECT_EQ(error.kind, one.kind) << one.text;
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
        EXPECT_EQ(counts(), std::vector<int>(6, 0));
    }
}

TEST_F(reader, HoldsNoMoreThanItsTables) {
    scripted::record(false);
    std::string text = "Face 0 1 120";
    for (int v = 1; v <= 120; ++v) text += " 1 0 0";
    load(text);
    EXPECT_EQ(RoomModel.faceVertexX(1, 120), 1.0F);

    const std::string face = "Face 0 1 1 0 0 0\n";
    const struct {
        std::string head, line;
        int highest;
    } tables[] = {
        {"", face, highestface},
        {face, "Hole 0 1 1 0 0 0\n", highesthole},
        {face, "Door 0 1 1 0 0 0\n", highestdoor},
        {"", "Source 1 1 1 0 0 0 0 s\n", highestsource},
        {"", "Receiver 1 1 1 0 0 0\n", highestreceiver},
        {"", "Ray 1 1 1 0 0 0\n", highestrayline},
    };
    for (const auto& table : tables) {
        text = table.head;
        for (int i = 0; i < table.highest; ++i) text += table.line;
        load(text);
        const runtimeerror error = failureof([&] { load(text + table.line); });
        EXPECT_EQ(error.kind, errorkind::subscript);
        const int line = table.highest + 1 + (table.head.empty() ? 0 : 1);
        EXPECT_NE(error.text.find("line " + std::to_string(line) + ":"), std::string::npos) << error.text;
        EXPECT_NE(error.text.find(std::to_string(table.highest)), std::string::npos) << error.text;
    }
    // The face of an opening is told in 16 bits.
    text.clear();
    for (int i = 0; i < 32768; ++i) text += face;
    EXPECT_EQ(kindof([&] { load(text + "Door 0 1 1 0 0 0\n"); }), errorkind::overflow);
}

// Whatever is left of a file, reading it ends in a room, an error with a line, or the silent stop.
TEST_F(reader, SurvivesEveryCutOfAFile) {
    scripted::record(false);
    const std::string whole = samples::geometrytext().substr(0, 1500) + std::string(sample);
    for (const std::string& text : {barelinefeeds(sample), whole})
        for (std::size_t length = 0; length < text.size(); ++length) {
            try {
                load(std::string_view(text).substr(0, length));
            } catch (const runtimeerror& error) {
                ASSERT_NE(error.text.find("room.ray, line "), std::string::npos) << error.text;
                ASSERT_EQ(RoomModel.faceCount, 0);
            } catch (const scripted::halted&) {
            }
        }
}

} // namespace

// The geometry reader: records, quirks, progress and failures.
#include "tests/room/roomfixture.h"

#include "base/numbertext.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"
#include "tests/jsonvalue.h"

#include <cmath>

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

std::string barelinefeeds(std::string text) {
    std::erase(text, '\r');
    return text;
}

TEST_F(reader, FillsTheRoom) {
    for (const std::string& text : {std::string(sample), barelinefeeds(std::string(sample))}) {
        resetroom();
        load(text);
        const roommodel& r = RoomModel;
        EXPECT_EQ(r.faceCount, 2);
        EXPECT_EQ(r.holeCount, 1);
        EXPECT_EQ(r.doorCount, 1);
        EXPECT_EQ(r.sourceCount, 1);
        EXPECT_EQ(r.receiverCount, 1);
        EXPECT_EQ(r.rayLineCount, 1);
        EXPECT_EQ(r.faceLayerFlag(1), 1);
        EXPECT_EQ(r.faceMaterial(1), 7);
        EXPECT_EQ(r.faceVertexCount(1), 3);
        EXPECT_EQ(r.faceInWall(1), -1);
        EXPECT_EQ(r.faceHasOpening(1), -1);
        EXPECT_EQ(r.faceInWall(2), 0);
        EXPECT_EQ(r.faceVertexX(2, 1), -1.0F);
        EXPECT_EQ(r.faceVertexZ(2, 1), .5F);
        EXPECT_EQ(r.faceVertexZ(2, 2), 10.0F);
        EXPECT_EQ(r.holeFace(1), 1);
        EXPECT_EQ(r.holeMaterial(1), 2);
        EXPECT_EQ(r.holeVertexCount(1), 4);
        EXPECT_EQ(r.holeVertexY(1, 4), 2.0F);
        EXPECT_EQ(r.doorFace(1), 1);
        EXPECT_EQ(r.doorVertexX(1, 3), 2.0F);
        EXPECT_EQ(r.sourceAimX(1), 2.0F);
        EXPECT_EQ(r.sourceAimExtra(1), .25F);
        EXPECT_EQ(r.sourceFile(1), "Omni.spk");
        EXPECT_EQ(r.receiverZ(1), 1.5F);
        EXPECT_EQ(r.receiverAimZ(1), -1.0F);
        EXPECT_EQ(r.rayLineX1(1), 1.0F);
        EXPECT_EQ(r.rayLineZ2(1), .3F);
        EXPECT_EQ(r.roomMinX, -1.0F);
        EXPECT_EQ(r.roomMaxZ, 10.0F);
        EXPECT_EQ(r.roomCentreX, 1.5F);
    }
}

TEST_F(reader, HidesTheViewsAndPutsTheWindowBack) {
    SessionState.gridReady = SessionState.contourReady = -1;
    SessionState.targetX = 99;
    const std::int32_t before = platform::background(0x123456);
    scripted::clearcalls();
    load(sample);
    for (const char* control : {"Picture1", "Frame1", "Frame2", "SSFrame1", "Frame2DView"})
        EXPECT_TRUE(scripted::called(std::string("visible ").append(control).append(" 0"))) << control;
    EXPECT_TRUE(scripted::called("status 1|Loading room.ray ..."));
    EXPECT_EQ(scripted::callswith("background"),
              (std::vector<std::string>{"background 12632256", "background 1193046"}));
    EXPECT_EQ(scripted::callswith("pointer"), (std::vector<std::string>{"pointer wait", "pointer normal"}));
    for (const char* name : {"Redraw", "CamRedr2D", "render", "BLNadd", "MapLoad"})
        EXPECT_TRUE(isenabled(name)) << name;
    EXPECT_EQ(SessionState.gridReady, 0);
    EXPECT_EQ(SessionState.contourReady, 0);
    EXPECT_EQ(SessionState.targetX, RoomModel.roomCentreX);
    EXPECT_EQ(SessionState.targetZ, RoomModel.roomCentreZ);
    EXPECT_EQ(scripted::statustext(1) + scripted::statustext(2), "");
    EXPECT_EQ(scripted::calls().back(), "yield");
    platform::background(before);
}

TEST_F(reader, ShowsWholeBlocksBehindEachLineAndYields) {
    std::vector<std::string> shown;
    std::string text;
    // 41 bytes a line: 5 blocks of 128 to a file of 16 lines (656 bytes).
    for (int i = 0; i < 16; ++i) text += "; this line is just as long as the rest\r\n";
    load(text);
    for (const std::string& line : scripted::callswith("status 2|")) shown.push_back(line.substr(9));
    std::vector<std::string> expected;
    for (int i = 1; i <= 16; ++i) expected.push_back(wholetext(41 * i / 128 * 20) + "%");
    expected.emplace_back();
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(scripted::countcalls("yield"), 17U);
}

TEST_F(reader, RecognisesThreeLettersInAnyCase) {
    load(padded("FACET 0 1 3 0 0 0 1 0 0 0 1 0\n"
                "   face 0 2 3 0 0 0 1 0 0 0 1 0\n"
                "Fac 0 3 3 0 0 0 1 0 0 0 1 0\n"
                "Speaker 1 1 1 2 2 2 0 S.spk\n"
                "sound 1 1 1 2 2 2 0 T.spk\n"
                "RECIPE 1 2 3 4 5 6\n"
                "\tFace 0 1 is not recognised behind a tab\n"
                "F 0 1, nor are one or two letters\n"
                "XFace 0 1\n"
                "wallet\nENDLESS\n"));
    EXPECT_EQ(RoomModel.faceCount, 3);
    EXPECT_EQ(RoomModel.faceMaterial(3), 3);
    EXPECT_EQ(RoomModel.sourceCount, 2);
    EXPECT_EQ(RoomModel.sourceFile(2), "T.spk");
    EXPECT_EQ(RoomModel.receiverCount, 1);
}

TEST_F(reader, TakesASourcesNameAsItStands) {
    load(padded("Source 1 1 1 0 0 0 0 My Speaker, left.spk \r\n"
                "Source 2 1 1 0 0 0 0 \r\n"
                "Source 3 1 1 0 0 0 0\r\n"
                "Source 4 1 1 0 0 0 0  \"q\"\n"
                "Source 5,1,1,0,0,0,0,k\xFC"
                "che.spk"));
    EXPECT_EQ(RoomModel.sourceCount, 5);
    EXPECT_EQ(RoomModel.sourceFile(1), "My Speaker, left.spk ");
    EXPECT_EQ(RoomModel.sourceFile(2), ""); // and the next line is still a source
    EXPECT_EQ(RoomModel.sourceFile(3), "");
    EXPECT_EQ(RoomModel.sourceFile(4), " \"q\"");
    EXPECT_EQ(RoomModel.sourceFile(5), "k\xFC"
                                       "che.spk");
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
    EXPECT_EQ(RoomModel.faceInWall(1), -1);
    EXPECT_EQ(RoomModel.faceInWall(2), 0);
    RoomModel.faceHasOpening(2) = 0;
}

// A number too many lets the field position fall behind, one too few lets it run ahead; the next End sees it.
TEST_F(reader, StopsWithoutAWordWhereRecordsDoNotEndWithTheirLines) {
    EXPECT_EQ(haltofload(padded("Wall\nFace 0 1 3 0 0 0 1 0 0 0 1 0 99\nEnd\n")), 0);
    EXPECT_EQ(haltofload(padded("Face 0 1 1 0 0 0,\nEnd\n")), 0);
    EXPECT_EQ(haltofload(padded("Receiver 1 2 3 4 5\n6\nnot the end\nEnd\nmore\n")), 0);
    EXPECT_TRUE(scripted::called("halt 0"));
    EXPECT_EQ(scripted::countcalls("box"), 0U);
    EXPECT_EQ(haltofload(padded("Face 0 1 1 0 0 0   \r\n  end of it\r\n")), std::nullopt);
}

TEST_F(reader, LeavesWhatStandsBehindTheNewCounts) {
    load(padded("Face 0 1 3 0 0 0 1 0 0 0 1 0\nFace 0 42 3 0 0 0 1 0 0 0 1 7\nReceiver 1 2 3 4 5 6\n"));
    load(padded("Face 0 2 3 0 0 0 1 0 0 0 1 0\n"));
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_EQ(RoomModel.receiverCount, 0);
    EXPECT_EQ(RoomModel.faceMaterial(2), 42);
    EXPECT_EQ(RoomModel.faceVertexZ(2, 3), 7.0F);
    EXPECT_EQ(RoomModel.receiverZ(1), 3.0F);
}

TEST_F(reader, MakesAnEmptyRoomOfAnEmptyFile) {
    load(sample);
    load("");
    EXPECT_EQ(RoomModel.faceCount, 0);
    EXPECT_EQ(RoomModel.roomMaxX, -1E9F);
    EXPECT_EQ(RoomModel.roomMinZ, 1E9F);
    EXPECT_EQ(RoomModel.roomCentreY, 0.0F);
}

TEST_F(reader, DividesByZeroForAFileOfUpTo64Bytes) {
    const std::string line = "Face 0 1 3 0 0 0 1 0 0 0 1 0\r\n";
    const runtimeerror error = failedload(line);
    EXPECT_EQ(error.kind, errorkind::divisionbyzero);
    EXPECT_NE(error.text.find("room.ray, line 1: "), std::string::npos) << error.text;
    EXPECT_EQ(failedload(line + std::string(64 - line.size(), ' ')).kind, errorkind::divisionbyzero);
    load(line + std::string(65 - line.size(), ' '));
    EXPECT_EQ(RoomModel.faceCount, 1);
}

TEST_F(reader, DoesNothingForAPattern) {
    load(sample);
    scripted::clearcalls();
    loadgeometry("*.ray");
    loadgeometry("*.*");
    EXPECT_TRUE(scripted::calls().empty());
    EXPECT_EQ(RoomModel.faceCount, 2);
}

TEST_F(reader, ChangesNothingWhenTheFileIsNotThere) {
    load(sample);
    scripted::clearcalls();
    try {
        loadgeometry("absent.ray");
        ADD_FAILURE() << "the file was read";
    } catch (const runtimeerror& error) {
        EXPECT_EQ(error.kind, errorkind::filenotfound);
    }
    EXPECT_TRUE(scripted::calls().empty());
    EXPECT_EQ(RoomModel.faceCount, 2);
    writetext("Mixed.Ray", sample);
    loadgeometry("MIXED.RAY");
}

struct badfile {
    const char* text;
    errorkind kind;
    const char* message;
};

TEST_F(reader, NamesFileLineAndReason) {
    const badfile cases[] = {
        {"Face 0 1 3 0 0 0 1 0 0", errorkind::pastend, "line 2: the file ends where a number was expected"},
        {"Wall\nFace 0 1 x\nEnd\n", errorkind::typemismatch, "line 3: expected a number, found \"x\""},
        {"Face\nEnd\n", errorkind::typemismatch, "line 2: expected a number, found \"Face\""},
        {"Face 0 1 2 0 0 0\nEnd\n", errorkind::typemismatch, "line 3: expected a number, found \"End\""},
        {"Face 40000 1 3\n", errorkind::overflow, "line 2: the number \"40000\" is too large"},
        {"Receiver 1E39 0 0\n", errorkind::overflow, "line 2: the number \"1E39\" is too large"},
        {"Face 0 1 121\n", errorkind::subscript, "at most 120 vertices, not 121"},
        {"Face 0 1 1 0 0 0\nHole 0 1 65\n", errorkind::subscript, "at most 64 vertices, not 65"},
        {"Face 0 1 1 0 0 0\nDoor 0 1 6\n", errorkind::subscript, "at most 5 vertices, not 6"},
        {"Wall\nReceiver 1 2 3 4 5 6,\nSource", errorkind::typemismatch, "found \"Source\""},
    };
    for (const badfile& one : cases) {
        load(sample);
        const runtimeerror error = failedload(padded(one.text));
        EXPECT_EQ(error.kind, one.kind) << one.text;
        EXPECT_TRUE(error.text.starts_with("room.ray, line ")) << error.text;
        EXPECT_NE(error.text.find(one.message), std::string::npos) << error.text;
        EXPECT_EQ(RoomModel.faceCount + RoomModel.receiverCount + RoomModel.sourceCount, 0);
    }
}

TEST_F(reader, FillsTheLargestFace) {
    std::string text = "Face 0 1 120";
    for (int v = 1; v <= 120; ++v) text.append(1, ' ').append(std::to_string(v)).append(" 0 0");
    load(text + "\nFace 0 1 -5\nEnd");
    EXPECT_EQ(RoomModel.faceVertexCount(1), 120);
    EXPECT_EQ(RoomModel.faceVertexX(1, 120), 120.0F);
    EXPECT_EQ(RoomModel.faceVertexCount(2), -5); // no vertices to read
}

TEST_F(reader, HoldsNoMoreThanItsTables) {
    scripted::record(false);
    const struct {
        std::string head, line;
        int highest;
    } tables[] = {
        {"", "Face 0 1 1 0 0 0\n", highestface},
        {"Face 0 1 1 0 0 0\n", "Hole 0 1 1 0 0 0\n", highesthole},
        {"Face 0 1 1 0 0 0\n", "Door 0 1 1 0 0 0\n", highestdoor},
        {"", "Source 1 1 1 0 0 0 0 s\n", highestsource},
        {"", "Receiver 1 1 1 0 0 0\n", highestreceiver},
        {"", "Ray 1 1 1 0 0 0\n", highestrayline},
    };
    for (const auto& table : tables) {
        std::string text = table.head;
        for (int i = 0; i < table.highest; ++i) text += table.line;
        load(text);
        const runtimeerror error = failedload(text + table.line);
        EXPECT_EQ(error.kind, errorkind::subscript);
        const int line = table.highest + 1 + (table.head.empty() ? 0 : 1);
        EXPECT_NE(error.text.find("line " + std::to_string(line) + ":"), std::string::npos) << error.text;
        EXPECT_NE(error.text.find(std::to_string(table.highest)), std::string::npos) << error.text;
    }
    // The face of an opening is told in 16 bits.
    std::string text;
    for (int i = 0; i < 32767; ++i) text += "Face 0 1 1 0 0 0\n";
    load(text + "Hole 0 1 1 0 0 0\n");
    EXPECT_EQ(RoomModel.holeFace(1), 32767);
    const runtimeerror error = failedload(text + "Face 0 1 1 0 0 0\nDoor 0 1 1 0 0 0\n");
    EXPECT_EQ(error.kind, errorkind::overflow);
    EXPECT_NE(error.text.find("line 32769:"), std::string::npos) << error.text;
}

// Whatever is left of a file, reading it ends in a room, an error with a line, or the silent stop.
TEST_F(reader, SurvivesEveryCutOfAFile) {
    scripted::record(false);
    const std::string whole = samples::geometrytext().substr(0, 1500) + std::string(sample);
    for (const std::string& text : {std::string(sample), barelinefeeds(std::string(sample)), whole}) {
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
    const char binary[] = "Face \0\x01\xFF 9 \r\r\n";
    writetext("room.ray", std::string(binary, sizeof binary - 1) + std::string(200, '\0'));
    EXPECT_THROW(loadgeometry("room.ray"), runtimeerror);
}

// A worked example, where it is at hand.
TEST_F(reader, AgreesWithTheShoebox) {
    const std::string folder = std::string(SHARED_FILES) + "/examples/shoebox/";
    if (!canopen(folder + "input.ray")) GTEST_SKIP() << "no worked example here";
    loadgeometry(folder + "input.ray");
    const jsonvalue expected = readjson(readtext(folder + "expected.json"));
    const auto same = [](const jsonvalue& figure, double value) { EXPECT_EQ(figure.number, value); };
    const roommodel& r = RoomModel;
    same(expected["counts"]["face"], r.faceCount);
    same(expected["counts"]["hole"], r.holeCount);
    same(expected["counts"]["door"], r.doorCount);
    same(expected["counts"]["source"], r.sourceCount);
    same(expected["counts"]["receiver"], r.receiverCount);
    same(expected["counts"]["ray"], r.rayLineCount);
    for (int face = 1; face <= r.faceCount; ++face) {
        const jsonvalue& one = expected["faces"][static_cast<std::size_t>(face - 1)];
        same(one["flag"], r.faceLayerFlag(face));
        same(one["material"], r.faceMaterial(face));
        same(one["inWall"], r.faceInWall(face));
        same(one["hasOpening"], r.faceHasOpening(face));
        ASSERT_EQ(static_cast<int>(one["vertices"].items.size()), r.faceVertexCount(face));
        for (int v = 1; v <= r.faceVertexCount(face); ++v) {
            const jsonvalue& vertex = one["vertices"][static_cast<std::size_t>(v - 1)];
            same(vertex[0], static_cast<double>(r.faceVertexX(face, v)));
            same(vertex[1], static_cast<double>(r.faceVertexY(face, v)));
            same(vertex[2], static_cast<double>(r.faceVertexZ(face, v)));
        }
    }
    same(expected["doors"][0]["vertices"][2][2], static_cast<double>(r.doorVertexZ(1, 3)));
    same(expected["doors"][0]["owner"], r.doorFace(1));
    EXPECT_EQ(expected["sources"][0]["file"].text, r.sourceFile(1));
    same(expected["roomMax"][2], static_cast<double>(r.roomMaxZ));
    same(expected["centre"][2], static_cast<double>(r.roomCentreZ));
    std::vector<std::string> shown = scripted::callswith("status 2|");
    shown.pop_back();
    ASSERT_EQ(shown.size(), expected["percent"].items.size());
    for (std::size_t i = 0; i < shown.size(); ++i)
        EXPECT_EQ(shown[i],
                  "status 2|" + wholetext(static_cast<std::int64_t>(expected["percent"][i].number)) + "%");
}

} // namespace

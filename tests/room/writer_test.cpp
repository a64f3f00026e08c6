// The geometry writer, byte by byte.
#include "tests/room/roomfixture.h"

#include "room/geometrywriter.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"

#include <cstdlib>

using namespace orv;

namespace {

struct writer : roomtest {
    writer() { writetext("orvanta.ini", "Temperature=20\r\n"); }

    std::string saved() {
        savegeometry("saved.ray");
        return readtext("saved.ray");
    }
};

// Compares with a file of tests/golden byte by byte; ORV_REWRITE_GOLDEN in the environment writes it anew.
void expectgolden(const std::string& name, const std::string& bytes) {
    const std::string path = std::string(TEST_FILES) + "/golden/" + name;
    if (std::getenv("ORV_REWRITE_GOLDEN")) writetext(path, bytes);
    EXPECT_EQ(bytes, readtext(path)) << name;
}

TEST_F(writer, WritesTheGoldenFile) {
    load("EntityList\n"
         "Wall\n"
         "Face 1 -2 4 0 0 0, 4 0 0, 4 3 0, 0 3 -.5\n"
         "Hole 0 2 4 1 1 0 2 1 0 2 2 0 1 2 0\n"
         "Door 0 3 3 -1 0 0 2 0 0 2 1 0\n"
         "Hole 5 -1 3 .1 .2 .3 1E-8 123456.78 12345678 .0123456 .01234567 -1E9\n"
         "Face 0 9 3 0 0 0 .02 0 0 0 .02 0\n"
         "Door 0 3 3 0 0 0 2 0 0 2 1 0\n"
         "End\n"
         "Face 0 4 3 0 0 0 1 0 0 0 1 0\n"
         "Hole 0 4 3 0 0 0 1 0 0 0 1 0\n"
         "Source 1 -1 1 2 2 1 0 Omni.spk\n"
         "Speaker -1.5 0 .25 0 0 0 -7.125\n"
         "Receiver 1 2 3 4 5 6\n"
         "Receiver -1 -2 -3 -4 -5 -6.5\n"
         "Ray 1 2 3 4 5 6\n"
         "End\n");
    expectgolden("geometry.ray", saved());
}

TEST_F(writer, AgreesWithTheShoebox) {
    const std::string folder = std::string(SHARED_FILES) + "/examples/shoebox/";
    if (!canopen(folder + "input.ray")) GTEST_SKIP() << "no worked example here";
    loadgeometry(folder + "input.ray");
    EXPECT_EQ(saved(), readtext(folder + "saved.ray"));
}

// The whole hall: what was saved once is saved alike from then on. The first save moved the faces that stood
// outside a wall into one.
TEST_F(writer, ComesBackFromItsOwnFile) {
    scripted::record(false);
    load(samples::geometrytext());
    const std::int32_t faces = RoomModel.faceCount, holes = RoomModel.holeCount;
    saved();
    loadgeometry("saved.ray");
    EXPECT_EQ(RoomModel.faceCount, faces);
    EXPECT_EQ(RoomModel.holeCount, holes);
    EXPECT_EQ(RoomModel.rayLineCount, 0); // not written
    for (std::int32_t face = 1; face <= faces; ++face) EXPECT_EQ(RoomModel.faceInWall(face), -1);
    const std::string second = saved();
    loadgeometry("saved.ray");
    EXPECT_TRUE(saved() == second);
}

// Right-angled triangles of this leg: twice their area is its square.
TEST_F(writer, DropsFacesUpToAThousandth) {
    load(padded("Face 0 1 3 0 0 0 .03 0 0 0 .03 0\n"    // .0009
                "Face 0 2 3 0 0 0 .001 0 0 0 1 0\n"     // the single .001 exactly
                "Face 0 3 3 0 0 0 .0010001 0 0 0 1 0\n" // above it
                "Face 0 4 2 0 0 0 9 9 9\n"
                "Face 0 5 3 0 0 0 1 0 0 0 1 0\n"));
    EXPECT_EQ(Area(0, 0, 0, .001F, 0, 0, 0, 1, 0), .001F);
    saved();
    loadgeometry("saved.ray");
    ASSERT_EQ(RoomModel.faceCount, 2);
    EXPECT_EQ(RoomModel.faceMaterial(1), 3);
    EXPECT_EQ(RoomModel.faceMaterial(2), 5);
}

TEST_F(writer, ScansForOpeningsOnlyWhereTheFlagStands) {
    load(padded("Wall\nFace 0 1 3 0 0 0 1 0 0 0 1 0\nHole 0 1 3 0 0 0 1 0 0 0 1 0\nEnd\n"));
    EXPECT_NE(saved().find("  Hole"), std::string::npos);
    RoomModel.faceHasOpening(1) = 0;
    EXPECT_EQ(saved().find("  Hole"), std::string::npos);
}

// The blank in front of a whole number gives way to its minus, and nothing else parts it from the keyword.
TEST_F(writer, PutsANegativeFlagRightBehindTheWord) {
    load(padded("Wall\nFace -1 2 3 0 0 0 1 0 0 0 1 0\nEnd\n"));
    EXPECT_NE(saved().find("\r\n  Face-1  2  3     0"), std::string::npos);
}

TEST_F(writer, ShowsTheFaceItIsAt) {
    load(padded("Face 0 1 3 0 0 0 1 0 0 0 1 0\nFace 0 1 1 0 0 0\nFace 0 1 3 0 0 0 1 0 0 0 1 0\n"));
    scripted::clearcalls();
    saved();
    const std::vector<std::string> expected = {"status 1|Saving saved.ray ...",
                                               "pointer wait",
                                               "status 2| 33%",
                                               "yield",
                                               "status 2| 66%",
                                               "yield",
                                               "status 2| 100%",
                                               "yield",
                                               "pointer normal",
                                               "status 1|",
                                               "status 2|",
                                               "yield"};
    EXPECT_EQ(scripted::calls(), expected);
}

TEST_F(writer, PutsTheClimateIntoTheSettingsFirst) {
    writetext("orvanta.ini", "Humidity=50 %\r\nTemperature= 20 C\r\nAlfa= .9 of it\r\n");
    SessionState.temperature = 21.5F;
    SessionState.humidity = .5F;
    EXPECT_EQ(saved(), "EntityList\r\nEnd\r\n");
    EXPECT_EQ(readtext("orvanta.ini"), "Humidity=.5\r\nTemperature=21.5\r\nAlfa= .9 of it\r\n");
}

TEST_F(writer, LeavesTheGeometryAloneWhenTheSettingsFail) {
    writetext("saved.ray", "old");
    std::filesystem::remove("orvanta.ini");
    try {
        savegeometry("saved.ray");
        ADD_FAILURE() << "there was no settings file";
    } catch (const runtimeerror& error) {
        EXPECT_EQ(error.kind, errorkind::filenotfound);
        EXPECT_NE(error.text.find("orvanta.ini"), std::string::npos);
    }
    EXPECT_EQ(readtext("saved.ray"), "old");
}

} // namespace

// The geometry writer, byte by byte, and the measures of the room that it goes by.
#include "tests/room/roomfixture.h"

#include "room/geometrywriter.h"
#include "room/roommodel.h"
#include "tests/golden.h"

using namespace orv;

namespace {

struct writer : roomtest {
    writer() { writetext("orvanta.ini", "Temperature=20\r\n"); }

    std::string saved() {
        savegeometry("saved.ray");
        return readtext("saved.ray");
    }
};

// The blank in front of a whole number gives way to its minus, and nothing else parts it from the keyword.
TEST_F(writer, WritesTheGoldenFile) {
    load("EntityList\n"
         "Wall\n"
         "Face 1 -2 4 0 0 0, 4 0 0, 4 3 0, 0 3 -.5\n"
         "Hole 0 2 4 1 1 0 2 1 0 2 2 0 1 2 0\n"
         "Door 0 3 3 -1 0 0 2 0 0 2 1 0\n"
         "Hole -5 -1 3 .1 .2 .3 1E-8 123456.78 12345678 .0123456 .01234567 -1E9\n"
         "Face 0 9 3 0 0 0 .02 0 0 0 .02 0\n"
         "Door 0 3 3 0 0 0 2 0 0 2 1 0\n"
         "End\n"
         "Face 0 4 3 0 0 0 1 0 0 0 1 0\n"
         "Hole 0 4 3 0 0 0 1 0 0 0 1 0\n"
         "Wall\n"
         "Face 0 5 3 0 0 0 1 0 0 0 1 0\n"
         "Hole 0 5 3 0 0 0 1 0 0 0 1 0\n"
         "Door 0 5 3 0 0 0 1 0 0 0 1 0\n"
         "End\n"
         "Source 1 -1 1 2 2 1 0 Omni.spk\n"
         "Speaker -1.5 0 .25 0 0 0 -7.125\n"
         "Receiver 1 2 3 4 5 6\n"
         "Receiver -1 -2 -3 -4 -5 -6.5\n"
         "Ray 1 2 3 4 5 6\n"
         "End\n");
    const std::string bytes = saved();
    expectgolden("geometry.ray", bytes);
    RoomModel.faceHasOpening(1) = 0; // openings are looked for only where this flag stands
    EXPECT_LT(saved().size(), bytes.size());
}

TEST_F(writer, AgreesWithTheShoebox) {
    const std::string folder = std::string(SHARED_FILES) + "/examples/shoebox/";
    if (!canopen(folder + "input.ray")) GTEST_SKIP() << "no worked example here";
    loadgeometry(folder + "input.ray");
    EXPECT_EQ(saved(), readtext(folder + "saved.ray"));
}

// Right-angled triangles of this leg: twice their area is its square.
TEST_F(writer, DropsFacesUpToAThousandth) {
    load(padded("Face 0 1 3 0 0 0 .03 0 0 0 .03 0\n"    // .0009
                "Face 0 2 3 0 0 0 .001 0 0 0 1 0\n"     // the single .001 exactly
                "Face 0 3 3 0 0 0 .0010001 0 0 0 1 0\n" // above it
                "Face 0 4 2 0 0 0 9 9 9\n"
                "Face 0 5 3 0 0 0 1 0 0 0 1 0\n"));
    EXPECT_EQ(Area(0, 0, 0, .001F, 0, 0, 0, 1, 0), .001F);
    scripted::clearcalls();
    saved();
    EXPECT_EQ(scripted::callswith("status 2|"),
              (std::vector<std::string>{"status 2| 20%", "status 2| 40%", "status 2| 60%", "status 2| 80%",
                                        "status 2| 100%", "status 2|"}));
    EXPECT_EQ(scripted::countcalls("yield"), 6U);
    loadgeometry("saved.ray");
    ASSERT_EQ(RoomModel.faceCount, 2);
    EXPECT_EQ(RoomModel.faceMaterial(1), 3);
    EXPECT_EQ(RoomModel.faceMaterial(2), 5);
    // The first save moved these faces into walls; from then on all is saved alike.
    const std::string second = saved();
    loadgeometry("saved.ray");
    EXPECT_EQ(saved(), second);
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
    const runtimeerror error = failureof([] { savegeometry("saved.ray"); });
    EXPECT_EQ(error.kind, errorkind::filenotfound);
    EXPECT_NE(error.text.find("orvanta.ini"), std::string::npos);
    EXPECT_EQ(readtext("saved.ray"), "old");
}

// --- The measures of the room ---

TEST_F(writer, MeasuresTwiceTheAreaOfATriangle) {
    EXPECT_EQ(Area(0, 0, 0, 1, 0, 0, 0, 1, 0), 1.0F); // not a half: the factor belongs to the thresholds
    EXPECT_EQ(Area(0, 0, 0, 0, 3, 4, 10, 0, 0), 50.0F);
    EXPECT_EQ(Area(1, 1, 1, 2, 2, 2, 5, 5, 5), 0.0F);
    // Far from the origin the differences still count, since they are taken in double.
    EXPECT_FLOAT_EQ(Area(10000, 0, 0, 10000.5F, 0, 0, 10000, .5F, 0), .25F);
}

TEST_F(writer, SumsAFaceAsAFanFromItsLastVertex) {
    load(padded("Face 0 1 4 0 0 0 4 0 0 4 3 0 0 3 0\n"
                "Face 0 1 2 0 0 0 4 0 0\n"
                "Face 0 1 6 0 0 0 2 0 0 2 1 0 1 1 0 1 2 0 0 2 0\n"));
    EXPECT_EQ(facesize(1), 24);
    EXPECT_EQ(facesize(2), 0);
    // An L of 3 m2: the fan's triangles count positive on either side, here 4, 2, 1 and 1 twice their area.
    EXPECT_EQ(facesize(3), 8);
}

TEST_F(writer, HasItsCentreBetweenItsBounds) {
    resetroom();
    extendbox(-1, 0, 16777216);
    extendbox(3, -5, 16777215);
    computecentre();
    EXPECT_EQ(RoomModel.roomCentreX, 1.0F);
    EXPECT_EQ(RoomModel.roomCentreY, -2.5F);
    EXPECT_EQ(RoomModel.roomCentreZ, 16777216.0F); // 16777215.5 in double, rounded once
}

} // namespace

// The measures of the room.
#include "tests/room/roomfixture.h"

#include "room/roommodel.h"

using namespace orv;

namespace {

struct model : roomtest {};

TEST_F(model, MeasuresTwiceTheAreaOfATriangle) {
    EXPECT_EQ(Area(0, 0, 0, 1, 0, 0, 0, 1, 0), 1.0F); // not a half: the factor belongs to the thresholds
    EXPECT_EQ(Area(0, 0, 0, 0, 3, 4, 10, 0, 0), 50.0F);
    EXPECT_EQ(Area(1, 1, 1, 2, 2, 2, 5, 5, 5), 0.0F);
    // Far from the origin the differences still count, since they are taken in double.
    EXPECT_FLOAT_EQ(Area(10000, 0, 0, 10000.5F, 0, 0, 10000, .5F, 0), .25F);
}

TEST_F(model, SumsAFaceAsAFanFromItsLastVertex) {
    load(padded("Face 0 1 4 0 0 0 4 0 0 4 3 0 0 3 0\n"
                "Face 0 1 2 0 0 0 4 0 0\n"
                "Face 0 1 6 0 0 0 2 0 0 2 1 0 1 1 0 1 2 0 0 2 0\n"));
    EXPECT_EQ(facesize(1), 24);
    EXPECT_EQ(facesize(2), 0);
    // An L of 3 m2: the fan's triangles count positive on either side, here 4, 2, 1 and 1 twice their area.
    EXPECT_EQ(facesize(3), 8);
}

TEST_F(model, HasItsCentreBetweenItsBounds) {
    resetroom();
    extendbox(-1, 0, 16777216);
    extendbox(3, -5, 16777215);
    computecentre();
    EXPECT_EQ(RoomModel.roomCentreX, 1.0F);
    EXPECT_EQ(RoomModel.roomCentreY, -2.5F);
    EXPECT_EQ(RoomModel.roomCentreZ, 16777216.0F); // 16777215.5 in double, rounded once
}

} // namespace

// The Nastran reader: where its cards begin and end, what they give, how they fail.
#include "tests/interchange/roomtext.h"

#include "interchange/nastranreader.h"

using namespace orv;

namespace {

struct nastran : sessiontest {
    static void load(std::string_view text) {
        writetext("mesh.nas", text);
        loadnastran("mesh.nas");
    }
};

constexpr std::string_view sample = "GRID,3,0,9,9,9\r\n"
                                    "$ Grid data section\r\n"
                                    "GRID,1,0,0,0,0\r\n"
                                    " GRID , 2 ,,\t4. , -1E+0 , \r\n"
                                    "GRID,3,0,4,3,.5\r\n"
                                    "$ Elements, GRID\r\n"
                                    "CTRIA3,17,7,1,2,3\r\n"
                                    "CTRIA3,9,-2,3,2,100000\r\n";

TEST_F(nastran, ReadsTheNodesBehindTheMarkerAndTheirTriangles) {
    std::string bare(sample);
    std::erase(bare, '\r');
    for (const std::string& text : {std::string(sample), bare}) {
        RoomModel.faceInWall(1) = RoomModel.faceLayerFlag(1) = -1; // of a former room
        RoomModel.rayLineCount = 3;
        load(text);
        EXPECT_EQ(ResultSet.lastSlot, 9); // the last element's number, on purpose
        EXPECT_EQ(RoomModel.rayLineCount, 0);
        EXPECT_EQ(SessionState.targetY, 1.0F);
        EXPECT_EQ(roomtext(), " Wall\n Face 0  7  3     0  0  0  4 -1  0  4  3  .5\n End\n"
                              " Wall\n Face 0 -2  3     4  3  .5  4 -1  0  0  0  0\n End\n");
    }
    expectgolden("nastranlog.txt", scripted::logtext());
}

TEST_F(nastran, EndsItsRunsAtTheFirstFieldThatIsNoCard) {
    const std::string node = "GRID,1,0,1,2,3\n", face = "CTRIA3,1,1,1,1,1\n";
    const std::string head = "$ Grid data section\n" + node;
    for (const char* end : {"\n", "$ comment\n", ",", "ENDDATA\n", "ctria3,2,1,1,1,1\n"}) {
        load(head + face + end + face);
        EXPECT_EQ(RoomModel.faceCount, 1) << end;
    }
    load(head + "CTRIA3,1,1,1,1,1,\n" + face); // a trailing comma closes one more field
    EXPECT_EQ(RoomModel.faceCount, 1);
    load(head + "\nGRID,1,0,9,9,9\n" + face); // the node behind the gap is passed over
    EXPECT_EQ(RoomModel.faceVertexX(1, 1), 1.0F);
    EXPECT_EQ(scripted::logtext().back(), " 1 nodes and 1 faces imported");
    load(head + face + face.substr(0, face.size() - 1)); // the end of the file closes the last field
    EXPECT_EQ(RoomModel.faceCount, 2);
}

TEST_F(nastran, NamesFileLineAndReason) {
    const std::string marker = "$ Grid data section\r\n";
    const std::vector<std::string> behind = {
        "GRID,1,0,0,0,0\r\nENDDATA\r\n", "CTRIA3,1,1,1,1\r\n",
        "GRID,1,0,0,0,zero\r\n",         "GRID,100001,0,0,0,0\r\n",
        "CTRIA3,1,1,1,-1,1\r\n",         "CTRIA3,1,32768,1,1,1\r\n",
        "CTRIA3,2147483648,1,1,1,1\r\n", "GRID,1,0,0,0,1E39\r\nCTRIA3,1,1,1,1,1\r\n",
        "GRID,1,0,0,0,1E999\r\n"};
    std::vector<std::string> inputs = {"$ Grid data section \r\nGRID,1,0,0,0,0\r\n", ""};
    for (const std::string& cards : behind) inputs.push_back(marker + cards);
    expectrefusals("refusednastran.txt", inputs, load);
    scripted::record(false);
    std::string text = marker;
    for (int i = 0; i <= highestface; ++i) text += "CTRIA3,1,1,1,1,1\r\n";
    EXPECT_NE(failureof([&] { load(text); }).text.find("line 75002: "), std::string::npos);
    RoomModel.faceCount = 5;
    EXPECT_EQ(kindof([] { loadnastran("absent.nas"); }), errorkind::filenotfound);
    EXPECT_EQ(RoomModel.faceCount, 5);
}

} // namespace

// Blanking lines: their file byte by byte, its limits, and the file commands of the menu.
#include "maps/blanking.h"

#include "tests/failures.h"
#include "tests/testsupport.h"

namespace orv {
namespace {

struct blankingtest : sessiontest {
    std::string name = inside("lines.bln");

    blankingtest() {
        extendbox(0, 0, 0);
        extendbox(4, 3, 2);
        SessionState.focalLength = 0.05F;
    }
    ~blankingtest() override { BlankingLines = {}; }

    static std::string polygon(int points, int flag) {
        std::string text = std::to_string(points) + "," + std::to_string(flag) + "\r\n";
        for (int k = 1; k <= points; ++k) text += std::to_string(k) + ",-.5\r\n";
        return text;
    }
};

TEST_F(blankingtest, FilesComeBackByteByByte) {
    const std::string text = "4,1\r\n.5,-.5\r\n5,0\r\n.001,1234567\r\n.5,-.5\r\n1,0\r\n-2,7\r\n";
    writetext(name, text);
    scripted::expectopen(name, "Load a Blanking File");
    runcommand("BLNload");
    EXPECT_EQ(BlankingLines.blanklineCount, 2);
    EXPECT_EQ(BlankingLines.blanklineFlag(1), 1);
    EXPECT_EQ(BlankingLines.blanklineX(1, 2), 5);
    EXPECT_EQ(RoomModel.roomMaxX, 5);
    EXPECT_EQ(RoomModel.roomMinX, -2);
    EXPECT_EQ(RoomModel.roomMaxY, 1234567);
    EXPECT_TRUE(isenabled("BLNsave") && isenabled("BLNnew") && isenabled("BLNdel"));
    scripted::expectsave(inside("copy"), "Save a Blanking File");
    runcommand("BLNsave");
    EXPECT_EQ(readtext(inside("copy.bln")), text);
    EXPECT_EQ(scripted::callswith("save"),
              (std::vector<std::string>{"save|Save a Blanking File|SURFER Blank.Files (*.BLN)|*.BLN|" + name +
                                        "|" + directory.path}));
}

TEST_F(blankingtest, LimitsAndCutFilesFailAndABlankRestDoesNot) {
    std::string fifty;
    for (int line = 0; line < 50; ++line) fifty += polygon(line == 7 ? 150 : 3, 0);
    writetext(name, fifty + "\r\n  \r\n");
    readblanking(name);
    EXPECT_EQ(BlankingLines.blanklineCount, 50);
    BlankingLines.addingLine = on;
    for (const auto& [text, kind] : {std::pair(fifty + polygon(3, 0), errorkind::subscript),
                                     {polygon(3, 1) + polygon(151, 1), errorkind::subscript},
                                     {"4,1\r\n0,0\r\n1,", errorkind::pastend},
                                     {"4,word\r\n", errorkind::typemismatch}}) {
        writetext(name, text);
        EXPECT_EQ(kindof([&] { readblanking(name); }), kind);
        EXPECT_EQ(BlankingLines.blanklineCount, 50);
    }
    EXPECT_EQ(BlankingLines.blanklinePoints(1), 3);
    // A command says so and goes on, with what was there.
    scripted::expectopen(name);
    scripted::expectbox("lines.bln", platform::answer::ok);
    BLNload();
    scripted::expectsave(inside("absent/lines.bln"));
    scripted::expectbox("lines.bln", platform::answer::ok);
    BLNsave();
    EXPECT_EQ(BlankingLines.addingLine, on);
    EXPECT_EQ(BlankingLines.blankingFile, "");
    writetext(name, "");
    readblanking(name);
    EXPECT_EQ(BlankingLines.blanklineCount, 0);
}

TEST_F(blankingtest, ClearEndsTheUseInMapsAndCancelChangesNothing) {
    BlankingLines.blanklineCount = 2;
    SessionState.gridReady = SessionState.contourReady = -1;
    enableblankingcommands(true);
    scripted::expectopen(scripted::cancelled);
    scripted::expectsave(scripted::cancelled);
    runcommand("BLNload");
    runcommand("BLNsave");
    EXPECT_EQ(BlankingLines.blanklineCount, 2);
    runcommand("BLNnew");
    EXPECT_EQ(SessionState.gridReady, -1);
    EXPECT_FALSE(isenabled("BLNsave") || isenabled("BLNnew"));
    SessionState.useBlanking = true;
    enablecommand("BLNnew", true);
    runcommand("BLNnew");
    EXPECT_FALSE(SessionState.useBlanking);
    EXPECT_EQ(SessionState.gridReady, 0);
    EXPECT_EQ(SessionState.contourReady, 0);
}

} // namespace
} // namespace orv

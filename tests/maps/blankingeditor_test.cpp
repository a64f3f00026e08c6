// Entering blanking lines: where clicks set points, when a line closes, what is seen of it, and its ends.
#include "maps/blankingeditor.h"

#include "maps/blanking.h"
#include "maps/redrawview.h"
#include "tests/testsupport.h"

namespace orv {
namespace {

struct editortest : sessiontest {
    editortest() {
        BlankingOptions = {};
        SessionState.focalLength = 0.05F;
        SessionState.colourBlanking = rgb(255, 0, 255);
        for (const char* layer : {"Vroom", "Vsource", "CamVrec", "Vaxes", "Post"}) checkcommand(layer, false);
        extendbox(0, 0, 0);
        extendbox(8, 6, 2); // a diagonal of 10: a click closes within .05
        for (const char* name : {"BLNadd", "BLNoptions"}) enablecommand(name, true);
        scripted::expectwindow("BLN Options");
        runcommand("BLNadd");
    }
    ~editortest() override { BlankingLines = {}; }

    static void click(double x, double y) { lineeditorclick(true, x, y); }
    static float x(int point) { return BlankingLines.blanklineX(BlankingLines.blanklineCount, point); }
    static float y(int point) { return BlankingLines.blanklineY(BlankingLines.blanklineCount, point); }
};

TEST_F(editortest, ClicksAreCutToTheCentimetreAndCloseFromTheFourthOn) {
    EXPECT_TRUE(lineeditoractive() && !lineeditorfollows());
    EXPECT_EQ(scripted::pointershape(), platform::shape::cross);
    EXPECT_EQ(scripted::statustext(1),
              "Ortho=Off - Grid=Off - Draw the blanking line, end clicking on the first point");
    EXPECT_EQ(BlankingLines.blanklineFlag(1), blankinside);
    click(-0.001, 1.239);
    EXPECT_EQ(x(1), -.01F);
    EXPECT_EQ(y(1), 1.23F);
    EXPECT_TRUE(lineeditorfollows());
    EXPECT_EQ(scripted::pointershape(), platform::shape::placedpoint);
    lineeditorclick(false, 5, 5);
    click(-0.01, 1.23);
    click(-0.01, 1.23); // the third
    EXPECT_TRUE(lineeditoractive());
    EXPECT_EQ(BlankingLines.blanklinePoints(1), 3);
    click(0.03, 1.25); // .04 and .02 away
    EXPECT_TRUE(lineeditoractive());
    SessionState.gridReady = SessionState.contourReady = -1;
    SessionState.useBlanking = true; // the line takes part in the rectangle of the map
    click(0.01, 1.25);
    EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0);
    EXPECT_FALSE(lineeditoractive() || lineeditorfollows());
    EXPECT_EQ(BlankingLines.blanklinePoints(1), 5);
    EXPECT_EQ(x(5), x(1));
    EXPECT_EQ(y(5), y(1));
    EXPECT_TRUE(isenabled("BLNsave") && isenabled("BLNnew") && isenabled("BLNdel"));
    EXPECT_EQ(scripted::countcalls("beep"), 1U);
    EXPECT_EQ(scripted::statustext(1),
              "Left Click and drag for panning the image, Right Click and drag for rotation...");
}

TEST_F(editortest, GridAndOrthoForceThePoint) {
    scripted::expectwindow("BLN Options", [] { BlankingOptions = {true, " .5 m", true, true}; });
    runcommand("BLNoptions");
    EXPECT_TRUE(scripted::statustext(1).starts_with("Ortho=On - Grid=On - "));
    click(1.7, -0.2);
    EXPECT_EQ(x(1), 1.5F);
    EXPECT_EQ(y(1), -.5F);
    click(4.2, 1.4); // x moves farther
    EXPECT_EQ(x(2), 4);
    EXPECT_EQ(y(2), -.5F);
    click(5.2, 0.7); // as far: y wins
    EXPECT_EQ(x(3), 4);
    EXPECT_EQ(y(3), .5F);
    BlankingOptions.gridsize = "0";
    scripted::expectbox("size 0", platform::answer::ok);
    EXPECT_FALSE(checkblankingoptions());
    scripted::expectbox("zero", platform::answer::ok);
    click(1, 1);
    lineeditormove(1, 1);
    EXPECT_EQ(BlankingLines.blanklinePoints(1), 3);
    scripted::expectwindow("BLN Options");
    BlankingLines.blanklineCount = 0;
    BLNadd();
    EXPECT_EQ(BlankingLines.blanklineFlag(1), blankoutside);
}

TEST_F(editortest, TheBandFollowsAndLeavesMarks) {
    click(1, 1);
    lineeditormove(3, 1);
    picture.lines.clear();
    lineeditormove(3, 2);
    const std::string arm = " FFFFFF mode 7", band = " 00FF00 dotted mode 7";
    const auto line = [&](const std::string& text) {
        return std::count_if(picture.lines.begin(), picture.lines.end(),
                             [&](const std::string& drawn) { return drawn.starts_with("line " + text); });
    };
    EXPECT_EQ(picture.lines.front(), "line 1 1 3 1" + band);
    EXPECT_EQ(picture.lines[3], "line 1 1 3 2" + band);
    EXPECT_EQ(picture.lines.size(), 6U);
    EXPECT_TRUE(picture.lines.back().ends_with(arm));
    // Every line of the band, whatever was drawn between, is taken away again: what stays was drawn once.
    click(3, 2);
    lineeditormove(5, 5);
    picture.lines.clear();
    redrawview(picture.surface);
    EXPECT_EQ(line("3 2 5 5" + band), 1);
    EXPECT_EQ(scripted::pointershape(), platform::shape::placedpoint);
    EXPECT_TRUE(scripted::statustext(1).starts_with("Ortho="));
    lineeditormove(5, 4);
    EXPECT_EQ(line("3 2 5 5" + band), 2);
    EXPECT_EQ(picture.surface.pen.mode, drawmodecopy);
}

TEST_F(editortest, EscapeThrowsTheLineAway) {
    click(1, 1);
    lineeditorescape();
    EXPECT_FALSE(lineeditoractive() || lineeditorfollows());
    EXPECT_EQ(BlankingLines.blanklineCount, 0);
    EXPECT_FALSE(isenabled("BLNsave") || isenabled("BLNnew") || isenabled("BLNdel"));
    BlankingLines.blanklineCount = 1;
    scripted::expectwindow("BLN Options");
    runcommand("BLNadd");
    lineeditorescape();
    EXPECT_EQ(BlankingLines.blanklineCount, 1);
    EXPECT_TRUE(isenabled("BLNsave"));
    // A load in the middle of a line is no line of the file.
    scripted::expectwindow("BLN Options");
    runcommand("BLNadd");
    writetext(inside("none.bln"), "");
    scripted::expectopen(inside("none.bln"));
    runcommand("BLNload");
    EXPECT_FALSE(lineeditoractive());
}

TEST_F(editortest, CapacitiesAreRefusedAndNothingIsLost) {
    for (int k = 0; k < 150; ++k) click(1 + 0.04 * k, 1 + k % 5);
    scripted::expectbox("at most 150", platform::answer::ok);
    click(3, 3);
    EXPECT_TRUE(lineeditorfollows());
    click(1, 1);
    EXPECT_FALSE(lineeditoractive());
    EXPECT_EQ(BlankingLines.blanklinePoints(1), 150);
    BlankingLines.blanklineCount = 50;
    scripted::expectwindow("BLN Options");
    scripted::expectbox("at most 50", platform::answer::ok);
    BLNadd();
    EXPECT_FALSE(lineeditoractive());
    EXPECT_EQ(BlankingLines.blanklineCount, 50);
}

} // namespace
} // namespace orv

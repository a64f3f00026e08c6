// Entering blanking lines: where clicks set points, when a line closes, what is seen of it, and its ends.
#include "maps/blankingeditor.h"

#include "base/numbertext.h"
#include "maps/blanking.h"
#include "maps/redrawview.h"
#include "tests/golden.h"

namespace orv {
namespace {

struct editortest : sessiontest {
    std::vector<std::string> told;

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

    // Writes down the points of the last line and what a user sees of the entering after an act.
    void tell(const std::string& act) {
        const blankinglines& b = BlankingLines;
        std::string text = act + " =";
        for (int k = 1; k <= static_cast<int>(b.blanklinePoints(b.blanklineCount)); ++k)
            text += numbertext(static_cast<double>(b.blanklineX(b.blanklineCount, k))) +
                    numbertext(static_cast<double>(b.blanklineY(b.blanklineCount, k))) + ",";
        text += lineeditoractive() ? " active" : " ended";
        text += lineeditorfollows() ? " followed" : "";
        const auto shape = scripted::pointershape();
        text += shape == platform::shape::cross         ? " cross"
                : shape == platform::shape::placedpoint ? " point"
                : shape == platform::shape::normal      ? " normal"
                                                        : " another";
        for (const char* name : {"BLNsave", "BLNnew", "BLNdel"}) text += isenabled(name) ? " on" : " off";
        told.push_back(text + ": " + scripted::statustext(1));
    }
    void clickandtell(double x, double y) {
        click(x, y);
        tell("click" + numbertext(x) + numbertext(y));
    }
};

TEST_F(editortest, ClicksAreCutToTheCentimetreAndCloseFromTheFourthOn) {
    tell("add");
    EXPECT_EQ(BlankingLines.blanklineFlag(1), blankinside);
    clickandtell(-0.001, 1.239);
    lineeditorclick(false, 5, 5);
    tell("right click");
    clickandtell(-0.01, 1.23);
    clickandtell(-0.01, 1.23); // the third
    clickandtell(0.03, 1.25);  // .04 and .02 away
    SessionState.gridReady = SessionState.contourReady = -1;
    SessionState.useBlanking = true; // the line takes part in the rectangle of the map
    clickandtell(0.01, 1.25);
    EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0);
    EXPECT_EQ(scripted::countcalls("beep"), 1U);
    expectgolden("blankingclicks.txt", told);
}

TEST_F(editortest, GridAndOrthoForceThePoint) {
    scripted::expectwindow("BLN Options", [] { BlankingOptions = {true, " .5 m", true, true}; });
    runcommand("BLNoptions");
    clickandtell(1.7, -0.2);
    clickandtell(4.2, 1.4); // x moves farther
    clickandtell(5.2, 0.7); // as far: y wins
    BlankingOptions.gridsize = "0";
    scripted::expectbox("size 0", platform::answer::ok);
    EXPECT_FALSE(checkblankingoptions());
    scripted::expectbox("zero", platform::answer::ok);
    clickandtell(1, 1);
    lineeditormove(1, 1);
    expectgolden("blankinggrid.txt", told);
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
    EXPECT_EQ(picture.lines.front(), "line 1 1 3 1" + band);
    EXPECT_EQ(picture.lines[3], "line 1 1 3 2" + band);
    EXPECT_EQ(picture.lines.size(), 6U);
    EXPECT_TRUE(picture.lines.back().ends_with(arm));
    // Every line of the band, whatever was drawn between, is taken away again: what stays was drawn once.
    click(3, 2);
    lineeditormove(5, 5);
    picture.lines.clear();
    redrawview(picture.surface);
    EXPECT_EQ(items("line 3 2 5 5" + band).size(), 1U);
    EXPECT_EQ(scripted::pointershape(), platform::shape::placedpoint);
    EXPECT_TRUE(scripted::statustext(1).starts_with("Ortho="));
    lineeditormove(5, 4);
    EXPECT_EQ(items("line 3 2 5 5" + band).size(), 2U);
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
    scripted::expectbox("holds no blanking lines", platform::answer::ok);
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

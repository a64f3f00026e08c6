// The rules of the mapping options, control by control, and the file of the user's colours.
#include "maps/mappingoptions.h"

#include "maps/blanking.h"
#include "maps/rgbsettings.h"
#include "tests/testsupport.h"

#include <utility>
#include <vector>

namespace orv {
namespace {

struct mappingoptionstest : sessiontest {
    mappingoptionstest() {
        sessionstate& s = SessionState;
        s.Nx = s.Ny = 50;
        s.maxRadius = 5;
        s.minLevel = 80;
        s.maxLevel = 120;
        s.bandIndex = 12;
        s.parameterIndex = 1;
        s.colourSchemeIndex = 6;
        s.surferMethod = 1;
    }
    ~mappingoptionstest() override { BlankingLines.blanklineCount = 0; }

    // What is out of date after an edit: nothing, the "contour", or the "grid" with it.
    template <class edit>
    static std::string stale(edit&& run) {
        SessionState.gridReady = SessionState.contourReady = -1;
        run();
        EXPECT_FALSE(SessionState.contourReady != 0 && SessionState.gridReady == 0);
        return SessionState.gridReady == 0 ? "grid" : SessionState.contourReady == 0 ? "contour" : "";
    }
};

TEST_F(mappingoptionstest, OpeningStoresWhatIsShownAndKeepsTheMaps) {
    sessionstate& s = SessionState;
    s.minLevel = 79.25F;
    s.maxLevel = 81.04F;
    s.maxRadius = 0.4F; // shown as nothing, which is not stored
    s.surferMethod = 0;
    s.mapCancelled = true;
    EXPECT_EQ(stale(openmappingoptions), "");
    std::string shown;
    for (const char* field : {"MinL", "MaxL", "Nx", "Ny", "MaxR", "Zvalue"}) shown += fieldtext(field) + "|";
    EXPECT_EQ(shown + incrementtext(), "79.3|81.0|50|50||.0|.1");
    EXPECT_EQ(s.minLevel, 79.3F);
    EXPECT_EQ(s.levelStep, 0.1F);
    EXPECT_EQ(s.maxRadius, 0.4F);
    EXPECT_EQ(s.surferMethod, 1);
    EXPECT_FALSE(s.mapCancelled);
    s.gridReady = 0; // what was out of date stays so
    openmappingoptions();
    EXPECT_EQ(s.gridReady, 0);
}

TEST_F(mappingoptionstest, FieldsStoreWhatTheyReadAs) {
    const struct {
        const char *field, *typed, *shown, *setting, *outofdate;
    } cases[] = {
        {"MinL", "-12.5dB", "-12.5dB", "-12.5", "contour"},
        {"MaxL", "level", "level", ".0", "contour"},
        {"MaxL", "1E+60", "1E+60", "120.0", ""}, // more than it can hold
        {"Nx", "500", "500", "500", "grid"},
        {"Nx", "800", "500", "500", "grid"},
        {"Ny", "0", "0", "50", ""},
        {"Ny", "-3", "-3", "50", ""},
        {"Ny", ".4", ".4", "50", ""},
        {"MaxR", "0", "0", "5", ""},
        {"MaxR", "12", "12", "12", ""},
        {"Zvalue", "1.5", "1.5", "1.5", ""},
        {"Zvalue", "", "", ".0", ""},
    };
    const sessionstate start = SessionState;
    for (const auto& each : cases) {
        SessionState = start;
        SCOPED_TRACE(std::string(each.field) + " " + each.typed);
        EXPECT_EQ(stale([&] { EXPECT_EQ(typefield(each.field, each.typed), each.shown); }), each.outofdate);
        EXPECT_EQ(fieldtext(each.field), each.setting);
    }
    typefield("MinL", "95");
    EXPECT_EQ(incrementtext(), "2.0"); // 25 dB
}

// A field at zero has no steps but for the radius, whose lowest step is no setting; both are meant.
TEST_F(mappingoptionstest, Spins) {
    const struct {
        const char *field, *before;
        bool up;
        const char *after, *setting;
    } presses[] = {
        {"MinL", "80.0", false, "75.0", "75.0"}, {"MaxL", "-5", true, ".0", ".0"},
        {"MaxL", ".0", true, ".0", "120.0"},     {"Nx", "498", true, "500", "500"},
        {"Ny", "5", false, "0", "50"},           {"Zvalue", "2", true, "2.1", "2.1"},
        {"Zvalue", ".1", false, "0", ".0"},      {"Zvalue", ".0", true, ".0", "7.0"},
        {"MaxR", "1", false, "0", "5"},          {"MaxR", "0", false, "0", "5"},
        {"MaxR", "-4", true, "1", "1"},          {"MaxR", "2.5", true, "3.5", "4"},
    };
    const sessionstate start = SessionState;
    for (const auto& each : presses) {
        SessionState = start;
        SessionState.mapThirdCoordinate = 7;
        SCOPED_TRACE(std::string(each.field) + " " + each.before);
        EXPECT_EQ(spinfield(each.field, each.before, each.up), each.after);
        EXPECT_EQ(fieldtext(each.field), each.setting);
    }
}

TEST_F(mappingoptionstest, Lists) {
    const struct {
        const char *list, *third, *outofdate;
    } lists[] = {{"ActFreq", "125", "grid"},
                 {"Parameter", "Lrev", "grid"},
                 {"Colsch", "White-Blue", ""},
                 {"Interpol", "Minimum curvature", "grid"}};
    for (const auto& [list, third, outofdate] : lists) {
        EXPECT_EQ(listentries(list)[2], third);
        EXPECT_EQ(stale([&] { choosefromlist(list, 2); }), outofdate) << list;
        EXPECT_EQ(listposition(list), 2);
    }
    const sessionstate& s = SessionState;
    EXPECT_EQ(s.parameterName + "|" + s.colourSchemeName, "Lrev|White-Blue");
    EXPECT_EQ(s.bandIndex + s.parameterIndex + s.surferMethod, 3 + 3 + 2);
}

TEST_F(mappingoptionstest, MirrorIsConfirmed) {
    // The question of the other planes names another axis than the box, which is meant.
    const std::pair<planechoice, std::string> planes[] = {
        {planechoice::XY, "X"}, {planechoice::YZ, "Y"}, {planechoice::XZ, "Y"}};
    for (const auto& [plane, axis] : planes)
        for (const bool sure : {true, false}) {
            SessionState.viewPlane = plane;
            scripted::clearcalls();
            scripted::expectbox("Warning", sure ? platform::answer::ok : platform::answer::cancel);
            EXPECT_EQ(stale([&] { EXPECT_EQ(tickmirror(true), sure); }), "grid");
            EXPECT_EQ(SessionState.mirror, sure);
            EXPECT_EQ(scripted::calls().front(),
                      "box|Warning|No check is made about your geometry, to verify that " + axis +
                          "-axis is effectively the simmetry axis. Are You sure that your geometry copes "
                          "with that assumption?|okcancel|exclamation|ok");
        }
    EXPECT_FALSE(tickmirror(false));
    EXPECT_EQ(std::string(thirdcaption()) + mirrorcaption().data(), "XZ map at Y (m):Mirror about Z axis");
}

TEST_F(mappingoptionstest, SurferBringsTheContours) {
    scripted::expectbox("Golden Software's SURFER must be installed!\nThe recommended version is Surfer 9",
                        platform::answer::ok);
    for (const bool ticked : {true, false}) {
        ticksurfer(ticked);
        EXPECT_EQ(SessionState.useSurfer, ticked);
        EXPECT_EQ(isenabled("MapDoContour2D") + isenabled("MapDoContour3D"), ticked ? 2 : 0);
    }
}

TEST_F(mappingoptionstest, BlankingAsksForItsFile) {
    writetext(inside("stage.bln"), "2,0\r\n1,2\r\n3,4\r\n");
    scripted::expectopen(inside("stage.bln"), "Load a Blanking File");
    EXPECT_EQ(stale([] { EXPECT_TRUE(tickblanking(true)); }), "grid");
    EXPECT_TRUE(SessionState.useBlanking);
    EXPECT_FALSE(tickblanking(false)); // asks nothing
    scripted::expectopen(scripted::cancelled);
    EXPECT_EQ(stale([] { EXPECT_FALSE(tickblanking(true)); }), "grid");
    EXPECT_FALSE(SessionState.useBlanking);
    EXPECT_EQ(BlankingLines.blanklineCount, 1);
}

TEST_F(mappingoptionstest, ColourFileKeepsTableAndMethod) {
    loadcolourtable();
    SessionState.surferMethod = 6;
    scripted::expectcolour(rgb(1, 2, 254));
    clickcolourentry(15);
    scripted::expectcolour(scripted::cancelled);
    clickcolourentry(7);
    EXPECT_EQ(scripted::callswith("colour"), (std::vector<std::string>{"colour 65535", "colour 32896"}));
    keepcolourtable();
    const std::string bytes = readtext(inside("RGB.BIN"));
    ASSERT_EQ(bytes.size(), 68U);
    EXPECT_EQ(bytes.substr(28, 4), std::string("\x80\x80\0\0", 4));
    EXPECT_EQ(bytes.substr(60), std::string("\x01\x02\xFE\0\x06\0\0\0", 8));
    const auto table = SessionState.rgbTable;
    SessionState.rgbTable = {};
    loadcolourtable();
    EXPECT_EQ(SessionState.rgbTable, table);
    EXPECT_EQ(SessionState.surferMethod, 6);

    std::filesystem::remove(inside("RGB.BIN"));
    std::filesystem::create_directory(inside("RGB.BIN"));
    scripted::expectbox("kept for this session only", platform::answer::ok);
    keepcolourtable();
}

} // namespace
} // namespace orv

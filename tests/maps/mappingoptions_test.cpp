// The rules of the mapping options, control by control, and the file of the user's colours.
#include "maps/mappingoptions.h"

#include "maps/blanking.h"
#include "maps/rgbsettings.h"
#include "tests/golden.h"

#include <utility>
#include <vector>

namespace orv {
namespace {

struct mappingoptionstest : sessiontest {
    std::vector<std::string> told;

    mappingoptionstest() {
        sessionstate& s = SessionState;
        s.Nx = s.Ny = 50;
        s.maxRadius = 5;
        s.minLevel = 80;
        s.maxLevel = 120;
        s.mapThirdCoordinate = 7;
        s.bandIndex = 12;
        s.parameterIndex = 1;
        s.colourSchemeIndex = 6;
        s.surferMethod = 1;
        s.gridReady = s.contourReady = -1;
    }
    ~mappingoptionstest() override { BlankingLines.blanklineCount = 0; }

    // All settings, and whether "grid" and "contour" are still good.
    static std::string settings() {
        const sessionstate& s = SessionState;
        std::string text;
        for (const char* field : {"MinL", "MaxL", "Nx", "Ny", "MaxR", "Zvalue"})
            text += fieldtext(field) + "|";
        text += incrementtext() + "|" + s.parameterName + "|" + s.colourSchemeName;
        for (const char* list : {"ActFreq", "Parameter", "Colsch", "Interpol"})
            text += "|" + std::to_string(listposition(list));
        for (const auto& [set, word] : {std::pair(s.mirror, " mirror"),
                                        {s.useBlanking, " blanking"},
                                        {s.useSurfer, " Surfer"},
                                        {s.gridReady != 0, " grid"},
                                        {s.contourReady != 0, " contour"}})
            text += set ? word : "";
        return text;
    }

    // Writes down what an act from the start on shows, and the settings behind it.
    template <class act>
    void tell(const std::string& what, act&& run) {
        const sessionstate start = SessionState;
        const std::string shown = run();
        told.push_back(what + " = " + shown + ": " + settings());
        SessionState = start;
    }
};

TEST_F(mappingoptionstest, OpeningStoresWhatIsShownAndKeepsTheMaps) {
    sessionstate& s = SessionState;
    s.minLevel = 79.25F;
    s.maxLevel = 81.04F;
    s.maxRadius = 0.4F; // shown as nothing, which is not stored
    s.surferMethod = 0;
    s.mapCancelled = true;
    openmappingoptions();
    EXPECT_EQ(settings(), "79.3|81.0|50|50||7.0|.1|||11|0|5|1 grid contour");
    EXPECT_EQ(s.minLevel, 79.3F);
    EXPECT_EQ(s.maxRadius, 0.4F);
    EXPECT_FALSE(s.mapCancelled);
    s.gridReady = 0; // what was out of date stays so
    openmappingoptions();
    EXPECT_EQ(s.gridReady, 0);
}

// A field at zero has no steps but for the radius, whose lowest step is no setting; both are meant.
TEST_F(mappingoptionstest, EachControlSetsItsOwn) {
    const std::pair<const char*, const char*> typed[] = {
        {"MinL", "-12.5dB"}, {"MinL", "95"},    {"MaxL", "level"}, {"MaxL", "1E+60"}, {"Nx", "500"},
        {"Nx", "800"},       {"Ny", "0"},       {"Ny", "-3"},      {"Ny", ".4"},      {"MaxR", "0"},
        {"MaxR", "12"},      {"Zvalue", "1.5"}, {"Zvalue", ""}};
    for (const auto& [field, text] : typed)
        tell(std::string(field) + " " + text, [&] { return typefield(field, text); });
    const std::tuple<const char*, const char*, bool> presses[] = {
        {"MinL", "80.0", false}, {"MaxL", "-5", true},  {"MaxL", ".0", true},    {"Nx", "498", true},
        {"Ny", "5", false},      {"Zvalue", "2", true}, {"Zvalue", ".1", false}, {"Zvalue", ".0", true},
        {"MaxR", "1", false},    {"MaxR", "0", false},  {"MaxR", "-4", true},    {"MaxR", "2.5", true}};
    for (const auto& [field, before, up] : presses)
        tell(std::string(field) + " " + before + (up ? " up" : " down"),
             [&] { return spinfield(field, before, up); });
    for (const char* list : {"ActFreq", "Parameter", "Colsch", "Interpol"})
        tell(list, [&] {
            choosefromlist(list, 2);
            return std::string(listentries(list)[2]);
        });
    // The question of the other planes names another axis than the box, which is meant.
    for (const planechoice plane : {planechoice::XY, planechoice::YZ, planechoice::XZ})
        for (const bool sure : {true, false}) {
            SessionState.viewPlane = plane;
            scripted::clearcalls();
            scripted::expectbox("Warning", sure ? platform::answer::ok : platform::answer::cancel);
            tell(std::string(thirdcaption()) + mirrorcaption().data(),
                 [&] { return tickmirror(true) == sure ? scripted::calls().front() : "not as answered"; });
        }
    tell("no mirror", [] { return tickmirror(false) ? "ticked" : "unticked"; });
    expectgolden("mappingoptions.txt", told);
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
    EXPECT_TRUE(tickblanking(true) && SessionState.useBlanking);
    EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0);
    EXPECT_FALSE(tickblanking(false)); // asks nothing
    scripted::expectopen(scripted::cancelled);
    SessionState.gridReady = -1;
    EXPECT_FALSE(tickblanking(true) || SessionState.useBlanking);
    EXPECT_EQ(SessionState.gridReady, 0);
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

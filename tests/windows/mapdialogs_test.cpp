// The dialogs "Mapping Options", "BLN Options", "View Options" and "RGB Settings": that their controls do
// what their rules say.
#include "windowtest.h"

#include "maps/blanking.h"

#include <QComboBox>
#include <QLabel>

namespace orv {
namespace {

struct mapdialogtest : windowtest {
    ~mapdialogtest() override { BlankingOptions = {}; }
};

TEST_F(mapdialogtest, MappingOptions) {
    SessionState.gridReady = SessionState.contourReady = -1;
    within("MappingOptions", [](const windowview& dialog) {
        EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, -2) << "filling is no change";
        EXPECT_EQ(dialog.control<QComboBox>("Colsch").currentText(), "Iris");
        dialog.control<QComboBox>("Parameter").setCurrentText("Ts");
        EXPECT_EQ(SessionState.parameterName, "Ts");
        dialog.type("Nx", "800");
        dialog.click("UpDown2_up");
        EXPECT_EQ(dialog.text("Nx") + "|" + dialog.text("MinL"), "500|85.0");
        dialog.type("MaxL", "87");
        EXPECT_EQ(dialog.control<QLabel>("Label10").text(), ".1");
        dialog.click("ARcheck");
        EXPECT_TRUE(SessionState.autorange && !dialog.enabled("UpDown1_up"));

        const QSize size = dialog.window.size();
        EXPECT_TRUE(dialog.shown("MaxR") && !dialog.shown("Interpol") && !dialog.shown("blanking"));
        dialog.click("Surfer");
        EXPECT_TRUE(!dialog.shown("MaxR") && !dialog.shown("SpinMaxR"));
        for (const char* box : {"blanking", "Check3d3"}) {
            EXPECT_TRUE(dialog.shown(box));
            dialog.click(box);
            EXPECT_FALSE(dialog.ticked(box)) << "the question was cancelled";
        }
        EXPECT_EQ(dialog.window.size(), size) << "what comes and goes has its place";

        dialog.click("Vopt");
        EXPECT_EQ(dialog.control<QLabel>("ThirdCoordLabel").text(), "YZ map at X (m):");
        dialog.click("Cancel");
    });
    answers::expectbox("SURFER must be installed", platform::answer::ok);
    answers::expectfile("Load a Blanking File", "");
    answers::expectbox("simmetry axis", platform::answer::cancel);
    within("ViewOptions", [](const windowview& above) { above.click("YZ"); });
    platform::showwindow("Mapping Options", true);
    EXPECT_TRUE(SessionState.mapCancelled);
    EXPECT_TRUE(windowview{form()}.ticked("YZ")) << "the main window shows the plane too";

    within("MappingOptions",
           [](const windowview& dialog) { QTest::keyClick(&dialog.control("Ny"), Qt::Key_Return); });
    platform::showwindow("Mapping Options", true);
    EXPECT_FALSE(SessionState.mapCancelled) << "Enter is OK";
}

TEST_F(mapdialogtest, ViewOptions) {
    within("ViewOptions", [](const windowview& dialog) {
        EXPECT_TRUE(dialog.ticked("Check1") && dialog.ticked("Check5"));
        EXPECT_FALSE(dialog.ticked("Check9") || dialog.ticked("CheckDXF"));
        EXPECT_TRUE(isenabled("DXFIN")) << "opening changes nothing";
        for (const char* name : {"Check5", "CheckDXF", "Picture9", "Command1"}) dialog.click(name);
        EXPECT_FALSE(dialog.window.isVisible());
    });
    answers::expectcolour(rgb(0, 128, 0));
    choose("ViewOpt");
    EXPECT_FALSE(ischecked("Vbln") || ischecked("BLNview"));
    EXPECT_TRUE(isenabled("DXFOUT"));
    EXPECT_EQ(SessionState.colourRays, rgb(0, 128, 0));
}

TEST_F(mapdialogtest, RGBSettings) {
    within("RGBSettings", [](const windowview& dialog) {
        for (const char* name : {"shape_15", "numlab_0", "Command1"}) dialog.click(name);
    });
    answers::expectcolour(rgb(1, 2, 3));
    answers::expectcolour(rgb(4, 5, 6));
    platform::showwindow("RGB Settings", true);
    EXPECT_EQ(SessionState.rgbTable[15], rgb(1, 2, 3));
    EXPECT_EQ(SessionState.rgbTable[0], rgb(4, 5, 6));
    EXPECT_EQ(filesize(inside("RGB.BIN")), 68U);
}

TEST_F(mapdialogtest, BlankingOptionsRefuseAGridOfNoSize) {
    BlankingOptions = {};
    within("BLNopt", [](const windowview& dialog) {
        EXPECT_TRUE(dialog.ticked("BLNinside"));
        dialog.click("BLNoutside");
        dialog.click("Snap");
        dialog.type("gridsize", "0 m");
        answers::expectbox("size 0", platform::answer::ok);
        dialog.click("Command1");
        EXPECT_TRUE(dialog.window.isVisible()) << "the line would be lost";
        dialog.type("gridsize", "0.25");
        dialog.click("Command1");
    });
    runcommand("BLNoptions");
    EXPECT_TRUE(BlankingOptions.outside && BlankingOptions.snap && !BlankingOptions.ortho);
    EXPECT_EQ(BlankingOptions.gridsize, "0.25");
}

} // namespace
} // namespace orv

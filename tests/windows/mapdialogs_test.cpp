// The dialogs "Mapping Options", "View Options" and "RGB Settings": that their controls do what their rules
// say.
#include "windowtest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>

namespace orv {
namespace {

struct mapdialogtest : windowtest {
    static void click(const QWidget& dialog, const char* name) {
        QWidget& clicked = *dialog.findChild<QWidget*>(name);
        QTest::mouseClick(&clicked, Qt::LeftButton, {}, QPoint(8, clicked.height() / 2));
        QTest::qWait(1);
    }
    static QString text(const QWidget& dialog, const char* name) {
        return dialog.findChild<QLineEdit*>(name)->text();
    }
    static void type(const QWidget& dialog, const char* name, const char* typed) {
        QLineEdit& field = *dialog.findChild<QLineEdit*>(name);
        field.selectAll();
        QTest::keyClicks(&field, typed);
    }
};

TEST_F(mapdialogtest, MappingOptions) {
    SessionState.gridReady = SessionState.contourReady = -1;
    answers::expectwindow("MappingOptions", [](QWidget& dialog) {
        EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, -2) << "filling is no change";
        EXPECT_EQ(dialog.findChild<QComboBox*>("Colsch")->currentText(), "Iris");
        dialog.findChild<QComboBox*>("Parameter")->setCurrentText("Ts");
        EXPECT_EQ(SessionState.parameterName, "Ts");
        type(dialog, "Nx", "800");
        EXPECT_EQ(text(dialog, "Nx"), "500");
        click(dialog, "UpDown2_up");
        EXPECT_EQ(text(dialog, "MinL"), "85.0");
        type(dialog, "MaxL", "87");
        EXPECT_EQ(dialog.findChild<QLabel*>("Label10")->text(), ".1");
        click(dialog, "ARcheck");
        EXPECT_TRUE(SessionState.autorange);
        EXPECT_FALSE(dialog.findChild<QWidget*>("UpDown1_up")->isEnabled());

        const QSize size = dialog.size();
        const auto shown = [&](const char* name) { return dialog.findChild<QWidget*>(name)->isVisible(); };
        EXPECT_TRUE(shown("MaxR") && !shown("Interpol") && !shown("blanking"));
        click(dialog, "Surfer");
        EXPECT_TRUE(!shown("MaxR") && !shown("SpinMaxR") && shown("Interpol") && shown("blanking"));
        click(dialog, "blanking");
        click(dialog, "Check3d3");
        for (const char* box : {"blanking", "Check3d3"})
            EXPECT_FALSE(dialog.findChild<QCheckBox*>(box)->isChecked()) << "the question was cancelled";
        EXPECT_EQ(dialog.size(), size) << "what comes and goes has its place";

        click(dialog, "Vopt");
        EXPECT_EQ(dialog.findChild<QLabel*>("ThirdCoordLabel")->text(), "YZ map at X (m):");
        click(dialog, "Cancel");
    });
    answers::expectbox("SURFER must be installed", platform::answer::ok);
    answers::expectfile("Load a Blanking File", "");
    answers::expectbox("simmetry axis", platform::answer::cancel);
    answers::expectwindow("ViewOptions", [](QWidget& above) {
        click(above, "YZ");
        click(above, "Command1");
    });
    platform::showwindow("Mapping Options", true);
    EXPECT_TRUE(SessionState.mapCancelled);
    EXPECT_TRUE(control<QRadioButton>("YZ").isChecked()) << "the main window shows the plane too";

    answers::expectwindow("MappingOptions", [](QWidget& dialog) {
        QTest::keyClick(dialog.findChild<QLineEdit*>("Ny"), Qt::Key_Return);
    });
    platform::showwindow("Mapping Options", true);
    EXPECT_FALSE(SessionState.mapCancelled) << "Enter is OK";
}

TEST_F(mapdialogtest, ViewOptions) {
    answers::expectwindow("ViewOptions", [](QWidget& dialog) {
        const auto ticked = [&](const char* name) { return dialog.findChild<QCheckBox*>(name)->isChecked(); };
        EXPECT_TRUE(ticked("Check1") && ticked("Check5") && !ticked("Check9") && !ticked("CheckDXF"));
        EXPECT_TRUE(isenabled("DXFIN")) << "opening changes nothing";
        click(dialog, "Check5");
        click(dialog, "CheckDXF");
        click(dialog, "Picture9");
        click(dialog, "Command1");
    });
    answers::expectcolour(rgb(0, 128, 0));
    choose("ViewOpt");
    EXPECT_FALSE(ischecked("Vbln") || ischecked("BLNview"));
    EXPECT_TRUE(isenabled("DXFOUT"));
    EXPECT_EQ(SessionState.colourRays, rgb(0, 128, 0));
}

TEST_F(mapdialogtest, RGBSettings) {
    answers::expectwindow("RGBSettings", [](QWidget& dialog) {
        click(dialog, "shape_15");
        click(dialog, "numlab_0");
        click(dialog, "Command1");
    });
    answers::expectcolour(rgb(1, 2, 3));
    answers::expectcolour(rgb(4, 5, 6));
    platform::showwindow("RGB Settings", true);
    EXPECT_EQ(SessionState.rgbTable[15], rgb(1, 2, 3));
    EXPECT_EQ(SessionState.rgbTable[0], rgb(4, 5, 6));
    EXPECT_EQ(filesize(inside("RGB.BIN")), 68U);
}

} // namespace
} // namespace orv

// Steps: posted values, maps and contours, blanking lines.
#include "base/files.h"
#include "maps/blanking.h"
#include "platform/qt/answers.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"
#include "tour/checks.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

namespace orv::tour {

namespace {

std::string blankinglinefile;

// A map with the options given: the scheme, the lowest and highest level from the receivers' values.
void drawmosaic(const char* command, const char* scheme, const char* plane) {
    answers::expectwindow("MappingOptions", [=](QWidget& dialog) {
        dialog.findChild<QComboBox*>("Colsch")->setCurrentText(scheme);
        auto* const third = dialog.findChild<QLineEdit*>("Zvalue");
        third->selectAll();
        QTest::keyClicks(third, plane);
        auto* const autorange = dialog.findChild<QCheckBox*>("ARcheck");
        if (!autorange->isChecked()) clickin(dialog, "ARcheck");
        clickin(dialog, "Command1");
    });
    const std::size_t before = picturesum();
    choose(command);
    checkredrawn(before);
    check(SessionState.mapKind == "Dither" && SessionState.minLevel < SessionState.maxLevel,
          "there is no map");
}

// Contours are offered only with the engine.
void useengine(bool used) {
    answers::expectwindow("MappingOptions", [=](QWidget& dialog) {
        if (!used) clickboxto(dialog, "blanking", false);
        clickboxto(dialog, "Surfer", used);
        clickin(dialog, "Command1");
    });
    if (used) answers::expectbox("SURFER must be installed", platform::answer::ok);
    choose("MapOptions");
}

// A gridded map by one of the methods.
void drawgridded(const char* command, const char* kind, const char* method, const char* scheme,
                 bool blanked) {
    answers::expectwindow("MappingOptions", [=](QWidget& dialog) {
        clickboxto(dialog, "blanking", blanked);
        dialog.findChild<QComboBox*>("Interpol")->setCurrentText(method);
        dialog.findChild<QComboBox*>("Colsch")->setCurrentText(scheme);
        auto* const third = dialog.findChild<QLineEdit*>("Zvalue");
        third->selectAll();
        QTest::keyClicks(third, "1.2");
        clickin(dialog, "Command1");
    });
    if (blanked && !SessionState.useBlanking) answers::expectfile("Load a Blanking File", blankinglinefile);
    const std::size_t before = picturesum();
    choose(command);
    checkredrawn(before);
    check(SessionState.mapKind == kind && SessionState.gridReady != 0, "there is no map from a grid");
}

void clickpicture(double x, double y) {
    const DrawSurface& surface = platform::picture();
    const QPoint at(static_cast<int>(std::lround(surface.toDeviceX(x) / surface.scale)),
                    static_cast<int>(std::lround(surface.toDeviceY(y) / surface.scale)));
    QWidget& shown = *MainWindow->picturewidget;
    QTest::mouseMove(&shown, at);
    QTest::mouseEvent(QTest::MouseMove, &shown, Qt::NoButton, {}, at);
    QTest::mouseClick(&shown, Qt::LeftButton, {}, at);
}

} // namespace

// The posted value and its band; Surfer's warning and the controls it brings, then without it again.
void mappingoptions() {
    answers::expectwindow("MappingOptions", [](QWidget& dialog) {
        dialog.findChild<QComboBox*>("Parameter")->setCurrentText("C80");
        dialog.findChild<QComboBox*>("ActFreq")->setCurrentText("1000");
        picture("mapping-options");
        clickin(dialog, "Surfer");
        picture("mapping-options-surfer");
        clickin(dialog, "Surfer");
        clickin(dialog, "Command1");
    });
    answers::expectbox("SURFER must be installed", platform::answer::ok,
                       [](QWidget&) { picture("surfer-warning"); });
    choose("MapOptions");
    check(SessionState.parameterName == "C80" && SessionState.bandIndex == band1k, "it is not C80 at 1 kHz");
}

void rgbsettings() {
    answers::expectwindow("RGBSettings", [](QWidget& dialog) {
        picture("rgb-settings");
        clickin(dialog, "Command1");
    });
    choose("RGBOpt");
    check(filesize(datafile("RGB.BIN")) == 68, "RGB.BIN was not written whole");
}

void posted() {
    clickanddraw("XY");
}

void mapinplan() {
    drawmosaic("MapDoDither2D", "Iris", "1.2");
}

void mapinsection() {
    clickanddraw("XZ");
    drawmosaic("MapDoDither2D", "White-Black", "10");
    picture("map-2d-section");
    clickanddraw("XY");
}

void mapinspace() {
    drawmosaic("MapDoDither3D", "Blue-Red", "1.2");
}

void mapinspacesection() {
    SessionState.viewPlane = planechoice::YZ; // as View Options sets it, without a redraw
    drawmosaic("MapDoDither3D", "Green-Red", "18");
    SessionState.viewPlane = planechoice::XY;
}

// --- Contours and blanking lines ---

void contoursinplan() {
    useengine(true);
    drawgridded("MapDoContour2D", "Contour", "Kriging", "Iris", false);
    picture("contours-2d");
    drawgridded("MapDoDither2D", "Dither", "Radial basis function", "Iris", false);
}

// A line on the half metre that is thrown away, then one that is kept and saved.
void enterblankingline() {
    const auto begin = [](bool outside, const char* picturename) {
        answers::expectwindow("BLNopt", [=](QWidget& dialog) {
            clickin(dialog, outside ? "BLNoutside" : "BLNinside");
            clickboxto(dialog, "Snap", true);
            auto* const size = dialog.findChild<QLineEdit*>("gridsize");
            size->selectAll();
            QTest::keyClicks(size, ".5");
            if (picturename) picture(picturename);
            clickin(dialog, "Command1");
        });
        choose("BLNadd");
    };
    begin(false, "blanking-options");
    clickpicture(5.1, 5.1);
    press(Qt::Key_Escape);
    check(BlankingLines.blanklineCount == 0, "Escape has kept the line");
    begin(true, nullptr);
    for (const auto& [x, y] : {std::pair{8.1, -8.4}, {26.1, -8.4}, {32.1, -3.4}, {32.1, 3.6}, {26.1, 8.6}})
        clickpicture(x, y);
    picture("blanking-line");
    clickpicture(8.1, 8.6);
    clickpicture(8.1, -8.4);
    check(BlankingLines.blanklinePoints(1) == 7 && BlankingLines.addingLine == 0, "the line is not closed");
    blankinglinefile = sessionfile("stalls.bln");
    answers::expectfile("Save a Blanking File", blankinglinefile);
    choose("BLNsave");
}

void blankedmap() {
    drawgridded("MapDoDither2D", "Dither", "Minimum curvature", "Iris", true);
    picture("map-2d-blanked");
    drawgridded("MapDoContour2D", "Contour", "Minimum curvature", "R-G-B", true);
    picture("contours-2d-blanked");
    useengine(false);
    choose("BLNnew");
    check(BlankingLines.blanklineCount == 0, "there still is a line");
}

void contoursinspace() {
    useengine(true);
    drawgridded("MapDoContour3D", "Contour", "Radial basis function", "Blue-Red", false);
    picture("contours-3d");
    useengine(false);
}

void surfermenu() {
    choose("SurfEnable");
    lookintomenu("Sur", "menu-surfer");
    answers::expectbox("GRIDw.PIF", platform::answer::ok, [](QWidget&) { picture("surfer-missing"); });
    choose("SurfGrid");
    choose("SurfEnable");
}

} // namespace orv::tour

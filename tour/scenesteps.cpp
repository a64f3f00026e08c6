// Steps: the views of the room and the camera.
#include "platform/qt/answers.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"
#include "tour/checks.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <QTest>

#include <cmath>
#include <cstddef>

namespace orv::tour {

namespace {

void dragpicture(Qt::MouseButton button, const QPoint& by, const char* picturename) {
    QWidget& shown = *MainWindow->picturewidget;
    const QPoint from = shown.rect().center();
    const std::size_t before = picturesum();
    QTest::mousePress(&shown, button, {}, from);
    QTest::mouseEvent(QTest::MouseMove, &shown, button, {}, from + by / 2);
    QTest::mouseEvent(QTest::MouseMove, &shown, button, {}, from + by);
    picture(picturename);
    QTest::mouseRelease(&shown, button, {}, from + by);
    checkredrawn(before);
}

} // namespace

void sideview() {
    clickanddraw("YZ");
}

void longview() {
    clickanddraw("XZ");
}

void viewoptions() {
    answers::expectwindow("ViewOptions", [](QWidget& dialog) {
        clickin(dialog, "Picture7");
        picture("view-options");
        clickin(dialog, "Command1");
    });
    answers::expectcolour(rgb(0, 0, 0));
    choose("ViewOpt");
    check(SessionState.colourPosted == rgb(0, 0, 0), "the posted values are not black");
}

void zoom() {
    typeanddraw("FocLenght", "150");
}

void spatial() {
    type("FocLenght", "50");
    const std::size_t before = picturesum();
    choose("Redraw");
    checkredrawn(before);
    click("Redisplay");
}

void focallength() {
    clickanddraw("SpinFocal_down");
    clickanddraw("SpinFocal_down");
    check(std::lround(static_cast<double>(SessionState.focalLength) * 1000) == 24, "it is not 24 mm");
}

void cameratyped() {
    typeanddraw("CamX", "48");
    typeanddraw("CamY", "-24");
    typeanddraw("CamZ", "20");
}

void cameraspun() {
    for (int i = 0; i < 3; ++i) clickanddraw("Spin2_down");
    clickanddraw("Spin7_down");
    check(std::lround(static_cast<double>(SessionState.cameraX)) == 33, "the camera is not at 33 m");
}

void orbit() {
    dragpicture(Qt::RightButton, QPoint(60, 40), "3d-orbiting");
}

void panned() {
    dragpicture(Qt::LeftButton, QPoint(120, -60), "3d-panning");
    check(SessionState.panX < 0 && SessionState.panY > 0, "the pan is not that of the drag");
    SessionState.panX = SessionState.panY = 0;
}

} // namespace orv::tour

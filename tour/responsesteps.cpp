// Steps: the impulse response and the ray paths.
#include "platform/platform.h"
#include "platform/qt/answers.h"
#include "response/responseplot.h"
#include "results/parameterset.h"
#include "scene/modelpoints.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"
#include "tour/checks.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <QApplication>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orv::tour {

namespace {

QWidget& responsewindow() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == "ImpulseResponse" && window->isVisible()) return *window;
    check(false, "the impulse response window is not shown");
    return *MainWindow->form;
}

QWidget& plotof(QWidget& window) {
    return *window.findChild<QWidget*>("Picture1");
}

// The plot's pixel at a time and level.
QPoint plotpoint(const QWidget& plot, double time, double level) {
    const double start = static_cast<double>(SessionState.viewStart);
    const double span = static_cast<double>(SessionState.viewEnd) - start;
    const double x = (time - start + 0.05 * span) / (1.1 * span) * plot.width();
    return QPoint(static_cast<int>(x), static_cast<int>((130 - level) / 140 * plot.height()));
}

// The picture's pixel of a receiver in the 3D view.
QPoint receiverpixel(std::int32_t receiver) {
    const DrawSurface& picture = platform::picture();
    const picturepoint at = projectpoint(receiverpoint(receiver));
    return QPoint(static_cast<int>(picture.toDeviceX(at.x) / picture.scale),
                  static_cast<int>(picture.toDeviceY(at.y) / picture.scale));
}

} // namespace

// The decay between 0.2 and 1 s of the sample hall at 1 kHz is the receiver's T20, as near as the eye has it.
void impulseresponse() {
    answers::expectwindow("ImpulseResponse", [](QWidget& window) {
        QWidget& plot = plotof(window);
        QTest::mouseClick(window.findChild<QPushButton*>("schlabel"), Qt::LeftButton);
        QTest::mouseClick(&plot, Qt::LeftButton, {}, plotpoint(plot, 0.2, 60));
        QTest::mouseClick(&plot, Qt::RightButton, {}, plotpoint(plot, 1, 60));
        picture("impulse-response");
        const double measured = static_cast<double>(ResponsePlot.measuredDecay);
        const double known = static_cast<double>(ParameterSet.T20(1, band1k));
        check(std::fabs(measured - known) < 0.15 * known,
              "the measured decay is " + std::to_string(measured) + " s and the receiver's T20 " +
                  std::to_string(known));
        QTest::mousePress(&plot, Qt::LeftButton, {}, plotpoint(plot, 0.02, 100));
        QTest::mouseEvent(QTest::MouseMove, &plot, Qt::LeftButton, {}, plotpoint(plot, 0.2, 40));
        picture("impulse-response-drag");
        QTest::mouseRelease(&plot, Qt::LeftButton, {}, plotpoint(plot, 0.2, 40));
        picture("impulse-response-zoom");
        check(SessionState.viewEnd < 0.25F, "the drag has not zoomed");
        QTest::keyClick(&plot, Qt::Key_Escape);
        check(SessionState.viewEnd > 2, "Escape has not shown the whole response");
        window.close();
    });
    choose("ViewImpulse");
}

// One path in the scene and in the plot; without it the scene is as before.
void raypaths() {
    type("FocLenght", "24");
    choose("Redraw");
    const std::size_t before = picturesum();
    choose("viewraypaths");
    QWidget& window = responsewindow();
    window.resize(700, 460);
    window.move(MainWindow->form->pos() + QPoint(560, 560));
    QTest::mouseClick(MainWindow->picturewidget, Qt::LeftButton, {}, receiverpixel(14));
    check(ResponsePlot.RecNo == 14, "the click has chosen receiver " + std::to_string(ResponsePlot.RecNo));
    QTest::keyClick(&plotof(window), Qt::Key_Up);
    QTest::keyClick(&plotof(window), Qt::Key_Right);
    picture("ray-path");
    check(SessionState.markedPath == 7, "the marked path is " + std::to_string(SessionState.markedPath));
    choose("viewraypaths");
    check(picturesum() == before, "something of the path is left in the scene");
}

} // namespace orv::tour

// What steps of several subjects do and look at.
#include "tour/checks.h"

#include "base/files.h"
#include "platform/qt/answers.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "shell/mainwindow.h"
#include "tour/guide.h"

#include <QCheckBox>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>

namespace orv::tour {

std::vector<double> savedroom() {
    const roommodel& R = RoomModel;
    std::vector<double> numbers;
    const auto add = [&numbers](auto... values) { (numbers.push_back(static_cast<double>(values)), ...); };
    add(R.faceCount, R.holeCount, R.doorCount, R.sourceCount, R.receiverCount);
    for (int i = 1; i <= R.faceCount; ++i) {
        add(R.faceLayerFlag(i), R.faceMaterial(i), R.faceVertexCount(i));
        for (int v = 1; v <= R.faceVertexCount(i); ++v)
            add(R.faceVertexX(i, v), R.faceVertexY(i, v), R.faceVertexZ(i, v));
    }
    for (int i = 1; i <= R.holeCount; ++i) {
        add(R.holeFace(i), R.holeLayerFlag(i), R.holeMaterial(i), R.holeVertexCount(i));
        for (int v = 1; v <= R.holeVertexCount(i); ++v)
            add(R.holeVertexX(i, v), R.holeVertexY(i, v), R.holeVertexZ(i, v));
    }
    for (int i = 1; i <= R.doorCount; ++i) {
        add(R.doorFace(i), R.doorLayerFlag(i), R.doorMaterial(i), R.doorVertexCount(i));
        for (int v = 1; v <= R.doorVertexCount(i); ++v)
            add(R.doorVertexX(i, v), R.doorVertexY(i, v), R.doorVertexZ(i, v));
    }
    for (int i = 1; i <= R.sourceCount; ++i)
        add(R.sourceX(i), R.sourceY(i), R.sourceZ(i), R.sourceAimX(i), R.sourceAimY(i), R.sourceAimZ(i),
            R.sourceAimExtra(i));
    for (int i = 1; i <= R.receiverCount; ++i)
        add(R.receiverX(i), R.receiverY(i), R.receiverZ(i), R.receiverAimX(i), R.receiverAimY(i),
            R.receiverAimZ(i));
    return numbers;
}

void checktitle(const std::string& beginning) {
    const std::string title = pagetext(MainWindow->form->windowTitle().toStdString());
    check(title.starts_with(pagetext(beginning)),
          "the title is \"" + title + "\", not \"" + pagetext(beginning) + "...\"");
}

void checkredrawn(std::size_t before) {
    check(picturesum() != before, "the picture is the same as before");
}

void clickanddraw(const char* button) {
    const std::size_t before = picturesum();
    click(button);
    checkredrawn(before);
}

void typeanddraw(const char* field, const char* text) {
    const std::size_t before = picturesum();
    type(field, text);
    checkredrawn(before);
}

void clickin(const QWidget& dialog, const char* name) {
    QTest::mouseClick(dialog.findChild<QWidget*>(name), Qt::LeftButton, {}, QPoint(8, 8));
}

void clickboxto(QWidget& dialog, const char* box, bool ticked) {
    if (dialog.findChild<QCheckBox*>(box)->isChecked() != ticked) clickin(dialog, box);
}

void expectspeechindex(platform::answer keep, answers::look options) {
    answers::expectwindow("STIOptions", [options](QWidget& dialog) {
        if (options) options(dialog);
        QTest::mouseClick(dialog.findChild<QPushButton*>("Done"), Qt::LeftButton);
    });
    answers::expectbox("save the computed parameters", keep);
}

void checkdecay() {
    const double t30 = static_cast<double>(ParameterSet.T30(0, band1k));
    check(t30 > 1 && t30 < 3, "the hall's T30 at 1 kHz is " + std::to_string(t30) + " s");
}

} // namespace orv::tour

// Steps: results, and the parameters in their tables.
#include "base/files.h"
#include "platform/qt/answers.h"
#include "results/parameterset.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "shell/mainwindow.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"
#include "tour/checks.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTest>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>

namespace orv::tour {

namespace {

// Opens a table from its menu, takes a picture of it and copies it. Returns the copied text.
std::string copytable(const char* command, const char* picturename, answers::look inside = {}) {
    answers::expectwindow("Table", [picturename, inside](QWidget& table) {
        if (inside) inside(table);
        picture(picturename);
        QTest::mouseClick(table.findChild<QPushButton*>("CopyTable"), Qt::LeftButton);
        QTest::mouseClick(table.findChild<QPushButton*>("CloseTable"), Qt::LeftButton);
    });
    choose(command);
    return QGuiApplication::clipboard()->text().toStdString();
}

void checktable(const std::string& text, std::ptrdiff_t rows, const std::string& heading) {
    check(std::count(text.begin(), text.end(), '\n') + 1 == rows && text.find(heading) != std::string::npos,
          "the copied table begins with \"" + text.substr(0, 60) + "\"");
}

} // namespace

void openresult() {
    std::filesystem::remove(datafile("hall.-01")); // of a former round
    answers::expectfile("Load an Impulse Response File and its Geometry", datafile("hall._01"),
                        [](QWidget&) { picture("open-dialog"); });
    expectspeechindex(platform::answer::yes, [](QWidget& dialog) {
        QTest::mouseClick(dialog.findChild<QRadioButton*>("BackNoisePresent"), Qt::LeftButton);
        picture("sti-options");
        QTest::mouseClick(dialog.findChild<QRadioButton*>("BackNoiseNotInfluent"), Qt::LeftButton);
    });
    watchlog("loading", [] { choose("OpenRes"); });
    check(ImpulseResponse.receivers == receivers, "the result was not read whole");
    check(RoomModel.faceCount > 0 && RoomModel.sourceCount == sources, "the room was not read whole");
    check(MainWindow->area->currentWidget() == MainWindow->picturewidget, "the picture is not shown");
    checkdecay();
    checktitle(datafile("hall.RAY"));
    replacefile(sessionfile("loading.txt"), MainWindow->logtext);
    check(canopen(datafile("hall.-01")), "the parameters were not kept");
    std::filesystem::copy_file(datafile("hall.-01"), sessionfile("hall.-01"),
                               std::filesystem::copy_options::overwrite_existing);
    const auto index = static_cast<double>(ParameterSet.STI(0, 11));
    check(index > 0.3 && index < 0.7, "the hall's STI-Male is " + std::to_string(index));
}

void decaytable() {
    const std::string text = copytable("T_T30", "table-t30");
    checktable(text, receivers + 2, "Room");
    replacefile(sessionfile("table-t30.txt"), text);
}

void onereceiver() {
    const std::string text = copytable("SingleRec", "table-receiver", [](QWidget& table) {
        table.findChild<QComboBox*>("RecNo")->setCurrentIndex(11);
    });
    checktable(text, static_cast<std::ptrdiff_t>(parameterNames.size()), "Leq-Lw");
}

void roundrobin() {
    checktable(copytable("R_Robin", "table-round-robin"), 10, "R30");
}

// With background noise the index falls; the parameter file stays as it is.
void speechindex() {
    const float before = ParameterSet.STI(12, 11);
    answers::expectwindow("STIOptions", [](QWidget& dialog) {
        QTest::mouseClick(dialog.findChild<QRadioButton*>("BackNoisePresent"), Qt::LeftButton);
        SessionState.noiseLevel.fill(85);
        QTest::mouseClick(dialog.findChild<QPushButton*>("Done"), Qt::LeftButton);
    });
    answers::expectbox("could have been changed", platform::answer::cancel);
    choose("STIopt");
    check(ParameterSet.STI(12, 11) < before, "noise has not lowered the index");
}

// The second time the parameters alone can be taken, and the noise is that of the file again.
void parametersalone() {
    answers::expectfile("Load an Impulse Response File and its Geometry", datafile("hall._01"));
    answers::expectbox("only the acoustical parameters", platform::answer::yes);
    choose("OpenRes");
    check(SessionState.parameterSource < 0 && SessionState.backgroundNoiseFlag == 0,
          "the parameters were not taken from their file");
    check(!isenabled("ViewImpulse"), "there are no responses to look at");
    checkdecay();
}

void otherresult() {
    type("FocLenght", "50");
    const float before = ParameterSet.Leq(1, linearband);
    answers::expectfile("Load an Impulse Response File", datafile("hall._03"));
    expectspeechindex(platform::answer::no);
    choose("MapLoad");
    // Two sources where there was one.
    check(ParameterSet.Leq(1, linearband) > before, "the levels have not risen");
    checkdecay();
}

// In the old format; no room lies beside it, so that the program asks for one, with the whole log behind.
void roomelsewhere() {
    std::filesystem::copy_file(datafile("hall._05"), datafile("elsewhere._05"),
                               std::filesystem::copy_options::overwrite_existing);
    answers::expectfile("Load an Impulse Response File and its Geometry", datafile("elsewhere._05"));
    expectspeechindex(platform::answer::no);
    answers::expectfile("Load a Orvanta CAD File", datafile("hall.RAY"), [](QWidget& dialog) {
        dialog.move(dialog.pos() + QPoint(250, 100));
        picture("log-and-room-dialog");
    });
    choose("OpenRes");
    check(ResultSet.resultFormat < 1.2 && ImpulseResponse.receivers == receivers,
          "the old format was not read");
    checkdecay();
    checktitle(datafile("hall.RAY"));
}

} // namespace orv::tour

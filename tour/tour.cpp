// The tour: one typical session in the real main window, step by step, without anybody there. It is run by
// tour/run, in a data directory of its own with the sample hall.
//
// A new step is a routine here and a row in the table; guide.h has what it can do.
#include "tour/guide.h"

#include "base/files.h"
#include "maps/blanking.h"
#include "platform/qt/answers.h"
#include "platform/qt/platformqt.h"
#include "response/responseplot.h"
#include "results/parameterset.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "scene/modelpoints.h"
#include "shell/mainwindow.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace orv::tour {

namespace {

constexpr int receivers = 30, sources = 2; // of the sample hall
constexpr int band1k = 6;
constexpr std::size_t smallestpdf = 1000; // bytes of a page with something on it

// What of the room a save keeps, number by number: all but the wall groups and the ray lines.
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
    const std::string title = MainWindow->form->windowTitle().toStdString();
    check(title.starts_with(beginning), "the title is \"" + title + "\", not \"" + beginning + "...\"");
}

// Something has been drawn since `before`.
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

// The dialogs that a load with responses brings: the options of the speech index, and whether to keep the
// parameters.
void expectspeechindex(platform::answer keep, answers::look options = {}) {
    answers::expectwindow("STIOptions", [options](QWidget& dialog) {
        if (options) options(dialog);
        QTest::mouseClick(dialog.findChild<QPushButton*>("Done"), Qt::LeftButton);
    });
    answers::expectbox("save the computed parameters", keep);
}

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

// The room's mean is that of a hall of this size and these materials.
void checkdecay() {
    const double t30 = static_cast<double>(ParameterSet.T30(0, band1k));
    check(t30 > 1 && t30 < 3, "the hall's T30 at 1 kHz is " + std::to_string(t30) + " s");
}

// --- The steps ---

void start() {
    showmainwindow();
    check(QTest::qWaitForWindowExposed(MainWindow->form.get()), "the window does not show");
    std::printf("(%.0f ms from the start of the process) ", processage());
    checktitle("Orvanta View v. 3.10");
    check(MainWindow->area->currentWidget() == MainWindow->emptystate, "there is something to see already");
}

void filemenu() {
    lookintomenu("File", "file-menu");
}

void cancelled() {
    answers::expectfile("Load a Orvanta CAD File", "");
    choose("FLoad");
    check(RoomModel.faceCount == 0 && !isenabled("Fsave"), "a cancelled dialog changed something");
}

void openresult() {
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

// --- Export to WAV ---

// Exports receiver 12 in a format; the file lies in the session's directory. Its size is that of the whole
// response at 48 kHz.
void exportformat(QWidget& dialog, const char* label, std::uint64_t samples) {
    auto& formats = *dialog.findChild<QComboBox*>("Outformat");
    formats.setCurrentIndex(formats.findText(label));
    QTest::mouseClick(dialog.findChild<QPushButton*>("StartExport"), Qt::LeftButton);
    const std::string file = sessionfile("hall_01_" + std::string(label) + "_012.wav");
    constexpr std::uint64_t headersize = 44, rate = 48000, seconds = 3;
    check(canopen(file) && filesize(file) == headersize + 4 * samples * rate * seconds,
          file + " is not as long as the response");
}

void exportwav() {
    answers::expectwindow("WavExport", [](QWidget& dialog) {
        dialog.findChild<QComboBox*>("RecNo")->setCurrentIndex(11);
        auto& radix = *dialog.findChild<QLineEdit*>("FileRadix");
        radix.selectAll();
        QTest::keyClicks(&radix, QString::fromStdString(sessiondirectory() + "/hall.wav"));
        exportformat(dialog, "1ch_Omni", 1);
        exportformat(dialog, "2ch_Stereo", 2);
        exportformat(dialog, "16ch_3rd_order_Ambisonics_(Ambix)", 16);
        exportformat(dialog, "4x4_MIMO_Ambix1xAmbix1", 16);
        picture("export-wav");
        QTest::mouseClick(dialog.findChild<QPushButton*>("Command2"), Qt::LeftButton);
    });
    choose("ExportWAV");
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

void sideview() {
    clickanddraw("YZ");
}

void longview() {
    clickanddraw("XZ");
}

// --- Dialogs of the maps and the scene ---

void clickin(const QWidget& dialog, const char* name) {
    QTest::mouseClick(dialog.findChild<QWidget*>(name), Qt::LeftButton, {}, QPoint(8, 8));
}

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

void saveroom() {
    const std::vector<double> room = savedroom();
    const std::string path = sessionfile("saved.ray");
    answers::expectfile("Save a Orvanta CAD File", path, [](QWidget&) { picture("save-dialog"); });
    choose("Fsave");
    resetroom();
    answers::expectfile("Load a Orvanta CAD File", path);
    choose("FLoad");
    check(savedroom() == room, "the saved room is not the one that was shown");
}

void copypicture() {
    choose("Copy");
    const QImage copied = QGuiApplication::clipboard()->image();
    check(copied.size() == MainWindow->picture.image.size(), "the clipboard does not hold the picture");
}

void print() {
    const std::string path = sessionfile("printed.pdf");
    answers::expectprint(path);
    choose("Cprint");
    check(canopen(path) && filesize(path) > smallestpdf, "nothing was printed");
}

void about() {
    answers::expectwindow("About", [](QWidget& window) {
        picture("about");
        QTest::keyClick(&window, Qt::Key_Return);
    });
    choose("HAbout");
}

void helpkey() {
    answers::expectbox("Sorry, no help still available", platform::answer::ok,
                       [](QWidget&) { picture("help-key"); });
    press(Qt::Key_F1);
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
    std::filesystem::copy_file(datafile("hall._05"), datafile("elsewhere._05"));
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

// --- Result tools: sum and equalise, the Alfa-Beta optimizer ---

// Two results are chosen, one is delayed and one weighed, and the job is written; then both are summed as
// they are. The sum opens like any other result.
void sumsources() {
    const std::string both = "\"" + datafile("hall._01") + "\" \"" + datafile("hall._02") + "\"";
    answers::expectwindow("SumEqualize", [both](QWidget& window) {
        const auto clicked = [&window](const char* name) {
            QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton);
        };
        const auto slide = [&window](const char* name, int value) {
            window.findChild<QSlider*>(name)->setValue(value);
        };
        answers::expectfile("Select output files to be summed", both);
        clicked("SelectInput");
        answers::expectfile("Save result file", datafile("sum.___"));
        clicked("SelectOutput");
        auto& grid = *window.findChild<QTableWidget*>("MSFlexGrid1");
        check(grid.rowCount() == sources, "not every chosen file is listed");
        grid.selectRow(1);
        slide("Slider2", 20);
        window.findChild<QCheckBox*>("Check1")->setChecked(true);
        slide("Slider1_5", -6);
        window.findChild<QCheckBox*>("Check1")->setChecked(false);
        slide("Slider1_0", 12);
        picture("sum-equalize");
        slide("Slider2", 0);
        for (int band = 0; band < 10; ++band) slide(("Slider1_" + std::to_string(band)).c_str(), 0);
        clicked("Compute");
    });
    choose("SumEq");
    std::filesystem::copy_file(datafile("Jobsummer.job"), sessionfile("Jobsummer.job"),
                               std::filesystem::copy_options::overwrite_existing);
    check(canopen(datafile("sum.___")), "no sum was written");
}

// Against the result that was calculated with both sources at once.
void opensum() {
    const float together = ParameterSet.Leq(0, linearband);
    answers::expectfile("Load an Impulse Response File", datafile("sum.___"));
    expectspeechindex(platform::answer::no);
    choose("MapLoad");
    const double apart = static_cast<double>(ParameterSet.Leq(0, linearband) - together);
    check(std::fabs(apart) < 0.1, "the sum's level is " + std::to_string(apart) + " dB off");
    checkdecay();
}

// Two results with different numbers of pyramids: with the constants of the calculation their curves
// coincide, without correction they do not.
void tuneconstants() {
    answers::expectwindow("Optimizer", [](QWidget& window) {
        const auto clicked = [&window](const char* name) {
            QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton);
        };
        const auto typed = [&window](const char* name, const char* text) {
            auto& field = *window.findChild<QLineEdit*>(name);
            field.setFocus();
            field.selectAll();
            QTest::keyClicks(&field, text);
        };
        picture("optimizer-empty");
        answers::expectfile("Load an Impulse Response File", datafile("hall._03"));
        clicked("Command1_0");
        answers::expectfile("Load an Impulse Response File", datafile("hall._04"));
        clicked("Command1_1");
        window.findChild<QComboBox*>("Combo1")->setCurrentIndex(band1k - 1);
        picture("optimizer-impulse");
        auto& schroeder = *window.findChild<QRadioButton*>("Option2");
        QTest::mouseClick(&schroeder, Qt::LeftButton, {}, QPoint(8, schroeder.height() / 2));
        typed("TextBeta", "0");
        clicked("Command2");
        picture("optimizer-uncorrected");
        typed("TextBeta", "1");
        clicked("Command2");
        picture("optimizer-tuned");
        clicked("CommandSave");
        QTest::keyClick(&window, Qt::Key_Escape);
    });
    choose("AlfaBetaOpt");
    const filebytes settings = readfile(datafile("orvanta.ini"));
    check(std::string_view(settings).find("Beta=1 scale") != std::string_view::npos,
          "the constants were not saved");
}

// --- Rooms of other programs ---

void importdrawing() {
    answers::expectfile("Load an AutoCAD (TM) DXF File", datafile("studio.dxf"));
    answers::expectbox("planarity check on 3DFACE entities", platform::answer::yes,
                       [](QWidget&) { picture("dxf-question"); });
    choose("DXFIN");
    check(RoomModel.faceCount == 11 && RoomModel.holeFace(1) == 2 && RoomModel.doorFace(1) == 5,
          "the drawing was not read whole");
    checktitle(datafile("studio.dxf"));
    replacefile(sessionfile("dxf-log.txt"), MainWindow->logtext);
}

// A triangle comes back with a fourth corner, so that the second drawing is compared.
void exportdrawing() {
    const std::string path = sessionfile("exported.dxf");
    const auto exportandimport = [&path](const answers::look& look) {
        answers::expectfile("Save a .DXF AutoCAD File", path, look);
        choose("DXFOUT");
        answers::expectfile("Load an AutoCAD (TM) DXF File", path);
        answers::expectbox("planarity check", platform::answer::no);
        choose("DXFIN");
    };
    exportandimport([](QWidget&) { picture("dxf-save-dialog"); });
    const std::vector<double> room = savedroom();
    std::filesystem::remove(path);
    exportandimport({});
    check(savedroom() == room, "the exported room is not the one that was shown");
}

void drawingin3d() {
    const std::size_t before = picturesum();
    choose("Redraw");
    checkredrawn(before);
}

void checkroom(int faces, int roomsources, int roomreceivers, const char* name) {
    check(RoomModel.faceCount == faces && RoomModel.sourceCount == roomsources &&
              RoomModel.receiverCount == roomreceivers,
          "the room was not read whole");
    checktitle(datafile(name));
}

void importcatt() {
    answers::expectfile("Load a Catt Acoustics .GEO File", datafile("lecture.geo"));
    choose("ImportCatt");
    checkroom(12, 1, 16, "lecture.ray");
    replacefile(sessionfile("catt.txt"), MainWindow->logtext);
}

// Both the file for the other program and the one that this program keeps give the same room.
void exportcatt() {
    const std::vector<double> room = savedroom();
    const std::string exported = sessionfile("lecture.geo"), saved = sessionfile("lecture.ray");
    answers::expectfile("Save a .GEO File for Catt Acoustics", exported);
    choose("ExportCatt");
    resetroom();
    answers::expectfile("Load a Catt Acoustics .GEO File", exported);
    choose("ImportCatt");
    check(savedroom() == room, "the exported room is not the one that was shown");
    answers::expectfile("Save a Orvanta CAD File", saved);
    choose("Fsave");
    resetroom();
    answers::expectfile("Load a Orvanta CAD File", saved);
    choose("FLoad");
    check(savedroom() == room, "the saved room is not the one that was imported");
}

void importnastran() {
    answers::expectfile("Load a Nastran NAS File", datafile("rotunda.nas"));
    choose("ImportNastran");
    checkroom(432, 0, 0, "rotunda.ray");
    replacefile(sessionfile("nastran.txt"), MainWindow->logtext);
    check(!isenabled("MapOptions"), "a result is still in memory");
}

// Its entry is not shown.
void importrayons() {
    answers::expectfile("Load a Rayons GEO File", datafile("booth.geo"));
    runcommand("ImporRayonGeo");
    checkroom(7, 1, 2, "booth.ray");
}

void leave() {
    choose("FQuit");
    check(!MainWindow->form->isVisible(), "the window is still there");
}

// --- The impulse response and the ray paths ---

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
    const picturepoint at = projected(receiverpoint(receiver));
    return QPoint(static_cast<int>(picture.toDeviceX(at.x) / picture.scale),
                  static_cast<int>(picture.toDeviceY(at.y) / picture.scale));
}

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

void orbit() {
    dragpicture(Qt::RightButton, QPoint(60, 40), "3d-orbiting");
}

void panned() {
    dragpicture(Qt::LeftButton, QPoint(120, -60), "3d-panning");
    check(SessionState.panX < 0 && SessionState.panY > 0, "the pan is not that of the drag");
    SessionState.panX = SessionState.panY = 0;
}

// --- Contours and blanking lines ---

std::string blankinglinefile;

void clickboxto(QWidget& dialog, const char* box, bool ticked) {
    if (dialog.findChild<QCheckBox*>(box)->isChecked() != ticked) clickin(dialog, box);
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

void contoursinplan() {
    useengine(true);
    drawgridded("MapDoContour2D", "Contour", "Kriging", "Iris", false);
    picture("contours-2d");
    drawgridded("MapDoDither2D", "Dither", "Radial basis function", "Iris", false);
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

constexpr step steps[] = {
    {"Start", start, "start"},
    {"The File menu", filemenu, ""},
    {"Cancel a file dialog", cancelled, ""},
    {"Open a result and its room", openresult, "2d-xy"},
    {"Table of T30", decaytable, ""},
    {"Table of receiver 12", onereceiver, ""},
    {"Table of all receivers at 125 Hz", roundrobin, ""},
    {"Speech index with noise", speechindex, ""},
    {"The impulse response and its decay", impulseresponse, ""},
    {"Export to WAV in four formats", exportwav, ""},
    {"The parameters alone", parametersalone, ""},
    {"View YZ", sideview, "2d-yz"},
    {"View XZ", longview, "2d-xz"},
    {"Mapping options", mappingoptions, ""},
    {"View options", viewoptions, ""},
    {"RGB settings", rgbsettings, ""},
    {"Posted values: C80 at 1 kHz", posted, "2d-posted"},
    {"Map of C80 in plan", mapinplan, "map-2d"},
    {"Map of C80 in section", mapinsection, ""},
    {"Contours of C80 in plan", contoursinplan, "map-2d-gridded"},
    {"Enter a blanking line", enterblankingline, "blanking-line-closed"},
    {"Map within a blanking line", blankedmap, ""},
    {"The Surfer menu", surfermenu, ""},
    {"Zoom by focal length", zoom, "2d-zoom"},
    {"Draw 3D", spatial, "3d"},
    {"Focal length by its steps", focallength, "3d-wide"},
    {"Camera by its fields", cameratyped, "3d-camera"},
    {"Camera and target by their steps", cameraspun, "3d-steps"},
    {"Map of C80 in 3D", mapinspace, "map-3d"},
    {"Map of C80 across the hall", mapinspacesection, "map-3d-section"},
    {"Contours of C80 in 3D", contoursinspace, ""},
    {"Save the room and read it back", saveroom, ""},
    {"Copy the picture", copypicture, ""},
    {"Print the picture to a file", print, ""},
    {"About", about, ""},
    {"F1", helpkey, ""},
    {"Another result over the room", otherresult, "2d-other-result"},
    {"A ray path in the scene and the plot", raypaths, ""},
    {"Orbit with the right button", orbit, "3d-orbited"},
    {"Pan with the left button", panned, "3d-panned"},
    {"Sum two sources", sumsources, ""},
    {"Open the sum", opensum, ""},
    {"Tune Alfa and Beta on two results", tuneconstants, ""},
    {"A result whose room lies elsewhere", roomelsewhere, ""},
    {"Import a drawing", importdrawing, "2d-dxf"},
    {"Export it and read it back", exportdrawing, ""},
    {"The drawing in 3D", drawingin3d, "3d-dxf"},
    {"Import a Catt room", importcatt, "catt"},
    {"Export it and save it", exportcatt, ""},
    {"Import a Nastran mesh", importnastran, "nastran"},
    {"Import a Rayons set", importrayons, "rayons"},
    {"Exit", leave, ""},
};

} // namespace

} // namespace orv::tour

int main(int argumentcount, char** arguments) {
    if (argumentcount != 2) {
        std::fputs("usage: orvtour OUTPUT\n", stderr);
        return 2;
    }
    QApplication application(argumentcount, arguments);
    orv::platform::prepare();
    bool good = false;
    QTimer::singleShot(0, [&] {
        good = orv::tour::run(orv::tour::steps, arguments[1]);
        QCoreApplication::quit();
    });
    QApplication::exec();
    orv::removemainwindow();
    return good ? 0 : 1;
}

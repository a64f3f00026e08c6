// The main window: menus, session, camera controls, sizes, keys, end.
#include "windowtest.h"

#include "platform/qt/boundary.h"
#include "platform/qt/windowhook.h"

#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

#include <set>

namespace orv {
namespace {

using platform::answer;

struct mainwindowtest : windowtest {
    QImage picture() const { return picturecontents(MainWindow->picture).copy(); }

    // Whether anything is drawn in a part of the picture.
    bool isdrawn(const QRect& part) const {
        const QImage image = picture();
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                if (image.pixel(x, y) != image.pixel(0, 0)) return true;
        return false;
    }

    QWidget* page() const { return MainWindow->area->currentWidget(); }
};

// The dialogs that a load with responses brings.
void expectspeechindex() {
    answers::expectwindow("STIOptions",
                          [](QWidget& dialog) { dialog.findChild<QPushButton*>("Done")->click(); });
    answers::expectbox("save the computed parameters", platform::answer::no);
}

TEST_F(mainwindowtest, menusFollowTheTable) {
    std::size_t title = 0;
    const auto menus = form().menuBar()->actions();
    ASSERT_EQ(static_cast<std::size_t>(menus.size()), menutitles().size());
    for (const QAction* entry : menus) {
        const menutitle& wanted = menutitles()[title++];
        EXPECT_EQ(entry->text().toStdString(), wanted.caption);
        auto shown = entry->menu()->actions().cbegin();
        for (const menucommand& row : menucommands()) {
            if (row.menu != wanted.name) continue;
            ASSERT_NE(shown, entry->menu()->actions().cend()) << row.name;
            const QAction& action = **shown++;
            EXPECT_EQ(action.isVisible(), row.visible) << row.name;
            EXPECT_EQ(action.isSeparator(), row.name.empty());
            if (row.name.empty()) continue;
            EXPECT_EQ(action.objectName().toStdString(), row.name);
            EXPECT_EQ(action.text().toStdString(), row.caption);
            EXPECT_EQ(action.isEnabled(), row.visible && isoffered(row)) << row.name;
            EXPECT_EQ(action.isCheckable(), row.checkable) << row.name;
            EXPECT_EQ(action.isChecked(), row.checked) << row.name;
        }
        EXPECT_EQ(shown, entry->menu()->actions().cend());
    }

    std::set<QKeySequence> keys;
    for (const auto& [name, action] : MainWindow->actions)
        EXPECT_TRUE(action->shortcut().isEmpty() || keys.insert(action->shortcut()).second) << name;
}

TEST_F(mainwindowtest, menusFollowChangesOfState) {
    enablecommand("Redraw", true);
    EXPECT_TRUE(action("Redraw").isEnabled());
    enablecommand("DXFOUT", true);
    EXPECT_FALSE(action("DXFOUT").isEnabled()) << "there is nothing to run";
    showcommandentry("Vaxes", true);
    EXPECT_TRUE(action("Vaxes").isVisible());
    choose("Vaxes");
    EXPECT_FALSE(ischecked("Vaxes"));
    EXPECT_FALSE(action("Vaxes").isChecked());
    choose("Vaxes");
    EXPECT_TRUE(action("Vaxes").isChecked());
}

TEST_F(mainwindowtest, beginsWithAWordOnWhatToDo) {
    EXPECT_EQ(page(), &control("EmptyState"));
    EXPECT_EQ(control<QLabel>("EmptyTitle").text(), "No result loaded");
    EXPECT_TRUE(control<QLabel>("EmptyText").text().contains("File > Open Imp.Resp.+Geometry files..."));
    for (const char* group : {"Frame1", "Frame2", "Frame2DView", "SSFrame1"})
        EXPECT_FALSE(platform::isvisible(group)) << group;
    EXPECT_FALSE(control("Redisplay").isEnabled());
    EXPECT_EQ(control<QPushButton>("Redisplay").text(), "Auto Redraw");
    EXPECT_EQ(form().windowTitle(), "Orvanta View v. 3.10");
    EXPECT_EQ(form().size(), QSize(1100, 750));

    // A result whose room is missing.
    writesamples();
    std::filesystem::remove(inside("box.RAY"));
    answers::expectfile("Load an Impulse Response File and its Geometry", inside("box._01"));
    expectspeechindex();
    answers::expectfile("Load a Orvanta CAD File", "", [this](QWidget&) {
        EXPECT_EQ(page(), &control("LoadLog")) << "what was loaded can be read meanwhile";
    });
    choose("OpenRes");
}

TEST_F(mainwindowtest, opensAResultAndItsRoom) {
    samples::writebiggeometry(inside("box.RAY"), 60, 150);
    samples::bigoptions options;
    options.receivers = 150;
    options.slots = 1000;
    samples::writebigresult(inside("box._01"), options);

    // What a user can see and do while it loads.
    int looks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (!commandssuspended() || page() != &control("LoadLog") || ++looks > 1) return;
        EXPECT_TRUE(control<QPlainTextEdit>("LoadLog").toPlainText().startsWith("Loading "));
        EXPECT_TRUE(control<QLabel>("StatusBar1_1").text().endsWith(" ..."));
        EXPECT_TRUE(control<QLabel>("StatusBar1_2").text().endsWith("%"));
        EXPECT_EQ(control("LoadLog").palette().color(QPalette::Base), QColor(192, 192, 192));
        EXPECT_FALSE(control("ControlColumn").isEnabled());
        EXPECT_FALSE(action("OpenRes").isEnabled());
        EXPECT_TRUE(action("FQuit").isEnabled());
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        choose("OpenRes"); // no second time
    });
    timer.start(0);
    answers::expectfile("Load an Impulse Response File and its Geometry", inside("box._01"));
    expectspeechindex();
    choose("OpenRes");
    timer.stop();
    EXPECT_GE(looks, 1);

    QTest::qWait(1);
    EXPECT_EQ(ImpulseResponse.receivers, 150);
    EXPECT_EQ(RoomModel.faceCount, 60);
    EXPECT_EQ(form().windowTitle().toStdString(), inside("box.RAY") + " - Orvanta View v. 3.10");
    EXPECT_EQ(page(), &control("Picture1"));
    EXPECT_TRUE(isdrawn(QRect(200, 100, 300, 300)));
    EXPECT_EQ(control("Picture1").grab().toImage().convertToFormat(QImage::Format_RGB32), picture());
    EXPECT_TRUE(control<QLabel>("StatusBar1_1").text().startsWith("Left Click and drag"));
    EXPECT_EQ(control<QLabel>("StatusBar1_2").text(), "");
    EXPECT_TRUE(control("ControlColumn").isEnabled());
    EXPECT_TRUE(action("OpenRes").isEnabled());
    EXPECT_TRUE(action("MapLoad").isEnabled());
    EXPECT_FALSE(action("ExportWAV").isEnabled()) << "nothing to run yet";
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(mainwindowtest, cancelledDialogsChangeNothing) {
    for (const char* command : {"FLoad", "OpenRes"}) {
        answers::expectfile("Load", "");
        choose(command);
    }
    EXPECT_EQ(page(), &control("EmptyState"));
    EXPECT_EQ(form().windowTitle(), "Orvanta View v. 3.10");
    EXPECT_TRUE(action("FLoad").isEnabled());
}

TEST_F(mainwindowtest, groupsComeAndGoBesideAFixedPicture) {
    openroom();
    const auto shown = [&] {
        std::string names;
        for (const char* group : {"SSFrame1", "Frame2DView", "Frame1", "Frame2"})
            if (control(group).isVisible()) names += std::string(group) + " ";
        return names;
    };
    const auto places = [&] {
        std::vector<QRect> rectangles;
        for (const char* name : {"PictureArea", "ControlColumn", "SSFrame1", "Redisplay"})
            rectangles.push_back(control(name).geometry());
        return rectangles;
    };
    EXPECT_EQ(shown(), "SSFrame1 Frame2DView ");
    const auto flat = places();
    EXPECT_EQ(control("Picture1").size(), control("PictureArea").size());
    choose("Redraw");
    QTest::qWait(1);
    EXPECT_EQ(shown(), "SSFrame1 Frame1 Frame2 ");
    EXPECT_EQ(places(), flat);
    // Nothing is cut off or overlaps at the smallest size.
    form().resize(form().minimumSize());
    QTest::qWait(1);
    int below = 0;
    for (const char* name : {"SSFrame1", "Frame1", "Frame2", "Redisplay"}) {
        const QWidget& widget = control(name);
        EXPECT_GE(widget.y(), below) << name;
        EXPECT_GE(widget.width(), widget.minimumSizeHint().width()) << name;
        EXPECT_GE(widget.height(), widget.minimumSizeHint().height()) << name;
        below = widget.geometry().bottom() + 1;
    }
    EXPECT_LE(below, control("ControlColumn").height());
    choose("CamRedr2D");
    EXPECT_EQ(shown(), "SSFrame1 Frame2DView ");
}

TEST_F(mainwindowtest, cameraFieldsActOnEnterAndOnLeaving) {
    openroom();
    choose("Redraw");
    QTest::qWait(1);
    form().activateWindow();
    QTest::qWait(1);
    const QImage first = picture();

    type("CamX", "-20");
    EXPECT_EQ(control<QLineEdit>("CamX").text(), "-20") << "the old text was selected whole";
    EXPECT_EQ(SessionState.cameraX, -10);
    QTest::keyClick(&control("CamX"), Qt::Key_Return);
    EXPECT_EQ(SessionState.cameraX, -20);
    EXPECT_EQ(control<QLineEdit>("CamX").text(), "-20.0") << "the drawing writes it back";
    EXPECT_NE(picture(), first);

    type("TargetY", "3.5");
    control("Picture1").setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(SessionState.targetY, 3.5F);
    type("TargetY", "4");
    const float former = SessionState.targetY;
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(&control("TargetY"), &away);
    EXPECT_EQ(SessionState.targetY, former) << "another program's window is no other control";
    choose("CamRedr2D");
    EXPECT_EQ(SessionState.targetY, 4) << "a command takes what was typed before it";
    choose("Redraw");

    type("FocLenght", "80");
    QTest::keyClick(&control("FocLenght"), Qt::Key_Enter);
    EXPECT_FLOAT_EQ(SessionState.focalLength, 0.08F);
}

TEST_F(mainwindowtest, spinsPlanesAndRedisplay) {
    openroom();
    choose("Redraw");
    const auto click = [&](const char* name) { QTest::mouseClick(&control(name), Qt::LeftButton); };
    const struct {
        const char* spin;
        float sessionstate::*value;
        float up;
    } rows[] = {{"Spin2", &sessionstate::cameraX, 5},
                {"Spin3", &sessionstate::cameraY, 5},
                {"Spin4", &sessionstate::cameraZ, 5},
                {"Spin5", &sessionstate::targetX, 5},
                {"Spin6", &sessionstate::targetY, 5},
                {"Spin7", &sessionstate::targetZ, 5},
                {"SpinFocal", &sessionstate::focalLength, 0.03F}};
    for (const auto& row : rows) {
        SessionState.*row.value += 1; // off zero, which a field does not store
        if (row.value == &sessionstate::focalLength) SessionState.focalLength = 0.05F;
        choose("Redraw");
        const float before = SessionState.*row.value;
        click((std::string(row.spin) + "_up").c_str());
        EXPECT_NEAR(SessionState.*row.value, before + row.up, 0.05) << row.spin;
        click((std::string(row.spin) + "_down").c_str());
        EXPECT_NEAR(SessionState.*row.value, before, 0.05) << row.spin;
    }

    choose("CamRedr2D");
    const QImage top = picture();
    QTest::qWait(1);
    QTest::mouseClick(&control("YZ"), Qt::LeftButton, {}, QPoint(8, control("YZ").height() / 2));
    EXPECT_EQ(SessionState.viewPlane, planechoice::YZ);
    EXPECT_FALSE(control<QRadioButton>("XY").isChecked());
    EXPECT_NE(picture(), top);
    platform::setchosen("XZ", true);
    EXPECT_EQ(SessionState.viewPlane, planechoice::YZ) << "only a click chooses";

    const QImage side = picture();
    platform::picture().clear();
    click("Redisplay");
    EXPECT_EQ(picture(), side);
}

// Runs on its own under twice the pixel ratio too.
TEST_F(mainwindowtest, sizeFollowsTheWindow) {
    openroom();
    const bool dense = qEnvironmentVariable("QT_SCALE_FACTOR") == "2";
    EXPECT_EQ(form().devicePixelRatioF(), dense ? 2 : 1);
    for (const QSize size : {QSize(1100, 750), QSize(1920, 1080), QSize(720, 560)}) {
        form().resize(size);
        QTest::qWait(1);
        const QSize area = MainWindow->area->size();
        EXPECT_EQ(SessionState.pictureWidth, area.width());
        EXPECT_EQ(SessionState.pictureHeight, area.height());
        const QSize image = area * (dense ? 2 : 1);
        EXPECT_EQ(MainWindow->picture.image.size(), image);
        EXPECT_EQ(control("Picture1").grab().toImage().convertToFormat(QImage::Format_RGB32), picture());
        // The room's right wall has followed.
        EXPECT_TRUE(isdrawn(
            QRect(image.width() * 3 / 5, image.height() / 4, image.width() * 3 / 10, image.height() / 2)));
    }
    // A size that comes while a job keeps the picture for itself is drawn at the job's end.
    suspendcommands(true);
    form().resize(1000, 700);
    QTest::qWait(1);
    const QImage blank = picture();
    suspendcommands(false);
    QTest::qWait(1);
    EXPECT_NE(picture(), blank);
    if (dense) return;
    QProcess again;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_SCALE_FACTOR", "2");
    again.setProcessEnvironment(environment);
    again.setProcessChannelMode(QProcess::ForwardedChannels);
    again.start(QCoreApplication::applicationFilePath(),
                {"--gtest_filter=mainwindowtest.sizeFollowsTheWindow"});
    EXPECT_TRUE(again.waitForFinished(60000));
    EXPECT_EQ(again.exitCode(), 0);
}

TEST_F(mainwindowtest, keysAreSeenOnceBeforeAnyControl) {
    openroom();
    choose("Redraw");
    QWindow* window = form().windowHandle();
    type("CamX", "1");
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(SessionState.drawAbort, on);

    int boxes = 0;
    const auto count = [&](QWidget&) {
        ++boxes;
        SessionState.drawAbort = off;
        QTest::keyClick(window, Qt::Key_Escape); // the box is in front
    };
    answers::expectbox("Sorry, no help still available", answer::ok, count);
    QTest::keyClick(window, Qt::Key_F1);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(SessionState.drawAbort, off);
}

TEST_F(mainwindowtest, paintsAtMostAFrameApart) {
    openroom();
    QTest::qWait(50);
    int paints = 0;
    hook(control("StatusBar1_1"), {.paint = [&] { ++paints; }});
    QElapsedTimer clock;
    clock.start();
    int steps = 0;
    for (; clock.elapsed() < 200; ++steps) {
        platform::statustext(1, std::to_string(steps));
        platform::yield();
    }
    const qint64 took = clock.elapsed();
    EXPECT_GE(paints, 2);
    EXPECT_LE(paints, took / 16 + 2);
    EXPECT_GT(steps, 100 * paints) << "a yield costs next to nothing in between";
}

TEST_F(mainwindowtest, theLogFillsTheWindow) {
    platform::clearlog();
    EXPECT_EQ(platform::logfill(), 0);
    for (int line = 0; line < 10; ++line) platform::logline("line");
    const double ten = platform::logfill();
    EXPECT_GT(ten, 0.1);
    EXPECT_LT(ten, 0.5);
    for (int line = 0; line < 10; ++line) platform::logline("line");
    EXPECT_DOUBLE_EQ(platform::logfill(), 2 * ten);
    QTest::qWait(1);
    EXPECT_EQ(control<QPlainTextEdit>("LoadLog").toPlainText().count("line"), 20);
    platform::clearlog();
    QTest::qWait(1);
    EXPECT_EQ(control<QPlainTextEdit>("LoadLog").toPlainText(), "");
}

TEST_F(mainwindowtest, textsAreOfTheCodePage) {
    platform::windowtitle("caf\xE9");
    EXPECT_EQ(form().windowTitle(), QString::fromUtf8("caf\xC3\xA9"));
    platform::settext("CamX", "\x80 5");
    EXPECT_EQ(control<QLineEdit>("CamX").text(), QString::fromUtf8("\xE2\x82\xAC 5"));
    EXPECT_EQ(platform::gettext("CamX"), "\x80 5");
    EXPECT_THROW(platform::settext("CamXX", ""), runtimeerror);
}

TEST_F(mainwindowtest, exitClosesAllAndAsksNothing) {
    openroom();
    QWidget other;
    other.show();
    bool ended = false;
    QTimer::singleShot(0, [&] { choose("FQuit"); });
    QTimer::singleShot(5000, &form(), [] { QApplication::exit(1); });
    ended = QApplication::exec() == 0;
    EXPECT_TRUE(ended);
    EXPECT_FALSE(form().isVisible());
    EXPECT_FALSE(other.isVisible());
}

TEST_F(mainwindowtest, exitDuringALoadEndsTheProgram) {
    samples::bigoptions options;
    options.receivers = 100;
    options.slots = 1000;
    samples::writebigresult(inside("big._01"), options);
    const auto closing = [&] {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (commandssuspended()) form().close();
        });
        timer.start(0);
        answers::expectfile("Load an Impulse Response File and its Geometry", inside("big._01"));
        choose("OpenRes");
    };
    EXPECT_EXIT(closing(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace orv

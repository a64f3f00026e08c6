// The main window: menus, session, camera controls, sizes, keys, end.
#include "windowtest.h"

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTimer>
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

TEST_F(mainwindowtest, MenusFollowTheTable) {
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
            EXPECT_EQ(action.text().toStdString(), row.caption);
            EXPECT_EQ(action.isEnabled(), row.visible && isoffered(row)) << row.name;
            EXPECT_EQ(action.isChecked(), row.checked) << row.name;
        }
        EXPECT_EQ(shown, entry->menu()->actions().cend());
    }

    std::set<QKeySequence> keys;
    for (const auto& [name, action] : MainWindow->actions)
        EXPECT_TRUE(action->shortcut().isEmpty() || keys.insert(action->shortcut()).second) << name;

    enablecommand("Redraw", true);
    EXPECT_TRUE(action("Redraw").isEnabled());
    choose("Vrays");
    EXPECT_EQ(action("Vrays").isChecked(), ischecked("Vrays"));
}

TEST_F(mainwindowtest, BeginsWithAWordOnWhatToDo) {
    for (const char* command : {"FLoad", "OpenRes"}) { // cancelled dialogs change nothing
        answers::expectfile("Load", "");
        choose(command);
    }
    EXPECT_EQ(page(), &control("EmptyState"));
    EXPECT_TRUE(control<QLabel>("EmptyText").text().contains("File > Open Imp.Resp.+Geometry files..."));
    EXPECT_FALSE(control("Redisplay").isEnabled());
    EXPECT_EQ(form().windowTitle(), "Orvanta View v. 3.10");
}

TEST_F(mainwindowtest, OpensAResultAndItsRoom) {
    writesamples("box", 150, 1000);

    // What a user can see and do while it loads.
    int looks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (!commandssuspended() || page() != &control("LoadLog") || ++looks > 1) return;
        EXPECT_TRUE(control<QPlainTextEdit>("LoadLog").toPlainText().startsWith("Loading "));
        EXPECT_TRUE(control<QLabel>("StatusBar1_2").text().endsWith("%"));
        EXPECT_FALSE(control("ControlColumn").isEnabled());
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        choose("OpenRes"); // no second time
    });
    timer.start(0);
    answers::expectfile("Load an Impulse Response File and its Geometry", inside("box._01"));
    within("STIOptions", [](const windowview& dialog) { dialog.click("Done"); });
    answers::expectbox("save the computed parameters", answer::no);
    choose("OpenRes");
    timer.stop();
    EXPECT_GE(looks, 1);

    QTest::qWait(1);
    EXPECT_EQ(ImpulseResponse.receivers, 150);
    EXPECT_EQ(RoomModel.faceCount, 60);
    EXPECT_EQ(form().windowTitle().toStdString(), inside("box.RAY") + " - Orvanta View v. 3.10");
    EXPECT_EQ(page(), &control("Picture1"));
    EXPECT_TRUE(isdrawn(QRect(200, 100, 300, 300)));
    EXPECT_TRUE(control("ControlColumn").isEnabled());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    QTest::mouseClick(&control("LogButton"), Qt::LeftButton);
    EXPECT_EQ(page(), &control("LoadLog"));
    choose("CamRedr2D");
    EXPECT_EQ(page(), &control("Picture1"));

    // Asked for while the picture is drawn in a new size, which nobody asked for.
    int changes = 0;
    MainWindow->picture.changed = [&] {
        picturecontents(MainWindow->picture);
        if (++changes == 2) QTest::mouseClick(&control("LogButton"), Qt::LeftButton);
    };
    picturecontents(MainWindow->picture);
    form().resize(form().size() - QSize(40, 40));
    QTest::qWait(1);
    MainWindow->picture.changed = nullptr;
    EXPECT_EQ(page(), &control("LoadLog"));
}

TEST_F(mainwindowtest, CameraFieldsActOnEnterAndOnLeaving) {
    openroom();
    choose("Redraw");
    form().activateWindow();
    QTest::qWait(1);
    const QImage first = picture();

    type("CamX", "-20");
    EXPECT_EQ(SessionState.cameraX, -10);
    QTest::keyClick(&control("CamX"), Qt::Key_Return);
    EXPECT_EQ(SessionState.cameraX, -20);
    EXPECT_NE(picture(), first);

    type("TargetY", "3.5");
    control("Picture1").setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(SessionState.targetY, 3.5F);
    type("TargetY", "4");
    choose("CamRedr2D");
    EXPECT_EQ(SessionState.targetY, 4) << "a command takes what was typed before it";
}

TEST_F(mainwindowtest, SpinsPlanesAndRedisplay) {
    openroom();
    const windowview main{form()};
    // Numbers that the fields show whole, and no zero, which they would not store.
    SessionState.targetX = SessionState.targetY = SessionState.targetZ = 2;
    SessionState.cameraX = SessionState.cameraY = SessionState.cameraZ = -10;
    for (const std::string spin : {"Spin2", "Spin3", "Spin4", "Spin5", "Spin6", "Spin7", "SpinFocal"}) {
        choose("Redraw");
        const QImage before = picture();
        main.click((spin + "_up").c_str());
        EXPECT_NE(picture(), before) << spin;
        main.click((spin + "_down").c_str());
        EXPECT_EQ(picture(), before) << spin;
    }
    choose("CamRedr2D");
    QTest::qWait(1);
    main.click("YZ");
    EXPECT_EQ(SessionState.viewPlane, planechoice::YZ);
    const QImage side = picture();
    platform::picture().clear();
    main.click("Redisplay");
    EXPECT_EQ(picture(), side);
}

TEST_F(mainwindowtest, SizeFollowsTheWindow) {
    openroom();
    for (const QSize size : {QSize(1920, 1080), QSize(720, 560)}) {
        form().resize(size);
        QTest::qWait(1);
        const QSize area = MainWindow->area->size();
        EXPECT_EQ(QSize(SessionState.pictureWidth, SessionState.pictureHeight), area);
        EXPECT_EQ(control("Picture1").grab().toImage().convertToFormat(QImage::Format_RGB32), picture());
        // The room's right wall has followed.
        EXPECT_TRUE(isdrawn(
            QRect(area.width() * 3 / 5, area.height() / 4, area.width() * 3 / 10, area.height() / 2)));
    }
}

TEST_F(mainwindowtest, KeysAreSeenOnceBeforeAnyControl) {
    openroom();
    choose("Redraw");
    QWindow* window = form().windowHandle();
    type("CamX", "1");
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(SessionState.drawAbort, on);

    answers::expectbox("Sorry, no help still available", answer::ok); // once
    QTest::keyClick(window, Qt::Key_F1);
}

TEST_F(mainwindowtest, ExitDuringALoadEndsTheProgram) {
    writesamples("big", 100, 1000);
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

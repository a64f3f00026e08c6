// Steps: the main window from its start to its end, and what is of no other subject.
#include "base/files.h"
#include "platform/qt/answers.h"
#include "room/roommodel.h"
#include "shell/mainwindow.h"
#include "shell/menucommands.h"
#include "tour/checks.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMainWindow>
#include <QStackedWidget>
#include <QTest>

#include <cstddef>
#include <cstdio>
#include <string>

namespace orv::tour {

namespace {

constexpr std::size_t smallestpdf = 1000; // bytes of a page with something on it

} // namespace

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

void leave() {
    choose("FQuit");
    check(!MainWindow->form->isVisible(), "the window is still there");
}

} // namespace orv::tour

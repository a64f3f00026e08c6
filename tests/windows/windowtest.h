// What the windows' tests share: the real main window under the offscreen platform, in a data directory of
// its own, with answers for the dialogs that a test expects.
#pragma once

#define QT_NO_KEYWORDS // "slots" is a word of ours too

#include "base/files.h"
#include "platform/platform.h"
#include "platform/qt/answers.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"
#include "shell/mainwindow.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace orv {

struct windowtest : testing::Test {
    QTemporaryDir directory;
    std::filesystem::path formerdirectory = std::filesystem::current_path();

    windowtest() {
        resetcommands();
        SessionState = sessionstate{};
        resetroom();
        ResultSet = resultset{};
        ImpulseResponse = impulseresponse{};
        answers::watch([](const std::string& text) { ADD_FAILURE() << text; });
        showmainwindow();
        // The start-up has taken the test program's own directory.
        SessionState.dataDirectory = inside("");
        std::filesystem::current_path(inside(""));
        std::filesystem::copy_file(joinpath(DATA_FILES, "orvanta.ini"), inside("orvanta.ini"));
        QTest::qWait(1);
    }
    ~windowtest() override {
        for (const std::string& line : answers::stop()) ADD_FAILURE() << "Never shown: " << line;
        removemainwindow();
        std::filesystem::current_path(formerdirectory);
    }

    std::string inside(const std::string& name) const {
        return directory.path().toStdString() + (name.empty() ? "" : "/" + name);
    }

    QMainWindow& form() const { return *MainWindow->form; }

    template <class widget = QWidget>
    widget& control(const char* name) const {
        auto* found = form().findChild<widget*>(name);
        if (!found) throw std::runtime_error(std::string("no control ") + name);
        return *found;
    }

    QAction& action(const char* name) const { return control<QAction>(name); }

    // Chooses a menu entry as a click does.
    void choose(const char* name) const { action(name).trigger(); }

    // A room of 60 faces and a result of 20 receivers in it.
    void writesamples() const {
        samples::writebiggeometry(inside("box.RAY"), 60, 20);
        samples::bigoptions options;
        options.receivers = 20;
        options.slots = 400;
        samples::writebigresult(inside("box._01"), options);
    }

    void openroom() const {
        writesamples();
        answers::expectfile("Load a Orvanta CAD File", inside("box.RAY"));
        choose("FLoad");
        QTest::qWait(1);
    }

    // Types into a field from the start, as a user who has clicked into it.
    void type(const char* field, const char* text) const {
        QLineEdit& edit = control<QLineEdit>(field);
        edit.setFocus(Qt::MouseFocusReason);
        QTest::qWait(1);
        QTest::keyClicks(&edit, text);
    }
};

} // namespace orv

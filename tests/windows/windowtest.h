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

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

namespace orv {

// An open window by its controls.
struct windowview {
    QWidget& window;

    template <class widget = QWidget>
    widget& control(const char* name) const {
        auto* found = window.findChild<widget*>(name);
        if (!found) throw std::runtime_error(std::string("no control ") + name);
        return *found;
    }
    QString text(const char* name) const { return control<QLineEdit>(name).text(); }
    bool ticked(const char* name) const { return control<QAbstractButton>(name).isChecked(); }
    bool shown(const char* name) const { return control(name).isVisible(); }
    bool enabled(const char* name) const { return control(name).isEnabled(); }

    // Clicks where a box has its mark.
    void click(const char* name) const {
        QWidget& clicked = control(name);
        QTest::mouseClick(&clicked, Qt::LeftButton, {}, QPoint(8, clicked.height() / 2));
        QTest::qWait(1);
    }
    // Types in the place of what a field holds.
    void type(const char* name, const char* typed) const {
        auto& field = control<QLineEdit>(name);
        window.activateWindow(); // a dialog that closed has left it without the focus
        QTest::qWait(1);
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, typed);
    }
    // At the smallest size it takes, which has to fit, nothing is cut off.
    void expectroom(std::initializer_list<const char*> controls) const {
        window.resize(1, 1);
        QTest::qWait(1);
        EXPECT_LE(window.width(), 1000);
        EXPECT_LE(window.height(), 700);
        for (const char* name : controls) {
            const QWidget& part = control(name);
            const QRect place(part.mapTo(&window, QPoint(0, 0)), part.size());
            EXPECT_TRUE(window.rect().contains(place)) << name;
            EXPECT_GE(part.width(), std::min(part.minimumSizeHint().width(), part.maximumWidth())) << name;
        }
    }
};

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
        return windowview{form()}.control<widget>(name);
    }

    QAction& action(const char* name) const { return control<QAction>(name); }

    // Chooses a menu entry as a click does.
    void choose(const char* name) const { action(name).trigger(); }

    // Acts in the next window of this name, which closes then.
    static void within(const char* name, const std::function<void(const windowview&)>& act) {
        answers::expectwindow(name, [act](QWidget& window) {
            act({window});
            if (window.isVisible()) window.close();
        });
    }

    // A room of 60 faces and a result in it.
    void writesamples(const std::string& name = "box", int receivers = 20, int slots = 400) const {
        samples::writebiggeometry(inside(name + ".RAY"), 60, receivers);
        samples::bigoptions options;
        options.receivers = receivers;
        options.slots = slots;
        samples::writebigresult(inside(name + "._01"), options);
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

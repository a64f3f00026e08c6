// The dialog "STI Options": choices, hiding, the noise grid by its keys, and the command that shows it.
#include "windowtest.h"

#include "results/parameterset.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTableWidget>

namespace orv {
namespace {

// The open dialog, by its controls.
struct stioptions {
    QWidget& window;

    template <class widget = QWidget>
    widget& control(const char* name) const {
        return *window.findChild<widget*>(name);
    }
    QTableWidget& grid() const { return control<QTableWidget>("NoiseGrid"); }

    void click(const char* name) const {
        QWidget& button = control(name);
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
        QTest::qWait(1);
    }
    void clickcell(int row, int column) const {
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, {},
                          grid().visualItemRect(grid().item(row, column)).center());
    }
    void key(Qt::Key pressed) const { QTest::keyClick(&grid(), pressed); }
    void keys(const char* text) const { QTest::keyClicks(&grid(), text); }
    std::string cell(int column) const { return grid().item(1, column)->text().toStdString(); }
    bool ischosen(const char* name) const { return control<QRadioButton>(name).isChecked(); }
};

struct stidialogtest : windowtest {
    // Shows the dialog; `inside` must close it.
    static void open(const std::function<void(const stioptions&)>& inside) {
        answers::expectwindow("STIOptions", [inside](QWidget& window) { inside({window}); });
        platform::showwindow("STI Options", true);
    }

    // Shows it with the grid, which has the focus on the cell of 125 Hz.
    static void opengrid(const std::function<void(const stioptions&)>& inside) {
        SessionState.backgroundNoiseFlag = -1;
        open([inside](const stioptions& dialog) {
            dialog.grid().setFocus(Qt::TabFocusReason);
            inside(dialog);
        });
    }

    static float level(int column) {
        return SessionState.noiseLevel.at(static_cast<std::size_t>(column - 1));
    }
};

TEST_F(stidialogtest, choicesAreStoredAtOnceAndHideWithoutNoise) {
    SessionState.forceVoiceSplFlag = -1;
    open([](const stioptions& dialog) {
        const QWidget& window = dialog.window;
        const auto hidden = [&] {
            int count = 0;
            for (const char* name : {"EqualizeYes", "EqualizeNo", "ForceSPLYes", "ForceSPLNo", "NoiseGrid"})
                count += !dialog.control(name).isVisible();
            return count;
        };
        EXPECT_EQ(window.windowTitle(), "STI Options");
        EXPECT_TRUE(dialog.ischosen("BackNoiseNotInfluent"));
        EXPECT_TRUE(dialog.ischosen("EqualizeNo"));
        EXPECT_TRUE(dialog.ischosen("ForceSPLYes"));
        EXPECT_EQ(hidden(), 5);
        const QPoint off = window.geometry().center() - window.screen()->availableGeometry().center();
        EXPECT_LE(off.manhattanLength(), 10) << "in the middle of the screen, but for the frame";

        const QSize small = window.size();
        const QPoint place = window.pos();
        dialog.click("BackNoisePresent");
        EXPECT_EQ(SessionState.backgroundNoiseFlag, -1);
        EXPECT_EQ(hidden(), 0);
        EXPECT_GT(window.height(), small.height() + 60);
        dialog.click("EqualizeYes");
        dialog.click("ForceSPLNo");
        EXPECT_EQ(SessionState.equalizeSpectrumFlag, -1);
        EXPECT_EQ(SessionState.forceVoiceSplFlag, 0);
        EXPECT_TRUE(dialog.ischosen("BackNoisePresent")) << "each pair for itself";
        QTest::keyClick(&dialog.control("ForceSPLNo"), Qt::Key_Left);
        EXPECT_EQ(SessionState.forceVoiceSplFlag, -1) << "by the keyboard too";

        dialog.click("BackNoiseNotInfluent");
        EXPECT_EQ(SessionState.backgroundNoiseFlag, 0);
        EXPECT_EQ(SessionState.equalizeSpectrumFlag, -1) << "hidden, and kept";
        EXPECT_EQ(hidden(), 5);
        EXPECT_EQ(window.size(), small);
        EXPECT_EQ(window.pos(), place);
        dialog.click("Done");
    });
}

TEST_F(stidialogtest, gridShowsTheLevelsWhiteOrGrey) {
    SessionState.noiseLevel = {45.25F, 40, 0, 100, 5, 6, 7.5F};
    SessionState.backgroundNoiseFlag = -1;
    open([](const stioptions& dialog) {
        QTableWidget& grid = dialog.grid();
        const auto ground = [&] { return grid.grab().toImage().pixelColor(grid.width() - 60, 40); };
        std::string bands, levels;
        for (int column = 0; column < 8; ++column) {
            bands += grid.item(0, column)->text().toStdString() + "|";
            levels += dialog.cell(column) + "|";
        }
        EXPECT_EQ(bands, "Freq.(Hz)|125|250|500|1000|2000|4000|8000|");
        EXPECT_EQ(levels, "SPL (dB)|45.3|40||100|5|6|7.5|");
        int others = 0;
        for (int column = 1; column < 8; ++column) others += grid.columnWidth(column);
        EXPECT_NEAR(grid.columnWidth(0), others / 4, 12) << "a fifth and four fifths";
        EXPECT_EQ(grid.columnWidth(0) + others, grid.viewport()->width());
        EXPECT_EQ(ground(), QColor(192, 192, 192));
        dialog.grid().setFocus(Qt::TabFocusReason);
        EXPECT_EQ(ground(), QColor(255, 255, 255));
        QTest::keyClick(&dialog.window, Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), &dialog.control("Done")) << "Tab does not walk the cells";
        EXPECT_EQ(ground(), QColor(192, 192, 192));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(level(1), 45.25F) << "looking changes nothing";
}

TEST_F(stidialogtest, keysEditTheGrid) {
    SessionState.noiseLevel[0] = 30;
    opengrid([](const stioptions& dialog) {
        dialog.keys("-4x5.25");
        EXPECT_EQ(dialog.cell(1), "45.25");
        dialog.key(Qt::Key_Backspace);
        EXPECT_EQ(dialog.cell(1), "45.2");
        EXPECT_EQ(level(1), 30) << "not yet";
        dialog.key(Qt::Key_Return);
        EXPECT_EQ(level(1), 45.2F);
        EXPECT_TRUE(dialog.window.isVisible()) << "Enter is the grid's";
        dialog.keys("0");
        dialog.key(Qt::Key_Enter);
        EXPECT_EQ(level(1), 0);
        EXPECT_EQ(dialog.cell(1), "0.0");

        // Each of the moving keys ends an entry; the cells of the levels are never left.
        const struct {
            Qt::Key key;
            int column;
        } moves[] = {{Qt::Key_Right, 2}, {Qt::Key_End, 7},    {Qt::Key_Left, 6},
                     {Qt::Key_Home, 1},  {Qt::Key_Left, 1},   {Qt::Key_PageDown, 1},
                     {Qt::Key_Up, 1},    {Qt::Key_PageUp, 1}, {Qt::Key_Down, 1}};
        int typed = 50;
        for (const auto& [key, column] : moves) {
            const int from = dialog.grid().currentColumn();
            dialog.keys(std::to_string(++typed).c_str());
            dialog.key(key);
            EXPECT_EQ(level(from), static_cast<float>(typed)) << key;
            EXPECT_EQ(dialog.cell(from), std::to_string(typed) + ".0") << key;
            EXPECT_EQ(dialog.grid().currentColumn(), column) << key;
            EXPECT_EQ(dialog.grid().currentRow(), 1) << key;
        }

        // So does the choice of another cell, but for a heading, which is none.
        dialog.keys("61");
        dialog.clickcell(0, 4);
        dialog.keys(".5");
        dialog.clickcell(1, 5);
        EXPECT_EQ(level(1), 61.5F);
        EXPECT_EQ(dialog.cell(1), "61.5");
        dialog.keys("62");
        QTest::keyClick(&dialog.window, Qt::Key_Tab);
        EXPECT_EQ(level(5), 62) << "another control takes the focus";
        dialog.grid().setFocus(Qt::TabFocusReason);
        dialog.keys("63");
        QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(&dialog.grid(), &away);
        EXPECT_EQ(level(5), 62) << "another program's window is no other control";
        QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(&dialog.grid(), &back);
        dialog.keys(".5");
        dialog.click("Done");
    });
    EXPECT_EQ(level(5), 63.5F);
}

TEST_F(stidialogtest, closingOtherwiseDropsTheEntry) {
    for (const bool byescape : {true, false}) {
        opengrid([&](const stioptions& dialog) {
            dialog.keys("0");
            if (byescape)
                dialog.key(Qt::Key_Escape);
            else
                dialog.window.close();
        });
        EXPECT_EQ(level(1), 0);
    }
}

TEST_F(stidialogtest, leavingAZeroStopsTheProgram) {
    const auto leave = [](const std::function<void(const stioptions&)>& how) {
        opengrid([&](const stioptions& dialog) {
            dialog.keys(".");
            how(dialog);
        });
    };
    EXPECT_EXIT(leave([](const stioptions& dialog) { dialog.clickcell(1, 2); }), testing::ExitedWithCode(0),
                "");
    EXPECT_EXIT(leave([](const stioptions& dialog) { dialog.click("Done"); }), testing::ExitedWithCode(0),
                "");
}

TEST_F(stidialogtest, commandComputesAndAsks) {
    openroom();
    SessionState.parameterSource = -1;
    for (int receiver = 1; receiver <= RoomModel.receiverCount; ++receiver)
        for (int band = 1; band <= 12; ++band) ParameterSet.STI(receiver, band) = 0;
    enablecommand("STIopt", true);
    answers::expectwindow("STIOptions", [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Return); });
    answers::expectbox("STI values could have been changed", platform::answer::cancel);
    choose("STIopt");
    EXPECT_EQ(ParameterSet.STI(1, 12), 0.5F);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(control<QLabel>("StatusBar1_1").text(), "");
}

} // namespace
} // namespace orv

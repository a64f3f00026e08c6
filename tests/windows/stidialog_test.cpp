// The dialog "STI Options": choices, hiding, the noise grid by its keys.
#include "windowtest.h"

#include <QTableWidget>

namespace orv {
namespace {

struct stioptions : windowview {
    QTableWidget& grid() const { return control<QTableWidget>("NoiseGrid"); }
    void clickcell(int row, int column) const {
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, {},
                          grid().visualItemRect(grid().item(row, column)).center());
    }
    void key(Qt::Key pressed) const { QTest::keyClick(&grid(), pressed); }
    void keys(const char* text) const { QTest::keyClicks(&grid(), text); }
};

struct stidialogtest : windowtest {
    // Shows the dialog with the grid, which has the focus on the cell of 125 Hz.
    static void opengrid(const std::function<void(const stioptions&)>& act) {
        SessionState.backgroundNoiseFlag = -1;
        within("STIOptions", [act](const windowview& dialog) {
            const stioptions open{dialog};
            open.grid().setFocus(Qt::TabFocusReason);
            act(open);
        });
        platform::showwindow("STI Options", true);
    }

    static float level(int column) {
        return SessionState.noiseLevel.at(static_cast<std::size_t>(column - 1));
    }
};

TEST_F(stidialogtest, ChoicesAreStoredAtOnceAndHideWithoutNoise) {
    SessionState.forceVoiceSplFlag = -1;
    within("STIOptions", [](const windowview& dialog) {
        const auto hidden = [&] {
            int count = 0;
            for (const char* name : {"EqualizeYes", "EqualizeNo", "ForceSPLYes", "ForceSPLNo", "NoiseGrid"})
                count += !dialog.shown(name);
            return count;
        };
        for (const char* chosen : {"BackNoiseNotInfluent", "EqualizeNo", "ForceSPLYes"})
            EXPECT_TRUE(dialog.ticked(chosen)) << chosen;
        EXPECT_EQ(hidden(), 5);
        const QSize small = dialog.window.size();
        dialog.click("BackNoisePresent");
        EXPECT_EQ(SessionState.backgroundNoiseFlag, -1);
        EXPECT_EQ(hidden(), 0);
        dialog.click("EqualizeYes");
        dialog.click("ForceSPLNo");
        EXPECT_EQ(SessionState.forceVoiceSplFlag, 0);
        dialog.click("BackNoiseNotInfluent");
        EXPECT_EQ(SessionState.backgroundNoiseFlag, 0);
        EXPECT_EQ(SessionState.equalizeSpectrumFlag, -1) << "hidden, and kept";
        EXPECT_EQ(hidden(), 5);
        EXPECT_EQ(dialog.window.size(), small);
    });
    platform::showwindow("STI Options", true);
}

TEST_F(stidialogtest, GridShowsTheLevelsWhole) {
    SessionState.noiseLevel = {45.25F, 40, 0, 100, 5, 6, 7.5F};
    opengrid([](const stioptions& dialog) {
        QTableWidget& grid = dialog.grid();
        dialog.window.resize(1, 1);
        QTest::qWait(1);
        QStringList bands, levels;
        for (int column = 0; column < 8; ++column) {
            bands += grid.item(0, column)->text();
            levels += grid.item(1, column)->text();
            EXPECT_GE(grid.columnWidth(column), grid.fontMetrics().horizontalAdvance(bands.back()));
        }
        EXPECT_EQ(bands.join('|'), "Freq.(Hz)|125|250|500|1000|2000|4000|8000");
        EXPECT_EQ(levels.join('|'), "SPL (dB)|45.3|40||100|5|6|7.5");
        EXPECT_TRUE(grid.viewport()->rect().contains(grid.visualItemRect(grid.item(1, 7))));
        QTest::keyClick(&dialog.window, Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), &dialog.control("Done")) << "Tab does not walk the cells";
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(level(1), 45.25F) << "looking changes nothing";
}

TEST_F(stidialogtest, KeysEditTheGrid) {
    opengrid([](const stioptions& dialog) {
        dialog.keys("45.25");
        dialog.key(Qt::Key_Backspace);
        dialog.key(Qt::Key_Return);
        EXPECT_EQ(level(1), 45.2F);
        EXPECT_TRUE(dialog.window.isVisible()) << "Enter is the grid's";

        // Each of the moving keys ends an entry; the cells of the levels are never left.
        const std::pair<Qt::Key, int> moves[] = {{Qt::Key_Right, 2}, {Qt::Key_End, 7},  {Qt::Key_Left, 6},
                                                 {Qt::Key_Home, 1},  {Qt::Key_Left, 1}, {Qt::Key_Up, 1},
                                                 {Qt::Key_PageUp, 1}};
        int typed = 50;
        for (const auto& [key, column] : moves) {
            const int from = dialog.grid().currentColumn();
            dialog.keys(std::to_string(++typed).c_str());
            dialog.key(key);
            EXPECT_EQ(level(from), static_cast<float>(typed)) << key;
            EXPECT_EQ(dialog.grid().currentColumn(), column) << key;
            EXPECT_EQ(dialog.grid().currentRow(), 1) << key;
        }

        // So do the choice of another cell, but for a heading, and of another control.
        dialog.keys("61");
        dialog.clickcell(0, 4);
        dialog.keys(".5");
        dialog.clickcell(1, 5);
        EXPECT_EQ(level(1), 61.5F);
        dialog.keys("62");
        dialog.click("Done");
    });
    EXPECT_EQ(level(5), 62);
    opengrid([](const stioptions& dialog) {
        dialog.keys("5");
        dialog.key(Qt::Key_Escape); // drops the entry
        EXPECT_FALSE(dialog.window.isVisible());
    });
    EXPECT_EQ(level(1), 61.5F);
}

TEST_F(stidialogtest, LeavingAZeroStopsTheProgram) {
    const auto leave = [] {
        opengrid([](const stioptions& dialog) {
            dialog.keys("0");
            dialog.clickcell(1, 2);
        });
    };
    EXPECT_EXIT(leave(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace orv

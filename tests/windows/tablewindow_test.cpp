// The window "Table" in its three arrangements: its controls, copy, sizes, and the largest tables.
#include "windowtest.h"

#include "results/parameterset.h"
#include "results/tablecells.h"

#include <QClipboard>
#include <QComboBox>
#include <QPushButton>
#include <QTableView>

#include <cstdio>

namespace orv {
namespace {

constexpr int receivers = 30;

struct opentableview : windowview {
    QTableView& grid() const { return control<QTableView>("Grid"); }
    QComboBox& box() const { return control<QComboBox>("RecNo"); }
    QString cell(int row, int column) const { return grid().model()->index(row, column).data().toString(); }
    QString heading(Qt::Orientation orientation, int section) const {
        return grid().model()->headerData(section, orientation).toString();
    }
    void typereceiver(const char* number) const {
        box().lineEdit()->selectAll();
        QTest::keyClicks(&box(), number);
        QTest::keyClick(&box(), Qt::Key_Return);
    }
};

struct tablewindowtest : windowtest {
    tablewindowtest() {
        RoomModel.receiverCount = receivers;
        for (int receiver = 0; receiver <= receivers; ++receiver)
            for (int band = 1; band <= bandcount; ++band)
                ParameterSet.Leq(receiver, band) = static_cast<float>(receiver + 100 * band);
    }

    // Opens a table as its menu entry does.
    void open(const char* command, const std::function<void(const opentableview&)>& act) const {
        within("Table", [act](const windowview& table) { act({table}); });
        choose(command);
    }
};

TEST_F(tablewindowtest, OneParameterOfAllReceivers) {
    open("T_SPL", [](const opentableview& table) {
        EXPECT_EQ(table.window.windowTitle(), "Table of Leq");
        EXPECT_FALSE(table.box().isVisible());
        EXPECT_EQ(table.heading(Qt::Vertical, receivers), " 30");
        EXPECT_EQ(table.heading(Qt::Horizontal, 11), "Lin");
        EXPECT_EQ(table.cell(receivers, 11), "1230.0");
        QTest::keyClick(&table.control("CopyTable"), Qt::Key_Return);
        EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("\t1230.0"));
        table.click("CloseTable");
        EXPECT_FALSE(table.window.isVisible());
    });
}

TEST_F(tablewindowtest, ReceiversAndFrequenciesAreChosenFromTheListOrTyped) {
    open("SingleRec", [](const opentableview& table) {
        EXPECT_EQ(table.box().count(), receivers);
        EXPECT_EQ(table.cell(0, 0), "101.0") << "the first receiver at once";
        // What is on the screen follows, not only the model.
        const QImage before = table.grid().grab().toImage();
        QTest::keyClick(&table.box(), Qt::Key_Down);
        EXPECT_EQ(table.cell(0, 0), "102.0");
        EXPECT_NE(table.grid().grab().toImage(), before);
        table.typereceiver("09");
        EXPECT_EQ(table.cell(0, 0), "109.0");
        EXPECT_EQ(table.box().currentText(), "9");
        EXPECT_TRUE(table.window.isVisible()) << "Enter belongs to the number";
        table.expectroom({"Label1", "RecNo", "Grid", "CopyTable", "CloseTable"});
    });
    open("R_Robin", [](const opentableview& table) {
        EXPECT_EQ(table.cell(0, receivers - 1), "330.0");
        QTest::keyClick(&table.box(), Qt::Key_End);
        EXPECT_EQ(table.cell(0, receivers - 1), "1230.0");
        QTest::keyClick(&table.window, Qt::Key_Escape);
        EXPECT_FALSE(table.window.isVisible());
    });
}

TEST_F(tablewindowtest, AReceiverOutOfRangeEndsTheProgram) {
    const auto type = [&] {
        open("SingleRec", [](const opentableview& table) {
            answers::expectbox("outside 0..100000", platform::answer::ok,
                               [](QWidget&) { std::fputs("told", stderr); });
            table.typereceiver("100001");
        });
    };
    EXPECT_EXIT(type(), testing::ExitedWithCode(1), "told");
}

TEST_F(tablewindowtest, TheLargestOpenAndScroll) {
    RoomModel.receiverCount = highestreceiver;
    const struct {
        const char* command;
        int rows, columns;
    } tables[] = {{"T_C80", 100001, 12}, {"R_Robin", 9, 100000}};
    for (const auto& largest : tables) {
        open(largest.command, [&](const opentableview& table) {
            const QTableView& grid = table.grid();
            EXPECT_EQ(grid.model()->rowCount(), largest.rows);
            EXPECT_EQ(grid.model()->columnCount(), largest.columns);
            const auto last = grid.model()->index(largest.rows - 1, largest.columns - 1);
            table.grid().scrollTo(last);
            EXPECT_TRUE(grid.viewport()->rect().contains(grid.visualRect(last)));
        });
    }
}

} // namespace
} // namespace orv

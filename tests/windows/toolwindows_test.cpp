// The windows "Sum & Equalize result files" and "Alfa-Beta Optimizer": their controls and what these do.
#include "windowtest.h"

#include "tools/optimizer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QTableWidget>

namespace orv {
namespace {

struct toolwindows : windowtest {
    toolwindows() { writesamples(); }

    static void expectroom(const windowview& tool) {
        for (const QWidget* part : tool.window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            if (part->isVisible()) tool.expectroom({part->objectName().toUtf8().constData()});
    }
};

TEST_F(toolwindows, SlidersFillTheRowThatIsSelected) {
    within("SumEqualize", [this](const windowview& sum) {
        std::filesystem::copy_file(inside("box._01"), inside("box._02"));
        EXPECT_EQ(sum.window.windowTitle(), "Sum & Equalize result files");
        expectroom(sum);
        EXPECT_FALSE(sum.enabled("Slider1_0")) << "there is no row";
        answers::expectfile("Select output files to be summed",
                            "\"" + inside("box._01") + "\" \"" + inside("box._02") + "\"");
        sum.click("SelectInput");
        auto& grid = sum.control<QTableWidget>("MSFlexGrid1");
        ASSERT_EQ(grid.rowCount(), 2);
        EXPECT_EQ(sum.control<QLabel>("PathName").text().toStdString(), inside(""));
        EXPECT_EQ(grid.horizontalHeaderItem(7)->text(), "1kHz\nG (dB)");

        // Up means louder; each slider stands over its column.
        auto& slider = sum.control<QSlider>("Slider1_5");
        slider.setFocus();
        QTest::keyClick(&slider, Qt::Key_Up);
        EXPECT_EQ(grid.item(0, 7)->text(), " 1");
        const int column = grid.viewport()->mapTo(&sum.window, QPoint(grid.columnViewportPosition(7), 0)).x();
        EXPECT_NEAR(slider.geometry().center().x(), column + grid.columnWidth(7) / 2, 3);

        grid.selectRow(1);
        EXPECT_EQ(slider.value(), 0);
        sum.control<QCheckBox>("Check1").setChecked(true);
        sum.control<QSlider>("Slider1_0").setValue(30);
        sum.control<QSlider>("Slider2").setValue(500);
        EXPECT_EQ(grid.item(1, 1)->text(), " 500");
        EXPECT_EQ(grid.item(1, 11)->text(), "-30");
        EXPECT_EQ(grid.item(0, 7)->text(), " 1");
        grid.selectRow(0);
        EXPECT_EQ(slider.value(), -1);
        EXPECT_EQ(grid.item(0, 2)->text(), "0") << "selecting writes nothing";
    });
    choose("SumEq");
}

TEST_F(toolwindows, AFailedSumIsToldAndAGoodOneCloses) {
    within("SumEqualize", [this](const windowview& sum) {
        answers::expectfile("Select output files to be summed", inside("box._01"));
        sum.click("SelectInput");
        answers::expectbox("names no output file", platform::answer::ok);
        sum.click("Compute");
        EXPECT_TRUE(sum.window.isVisible());
        EXPECT_TRUE(sum.enabled("Slider1_0"));
        answers::expectfile("Save result file", inside("sum"));
        sum.click("SelectOutput");
        EXPECT_EQ(sum.control<QLabel>("Outfile").text(), "sum.___");
        sum.click("Compute");
        EXPECT_FALSE(sum.window.isVisible());
    });
    choose("SumEq");
    EXPECT_TRUE(canopen(inside("sum.___")));
}

TEST_F(toolwindows, TheChartFollowsEveryField) {
    within("Optimizer", [this](const windowview& tool) {
        EXPECT_EQ(tool.window.windowTitle(), "Alfa-Beta Optimizer");
        expectroom(tool);
        auto& title = tool.control<QLabel>("GraphTitle");
        auto& graph = tool.control("Graph1");
        QImage before = graph.grab().toImage();
        const auto changed = [&](const char* what) {
            const QImage now = graph.grab().toImage();
            EXPECT_NE(now, before) << what;
            before = now;
        };
        EXPECT_EQ(title.text(), "");
        answers::expectfile("Load an Impulse Response File", inside("box._01"));
        tool.click("Command1_1");
        changed("loaded");
        EXPECT_EQ(tool.control<QTableWidget>("Grid1_1").item(0, 0)->text(), "32768");
        EXPECT_EQ(title.text(), "Freq. = 31.5 Hz  - Rec. = 1  - Alfa =  .9  - Beta =  1");
        tool.control<QComboBox>("Combo1").setCurrentIndex(11);
        changed("band");
        tool.click("UpDown1_up");
        changed("receiver");
        EXPECT_EQ(title.text(), "Freq. = A  - Rec. = 2  - Alfa =  .9  - Beta =  1");
        tool.click("Option2");
        changed("sum");
        tool.type("TextBeta", "9");
        tool.control("TextAlfa").setFocus();
        EXPECT_TRUE(title.text().endsWith("Beta =  9")) << title.text().toStdString();
        tool.window.resize(1200, 900);
        QTest::qWait(1);
        changed("size");

        // Too high a receiver is told, and the last good one comes back.
        answers::expectbox("outside 0..20", platform::answer::ok);
        tool.type("TexRecNum", "21");
        EXPECT_EQ(tool.text("TexRecNum"), "2");
        answers::expectbox("was not found", platform::answer::ok);
        std::filesystem::remove(inside("orvanta.ini"));
        tool.click("CommandSave");
        EXPECT_TRUE(tool.window.isVisible());
    });
    choose("AlfaBetaOpt");
    EXPECT_EQ(Optimizer.file[1].pyramids, 0) << "closed, it keeps nothing";
}

} // namespace
} // namespace orv

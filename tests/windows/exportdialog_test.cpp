// The dialog of the export: its controls are those that the rules look for, and it can be stopped and closed.
#include "windowtest.h"

#include "data/filterbankdesign.h"
#include "platform/qt/qttext.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

namespace orv {
namespace {

struct exportdialogtest : windowtest {
    exportdialogtest() {
        writefilterbanks(inside(""));
        RoomModel.receiverCount = 2;
        ResultSet.timeStep = 0.001F;
        ResultSet.lastSlot = 40;
        createresponse(41, 2);
        for (int r = 1; r <= 2; ++r) std::fill_n(takeresponse(r), 41 * bandcount, 1e8F);
        SessionState.geometryFileName = inside("hall.ray");
        SessionState.resultFileName = inside("hall._07");
        enablecommand("ExportWAV", true);
    }

    static QPushButton& button(QWidget& dialog, const char* name) {
        return *dialog.findChild<QPushButton*>(name);
    }
    static void click(QWidget& dialog, const char* name) {
        QTest::mouseClick(dialog.findChild<QWidget*>(name), Qt::LeftButton, {}, QPoint(8, 8));
    }
    static QLineEdit& field(QWidget& dialog, const char* name) { return *dialog.findChild<QLineEdit*>(name); }
    static QComboBox& list(QWidget& dialog, const char* name) { return *dialog.findChild<QComboBox*>(name); }

    void open(const std::function<void(QWidget&)>& within) const {
        answers::expectwindow("WavExport", within);
        choose("ExportWAV");
    }
};

TEST_F(exportdialogtest, ExportsWhatIsChosen) {
    open([this](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Imp.Response  export to WAV");
        EXPECT_EQ(list(dialog, "RecNo").count(), 3);
        EXPECT_EQ(list(dialog, "Outformat").count(), 18);
        EXPECT_EQ(field(dialog, "Nsamp").text(), " 1920");
        click(dialog, "f44");
        EXPECT_EQ(field(dialog, "Nsamp").text(), " 1764");
        list(dialog, "RecNo").setCurrentText("2"); // typed
        list(dialog, "Outformat").setCurrentIndex(1);
        answers::expectfile("Save a .WAV File", inside("chosen"));
        click(dialog, "Browse");
        EXPECT_EQ(field(dialog, "FileRadix").text().toStdString(), inside("chosen.DXF"));
        field(dialog, "FileRadix").selectAll();
        QTest::keyClicks(&field(dialog, "FileRadix"), qtpath(inside("typed.wav")));
        click(dialog, "StartExport");
        EXPECT_TRUE(canopen(inside("typed_07_2ch_Stereo_002.wav")));
        EXPECT_FALSE(button(dialog, "StopExport").isEnabled());
        EXPECT_TRUE(button(dialog, "StartExport").isEnabled());
        const auto& log = *dialog.findChild<QListWidget*>("List1");
        EXPECT_EQ(log.item(log.count() - 1)->text(), "Complete!");
        EXPECT_EQ(log.currentRow(), log.count() - 1);
        EXPECT_EQ(dialog.findChild<QProgressBar*>("ProgressBar1")->value(), 0);
        click(dialog, "Command2");
    });
}

// While it runs there is nothing to press but Stop and Exit; each of them ends it within the first file.
TEST_F(exportdialogtest, StopAndExitEndARunningExport) {
    for (const char* ending : {"StopExport", "Command2"}) {
        bool pressed = false;
        open([&](QWidget& dialog) {
            list(dialog, "RecNo").setCurrentText("All");
            list(dialog, "Outformat").setCurrentIndex(17);
            field(dialog, "Density").setText("200");
            QTimer::singleShot(100, &dialog, [&] {
                for (const char* disabled : {"StartExport", "Browse"})
                    EXPECT_FALSE(button(dialog, disabled).isEnabled()) << disabled;
                EXPECT_FALSE(field(dialog, "Nsamp").isEnabled());
                click(dialog, ending);
                pressed = true;
            });
            click(dialog, "StartExport");
            EXPECT_TRUE(pressed);
            if (dialog.isVisible()) click(dialog, "Command2");
        });
        EXPECT_TRUE(canopen(inside("hall_07_32x32_MIMO_SPS32xSPS32_001.wav")));
        EXPECT_FALSE(canopen(inside("hall_07_32x32_MIMO_SPS32xSPS32_002.wav")));
        EXPECT_FALSE(commandssuspended());
    }
}

} // namespace
} // namespace orv

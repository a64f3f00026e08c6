// The dialog of the export: its controls are those that the rules look for, and it can be stopped and closed.
#include "windowtest.h"

#include "data/filterbankdesign.h"

#include <QComboBox>
#include <QListWidget>
#include <QProgressBar>
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
};

TEST_F(exportdialogtest, ExportsWhatIsChosen) {
    within("WavExport", [this](const windowview& dialog) {
        EXPECT_EQ(dialog.window.windowTitle(), "Imp.Response  export to WAV");
        EXPECT_EQ(dialog.control<QComboBox>("RecNo").count(), 3);
        EXPECT_EQ(dialog.control<QComboBox>("Outformat").count(), 18);
        EXPECT_EQ(dialog.text("Nsamp"), " 1920");
        dialog.click("f44");
        EXPECT_EQ(dialog.text("Nsamp"), " 1764");
        dialog.control<QComboBox>("RecNo").setCurrentText("2"); // typed
        dialog.control<QComboBox>("Outformat").setCurrentIndex(1);
        answers::expectfile("Save a .WAV File", inside("chosen"));
        dialog.click("Browse");
        EXPECT_EQ(dialog.text("FileRadix").toStdString(), inside("chosen.DXF"));
        dialog.type("FileRadix", inside("typed.wav").c_str());
        dialog.click("StartExport");
        EXPECT_TRUE(canopen(inside("typed_07_2ch_Stereo_002.wav")));
        EXPECT_FALSE(dialog.enabled("StopExport"));
        EXPECT_TRUE(dialog.enabled("StartExport"));
        const auto& log = dialog.control<QListWidget>("List1");
        EXPECT_EQ(log.item(log.count() - 1)->text(), "Complete!");
        EXPECT_EQ(log.currentRow(), log.count() - 1);
        EXPECT_EQ(dialog.control<QProgressBar>("ProgressBar1").value(), 0);
    });
    choose("ExportWAV");
}

// While it runs there is nothing to press but Stop and Exit; each of them ends it within the first file.
TEST_F(exportdialogtest, StopAndExitEndARunningExport) {
    for (const char* ending : {"StopExport", "Command2"}) {
        bool pressed = false;
        within("WavExport", [&](const windowview& dialog) {
            dialog.control<QComboBox>("RecNo").setCurrentText("All");
            dialog.control<QComboBox>("Outformat").setCurrentIndex(17);
            dialog.type("Density", "200");
            QTimer::singleShot(100, &dialog.window, [&] {
                for (const char* disabled : {"StartExport", "Browse"})
                    EXPECT_FALSE(dialog.enabled(disabled)) << disabled;
                EXPECT_FALSE(dialog.enabled("Nsamp"));
                dialog.click(ending);
                pressed = true;
            });
            dialog.click("StartExport");
            EXPECT_TRUE(pressed);
        });
        choose("ExportWAV");
        EXPECT_TRUE(canopen(inside("hall_07_32x32_MIMO_SPS32xSPS32_001.wav")));
        EXPECT_FALSE(canopen(inside("hall_07_32x32_MIMO_SPS32xSPS32_002.wav")));
        EXPECT_FALSE(commandssuspended());
    }
}

} // namespace
} // namespace orv

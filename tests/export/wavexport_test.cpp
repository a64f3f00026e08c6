// The rules of the export's dialog.
#include "export/wavexport.h"

#include "tests/export/exporttest.h"

namespace orv {
namespace {

TEST_F(exporttest, DialogOpensWithTheResponseAtHand) {
    scripted::expectwindow("Export to WAV", openexport);
    enablecommand("ExportWAV", true);
    runcommand("ExportWAV");
    EXPECT_FALSE(commandssuspended());
    EXPECT_EQ(platform::gettext("FileRadix"), inside("hall.wav"));
    EXPECT_EQ(scripted::rowsof("RecNo"), (std::vector<std::string>{" 1", " 2", "All"}));
    EXPECT_EQ(scripted::rowsof("Outformat").size(), 18U);
    EXPECT_EQ(platform::gettext("Nsamp"), " 960");
    platform::setchosen("f48", false);
    choosesamplerate();
    EXPECT_EQ(platform::gettext("Nsamp"), " 882");
}

TEST_F(exporttest, RadixFollowsTheFieldAndTheDialog) {
    openexport();
    scripted::expectsave(scripted::cancelled, "Save a .WAV File");
    browseradix();
    EXPECT_EQ(SessionState.fileRadix, inside("hall.wav"));
    scripted::expectsave(inside("other"));
    browseradix();
    EXPECT_EQ(platform::gettext("FileRadix"), inside("other.DXF"));
    typeradix("");
    scripted::expectsave(inside("a.wav"));
    browseradix();
    EXPECT_TRUE(scripted::callswith("save").back().find("|" + inside("hall.wav") + "|") != std::string::npos);
    EXPECT_EQ(SessionState.fileRadix, inside("a.wav"));
}

TEST_F(exporttest, StartIsDisabledWhileAnExportRuns) {
    writefilterbanks(directory.path);
    openexport();
    platform::settext("Outformat", "1ch_Omni");
    platform::settext("RecNo", " 1");
    scripted::atyield(5, [] {
        EXPECT_FALSE(platform::isenabled("StartExport"));
        EXPECT_TRUE(platform::isenabled("StopExport"));
        EXPECT_EQ(scripted::pointershape(), platform::shape::wait);
    });
    startexport();
    EXPECT_TRUE(platform::isenabled("StartExport"));
    EXPECT_FALSE(platform::isenabled("StopExport"));
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_TRUE(scripted::called("progress ProgressBar1 0"));
    EXPECT_EQ(scripted::statustext(2), "");
}

} // namespace
} // namespace orv

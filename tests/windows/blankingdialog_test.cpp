// The dialog "BLN Options", and a blanking line entered on the picture with it.
#include "windowtest.h"

#include "maps/blanking.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>

namespace orv {
namespace {

struct blankingdialogtest : windowtest {
    blankingdialogtest() {
        BlankingLines = {};
        BlankingOptions = {};
    }
    ~blankingdialogtest() override { BlankingLines = {}; }
};

TEST_F(blankingdialogtest, OptionsGoIntoTheSessionAndAGridOfNoSizeIsRefused) {
    answers::expectwindow("BLNopt", [](QWidget& dialog) {
        EXPECT_TRUE(dialog.findChild<QRadioButton*>("BLNinside")->isChecked());
        dialog.findChild<QRadioButton*>("BLNoutside")->click();
        dialog.findChild<QCheckBox*>("Snap")->click();
        auto* const size = dialog.findChild<QLineEdit*>("gridsize");
        size->setText("0 m");
        answers::expectbox("size 0", platform::answer::ok);
        dialog.findChild<QPushButton*>("Command1")->click();
        EXPECT_TRUE(dialog.isVisible()) << "the line would be lost";
        size->setText("0.25");
        dialog.findChild<QPushButton*>("Command1")->click();
    });
    runcommand("BLNoptions");
    EXPECT_TRUE(BlankingOptions.outside && BlankingOptions.snap && !BlankingOptions.ortho);
    EXPECT_EQ(BlankingOptions.gridsize, "0.25");
}

} // namespace
} // namespace orv

// Steps: sum and equalise, the optimizer of Alfa and Beta.
#include "base/files.h"
#include "platform/qt/answers.h"
#include "results/parameterset.h"
#include "shell/sessionstate.h"
#include "tour/checks.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTableWidget>
#include <QTest>

#include <cmath>
#include <filesystem>
#include <string>
#include <string_view>

namespace orv::tour {

// Two results are chosen, one is delayed and one weighed, and the job is written; then both are summed as
// they are. The sum opens like any other result.
void sumsources() {
    std::filesystem::remove(datafile("sum.___")); // of a former round
    const std::string both = "\"" + datafile("hall._01") + "\" \"" + datafile("hall._02") + "\"";
    answers::expectwindow("SumEqualize", [both](QWidget& window) {
        const auto clicked = [&window](const char* name) {
            QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton);
        };
        const auto slide = [&window](const char* name, int value) {
            window.findChild<QSlider*>(name)->setValue(value);
        };
        answers::expectfile("Select output files to be summed", both);
        clicked("SelectInput");
        answers::expectfile("Save result file", datafile("sum.___"));
        clicked("SelectOutput");
        auto& grid = *window.findChild<QTableWidget*>("MSFlexGrid1");
        check(grid.rowCount() == sources, "not every chosen file is listed");
        grid.selectRow(1);
        slide("Slider2", 20);
        window.findChild<QCheckBox*>("Check1")->setChecked(true);
        slide("Slider1_5", -6);
        window.findChild<QCheckBox*>("Check1")->setChecked(false);
        slide("Slider1_0", 12);
        picture("sum-equalize");
        slide("Slider2", 0);
        for (int band = 0; band < 10; ++band) slide(("Slider1_" + std::to_string(band)).c_str(), 0);
        clicked("Compute");
    });
    choose("SumEq");
    std::filesystem::copy_file(datafile("Jobsummer.job"), sessionfile("Jobsummer.job"),
                               std::filesystem::copy_options::overwrite_existing);
    check(canopen(datafile("sum.___")), "no sum was written");
}

// Against the result that was calculated with both sources at once.
void opensum() {
    const float together = ParameterSet.Leq(0, linearband);
    answers::expectfile("Load an Impulse Response File", datafile("sum.___"));
    expectspeechindex(platform::answer::no);
    choose("MapLoad");
    const double apart = static_cast<double>(ParameterSet.Leq(0, linearband) - together);
    check(std::fabs(apart) < 0.1, "the sum's level is " + std::to_string(apart) + " dB off");
    checkdecay();
}

// Two results with different numbers of pyramids: with the constants of the calculation their curves
// coincide, without correction they do not.
void tuneconstants() {
    answers::expectwindow("Optimizer", [](QWidget& window) {
        const auto clicked = [&window](const char* name) {
            QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton);
        };
        const auto typed = [&window](const char* name, const char* text) {
            auto& field = *window.findChild<QLineEdit*>(name);
            field.setFocus();
            field.selectAll();
            QTest::keyClicks(&field, text);
        };
        picture("optimizer-empty");
        answers::expectfile("Load an Impulse Response File", datafile("hall._03"));
        clicked("Command1_0");
        answers::expectfile("Load an Impulse Response File", datafile("hall._04"));
        clicked("Command1_1");
        window.findChild<QComboBox*>("Combo1")->setCurrentIndex(band1k - 1);
        picture("optimizer-impulse");
        auto& schroeder = *window.findChild<QRadioButton*>("Option2");
        QTest::mouseClick(&schroeder, Qt::LeftButton, {}, QPoint(8, schroeder.height() / 2));
        typed("TextBeta", "0");
        clicked("Command2");
        picture("optimizer-uncorrected");
        typed("TextBeta", "1");
        clicked("Command2");
        picture("optimizer-tuned");
        clicked("CommandSave");
        QTest::keyClick(&window, Qt::Key_Escape);
    });
    choose("AlfaBetaOpt");
    const filebytes settings = readfile(datafile("orvanta.ini"));
    check(std::string_view(settings).find("Beta=1 scale") != std::string_view::npos,
          "the constants were not saved");
}

} // namespace orv::tour

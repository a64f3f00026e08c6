// Steps: the export of responses as sound.
#include "base/files.h"
#include "platform/qt/answers.h"
#include "platform/qt/qttext.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <cstdint>
#include <string>

namespace orv::tour {

namespace {

// Exports receiver 12 in a format; the file lies in the session's directory. Its size is that of the whole
// response at 48 kHz.
void exportformat(QWidget& dialog, const char* label, std::uint64_t samples) {
    auto& formats = *dialog.findChild<QComboBox*>("Outformat");
    formats.setCurrentIndex(formats.findText(label));
    QTest::mouseClick(dialog.findChild<QPushButton*>("StartExport"), Qt::LeftButton);
    const std::string file = sessionfile("hall_01_" + std::string(label) + "_012.wav");
    constexpr std::uint64_t headersize = 44, rate = 48000, seconds = 3;
    check(canopen(file) && filesize(file) == headersize + 4 * samples * rate * seconds,
          file + " is not as long as the response");
}

} // namespace

void exportwav() {
    answers::expectwindow("WavExport", [](QWidget& dialog) {
        dialog.findChild<QComboBox*>("RecNo")->setCurrentIndex(11);
        auto& radix = *dialog.findChild<QLineEdit*>("FileRadix");
        radix.selectAll();
        // Pasted, since a path may have letters that no key click knows.
        QGuiApplication::clipboard()->setText(qtpath(sessiondirectory() + "/hall.wav"));
        radix.paste();
        exportformat(dialog, "1ch_Omni", 1);
        exportformat(dialog, "2ch_Stereo", 2);
        exportformat(dialog, "16ch_3rd_order_Ambisonics_(Ambix)", 16);
        exportformat(dialog, "4x4_MIMO_Ambix1xAmbix1", 16);
        picture("export-wav");
        QTest::mouseClick(dialog.findChild<QPushButton*>("Command2"), Qt::LeftButton);
    });
    choose("ExportWAV");
}

} // namespace orv::tour

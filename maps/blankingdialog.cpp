// The dialog "BLN Options", with a picture of each of the two things that a line may blank.
#include "maps/blankingdialog.h"

#include "maps/blanking.h"
#include "platform/qt/boundary.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "shell/sessionstate.h"
#include "ui_blankingdialog.h"

#include <QDialog>
#include <QPainter>
#include <QPixmap>

namespace orv {

namespace {

constexpr QSize illustrated(104, 60); // pixels
constexpr QColor paper(255, 255, 255), blanked(150, 150, 150);
constexpr double corners[][2] = {{.28, .2}, {.72, .14}, {.86, .55}, {.55, .86}, {.18, .7}}; // of the size

// A line on a map of which its inside or its outside is blank.
void illustrate(QLabel& label, bool outside) {
    const double ratio = label.devicePixelRatioF();
    QPixmap map(illustrated * ratio);
    map.setDevicePixelRatio(ratio);
    map.fill(outside ? blanked : paper);
    QPolygonF line;
    for (const auto& [x, y] : corners) line << QPointF(x * illustrated.width(), y * illustrated.height());
    {
        QPainter painter(&map);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(qtcolour(SessionState.colourBlanking), 2));
        painter.setBrush(outside ? paper : blanked);
        painter.drawPolygon(line);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(label.palette().color(QPalette::Dark));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(0, 0, illustrated.width() - 1, illustrated.height() - 1));
    }
    label.setPixmap(map);
}

void connectcontrols(const Ui::BLNopt& form) {
    blankingoptions& options = BlankingOptions;
    (options.outside ? form.BLNoutside : form.BLNinside)->setChecked(true);
    form.gridsize->setText(qttext(options.gridsize));
    form.Ortho->setChecked(options.ortho);
    form.Snap->setChecked(options.snap);
    QObject::connect(form.BLNoutside, &QRadioButton::toggled,
                     [](bool chosen) { BlankingOptions.outside = chosen; });
    QObject::connect(form.gridsize, &QLineEdit::textChanged,
                     [](const QString& text) { BlankingOptions.gridsize = coretext(text); });
    QObject::connect(form.Ortho, &QCheckBox::toggled, [](bool ticked) { BlankingOptions.ortho = ticked; });
    QObject::connect(form.Snap, &QCheckBox::toggled, [](bool ticked) { BlankingOptions.snap = ticked; });
}

} // namespace

void showblankingoptions(bool) {
    QDialog dialog(platform::dialogparent());
    Ui::BLNopt form;
    form.setupUi(&dialog);
    illustrate(*form.Picture1, false);
    illustrate(*form.Picture2, true);
    connectcontrols(form);
    QObject::connect(form.Command1, &QPushButton::clicked, &dialog, [&dialog] {
        bool usable = false;
        enter([&] { usable = checkblankingoptions(); });
        if (usable) dialog.accept();
    });
    // Escape and the window's own close ask no less than "OK".
    bool usable = false;
    while (!usable) {
        platform::rundialog(dialog);
        usable = dialog.result() == QDialog::Accepted || checkblankingoptions();
    }
}

} // namespace orv

// The dialog "RGB Settings": a patch and a number for each entry of the colour table, the highest on top as
// in the scale of a map.
#include "maps/rgbsettingsdialog.h"

#include "maps/rgbsettings.h"
#include "platform/qt/boundary.h"
#include "platform/qt/colourbutton.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/windowhook.h"
#include "shell/sessionstate.h"
#include "ui_rgbsettingsdialog.h"

#include <QDialog>
#include <QLabel>

namespace orv {

namespace {

constexpr QSize patchsize(160, 16); // pixels; the caption of the window needs the width

// A patch and its number in a row of the column.
void addentry(QGridLayout& column, int row, int entry) {
    const QString number = QString::number(entry);
    auto* label = new QLabel(number);
    label->setObjectName("numlab_" + number);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* patch = new QPushButton;
    patch->setObjectName("shape_" + number);
    patch->setAccessibleName(number);
    patch->setIconSize(patchsize);
    patch->setAutoDefault(false);
    column.addWidget(label, row, 0);
    column.addWidget(patch, row, 1);

    const auto show = [patch, entry] {
        showcolour(*patch, SessionState.rgbTable[static_cast<std::size_t>(entry)]);
    };
    show();
    QObject::connect(patch, &QPushButton::clicked, patch, [entry, show] {
        enter([&] { clickcolourentry(entry); });
        show();
    });
    hook(*label, {.pointer = [patch](const pointerevent& event) {
        if (event.action == pointeraction::release && event.left) patch->click();
    }});
}

void addend(QGridLayout& column, int row, const char* text) {
    column.addWidget(new QLabel(text), row, 1, Qt::AlignCenter);
}

void fillcolumn(QGridLayout& column) {
    int row = 0;
    addend(column, row++, "MAX");
    for (int entry = storedcolours - 1; entry >= 0; --entry) addentry(column, row++, entry);
    addend(column, row, "MIN");
}

} // namespace

void showrgbsettings(bool) {
    QDialog dialog(platform::dialogparent());
    Ui::RGBSettings form;
    form.setupUi(&dialog);
    fillcolumn(*form.Patches);
    QObject::connect(form.Command1, &QPushButton::clicked, &dialog, [&dialog] {
        enter(keepcolourtable);
        dialog.accept();
    });
    platform::rundialog(dialog);
}

} // namespace orv

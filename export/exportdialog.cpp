// The dialog "Imp.Response  export to WAV": events go to the rules of export/wavexport.h, which find the
// controls by their names.
#include "export/exportdialog.h"

#include "export/wavexport.h"
#include "platform/qt/boundary.h"
#include "platform/qt/elidedlabel.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "platform/qt/windowhook.h"
#include "shell/mainwindow.h"
#include "ui_exportdialog.h"

#include <QDialog>
#include <QMainWindow>

#include <utility>

namespace orv {

void showexportdialog(bool) {
    QDialog dialog(MainWindow->form.get());
    Ui::WavExport form;
    form.setupUi(&dialog);
    form.RecNo->setCompleter(nullptr);

    const std::pair<QAbstractButton*, void (*)()> buttons[] = {{form.f44, choosesamplerate},
                                                               {form.f48, choosesamplerate},
                                                               {form.Browse, browseradix},
                                                               {form.StartExport, startexport},
                                                               {form.StopExport, stopexport}};
    for (const auto& [button, routine] : buttons)
        QObject::connect(button, &QAbstractButton::clicked, &dialog, [run = routine] { enter(run); });
    // Behind the export the keyboard is where it began, not on Exit.
    QObject::connect(form.StartExport, &QAbstractButton::clicked, form.StartExport,
                     qOverload<>(&QWidget::setFocus));
    QObject::connect(form.FileRadix, &QLineEdit::textEdited, &dialog,
                     [](const QString& text) { enter([&] { typeradix(corepath(text)); }); });
    // A path may be too long for the field.
    QObject::connect(form.FileRadix, &QLineEdit::textChanged, form.FileRadix,
                     [&form](const QString& path) { form.FileRadix->setToolTip(tooltipof(path)); });
    QObject::connect(form.Command2, &QPushButton::clicked, &dialog, &QDialog::reject);
    QObject::connect(&dialog, &QDialog::finished, &dialog, [] { enter(stopexport); });

    openexport();
    form.RecNo->setFocus();
    platform::rundialog(dialog);
}

} // namespace orv

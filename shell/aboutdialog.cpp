// The small window "About": the program's name and version.
#include "shell/aboutdialog.h"

#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"
#include "ui_aboutdialog.h"

#include <QDialog>
#include <QMainWindow>

namespace orv {

void showabout(bool) {
    QDialog dialog(MainWindow->form.get());
    Ui::About form;
    form.setupUi(&dialog);
    form.VersionText->setText("Version " + qttext(versiontext));
    QObject::connect(form.Command1, &QPushButton::clicked, &dialog, &QDialog::accept);
    platform::rundialog(dialog);
}

} // namespace orv

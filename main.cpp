// The program: the application, the main window, the event loop.
#include "platform/qt/boundary.h"
#include "platform/qt/platformqt.h"
#include "shell/mainwindow.h"
#include "shell/workflows.h"

#include <QApplication>
#include <QIcon>
#include <QMetaObject>

#include <string>

namespace {

void seticon() {
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 128, 256})
        icon.addFile(QString(":/orvanta-view-%1.png").arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
}

// The command line is not used. A desktop names the file that its user has chosen in the environment.
void openstartfile(QApplication& application) {
    const std::string file = qgetenv("ORVANTA_OPEN").toStdString();
    qunsetenv("ORVANTA_OPEN"); // it is not for programs that this one starts
    if (file.empty()) return;
    // Once the window is there, as if its user had chosen it.
    QMetaObject::invokeMethod(
        &application, [file] { orv::enter([&] { orv::openfile(file); }); }, Qt::QueuedConnection);
}

} // namespace

int main(int argumentcount, char** arguments) {
    QApplication application(argumentcount, arguments);
    orv::platform::prepare();
    seticon();
    orv::showmainwindow();
    openstartfile(application);
    const int status = QApplication::exec();
    orv::removemainwindow();
    return status;
}

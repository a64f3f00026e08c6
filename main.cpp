// The program: the application, the main window, the event loop.
#include "platform/qt/platformqt.h"
#include "shell/mainwindow.h"

#include <QApplication>

int main(int argumentcount, char** arguments) {
    QApplication application(argumentcount, arguments);
    orv::platform::prepare();
    orv::showmainwindow();
    const int status = QApplication::exec();
    orv::removemainwindow();
    return status;
}

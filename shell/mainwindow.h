// Orvview, the main window: menus, picture, camera controls, status bar. For Qt files only.
#pragma once

#include "scene/paintersurface.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

class QAction;
class QLabel;
class QMainWindow;
class QPlainTextEdit;
class QStackedWidget;
class QToolButton;
class QWidget;

namespace orv {

// The window and what is shown on it. There is at most one, and it must be gone before the QApplication.
struct mainwindow {
    std::unique_ptr<QMainWindow> form;
    std::map<std::string_view, QAction*> actions; // by the command's name

    // The area of the picture shows one of three pages: Picture1, the log of a load, or what to do when there
    // is nothing to show.
    QStackedWidget* area = nullptr;
    QWidget* picturewidget = nullptr; // Picture1
    QPlainTextEdit* log = nullptr;
    QWidget* emptystate = nullptr;
    QLabel *emptytitle = nullptr, *emptytext = nullptr;
    QWidget* column = nullptr; // of the camera controls
    std::array<QLabel*, 2> panel{};
    QToolButton* logbutton = nullptr; // brings up the log of the last load

    paintersurface picture{1, 1, 1}; // what Picture1 shows, in the size of the area
    bool pictureshown = true;
    bool logwanted = false; // in place of the picture, until the next drawing
    bool keeplog = false;   // a drawing runs that does not end that
    bool closed = false;
    std::int32_t background = 0, restingbackground = 0; // 0x00BBGGRR; another than the resting one at a load

    // Texts that come onto the window with the next refresh, in the core's code page.
    std::array<std::string, 2> paneltext;
    std::string logtext;
    int loglines = 0;
    bool logchanged = false;
    bool refreshing = false; // one has been asked for

    bool resizedmeanwhile = false; // while a job ran that keeps the picture for itself
    int rearranging = 0;           // above 0 while the program itself shows, hides or disables controls
};

extern std::unique_ptr<mainwindow> MainWindow;

// Makes the window, runs the start-up (which may end the program) and shows it.
void showmainwindow();

// Destroys it with all it owns.
void removemainwindow();

// Brings up the page that fits what there is to show.
void showpage();

// Disables what must not disturb a job that suspends the commands, and the reverse.
void showbusy();

} // namespace orv

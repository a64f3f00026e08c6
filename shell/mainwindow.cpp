// The main window: builds it from its form and the table of commands, and hands its events to plain routines.
#include "shell/mainwindow.h"

#include "platform/platform.h"
#include "platform/qt/boundary.h"
#include "platform/qt/elidedlabel.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "platform/qt/windowhook.h"
#include "scene/camera.h"
#include "scene/pointer.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"
#include "shell/startup.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QFontDatabase>
#include <QMainWindow>
#include <QPainter>
#include <QScreen>
#include <QToolButton>
#include <QWindow>

#include <iterator>
#include <utility>

namespace orv {

std::unique_ptr<mainwindow> MainWindow;

namespace {

// Keys beside the mnemonics; none of them is a key of a text field's own that would be missed.
constexpr struct {
    std::string_view command;
    const char* keys;
} shortcuts[] = {{"OpenRes", "Ctrl+O"}, {"FLoad", "Ctrl+G"}, {"Fsave", "Ctrl+S"},  {"Cprint", "Ctrl+P"},
                 {"FQuit", "Ctrl+Q"},   {"Copy", "Ctrl+C"},  {"Redraw", "Ctrl+3"}, {"CamRedr2D", "Ctrl+2"}};

constexpr const char* viewgroups[] = {"SSFrame1", "Frame2DView", "Frame1", "Frame2"};
constexpr const char* camerafields[] = {"FocLenght", "CamX", "CamY", "CamZ", "TargetX", "TargetY", "TargetZ"};
// The spin of each field, in the same order.
constexpr const char* spins[] = {"SpinFocal", "Spin2", "Spin3", "Spin4", "Spin5", "Spin6", "Spin7"};
constexpr std::pair<const char*, planechoice> planes[] = {
    {"XY", planechoice::XY}, {"YZ", planechoice::YZ}, {"XZ", planechoice::XZ}};

template <class widget>
widget& control(const QString& name) {
    return *MainWindow->form->findChild<widget*>(name);
}

QString nameof(std::string_view name) {
    return qtpath(name);
}

// --- Building ---

QString fieldofspin(std::string_view spin) {
    for (std::size_t i = 0; i < std::size(spins); ++i)
        if (spins[i] == spin) return camerafields[i];
    return {};
}

// Stores what has been typed into a camera field before another control acts, as leaving the field would.
void leavefield(const QString& actingfield = {}) {
    const auto* field = qobject_cast<const QLineEdit*>(MainWindow->form->focusWidget());
    if (!field || !field->isModified() || field->objectName() == actingfield) return;
    for (const char* name : camerafields)
        if (field->objectName() == name) cameraleft(name, coretext(field->text()));
}

QAction* addentry(QMenu& menu, const menucommand& row) {
    if (row.name.empty()) {
        QAction* separator = menu.addSeparator();
        separator->setVisible(row.visible);
        return separator;
    }
    QAction* action = menu.addAction(qttext(row.caption));
    action->setObjectName(nameof(row.name));
    action->setCheckable(row.checkable);
    // A click on a checkable entry moves its mark before its routine runs; the table has the last word.
    QObject::connect(action, &QAction::triggered, action, [name = row.name] {
        enter([&] {
            leavefield();
            runcommand(name);
        });
        if (MainWindow) MainWindow->actions.at(name)->setChecked(ischecked(name));
    });
    for (const auto& shortcut : shortcuts)
        if (shortcut.command == row.name) action->setShortcut(QKeySequence(shortcut.keys));
    action->setShortcutContext(Qt::ApplicationShortcut); // also from the response window beside the room
    return action;
}

void buildmenus() {
    for (const menutitle& title : menutitles()) {
        QMenu* menu = MainWindow->form->menuBar()->addMenu(qttext(title.caption));
        menu->setObjectName(nameof(title.name));
        for (const menucommand& row : menucommands()) {
            if (row.menu != title.name) continue;
            QAction* action = addentry(*menu, row);
            if (!row.name.empty()) MainWindow->actions[row.name] = action;
        }
    }
    for (const menucommand& row : menucommands())
        if (!row.name.empty()) platform::showcommand(row);
}

void buildstatus(QStatusBar& bar) {
    for (std::size_t i = 0; i < MainWindow->panel.size(); ++i) {
        QLabel* panel = MainWindow->panel[i] = new QLabel(&bar);
        panel->setObjectName("StatusBar1_" + QString::number(i + 1));
        panel->setIndent(4);
    }
    const auto [action, percent] = MainWindow->panel;
    keepelided(*action); // a long path must not widen the window
    percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    percent->setMinimumWidth(percent->fontMetrics().horizontalAdvance(" 100% ") + 8);
    QToolButton* log = MainWindow->logbutton = new QToolButton(&bar);
    log->setObjectName("LogButton");
    log->setText("&Log");
    log->setToolTip("Show what the last load has told");
    log->setCheckable(true);
    log->setAutoRaise(true);
    log->hide();
    bar.addWidget(action, 1);
    bar.addPermanentWidget(percent);
    bar.addPermanentWidget(log);
}

void buildarea(Ui::Orvview& form) {
    mainwindow& window = *MainWindow;
    window.area = form.PictureArea;
    window.picturewidget = form.Picture1;
    window.log = form.LoadLog;
    window.emptystate = form.EmptyState;
    window.emptytitle = form.EmptyTitle;
    window.emptytext = form.EmptyText;
    window.column = form.ControlColumn;
    form.Picture1->setAttribute(Qt::WA_OpaquePaintEvent);
    form.Picture1->setMouseTracking(true); // a band follows the pointer without a button too
    platform::pointer(platform::shape::normal);
    form.LoadLog->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const QColor ground = form.LoadLog->palette().color(QPalette::Window);
    window.restingbackground = window.background = corecolour(ground);
    platform::background(window.restingbackground);

    // The groups come and go; the column keeps the width of all of them.
    form.ControlColumn->setFixedWidth(form.ControlColumn->minimumSizeHint().width());
    for (const char* group : viewgroups) control<QWidget>(group).hide();
}

// --- Events ---

// What was drawn before, in the window's new size. Nobody asked for it: the log stays in front, also when it
// is asked for meanwhile.
void drawresized() {
    struct keptlog {
        const bool former = std::exchange(MainWindow->keeplog, true);
        ~keptlog() { MainWindow->keeplog = former; }
    };
    {
        const keptlog kept;
        mainresized(MainWindow->area->width(), MainWindow->area->height());
    }
    showpage();
}

void fitpicture() {
    mainwindow& window = *MainWindow;
    const QSize size = window.area->size();
    const double ratio = window.area->devicePixelRatioF();
    paintersurface& picture = window.picture;
    if (QSizeF(picture.surface.width(), picture.surface.height()) == QSizeF(size) &&
        picture.surface.scale == ratio)
        return;
    resizepicture(picture, size.width(), size.height(), ratio);
    drawresized();
    window.resizedmeanwhile = commandssuspended(); // nothing is drawn now
}

// What fitpicture has left out, once the job is over.
void redrawresized() {
    if (std::exchange(MainWindow->resizedmeanwhile, false)) drawresized();
}

void paintpicture() {
    QPainter painter(MainWindow->picturewidget);
    painter.drawImage(QPoint(0, 0), picturecontents(MainWindow->picture));
}

// The pointer's events of the picture in its window coordinates; nothing during a job that keeps it.
void pointpicture(const pointerevent& event) {
    if (commandssuspended()) return;
    const DrawSurface& surface = MainWindow->picture.surface;
    const double x = surface.fromDeviceX(event.x * surface.scale);
    const double y = surface.fromDeviceY(event.y * surface.scale);
    const pointerbuttons buttons{event.left, event.right};
    switch (event.action) {
    case pointeraction::press:
        return picturepress(buttons, x, y);
    case pointeraction::move:
        return picturemove(buttons, x, y);
    case pointeraction::release:
        return picturerelease(buttons, x, y);
    case pointeraction::doubleclick:
        return picturedoubleclick();
    }
}

// Keys arrive at the window before any control; those of an open menu are the menu's.
void presskey(int key) {
    if (QApplication::activePopupWidget() || QApplication::activeModalWidget()) return;
    mainkey(keycodeof(key));
    if (key == Qt::Key_Escape) pictureescape();
}

// Closing takes the other windows along and ends the event loop.
void closeall() {
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
        if (window != MainWindow->form.get() && window->isVisible()) window->close();
    MainWindow->closed = true;
    QCoreApplication::quit();
}

// Whether the user moved the focus within the window, which neither another program's window, nor a menu, nor
// a job that rearranges the controls does.
bool ismoved(Qt::FocusReason reason) {
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
           reason != Qt::MenuBarFocusReason && MainWindow && MainWindow->rearranging == 0 &&
           !commandssuspended();
}

void connectfields() {
    for (const char* name : camerafields) {
        QLineEdit& field = control<QLineEdit>(name);
        const auto typed = [&field] { return coretext(field.text()); };
        QObject::connect(&field, &QLineEdit::returnPressed, &field,
                         [name, typed] { enter([&] { cameraentered(name, typed()); }); });
        windowhook calls;
        // After the click that brought the focus, which sets the cursor.
        calls.focus = [&field](Qt::FocusReason reason) {
            if (ismoved(reason))
                QMetaObject::invokeMethod(&field, &QLineEdit::selectAll, Qt::QueuedConnection);
        };
        calls.leave = [name, typed](Qt::FocusReason reason) {
            if (ismoved(reason)) cameraleft(name, typed());
        };
        hook(field, std::move(calls));
    }
}

void connectcontrols() {
    for (const char* name : spins)
        for (const bool up : {true, false}) {
            QToolButton& button = control<QToolButton>(QString(name) + (up ? "_up" : "_down"));
            QObject::connect(&button, &QToolButton::clicked, &button, [name, up] {
                enter([&] {
                    leavefield(fieldofspin(name));
                    cameraspin(name, up);
                });
            });
        }
    for (const auto& [name, plane] : planes) {
        QRadioButton& button = control<QRadioButton>(name);
        QObject::connect(&button, &QRadioButton::clicked, &button,
                         [chosen = plane] { enter([&] { chooseplane(chosen); }); });
    }
    QObject::connect(MainWindow->logbutton, &QToolButton::clicked, MainWindow->logbutton, [](bool wanted) {
        MainWindow->logwanted = wanted;
        showpage();
    });
    QPushButton& redisplay = control<QPushButton>("Redisplay");
    QObject::connect(&redisplay, &QPushButton::clicked, &redisplay, [] { enter(redisplaypressed); });
}

void connectwindow() {
    mainwindow& window = *MainWindow;
    window.picture.changed = [] { MainWindow->picturewidget->update(); };
    hook(*window.picturewidget, {.paint = paintpicture, .pointer = pointpicture});
    hook(*window.area, {.resize = fitpicture});
    hook(*window.form, {.close = closeall});
    window.form->winId(); // makes the window that keys arrive at
    QWindow* handle = window.form->windowHandle();
    hook(*handle, {.key = presskey});
    QObject::connect(handle, &QWindow::screenChanged, handle, [] { enter(fitpicture); });
}

QString plaincaption(std::string_view name) {
    return qttext(command(name).caption).remove('&');
}

void writeemptystate() {
    const QString room = "File > " + plaincaption("FLoad");
    const bool result = SessionState.parameterSource != 0;
    MainWindow->emptytitle->setText(result ? "No room loaded" : "No result loaded");
    MainWindow->emptytext->setText(result ? "Open the room of this result with " + room
                                          : "Open a result and its room with File > " +
                                                plaincaption("OpenRes") + "\nor a room alone with " + room);
}

void build() {
    MainWindow = std::make_unique<mainwindow>();
    MainWindow->form = std::make_unique<QMainWindow>();
    Ui::Orvview form;
    form.setupUi(MainWindow->form.get());
    buildstatus(*form.StatusBar1);
    buildarea(form);
    buildmenus();
    connectfields();
    connectcontrols();
    connectwindow();
}

} // namespace

void showmainwindow() {
    build();
    enter(startup);
    // On a small screen it takes all of it.
    QMainWindow& form = *MainWindow->form;
    const QSize screen = form.screen()->availableSize();
    const bool fits = form.width() <= screen.width() && form.height() <= screen.height();
    form.resize(form.size().boundedTo(screen));
    if (fits)
        form.show();
    else
        form.showMaximized();
    MainWindow->area->setFocus();
}

void removemainwindow() {
    MainWindow.reset();
}

void showpage() {
    mainwindow& window = *MainWindow;
    const bool loading = window.background != window.restingbackground || commandssuspended();
    QWidget* page = window.emptystate;
    if (window.logwanted && window.loglines > 0)
        page = window.log;
    else if (window.pictureshown)
        page = window.picturewidget;
    else if (loading)
        page = window.log;
    if (page == window.emptystate) writeemptystate();
    window.logbutton->setVisible(window.loglines > 0);
    window.logbutton->setEnabled(!commandssuspended());
    window.logbutton->setChecked(page == window.log);
    ++window.rearranging;
    window.area->setCurrentWidget(page);
    --window.rearranging;
}

void showbusy() {
    mainwindow& window = *MainWindow;
    if (window.column->isEnabled() == commandssuspended()) {
        ++window.rearranging;
        window.column->setEnabled(!commandssuspended());
        --window.rearranging;
        if (window.resizedmeanwhile && !commandssuspended())
            QMetaObject::invokeMethod(
                window.area, [] { enter(redrawresized); }, Qt::QueuedConnection);
    }
    showpage();
}

} // namespace orv

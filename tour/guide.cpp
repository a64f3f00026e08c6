// The tour's hands and eyes.
#include "tour/guide.h"

#include "base/files.h"
#include "platform/qt/answers.h"
#include "platform/qt/qttext.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace orv::tour {

namespace {

constexpr int titleheight = 24; // of the bar that stands for a window's frame in a picture
constexpr QColor titleground(60, 72, 88);

std::string outputdirectory;
std::vector<std::string> made;     // files, in the order of making
std::vector<std::string> failures; // of the present step
int pictures = 0;

QMainWindow& window() {
    return *MainWindow->form;
}

template <class widget>
widget* find(std::string_view name) {
    widget* found = MainWindow ? window().findChild<widget*>(qtpath(name)) : nullptr;
    check(found && found->isVisible() && found->isEnabled(), std::string(name) + " cannot be used");
    return found && found->isVisible() && found->isEnabled() ? found : nullptr;
}

// The window in front gets the keys; without a desktop nobody brings it back when a dialog has closed.
void activate() {
    window().activateWindow();
    QCoreApplication::processEvents();
}

// A window with its title above it, where its frame would be.
void paintwindow(QPainter& painter, QWidget& shown, const QPoint& origin) {
    const QRect place(shown.pos() - origin, shown.size());
    if (!shown.windowTitle().isEmpty()) {
        const QRect bar(place.left(), place.top() - titleheight, place.width(), titleheight);
        painter.fillRect(bar, titleground);
        painter.setPen(Qt::white);
        painter.drawText(bar.adjusted(8, 0, -8, 0), Qt::AlignVCenter, shown.windowTitle());
    }
    painter.drawPixmap(place.topLeft(), shown.grab());
    painter.setPen(titleground);
    painter.drawRect(place.adjusted(0, 0, -1, -1));
}

QImage allwindows() {
    std::vector<QWidget*> shown = {&window()};
    const auto others = QApplication::topLevelWidgets();
    for (QWidget* other : others)
        if (other != &window() && other->isVisible()) shown.push_back(other);
    QRect area;
    for (const QWidget* each : shown)
        area |= QRect(each->pos(), each->size())
                    .adjusted(0, each->windowTitle().isEmpty() ? 0 : -titleheight, 0, 0);
    QImage image(area.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (QWidget* each : shown) paintwindow(painter, *each, area.topLeft());
    return image;
}

void save(const QImage& image, const std::string& name) {
    char number[16];
    std::snprintf(number, sizeof number, "%02d-", ++pictures);
    const std::string path = joinpath(outputdirectory, number + name + ".png");
    check(!image.isNull() && image.save(qtpath(path)), "no picture " + path);
    made.push_back(path);
}

// Without a desktop Qt tells what it cannot do there, which nobody needs to know.
void passmessage(QtMsgType, const QMessageLogContext&, const QString& text) {
    if (!text.startsWith("This plugin does not support")) std::fprintf(stderr, "%s\n", qPrintable(text));
}

// Pictures and files of a former run.
void clearoutput() {
    QDir directory(qtpath(outputdirectory));
    const QStringList old = directory.entryList({"[0-9][0-9]-*.png"}, QDir::Files);
    for (const QString& name : old) directory.remove(name);
    QDir(directory.filePath("session")).removeRecursively();
    directory.mkpath("session");
}

void runstep(const step& now) {
    failures.clear();
    answers::watch([](const std::string& reason) { failures.push_back(reason); });
    if (MainWindow) activate();
    now.run();
    for (const std::string& left : answers::stop()) failures.push_back(left + " did not come");
    QCoreApplication::processEvents();
    // Otherwise goes when the event loop has control again, which the tour keeps from it.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (*now.picture) picture(now.picture);
}

} // namespace

bool run(std::span<const step> steps, const std::string& output) {
    qInstallMessageHandler(passmessage);
    outputdirectory = output;
    clearoutput();
    made.clear();
    pictures = 0;
    bool good = true;
    for (const step& now : steps) {
        std::printf("%-37s", now.name);
        std::fflush(stdout); // a step may end the program
        runstep(now);
        std::printf("%s\n", failures.empty() ? "ok" : "FAILED");
        for (const std::string& reason : failures) std::printf("    %s\n", reason.c_str());
        good = good && failures.empty();
    }
    std::printf("\nMade:\n");
    for (const std::string& path : made) std::printf("    %s\n", path.c_str());
    return good;
}

void choose(std::string_view command) {
    const auto found = MainWindow->actions.find(command);
    if (found == MainWindow->actions.end()) return check(false, std::string(command) + " is no command");
    check(found->second->isVisible() && found->second->isEnabled(), std::string(command) + " is not offered");
    found->second->trigger();
}

void lookintomenu(std::string_view menu, const char* picturename) {
    for (QAction* title : window().menuBar()->actions()) {
        if (!title->menu() || title->menu()->objectName() != qtpath(menu)) continue;
        window().menuBar()->setActiveAction(title);
        check(QTest::qWaitFor([&] { return title->menu()->isVisible(); }),
              std::string(menu) + " does not open");
        picture(picturename);
        title->menu()->close();
        return;
    }
    check(false, std::string(menu) + " is no menu");
}

void type(const char* field, const char* text) {
    auto* edited = find<QLineEdit>(field);
    if (!edited) return;
    edited->setFocus();
    edited->selectAll();
    QTest::keyClicks(edited, text);
    QTest::keyClick(edited, Qt::Key_Return);
}

void click(const char* button) {
    if (auto* clicked = find<QAbstractButton>(button))
        QTest::mouseClick(clicked, Qt::LeftButton, {}, QPoint(8, clicked->height() / 2));
}

void press(int key) {
    QTest::keyClick(window().windowHandle(), static_cast<Qt::Key>(key));
}

void check(bool good, const std::string& reason) {
    if (!good) failures.push_back(reason);
}

void picture(const std::string& name) {
    QCoreApplication::processEvents();
    save(allwindows(), name);
}

void watchlog(const std::string& name, const std::function<void()>& load) {
    QImage seen;
    QTimer looking;
    QObject::connect(&looking, &QTimer::timeout, &looking, [&seen] {
        if (MainWindow->area->currentWidget() == MainWindow->log && MainWindow->loglines > 0)
            seen = allwindows();
    });
    looking.start(0);
    load();
    save(seen, name);
}

std::size_t picturesum() {
    const QImage image = picturecontents(MainWindow->picture);
    return qHashBits(image.constBits(), static_cast<std::size_t>(image.sizeInBytes()));
}

std::string datafile(const std::string& name) {
    return joinpath(SessionState.dataDirectory, name);
}

std::string sessionfile(const std::string& name) {
    made.push_back(joinpath(sessiondirectory(), name));
    return made.back();
}

std::string sessiondirectory() {
    return joinpath(outputdirectory, "session");
}

double processage() {
    // The twenty-second field of the process's line, in clock ticks since the machine's start.
    std::ifstream file("/proc/self/stat");
    std::string line;
    std::getline(file, line);
    const std::size_t bracket = line.rfind(')'); // of the second field, the name
    if (bracket == std::string::npos) return 0;
    const QStringList fields = QString::fromStdString(line.substr(bracket + 2)).split(' ');
    timespec now{};
    if (fields.size() < 20 || clock_gettime(CLOCK_BOOTTIME, &now) != 0) return 0;
    const double started = fields[19].toDouble() * 1000 / static_cast<double>(sysconf(_SC_CLK_TCK));
    return static_cast<double>(now.tv_sec) * 1000 + static_cast<double>(now.tv_nsec) / 1e6 - started;
}

} // namespace orv::tour

// Watching the modal window in front, and answering it.
#include "platform/qt/answers.h"

#include "platform/qt/qttext.h"

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPrintDialog>
#include <QPushButton>
#include <QTimer>

#include <deque>
#include <memory>
#include <utility>

namespace orv::answers {

namespace {

constexpr int lookevery = 5;                      // ms
constexpr qint64 patience = 5000;                 // ms
constexpr const char* filefield = "fileNameEdit"; // Qt's names within its own dialogs
constexpr const char* printfield = "filename";

// `act` returns whether the window was the one expected; it has then been answered.
struct expectation {
    std::string what;
    std::function<bool(QWidget&)> act;
};

struct watcher {
    QTimer timer;
    std::function<void(const std::string&)> failed;
    std::deque<expectation> expected;
    QPointer<QWidget> front; // the window seen last
    QElapsedTimer since;
    bool answered = false;
};
std::unique_ptr<watcher> watching;

bool holds(const QString& text, const std::string& fragment) {
    return text.contains(qttext(fragment));
}

QMessageBox::StandardButton buttonof(platform::answer given) {
    switch (given) {
    case platform::answer::ok:
        return QMessageBox::Ok;
    case platform::answer::cancel:
        return QMessageBox::Cancel;
    case platform::answer::yes:
        return QMessageBox::Yes;
    default:
        return QMessageBox::No;
    }
}

QString describe(const QWidget& window) {
    const auto* box = qobject_cast<const QMessageBox*>(&window);
    return "\"" + window.windowTitle() + "\"" + (box ? " (" + box->text() + ")" : QString());
}

void closewindow(QWidget& window, bool accepted) {
    if (auto* dialog = qobject_cast<QDialog*>(&window))
        accepted ? dialog->accept() : dialog->reject();
    else
        window.close();
}

void lookatfront() {
    watcher& now = *watching;
    // Anew each time, for a timer does not fire again within what it has started, and that may open a window.
    now.timer.start(lookevery);
    QWidget* front = QApplication::activeModalWidget();
    if (!front) {
        now.front = nullptr;
        return;
    }
    if (front != now.front) {
        now.front = front;
        now.answered = false;
        now.since.start();
        return; // let it come up first
    }
    if (now.answered) return;
    if (!now.expected.empty()) {
        // Out of the queue before it acts, which may open the next window.
        const expectation next = std::move(now.expected.front());
        now.expected.pop_front();
        now.answered = true;
        if (next.act(*front)) return;
        now.answered = false;
        now.expected.push_front(next);
    }
    if (now.since.elapsed() < patience) return;
    now.answered = true;
    now.failed("The window " + coretext(describe(*front)) + " was not expected" +
               (now.expected.empty() ? "." : "; expected was " + now.expected.front().what + "."));
    closewindow(*front, false);
}

void expect(std::string what, std::function<bool(QWidget&)> act) {
    watching->expected.push_back({std::move(what), std::move(act)});
}

void glance(const look& before, QWidget& window) {
    if (before) before(window);
}

void answerfile(QFileDialog& dialog, const std::string& path) {
    if (path.empty()) return closewindow(dialog, false);
    dialog.findChild<QLineEdit*>(filefield)->setText(qtpath(path));
    closewindow(dialog, true);
}

void answerprint(QPrintDialog& dialog, const std::string& path) {
    if (path.empty()) return closewindow(dialog, false);
    // The last entry of the printers prints to a file.
    if (auto* printers = dialog.findChild<QComboBox*>("printers"))
        printers->setCurrentIndex(printers->count() - 1);
    dialog.findChild<QLineEdit*>(printfield)->setText(qtpath(path));
    closewindow(dialog, true);
}

} // namespace

void watch(std::function<void(const std::string&)> failed) {
    watching = std::make_unique<watcher>();
    watching->failed = std::move(failed);
    QObject::connect(&watching->timer, &QTimer::timeout, &watching->timer, lookatfront);
    watching->timer.setSingleShot(true);
    watching->timer.start(lookevery);
}

std::vector<std::string> stop() {
    std::vector<std::string> left;
    for (const expectation& each : watching->expected) left.push_back(each.what);
    watching.reset();
    return left;
}

void expectbox(std::string fragment, platform::answer given, look before) {
    expect("a box with \"" + fragment + "\"", [=](QWidget& window) {
        auto* box = qobject_cast<QMessageBox*>(&window);
        if (!box || !(holds(box->windowTitle(), fragment) || holds(box->text(), fragment))) return false;
        QAbstractButton* button = box->button(buttonof(given));
        if (!button) return false;
        glance(before, window);
        button->click();
        return true;
    });
}

void expectfile(std::string fragment, std::string path, look before) {
    expect("a file dialog with \"" + fragment + "\"", [=](QWidget& window) {
        auto* dialog = qobject_cast<QFileDialog*>(&window);
        if (!dialog || !holds(dialog->windowTitle(), fragment)) return false;
        glance(before, window);
        answerfile(*dialog, path);
        return true;
    });
}

void expectcolour(std::int32_t colour) {
    expect("the colour dialog", [colour](QWidget& window) {
        auto* dialog = qobject_cast<QColorDialog*>(&window);
        if (!dialog) return false;
        dialog->setCurrentColor(qtcolour(colour));
        closewindow(window, true);
        return true;
    });
}

void expectprint(std::string path, look before) {
    expect("the print dialog", [=](QWidget& window) {
        auto* dialog = qobject_cast<QPrintDialog*>(&window);
        if (!dialog) return false;
        glance(before, window);
        answerprint(*dialog, path);
        return true;
    });
}

void expectwindow(std::string name, look inside) {
    expect("the window " + name, [=](QWidget& window) {
        if (window.objectName().toStdString() != name) return false;
        inside(window);
        return true;
    });
}

} // namespace orv::answers

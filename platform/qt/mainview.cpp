// What the main window shows, as the core asks for it.
//
// Status panels and the log change far more often than anybody can see. Their texts are kept and come onto
// the window together, by one posted event for all changes until then.
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "platform/qt/elidedlabel.h"
#include "platform/qt/qttext.h"
#include "shell/mainwindow.h"
#include "shell/menucommands.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStringListModel>

#include <algorithm>

namespace orv::platform {

namespace {

constexpr int darkest = 128; // lightness of a ground below which its text is white

void refresh() {
    if (!MainWindow) return;
    mainwindow& window = *MainWindow;
    window.refreshing = false;
    showelided(*window.panel[0], qttext(window.paneltext[0]));
    // Mostly a percentage, but an export names its file here.
    showelided(*window.panel[1], qttext(window.paneltext[1]), window.form->statusBar()->width() / 2);
    if (!window.logchanged) return;
    window.logchanged = false;
    window.log->setPlainText(qttext(window.logtext));
    window.log->verticalScrollBar()->setValue(window.log->verticalScrollBar()->maximum());
}

void refreshsoon() {
    mainwindow& window = *MainWindow;
    if (window.refreshing) return;
    window.refreshing = true;
    QMetaObject::invokeMethod(window.form.get(), refresh, Qt::QueuedConnection);
}

// A control of the main window itself, else of the dialog in front, else of the youngest window: one that is
// being opened, or has just been closed, over another that may have a control of the name too.
QWidget& controlof(const std::string& name) {
    QWidget* const dialog = QApplication::activeModalWidget();
    QWidget* elsewhere = nullptr;
    const auto controls = MainWindow->form->findChildren<QWidget*>(QString::fromStdString(name));
    for (QWidget* found : controls) {
        if (found->window() == MainWindow->form.get()) return *found;
        if (!elsewhere || elsewhere->window() != dialog) elsewhere = found;
    }
    if (elsewhere) return *elsewhere;
    throw runtimeerror{errorkind::subscript, "No window has a control named \"" + name + "\"."};
}

// Calls back with the control as what it is; nothing for one without a text.
template <class step>
void withtext(QWidget& control, step&& run) {
    if (auto* field = qobject_cast<QLineEdit*>(&control))
        run(*field);
    else if (auto* button = qobject_cast<QAbstractButton*>(&control))
        run(*button);
    else if (auto* label = qobject_cast<QLabel*>(&control))
        run(*label);
}

bool ispicture(const std::string& control) {
    return control == "Picture1";
}

} // namespace

void statustext(int panel, const std::string& text) {
    MainWindow->paneltext[static_cast<std::size_t>(panel - 1)] = text;
    refreshsoon();
}

void windowtitle(const std::string& text) {
    MainWindow->form->setWindowTitle(qttext(text));
}

std::int32_t background(std::int32_t colour) {
    mainwindow& window = *MainWindow;
    const std::int32_t former = window.background;
    window.background = colour;
    QPalette palette = window.log->palette();
    palette.setColor(QPalette::Base, qtcolour(colour));
    palette.setColor(QPalette::Text, qtcolour(colour).lightness() < darkest ? Qt::white : Qt::black);
    window.log->setPalette(palette);
    showpage();
    return former;
}

void clearlog() {
    MainWindow->logtext.clear();
    MainWindow->loglines = 0;
    MainWindow->logwanted = false;
    MainWindow->logchanged = true;
    refreshsoon();
}

void logline(const std::string& text) {
    mainwindow& window = *MainWindow;
    if (window.loglines > 0) window.logtext += '\n';
    window.logtext += text;
    ++window.loglines;
    window.logchanged = true;
    refreshsoon();
}

double logfill() {
    const double line = QFontMetrics(MainWindow->log->font()).lineSpacing();
    return MainWindow->loglines * line / std::max(line, static_cast<double>(MainWindow->area->height()));
}

DrawSurface& picture() {
    return MainWindow->picture.surface;
}

void settext(const std::string& control, const std::string& text) {
    withtext(controlof(control), [&](auto& shown) { shown.setText(qttext(text)); });
}

std::string gettext(const std::string& control) {
    QWidget& asked = controlof(control);
    if (const auto* list = qobject_cast<QComboBox*>(&asked)) return coretext(list->currentText());
    std::string text;
    withtext(asked, [&](auto& shown) { text = coretext(shown.text()); });
    return text;
}

void setvisible(const std::string& control, bool visible) {
    mainwindow& window = *MainWindow;
    if (ispicture(control)) {
        window.pictureshown = visible;
        if (!window.keeplog) window.logwanted = false;
        return showpage();
    }
    // A field that vanishes has not been left by the user.
    ++window.rearranging;
    controlof(control).setVisible(visible);
    --window.rearranging;
}

bool isvisible(const std::string& control) {
    return ispicture(control) ? MainWindow->pictureshown : !controlof(control).isHidden();
}

void setenabled(const std::string& control, bool enabled) {
    ++MainWindow->rearranging;
    controlof(control).setEnabled(enabled);
    --MainWindow->rearranging;
}

void setchosen(const std::string& control, bool chosen) {
    if (auto* button = qobject_cast<QAbstractButton*>(&controlof(control))) button->setChecked(chosen);
}

bool isenabled(const std::string& control) {
    return controlof(control).isEnabled();
}

bool ischosen(const std::string& control) {
    const auto* button = qobject_cast<QAbstractButton*>(&controlof(control));
    return button && button->isChecked();
}

void setrows(const std::string& control, const std::vector<std::string>& rows) {
    QStringList texts;
    for (const std::string& row : rows) texts += qttext(row);
    QWidget& shown = controlof(control);
    if (auto* list = qobject_cast<QListWidget*>(&shown)) {
        list->clear();
        list->addItems(texts);
        list->setCurrentRow(0);
    } else if (auto* box = qobject_cast<QComboBox*>(&shown)) {
        box->setModel(new QStringListModel(texts, box)); // quick also for 100000 rows
        box->setCurrentIndex(0);
    }
}

void addrow(const std::string& control, const std::string& text, bool selected) {
    auto* list = qobject_cast<QListWidget*>(&controlof(control));
    if (!list) return;
    list->addItem(qttext(text));
    if (selected) list->setCurrentRow(list->count() - 1);
}

void setprogress(const std::string& control, double percent) {
    if (auto* bar = qobject_cast<QProgressBar*>(&controlof(control)))
        bar->setValue(static_cast<int>(percent));
}

void showcommand(const menucommand& command) {
    if (!MainWindow) return;
    mainwindow& window = *MainWindow;
    const auto found = window.actions.find(command.name);
    if (found == window.actions.end()) return;
    QAction& action = *found->second;
    action.setVisible(command.visible);
    action.setEnabled(isoffered(command));
    if (command.checkable) action.setChecked(command.checked);
    showbusy();
}

} // namespace orv::platform

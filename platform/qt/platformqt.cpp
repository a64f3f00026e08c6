// Boxes and dialogs, the event loop and the machine, by Qt.
#include "platform/qt/platformqt.h"

#include "base/files.h"
#include "base/runtimeerror.h"
#include "export/exportdialog.h"
#include "maps/blankingdialog.h"
#include "maps/mappingoptionsdialog.h"
#include "maps/rgbsettingsdialog.h"
#include "platform/platform.h"
#include "platform/qt/qttext.h"
#include "response/raypathdisplay.h"
#include "response/responseplot.h"
#include "response/responsewindow.h"
#include "results/stidialog.h"
#include "results/tablewindow.h"
#include "scene/paintersurface.h"
#include "scene/viewoptionsdialog.h"
#include "shell/aboutdialog.h"
#include "shell/mainwindow.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"
#include "tools/optimizerwindow.h"
#include "tools/sumequalizewindow.h"

#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QMainWindow>
#include <QMessageBox>
#include <QMimeDatabase>
#include <QPageLayout>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTreeView>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace orv::platform {

namespace {

constexpr std::chrono::microseconds frame{16667}; // 60 to a second

constexpr int dialogwidth = 760, dialogheight = 460; // of Qt's own file dialog, pixels

// Windows of the program that others open by name.
struct namedwindow {
    std::string_view name;
    void (*show)(bool modal);
};
constexpr namedwindow namedwindows[] = {
    {"About", showabout},
    {"BLN Options", showblankingoptions},
    {responsewindowname, showresponsewindow},
    {"Alfa-Beta Optimizer", showoptimizerwindow},
    {"Export to WAV", showexportdialog},
    {"Mapping Options", showmappingoptions},
    {"RGB Settings", showrgbsettings},
    {"STI Options", showstidialog},
    {"Sum & Equalize", showsumequalizewindow},
    {"Table", showtablewindow},
    {"View Options", showviewoptions},
};

constexpr struct {
    buttons choice;
    QMessageBox::StandardButtons shown;
} boxbuttons[] = {{buttons::ok, QMessageBox::Ok},
                  {buttons::okcancel, QMessageBox::Ok | QMessageBox::Cancel},
                  {buttons::yesno, QMessageBox::Yes | QMessageBox::No}};

constexpr struct {
    answer given;
    QMessageBox::StandardButton button;
} boxanswers[] = {{answer::ok, QMessageBox::Ok},
                  {answer::cancel, QMessageBox::Cancel},
                  {answer::yes, QMessageBox::Yes},
                  {answer::no, QMessageBox::No}};

constexpr struct {
    icon sign;
    QMessageBox::Icon shown;
} boxicons[] = {{icon::none, QMessageBox::NoIcon},
                {icon::information, QMessageBox::Information},
                {icon::question, QMessageBox::Question},
                {icon::exclamation, QMessageBox::Warning},
                {icon::stop, QMessageBox::Critical}};

// Where a desktop keeps its number formats; the first one that is installed is taken.
constexpr struct {
    const char *program, *page;
} regionprograms[] = {
#ifdef Q_OS_WIN
    {"rundll32.exe", "shell32.dll,Control_RunDLL intl.cpl"},
#else
    {"gnome-control-center", "region"},
    {"systemsettings", "kcm_regionandlang"},
    {"systemsettings5", "kcm_formats"},
    {"cinnamon-settings", "region"},
#endif
};

using clock = std::chrono::steady_clock;

clock::time_point due;
bool waiting = false;  // the wait pointer is shown
bool printing = false; // a page is being drawn
regionmarks region;
std::unique_ptr<QPrinter> printer;

[[noreturn]] void cancel() {
    throw runtimeerror{errorkind::cancelled, "The dialog was cancelled."};
}

// Without a desktop there are no dialogs but Qt's own.
bool nativedialogs() {
    return QGuiApplication::platformName() != "offscreen";
}

// A pattern that finds names in any letter case also in dialogs which ask the file system: "*.ray" becomes
// "*.[rR][aA][yY]".
QString caselesspattern(const QString& pattern) {
    QString caseless;
    for (const QChar letter : pattern)
        caseless +=
            letter.isLetter() ? "[" + QString(letter.toLower()) + QString(letter.toUpper()) + "]" : letter;
    return caseless.replace(';', ' ');
}

// "Text (*.x)|*.x|Other|*.y" as Qt's list; the dialog shows what stands before the last bracket.
QStringList namefilters(const std::string& filter) {
    const QStringList parts = qttext(filter).split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        filters += parts[i] + " (" + caselesspattern(parts[i + 1]) + ")";
    return filters;
}

// The names of Qt's own dialog get the width that the other columns leave.
void fitcolumns(const QFileDialog& dialog) {
    const auto* files = dialog.findChild<QTreeView*>("treeView"); // Qt's name; a desktop's dialog has none
    if (!files || files->model()->columnCount() == 0) return;
    files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

std::vector<std::string> askfiles(const filerequest& request, QFileDialog::FileMode files) {
    QFileDialog dialog(dialogparent(), qttext(request.title));
    const auto mode = files == QFileDialog::AnyFile ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen;
    dialog.setAcceptMode(mode);
    dialog.setFileMode(files);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setOption(QFileDialog::DontUseNativeDialog, !nativedialogs());
    dialog.resize(dialogwidth, dialogheight);
    dialog.setNameFilters(namefilters(request.filter));
    // So that the dialog asks about the file that is really written.
    if (mode == QFileDialog::AcceptSave && request.completed)
        dialog.setDefaultSuffix(qttext(request.filter).section('.', -1).section('|', 0, 0));

    const bool pattern = request.proposal.find_first_of("*?") != std::string::npos;
    const QFileInfo proposal(qtpath(request.proposal));
    const bool placed = !pattern && proposal.dir().exists() && proposal.fileName() != proposal.filePath();
    dialog.setDirectory(placed ? proposal.absolutePath() : qtpath(request.directory));
    if (!pattern) dialog.selectFile(proposal.fileName());

    fitcolumns(dialog);
    if (rundialog(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) cancel();
    std::vector<std::string> paths;
    for (const QString& path : dialog.selectedFiles())
        paths.push_back(corepath(QDir::toNativeSeparators(path)));
    return paths;
}

// A box breaks its lines between words, and would not show the end of a name without blanks that is wider
// than the screen.
constexpr QChar breakhere(0x200B); // of no width

QString breakable(const QString& text) {
    constexpr int longest = 80; // characters of a word
    QString broken;
    int length = 0;
    for (const QChar letter : text) {
        length = letter.isSpace() ? 0 : length + 1;
        broken += letter;
        if (length > 0 && length % longest == 0) broken += breakhere;
    }
    return broken;
}

// What is copied from a box is the text without these breaks.
void copyunbroken(QMessageBox& box) {
    QClipboard* const clipboard = QGuiApplication::clipboard();
    QObject::connect(clipboard, &QClipboard::changed, &box, [clipboard, &box](QClipboard::Mode mode) {
        QString copied = clipboard->text(mode);
        if (copied.contains(breakhere) && box.text().contains(copied))
            clipboard->setText(copied.remove(breakhere), mode);
    });
}

QPrinter& theprinter() {
    if (!printer) {
        printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setPageOrientation(QPageLayout::Landscape); // as the picture lies
        printer->setDocName("Orvanta View");
        // It must not outlive the application.
        qAddPostRoutine([] { printer.reset(); });
    }
    return *printer;
}

Qt::CursorShape cursorof(shape form) {
    switch (form) {
    case shape::sizeall:
        return Qt::SizeAllCursor;
    case shape::cross:
        return Qt::CrossCursor;
    default:
        return Qt::ArrowCursor;
    }
}

// The pointer after a placed point: an open ring about the hot spot, readable on any ground.
QCursor placedcursor() {
    constexpr int size = 17, middle = 8;
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (const auto& [colour, width] : {std::pair(Qt::white, 3), std::pair(Qt::black, 1)}) {
        painter.setPen(QPen(colour, width));
        painter.drawEllipse(3, 3, size - 7, size - 7);
        painter.drawLine(middle, 0, middle, 4);
        painter.drawLine(middle, size - 5, middle, size);
        painter.drawLine(0, middle, 4, middle);
        painter.drawLine(size - 5, middle, size, middle);
    }
    painter.end();
    return QCursor(picture, middle, middle);
}

void showwait(bool shown) {
    if (shown == waiting) return;
    waiting = shown;
    if (shown)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

} // namespace

void prepare() {
    const QLocale system = QLocale::system();
    region = {coretext(system.decimalPoint()), coretext(system.groupSeparator())};
    // The plain C region has no group mark in some desktops; it counts as point and comma.
    if (system.language() == QLocale::C) region = {".", ","};
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale::c());
}

void restartyield() {
    due = clock::now() + frame;
}

QWidget* dialogparent() {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    return MainWindow ? MainWindow->form.get() : nullptr;
}

int rundialog(QDialog& dialog) {
    const bool former = waiting;
    showwait(false);
    const int outcome = dialog.exec();
    showwait(former);
    return outcome;
}

void centreonscreen(QDialog& dialog) {
    const QRect screen = MainWindow->form->screen()->availableGeometry();
    const QPoint corner = screen.center() - dialog.rect().center();
    dialog.move(std::max(corner.x(), screen.left()), std::max(corner.y(), screen.top()));
}

// --- Boxes and dialogs ---

answer messagebox(const std::string& title, const std::string& text, buttons choice, icon sign,
                  answer preset) {
    QMessageBox box(dialogparent());
    box.setWindowTitle(qttext(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(breakable(qttext(text)));
    copyunbroken(box);
    for (const auto& row : boxbuttons)
        if (row.choice == choice) box.setStandardButtons(row.shown);
    for (const auto& row : boxicons)
        if (row.sign == sign) box.setIcon(row.shown);
    for (const auto& row : boxanswers)
        if (row.given == preset) box.setDefaultButton(row.button);
    const int button = rundialog(box);
    for (const auto& row : boxanswers)
        if (row.button == button) return row.given;
    return preset;
}

std::string askopenfile(const filerequest& request) {
    return askfiles(request, QFileDialog::ExistingFile).front();
}

std::vector<std::string> askopenfiles(const filerequest& request) {
    return askfiles(request, QFileDialog::ExistingFiles);
}

std::string asksavefile(const filerequest& request) {
    return askfiles(request, QFileDialog::AnyFile).front();
}

std::int32_t askcolour(std::int32_t present) {
    QColorDialog dialog(qtcolour(present), dialogparent());
    dialog.setOption(QColorDialog::DontUseNativeDialog, !nativedialogs());
    if (rundialog(dialog) != QDialog::Accepted) cancel();
    return corecolour(dialog.selectedColor());
}

void printpicture(const std::function<void(DrawSurface&)>& draw) {
    // Without a printer the page goes into a file, which needs a name.
    if (QPrinterInfo::availablePrinters().isEmpty() && theprinter().outputFileName().isEmpty())
        theprinter().setOutputFileName(QDir(qtpath(SessionState.dataDirectory)).filePath("orvanta.pdf"));
    QPrintDialog dialog(&theprinter(), dialogparent());
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
    if (rundialog(dialog) != QDialog::Accepted) cancel();
    {
        paintersurface page(theprinter());
        if (page.painter.isActive()) {
            // The room must stay as it is until the page is full.
            struct busy {
                busy() {
                    printing = true;
                    suspendcommands(true);
                }
                ~busy() {
                    suspendcommands(false);
                    printing = false;
                }
            } const suspended;
            draw(page.surface);
            return;
        }
    }
    const QString file = theprinter().outputFileName();
    messagebox("Print Image",
               file.isEmpty() ? "The printer " + coretext(theprinter().printerName()) + " does not answer."
                              : "The file " + coretext(file) + " cannot be written.",
               buttons::ok, icon::exclamation, answer::ok);
    cancel();
}

void printersetup() {
    QPageSetupDialog dialog(&theprinter(), dialogparent());
    if (rundialog(dialog) != QDialog::Accepted) cancel();
}

void showwindow(const std::string& name, bool modal) {
    for (const namedwindow& window : namedwindows)
        if (window.name == name) return window.show(modal);
    throw runtimeerror{errorkind::subscript, "No window is named \"" + name + "\"."};
}

// The response window is the only one that stays open beside the main one.
void closewindow(const std::string& name) {
    if (name == responsewindowname) closeresponsewindow();
}

void updatewindow(const std::string& name) {
    if (name == responsewindowname) updateresponsewindow();
}

// --- The event loop ---

void yield() {
    if (clock::now() < due) return;
    QCoreApplication::processEvents();
    restartyield();
    // The job beneath a closed window has nothing left to do: nothing is saved at the end.
    // A page is printed to its end.
    if (MainWindow && MainWindow->closed && !printing) halt(EXIT_SUCCESS);
}

void closewindows() {
    if (MainWindow) MainWindow->form->close();
}

void halt(int status) {
    dropunfinished();
    std::fflush(nullptr);
    std::_Exit(status);
}

// --- The machine ---

void pointer(shape form) {
    showwait(form == shape::wait);
    if (form == shape::wait || !MainWindow) return;
    // The sign of panning rests over the picture, and the arrow where receivers are picked.
    if (form == shape::normal)
        MainWindow->picturewidget->setCursor(raypathsshown() ? Qt::ArrowCursor : Qt::SizeAllCursor);
    else
        MainWindow->picturewidget->setCursor(form == shape::placedpoint ? placedcursor()
                                                                        : QCursor(cursorof(form)));
}

void beep() {
    QApplication::beep();
}

void cliptext(const std::string& text) {
    QGuiApplication::clipboard()->setText(qttext(text));
}

void clippicture() {
    QGuiApplication::clipboard()->setImage(picturecontents(MainWindow->picture).copy());
}

void showregionsettings() {
    for (const auto& row : regionprograms) {
        const QString program = QStandardPaths::findExecutable(row.program);
        if (!program.isEmpty() && QProcess::startDetached(program, QString(row.page).split(' '))) return;
    }
    messagebox("Regional settings",
               "No program for regional settings was found. Choose a region that writes numbers as 1,234.5, "
               "for instance by setting the environment variable LC_NUMERIC to en_US.UTF-8, and start the "
               "program again.",
               buttons::ok, icon::information, answer::ok);
}

void opendocument(const std::string& path) {
    if (!canopen(path)) {
        messagebox("Help", "The file " + pagetext(path) + " was not found.", buttons::ok, icon::exclamation,
                   answer::ok);
        return;
    }
#ifdef Q_OS_WIN
    if (QProcess::startDetached("explorer", {QDir::toNativeSeparators(qtpath(path))})) return;
#else
    if (nativedialogs() && QDesktopServices::openUrl(QUrl::fromLocalFile(qtpath(path)))) return;
    const QString opener = QStandardPaths::findExecutable("xdg-open");
    if (!opener.isEmpty() && QProcess::startDetached(opener, {qtpath(path)})) return;
#endif
    messagebox("Help", "No program was found that opens " + pagetext(path) + ".", buttons::ok,
               icon::information, answer::ok);
}

bool hasopener(const std::string& path) {
#ifdef Q_OS_WIN
    return canopen(path); // which brings its own
#else
    // The tool goes by what the opener goes by.
    const QString asker = QStandardPaths::findExecutable("xdg-mime");
    if (asker.isEmpty()) return false;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(qtpath(path), QMimeDatabase::MatchExtension);
    QProcess query;
    query.start(asker, {"query", "default", type.name()});
    constexpr int longest = 3000; // ms
    return query.waitForFinished(longest) && !query.readAllStandardOutput().trimmed().isEmpty();
#endif
}

void startcommand(const std::string& commandline) {
    QStringList words = QProcess::splitCommand(qttext(commandline));
    const QString program = words.isEmpty() ? QString() : words.takeFirst();
    if (!QProcess::startDetached(program, words))
        throw runtimeerror{errorkind::filenotfound, program.toStdString() + " cannot be started."};
}

regionmarks userregion() {
    return region;
}

std::uint64_t memorybytes() {
#ifdef Q_OS_WIN
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    return memory.ullTotalPhys;
#else
    return static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
           static_cast<std::uint64_t>(sysconf(_SC_PAGE_SIZE));
#endif
}

std::string programdirectory() {
    return corepath(QDir::toNativeSeparators(QCoreApplication::applicationDirPath()));
}

} // namespace orv::platform

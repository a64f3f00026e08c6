// The window "Alfa-Beta Optimizer": connects its fields and its chart to tools/optimizer.h.
#include "tools/optimizerwindow.h"

#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "platform/qt/boundary.h"
#include "platform/qt/elidedlabel.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "platform/qt/windowhook.h"
#include "scene/paintersurface.h"
#include "shell/mainwindow.h"
#include "tools/optimizer.h"
#include "ui_optimizerwindow.h"

#include <QDialog>
#include <QMainWindow>
#include <QPainter>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace orv {

namespace {

constexpr int progressevery = 50; // ms
constexpr int rowpadding = 3;     // pixels
constexpr const char* resultfilter = "Impulse Resp.Files (*._*)|*._*";
constexpr const char* resultpattern = "*._*";

struct optimizerwindow {
    struct filecontrols {
        QPushButton* browse;
        QLineEdit* name;
        QProgressBar* progress;
        QTableWidget* grid;
    };
    std::array<filecontrols, optimizerfiles> file{};
    paintersurface picture{1, 1, 1};
    std::string goodreceiver = Optimizer.receiver; // the last one that could be charted
    bool loading = false;
    QTimer progress;
    QDialog dialog{MainWindow->form.get()}; // behind what its events look at to the end
    Ui::Optimizer form;
};

// --- What is shown ---

void drawpicture(optimizerwindow& open) {
    const QWidget& place = *open.form.Graph1;
    resizepicture(open.picture, place.width(), place.height(), place.devicePixelRatioF());
    drawoptimizerchart(open.picture.surface);
    open.form.Graph1->update();
}

void showall(optimizerwindow& open) {
    for (std::size_t f = 0; f < optimizerfiles; ++f) {
        const optimizerfile& file = Optimizer.file[f];
        open.file[f].name->setText(qttext(file.name));
        open.file[f].name->setToolTip(tooltipof(qttext(file.name))); // the field may be too narrow for it
        open.file[f].progress->setValue(file.percent);
        for (std::size_t column = 0; column < file.cell.size(); ++column)
            open.file[f].grid->item(0, static_cast<int>(column))->setText(qttext(file.cell[column]));
    }
    const QSignalBlocker quiet(open.form.TexRecNum);
    if (coretext(open.form.TexRecNum->text()) != Optimizer.receiver)
        open.form.TexRecNum->setText(qttext(Optimizer.receiver));
    showelided(*open.form.GraphTitle, qttext(Optimizer.chart.title));
    drawpicture(open);
}

// --- What is done ---

// A failure is told, and the receiver goes back to the last one that was charted.
void tried(optimizerwindow& open, const std::function<void()>& act) {
    if (open.loading) return;
    enter([&] {
        try {
            act();
            open.goodreceiver = Optimizer.receiver;
        } catch (const runtimeerror& error) {
            if (error.kind == errorkind::cancelled) return;
            Optimizer.receiver = open.goodreceiver;
            platform::warningbox(coretext(open.dialog.windowTitle()), error.text);
            attempt(updategraph);
        }
    });
    showall(open);
}

void takefields(const optimizerwindow& open) {
    const Ui::Optimizer& form = open.form;
    Optimizer.band = form.Combo1->currentIndex();
    Optimizer.receiver = coretext(form.TexRecNum->text());
    Optimizer.schroeder = form.Option2->isChecked();
    Optimizer.alfa = coretext(form.TextAlfa->text());
    Optimizer.beta = coretext(form.TextBeta->text());
}

void redraw(optimizerwindow& open) {
    tried(open, [&open] {
        takefields(open);
        updategraph();
    });
}

void showloading(optimizerwindow& open, bool loading) {
    open.loading = loading;
    const auto parts = open.dialog.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* part : parts) part->setEnabled(!loading);
    if (loading)
        open.progress.start(progressevery);
    else
        open.progress.stop();
}

// The controls are locked while the file is read.
void browse(optimizerwindow& open, int index) {
    tried(open, [&open, index] {
        const std::string name = platform::askopenfile(
            {"Load an Impulse Response File", resultfilter, resultpattern, SessionState.dataDirectory});
        takefields(open);
        struct locked {
            optimizerwindow& window;
            explicit locked(optimizerwindow& of) : window(of) { showloading(window, true); }
            ~locked() { showloading(window, false); }
        } const lock(open);
        loadoptimizerfile(name, index);
    });
}

// --- Building ---

void buildfiles(optimizerwindow& open) {
    for (std::size_t f = 0; f < optimizerfiles; ++f) {
        const QString behind = "_" + QString::number(f);
        auto& file = open.file[f];
        file = {open.dialog.findChild<QPushButton*>("Command1" + behind),
                open.dialog.findChild<QLineEdit*>("TextFile1" + behind),
                open.dialog.findChild<QProgressBar*>("ProgressBar1" + behind),
                open.dialog.findChild<QTableWidget*>("Grid1" + behind)};
        QTableWidget& grid = *file.grid;
        for (std::size_t column = 0; column < optimizerheadings.size(); ++column) {
            grid.setHorizontalHeaderItem(static_cast<int>(column),
                                         new QTableWidgetItem(qttext(optimizerheadings[column])));
            auto* item = new QTableWidgetItem;
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            grid.setItem(0, static_cast<int>(column), item);
        }
        QHeaderView& head = *grid.horizontalHeader();
        head.setSectionResizeMode(QHeaderView::Stretch);
        int widest = 0; // all columns are as wide, and no heading is cut off
        for (int column = 0; column < head.count(); ++column)
            widest = std::max(widest, head.sectionSizeHint(column));
        grid.setMinimumWidth(head.count() * widest + 2 * grid.frameWidth());
        grid.verticalHeader()->setDefaultSectionSize(grid.fontMetrics().height() + 2 * rowpadding);
        grid.setFixedHeight(head.sizeHint().height() + grid.verticalHeader()->length() +
                            2 * grid.frameWidth());
        QObject::connect(file.browse, &QPushButton::clicked, file.browse,
                         [&open, f] { browse(open, static_cast<int>(f)); });
    }
}

void buildfields(const optimizerwindow& open) {
    for (const std::string& entry : optimizerbands()) open.form.Combo1->addItem(qttext(entry));
    open.form.TexRecNum->setText(qttext(Optimizer.receiver));
    open.form.TextAlfa->setText(qttext(Optimizer.alfa));
    open.form.TextBeta->setText(qttext(Optimizer.beta));
}

void connectfields(optimizerwindow& open) {
    const Ui::Optimizer& form = open.form;
    const auto now = [&open] { redraw(open); };
    QObject::connect(form.Combo1, &QComboBox::currentIndexChanged, form.Combo1, now);
    QObject::connect(form.TexRecNum, &QLineEdit::textChanged, form.TexRecNum, now);
    for (const QRadioButton* option : {form.Option1, form.Option2})
        QObject::connect(option, &QRadioButton::clicked, option, now);
    for (QLineEdit* field : {form.TextAlfa, form.TextBeta})
        hook(*field, {.leave = [&open](Qt::FocusReason reason) {
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) redraw(open);
        }});
    for (const auto& [button, up] : {std::pair(form.UpDown1_up, true), std::pair(form.UpDown1_down, false)})
        QObject::connect(button, &QToolButton::clicked, button, [&open, up = up] {
            tried(open, [&] {
                takefields(open);
                stepreceiver(up);
                updategraph();
            });
        });
    QObject::connect(form.Command2, &QPushButton::clicked, form.Command2, now);
    QObject::connect(form.CommandSave, &QPushButton::clicked, form.CommandSave, [&open] {
        tried(open, [&] {
            takefields(open);
            saveconstants();
        });
    });
}

void connectwindow(optimizerwindow& open) {
    hook(*open.form.Graph1, {.paint =
                                 [&open] {
                                     QPainter painter(open.form.Graph1);
                                     painter.drawImage(QPoint(0, 0), picturecontents(open.picture));
                                 },
                             .resize = [&open] { drawpicture(open); }});
    QObject::connect(&open.progress, &QTimer::timeout, &open.progress, [&open] {
        for (std::size_t f = 0; f < optimizerfiles; ++f)
            open.file[f].progress->setValue(Optimizer.file[f].percent);
    });
    // Escape and the frame's button close the window at once, and a load that runs ends with it.
    QObject::connect(&open.dialog, &QDialog::finished, &open.dialog, [] { Optimizer.stop = true; });
}

} // namespace

void showoptimizerwindow(bool) {
    openoptimizer();
    {
        optimizerwindow open;
        open.form.setupUi(&open.dialog);
        open.dialog.setWindowFlag(Qt::WindowMaximizeButtonHint);
        open.form.Graph1->setAttribute(Qt::WA_OpaquePaintEvent);
        keepelided(*open.form.GraphTitle);
        buildfiles(open);
        buildfields(open);
        connectfields(open);
        connectwindow(open);
        showall(open);
        open.file[0].browse->setFocus(); // which comes first
        platform::rundialog(open.dialog);
    }
    closeoptimizer();
}

} // namespace orv

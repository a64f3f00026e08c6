// The window "Sum & Equalize result files": connects the list and its sliders to tools/sumlist.h.
#include "tools/sumequalizewindow.h"

#include "platform/qt/boundary.h"
#include "platform/qt/elidedlabel.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "shell/filejob.h"
#include "shell/mainwindow.h"
#include "tools/sumlist.h"
#include "tools/sumresults.h"
#include "ui_sumequalizewindow.h"

#include <QDialog>
#include <QMainWindow>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace orv {

namespace {

constexpr int listcolumns = 12, firstgain = 2;
constexpr const char* widestgain = "31.5Hz";
constexpr int namecharacters = 16;             // that the first column has room for at least
constexpr int cellpadding = 8, rowpadding = 3; // pixels
constexpr int progressevery = 50;              // ms

struct sumwindow {
    sumlist list;
    bool running = false;
    std::array<QSlider*, octavebands> gains{};
    QTimer progress;
    QDialog dialog{MainWindow->form.get()}; // behind what its events look at to the end
    Ui::SumEqualize form;
};

// --- What is shown ---

void showrow(const sumwindow& open, std::size_t row) {
    for (int column = 0; column < listcolumns; ++column) {
        const QString text = qttext(listcell(open.list, row, static_cast<std::size_t>(column)));
        QTableWidgetItem* item = open.form.MSFlexGrid1->item(static_cast<int>(row), column);
        item->setText(text);
        item->setToolTip(tooltipof(text)); // a column may be too narrow for it
    }
}

// The sliders stand where the list has them; nothing is taken from them meanwhile.
void showsliders(const sumwindow& open) {
    const bool usable = open.list.row != norow;
    const QSignalBlocker quiet(open.form.Slider2);
    open.form.Slider2->setValue(open.list.delayslider);
    open.form.Slider2->setEnabled(usable);
    for (std::size_t band = 0; band < octavebands; ++band) {
        const QSignalBlocker still(open.gains[band]);
        open.gains[band]->setValue(open.list.gainslider[band]);
        open.gains[band]->setEnabled(usable);
    }
    open.form.Check1->setEnabled(usable);
}

// Names take the room they need, up to twice the least; what stands beside the sliders keeps in line, and
// the gains keep room for their headings.
void fitnames(const sumwindow& open) {
    QTableWidget& grid = *open.form.MSFlexGrid1;
    const QFontMetrics metrics = grid.fontMetrics();
    const int least = namecharacters * metrics.averageCharWidth() + 2 * cellpadding;
    int widest = least;
    for (const jobrow& file : open.list.job.files)
        widest = std::max(widest, metrics.horizontalAdvance(qttext(pagetext(file.name))) + 2 * cellpadding);
    grid.setColumnWidth(0, std::min(widest, 2 * least));
    open.form.GainLabels->setFixedWidth(grid.frameWidth() + grid.columnWidth(0) + grid.columnWidth(1));
    const int gain = metrics.horizontalAdvance(widestgain) + 2 * cellpadding;
    grid.setMinimumWidth(open.form.GainLabels->width() + octavebands * gain + open.form.GainEnd->width());
}

void showlist(const sumwindow& open) {
    QTableWidget& grid = *open.form.MSFlexGrid1;
    const QSignalBlocker quiet(grid);
    for (int row = grid.rowCount(); row < static_cast<int>(open.list.job.files.size()); ++row) {
        grid.insertRow(row);
        for (int column = 0; column < listcolumns; ++column) {
            auto* item = new QTableWidgetItem;
            item->setTextAlignment((column == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
            grid.setItem(row, column, item);
        }
        showrow(open, static_cast<std::size_t>(row));
    }
    fitnames(open);
    if (open.list.row != norow) grid.selectRow(static_cast<int>(open.list.row));
    for (const auto& [label, path] : {std::pair(open.form.PathName, open.list.job.directory),
                                      std::pair(open.form.Outfile, open.list.job.output)})
        showelided(*label, qttext(pagetext(path)));
    showsliders(open);
}

void showrunning(sumwindow& open, bool running) {
    open.running = running;
    const Ui::SumEqualize& form = open.form;
    for (QWidget* each : std::initializer_list<QWidget*>{form.SelectInput, form.SelectOutput, form.Delay,
                                                         form.Check1, form.MSFlexGrid1, form.Compute})
        each->setEnabled(!running);
    for (QSlider* slider : open.gains) slider->setEnabled(!running);
    form.Progress->setVisible(running);
    form.Progress->setValue(0);
    if (running)
        open.progress.start(progressevery);
    else
        open.progress.stop();
}

// --- What is done ---

// A failure is told, and the list stays as it is.
bool tried(const sumwindow& open, const std::function<void()>& act) {
    bool good = false;
    enter([&] { good = unlessrefused(act, coretext(open.dialog.windowTitle())); });
    return good;
}

void compute(sumwindow& open) {
    if (open.running) return;
    showrunning(open, true);
    const bool good = tried(open, [&open] { computesum(open.list); });
    showrunning(open, false);
    showsliders(open);
    if (good) open.dialog.accept();
}

void leave(sumwindow& open) {
    if (open.running)
        SumRun.stop = true;
    else
        open.dialog.reject();
}

// --- Building ---

// The gain sliders stand over their columns: names and delays take what they need, the gains share the rest.
// What depends on the names is fitted when the list is shown.
void buildgrid(const sumwindow& open) {
    QTableWidget& grid = *open.form.MSFlexGrid1;
    QHeaderView& head = *grid.horizontalHeader();
    const QFontMetrics metrics = grid.fontMetrics();
    for (int column = 0; column < listcolumns; ++column) {
        const auto index = static_cast<std::size_t>(column);
        auto* heading = new QTableWidgetItem(qttext(bandheading(index) + "\n" + columnheading(index)));
        heading->setTextAlignment((column == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
        grid.setHorizontalHeaderItem(column, heading);
        head.setSectionResizeMode(column, column < firstgain ? QHeaderView::Fixed : QHeaderView::Stretch);
    }
    grid.verticalHeader()->setDefaultSectionSize(metrics.height() + 2 * rowpadding);
    grid.setColumnWidth(1, metrics.horizontalAdvance(qttext(columnheading(1))) + 2 * cellpadding);
    open.form.GainEnd->setFixedWidth(grid.frameWidth() +
                                     grid.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &grid));
}

void connectsliders(sumwindow& open) {
    const auto changed = [&open](const std::function<void()>& move) {
        enter(move);
        showsliders(open);
        if (open.list.row != norow) showrow(open, open.list.row);
    };
    for (std::size_t band = 0; band < octavebands; ++band) {
        QSlider* slider = open.gains[band] =
            open.dialog.findChild<QSlider*>("Slider1_" + QString::number(band));
        slider->setAccessibleName("Gain " + qttext(bandheading(firstgain + band)));
        QObject::connect(slider, &QSlider::valueChanged, slider, [&open, changed, band](int value) {
            changed([&] { movegain(open.list, band, value); });
        });
    }
    QObject::connect(open.form.Slider2, &QSlider::valueChanged, open.form.Slider2,
                     [&open, changed](int value) { changed([&] { movedelay(open.list, value); }); });
    QObject::connect(open.form.Check1, &QCheckBox::toggled, open.form.Check1,
                     [&open](bool ganged) { open.list.ganged = ganged; });
}

void connectbuttons(sumwindow& open) {
    const Ui::SumEqualize& form = open.form;
    const struct {
        QPushButton* button;
        void (*choose)(sumlist&);
    } dialogs[] = {{form.SelectInput, selectinputs}, {form.SelectOutput, selectoutput}};
    for (const auto& [button, choose] : dialogs)
        QObject::connect(button, &QPushButton::clicked, button, [&open, choose = choose] {
            tried(open, [&] { choose(open.list); });
            showlist(open);
        });
    QObject::connect(form.Compute, &QPushButton::clicked, form.Compute, [&open] { compute(open); });
    QObject::connect(form.ExitSum, &QPushButton::clicked, form.ExitSum, [&open] { leave(open); });
    // Escape and the frame's button close the window at once, and a sum that runs ends with it.
    QObject::connect(&open.dialog, &QDialog::rejected, &open.dialog, [] { SumRun.stop = true; });
    QObject::connect(form.MSFlexGrid1, &QTableWidget::currentCellChanged, form.MSFlexGrid1,
                     [&open](int row, int, int, int) {
                         if (row < 0) return;
                         enter([&] { selectrow(open.list, static_cast<std::size_t>(row)); });
                         showsliders(open);
                     });
    QObject::connect(&open.progress, &QTimer::timeout, &open.progress,
                     [&open] { open.form.Progress->setValue(SumRun.percent); });
}

} // namespace

void showsumequalizewindow(bool) {
    sumwindow open;
    open.form.setupUi(&open.dialog);
    open.dialog.setWindowFlag(Qt::WindowMaximizeButtonHint);
    for (QLabel* label : {open.form.PathName, open.form.Outfile}) keepelided(*label);
    buildgrid(open);
    connectsliders(open);
    connectbuttons(open);
    showrunning(open, false);
    showlist(open);
    open.form.SelectInput->setFocus(); // which comes first
    platform::rundialog(open.dialog);
}

} // namespace orv

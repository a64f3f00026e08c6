// The dialog "STI Options": three exclusive choices, and the grid of noise levels, whose keys go to
// results/noisegrid.h.
#include "results/stidialog.h"

#include "platform/keycodes.h"
#include "platform/qt/boundary.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "platform/qt/windowhook.h"
#include "results/noisegrid.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"
#include "ui_stidialog.h"

#include <QDialog>
#include <QMainWindow>

#include <initializer_list>
#include <utility>

namespace orv {

namespace {

constexpr int bandrow = 0, levelrow = 1; // of the grid; column 0 is the heading
constexpr int chosenflag = -1;           // YES and Present
constexpr QColor lit(255, 255, 255), unlit(192, 192, 192), ink(0, 0, 0);
constexpr const char* widestlevel = "888.88";
constexpr int cellpadding = 7, rowpadding = 5, firstmargin = 8; // pixels

struct stidialog {
    noisegrid levels = opennoisegrid();
    QDialog dialog{MainWindow->form.get()}; // behind the levels, which its events look at to the end
    Ui::STIOptions form;
};

// --- Choices ---

// With no noise there is nothing else to choose. The flags of what is hidden stay.
void shownoise(const stidialog& open) {
    const Ui::STIOptions& form = open.form;
    for (QWidget* each : std::initializer_list<QWidget*>{
             form.EqualizeLabel, form.EqualizeYes, form.EqualizeNo, form.ForceSPLLabel, form.ForceSPLYes,
             form.ForceSPLNo, form.NoiseHeading, form.NoiseGrid})
        each->setVisible(SessionState.backgroundNoiseFlag != 0);
}

void connectchoices(stidialog& open) {
    const Ui::STIOptions& form = open.form;
    const struct {
        QRadioButton *yes, *no;
        std::int32_t sessionstate::*flag;
    } pairs[] = {
        {form.BackNoisePresent, form.BackNoiseNotInfluent, &sessionstate::backgroundNoiseFlag},
        {form.EqualizeYes, form.EqualizeNo, &sessionstate::equalizeSpectrumFlag},
        {form.ForceSPLYes, form.ForceSPLNo, &sessionstate::forceVoiceSplFlag},
    };
    for (const auto& [yes, no, flag] : pairs) {
        (SessionState.*flag != 0 ? yes : no)->setChecked(true);
        for (const auto& [button, value] : {std::pair(yes, chosenflag), std::pair(no, 0)})
            QObject::connect(button, &QRadioButton::clicked, button, [&open, stored = flag, value] {
                enter([&] {
                    SessionState.*stored = value;
                    shownoise(open);
                });
            });
    }
}

// --- The grid ---

void showlevels(const stidialog& open) {
    for (int column = 1; column <= speechbands; ++column)
        open.form.NoiseGrid->item(levelrow, column)
            ->setText(qttext(open.levels.cell.at(static_cast<std::size_t>(column))));
}

// White with the focus and grey without, and dark text on both under any desktop's colours.
void light(QTableWidget& grid, bool focused) {
    QPalette colours = grid.parentWidget()->palette();
    colours.setColor(QPalette::Base, focused ? lit : unlit);
    colours.setColor(QPalette::Text, ink);
    if (!focused) {
        colours.setColor(QPalette::Window, unlit); // of which the lines are a darker shade
        colours.setColor(QPalette::Highlight, unlit);
        colours.setColor(QPalette::HighlightedText, ink);
    }
    grid.setPalette(colours);
}

// Enter belongs to the grid while it has the focus, and to the button at other times.
void takeenter(QPushButton& button, bool taken) {
    button.setAutoDefault(taken);
    button.setDefault(taken);
}

void fillgrid(const stidialog& open) {
    QTableWidget& grid = *open.form.NoiseGrid;
    const QPalette colours = open.dialog.palette();
    for (int row = bandrow; row <= levelrow; ++row)
        for (int column = 0; column <= speechbands; ++column) {
            auto* item = new QTableWidgetItem;
            item->setTextAlignment(column == 0 ? Qt::AlignLeft | Qt::AlignVCenter
                                               : Qt::AlignRight | Qt::AlignVCenter);
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            if (row == bandrow || column == 0) {
                item->setFlags(Qt::NoItemFlags);
                item->setBackground(colours.button());
                item->setForeground(colours.buttonText());
            }
            grid.setItem(row, column, item);
        }
    grid.item(bandrow, 0)->setText("Freq.(Hz)");
    grid.item(levelrow, 0)->setText(qttext(open.levels.cell[0]));
    for (int column = 1; column <= speechbands; ++column)
        grid.item(bandrow, column)
            ->setText(qttext(bandName.at(static_cast<std::size_t>(firstspeechband + column - 1))));
    grid.setCurrentCell(levelrow, 1);
    showlevels(open);
}

// The first column has a fifth of the width and the margin, the others share the rest.
void sizegrid(QTableWidget& grid) {
    const QFontMetrics metrics = grid.fontMetrics();
    const int cell = metrics.horizontalAdvance(widestlevel) + 2 * cellpadding;
    const int width = cell * speechbands * 5 / 4;
    grid.setColumnWidth(0, width / 5 + firstmargin);
    for (int column = 1; column <= speechbands; ++column) grid.setColumnWidth(column, cell);
    grid.verticalHeader()->setDefaultSectionSize(metrics.height() + 2 * rowpadding);
    grid.setFixedSize(grid.horizontalHeader()->length() + 2 * grid.frameWidth(),
                      grid.verticalHeader()->length() + 2 * grid.frameWidth());
}

void pressgridkey(stidialog& open, int key) {
    if (!isplainkey()) return;
    const int column = open.form.NoiseGrid->currentColumn(), code = keycodeof(key);
    if (code == keyescape) return noiseenter(open.levels); // nothing is stored
    noisemove(open.levels, code);
    // Enter and Backspace, and Qt's keys of digits and the point, which are their characters.
    noisecharacter(open.levels, column, code == keyenter || code == keybackspace ? code : key);
    showlevels(open);
}

void leavecell(stidialog& open, int column) {
    noiseleave(open.levels, column);
    showlevels(open);
}

void connectgrid(stidialog& open) {
    QTableWidget& grid = *open.form.NoiseGrid;
    QPushButton& done = *open.form.Done;
    QObject::connect(&grid, &QTableWidget::currentCellChanged, &grid, [&open](int, int, int, int left) {
        enter([&] {
            leavecell(open, left);
            noiseenter(open.levels);
        });
    });
    windowhook calls;
    calls.key = [&open](int key) { pressgridkey(open, key); };
    calls.repeatedkeys = true;
    calls.focus = [&grid, &done](Qt::FocusReason) {
        light(grid, true);
        takeenter(done, false);
    };
    // An entry that the user turns away from within the dialog is not lost. Another program's window in front
    // leaves it running.
    calls.leave = [&open, &grid, &done](Qt::FocusReason reason) {
        light(grid, false);
        takeenter(done, true);
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            leavecell(open, grid.currentColumn());
    };
    hook(grid, calls);
    hook(open.dialog, {.close = [&open] { noiseenter(open.levels); }}); // as Escape
}

} // namespace

void showstidialog(bool) {
    stidialog open;
    open.form.setupUi(&open.dialog);
    fillgrid(open);
    light(*open.form.NoiseGrid, false);
    sizegrid(*open.form.NoiseGrid);
    connectchoices(open);
    connectgrid(open);
    QObject::connect(open.form.Done, &QPushButton::clicked, &open.dialog, [&open] {
        enter([&] { leavecell(open, open.form.NoiseGrid->currentColumn()); });
        open.dialog.accept();
    });

    // Only the height changes when the choices come and go, so that nothing moves away under the pointer.
    open.form.Width->changeSize(open.form.Choices->sizeHint().width(), 0);
    shownoise(open);
    open.dialog.adjustSize();
    platform::centreonscreen(open.dialog);
    platform::rundialog(open.dialog);
}

} // namespace orv

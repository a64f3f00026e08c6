// The window "Table": a view on the grid of results/tablecells.h, whose cells are made as they come into
// sight.
#include "results/tablewindow.h"

#include "base/numbertext.h"
#include "platform/platform.h"
#include "platform/qt/boundary.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "platform/qt/windowhook.h"
#include "results/tablecells.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"
#include "ui_tablewindow.h"

#include <QAbstractListModel>
#include <QAbstractTableModel>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QStyle>

#include <algorithm>

namespace orv {

namespace {

constexpr int narrowest = 47; // pixels of a column, 700/1440 of an inch
constexpr const char* widestvalue = "-188.88";
constexpr int cellpadding = 6, rowpadding = 3; // pixels
constexpr int numberlength = 7;                // characters that RecNo has room for

// The values as Qt's view asks for them; row 0 and column 0 of the grid are its headings, which stay in view.
struct gridmodel : QAbstractTableModel {
    parametergrid grid = opengrid();

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : grid.rows - 1;
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : grid.columns - 1;
    }

    QVariant cell(int row, int column) const {
        std::string text;
        enter([&] { text = gridcell(grid, row, column); });
        return qttext(text);
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::DisplayRole) return cell(index.row() + 1, index.column() + 1);
        if (role == Qt::TextAlignmentRole) return (Qt::AlignRight | Qt::AlignVCenter).toInt();
        return {};
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        const bool heads = orientation == Qt::Horizontal;
        // Names stand to the left, numbers and what stands above numbers to the right.
        const bool names = !heads && grid.kind != tablekind::oneparameter;
        if (role == Qt::DisplayRole) return heads ? cell(0, section + 1) : cell(section + 1, 0);
        if (role == Qt::TextAlignmentRole)
            return ((names ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter).toInt();
        return {};
    }

    void refill() {
        if (rowCount() > 0 && columnCount() > 0)
            emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
};

// The entries of RecNo: as many as there are receivers.
struct entrymodel : QAbstractListModel {
    const parametergrid& grid;

    explicit entrymodel(const parametergrid& given) : grid(given) {}

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : selectioncount(grid);
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
        std::string text;
        enter([&] { text = selectionentry(grid, index.row()); });
        return qttext(text);
    }
};

struct tablewindow {
    gridmodel model;
    entrymodel entries{model.grid};
    QDialog dialog{MainWindow->form.get()}; // behind the models, which its views look at to the end
    Ui::Table form;
};

// --- Selection ---

// The receiver whose values are shown, also one that is not in the list.
void showreceiver(const tablewindow& open) {
    QComboBox& box = *open.form.RecNo;
    const std::int32_t receiver = open.model.grid.chosen;
    box.setCurrentIndex(receiver <= box.count() ? receiver - 1 : -1);
    box.setEditText(receiver < 0 ? QString() : qttext(trimmedwhole(receiver)));
    if (box.lineEdit()->hasFocus()) box.lineEdit()->selectAll(); // the next number replaces it
}

// Numbers can be typed too, and count when Enter is pressed; without it the box goes back to what is shown.
void connecttyping(tablewindow& open) {
    QComboBox& box = *open.form.RecNo;
    box.setEditable(true);
    box.setInsertPolicy(QComboBox::NoInsert);
    box.setCompleter(nullptr);
    QLineEdit& line = *box.lineEdit();
    QObject::disconnect(&line, &QLineEdit::editingFinished, &box, nullptr); // Qt takes a number without Enter
    QObject::connect(&line, &QLineEdit::returnPressed, &box, [&open, &line] {
        enter([&] { typereceiver(open.model.grid, coretext(line.text())); });
        open.model.refill();
    });
    QObject::connect(&line, &QLineEdit::editingFinished, &box, [&open] { showreceiver(open); });
}

void connectselection(tablewindow& open) {
    QComboBox& box = *open.form.RecNo;
    const parametergrid& grid = open.model.grid;
    const bool shown = grid.kind != tablekind::oneparameter;
    open.form.Label1->setText(qttext(selectionlabel(grid)));
    open.form.Label1->setVisible(shown);
    box.setVisible(shown);
    if (!shown) return;
    box.setModel(&open.entries);
    box.setMinimumContentsLength(numberlength);
    if (auto* list = qobject_cast<QListView*>(box.view())) list->setUniformItemSizes(true);
    if (grid.kind == tablekind::onereceiver) connecttyping(open);
    box.setCurrentIndex(-1);
    QObject::connect(&box, &QComboBox::activated, &box, [&open](int entry) {
        enter([&] { chooseentry(open.model.grid, entry); });
        open.model.refill();
    });
    if (const std::int32_t first = firstselection(grid); first < box.count()) {
        box.setCurrentIndex(first);
        chooseentry(open.model.grid, first);
    }
    box.setFocus();
}

// --- The grid ---

void buildview(tablewindow& open) {
    QTableView& view = *open.form.Grid;
    const parametergrid& grid = open.model.grid;
    const QFontMetrics metrics = view.fontMetrics();
    // Sizes of all rows and columns alike, and known before there are any: they can be 100001.
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.verticalHeader()->setDefaultSectionSize(metrics.height() + 2 * rowpadding);
    view.setModel(&open.model);
    QHeaderView& head = *view.horizontalHeader();
    int width = std::max(narrowest, metrics.horizontalAdvance(widestvalue) + 2 * cellpadding);
    // The last headings are the longest.
    for (int column = std::max(1, grid.columns - bandcount); column < grid.columns; ++column)
        width = std::max(width, head.sectionSizeHint(column - 1));
    head.setDefaultSectionSize(width);
    view.setCurrentIndex(open.model.index(0, 0));
}

// All bands fit at first; receivers beside each other can be any number.
void fitwidth(tablewindow& open) {
    if (open.model.grid.kind == tablekind::roundrobin) return;
    const QTableView& view = *open.form.Grid;
    const QMargins margins = open.dialog.layout()->contentsMargins();
    const int bar = view.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &view);
    open.dialog.resize(margins.left() + view.verticalHeader()->sizeHint().width() +
                           view.horizontalHeader()->length() + bar + 2 * view.frameWidth() + margins.right(),
                       open.dialog.height());
}

void copytable(const parametergrid& grid) {
    platform::pointer(platform::shape::wait);
    platform::cliptext(gridtext(grid));
    platform::pointer(platform::shape::normal);
    platform::beep();
}

void connectbuttons(tablewindow& open) {
    QPushButton &copy = *open.form.CopyTable, &close = *open.form.CloseTable;
    QObject::connect(&copy, &QPushButton::clicked, &copy,
                     [&open] { enter([&] { copytable(open.model.grid); }); });
    QObject::connect(&close, &QPushButton::clicked, &open.dialog, &QDialog::accept);
    // No button is the default one, since Enter belongs to RecNo; a button with the focus takes it all the
    // same.
    for (QPushButton* button : {&copy, &close})
        hook(*button, {.key = [button](int key) {
            if (key == Qt::Key_Return || key == Qt::Key_Enter) button->click();
        }});
}

} // namespace

void showtablewindow(bool) {
    tablewindow open;
    open.form.setupUi(&open.dialog);
    open.dialog.setWindowTitle(qttext(gridtitle(open.model.grid)));
    open.dialog.setWindowFlag(Qt::WindowMaximizeButtonHint);
    open.form.Grid->setFocus();
    connectselection(open);
    buildview(open);
    fitwidth(open);
    connectbuttons(open);
    platform::rundialog(open.dialog);
}

} // namespace orv

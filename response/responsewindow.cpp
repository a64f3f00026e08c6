// The window "Impulse Response": hands its events to the plot and shows what the plot has made of them.
#include "response/responsewindow.h"

#include "base/arithmetic.h"
#include "platform/qt/boundary.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "platform/qt/windowhook.h"
#include "response/raypathdisplay.h"
#include "response/responseplot.h"
#include "room/roommodel.h"
#include "scene/paintersurface.h"
#include "shell/mainwindow.h"
#include "shell/sessionstate.h"
#include "ui_responsewindow.h"

#include <QAbstractListModel>
#include <QDialog>
#include <QListView>
#include <QMainWindow>
#include <QPainter>

#include <algorithm>
#include <initializer_list>
#include <memory>

namespace orv {

namespace {

constexpr const char* widestvalue = "-888.88 dB";
constexpr int cellpadding = 8;   // pixels
constexpr int numberlength = 10; // characters that the lists have room for
constexpr int lowheight = 400;   // pixels, beside the scene
constexpr const char* curveshown = "background: white; color: black; border: 1px solid #808080; "
                                   "padding: 2px; text-align: right";
constexpr const char* curvehidden =
    "background: rgb(128, 128, 128); color: white; border: 1px solid #808080; "
    "padding: 2px; text-align: right";

// "Room" and the receivers; there can be 100000.
struct receivermodel : QAbstractListModel {
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : std::max(RoomModel.receiverCount, 0) + 1;
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return index.row() == 0 ? QString("Room") : "Rec." + QString::number(index.row());
    }
};

struct responsewindow {
    receivermodel receivers;
    paintersurface picture{1, 1, 1};
    QDialog* dialog = new QDialog(MainWindow->form.get()); // which deletes itself with this
    Ui::ImpulseResponse form;
    bool open = false; // its first plot has been drawn
};
std::unique_ptr<responsewindow> shown;

// --- What the plot has made ---

void showtexts() {
    const responseplot& p = ResponsePlot;
    const Ui::ImpulseResponse& form = shown->form;
    form.SPLlabel->setText(qttext(p.SPLlabel));
    form.schlabel->setText(qttext(p.schlabel));
    form.revtime->setText(qttext(p.revtime));
    form.PathN->setText(qttext(p.PathN));
    form.PathLenght->setText(qttext(p.PathLenght));
    form.schlabel->setStyleSheet(SessionState.schroederOn != 0 ? curveshown : curvehidden);
}

// All of them. The time is left out while somebody types there.
void showreadouts() {
    shown->form.Xtext->setText(qttext(ResponsePlot.Xtext));
    showtexts();
}

void showchoices() {
    shown->form.RecNo->setCurrentIndex(ResponsePlot.RecNo);
    shown->form.FreqNo->setCurrentIndex(ResponsePlot.FreqNo);
}

// --- Events ---

void fitplot() {
    responsewindow& w = *shown;
    if (!w.open) return;
    const QWidget& plot = *w.form.Picture1;
    resizepicture(w.picture, plot.width(), plot.height(), plot.devicePixelRatioF());
    impulsedraw(wide(SessionState.viewStart), wide(SessionState.viewEnd));
}

void paintplot() {
    QPainter painter(shown->form.Picture1);
    painter.drawImage(QPoint(0, 0), picturecontents(shown->picture));
}

void pointplot(const pointerevent& event) {
    const DrawSurface& surface = shown->picture.surface;
    const double time = surface.fromDeviceX(event.x * surface.scale);
    switch (event.action) {
    case pointeraction::press:
    case pointeraction::doubleclick:
        if (event.left || event.right) pressplot(time, event.left ? 1 : 2);
        break;
    case pointeraction::move:
        if (event.left) evidence(time);
        return;
    case pointeraction::release:
        if (event.left) zoom();
        break;
    }
    showreadouts();
}

// Keys with a modifier are the control's own.
void keyplot(int key) {
    if (!isplainkey()) return;
    presskey(keycodeof(key), coretext(shown->form.Xtext->text()));
    isplotkey(keycodeof(key)) ? showreadouts() : showtexts();
}

void closed() {
    if (!shown || !shown->open) return;
    shown->open = false;
    closeplot();
    shown->dialog->deleteLater();
}

bool isopen() {
    return shown && shown->open;
}

// --- Building ---

void connectlists() {
    const Ui::ImpulseResponse& form = shown->form;
    for (int band = 1; band <= bandcount; ++band)
        form.FreqNo->addItem(qttext(bandName.at(static_cast<std::size_t>(band))));
    form.RecNo->setModel(&shown->receivers);
    const struct {
        QComboBox* list;
        void (*choose)(std::int32_t entry);
    } lists[] = {{form.RecNo, choosereceiver}, {form.FreqNo, choosefrequency}};
    for (const auto& [list, choose] : lists) {
        list->setMinimumContentsLength(numberlength);
        if (auto* view = qobject_cast<QListView*>(list->view())) view->setUniformItemSizes(true);
        QObject::connect(list, &QComboBox::activated, list, [choose = choose](int entry) {
            enter([&] { choose(entry); });
            showchoices(); // the room may have been refused
            showreadouts();
        });
    }
}

void sizereadouts() {
    const Ui::ImpulseResponse& form = shown->form;
    const int width = form.SPLlabel->fontMetrics().horizontalAdvance(widestvalue) + 2 * cellpadding;
    for (QWidget* value : std::initializer_list<QWidget*>{form.Xtext, form.SPLlabel, form.schlabel,
                                                          form.revtime, form.PathN, form.PathLenght})
        value->setFixedWidth(width);
    form.PathN->setVisible(raypathsshown());
    form.PathNCaption->setVisible(raypathsshown());
}

void connectwindow() {
    const Ui::ImpulseResponse& form = shown->form;
    windowhook keys;
    keys.key = keyplot;
    keys.repeatedkeys = true;
    keys.keytaken = [](int key) { return isplainkey() && isplotkey(keycodeof(key)); };
    for (QWidget* control : std::initializer_list<QWidget*>{form.Xtext, form.RecNo, form.FreqNo})
        hook(*control, keys);
    windowhook plot = keys;
    plot.paint = paintplot;
    plot.pointer = pointplot;
    plot.resize = fitplot;
    hook(*form.Picture1, plot);
    // Escape on the button too, which would close the window otherwise.
    windowhook escape;
    escape.key = [](int key) {
        if (key == Qt::Key_Escape) keyplot(key);
    };
    escape.keytaken = [](int key) { return key == Qt::Key_Escape; };
    hook(*form.schlabel, escape);
    hook(*shown->dialog, {.close = closed});
    QObject::connect(shown->dialog, &QDialog::finished, [] { enter(closed); });
    QObject::connect(form.schlabel, &QPushButton::clicked, form.schlabel, [] {
        enter(toggleschroeder);
        showreadouts();
    });
    QObject::connect(shown->dialog, &QObject::destroyed, [] { shown.reset(); });
    shown->picture.changed = [plotwidget = form.Picture1] { plotwidget->update(); };
}

// In the middle of the screen; small where the scene behind it is worked with too.
void placewindow(bool modal) {
    QDialog& dialog = *shown->dialog;
    dialog.layout()->activate();
    if (!modal) dialog.resize(dialog.minimumWidth(), lowheight);
    platform::centreonscreen(dialog);
}

void openplotnow() {
    responsewindow& w = *shown;
    const QWidget& plot = *w.form.Picture1;
    w.dialog->layout()->activate();
    resizepicture(w.picture, plot.width(), plot.height(), plot.devicePixelRatioF());
    w.open = true;
    openplot(w.picture.surface);
    showchoices();
    showreadouts();
}

} // namespace

void showresponsewindow(bool modal) {
    if (isopen()) return;
    if (shown) delete shown->dialog; // a former one that waits for its end
    shown = std::make_unique<responsewindow>();
    QDialog& dialog = *shown->dialog;
    shown->form.setupUi(&dialog);
    dialog.setWindowFlag(Qt::WindowMaximizeButtonHint);
    shown->form.Picture1->setAttribute(Qt::WA_OpaquePaintEvent);
    connectlists();
    sizereadouts();
    connectwindow();
    placewindow(modal);
    openplotnow();
    shown->form.RecNo->setFocus();
    if (modal)
        platform::rundialog(dialog);
    else
        dialog.show();
}

void closeresponsewindow() {
    if (isopen()) shown->dialog->close();
}

void updateresponsewindow() {
    if (!isopen()) return;
    showchoices();
    showreadouts();
}

} // namespace orv

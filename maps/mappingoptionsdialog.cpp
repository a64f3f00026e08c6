// The dialog "Mapping Options": its controls and the rules of maps/mappingoptions.h.
#include "maps/mappingoptionsdialog.h"

#include "maps/mappingoptions.h"
#include "platform/qt/boundary.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "scene/viewoptions.h"
#include "shell/sessionstate.h"
#include "ui_mappingoptionsdialog.h"

#include <QDialog>
#include <QSignalBlocker>

#include <array>

namespace orv {

namespace {

// The number fields and their spin buttons.
constexpr struct {
    const char *control, *spin;
} fields[] = {{"MinL", "UpDown2"}, {"MaxL", "UpDown1"},  {"Nx", "UpDown3"},
              {"Ny", "UpDown4"},   {"MaxR", "SpinMaxR"}, {"Zvalue", "UpDown6"}};

constexpr const char* lists[] = {"ActFreq", "Parameter", "Colsch", "Interpol"};

struct mappingoptions {
    QDialog dialog{platform::dialogparent()};
    Ui::MappingOptions form;

    template <class widget>
    widget& control(const char* name) const {
        return *dialog.findChild<widget*>(name);
    }
};

// What only one kind of interpolation looks at, each in the other's place.
std::array<QWidget*, 3> owncontrols(const Ui::MappingOptions& form) {
    return {form.MaxRLabel, form.MaxR, form.SpinMaxR};
}
std::array<QWidget*, 3> surfercontrols(const Ui::MappingOptions& form) {
    return {form.InterpolLabel, form.Interpol, form.blanking};
}

// --- Showing ---

void showinterpolation(const Ui::MappingOptions& form) {
    for (QWidget* each : owncontrols(form)) each->setVisible(!SessionState.useSurfer);
    for (QWidget* each : surfercontrols(form)) each->setVisible(SessionState.useSurfer);
}

// With autorange the levels come from the values.
void showautorange(const Ui::MappingOptions& form) {
    const std::array<QWidget*, 4> levels = {form.MinL, form.MaxL, form.UpDown1, form.UpDown2};
    for (QWidget* each : levels) each->setEnabled(!SessionState.autorange);
}

void showfield(const mappingoptions& open, const char* name, const std::string& text) {
    QLineEdit& field = open.control<QLineEdit>(name);
    if (const QString shown = qttext(text); field.text() != shown) field.setText(shown);
    open.form.Label10->setText(qttext(incrementtext()));
}

void showall(const mappingoptions& open) {
    const Ui::MappingOptions& form = open.form;
    openmappingoptions();
    for (const char* name : lists) {
        QComboBox& list = open.control<QComboBox>(name);
        const QSignalBlocker filling(list);
        list.setCurrentIndex(listposition(name));
    }
    for (const auto& [name, spin] : fields) showfield(open, name, fieldtext(name));
    form.ThirdCoordLabel->setText(qttext(thirdcaption()));
    form.Check3d3->setText(qttext(mirrorcaption()));
    form.Check3d3->setChecked(SessionState.mirror);
    form.blanking->setChecked(SessionState.useBlanking);
    form.Surfer->setChecked(SessionState.useSurfer);
    form.ARcheck->setChecked(SessionState.autorange);
    showinterpolation(form);
    showautorange(form);
}

// --- Connecting ---

void connectlists(const mappingoptions& open) {
    for (const char* name : lists) {
        QComboBox& list = open.control<QComboBox>(name);
        for (const std::string_view entry : listentries(name)) list.addItem(qttext(entry));
        QObject::connect(&list, &QComboBox::currentIndexChanged, &list,
                         [name](int position) { enter([&] { choosefromlist(name, position); }); });
    }
}

void connectfields(const mappingoptions& open) {
    for (const auto& [name, spin] : fields) {
        QLineEdit& field = open.control<QLineEdit>(name);
        const auto typed = [&open, &field, control = name] {
            enter([&] { showfield(open, control, typefield(control, coretext(field.text()))); });
        };
        QObject::connect(&field, &QLineEdit::textEdited, &field, typed);
        for (const bool up : {true, false}) {
            const QString button = QString(spin) + (up ? "_up" : "_down");
            const auto spun = [&open, &field, control = name, up] {
                enter([&] { showfield(open, control, spinfield(control, coretext(field.text()), up)); });
            };
            QObject::connect(open.dialog.findChild<QToolButton*>(button), &QToolButton::clicked, &field,
                             spun);
        }
    }
}

// A box that is asked about can come out of its click as it was.
void connectasked(QCheckBox& box, bool (*tick)(bool)) {
    QObject::connect(&box, &QCheckBox::clicked, &box,
                     [&box, tick](bool ticked) { enter([&] { box.setChecked(tick(ticked)); }); });
}

void connectboxes(const mappingoptions& open) {
    const Ui::MappingOptions& form = open.form;
    connectasked(*form.Check3d3, tickmirror);
    connectasked(*form.blanking, tickblanking);
    QObject::connect(form.Surfer, &QCheckBox::clicked, form.Surfer, [&form](bool ticked) {
        enter([&] { ticksurfer(ticked); });
        showinterpolation(form);
    });
    QObject::connect(form.ARcheck, &QCheckBox::clicked, form.ARcheck, [&form](bool ticked) {
        SessionState.autorange = ticked;
        showautorange(form);
    });
}

void connectbuttons(mappingoptions& open) {
    const Ui::MappingOptions& form = open.form;
    QObject::connect(form.Vopt, &QPushButton::clicked, form.Vopt, [&open] {
        enter([&] {
            ViewOpt();
            showall(open); // of another plane, perhaps
        });
    });
    QObject::connect(form.Command1, &QPushButton::clicked, &open.dialog, &QDialog::accept);
    QObject::connect(form.Cancel, &QPushButton::clicked, &open.dialog, &QDialog::reject);
}

// Controls that come and go keep their places, so that nothing moves under the pointer.
void keepplaces(const Ui::MappingOptions& form) {
    for (const auto& group : {owncontrols(form), surfercontrols(form)})
        for (QWidget* each : group) {
            QSizePolicy policy = each->sizePolicy();
            policy.setRetainSizeWhenHidden(true);
            each->setSizePolicy(policy);
        }
}

} // namespace

void showmappingoptions(bool) {
    mappingoptions open;
    open.form.setupUi(&open.dialog);
    keepplaces(open.form);
    connectlists(open);
    showall(open);
    connectfields(open);
    connectboxes(open);
    connectbuttons(open);
    if (platform::rundialog(open.dialog) != QDialog::Accepted) SessionState.mapCancelled = true;
}

} // namespace orv

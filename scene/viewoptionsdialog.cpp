// The dialog "View Options": its controls and the settings of scene/viewoptions.h.
#include "scene/viewoptionsdialog.h"

#include "platform/qt/boundary.h"
#include "platform/qt/colourbutton.h"
#include "platform/qt/platformqt.h"
#include "platform/qt/qttext.h"
#include "scene/viewoptions.h"
#include "ui_viewoptionsdialog.h"

#include <QDialog>

namespace orv {

namespace {

void connectboxes(const QDialog& dialog) {
    for (const std::string_view name : viewboxes) {
        QCheckBox& box = *dialog.findChild<QCheckBox*>(qtpath(name));
        box.setChecked(viewbox(name));
        QObject::connect(&box, &QCheckBox::clicked, &box,
                         [name](bool ticked) { enter([&] { clickviewbox(name, ticked); }); });
    }
}

void connectcolours(const QDialog& dialog) {
    for (const viewcolour& each : viewcolours) {
        QPushButton& button = *dialog.findChild<QPushButton*>(qtpath(each.picture));
        showcolour(button, SessionState.*each.colour);
        QObject::connect(&button, &QPushButton::clicked, &button, [&button, &each] {
            enter([&] { clickviewcolour(each); });
            showcolour(button, SessionState.*each.colour);
        });
    }
}

void connectplanes(const Ui::ViewOptions& form) {
    const struct {
        QRadioButton* button;
        planechoice plane;
    } planes[] = {{form.XY, planechoice::XY}, {form.YZ, planechoice::YZ}, {form.XZ, planechoice::XZ}};
    for (const auto& [button, plane] : planes) {
        button->setChecked(SessionState.viewPlane == plane);
        QObject::connect(button, &QRadioButton::clicked, button,
                         [chosen = plane] { enter([&] { clickviewplane(chosen); }); });
    }
}

} // namespace

void showviewoptions(bool) {
    QDialog dialog(platform::dialogparent());
    Ui::ViewOptions form;
    form.setupUi(&dialog);
    connectboxes(dialog);
    connectcolours(dialog);
    connectplanes(form);
    QObject::connect(form.Command1, &QPushButton::clicked, &dialog, &QDialog::accept);
    platform::rundialog(dialog);
}

} // namespace orv

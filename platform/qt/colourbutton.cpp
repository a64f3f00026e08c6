// A button that shows a colour.
#include "platform/qt/colourbutton.h"

#include "platform/qt/qttext.h"

#include <QAbstractButton>
#include <QPainter>
#include <QPixmap>

namespace orv {

void showcolour(QAbstractButton& button, std::int32_t colour) {
    const double ratio = button.devicePixelRatioF();
    QPixmap patch(button.iconSize() * ratio);
    patch.fill(qtcolour(colour));
    {
        // A frame, so that a colour of the button's own is seen as well.
        QPainter painter(&patch);
        painter.setPen(button.palette().color(QPalette::Dark));
        painter.drawRect(patch.rect().adjusted(0, 0, -1, -1));
    }
    patch.setDevicePixelRatio(ratio);
    button.setIcon(patch);
}

} // namespace orv

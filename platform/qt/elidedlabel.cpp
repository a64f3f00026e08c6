// Labels of paths and other texts of any length.
#include "platform/qt/elidedlabel.h"

#include "platform/qt/windowhook.h"

#include <QLabel>
#include <QTextDocument>
#include <QVariant>

#include <algorithm>

namespace orv {

namespace {

constexpr const char* whole = "wholeText"; // the property that keeps it

} // namespace

void keepelided(QLabel& label) {
    label.setTextFormat(Qt::PlainText);
    label.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    hook(label, {.resize = [&label] { showelided(label, label.property(whole).toString()); }});
}

QString tooltipof(const QString& text) {
    if (!Qt::mightBeRichText(text)) return text;
    return "<span style='white-space: pre'>" + text.toHtmlEscaped() + "</span>";
}

void showelided(QLabel& label, const QString& text) {
    showelided(label, text, label.contentsRect().width() - 2 * std::max(label.indent(), 0));
}

void showelided(QLabel& label, const QString& text, int room) {
    label.setProperty(whole, text);
    label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, room));
    label.setToolTip(label.text() == text ? QString() : tooltipof(text));
}

} // namespace orv

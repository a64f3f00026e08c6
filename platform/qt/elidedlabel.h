// Labels of paths and other texts of any length. For Qt files only.
#pragma once

class QLabel;
class QString;

namespace orv {

// The label takes what width it is given, and fits its text anew whenever that changes.
void keepelided(QLabel& label);

// A text as a tool tip that shows it as it is; Qt takes for HTML what looks like some.
QString tooltipof(const QString& text);

// Shows a text, without its middle where it is too long; the whole is then the tool tip.
void showelided(QLabel& label, const QString& text);

// The same for a label that takes the width of its text, up to "room" pixels.
void showelided(QLabel& label, const QString& text, int room);

} // namespace orv

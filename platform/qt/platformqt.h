// The Qt side of the seam: what the program, the windows and their tests need beside platform.h. For Qt files
// only.
#pragma once

class QDialog;
class QWidget;

namespace orv::platform {

// Remembers the user's region, then sets the plain number formats for all that follows. Once, when the
// QApplication has been made (which sets the region's formats).
void prepare();

// The next yield that lets events in is a frame away: called when an event enters, so that short work is
// shown when it is done and not halfway.
void restartyield();

// What a dialog belongs to: the dialog beneath it, else the main window.
QWidget* dialogparent();

// Runs a modal dialog, under the normal pointer whatever it was before. Returns QDialog::Accepted or the
// other.
int rundialog(QDialog& dialog);

// Moves a dialog, in its size, to the middle of the main window's screen.
void centreonscreen(QDialog& dialog);

} // namespace orv::platform

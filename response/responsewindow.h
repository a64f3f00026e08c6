// The window "Impulse Response": the plot of response/responseplot.h with its lists and read-outs.
#pragma once

namespace orv {

// Shows it in the middle of the screen, on the whole response. Modal, it returns when it is closed; otherwise
// it stays beside the main window. There is at most one.
void showresponsewindow(bool modal);

// Closes the open one; shows what has changed behind it. Nothing without one.
void closeresponsewindow();
void updateresponsewindow();

} // namespace orv

// The window "Table": the parameters of the loaded result as a grid of text.
#pragma once

namespace orv {

// Shows the table that SessionState.tableMode names; returns when it is closed. It is always modal, so that
// nothing it shows changes meanwhile.
void showtablewindow(bool modal);

} // namespace orv

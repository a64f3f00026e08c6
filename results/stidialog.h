// The dialog "STI Options": what the speech transmission index is computed from.
#pragma once

namespace orv {

// Shows it in the middle of the screen; returns when it is closed. It is always modal. Each choice goes into
// the flags of SessionState as it is made, each noise level (dB) when its entry ends.
void showstidialog(bool modal);

} // namespace orv

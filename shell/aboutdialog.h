// The small window "About".
#pragma once

namespace orv {

// Shows it, in front of the main window; returns when it is closed. It is always modal.
void showabout(bool modal);

} // namespace orv

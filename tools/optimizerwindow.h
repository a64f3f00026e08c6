// The window "Alfa-Beta Optimizer".
#pragma once

namespace orv {

// Shows it; returns when it is closed, and what it had loaded is gone then. It is always modal, so that the
// shared variables that it changes do not change under it.
void showoptimizerwindow(bool modal);

} // namespace orv

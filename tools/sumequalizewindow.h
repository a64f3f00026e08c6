// The window "Sum & Equalize result files".
#pragma once

namespace orv {

// Shows it; returns when it is closed. It is always modal.
void showsumequalizewindow(bool modal);

} // namespace orv

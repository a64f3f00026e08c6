// The dialog "RGB Settings": the colours of the scheme "R-G-B".
#pragma once

namespace orv {

// Returns when it is closed. It is always modal. Each colour goes into the session as it is chosen; only the
// button writes their file.
void showrgbsettings(bool modal);

} // namespace orv

// The dialog "Imp.Response  export to WAV".
#pragma once

namespace orv {

// Shows it; returns when it is closed. It is always modal. Closed while an export runs, it stops the export.
void showexportdialog(bool modal);

} // namespace orv

// The rules of the dialog "Imp.Response  export to WAV", for which the window only connects.
#pragma once

#include <string>

namespace orv {

// The menu command "Export Imp.Resp. to WAV...": the dialog, modal; no other command is offered meanwhile.
void ExportWAV();

// Fills the controls of the dialog that has been opened: radix, receivers, formats, length.
void openexport();

// The whole response at the rate that is now selected, in place of a length that was typed.
void choosesamplerate();

// The radix as it was typed, a path.
void typeradix(const std::string& path);

// The save dialog; a name without a point gets ".DXF", which is meant. Cancelled, it changes nothing.
void browseradix();

// The export, to its end. It is not entered a second time.
void startexport();

// What the export looks at when it lets events in.
void stopexport();

} // namespace orv

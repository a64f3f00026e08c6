// The export: a receiver's stored paths and the rest of its response, as sounds in a multi-channel WAV file.
#pragma once

namespace orv {

// Exports the receiver of the dialog's RecNo, or all, one file for each, named after the file radix, the
// result's extension, the format and the receiver. Reads the controls RecNo, Outformat, Density and f48, and
// SessionState.requestedSamples, which is lowered to the response's length; tells what it does in List1,
// ProgressBar1 and the second status panel.
//
// Stored paths come first, each at its own time and from its own directions. The energy that they leave of
// each time slot is spread over random pulses, which are drawn from one stream that begins anew with the
// program. A sound has the amplitude sqrt(energy) / 50000 in each band. When StopExport is disabled at a
// yield, the file of the present receiver is written with the pulses so far, and no other follows.
//
// FilterBank is read anew for every file (readfilterbank), and RoomModel.roomMaxX is 50000 at the end. Raises
// subscript for a receiver that there is no response of, a path beyond the end and a negative length;
// overflow for a file of 2 GiB or more; memory; fileaccess. The text says which path, size or file.
void savewave();

// Numbers in 0 <= x < 1, the same from each start of the program; and that start again, for tests.
double nextuniform();
void restartuniform();

} // namespace orv

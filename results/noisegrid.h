// The grid of background noise levels in the options of the speech transmission index, key by key. It is
// plain data; the dialog shows it.
#pragma once

#include "shell/sessionstate.h"

#include <array>
#include <string>

namespace orv {

// What is shown and what is being typed. Column 0 is the heading, columns 1..7 are the speech bands.
struct noisegrid {
    std::array<std::string, speechbands + 1> cell; // texts of the level row
    std::string buffer;                            // the entry so far; empty when none runs
    int column = 0;                                // the column of the entry, 0 when none runs
};

// The grid with the levels of SessionState.noiseLevel (dB), "###.#", and no entry.
noisegrid opennoisegrid();

// A character typed on a cell of column 1..7: a digit or the point begins or goes on with an entry; keyenter
// shows it as "##0.0#" and stores it, keybackspace takes its last character back (platform/keycodes.h).
// Others do nothing: there is no sign, so that levels cannot be negative.
void noisecharacter(noisegrid& grid, int column, int character);

// A paging or arrow key (keypageup..keydown) during an entry shows it as "###0.0#", stores it and ends it.
void noisemove(noisegrid& grid, int key);

// The cell of a column is entered: nothing is being typed.
void noiseenter(noisegrid& grid);

// The cell of a column 0..7 is left. An entry is stored and shown as "##0.0#"; a cell that reads as zero then
// stops the program at once (platform::halt). Kept so on purpose: a zero can be entered with Enter only.
void noiseleave(noisegrid& grid, int column);

} // namespace orv

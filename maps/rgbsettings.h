// The colours of the scheme "R-G-B", which the dialog "RGB Settings" edits, and their file RGB.BIN of the
// data directory, which keeps the gridding method too.
#pragma once

#include <cstdint>

namespace orv {

// Entries 0..15 of SessionState.rgbTable are in the file and the dialog; the seventeenth stays as it starts.
constexpr int storedcolours = 16;

void RGBOpt(); // "RGB Options...": opens the dialog

// Sets rgbTable and surferMethod to their start values (0 for the method), then to every entry that the file
// holds whole. A missing file is created empty. Raises fileaccess.
void loadcolourtable();

// Writes the file; a method outside 1..6 as 1. Raises fileaccess.
void savecolourtable();

// A click on the patch of an entry 0..15: asks for another colour, which a cancel leaves as it is.
void clickcolourentry(int entry);

// "OK - exit": writes the file. A box tells when that fails; the colours hold for the session all the same.
void keepcolourtable();

// The method itself when it is one of the gridding engine's, 1..6, else 1.
std::int32_t usablemethod(std::int32_t method);

} // namespace orv

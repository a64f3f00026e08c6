// The dialog "BLN Options": how the next blanking line is entered and what it blanks.
#pragma once

namespace orv {

// Returns when it is closed, which options that no line can be drawn with keep it from. It is always modal.
// Each choice goes into BlankingOptions as it is made.
void showblankingoptions(bool modal);

} // namespace orv

// The speech transmission index: the indirect method of IEC 60268-16, from the modulation transfer values
// that a result load computed, for a male and a female talker. It departs from the standard on purpose where
// the comments say so.
#pragma once

namespace orv {

// Shows the options dialog, then computes ParameterSet.STI for receivers 0..RoomModel.receiverCount from the
// modulation transfer table, Leq and the options of SessionState: bandIndex 3..9 the male transmission index
// of the band, 11 STI-Male, 12 STI-Female. Row 0 is the mean of 3..9 and 11; its index 12 stays 0. Without
// parameters in memory only row 0 is zeroed. Forgets the maps when they show the index. Raises domain when
// the options ask for the female index without its modulation ever having been computed (spectrum without
// noise): row 0 is zero then.
void computesti();

// Whether computesti runs now; what it works on must not change under it.
bool speechindexruns();

// The menu command "STI Options...": computesti, then the question whether to update the parameter file.
void STIopt();

} // namespace orv

// The dialog "Mapping Options": everything a map needs.
#pragma once

namespace orv {

// Returns when it is closed. It is always modal. Each edit goes into the session as it is made; closing the
// dialog by anything but "OK" sets SessionState.mapCancelled, at which the map commands look.
void showmappingoptions(bool modal);

} // namespace orv

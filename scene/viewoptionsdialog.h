// The dialog "View Options": what the scene shows, in which colours and from which side.
#pragma once

namespace orv {

// Returns when it is closed. It is always modal. Each choice goes into the session as it is made.
void showviewoptions(bool modal);

} // namespace orv

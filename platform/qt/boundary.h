// The one place where an event of the window system enters our code.
#pragma once

#include <functional>

namespace orv {

// Runs what an event asks for. No exception passes on into Qt: a cancelled dialog that nobody trapped ends
// the command, and any other error is told in a message box and ends the program with status 1.
void enter(const std::function<void()>& routine);

} // namespace orv

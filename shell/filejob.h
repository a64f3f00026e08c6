// What the commands with a file dialog have in common: the question for a file, a failure that does not end
// the program, and the state of the window while they run.
#pragma once

#include "platform/platform.h"

#include <functional>
#include <optional>
#include <string>

namespace orv {

// What a file dialog gave, first showing the data directory; nothing when it was cancelled.
using filedialog = std::string (*)(const platform::filerequest&);
std::optional<std::string> chosenfile(filedialog ask, const char* title, const char* filter,
                                      const std::string& proposal);

// Runs a step of which a failure is told in a box and ends the step alone; a cancel ends it without a word.
// Returns whether it went to its own end.
bool unlessrefused(const std::function<void()>& step, const std::string& title = "Warning");

// From the dialog to the end of the command: the wait pointer, and no other command but Exit and Help. One
// that runs inside another leaves both to the outer one.
struct filejob {
    filejob();
    ~filejob();
    filejob(const filejob&) = delete;
    filejob& operator=(const filejob&) = delete;

private:
    bool outermost;
};

} // namespace orv

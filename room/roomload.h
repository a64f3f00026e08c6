// What the readers of geometry share around their files: the main window while a room is read, the progress,
// and the session's state once it is there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// Hides the views behind a grey ground, shows the wait pointer and the action in the first status panel, and
// empties the room. Returns the former ground for endroomload.
std::int32_t beginroomload(const std::string& action);

// The room has been read: centre, target of the camera, the commands that need a room, no map any more, the
// window as it was before.
void endroomload(std::int32_t formerbackground);

// A line of an import's log, which begins again at the top when the window is full.
void logimport(const std::string& text);

// The place of an import in its file as a percentage in the second status panel; lets the event loop run.
struct importprogress {
    std::size_t size = 0;  // bytes
    std::size_t shown = 1; // the next position that changes the percentage
    std::string percent;   // as shown
};
void showprogress(importprogress& progress, std::size_t position);

} // namespace orv

// What every reader of a room does with the main window, at its begin and its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace orv {

// Hides the views and their controls, turns the window grey, shows the wait pointer and the status text, and
// empties the room. Returns the window's former background.
std::int32_t startroomload(const std::string& status);

// For a room whose counts and box are set: computes its centre, which becomes the target, enables the
// commands that look at a room, forgets maps of the former one, and puts pointer, status and background back.
void finishroomload(std::int32_t formerbackground);

// How much of a file has been read, in the second status panel as whole percent of its bytes; a text is made
// only when it changes.
struct loadprogress {
    std::size_t size = 0;   // bytes
    std::size_t change = 0; // the position at which the percentage is another one
    std::string text;
};

// Shows that the position has been reached and lets events in.
void showprogress(loadprogress& progress, std::size_t position);

// A line of the log that a load shows on the window; a full window is cleared first.
void logload(const std::string& line);

} // namespace orv

// What every reader of a room does with the main window, at its begin and its end, and how its writers end.
// Readers of results share what is shown during a load.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// Hides the views and their controls and turns the window grey, as long as a load lasts. Returns the window's
// former background.
std::int32_t showloading();

// The same with the wait pointer and the status text, and empties the room.
std::int32_t startroomload(const std::string& status);

// The records that a reader has filled.
struct roomcounts {
    std::int32_t faces = 0, holes = 0, doors = 0, sources = 0, receivers = 0, raylines = 0;
};

// For a room whose records and box are set: sets the counts, computes the centre, which becomes the target,
// enables the commands that look at a room, forgets maps of the former one, and puts pointer, status and
// background back.
void finishroomload(const roomcounts& counts, std::int32_t formerbackground);

// How much of a file has been read, in the second status panel as whole percent of its bytes; a text is made
// only when it changes.
struct loadprogress {
    std::size_t size = 0;   // bytes
    std::size_t change = 0; // the position at which the percentage is another one
    std::string text;
};

// Shows that the position has been reached and lets events in.
void showprogress(loadprogress& progress, std::size_t position);

// The same while a room is written, face by face.
void showfaceprogress(std::int32_t face);

// Writes the text of a room into its file and puts pointer and status back. Raises fileaccess.
void finishroomsave(const std::string& path, std::string_view text);

// Clears the log that a load shows on the window, when the window is full of it.
void clearfulllog();

// A line of the log, behind those that have room.
void logload(const std::string& line);

} // namespace orv

// Rooms in and out of the tables by the native format, which tells all of a room in a few lines.
#pragma once

#include "room/geometryreader.h"
#include "room/geometrywriter.h"
#include "tests/testsupport.h"

#include <string>

namespace orv {

// The lines of the present room, without those that open and close it; all line ends as "\n".
inline std::string roomtext() {
    writetext("orvanta.ini", "");
    savegeometry("saved.ray");
    std::string text = readtext("saved.ray");
    std::erase(text, '\r');
    return text.substr(11, text.size() - 15); // "EntityList", "End"
}

inline void makeroom(const std::string& lines) {
    writetext("made.ray", "; of at least 64 bytes, since no shorter file can be read as a room\r\n" + lines);
    loadgeometry("made.ray");
}

} // namespace orv

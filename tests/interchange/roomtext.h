// What the tests of the foreign formats share: rooms in and out of the tables by the native format, which
// tells all of a room in a few lines, and the failures of readers.
#pragma once

#include "room/geometryreader.h"
#include "room/geometrywriter.h"
#include "tests/failures.h"
#include "tests/golden.h"

#include <functional>
#include <string>
#include <vector>

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

// Holds kind and text of the failure of each input against a file; all of them leave an empty room.
inline void expectrefusals(const std::string& golden, const std::vector<std::string>& inputs,
                           const std::function<void(const std::string&)>& load) {
    std::vector<std::string> told;
    for (const std::string& input : inputs) {
        RoomModel.faceCount = RoomModel.sourceCount = RoomModel.doorCount = 5;
        told.push_back(refusalof([&] { load(input); }));
        EXPECT_EQ(RoomModel.faceCount + RoomModel.sourceCount + RoomModel.doorCount, 0) << told.back();
    }
    expectgolden(golden, told);
}

} // namespace orv

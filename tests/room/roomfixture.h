// What the tests of the room share.
#pragma once

#include "room/geometryreader.h"
#include "tests/failures.h"
#include "tests/testsupport.h"

#include <string>
#include <string_view>

namespace orv {

struct roomtest : sessiontest {
    roomtest() { RoomModel.faceHasOpening.clearrows(highestface); } // which no load clears

    // Loads a geometry file of this text.
    static void load(std::string_view text) {
        std::filesystem::remove("room.ray"); // replacing a file makes some disks write it out at once
        writetext("room.ray", text);
        loadgeometry("room.ray");
    }

    // The text behind a line that stands for nothing, since files of up to 64 bytes cannot be read.
    static std::string padded(std::string_view text) {
        return "EntityList, a comment line that makes the file long enough to be read\r\n" +
               std::string(text);
    }
};

} // namespace orv

// What the tests of the room share.
#pragma once

#include "base/runtimeerror.h"
#include "room/geometryreader.h"
#include "tests/testsupport.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orv {

struct roomtest : sessiontest {
    roomtest() { RoomModel.faceHasOpening.clearrows(highestface); } // which no load clears

    // Loads a geometry file of this text.
    void load(std::string_view text) {
        std::filesystem::remove("room.ray"); // replacing a file makes some disks write it out at once
        writetext("room.ray", text);
        loadgeometry("room.ray");
    }

    // The error of that load; fails the test when there is none.
    runtimeerror failedload(std::string_view text) {
        try {
            load(text);
        } catch (const runtimeerror& error) {
            return error;
        }
        ADD_FAILURE() << "the file was read";
        return {};
    }

    // The status of the stop that an End line out of place brings, if it did.
    std::optional<int> haltofload(std::string_view text) {
        try {
            load(text);
        } catch (const scripted::halted& halt) {
            return halt.status;
        }
        return std::nullopt;
    }

    // A number of lines that stand for nothing, since files of up to 64 bytes cannot be read.
    static std::string padded(std::string_view text) {
        return "EntityList, a comment line that makes the file long enough to be read\r\n" +
               std::string(text);
    }
};

} // namespace orv

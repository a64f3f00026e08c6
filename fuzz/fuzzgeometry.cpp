// Fuzz target of the geometry reader. Any input is a room, an error with file and line, or the silent stop at
// an End out of place; a room that was read must come back from the file that it is saved in.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "room/geometryreader.h"
#include "room/geometrywriter.h"
#include "room/roommodel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

// A file of up to so many bytes cannot be read, also one that was saved.
constexpr std::size_t smallest = 64;

void prepare() {
    orv::enterscratch();
    orv::replacefile("orvanta.ini", "Temperature=20\r\nHumidity=50\r\n");
}

bool load(const char* name) {
    try {
        orv::loadgeometry(name);
        return true;
    } catch (const orv::runtimeerror& error) {
        if (error.text.find(", line ") == std::string::npos || orv::RoomModel.faceCount != 0) std::abort();
    } catch (const orv::scripted::halted&) {
    }
    return false;
}

// Saves the room and loads it back; false when the file is one that cannot be read: one that is too short, or
// in which a negative layer flag stands right behind its keyword and becomes a part of it.
bool saveandload(std::string& text) {
    orv::savegeometry("saved.ray");
    const orv::filebytes bytes = orv::readfile("saved.ray");
    text = std::string_view(bytes);
    if (text.size() <= smallest) return false;
    for (const char* word : {"Face-", "Hole-", "Door-"})
        if (text.find(word) != std::string::npos) return false;
    if (!load("saved.ray")) std::abort();
    return true;
}

// The first save drops faces and rounds to seven digits, which another one repeats on what it left; from then
// on the file must not change.
void checksaving() {
    std::string text, settled;
    if (!saveandload(text) || !saveandload(settled)) return;
    if (saveandload(text) && saveandload(settled) && text != settled) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    orv::replacefile("room.ray", {reinterpret_cast<const char*>(data), size});
    if (!load("room.ray")) return 0;
    try {
        checksaving();
    } catch (const orv::runtimeerror&) { // a face so large that its size cannot be computed
    }
    return 0;
}

// Fuzz target of the DXF reader. Any input is a room or an error with file and line and no room; a room that
// was read goes out again, unless it has too many layers or a ray line without a number for its end, and
// comes back.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
#include "room/roommodel.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void prepare() {
    orv::enterscratch();
    orv::replacefile("Orvanta.mat", "0 neutral,\r\n1 TOTABS,1 1\r\n2 Brickwork painted,\r\n");
}

// What no rounding of coordinates changes; it may close an outline.
using counts = std::array<std::int32_t, 4>;
counts roomcounts() {
    const orv::roommodel& r = orv::RoomModel;
    return {r.faceCount, r.sourceCount, r.receiverCount, r.rayLineCount};
}

// An outline without vertices takes what follows it for its own when it is read again.
bool emptyoutlines() {
    for (int hole = 1; hole <= orv::RoomModel.holeCount; ++hole)
        if (orv::RoomModel.holeVertexCount(hole) == 0) return true;
    return false;
}

bool load(const char* name, bool checked) {
    try {
        orv::scripted::expectbox("DXFIN", checked ? orv::platform::answer::yes : orv::platform::answer::no);
        orv::loaddxf(name);
        return true;
    } catch (const orv::runtimeerror& error) {
        if (error.text.find(", line ") == std::string::npos || roomcounts() != counts{}) std::abort();
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    orv::replacefile("room.dxf", {reinterpret_cast<const char*>(data), size});
    if (!load("room.dxf", size % 2 != 0) || emptyoutlines()) return 0;
    const counts before = roomcounts();
    try {
        orv::savedxf("saved.dxf");
    } catch (const orv::runtimeerror&) {
        return 0;
    }
    if (!load("saved.dxf", false) || roomcounts() != before) std::abort();
    return 0;
}

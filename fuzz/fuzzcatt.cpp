// Fuzz target of the Catt reader. Any input is a room, or an error with file and line, an empty room and the
// material files as they were; a room that was read can be written and read again with as many items.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "interchange/cattreader.h"
#include "interchange/cattwriter.h"
#include "interchange/materialtable.h"
#include "room/roommodel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view materials = "0 Neutral,.1\r\n1 Wood,.2\r\n";
constexpr std::string_view colours = "0\r\n255\r\n";

void check(bool good) {
    if (!good) std::abort();
}

bool load(const std::string& name) {
    try {
        orv::loadcatt(name);
        return true;
    } catch (const orv::runtimeerror& error) {
        check(error.text.starts_with(name + ", line ") && orv::RoomModel.faceCount == 0);
        return false;
    }
}

// Whether a file can hold the room: names without marks, vertices in every face, and no coordinate so wide
// that its field cuts it.
bool writable() {
    const orv::roommodel& r = orv::RoomModel;
    for (int row = 0; row <= orv::MaterialTable.materialCount; ++row)
        if (orv::MaterialTable.materialName(row).find_first_of("=/]") != std::string::npos) return false;
    for (int face = 1; face <= r.faceCount; ++face)
        if (r.faceVertexCount(face) == 0) return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (orv::enterscratch(), true);
    static_cast<void>(prepared);
    orv::replacefile("Orvanta.mat", materials);
    orv::replacefile("orvcolor.mat", colours);
    orv::replacefile("room.geo", {reinterpret_cast<const char*>(data), size});
    if (!load("room.geo")) {
        check(std::string_view(orv::readfile("Orvanta.mat")) == materials);
        check(std::string_view(orv::readfile("orvcolor.mat")) == colours);
        return 0;
    }
    const int faces = orv::RoomModel.faceCount, sources = orv::RoomModel.sourceCount,
              receivers = orv::RoomModel.receiverCount;
    if (!writable()) return 0;
    try {
        orv::savecatt("again.geo");
    } catch (const orv::runtimeerror&) { // a directivity file or a material table that cannot be read
        return 0;
    }
    if (load("again.geo"))
        check(orv::RoomModel.faceCount == faces && orv::RoomModel.sourceCount == sources &&
              orv::RoomModel.receiverCount == receivers);
    return 0;
}

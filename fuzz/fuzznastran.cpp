// Fuzz target of the Nastran reader. Any input is a room, or an error with file and line and an empty room.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "interchange/nastranreader.h"
#include "room/roommodel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (orv::enterscratch(), true);
    static_cast<void>(prepared);
    orv::replacefile("mesh.nas", {reinterpret_cast<const char*>(data), size});
    try {
        orv::loadnastran("mesh.nas");
        if (orv::RoomModel.faceCount < 1) std::abort();
    } catch (const orv::runtimeerror& error) {
        if (!error.text.starts_with("mesh.nas, line ") || orv::RoomModel.faceCount != 0) std::abort();
    }
    return 0;
}

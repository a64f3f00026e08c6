// Fuzz target of the Rayons reader: the files geo, mat, sou and rec, with a line "----" between them. Any
// input is a room, which can be exported, or an error with file and line and an empty room.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "interchange/rayons.h"
#include "room/roommodel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view separator = "----\n";

void prepare() {
    orv::enterscratch();
    orv::replacefile("Orvanta.mat", "0 Neutral,.1\r\n1 Wood,.2\r\n");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    for (const char* name : {"room.geo", "room.mat", "room.sou", "room.rec"}) {
        const std::size_t end = rest.find(separator);
        orv::replacefile(name, rest.substr(0, end));
        rest = end == rest.npos ? std::string_view() : rest.substr(end + separator.size());
    }
    try {
        orv::loadrayons("room.geo");
    } catch (const orv::runtimeerror& error) {
        if (!error.text.starts_with("room.") || error.text.find(", line ") == std::string::npos ||
            orv::RoomModel.faceCount != 0)
            std::abort();
        return 0;
    }
    if (orv::RoomModel.faceCount < 100) orv::saverayons("out.dat");
    return 0;
}

// Fuzz target of the parameter file, in both layouts. Any input is a set of parameters or an error with file
// and line; what was read must come back from the file that it is saved in.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "results/parameterfile.h"
#include "room/roommodel.h"
#include "shell/startup.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr const char* name = "r.-01";
constexpr std::int32_t fewreceivers = 20; // above, saving takes too long

void prepare() {
    orv::enterscratch();
    orv::scripted::onfailure([](const std::string&) {}); // the options, and the question of the older layout
    orv::computeconstants();
}

// Saves what is in memory; the file's text.
std::string save() {
    orv::saveparameters(name);
    const orv::filebytes bytes = orv::readfile(name);
    return std::string(std::string_view(bytes));
}

bool load() {
    try {
        orv::loadparameters(name);
        return true;
    } catch (const orv::runtimeerror& error) {
        // The speech index of an older file fails without one, where the file's values have no logarithm.
        const bool computed = error.kind == orv::errorkind::domain || error.kind == orv::errorkind::overflow;
        if (!computed && error.text.find(", line ") == std::string::npos) std::abort();
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    orv::sessionstate& session = orv::SessionState;
    session.backgroundNoiseFlag = session.forceVoiceSplFlag = session.equalizeSpectrumFlag = 0;
    session.parameterSource = 1;
    orv::RoomModel.receiverCount = 1;
    orv::replacefile(name, {reinterpret_cast<const char*>(data), size});
    if (!load() || orv::RoomModel.receiverCount < 0 || orv::RoomModel.receiverCount > fewreceivers) return 0;
    // A quote in a name, or a line end, would not come back.
    session.geometryFileName = "r.RAY";
    const std::string first = save();
    if (!load() || save() != first) std::abort();
    return 0;
}

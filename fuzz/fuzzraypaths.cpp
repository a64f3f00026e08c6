// Fuzz target of the ray path reader, and of the plot and scene that show what it has read. The input is a
// ray path file for three receivers.
#include "base/files.h"
#include "fuzz/fuzzscratch.h"
#include "platform/keycodes.h"
#include "response/raypathdisplay.h"
#include "response/raypathreader.h"
#include "response/raypathset.h"
#include "response/responseplot.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "scene/drawsurface.h"
#include "shell/menucommands.h"
#include "shell/startup.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

constexpr int receivers = 3, slots = 50;

// A surface that draws nothing.
orv::DrawSurface blanksurface() {
    orv::DrawSurface surface;
    surface.device.clear = [](void*, std::int32_t) {};
    surface.device.line = [](void*, const orv::surfacepen&, double, double, double, double) {};
    surface.device.plot = [](void*, const orv::surfacepen&, double, double) {};
    surface.device.box = [](void*, const orv::surfacepen&, const std::int32_t*, double, double, double,
                            double) {};
    surface.device.filledbox = [](void*, const orv::surfacepen&, double, double, double, double) {};
    surface.device.circle = [](void*, const orv::surfacepen&, const std::int32_t*, double, double, double) {};
    surface.device.text = [](void*, const orv::surfacepen&, double, double, std::string_view) {};
    surface.device.textwidth = [](void*, std::string_view) { return 8.0; };
    surface.resize(400, 300, 1);
    return surface;
}

void prepare() {
    orv::enterscratch();
    orv::computeconstants();
    orv::resetcommands();
    static orv::DrawSurface picture = blanksurface();
    orv::scripted::setpicture(&picture);
    orv::ResultSet.timeStep = 0.01F;
    orv::ResultSet.lastSlot = slots - 1;
    orv::ResultSet.receiverDelay.assign(receivers + 1, 0);
    orv::ResultSet.criticalTime = 0.1F;
    orv::ResultSet.alfaConstant = 0.9F;
    orv::ResultSet.betaConstant = 1;
    orv::RoomModel.receiverCount = receivers;
    orv::RoomModel.sourceCount = orv::RoomModel.faceCount = 2;
    orv::createresponse(slots, receivers);
    for (int r = 1; r <= receivers; ++r) *orv::takeresponse(r) = 1000;
    orv::checkcommand("viewraypaths", true);
}

// Every path in the plot and in both views of the scene.
void showpaths() {
    static orv::DrawSurface plot = blanksurface();
    orv::forgetresponse();
    orv::showwholeresponse();
    orv::openplot(plot);
    for (const bool solid : {false, true}) {
        orv::platform::setvisible("Frame1", solid);
        for (int r = 1; r <= receivers; ++r) {
            orv::choosereceiver(r);
            orv::presskey(orv::keyend, "");
            orv::presskey(orv::keyleft, "");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    orv::replacefile("r.@01", {reinterpret_cast<const char*>(data), size});
    orv::attempt([] { orv::loadchiocc("r.@01"); });
    // What was read before a failure is whole all the same.
    for (std::size_t r = 1; r <= receivers; ++r)
        if (static_cast<std::size_t>(orv::RayPathSet.pathCountOf[r]) != orv::RayPathSet.paths[r].size())
            std::abort();
    showpaths();
    return 0;
}

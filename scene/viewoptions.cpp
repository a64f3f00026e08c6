// The settings behind the dialog "View Options".
#include "scene/viewoptions.h"

#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "scene/camera.h"
#include "shell/menucommands.h"

#include <string>

namespace orv {

namespace {

// Boxes that are a second face of a menu entry's mark. The blanking lines have two entries for one setting,
// of which the drawing looks at the first.
constexpr struct {
    std::string_view box, command;
} twins[] = {{"Check2", "Vroom"}, {"Check3", "Vsource"}, {"Check4", "CamVrec"}, {"Check5", "BLNview"},
             {"Check5", "Vbln"},  {"Check6", "Vaxes"},   {"Check7", "Post"},    {"Check9", "Vrays"}};

constexpr struct {
    std::string_view control;
    planechoice plane;
} planes[] = {{"XY", planechoice::XY}, {"YZ", planechoice::YZ}, {"XZ", planechoice::XZ}};

void enabledxf(bool enabled) {
    SessionState.dxfEnabled = enabled ? on : off;
    for (const std::string_view name : {"DXFIN", "DXFOUT"}) enablecommand(name, enabled);
}

} // namespace

void ViewOpt() {
    platform::showwindow("View Options", true);
}

bool viewbox(std::string_view box) {
    if (box == "Check1") return SessionState.autoRedraw != off;
    if (box == "Check8") return SessionState.shrinkFaces;
    if (box == "CheckDXF") return SessionState.dxfEnabled != off;
    for (const auto& twin : twins)
        if (twin.box == box) return ischecked(twin.command);
    return false;
}

void clickviewbox(std::string_view box, bool ticked) {
    if (box == "Check1") return setautoredraw(ticked);
    if (box == "CheckDXF") return enabledxf(ticked);
    if (box == "Check8") SessionState.shrinkFaces = ticked;
    for (const auto& twin : twins)
        if (twin.box == box) checkcommand(twin.command, ticked);
}

void clickviewcolour(const viewcolour& clicked) {
    std::int32_t& colour = SessionState.*clicked.colour;
    untilcancelled([&] { colour = platform::askcolour(colour); });
}

void clickviewplane(planechoice plane) {
    setplane(plane);
    for (const auto& each : planes)
        if (each.plane == plane) platform::setchosen(std::string(each.control), true);
}

} // namespace orv

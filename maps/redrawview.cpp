// Maps and plain scenes as drawings that take turns.
#include "maps/redrawview.h"

#include "base/runtimeerror.h"
#include "maps/contourmaps.h"
#include "maps/mosaicmaps.h"
#include "platform/platform.h"
#include "scene/drawingturn.h"
#include "scene/scenedrawing.h"
#include "shell/sessionstate.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace orv {

namespace {

constexpr std::int32_t white = rgb(255, 255, 255);

struct mapkind {
    std::string_view name; // in mapKind
    std::int32_t sessionstate::*ready;
    bool (*draw2d)(DrawSurface& surface);
    bool (*draw3d)(DrawSurface& surface, bool clearfirst);
};
constexpr mapkind dither{"Dither", &sessionstate::gridReady, drawdither2d, drawdither3d};
constexpr mapkind contour{"Contour", &sessionstate::contourReady, drawcontour2d, drawcontour3d};
constexpr std::array mapkinds = {&dither, &contour};

bool drawscene(DrawSurface& surface, bool solid, bool clearfirst) {
    return solid ? drawscene3d(surface, clearfirst) : drawscene2d(surface, clearfirst);
}

// The map, or the plain scene and a box that says why where there can be no map.
bool drawmap(const mapkind& kind, DrawSurface& surface, bool solid, bool clearfirst) {
    if (clearfirst) {
        surface.setBackColor(white);
        surface.clear();
    }
    try {
        const bool drawn = solid ? kind.draw3d(surface, clearfirst) : kind.draw2d(surface);
        if (drawn) SessionState.mapKind = kind.name;
        return drawn;
    } catch (const runtimeerror& error) {
        platform::pointer(platform::shape::normal);
        platform::warningbox("Warning", "The map cannot be drawn. " + error.text);
    }
    return drawscene(surface, solid, clearfirst);
}

template <const mapkind& kind, bool solid>
bool mapinturn(DrawSurface& surface, bool clearfirst) {
    return drawmap(kind, surface, solid, clearfirst);
}

bool presentinturn(DrawSurface& surface, bool clearfirst) {
    const bool solid = platform::isvisible("Frame1");
    const std::string present = SessionState.mapKind;
    bool drawn = false;
    const mapkind* repeated = nullptr;
    for (const mapkind* kind : mapkinds)
        if (present == kind->name && SessionState.*kind->ready != 0) repeated = kind;
    if (repeated)
        drawn = drawmap(*repeated, surface, solid, clearfirst);
    else
        drawn = drawscene(surface, solid, clearfirst);
    SessionState.mapKind = present;
    return drawn;
}

void domap(drawing map) {
    platform::showwindow("Mapping Options", true);
    if (std::exchange(SessionState.mapCancelled, false)) return;
    taketurn(platform::picture(), true, map);
}

} // namespace

void redrawview(DrawSurface& surface) {
    taketurn(surface, false, presentinturn);
}

void MapDoDither2D() {
    domap(mapinturn<dither, false>);
}

void MapDoDither3D() {
    domap(mapinturn<dither, true>);
}

void MapDoContour2D() {
    domap(mapinturn<contour, false>);
}

void MapDoContour3D() {
    domap(mapinturn<contour, true>);
}

} // namespace orv

// The path under the cursor, drawn into the scene and out of it again.
#include "response/raypathdisplay.h"

#include "base/arithmetic.h"
#include "platform/platform.h"
#include "response/raypathset.h"
#include "response/responselevels.h"
#include "response/responseplot.h"
#include "room/roommodel.h"
#include "scene/camera.h"
#include "scene/drawingturn.h"
#include "scene/modelpoints.h"
#include "scene/pointer.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace orv {

namespace {

constexpr double facewidth = 3; // pixels of the outline of a face that is hit

// The path's corners behind its source: reflections, then the receiver. A stated count below 0 has neither.
template <class step>
void eachcorner(const raypath& path, std::int32_t receiver, step&& visit) {
    for (std::int32_t point = 1; point <= path.pointCount; ++point) {
        const auto j = static_cast<std::size_t>(point);
        visit(modelpointof(path.x[j], path.y[j], path.z[j]), path.face[j]);
    }
    if (path.pointCount >= 0) visit(receiverpoint(receiver), 0);
}

// A path as it is drawn, in window coordinates.
struct drawnpath {
    struct stroke {
        picturepoint from, to;
        double width; // pixels
    };
    std::int32_t colour;
    picturepoint source;
    std::vector<stroke> strokes;
};

// The one that is on the main picture now. It goes by being drawn once more, whatever has become of view,
// colour and room since.
std::optional<drawnpath> onpicture;

bool isdrawable(const raypath& path) {
    if (slotofpath(path) < 0 || path.source < 1 || path.source > RoomModel.sourceCount) return false;
    for (std::int32_t j = 1; j <= path.pointCount; ++j)
        if (const std::int32_t face = path.face[static_cast<std::size_t>(j)];
            face < 1 || face > RoomModel.faceCount)
            return false;
    return true;
}

void outlineface(drawnpath& into, std::int32_t face) {
    const int n = RoomModel.faceVertexCount(face);
    for (int k = 1; k <= n; ++k)
        into.strokes.push_back(
            {projectpoint(facepoint(face, k)), projectpoint(facepoint(face, k < n ? k + 1 : 1)), facewidth});
}

// A path in the present view; none for one that is not drawn.
std::optional<drawnpath> placedpath(std::int32_t path, std::int32_t receiver) {
    const raypath* const found = findpath(receiver, path);
    if (!found || !isdrawable(*found)) return std::nullopt;
    const bool solid = platform::isvisible("Frame1");
    const auto place = [solid](const modelpoint& p) { return solid ? projectpoint(p) : inplane(p); };
    picturepoint last = place(sourcepoint(found->source));
    drawnpath placed{SessionState.colourRays, last, {}};
    eachcorner(*found, receiver, [&](const modelpoint& corner, std::int32_t face) {
        const picturepoint next = place(corner);
        placed.strokes.push_back({last, next, 1});
        if (solid && face > 0) outlineface(placed, face);
        last = next;
    });
    return placed;
}

void draw(DrawSurface& surface, const std::optional<drawnpath>& path) {
    if (!path) return;
    surface.setDrawMode(drawmodeinversexor);
    surface.setDrawStyle(drawstyle::solid);
    surface.setForeColor(path->colour);
    surface.setDrawWidth(1);
    surface.plot(path->source.x, path->source.y);
    for (const drawnpath::stroke& stroke : path->strokes) {
        surface.setDrawWidth(stroke.width);
        surface.line(stroke.from.x, stroke.from.y, stroke.to.x, stroke.to.y, path->colour);
    }
    surface.setDrawWidth(1);
    surface.setDrawMode(drawmodecopy);
}

void showpaths() {
    enablecommand("ViewImpulse", false);
    checkcommand("viewraypaths", true);
    showwholeresponse();
    platform::pointer(platform::shape::normal);
    platform::statustext(1, std::string(receiverhint));
    platform::showwindow(responsewindowname, false);
    platform::yield();
    // The first path of the first receiver is marked by the drawing of its plot.
    impulsedraw(wide(SessionState.viewStart), wide(SessionState.viewEnd));
    platform::yield();
}

} // namespace

void viewraypaths() {
    if (raypathsshown())
        platform::closewindow(responsewindowname); // which does the rest (closeplot)
    else
        showpaths();
}

bool raypathsshown() {
    return ischecked("viewraypaths");
}

std::int32_t nearpath(double time) {
    const std::int32_t receiver = ResponsePlot.RecNo, count = pathsof(receiver);
    const auto timeof = [receiver](std::int32_t k) { return findpath(receiver, k)->time; };
    if (count == 0) return 0;
    const auto& paths = RayPathSet.paths[static_cast<std::size_t>(receiver)];
    const auto later = std::upper_bound(paths.begin(), paths.end(), time,
                                        [](double t, const raypath& path) { return t < path.time; });
    const std::int32_t k = std::min(static_cast<std::int32_t>(later - paths.begin()) + 1, count);
    if (k > 1 && time < timeof(k) && time - timeof(k - 1) < timeof(k) - time) return k - 1;
    return k;
}

void drawpath(DrawSurface& surface, std::int32_t path, std::int32_t receiver) {
    draw(surface, placedpath(path, receiver));
}

void markpath(std::int32_t path, std::int32_t receiver) {
    SessionState.markedPath = path;
    DrawSurface& picture = platform::picture();
    if (drawingruns(picture)) return; // which draws the marked path at its end
    draw(picture, onpicture);
    onpicture = placedpath(path, receiver);
    draw(picture, onpicture);
}

void drawmarkedpath(DrawSurface& surface) {
    std::optional<drawnpath> marked;
    if (raypathsshown())
        marked = placedpath(SessionState.markedPath, std::max(1, ResponseLevels.shownReceiver));
    draw(surface, marked);
    if (&surface == &platform::picture()) onpicture = std::move(marked);
}

} // namespace orv

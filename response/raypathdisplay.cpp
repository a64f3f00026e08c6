// The path under the cursor, drawn into the scene and out of it again.
#include "response/raypathdisplay.h"

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
#include <utility>

namespace orv {

namespace {

constexpr double facewidth = 3; // pixels of the outline of a face that is hit

double wide(float value) {
    return static_cast<double>(value);
}

// The path's corners behind its source: reflections, then the receiver. A stated count below 0 has neither.
template <class step>
void eachcorner(const raypath& path, std::int32_t receiver, step&& visit) {
    for (std::int32_t point = 1; point <= path.pointCount; ++point) {
        const auto j = static_cast<std::size_t>(point);
        visit(modelpointof(path.x[j], path.y[j], path.z[j]), path.face[j]);
    }
    if (path.pointCount >= 0) visit(receiverpoint(receiver), 0);
}

bool isdrawable(const raypath& path) {
    if (slotofpath(path) < 0 || path.source < 1 || path.source > RoomModel.sourceCount) return false;
    for (std::int32_t j = 1; j <= path.pointCount; ++j)
        if (const std::int32_t face = path.face[static_cast<std::size_t>(j)];
            face < 1 || face > RoomModel.faceCount)
            return false;
    return true;
}

void outlineface(DrawSurface& surface, std::int32_t face) {
    const int n = RoomModel.faceVertexCount(face);
    surface.setDrawWidth(facewidth);
    for (int k = 1; k <= n; ++k) {
        const picturepoint p = projected(facepoint(face, k)),
                           q = projected(facepoint(face, k < n ? k + 1 : 1));
        surface.line(p.x, p.y, q.x, q.y, SessionState.colourRays);
    }
    surface.setDrawWidth(1);
}

// On the main picture, between drawings; a running one draws the marked path at its end.
void drawonpicture(std::int32_t path, std::int32_t receiver) {
    if (!drawingruns()) drawpath(platform::picture(), path, receiver);
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
    const raypath* const drawn = findpath(receiver, path);
    if (!drawn || !isdrawable(*drawn)) return;
    const bool solid = platform::isvisible("Frame1");
    const auto place = [solid](const modelpoint& p) { return solid ? projected(p) : inplane(p); };
    surface.setDrawMode(drawmodeinversexor);
    surface.setDrawStyle(drawstyle::solid);
    surface.setForeColor(SessionState.colourRays);
    picturepoint last = place(sourcepoint(drawn->source));
    surface.plot(last.x, last.y);
    eachcorner(*drawn, receiver, [&](const modelpoint& corner, std::int32_t face) {
        const picturepoint next = place(corner);
        surface.line(last.x, last.y, next.x, next.y, SessionState.colourRays);
        if (solid && face > 0) outlineface(surface, face);
        last = next;
    });
    surface.setDrawMode(drawmodecopy);
}

void markpath(std::int32_t path, std::int32_t receiver) {
    if (SessionState.markedPath > 0) drawonpicture(SessionState.markedPath, receiver);
    SessionState.markedPath = path;
    if (path > 0) drawonpicture(path, receiver);
}

void drawmarkedpath(DrawSurface& surface) {
    if (raypathsshown())
        drawpath(surface, SessionState.markedPath, std::max(1, ResponseLevels.shownReceiver));
}

} // namespace orv

// The layers of the scene, one routine for each kind of item, and the two routines that order them.
#include "scene/scenedrawing.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/runtimeerror.h"
#include "maps/blanking.h"
#include "platform/platform.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "scene/camera.h"
#include "scene/drawingturn.h"
#include "scene/modelpoints.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <cmath>
#include <utility>

namespace orv {

namespace {

constexpr std::int32_t white = rgb(255, 255, 255);
constexpr int facesperyield = 256; // so that Escape takes effect soon and costs a drawing nothing
constexpr double raylength = 50;   // of a ray line, in its direction triples
constexpr double shrinkfactor = 0.7;
constexpr double axes2d = 1.2, axes3d = 1.3; // length of the axes to the room's maxima

// Sizes and distances, as what the window's width or height is divided by.
constexpr double sourceradius = 200, receiverradius = 300, blankingradius = 300, rayradius = 800; // width
constexpr double receiverlabel = 100, postedlabel = 80;                                           // height
constexpr double itemsize3d = 40; // height: half a source's box, a receiver's radius
constexpr double labelleft = 2.5; // what a 2D label's width is divided by, to the left of its point

modelpoint holepoint(std::int32_t hole, int vertex) {
    const roommodel& r = RoomModel;
    return modelpointof(r.holeVertexX(hole, vertex), r.holeVertexY(hole, vertex),
                        r.holeVertexZ(hole, vertex));
}
modelpoint doorpoint(std::int32_t door, int vertex) {
    const roommodel& r = RoomModel;
    return modelpointof(r.doorVertexX(door, vertex), r.doorVertexY(door, vertex),
                        r.doorVertexZ(door, vertex));
}
modelpoint raystart(std::int32_t ray) {
    const roommodel& r = RoomModel;
    return modelpointof(r.rayLineX1(ray), r.rayLineY1(ray), r.rayLineZ1(ray));
}
modelpoint rayend(std::int32_t ray) {
    const roommodel& r = RoomModel;
    return {wide(r.rayLineX1(ray)) + raylength * wide(r.rayLineX2(ray)),
            wide(r.rayLineY1(ray)) + raylength * wide(r.rayLineY2(ray)),
            wide(r.rayLineZ1(ray)) + raylength * wide(r.rayLineZ2(ray))};
}

// Runs `drawface` for every face until the user stops it.
template <class step>
void eachface(step&& drawface) {
    for (std::int32_t face = 1; face <= RoomModel.faceCount; ++face) {
        drawface(face);
        if (face % facesperyield == 0) platform::yield();
        if (SessionState.drawAbort != off) break;
    }
}

bool roomshown() {
    return ischecked("Vroom") && RoomModel.faceCount > 0;
}

void drawtitle(DrawSurface& surface) {
    surface.setForeColor(rgb(0, 0, 0));
    // Of a long path the middle is what can be missed; the window's title has the whole.
    const std::string title = surface.elided(scenetitle(), std::fabs(surface.windowWidth()));
    surface.setTextPoint(surface.windowLeft() + surface.windowWidth() / 2 - surface.textWidth(title) / 2,
                         surface.windowTop());
    surface.text(title);
}

// --- Layers of the 2D views ---

void drawroom2d(DrawSurface& surface) {
    if (!roomshown()) return;
    eachface([&](std::int32_t face) {
        const int n = RoomModel.faceVertexCount(face);
        const picturepoint last = inplane(facepoint(face, n));
        surface.plot(last.x, last.y);
        for (int k = 1; k <= n; ++k) {
            const picturepoint p = inplane(facepoint(face, k));
            surface.lineTo(p.x, p.y);
        }
    });
}

void drawsources2d(DrawSurface& surface) {
    if (!ischecked("Vsource")) return;
    surface.setFillStyle(fillstyle::solid);
    surface.setForeColor(SessionState.colourSources);
    surface.setFillColor(SessionState.colourSources);
    const double radius = surface.windowWidth() / sourceradius;
    for (std::int32_t i = 1; i <= RoomModel.sourceCount; ++i) {
        const picturepoint p = inplane(sourcepoint(i));
        surface.circle(p.x, p.y, radius, QBColor(1));
        const std::string label = sourcelabel(i);
        surface.setTextPoint(p.x - surface.textWidth(label) / labelleft,
                             p.y + radius - surface.textHeight(label));
        surface.textLine(label);
    }
}

void receivercircle2d(DrawSurface& surface, const picturepoint& p) {
    surface.circle(p.x, p.y, surface.windowWidth() / receiverradius, QBColor(5));
}

void drawreceivers2d(DrawSurface& surface) {
    if (!ischecked("CamVrec")) return;
    surface.setFillColor(SessionState.colourReceivers);
    surface.setForeColor(SessionState.colourReceivers);
    for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i) {
        const picturepoint p = inplane(receiverpoint(i));
        receivercircle2d(surface, p);
        const std::string label = std::to_string(i);
        surface.setTextPoint(p.x - surface.textWidth(label) / labelleft,
                             p.y - surface.windowHeight() / receiverlabel - surface.textHeight(label));
        surface.textLine(label);
    }
}

void drawraylines2d(DrawSurface& surface) {
    if (!ischecked("Vrays")) return;
    surface.setFillColor(SessionState.colourRays);
    surface.setForeColor(SessionState.colourRays);
    for (std::int32_t i = 1; i <= RoomModel.rayLineCount; ++i) {
        const picturepoint p = inplane(raystart(i)), q = inplane(rayend(i));
        surface.line(p.x, p.y, q.x, q.y);
    }
}

void drawaxes2d(DrawSurface& surface) {
    if (!ischecked("Vaxes")) return;
    // x and y, whatever the view shows; meant.
    surface.line(0, 0, axes2d * wide(RoomModel.roomMaxX), 0, QBColor(12));
    surface.line(0, 0, 0, axes2d * wide(RoomModel.roomMaxY), QBColor(10));
}

void drawposted(DrawSurface& surface) {
    if (!ischecked("Post") || SessionState.parameterSource == 0) return;
    surface.setForeColor(SessionState.colourPosted);
    surface.setFillColor(SessionState.colourReceivers);
    if (!ischecked("CamVrec"))
        for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i)
            receivercircle2d(surface, inplane(receiverpoint(i)));
    for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i) {
        const picturepoint p = inplane(receiverpoint(i));
        const std::string value = parametertext(i, SessionState.bandIndex, "###0.##");
        surface.setTextPoint(p.x - surface.textWidth(value) / labelleft,
                             p.y + surface.windowHeight() / postedlabel);
        surface.textLine(value);
    }
}

bool blankingshown() {
    return ischecked("BLNview") && BlankingLines.blanklineCount > 0;
}

// Calls `side` for every side of every blanking line, with its two points in the lines' own two axes. The
// last point of a line begins none.
template <class step>
void eachblankside(step&& side) {
    const blankinglines& lines = BlankingLines;
    for (std::int32_t i = 1; i <= lines.blanklineCount; ++i)
        for (int j = 1; j < static_cast<int>(lines.blanklinePoints(i)); ++j)
            side(picturepoint{wide(lines.blanklineX(i, j)), wide(lines.blanklineY(i, j))},
                 picturepoint{wide(lines.blanklineX(i, j + 1)), wide(lines.blanklineY(i, j + 1))});
}

void drawblanking2d(DrawSurface& surface) {
    if (!blankingshown()) return;
    surface.setFillColor(QBColor(11));
    eachblankside([&](const picturepoint& p, const picturepoint& q) {
        surface.line(p.x, p.y, q.x, q.y, SessionState.colourBlanking);
        surface.circle(p.x, p.y, surface.windowWidth() / blankingradius, QBColor(12));
    });
}

// --- Layers of the 3D view ---

void edge3d(DrawSurface& surface, const modelpoint& from, const modelpoint& to, std::int32_t colour) {
    const picturepoint p = projectpoint(from), q = projectpoint(to);
    surface.line(p.x, p.y, q.x, q.y, colour);
}

void drawfaces3d(DrawSurface& surface) {
    surface.setFillStyle(fillstyle::solid);
    surface.setForeColor(SessionState.colourRoom);
    if (SessionState.shrinkFaces) {
        eachface([](std::int32_t face) {
            drawshrinkface(face, SessionState.materialColour(RoomModel.faceMaterial(face)));
        });
        return;
    }
    eachface([&](std::int32_t face) {
        const int n = RoomModel.faceVertexCount(face);
        for (int k = 1; k <= n; ++k)
            edge3d(surface, facepoint(face, k), facepoint(face, k < n ? k + 1 : 1), SessionState.colourRoom);
    });
}

void drawdoors3d(DrawSurface& surface) {
    constexpr int edges = 4; // whatever the door's own count of vertices says
    for (std::int32_t door = 1; door <= RoomModel.doorCount; ++door)
        for (int k = 1; k <= edges; ++k)
            edge3d(surface, doorpoint(door, k), doorpoint(door, k < edges ? k + 1 : 1), QBColor(2));
}

void drawholes3d(DrawSurface& surface) {
    for (std::int32_t hole = 1; hole <= RoomModel.holeCount; ++hole) {
        const int n = RoomModel.holeVertexCount(hole);
        for (int k = 1; k <= n; ++k)
            edge3d(surface, holepoint(hole, k), holepoint(hole, k < n ? k + 1 : 1), QBColor(4));
    }
}

void drawroom3d(DrawSurface& surface) {
    if (!roomshown()) return;
    attempt([&] { drawfaces3d(surface); });
    attempt([&] { drawdoors3d(surface); });
    attempt([&] { drawholes3d(surface); });
}

// A label with its middle on the point.
void centredlabel(DrawSurface& surface, const picturepoint& p, const std::string& label) {
    surface.setTextPoint(p.x - surface.textWidth(label) / 2, p.y - surface.textHeight(label) / 2);
    surface.textLine(label);
}

void drawsources3d(DrawSurface& surface) {
    if (!ischecked("Vsource")) return;
    const double s = std::fabs(platform::picture().windowHeight()) / itemsize3d;
    surface.setFillStyle(fillstyle::transparent);
    surface.setForeColor(SessionState.colourSources);
    for (std::int32_t i = 1; i <= RoomModel.sourceCount; ++i) {
        const picturepoint p = projectpoint(sourcepoint(i));
        surface.box(p.x - s, p.y - s, p.x + s, p.y + s, QBColor(3));
        centredlabel(surface, p, sourcelabel(i));
    }
}

void drawreceivers3d(DrawSurface& surface) {
    if (!ischecked("CamVrec")) return;
    const double r = std::fabs(surface.windowHeight() / itemsize3d);
    surface.setFillStyle(fillstyle::transparent);
    surface.setForeColor(SessionState.colourReceivers);
    for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i) {
        const picturepoint p = projectpoint(receiverpoint(i));
        surface.circle(p.x, p.y, r, QBColor(1));
        centredlabel(surface, p, std::to_string(i));
    }
}

void drawraylines3d(DrawSurface& surface) {
    if (!ischecked("Vrays")) return;
    const double radius = platform::picture().windowWidth() / rayradius;
    for (std::int32_t i = 1; i <= RoomModel.rayLineCount; ++i) {
        const picturepoint p = projectpoint(raystart(i)), q = projectpoint(rayend(i));
        surface.line(p.x, p.y, q.x, q.y, SessionState.colourRays);
        surface.circle(p.x, p.y, radius, QBColor(12));
    }
}

void drawblanking3d(DrawSurface& surface) {
    if (!blankingshown()) return;
    surface.setFillColor(QBColor(11));
    const double radius = platform::picture().windowWidth() / blankingradius;
    const double third = wide(SessionState.mapThirdCoordinate);
    eachblankside([&](const picturepoint& from, const picturepoint& to) {
        // x, y and the third coordinate, whatever the 2D view shows; meant.
        const picturepoint p = projectpoint({from.x, from.y, third}), q = projectpoint({to.x, to.y, third});
        surface.line(p.x, p.y, q.x, q.y, SessionState.colourBlanking);
        surface.circle(p.x, p.y, radius, QBColor(12));
    });
}

// --- The two views ---

// The groups of a view are shown whether or not it can be drawn: they are the way out when it cannot.
void showview(bool solid) {
    platform::pointer(platform::shape::wait);
    platform::setvisible("Picture1", true);
    enablecommand("Cprint", true);
    platform::setvisible("SSFrame1", true);
    platform::setenabled("Redisplay", true);
    platform::setvisible("Frame2DView", !solid);
    platform::setvisible("Frame1", solid);
    platform::setvisible("Frame2", solid);
}

void begin(DrawSurface& surface, bool clearfirst) {
    SessionState.drawAbort = off;
    if (!clearfirst) return;
    surface.setBackColor(white);
    surface.clear();
}

void finish(std::string_view hint) {
    platform::pointer(platform::shape::normal);
    SessionState.mapKind = "Normal";
    platform::statustext(1, std::string(hint));
}

} // namespace

bool drawscene2d(DrawSurface& surface, bool clearfirst) {
    showview(false);
    if (!attempt([&] { scale2dview(surface); })) return false;
    begin(surface, clearfirst);
    surface.setFillStyle(fillstyle::solid);
    surface.setForeColor(SessionState.colourRoom);
    drawroom2d(surface);
    drawsources2d(surface);
    drawreceivers2d(surface);
    drawraylines2d(surface);
    drawaxes2d(surface);
    attempt([&] { drawposted(surface); }); // a parameter need not have a value in every band
    drawblanking2d(surface);
    drawtitle(surface);
    finish(panhint2d);
    return true;
}

bool drawscene3d(DrawSurface& surface, bool clearfirst) {
    // Texts of camera fields that are written meanwhile must not ask for a redraw.
    struct manualredraw {
        const float former = std::exchange(SessionState.autoRedraw, off);
        ~manualredraw() { SessionState.autoRedraw = former; }
    };
    const manualredraw held;
    showview(true);
    surface.setDrawWidth(1);
    if (!attempt([] { setupcamera(); }) || !attempt([&] { scale3dview(surface); })) return false;
    begin(surface, clearfirst);
    // A stage that fails leaves the others, and nothing is said about it.
    if (ischecked("Vaxes")) attempt([&] { drawaxes3d(surface); });
    drawroom3d(surface);
    attempt([&] { drawsources3d(surface); });
    attempt([&] { drawreceivers3d(surface); });
    attempt([&] { drawraylines3d(surface); });
    attempt([&] { drawblanking3d(surface); });
    drawtitle(surface);
    finish(panhint3d);
    return true;
}

bool viewpossible() {
    if (platform::isvisible("Frame1")) return attempt([] { derivedcamera(); });
    DrawSurface trial = platform::picture();
    trial.device = {};
    return attempt([&] { scale2dview(trial); });
}

void draw2dview(DrawSurface& surface, bool clearfirst) {
    taketurn(surface, clearfirst, drawscene2d);
}

void draw3dview(DrawSurface& surface, bool clearfirst) {
    taketurn(surface, clearfirst, drawscene3d);
}

void drawaxes3d(DrawSurface& surface) {
    const roommodel& r = RoomModel;
    const struct {
        modelpoint end;
        std::int32_t colour;
    } axes[] = {{{axes3d * wide(r.roomMaxX), 0, 0}, QBColor(12)},
                {{0, axes3d * wide(r.roomMaxY), 0}, QBColor(10)},
                {{0, 0, axes3d * wide(r.roomMaxZ)}, QBColor(1)}};
    const picturepoint origin = projectpoint({0, 0, 0});
    for (const auto& axis : axes) {
        const picturepoint end = projectpoint(axis.end);
        surface.line(origin.x, origin.y, end.x, end.y, axis.colour);
    }
}

void drawshrinkface(std::int32_t face, std::int32_t colour) {
    constexpr int most = 4; // a face of more vertices shows only these
    const int n = RoomModel.faceVertexCount(face) == 3 ? 3 : most;
    modelpoint corner[most]{}, centre{0, 0, 0};
    for (int k = 0; k < n; ++k) {
        corner[k] = facepoint(face, k + 1);
        centre.x += corner[k].x / n;
        centre.y += corner[k].y / n;
        centre.z += corner[k].z / n;
    }
    for (modelpoint& p : corner)
        p = {centre.x + shrinkfactor * (p.x - centre.x), centre.y + shrinkfactor * (p.y - centre.y),
             centre.z + shrinkfactor * (p.z - centre.z)};
    for (int k = 0; k < n; ++k) edge3d(platform::picture(), corner[k], corner[(k + 1) % n], colour);
}

std::string sourcelabel(std::int32_t source) {
    const auto letter = [](std::int32_t code) {
        const bool shown = code < 127 || (code > 160 && code < 256);
        return shown ? static_cast<char>(code) : '?';
    };
    const std::int32_t k = source - 1;
    std::string label;
    // The test looks at the number and not at k: source 26 is "@Z", which is meant.
    if (source > 25) label += letter(64 + k / 26);
    return label + letter(65 + k % 26);
}

std::string scenetitle() {
    const sessionstate& s = SessionState;
    const std::string& path = s.resultFileName.empty() ? s.geometryFileName : s.resultFileName;
    const std::string plain = std::string(programname) + std::string(versiontext) + " - " + pagetext(path);
    if (s.parameterSource == 0 || !(ischecked("Post") || s.mapInProgress)) return plain;
    if (s.bandIndex < 0 || s.bandIndex > bandcount) return plain;

    std::string title = plain + " Freq.=" + std::string(bandName[static_cast<std::size_t>(s.bandIndex)]) +
                        " - " + s.parameterName;
    if (s.parameterName != "STI") return title;
    if (s.bandIndex == linearband) title = plain + " - STI-Female";
    if (s.bandIndex == weightedband) title = plain + " - STI-Male";
    if (s.backgroundNoiseFlag != 0) {
        if (s.equalizeSpectrumFlag != 0) title += " (Equalized)";
        if (s.forceVoiceSplFlag != 0) title += " (Lw corrected)";
    }
    return title;
}

} // namespace orv

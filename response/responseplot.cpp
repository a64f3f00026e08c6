// The impulse response plot: what is drawn where, the cursors, and what they read out.
#include "response/responseplot.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/keycodes.h"
#include "platform/platform.h"
#include "response/raypathdisplay.h"
#include "response/raypathset.h"
#include "response/responselevels.h"
#include "results/acousticparameters.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "scene/scenedrawing.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <cmath>

namespace orv {

responseplot ResponsePlot;

namespace {

// dB
constexpr double lowest = -10, highest = 130;
constexpr double frametop = 120, gridstep = 20;
constexpr double tickend = -3;
constexpr double markstart = 120.5, markend = 123; // of a cursor, above the frame
constexpr double pathmark = 122;

// Shares of the span
constexpr double sidemargin = 0.05, labelgap = 0.02;
constexpr double widthofspan = 1.1;
constexpr double narrowest = 0.01; // box that zooms

constexpr double markradius = 4; // pixels
constexpr double curvewidth = 2; // pixels

constexpr std::int32_t white = rgb(255, 255, 255), black = rgb(0, 0, 0), red = rgb(255, 0, 0),
                       gridgreen = rgb(0, 192, 0);

constexpr int leftbutton = 1, rightbutton = 2;
constexpr std::int32_t firstfrequency = 5; // entry of 1000 Hz

double step() {
    return wide(ResultSet.timeStep);
}
double wholelength() {
    return step() * ResultSet.lastSlot;
}

// The nearest multiple of the time step, and its number.
double nearestslot(double time) {
    return Int(time / step() + 0.5);
}

// The slot that levels are read at: nearest, halves to even; the one behind the last for all later times.
std::int64_t slotat(double time) {
    const double slot = std::nearbyint(time / step());
    return slot >= 0 ? static_cast<std::int64_t>(std::min(slot, ResultSet.lastSlot + 1.0)) : -1;
}

void redraw() {
    impulsedraw(wide(SessionState.viewStart), wide(SessionState.viewEnd));
}

// The path under the cursor, or null without one.
const raypath* selectedpath() {
    return raypathsshown() ? findpath(ResponseLevels.shownReceiver, SessionState.selectedPath) : nullptr;
}

// --- Marks in exclusive-or mode ---

// Draws a mark, or removes it when it is there.
template <class drawing>
void toggle(plotmark& mark, drawing draw) {
    mark.drawn = !mark.drawn;
    DrawSurface* const surface = ResponsePlot.surface;
    if (!surface || surface->defaultWindow) return; // there is no plot: one of a single slot has no width
    surface->setDrawMode(drawmodexor);
    surface->setFillStyle(fillstyle::transparent);
    draw(*surface, mark);
    surface->setDrawMode(drawmodecopy);
}

void drawstart(DrawSurface& surface, const plotmark& at) {
    surface.line(at.time, 0, at.time, frametop, QBColor(12));
    if (at.ofpath) {
        surface.line(at.time, at.level, at.time + step(), at.level, red);
        surface.circle(at.time, pathmark, markradius / std::fabs(surface.pixelsPerX) * surface.scale,
                       QBColor(2));
        return;
    }
    surface.line(at.time, at.level, at.time + step(), at.level, QBColor(2));
    surface.line(at.time, markstart, at.time, markend, QBColor(2));
}

void drawsecond(DrawSurface& surface, const plotmark& at) {
    surface.line(at.time, 0, at.time, frametop, QBColor(14));
    surface.line(at.time, at.level, at.time + step(), at.level, QBColor(14));
}

void drawbox(DrawSurface& surface, const plotmark& at) {
    surface.box(at.time, 0, at.until, frametop, QBColor(15));
}

// The left cursor where it is to be now.
plotmark presentstart() {
    const responseplot& p = ResponsePlot;
    if (const raypath* const path = selectedpath())
        return {false, path->time, 0, wide(levelat(ResponseLevels.pathLevel, SessionState.selectedPath)),
                true};
    const double time = wide(p.cursorStart);
    return {false, time, 0, wide(levelat(ResponseLevels.responseLevel, slotat(time))), false};
}

void showstart() {
    ResponsePlot.start = presentstart();
    toggle(ResponsePlot.start, drawstart);
}

// --- Read-outs ---

void showreadouts() {
    responseplot& p = ResponsePlot;
    const plotmark at = presentstart();
    const std::int64_t slot = slotat(at.time);
    p.Xtext = formatnumber(static_cast<float>(at.time), "#0.0##");
    p.PathLenght = formatnumber(static_cast<float>(wide(ResultSet.soundSpeed) * at.time), "####.##");
    p.SPLlabel = formatnumber(static_cast<float>(at.level), "##0.0 dB");
    p.schlabel = slot > ResultSet.lastSlot
                     ? "---"
                     : formatnumber(levelat(ResponseLevels.schroederLevel, slot), "##0.0 dB");
    p.PathN = raypathsshown() ? formatnumber(SessionState.selectedPath, "###0") : "";
}

// The decay between the two cursors, refined on the curve where it can be.
void measuredecay() {
    responseplot& p = ResponsePlot;
    const auto& curve = ResponseLevels.schroederLevel;
    const auto levelof = [](float time) {
        return wide(levelat(ResponseLevels.schroederLevel, slotat(wide(time))));
    };
    const double upper = levelof(p.cursorStart), lower = levelof(p.cursorSecond),
                 first = wide(levelat(curve, 0));
    p.measuredDrop = static_cast<float>(upper - lower);
    p.measuredDecay = 0;
    if (p.measuredDrop > 0) {
        p.measuredDecay =
            static_cast<float>(60 * (wide(p.cursorSecond) - wide(p.cursorStart)) / wide(p.measuredDrop));
        attempt([&] {
            reverb(p.measuredDecay, upper - first, lower - first, curve, ResultSet.lastSlot, step());
        });
    }
    p.revtime = formatnumber(p.measuredDecay, "##0.00 s");
}

// --- The plot ---

void drawtimeaxis(DrawSurface& surface, double t1, double t2) {
    const double middle = (t1 + t2) / 2;
    const auto moved = [](double time) { return nearestslot(time) * step(); };
    const double ticks[] = {t1, moved((t1 + middle) / 2), moved(middle), moved((middle + t2) / 2), t2};
    surface.setForeColor(black);
    std::string_view unit = "  s";
    double end = 0;
    for (const double time : ticks) {
        surface.line(time, 0, time, tickend, red);
        const std::string label(trimfront(formatnumber(static_cast<float>(time), "##0.00")));
        end = time + surface.textWidth(label) / 2;
        surface.setTextPoint(time - surface.textWidth(label) / 2, tickend);
        surface.text(label);
    }
    surface.setTextPoint(std::min(end, surface.right - surface.textWidth(unit)), tickend);
    surface.text(unit);
}

// A text that ends left of the span, as far as there is room.
void marginlabel(DrawSurface& surface, double t1, double span, double y, std::string_view label) {
    surface.setTextPoint(std::max(surface.left, t1 - labelgap * span - surface.textWidth(label)), y);
    surface.text(label);
}

// One black box for each slot. Those that fall on the same pixel columns are one box, as high as the highest.
void drawbars(DrawSurface& surface, std::int32_t first, std::int32_t last) {
    struct bar {
        double left, right, level;
        double leftpixel, rightpixel;
    };
    const auto barof = [&surface](std::int32_t i) {
        const double x = i * step();
        bar made{x, x + step() / 2, wide(levelat(ResponseLevels.responseLevel, i)), 0, 0};
        made.leftpixel = std::floor(surface.toDeviceX(made.left));
        made.rightpixel = std::floor(surface.toDeviceX(made.right));
        return made;
    };
    if (first > last) return;
    bar drawn = barof(first);
    const auto draw = [&] { surface.filledBox(drawn.left, 0, drawn.right, drawn.level, black); };
    for (std::int32_t i = first + 1; i <= last; ++i) {
        const bar next = barof(i);
        if (next.leftpixel == drawn.leftpixel && next.rightpixel == drawn.rightpixel) {
            drawn.level = std::max(drawn.level, next.level);
            continue;
        }
        draw();
        drawn = next;
    }
    draw();
}

// The decay curve from slot to slot, without the steps that stay on one pixel.
void drawcurve(DrawSurface& surface, std::int32_t first, std::int32_t last) {
    struct place {
        double x, y;
        double column, row;
    };
    const auto placeof = [&surface](std::int32_t i) {
        place made{i * step() + step() / 2, wide(levelat(ResponseLevels.schroederLevel, i)), 0, 0};
        made.column = std::floor(surface.toDeviceX(made.x));
        made.row = std::floor(surface.toDeviceY(made.y));
        return made;
    };
    if (first > last) return;
    surface.setDrawWidth(curvewidth);
    place from = placeof(first);
    for (std::int32_t i = first + 1; i <= last; ++i) {
        const place to = placeof(i);
        if (to.column == from.column && to.row == from.row) continue;
        surface.line(from.x, from.y, to.x, to.y, QBColor(9));
        from = to;
    }
    surface.setDrawWidth(1);
}

void drawspikes(DrawSurface& surface) {
    const responselevels& L = ResponseLevels;
    for (std::int32_t k = 1; k <= L.pathCount; ++k) {
        const raypath* const path = findpath(L.shownReceiver, k);
        if (!path || slotofpath(*path) < 0) continue;
        if (path->time < wide(SessionState.viewStart) || path->time > wide(SessionState.viewEnd)) continue;
        surface.line(path->time, 0, path->time, wide(L.pathLevel[static_cast<std::size_t>(k)]), QBColor(13));
    }
}

void drawgrid(DrawSurface& surface, double t1, double t2) {
    surface.setForeColor(black);
    for (double y = 0; y <= frametop; y += gridstep) {
        surface.line(t1, y, t2, y, gridgreen);
        const std::string label = formatnumber(y, "###0");
        marginlabel(surface, t1, t2 - t1, y - surface.textHeight(label) / 2, label);
    }
    surface.setFillStyle(fillstyle::transparent);
    surface.box(t1, 0, t2, frametop, black);
}

void drawplot(DrawSurface& surface, double t1, double t2) {
    responseplot& p = ResponsePlot;
    p.start.drawn = p.second.drawn = p.box.drawn = false;
    surface.setDrawMode(drawmodecopy);
    surface.setBackColor(white);
    surface.clear();
    const double span = t2 - t1;
    if (!(span > 0) || !(step() > 0)) return;
    const double left = t1 - sidemargin * span;
    surface.setWindow(left, highest, left + widthofspan * span, lowest);
    drawtimeaxis(surface, t1, t2);
    marginlabel(surface, t1, span, highest, "dB");
    const auto limited = [](double slot) {
        return static_cast<std::int32_t>(
            std::clamp(slot, 0.0, static_cast<double>(std::max(ResultSet.lastSlot, 0))));
    };
    const std::int32_t first = limited(nearestslot(t1)), last = limited(nearestslot(t2));
    drawbars(surface, first, last);
    if (SessionState.schroederOn != 0) drawcurve(surface, first, last);
    drawspikes(surface);
    drawgrid(surface, t1, t2);
    showstart();
}

// --- Keys ---

struct movingkey {
    int code;
    std::int32_t paths, slots; // how far it goes
};
constexpr movingkey movingkeys[] = {{keypageup, 10, 20}, {keypagedown, -10, -20}, {keyleft, -1, -1},
                                    {keyup, 5, 10},      {keyright, 1, 1},        {keydown, -5, -10}};

void movetopath(int code, double time) {
    const std::int32_t count = ResponseLevels.pathCount;
    if (count == 0) return;
    std::int32_t& path = SessionState.selectedPath;
    for (const movingkey& key : movingkeys)
        if (key.code == code) path += key.paths;
    if (code == keyenter) path = nearpath(time);
    if (code == keyend) path = count;
    if (code == keyhome) path = 1;
    path = std::clamp(path, 1, count);
    updatecursor(selectedpath()->time, leftbutton);
}

// From the slot that the cursor is on, so that each key moves it by its own number of slots.
void movetoslot(int code, double time) {
    double slot = nearestslot(time);
    for (const movingkey& key : movingkeys)
        if (key.code == code) slot += key.slots;
    if (code == keyhome) slot = 1;
    double moved = code == keyend ? wide(SessionState.viewEnd) : slot * step();
    moved = std::max(std::min(moved, wide(SessionState.viewEnd) - step()), wide(SessionState.viewStart));
    updatecursor(nearestslot(moved) * step(), leftbutton);
}

} // namespace

void ViewImpulse() {
    showwholeresponse();
    platform::showwindow(responsewindowname, true);
}

void openplot(DrawSurface& surface) {
    responseplot& p = ResponsePlot;
    p.surface = &surface;
    p.FreqNo = firstfrequency;
    p.RecNo = std::min(1, RoomModel.receiverCount);
    redraw();
    showreadouts();
    measuredecay();
}

void closeplot() {
    if (raypathsshown()) {
        markpath(0, ResponseLevels.shownReceiver);
        checkcommand("viewraypaths", false);
        if (SessionState.parameterSource > 0) enablecommand("ViewImpulse", true);
    }
    SessionState.selectedPath = SessionState.markedPath = 0;
    ResponsePlot.surface = nullptr;
    platform::pointer(platform::shape::sizeall);
    platform::statustext(1, std::string(panhint3d));
}

void forgetresponse() {
    if (ResponsePlot.surface) platform::closewindow(responsewindowname);
    SessionState.selectedPath = SessionState.markedPath = 0;
    forgetlevels();
}

void showwholeresponse() {
    SessionState.viewStart = 0;
    SessionState.viewEnd = static_cast<float>(wholelength());
}

void impulsedraw(double t1, double t2) {
    const responseplot& p = ResponsePlot;
    const std::int32_t receiver = std::max(p.RecNo, 0), band = std::max(p.FreqNo, 0) + 1;
    const bool paths = raypathsshown();
    const bool fresh = computelevels(receiver, band, paths);
    // Kept levels do not keep the path: the window's end has unmarked it.
    if (paths && (fresh || SessionState.selectedPath == 0)) {
        SessionState.selectedPath = std::min(1, ResponseLevels.pathCount);
        markpath(SessionState.selectedPath, receiver);
    }
    if (p.surface) drawplot(*p.surface, t1, t2);
    if (fresh) {
        showreadouts();
        measuredecay();
    }
}

void updatecursor(double time, int button) {
    if (!(step() > 0)) return; // there is no response
    responseplot& p = ResponsePlot;
    const auto x = static_cast<float>(std::max(std::min(time, wholelength()), 0.0));
    if (button == leftbutton) {
        if (p.start.drawn) toggle(p.start, drawstart);
        p.cursorStart = p.dragEnd = x;
        showstart();
        showreadouts();
        if (raypathsshown()) markpath(SessionState.selectedPath, ResponseLevels.shownReceiver);
    }
    if (button == rightbutton) {
        if (p.second.drawn) toggle(p.second, drawsecond);
        p.cursorSecond = x;
        p.second = {false, wide(x), 0, wide(levelat(ResponseLevels.responseLevel, slotat(wide(x)))), false};
        toggle(p.second, drawsecond);
    }
    measuredecay();
}

void pressplot(double time, int button) {
    if (raypathsshown()) SessionState.selectedPath = nearpath(time);
    updatecursor(Int(time / step()) * step(), button);
}

void evidence(double time) {
    responseplot& p = ResponsePlot;
    if (p.box.drawn) toggle(p.box, drawbox);
    p.dragEnd = static_cast<float>(
        std::max(std::min(time, wide(SessionState.viewEnd)), wide(SessionState.viewStart)));
    p.box = {false, wide(p.cursorStart), wide(p.dragEnd), 0, false};
    toggle(p.box, drawbox);
}

void zoom() {
    responseplot& p = ResponsePlot;
    float &start = SessionState.viewStart, &end = SessionState.viewEnd;
    const double width = std::fabs(wide(p.dragEnd) - wide(p.cursorStart));
    if (!(width >= narrowest * (wide(end) - wide(start)))) {
        if (p.box.drawn) toggle(p.box, drawbox);
        p.dragEnd = p.cursorStart;
        return;
    }
    start = std::max(std::min(p.cursorStart, p.dragEnd), 0.0F);
    end = std::min(std::max(p.cursorStart, p.dragEnd), static_cast<float>(wholelength()));
    redraw();
}

void presskey(int code, const std::string& typed) {
    if (code == keyescape) {
        showwholeresponse();
        return redraw();
    }
    if (!(step() > 0)) return; // there is no response
    // The text has three decimals, which need not be enough to tell slots apart: the cursor itself counts
    // until something is typed.
    const bool same = !raypathsshown() && typed == ResponsePlot.Xtext;
    const double time = same ? wide(ResponsePlot.cursorStart) : lenientnumber(typed);
    if (!raypathsshown())
        ResponsePlot.PathLenght = formatnumber(
            static_cast<float>(wide(ResultSet.soundSpeed) * Int(time / step() - 0.5) * step()), "####.##");
    if (!isplotkey(code)) return;
    if (raypathsshown())
        movetopath(code, time);
    else
        movetoslot(code, time);
}

bool isplotkey(int code) {
    return code == keyenter || code == keyescape || (code >= keypageup && code <= keydown);
}

void choosereceiver(std::int32_t entry) {
    if (raypathsshown() && entry == 0) entry = std::min(1, RoomModel.receiverCount);
    ResponsePlot.RecNo = entry;
    redraw();
}

void choosefrequency(std::int32_t entry) {
    ResponsePlot.FreqNo = entry;
    redraw();
}

void toggleschroeder() {
    SessionState.schroederOn = SessionState.schroederOn != 0 ? std::int16_t{0} : std::int16_t{-1};
    redraw();
}

} // namespace orv

// The clicks that make a blanking line, and the band that follows the pointer between them.
#include "maps/blankingeditor.h"

#include "base/arithmetic.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "maps/blanking.h"
#include "platform/platform.h"
#include "room/roommodel.h"
#include "scene/drawsurface.h"
#include "scene/scenedrawing.h"
#include "shell/filejob.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace orv {

namespace {

constexpr double percentimetre = 100;
constexpr double closingshare = 200;     // of the room's diagonal: how near a click closes the line
constexpr std::int32_t fewestpoints = 4; // of a closed line, the repeated one among them
constexpr double crossshare = 200;       // of the window's width: half an arm of the cross
constexpr std::int32_t white = rgb(255, 255, 255);

struct linepoint {
    double x, y;
};

// A point 1.. of the line that is being entered.
linepoint pointofline(std::int32_t point) {
    const blankinglines& b = BlankingLines;
    return {wide(b.blanklineX(b.blanklineCount, point)), wide(b.blanklineY(b.blanklineCount, point))};
}

// Where a click at (x, y) sets the present point.
linepoint candidate(double x, double y) {
    x = Int(x * percentimetre) / percentimetre; // down, also below zero
    y = Int(y * percentimetre) / percentimetre;
    if (BlankingOptions.snap) {
        const double g = lenientnumber(BlankingOptions.gridsize);
        x = g * Int(quotient(x, g));
        y = g * Int(quotient(y, g));
    }
    if (BlankingOptions.ortho && BlankingLines.pointIndex >= 2) {
        const linepoint previous = pointofline(BlankingLines.pointIndex - 1);
        if (std::fabs(x - previous.x) > std::fabs(y - previous.y))
            y = previous.y;
        else
            x = previous.x;
    }
    return {x, y};
}

void store(const linepoint& point) {
    blankinglines& b = BlankingLines;
    if (b.pointIndex > blanklinehighestpoint)
        throw runtimeerror{errorkind::subscript,
                           "subscript out of range, the points of a blanking line are at most " +
                               std::to_string(blanklinehighestpoint)};
    b.blanklineX(b.blanklineCount, b.pointIndex) = single(point.x);
    b.blanklineY(b.blanklineCount, b.pointIndex) = single(point.y);
    b.blanklinePoints(b.blanklineCount) = static_cast<float>(b.pointIndex);
}

bool closes(const linepoint& point) {
    const roommodel& r = RoomModel;
    const double diagonal =
        std::hypot(wide(r.roomMaxY) - wide(r.roomMinY), wide(r.roomMaxX) - wide(r.roomMinX));
    const linepoint first = pointofline(1);
    const double gap = std::fabs(point.y - first.y) + std::fabs(point.x - first.x);
    return BlankingLines.pointIndex >= fewestpoints && gap < diagonal / closingshare;
}

// --- Drawing, which a second time takes away again ---

void drawcross(DrawSurface& picture, const linepoint& at) {
    const double arm = picture.windowWidth() / crossshare;
    picture.line(at.x - arm, at.y, at.x + arm, at.y, white);
    picture.line(at.x, at.y - arm, at.x, at.y + arm, white);
}

void drawband(DrawSurface& picture, const linepoint& from, const linepoint& to) {
    picture.setDrawStyle(drawstyle::dotted);
    picture.line(from.x, from.y, to.x, to.y, white ^ SessionState.colourBlanking);
    picture.setDrawStyle(drawstyle::solid);
}

// Moves the end of the band from where it was last to `to`. At a move the cross moves with it; at a click the
// cross of the last move gets another on top, and the next move leaves one there as the mark of the point.
void stretchband(const linepoint& previous, const linepoint& to, bool takecross) {
    DrawSurface& picture = platform::picture();
    const linepoint last{BlankingLines.lastPointX, BlankingLines.lastPointY};
    picture.setDrawMode(drawmodexor);
    drawband(picture, previous, last);
    if (takecross) drawcross(picture, last);
    drawband(picture, previous, to);
    drawcross(picture, to);
    picture.setDrawMode(drawmodecopy);
}

// --- The beginning and the end ---

void showhint() {
    const auto word = [](bool on) { return on ? "On" : "Off"; };
    platform::statustext(1, std::string("Ortho=") + word(BlankingOptions.ortho) +
                                " - Grid=" + word(BlankingOptions.snap) +
                                " - Draw the blanking line, end clicking on the first point");
}

void showediting() {
    platform::pointer(BlankingLines.pointIndex > 1 ? platform::shape::placedpoint : platform::shape::cross);
    showhint();
}

void endline() {
    BlankingLines.addingLine = BlankingLines.rubberBand = off;
    enableblankingcommands(true);
    platform::pointer(platform::shape::normal);
    platform::beep();
    platform::statustext(1, std::string(panhint3d));
}

void closeline() {
    store(pointofline(1));
    forgetblankedmap(); // the line may widen its rectangle
    endline();
}

void startline() {
    blankinglines& b = BlankingLines;
    const std::int32_t line = std::max(b.blanklineCount, 0) + 1;
    if (line > highestblankline)
        throw runtimeerror{errorkind::subscript, "subscript out of range, blanking lines are at most " +
                                                     std::to_string(highestblankline)};
    b.blanklinePoints(line) = 1;
    b.blanklineFlag(line) = BlankingOptions.outside ? blankoutside : blankinside;
    b.blanklineCount = line;
    b.pointIndex = 1;
}

// Goes on as before the last point, so that the next click can close a line that is full. In the picture the
// side to that point becomes the band, and a band beyond it goes.
void takelastback() {
    blankinglines& b = BlankingLines;
    const linepoint last = pointofline(--b.pointIndex), end{b.lastPointX, b.lastPointY};
    b.blanklinePoints(b.blanklineCount) = static_cast<float>(b.pointIndex - 1);
    DrawSurface& picture = platform::picture();
    picture.setDrawMode(drawmodexor);
    drawband(picture, last, end);
    drawcross(picture, end);
    picture.setDrawMode(drawmodecopy);
    b.lastPointX = last.x;
    b.lastPointY = last.y;
}

// A click that sets no point leaves the line as it was before it.
void refusepoint() {
    if (BlankingLines.pointIndex > blanklinehighestpoint) takelastback();
    BlankingLines.rubberBand = BlankingLines.pointIndex > 1 ? on : off;
}

} // namespace

void BLNoptions() {
    platform::showwindow("BLN Options", true);
    if (lineeditoractive()) showhint();
}

void BLNadd() {
    blankinglines& b = BlankingLines;
    const float before = std::exchange(b.addingLine, on);
    BLNoptions();
    if (!unlessrefused(startline)) {
        b.addingLine = before;
        return;
    }
    const bool drawnbefore = platform::isvisible("SSFrame1");
    if (platform::isvisible("Frame1") || !drawnbefore) draw2dview(platform::picture(), true);
    showediting();
}

bool lineeditoractive() {
    return BlankingLines.addingLine != off;
}

bool lineeditorfollows() {
    return BlankingLines.rubberBand != off;
}

void lineeditorclick(bool left, double x, double y) {
    if (!left) return;
    blankinglines& b = BlankingLines;
    b.rubberBand = off;
    linepoint point{};
    const bool stored = unlessrefused([&] {
        point = candidate(x, y);
        store(point);
    });
    if (!stored) return refusepoint();
    const bool closed = closes(point);
    if (closed) closeline();
    if (b.pointIndex > 1) stretchband(pointofline(b.pointIndex - 1), closed ? pointofline(1) : point, false);
    if (closed) return;
    ++b.pointIndex;
    b.lastPointX = point.x;
    b.lastPointY = point.y;
    b.rubberBand = on;
    platform::pointer(platform::shape::placedpoint);
}

void lineeditormove(double x, double y) {
    blankinglines& b = BlankingLines;
    linepoint point{};
    if (!attempt([&] { point = candidate(x, y); })) return; // the click will say why
    stretchband(pointofline(b.pointIndex - 1), point, true);
    b.lastPointX = point.x;
    b.lastPointY = point.y;
}

void lineeditorredrawn(DrawSurface& surface) {
    if (!lineeditoractive() || &surface != &platform::picture()) return;
    showediting();
    if (!lineeditorfollows()) return;
    const linepoint last{BlankingLines.lastPointX, BlankingLines.lastPointY};
    const linepoint placed = pointofline(BlankingLines.pointIndex - 1);
    if (single(last.x) == single(placed.x) && single(last.y) == single(placed.y)) return; // not moved yet
    surface.setDrawMode(drawmodexor);
    drawband(surface, placed, last);
    drawcross(surface, last);
    surface.setDrawMode(drawmodecopy);
}

void lineeditorescape() {
    endline();
    if (--BlankingLines.blanklineCount == 0) enableblankingcommands(false);
    draw2dview(platform::picture(), true);
}

} // namespace orv

// Mapping of window coordinates to device pixels, and what of a drawing reaches the device.
#include "scene/drawsurface.h"

#include "base/runtimeerror.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orv {

namespace {

// An infinite coordinate stands for a point this far out, so that the arithmetic of cutting stays finite.
constexpr double farout = 1E100;

// A circle that reaches the surface and is larger than this is no marker of a scene any more.
constexpr double largestradius = 30000;

double bounded(double value) {
    return std::clamp(value, -farout, farout);
}

bool isnumber(double a, double b) {
    return !std::isnan(a) && !std::isnan(b);
}

} // namespace

void DrawSurface::setWindow(double newleft, double newtop, double newright, double newbottom) {
    const double w = newright - newleft, h = newbottom - newtop;
    if (!std::isfinite(w) || !std::isfinite(h))
        throw runtimeerror{errorkind::overflow, "The window of the picture is too large."};
    if (w == 0 || h == 0)
        throw runtimeerror{errorkind::divisionbyzero, "The window of the picture has no width or no height."};
    left = newleft;
    top = newtop;
    right = newright;
    bottom = newbottom;
    defaultWindow = false;
    newscale();
}

void DrawSurface::resetWindow() {
    left = top = 0;
    right = width();
    bottom = height();
    defaultWindow = true;
    newscale();
}

void DrawSurface::setDrawWidth(double pixels) {
    drawWidth = std::max(1.0, pixels); // what is no number counts as 1
    newwidth();
}

void DrawSurface::clear() {
    currentX = currentY = 0;
    textX = textY = textStart = 0;
    device.clear(device.context, backColour);
}

void DrawSurface::plot(double x, double y) {
    currentX = x;
    currentY = y;
    pen.colour = foreColour;
    const double px = toDeviceX(x), py = toDeviceY(y);
    if (inside(px, py)) device.plot(device.context, pen, px, py);
}

void DrawSurface::box(double x1, double y1, double x2, double y2, std::int32_t colour) {
    pen.colour = colour;
    if (cutbox(x1, y1, x2, y2))
        device.box(device.context, pen, filling == fillstyle::solid ? &fillColour : nullptr, x1, y1, x2, y2);
}

void DrawSurface::filledBox(double x1, double y1, double x2, double y2, std::int32_t colour) {
    pen.colour = colour;
    if (cutbox(x1, y1, x2, y2)) device.filledbox(device.context, pen, x1, y1, x2, y2);
}

void DrawSurface::circle(double x, double y, double radius, std::int32_t colour) {
    pen.colour = colour;
    const double px = toDeviceX(x), py = toDeviceY(y), r = std::fabs(radius * pixelsPerX), reach = r + edge;
    if (px >= -reach && px <= deviceWidth + reach && py >= -reach && py <= deviceHeight + reach &&
        r <= largestradius)
        device.circle(device.context, pen, filling == fillstyle::solid ? &fillColour : nullptr, px, py, r);
}

void DrawSurface::setTextPoint(double x, double y) {
    textX = textStart = x;
    textY = y;
}

void DrawSurface::text(std::string_view line) {
    const double px = toDeviceX(textX), py = toDeviceY(textY);
    const double wide = device.textwidth(device.context, line);
    textX += wide / pixelsPerX;
    pen.colour = foreColour;
    if (px + wide >= 0 && px <= deviceWidth && py + device.lineheight >= 0 && py <= deviceHeight)
        device.text(device.context, pen, px, py, line);
}

void DrawSurface::textLine(std::string_view line) {
    text(line);
    textX = textStart;
    textY += device.lineheight / pixelsPerY;
}

double DrawSurface::textWidth(std::string_view line) const {
    return device.textwidth(device.context, line) / std::fabs(pixelsPerX);
}

std::string DrawSurface::elided(std::string_view line, double room) const {
    constexpr double rounding = 1e-9; // of a room that the line just fits
    std::string shown(line);
    for (std::size_t kept = line.size(); textWidth(shown) > room * (1 + rounding) && kept-- > 0;)
        shown = std::string(line.substr(0, kept / 2)) + "..." +
                std::string(line.substr(line.size() - (kept - kept / 2)));
    return shown;
}

double DrawSurface::textHeight(std::string_view) const {
    return device.lineheight / pixelsPerY;
}

void DrawSurface::keep() {
    if (device.keep) device.keep(device.context);
}

void DrawSurface::restore() {
    if (device.restore) device.restore(device.context);
}

void DrawSurface::resize(double devicewidth, double deviceheight, double devicescale) {
    deviceWidth = std::max(1.0, devicewidth);
    deviceHeight = std::max(1.0, deviceheight);
    scale = devicescale;
    if (defaultWindow)
        resetWindow();
    else
        newscale();
}

void DrawSurface::newscale() {
    pixelsPerX = deviceWidth / (right - left);
    pixelsPerY = deviceHeight / (bottom - top);
    newwidth();
    if (device.window) device.window(device.context);
}

void DrawSurface::newwidth() {
    pen.width = drawWidth * scale;
    edge = pen.width + 2; // a pen's width and its ends stay whole at the surface's edge
}

// Liang and Barsky's cut of a line, given in device pixels, at the surface's edge. The new end gets the
// edge's own coordinate, so that it is exact however far out the old one is.
void DrawSurface::cutline(double x1, double y1, double x2, double y2) {
    if (!isnumber(x1, y1) || !isnumber(x2, y2)) return;
    struct lineend {
        double x, y, along;
    };
    lineend from{bounded(x1), bounded(y1), 0}, to{bounded(x2), bounded(y2), 1};
    const double beginx = from.x, beginy = from.y, dx = to.x - beginx, dy = to.y - beginy;
    const double highx = deviceWidth + edge, highy = deviceHeight + edge;
    // Cuts at one side: `inwards` is how far the line's begin lies within it, `outwards` how far the line
    // runs towards it. Returns whether anything is left.
    const auto cut = [&](double inwards, double outwards, bool upright, double side) {
        if (outwards == 0) return inwards >= 0;
        const double along = inwards / outwards;
        lineend& end = outwards > 0 ? to : from;
        if (outwards > 0 ? along < end.along : along > end.along)
            end = upright ? lineend{side, beginy + along * dy, along}
                          : lineend{beginx + along * dx, side, along};
        return from.along <= to.along;
    };
    if (!cut(beginx + edge, -dx, true, -edge) || !cut(highx - beginx, dx, true, highx) ||
        !cut(beginy + edge, -dy, false, -edge) || !cut(highy - beginy, dy, false, highy))
        return;
    const auto holdx = [&](double x) { return std::clamp(x, -edge, highx); };
    const auto holdy = [&](double y) { return std::clamp(y, -edge, highy); };
    device.line(device.context, pen, holdx(from.x), holdy(from.y), holdx(to.x), holdy(to.y));
}

// Maps a box to device pixels in rising order and cuts it so far outside that no false edge is seen. Returns
// whether anything of it is.
bool DrawSurface::cutbox(double& x1, double& y1, double& x2, double& y2) const {
    x1 = toDeviceX(x1);
    x2 = toDeviceX(x2);
    y1 = toDeviceY(y1);
    y2 = toDeviceY(y2);
    if (!isnumber(x1, y1) || !isnumber(x2, y2)) return false;
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    x1 = std::max(x1, -edge);
    y1 = std::max(y1, -edge);
    x2 = std::min(x2, deviceWidth + edge);
    y2 = std::min(y2, deviceHeight + edge);
    return x1 <= x2 && y1 <= y2;
}

} // namespace orv

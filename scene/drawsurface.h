// DrawSurface, the one drawing abstraction: the drawing area of a window, or the printer.
//
// Everybody draws in the coordinates of a window that setWindow lays over the surface; its top may be above
// its bottom in value, so that y can grow upwards. The surface maps to pixels itself, in double precision,
// and hands the device behind it only what can be seen: lines are cut at the surface's edge, texts and
// circles that lie beside it are dropped. Huge and infinite coordinates therefore cost nothing, and a
// coordinate that is not a number draws nothing.
//
// A pixel here is a logical one, the measure of pen widths and texts; a surface with `scale` device pixels to
// each of them (a dense screen, a printer) has finer positions and looks the same.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

enum class fillstyle { solid, transparent };
enum class drawstyle { solid, dotted };

// Pen modes. Drawing the same twice in either of the reversible ones leaves the surface as it was.
constexpr int drawmodexor = 7;         // exclusive-or
constexpr int drawmodeinversexor = 10; // its inverse
constexpr int drawmodecopy = 13;       // the normal state

struct surfacepen {
    std::int32_t colour = 0; // 0x00BBGGRR
    double width = 1;        // device pixels
    drawstyle style = drawstyle::solid;
    int mode = drawmodecopy;
};

// What a surface draws on: plain functions that all get `context`. Coordinates are device pixels, x to the
// right and y downwards, with broken parts. What arrives has been cut or dropped already.
struct surfacedevice {
    void* context = nullptr;
    void (*clear)(void* context, std::int32_t colour) = nullptr;
    void (*window)(void* context) = nullptr; // the coordinate window has changed; may be null
    void (*line)(void* context, const surfacepen& pen, double x1, double y1, double x2, double y2) = nullptr;
    void (*plot)(void* context, const surfacepen& pen, double x, double y) = nullptr;
    // `fill` is null for an outline alone; x1 <= x2 and y1 <= y2.
    void (*box)(void* context, const surfacepen& pen, const std::int32_t* fill, double x1, double y1,
                double x2, double y2) = nullptr;
    void (*filledbox)(void* context, const surfacepen& pen, double x1, double y1, double x2,
                      double y2) = nullptr;
    void (*circle)(void* context, const surfacepen& pen, const std::int32_t* fill, double x, double y,
                   double radius) = nullptr;
    void (*text)(void* context, const surfacepen& pen, double x, double y, std::string_view text) = nullptr;
    double (*textwidth)(void* context, std::string_view text) = nullptr;
    double lineheight = 0; // of one line of text
    // The last finished picture; both may be null where no picture is kept.
    void (*keep)(void* context) = nullptr;
    void (*restore)(void* context) = nullptr;
};

struct DrawSurface {
    // --- The coordinate window ---

    // Lays the window over the surface. Raises divisionbyzero for a window without width or height and
    // overflow for one that is not finite; the old window then stays.
    void setWindow(double left, double top, double right, double bottom);

    // Default coordinates: one unit to a pixel, the origin at the top left, y growing downwards.
    void resetWindow();

    double windowLeft() const { return left; }
    double windowTop() const { return top; }
    double windowWidth() const { return right - left; }
    double windowHeight() const { return bottom - top; } // negative when y grows upwards

    // Size in pixels, at least 1.
    double width() const { return deviceWidth / scale; }
    double height() const { return deviceHeight / scale; }

    // --- State of pen, fill and text; colours are 0x00BBGGRR ---

    void setBackColor(std::int32_t colour) { backColour = colour; }
    void setForeColor(std::int32_t colour) { foreColour = colour; }
    void setFillColor(std::int32_t colour) { fillColour = colour; }
    void setFillStyle(fillstyle style) { filling = style; }
    void setDrawWidth(double pixels); // at least 1
    void setDrawStyle(drawstyle style) { pen.style = style; }
    void setDrawMode(int mode) { pen.mode = mode; }

    // --- Drawing. A colour left out is the pen colour (setForeColor). ---

    // Erases to the background colour; current point and text point become (0, 0).
    void clear();

    void plot(double x, double y); // one point, which becomes the current point
    void lineTo(double x, double y) { lineTo(x, y, foreColour); }
    void lineTo(double x, double y, std::int32_t colour) { line(currentX, currentY, x, y, colour); }
    void line(double x1, double y1, double x2, double y2) { line(x1, y1, x2, y2, foreColour); }
    void line(double x1, double y1, double x2, double y2, std::int32_t colour);

    // Outline, with the fill colour inside when the fill style is solid.
    void box(double x1, double y1, double x2, double y2) { box(x1, y1, x2, y2, foreColour); }
    void box(double x1, double y1, double x2, double y2, std::int32_t colour);
    // Filled in `colour` itself.
    void filledBox(double x1, double y1, double x2, double y2, std::int32_t colour);
    // Round in pixels; radius in window units of the x axis. Filled like a box.
    void circle(double x, double y, double radius) { circle(x, y, radius, foreColour); }
    void circle(double x, double y, double radius, std::int32_t colour);

    // Where the next text has its top left corner.
    void setTextPoint(double x, double y);
    void text(std::string_view line);     // in the pen colour; the text point moves to its end
    void textLine(std::string_view line); // the text point moves to the start of the next line
    double textWidth(std::string_view line) const;
    double textHeight(std::string_view line) const; // negative when y grows upwards
    // The text, with "..." for its middle when it is wider than `room` window units.
    std::string elided(std::string_view line, double room) const;

    // A window height in pixels, with the sign of the window.
    double toPixelsY(double height) const { return height * pixelsPerY / scale; }

    // --- The last finished picture, for a drawing that turns out to be impossible ---

    // Remembers what is drawn now; on the printer nothing.
    void keep();
    // Puts the remembered picture back; nothing when there is none.
    void restore();

    // --- For who owns the device ---

    // Size in device pixels, raised to 1 where smaller. A window set by setWindow stays, default coordinates
    // follow the size.
    void resize(double devicewidth, double deviceheight, double devicescale);

    // Between window coordinates and device pixels.
    double toDeviceX(double x) const { return (x - left) * pixelsPerX; }
    double toDeviceY(double y) const { return (y - top) * pixelsPerY; }
    double fromDeviceX(double x) const { return x / pixelsPerX + left; }
    double fromDeviceY(double y) const { return y / pixelsPerY + top; }

    surfacedevice device;

    double left = 0, top = 0, right = 1, bottom = 1;
    bool defaultWindow = true;
    double deviceWidth = 1, deviceHeight = 1, scale = 1;
    double pixelsPerX = 1, pixelsPerY = 1; // device pixels to a unit, with the window's sign
    double edge = 0;                       // what lies further outside than this many device pixels is unseen

    std::int32_t backColour = 0x00FFFFFF, foreColour = 0, fillColour = 0;
    fillstyle filling = fillstyle::transparent;
    surfacepen pen;
    double drawWidth = 1; // pixels
    double currentX = 0, currentY = 0;
    double textX = 0, textY = 0, textStart = 0;

private:
    void newscale();
    void newwidth();
    void cutline(double x1, double y1, double x2, double y2);
    bool cutbox(double& x1, double& y1, double& x2, double& y2) const;
    bool inside(double x, double y) const {
        return x >= -edge && x <= deviceWidth + edge && y >= -edge && y <= deviceHeight + edge;
    }
};

// Most lines lie inside and go straight to the device.
inline void DrawSurface::line(double x1, double y1, double x2, double y2, std::int32_t colour) {
    currentX = x2;
    currentY = y2;
    pen.colour = colour;
    const double px1 = toDeviceX(x1), py1 = toDeviceY(y1), px2 = toDeviceX(x2), py2 = toDeviceY(y2);
    if (inside(px1, py1) && inside(px2, py2))
        device.line(device.context, pen, px1, py1, px2, py2);
    else
        cutline(px1, py1, px2, py2);
}

} // namespace orv

// The drawing surface that writes down what would be seen.
#include "scene/recordsurface.h"

#include "base/numbertext.h"

#include <cmath>

namespace orv {

namespace {

recordsurface& recorder(void* context) {
    return *static_cast<recordsurface*>(context);
}

void add(std::string& line, double value) {
    line += ' ';
    line += trimmednumber(std::round(value * 1E6) / 1E6);
}

void addcolour(std::string& line, std::int32_t colour) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    line += ' ';
    for (const int shift : {4, 0, 12, 8, 20, 16})
        line += digits[static_cast<std::size_t>(colour >> shift & 15)];
}

void addpoint(std::string& line, const DrawSurface& surface, double x, double y) {
    add(line, surface.fromDeviceX(x));
    add(line, surface.fromDeviceY(y));
}

void addpen(std::string& line, const surfacepen& pen) {
    if (pen.width != 1) {
        line += " width";
        add(line, pen.width);
    }
    if (pen.style == drawstyle::dotted) line += " dotted";
    if (pen.mode != drawmodecopy) {
        line += " mode";
        add(line, pen.mode);
    }
}

void addfill(std::string& line, const std::int32_t* fill) {
    if (!fill) return;
    line += " fill";
    addcolour(line, *fill);
}

void clear(void* context, std::int32_t colour) {
    std::string line = "clear";
    addcolour(line, colour);
    recorder(context).lines.push_back(line);
}

void window(void* context) {
    const DrawSurface& surface = recorder(context).surface;
    std::string line = "window";
    for (const double side : {surface.left, surface.top, surface.right, surface.bottom}) add(line, side);
    recorder(context).lines.push_back(line);
}

// The items of two corners or ends, or of one point.
std::string twopoints(const char* word, const DrawSurface& surface, const surfacepen& pen, double x1,
                      double y1, double x2, double y2) {
    std::string line = word;
    addpoint(line, surface, x1, y1);
    addpoint(line, surface, x2, y2);
    addcolour(line, pen.colour);
    return line;
}

void line(void* context, const surfacepen& pen, double x1, double y1, double x2, double y2) {
    std::string text = twopoints("line", recorder(context).surface, pen, x1, y1, x2, y2);
    addpen(text, pen);
    recorder(context).lines.push_back(text);
}

void plot(void* context, const surfacepen& pen, double x, double y) {
    std::string text = "plot";
    addpoint(text, recorder(context).surface, x, y);
    addcolour(text, pen.colour);
    addpen(text, pen);
    recorder(context).lines.push_back(text);
}

void box(void* context, const surfacepen& pen, const std::int32_t* fill, double x1, double y1, double x2,
         double y2) {
    std::string text = twopoints("box", recorder(context).surface, pen, x1, y1, x2, y2);
    addfill(text, fill);
    addpen(text, pen);
    recorder(context).lines.push_back(text);
}

void filledbox(void* context, const surfacepen& pen, double x1, double y1, double x2, double y2) {
    recorder(context).lines.push_back(twopoints("filledbox", recorder(context).surface, pen, x1, y1, x2, y2));
}

void circle(void* context, const surfacepen& pen, const std::int32_t* fill, double x, double y,
            double radius) {
    std::string text = "circle";
    const DrawSurface& surface = recorder(context).surface;
    addpoint(text, surface, x, y);
    add(text, radius / std::fabs(surface.pixelsPerX));
    addcolour(text, pen.colour);
    addfill(text, fill);
    addpen(text, pen);
    recorder(context).lines.push_back(text);
}

void text(void* context, const surfacepen& pen, double x, double y, std::string_view words) {
    std::string line = "text";
    addpoint(line, recorder(context).surface, x, y);
    addcolour(line, pen.colour);
    line += ' ';
    line += words;
    recorder(context).lines.push_back(line);
}

double textwidth(void*, std::string_view words) {
    return recordcharwidth * static_cast<double>(words.size());
}

void keep(void* context) {
    recorder(context).lines.emplace_back("keep");
}
void restore(void* context) {
    recorder(context).lines.emplace_back("restore");
}

} // namespace

recordsurface::recordsurface(double width, double height) {
    surface.resize(width, height, 1);
    surface.device = {.context = this,
                      .clear = clear,
                      .window = window,
                      .line = line,
                      .plot = plot,
                      .box = box,
                      .filledbox = filledbox,
                      .circle = circle,
                      .text = text,
                      .textwidth = textwidth,
                      .lineheight = recordlineheight,
                      .keep = keep,
                      .restore = restore};
}

} // namespace orv

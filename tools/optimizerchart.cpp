// The chart of the Alfa-Beta optimizer, layer by layer.
#include "tools/optimizer.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/numbertext.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

constexpr std::int32_t ground = rgb(255, 255, 255), ink = rgb(0, 0, 0), gridgrey = rgb(216, 216, 216);
// Far apart in brightness too, for eyes and printers without colours.
constexpr std::int32_t seriescolours[optimizerfiles] = {rgb(0, 0, 128), rgb(245, 150, 0)};
// Lines to either side of the middle one; both series are seen where they coincide.
constexpr int seriesspread[optimizerfiles] = {1, 0};
constexpr double gap = 6;                           // pixels between texts and lines
constexpr double sample = 28;                       // pixels of line in the legend
constexpr double ticksize = 4;                      // pixels
constexpr double tensdecibels = 10, lowesttop = 10; // dB
constexpr int labels = 8;                           // parts of the x axis between labels
constexpr const char* hint = "Choose two results of one room with \"Browse...\"";

// Where the axes lie, in pixels, and what they span.
struct plotarea {
    double left, top, right, bottom;
    double decibels, points;

    double x(double point) const { return left + (right - left) * (points > 0 ? point / points : 0); }
    double y(double level) const { return bottom - (bottom - top) * level / decibels; }
};

plotarea layout(const DrawSurface& surface) {
    const double line = surface.textHeight("0");
    plotarea area{};
    area.decibels = std::max(Optimizer.chart.top, lowesttop);
    area.points = static_cast<double>(Optimizer.chart.series[0].size());
    area.left = surface.textWidth(trimmednumber(area.decibels)) + gap + ticksize + gap;
    area.right = std::max(surface.width() - surface.textWidth("0.00"), area.left + 1);
    area.top = line + 2 * gap;
    area.bottom = std::max(surface.height() - 2 * line - ticksize - 2 * gap, area.top + 1);
    return area;
}

void write(DrawSurface& surface, double x, double y, std::string_view text) {
    surface.setForeColor(ink);
    surface.setTextPoint(x, y);
    surface.text(text);
}

void drawlevels(DrawSurface& surface, const plotarea& area) {
    const double line = surface.textHeight("0");
    const double lines = area.decibels / tensdecibels * line / (area.bottom - area.top);
    const double step = tensdecibels * std::ceil(std::max(lines, 1.0)); // labels do not touch
    for (double level = 0; level <= area.decibels; level += step) {
        const double y = area.y(level);
        surface.line(area.left - ticksize, y, area.right, y, gridgrey);
        const std::string text = trimmednumber(level);
        write(surface, area.left - ticksize - gap - surface.textWidth(text), y - line / 2, text);
    }
    write(surface, gap, gap / 2, "dB");
}

void drawtimes(DrawSurface& surface, const plotarea& area) {
    const double line = surface.textHeight("0");
    const auto points = static_cast<std::int32_t>(area.points);
    const std::int32_t step = std::max(whole32(area.points / labels), 1);
    double free = 0; // where the next label has room
    for (std::int32_t j = 0; j < points; j += step) {
        const double x = area.x(j);
        surface.line(x, area.top, x, area.bottom + ticksize, gridgrey);
        const std::string text = formatnumber(j * Optimizer.chart.step, "##0.00");
        const double left = x - surface.textWidth(text) / 2;
        if (left < free) continue;
        write(surface, left, area.bottom + ticksize + gap / 2, text);
        free = left + surface.textWidth(text) + gap;
    }
    constexpr std::string_view title = "Time (s)";
    write(surface, (area.left + area.right - surface.textWidth(title)) / 2,
          area.bottom + ticksize + gap + line, title);
}

// Made of thin lines, since short pieces of a wide one leave gaps.
void drawseries(DrawSurface& surface, const plotarea& area) {
    for (std::size_t f = 0; f < optimizerfiles; ++f) {
        const std::vector<float>& levels = Optimizer.chart.series[f];
        surface.setForeColor(seriescolours[f]);
        for (int aside = -seriesspread[f]; aside <= seriesspread[f]; ++aside)
            for (std::size_t j = 0; j < levels.size(); ++j) {
                const double x = area.x(static_cast<double>(j));
                const double y = area.y(static_cast<double>(levels[j])) + aside;
                if (j == 0)
                    surface.plot(x, y);
                else
                    surface.lineTo(x, y);
            }
    }
}

std::string legendtext(const optimizerfile& file) {
    return file.name.substr(file.name.find_last_of("/\\") + 1);
}

// From the right, above the axes. All names have room; the fields above the chart have the whole ones.
void drawlegend(DrawSurface& surface, const plotarea& area) {
    const double line = surface.textHeight("0");
    const double room = (area.right - area.left) / optimizerfiles - sample - 5 * gap;
    double right = area.right;
    for (std::size_t f = optimizerfiles; f-- > 0;) {
        if (Optimizer.file[f].pyramids < 1) continue;
        const std::string text = surface.elided(legendtext(Optimizer.file[f]), room);
        right -= surface.textWidth(text);
        write(surface, right, gap / 2, text);
        right -= gap + sample;
        for (int aside = -seriesspread[f]; aside <= seriesspread[f]; ++aside) {
            const double y = gap / 2 + line / 2 + aside;
            surface.line(right, y, right + sample, y, seriescolours[f]);
        }
        right -= 4 * gap;
    }
}

bool nothingloaded() {
    return std::all_of(Optimizer.file.begin(), Optimizer.file.end(),
                       [](const optimizerfile& file) { return file.pyramids < 1; });
}

} // namespace

void drawoptimizerchart(DrawSurface& surface) {
    surface.resetWindow();
    surface.setBackColor(ground);
    surface.clear();
    if (nothingloaded())
        return write(surface, (surface.width() - surface.textWidth(hint)) / 2, surface.height() / 2, hint);
    if (!Optimizer.chart.shown) return;
    const plotarea area = layout(surface);
    drawlevels(surface, area);
    drawtimes(surface, area);
    surface.setFillStyle(fillstyle::transparent);
    surface.box(area.left, area.top, area.right, area.bottom, ink);
    drawseries(surface, area);
    drawlegend(surface, area);
}

} // namespace orv

// The colour schemes, a row for each, and the scale.
#include "maps/colourschemes.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/table.h"
#include "shell/sessionstate.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace orv {

namespace {

constexpr int steps = 16; // of the scale, and levels to an entry of the user's table

// The scale's place in the window, as fractions of its width and height.
constexpr double scaleleft = 0.02, scaleright = 0.05, labelleft = 0.055, scaletop = 0.05, scalebottom = 0.7;

// The spectrum's inner variable runs from 200 (violet) down to 0 (red), in ramps of 40.
constexpr double spectrum = 200, ramp = 40;
constexpr int stretched = 93;

std::int32_t colour(double red, double green, double blue) {
    return rgb(whole16(red), whole16(green), whole16(blue));
}

// The inner variable at its low end, 0..92; worked out once, since a map asks for every cell.
double stretch(double v) {
    static const auto table = [] {
        std::array<double, stretched> row{};
        for (std::size_t i = 0; i < row.size(); ++i) {
            const double from = static_cast<double>(i);
            row[i] = std::nearbyint(
                0.75 * (1.366 * std::pow(from, 0.797119) + std::pow(from, 5.909007) / 1e10) + 0.25 * from);
        }
        return row;
    }();
    return table[static_cast<std::size_t>(v)];
}

} // namespace

colourscheme chosenscheme() {
    return static_cast<colourscheme>(whole16(static_cast<double>(SessionState.colourSchemeIndex)));
}

std::int32_t schemecolour(double c) {
    const double rest = highestlevelindex - c;
    switch (chosenscheme()) {
    case colourscheme::bluered:
        return colour(c, 0, rest);
    case colourscheme::greenred:
        return colour(c, rest, 0);
    case colourscheme::whiteblue:
        return colour(rest, rest, 255);
    case colourscheme::whiteblack:
        return colour(rest, rest, rest);
    case colourscheme::rgbtable:
        return rgbcolour(c);
    default:
        return iriscolour(c);
    }
}

std::int32_t rgbcolour(double c) {
    const std::int32_t entry = whole32(Int(c / steps));
    if (entry < 0 || entry > steps) subscriptfailure("rgbTable", entry, 0, steps);
    return SessionState.rgbTable[static_cast<std::size_t>(entry)];
}

std::int32_t iriscolour(double c) {
    double v = Int((highestlevelindex - c) * spectrum / highestlevelindex);
    if (v >= 0 && v < stretched) v = stretch(v);
    if (v < 0 || v > spectrum) return rgb(128, 0, 0);
    if (v <= ramp) return colour(255, v * 255 / ramp, 0);
    if (v <= 2 * ramp) return colour(255 - (v - ramp) * 255 / ramp, 255, 0);
    if (v <= 3 * ramp) return colour(0, 255, (v - 2 * ramp) * 255 / ramp);
    if (v <= 4 * ramp) return colour(0, 255 - (v - 3 * ramp) * 255 / ramp, 255);
    return colour((v - 4 * ramp) * 100 / ramp, 0, 255 - (v - 4 * ramp) * 100 / ramp);
}

void drawcolourscale(DrawSurface& surface) {
    const auto across = [&](double part) { return surface.windowLeft() + part * surface.windowWidth(); };
    const auto down = [&](double part) { return surface.windowTop() + part * surface.windowHeight(); };
    const double left = across(scaleleft), right = across(scaleright), bottom = down(scalebottom);
    const double unit = (bottom - down(scaletop)) / 256;
    const double lowest = static_cast<double>(SessionState.minLevel);
    const double range = static_cast<double>(SessionState.maxLevel) - lowest;

    surface.setForeColor(rgb(0, 0, 0));
    surface.setFillStyle(fillstyle::transparent);
    for (int i = 0; i < 256; i += steps)
        surface.filledBox(left, bottom - unit * i, right, bottom - unit * (i + steps), schemecolour(i));
    for (int i = 0; i <= 256; i += steps) {
        if (i < 256) surface.box(left, bottom - unit * i, right, bottom - unit * (i + steps));
        surface.setTextPoint(across(labelleft), bottom - unit * i - surface.textHeight("256") / 2);
        surface.textLine(formatnumber(lowest + range * (i / 256.0), "##0.0#"));
    }
}

} // namespace orv

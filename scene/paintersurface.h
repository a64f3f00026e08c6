// The drawing surface over Qt's painter: on an image for the windows' pictures, or on the printer's page. For
// Qt files only.
//
// An image is RGB32 and drawn without antialiasing but for its texts, so that the reversible pen modes
// restore every pixel; all positions are whole device pixels.
#pragma once

#include "scene/drawsurface.h"

#include <QImage>
#include <QPainter>
#include <QPrinter>
#include <QRawFont>

#include <array>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace orv {

// The pixels of a circle as a painter makes them, in runs along x. Scenes mark thousands of points with one
// and the same, which is then copied instead of traced.
struct circlestamp {
    struct run {
        int x, y, length; // from the middle
        bool inside;      // of the fill colour, else of the pen
    };
    int radius = 0; // 0: none yet
    double penwidth = 1, scale = 1;
    drawstyle style = drawstyle::solid;
    std::vector<run> runs;
};

// Stays where it is made: the surface's device points back at it.
struct paintersurface {
    DrawSurface surface;

    // Called at the first change after picturecontents, so that a window can ask for a repaint.
    std::function<void()> changed;

    // A white image of the given size in pixels, with `ratio` device pixels to each.
    paintersurface(int width, int height, double ratio);

    // The printer's present page; pens and texts have the size that they have on a screen of 96 dots an
    // inch. The painting ends, and with it the document, when this is destroyed. Reversible modes do not
    // exist on paper and draw like copy.
    explicit paintersurface(QPrinter& printer);

    paintersurface(const paintersurface&) = delete;
    paintersurface& operator=(const paintersurface&) = delete;

    // --- Behind the surface ---
    QImage image; // null on the printer
    QImage kept;  // the last finished picture
    QPainter painter;
    surfacepen pen; // that the painter has now
    bool penset = false;
    std::vector<QLine> lines; // of one pen, not painted yet
    circlestamp stamp;        // of the last circle
    bool touched = false;

    // The texts of a map, which draws its scene and scale over themselves: by colour, place and words the
    // pixels before each and with it. A text that stands already is not blended in once more, which would
    // make it bold.
    struct standingtext {
        QImage before, with;
    };
    std::unordered_map<std::string, standingtext> standing;

    QFont font;
    QRawFont glyphs;
    double ascent = 0;
    std::array<double, 256> advance{};        // device pixels, by byte of the code page
    std::array<quint32, 256> glyph{};         // index in the font
    std::array<char16_t, 256> character = {}; // in Unicode
};

// Gives an image surface another size; what was drawn stays at the top left, on the background colour.
void resizepicture(paintersurface& picture, int width, int height, double ratio);

// A view of the image with all that has been drawn, without a copy: valid until the next drawing or resize.
// Its device pixel ratio is set, so that a painter shows it in its size.
QImage picturecontents(paintersurface& picture);

} // namespace orv

// Reading the contour file and drawing its polylines.
//
// A DXF drawing: pairs of lines, a group code and its value. What counts are the entities of its section
// ENTITIES of the kinds
//
//     0 POLYLINE  ...  points  ...     0 SEQEND
//   100 AcDbPolyline   90 count        points, until there are as many (10000 where no count is given)
//
// A point is a code 10 with x, which the code and value of y follow. The colour of a line is the last code 62
// before its first point, wherever that stood. The header of the old form has a point of its own, from which
// the line is then drawn, and a closed light polyline is not closed; both are meant. Texts must be exactly
// these. The end of the file ends the reading anywhere.
#include "maps/contourmaps.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "base/table.h"
#include "maps/colourschemes.h"
#include "maps/levelfile.h"
#include "maps/mapfield.h"
#include "maps/mapmark.h"
#include "maps/surfer.h"
#include "platform/platform.h"
#include "scene/camera.h"
#include "scene/scenedrawing.h"
#include "shell/sessionstate.h"

#include <string_view>
#include <utility>

namespace orv {

namespace {

constexpr std::int32_t highestcolour = 255;
constexpr std::size_t paletteoffset = 8; // of level index 0
constexpr std::int32_t levelmiddle = 8;  // of a level's sixteenth of the level indices
constexpr double usualcount = 10000;     // of the points of a line that states none

constexpr std::array<std::int32_t, highestcolour + 1> makelevels() {
    std::array<std::int32_t, highestcolour + 1> levels{};
    levels.fill(-1);
    for (std::int32_t k = 0; k < levelcount; ++k)
        levels[static_cast<std::size_t>(levelcolours[static_cast<std::size_t>(k)].number)] = k;
    return levels;
}
constexpr std::array<std::int32_t, highestcolour + 1> levelsofcolours = makelevels();

// --- Reading ---

// What the read steps of a map keep between them.
struct contourreading {
    listreader file;
    DrawSurface& surface;
    contourpalette palette;
    bool solid; // in the camera's view
    std::int32_t code = 0;
    std::int32_t colourNumber = 0;
    std::string_view name{}, text2{};
    double pointX = 0, pointY = 0;
    std::string progress{};
};

// The share of the file that is read, in whole blocks.
void showprogress(contourreading& reading) {
    const auto block = static_cast<double>(reading.file.position / progressblock);
    const double length = static_cast<double>(reading.file.buffer.size()) / progressblock;
    const auto percent = static_cast<std::int64_t>(Int(100 * block / length));
    std::string progress = wholetext(percent) + "%";
    if (progress == reading.progress) return;
    platform::statustext(2, progress);
    reading.progress = std::move(progress);
}

// A group code and what belongs to it. At the end of the file pastend is raised, which ends the map.
void readstep(contourreading& reading) {
    listreader& file = reading.file;
    reading.code = readwhole32(file);
    if (reading.code == 62)
        reading.colourNumber = readwhole32(file);
    else if (reading.code < 10)
        reading.name = readline(file);
    else if (reading.code < 30) {
        reading.pointX = readnumber(file);
        readwhole32(file);
        reading.pointY = readnumber(file);
    } else
        reading.text2 = readline(file);
}

// --- Drawing ---

std::int32_t linecolour(const contourreading& reading) {
    const std::int32_t level = contourLevelOfColour(reading.colourNumber);
    constexpr std::int32_t indices = 256;
    const std::int32_t index =
        level * indices / levelcount + levelmiddle + static_cast<std::int32_t>(paletteoffset);
    return reading.palette[static_cast<std::size_t>(index)];
}

picturepoint pictured(const contourreading& reading) {
    const picturepoint p{reading.pointX, reading.pointY};
    return reading.solid ? projectpoint(fromplane(p, wide(SessionState.mapThirdCoordinate))) : p;
}

void drawpolyline(contourreading& reading) {
    double points = 0, limit = usualcount;
    std::int32_t colour = 0;
    do {
        readstep(reading);
        if (reading.code == 90) limit = lenientnumber(reading.text2);
        if (reading.code != 10) continue;
        const picturepoint p = pictured(reading);
        if (++points == 1) {
            colour = linecolour(reading);
            reading.surface.currentX = p.x;
            reading.surface.currentY = p.y;
        } else
            reading.surface.lineTo(p.x, p.y, colour);
    } while (reading.name != "SEQEND" && points != limit);
}

bool atpolyline(const contourreading& reading) {
    return (reading.code == 0 && reading.name == "POLYLINE") ||
           (reading.code == 100 && reading.text2 == "AcDbPolyline");
}

void drawentities(contourreading& reading) {
    do {
        do readstep(reading);
        while (!(reading.code == 0 && reading.name == "SECTION"));
        readstep(reading);
    } while (reading.name != "ENTITIES");
    for (;;) {
        readstep(reading);
        if (atpolyline(reading)) {
            drawpolyline(reading);
            showprogress(reading);
        } else if (reading.name == "ENDSEC")
            return;
    }
}

void drawfile(DrawSurface& surface, const contourpalette& palette, bool solid) {
    const filebytes bytes = readfile(contourfilename());
    contourreading reading{openlist(bytes, contourfilename()), surface, palette, solid};
    try {
        drawentities(reading);
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::pastend) throw;
    }
}

// --- The maps ---

void computecontours() {
    const maprectangle area = mapextent();
    if (SessionState.gridReady == 0) surfergrid(area.lo1, area.hi1, area.lo2, area.hi2);
    if (SessionState.minLevel == SessionState.maxLevel)
        throw runtimeerror{errorkind::divisionbyzero, "The lowest and the highest level are the same."};
    if (SessionState.contourReady == 0) surfertopo();
}

// Pen and pointer of the lines; the width is 1 again behind them, also where they fail.
struct contourpen {
    DrawSurface& surface;

    explicit contourpen(DrawSurface& drawn) : surface(drawn) {
        platform::pointer(platform::shape::wait);
        platform::yield();
        SessionState.drawAbort = off;
        surface.setDrawStyle(drawstyle::solid);
        surface.setDrawWidth(2);
    }
    ~contourpen() { surface.setDrawWidth(1); }
    contourpen(const contourpen&) = delete;
    contourpen& operator=(const contourpen&) = delete;
};

bool linesofonecolour() {
    return chosenscheme() == colourscheme::whiteblue || chosenscheme() == colourscheme::whiteblack;
}

void finish(DrawSurface& surface) {
    surface.setForeColor(rgb(0, 0, 0));
    if (!linesofonecolour()) drawcolourscale(surface);
    platform::pointer(platform::shape::normal);
}

} // namespace

contourpalette makecontourpalette() {
    contourpalette palette{};
    for (std::size_t c = 0; c + paletteoffset < palette.size(); ++c) {
        std::int32_t& colour = palette[c + paletteoffset];
        if (chosenscheme() == colourscheme::whiteblue)
            colour = rgb(0, 0, 128);
        else if (chosenscheme() == colourscheme::whiteblack)
            colour = rgb(0, 0, 0);
        else
            colour = schemecolour(static_cast<double>(c));
    }
    return palette;
}

std::int32_t contourLevelOfColour(std::int32_t colourNumber) {
    if (colourNumber < 0 || colourNumber > highestcolour)
        subscriptfailure("contourLevelOfColour", colourNumber, 0, highestcolour);
    return levelsofcolours[static_cast<std::size_t>(colourNumber)];
}

bool drawcontour2d(DrawSurface& surface) {
    const contourpalette palette = makecontourpalette();
    const mapmark inprogress;
    platform::pointer(platform::shape::wait);
    computecontours();
    if (!attempt([&] { scale2dview(surface); })) return drawscene2d(surface, false);
    {
        const contourpen pen(surface);
        drawfile(surface, palette, false);
    }
    const bool drawn = drawscene2d(surface, false);
    finish(surface);
    return drawn;
}

bool drawcontour3d(DrawSurface& surface, bool clearfirst) {
    const contourpalette palette = makecontourpalette();
    const mapmark inprogress;
    platform::pointer(platform::shape::wait);
    computecontours();
    if (!drawscene3d(surface, clearfirst)) return false;
    {
        const contourpen pen(surface);
        drawfile(surface, palette, true);
    }
    surface.setDrawWidth(2);
    finish(surface);
    return true;
}

} // namespace orv

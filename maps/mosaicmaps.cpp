// The two mosaic maps: a common head, the walk over the cells by columns, and how a cell is painted in each.
#include "maps/mosaicmaps.h"

#include "base/arithmetic.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "maps/colourschemes.h"
#include "maps/mapfield.h"
#include "maps/mapgrid.h"
#include "maps/mapmark.h"
#include "maps/surfer.h"
#include "platform/platform.h"
#include "scene/camera.h"
#include "scene/scenedrawing.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace orv {

namespace {

constexpr double stripoverlap = 1.5; // a strip is as much thicker than its cell, so that neighbours overlap

// The middle grey of "White-Black" does not appear in a mosaic.
constexpr double greyabove = 126, greybelow = 128, greyinstead = 126;

// What a map is drawn from, taken once so that a user at a yield does not change it.
struct mosaic {
    maprectangle area;
    planechoice plane;
    double third; // the plane's place, m
    int columns, rows;
    bool gridded;
    mapreceivers receivers; // empty where gridded
};

mosaic startmosaic() {
    enablecommand("Cprint", true);
    sessionstate& s = SessionState;
    mosaic map{mapextent(), s.viewPlane, static_cast<double>(s.mapThirdCoordinate), s.Nx, s.Ny,
               s.useSurfer, {}};
    if (map.gridded) {
        const maprectangle& a = map.area;
        if (s.gridReady == 0) surfergrid(a.lo1, a.hi1, a.lo2, a.hi2);
        s.gridReady = -1; // also where the engine gave up: the map then shows what the grid held before
        if (a.cellWidth == 0 || a.cellHeight == 0) // a cell's node is found by dividing by these
            throw runtimeerror{errorkind::divisionbyzero, "Its rectangle has no width or no height."};
    } else
        map.receivers = receiversofmap();
    return map;
}

void showstart() {
    platform::pointer(platform::shape::wait);
    platform::statustext(1, "Dithering...");
}

void chooselevels(const mosaic& map) {
    if (!map.gridded && SessionState.autorange) autorangelevels(map.receivers);
    levelindex(0); // raises for levels between which there is nothing
}

std::int32_t cellcolour(double value) {
    double c = levelindex(value);
    if (chosenscheme() == colourscheme::whiteblack && c > greyabove && c < greybelow) c = greyinstead;
    return schemecolour(c);
}

// One cell: its lower corner in the plane's two axes, and its value, which a blanked one has not.
struct mapcell {
    double a, b;
    double value;
    bool blanked;
};

// Calls `paint` for each cell, column by column, until the user stops it.
template <class step>
void eachcell(const mosaic& map, step&& paint) {
    const maprectangle& area = map.area;
    const std::size_t rows = static_cast<std::size_t>(map.rows);
    std::vector<double> b(rows), middle(rows), value(rows);
    double at = area.lo2;
    for (std::size_t j = 0; j < rows; ++j, at += area.cellHeight) {
        b[j] = at;
        middle[j] = (at + at + area.cellHeight) / 2;
    }
    double a = area.lo1;
    for (int i = 0; i < map.columns; ++i, a += area.cellWidth) {
        if (!map.gridded) fieldcolumn(map.receivers, (a + a + area.cellWidth) / 2, middle, value);
        for (int j = 0; j < map.rows; ++j) {
            const std::size_t row = static_cast<std::size_t>(j);
            const bool blanked = map.gridded && MapGrid(j, i) == blankedvalue;
            if (map.gridded) value[row] = wide(MapGrid(j, i));
            paint(mapcell{a, b[row], value[row], blanked});
        }
        platform::statustext(2, numbertext(std::trunc(100.0 * (i + 1) / map.columns)) + "%");
        platform::yield();
        if (SessionState.drawAbort != off) break;
    }
}

picturepoint projected(const mosaic& map, double p, double q) {
    return projectpoint(fromplane({p, q}, map.third, map.plane));
}

} // namespace

bool drawdither2d(DrawSurface& surface) {
    const mapmark inprogress;
    SessionState.drawAbort = off;
    const mosaic map = startmosaic();
    if (!attempt([&] { scale2dview(surface); })) return drawscene2d(surface, false);
    showstart();
    chooselevels(map);
    drawcolourscale(surface);
    const double width = map.area.cellWidth, height = map.area.cellHeight;
    eachcell(map, [&](const mapcell& cell) {
        if (cell.blanked) return;
        const std::int32_t colour = cellcolour(cell.value);
        surface.setFillStyle(fillstyle::solid);
        surface.setFillColor(colour);
        surface.box(cell.a, cell.b, cell.a + width, cell.b + height, colour);
    });
    surface.setFillStyle(fillstyle::transparent);
    // The scene of another plane, chosen meanwhile, does not lie on this map.
    const bool replaced = SessionState.viewPlane != map.plane;
    if (!drawscene2d(surface, replaced)) return false;
    if (!replaced) drawcolourscale(surface); // again, since the cells have covered its labels
    return true;
}

bool drawdither3d(DrawSurface& surface, bool clearfirst) {
    const mapmark inprogress;
    const mosaic map = startmosaic();
    if (!drawscene3d(surface, clearfirst)) return false;
    showstart();
    chooselevels(map);
    drawcolourscale(surface);
    surface.setFillStyle(fillstyle::transparent);
    const double width = map.area.cellWidth, height = map.area.cellHeight;
    eachcell(map, [&](const mapcell& cell) {
        const double middle = (cell.b + cell.b + height) / 2;
        // The thickness follows the perspective of this very place.
        const picturepoint low = projected(map, cell.a, cell.b);
        const picturepoint high = projected(map, cell.a, cell.b + stripoverlap * height);
        surface.setDrawWidth(-surface.toPixelsY(std::hypot(high.x - low.x, high.y - low.y)));
        if (cell.blanked) return; // not before: a blanked cell in the camera's plane beeps as any other
        const picturepoint from = projected(map, cell.a, middle), to = projected(map, cell.a + width, middle);
        surface.line(from.x, from.y, to.x, to.y, cellcolour(cell.value));
    });
    surface.setDrawWidth(1);
    drawscene3d(surface, false);
    platform::pointer(platform::shape::normal);
    drawcolourscale(surface);
    return true;
}

} // namespace orv

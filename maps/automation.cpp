// The automation object over the engine of our own.
#include "maps/automation.h"

#include "base/files.h"
#include "base/runtimeerror.h"
#include "maps/blanking.h"
#include "maps/contourfile.h"
#include "maps/contouring.h"
#include "maps/gridding.h"
#include "maps/pointdata.h"

#include <algorithm>

namespace orv::engine {

namespace {

constexpr int smoothnodes = 400; // along an axis; a grid of as many is smooth without being refined

// Whether the place lies in the polygon, which is closed from its last point to its first: an upward ray
// meets its edges an odd number of times.
bool holds(const blankingpolygon& polygon, double x, double y) {
    bool inside = false;
    for (std::size_t k = 0; k < polygon.x.size(); ++k) {
        const std::size_t before = (k == 0 ? polygon.x.size() : k) - 1;
        const double x1 = polygon.x[before], x2 = polygon.x[k];
        if ((x1 > x) == (x2 > x)) continue;
        const double y1 = polygon.y[before], y2 = polygon.y[k];
        if (y < y1 + (x - x1) / (x2 - x1) * (y2 - y1)) inside = !inside;
    }
    return inside;
}

bool kept(const std::vector<blankingpolygon>& polygons, double x, double y) {
    bool keeping = false, held = false;
    for (const blankingpolygon& polygon : polygons) {
        const bool inside = holds(polygon, x, y);
        if (polygon.flag == blankinside && inside) return false;
        if (polygon.flag == blankoutside) {
            keeping = true;
            held = held || inside;
        }
    }
    return held || !keeping;
}

int refinement(const contouroverlay& overlay) {
    const int nodes = std::max(overlay.grid.frame.columns, overlay.grid.frame.rows);
    return std::clamp(smoothnodes / nodes, 1, std::max(overlay.SmoothContours, 1));
}

} // namespace

application start() {
    return {};
}

void GridData(application&, const griddataarguments& a) {
    const gridframe frame{a.NumCols, a.NumRows, a.Xmin, a.Xmax, a.Ymin, a.Ymax};
    writegrid(withoutlast(a.DataFile, 3) + "GRD",
              gridpoints(readpointdata(a.DataFile), frame, methodof(a.Algorithm)));
}

void GridBlank(application&, const gridblankarguments& a) {
    regulargrid grid = readgrid(existingpath(a.InGrid));
    const std::vector<blankingpolygon> polygons = blankingpolygons(existingpath(a.BlankFile));
    for (int j = 0; j < grid.frame.rows; ++j)
        for (int i = 0; i < grid.frame.columns; ++i)
            if (!kept(polygons, grid.frame.x(i), grid.frame.y(j))) grid.row(j)[i] = blankednode;
    double zlo = 0, zhi = 0;
    if (!valuerange(grid, zlo, zhi))
        throw runtimeerror{errorkind::domain,
                           "The blanking lines of " + pagetext(a.BlankFile) + " leave nothing of the map."};
    writegrid(a.OutGrid, grid);
}

document& DocumentsAdd(application& engine) {
    return engine.Documents.emplace_back();
}

mapframe& AddContourMap(document& plot, const std::string& grid) {
    mapframe& frame = plot.Shapes.emplace_back();
    frame.Overlays.emplace_back().grid = readgrid(existingpath(grid));
    return frame;
}

void LevelsLoadFile(contouroverlay& overlay, const std::string& levels) {
    overlay.Levels = readlevels(levels);
}

void Export(const document& plot, const std::string& FileName) {
    std::vector<colouredlines> contours;
    for (const mapframe& frame : plot.Shapes)
        for (const contouroverlay& overlay : frame.Overlays) {
            const regulargrid grid = refinedgrid(overlay.grid, refinement(overlay));
            std::vector<double> levels;
            for (const contourlevel& level : overlay.Levels) levels.push_back(level.value);
            auto lines = contourlines(grid, levels);
            for (std::size_t k = 0; k < levels.size(); ++k)
                contours.push_back({overlay.Levels[k].colourNumber, std::move(lines[k])});
        }
    writecontours(FileName, contours);
}

void Close(application& engine, document& plot, int) {
    engine.Documents.remove_if([&](const document& one) { return &one == &plot; });
}

void Quit(application& engine) {
    engine.Documents.clear();
}

} // namespace orv::engine

// The gridding engine as an automation object: a small set of plain functions that know nothing of the
// session and exchange nothing but files. Whoever puts another engine behind them replaces automation.cpp.
// The names are those of the object that such engines offer.
#pragma once

#include "maps/gridfile.h"
#include "maps/levelfile.h"

#include <array>
#include <list>
#include <string>
#include <vector>

namespace orv::engine {

constexpr int asciigrid = 2; // of OutFmt; the only form there is here

struct axis {
    int MajorTickType = 0;
    bool ShowLabels = true;
    std::string AxisLineStyle;
};

// The lines of one grid. What concerns labels is kept and has no part in an exported drawing.
struct contouroverlay {
    regulargrid grid;
    std::vector<contourlevel> Levels;
    double LabelEdgeDist = 0, LabelLabelDist = 0;
    std::string LabelFontFace;
    double LabelFontSize = 0;
    int LabelFormatType = 0, LabelFormatNumDigits = 0;
    int SmoothContours = 1; // into how many parts a cell is cut along each axis at most; 1 is not at all
};

struct mapframe {
    std::array<axis, 4> Axes;
    std::vector<contouroverlay> Overlays;
};

struct document {
    std::list<mapframe> Shapes;
};

struct application {
    std::list<document> Documents;
};

application start();

// Grids a file of point data into a file of its own name with the extension GRD. Raises what reading and
// writing files raise, and domain with the reason where there can be no grid.
struct griddataarguments {
    std::string DataFile;
    int NumCols = 0, NumRows = 0;
    double Xmin = 0, Xmax = 0, Ymin = 0, Ymax = 0;
    int Algorithm = 1; // a griddingmethod
    int OutFmt = asciigrid;
};
void GridData(application& engine, const griddataarguments& arguments);

// Blanks nodes by the polygons of a blanking file: a node stays if no polygon of flag 1 holds it and, where
// there are some of flag 0, at least one of those does. Raises domain when none stays; OutGrid is then as it
// was.
struct gridblankarguments {
    std::string InGrid, BlankFile, OutGrid;
    int OutFmt = asciigrid;
};
void GridBlank(application& engine, const gridblankarguments& arguments);

document& DocumentsAdd(application& engine);
mapframe& AddContourMap(document& plot, const std::string& grid);
void LevelsLoadFile(contouroverlay& overlay, const std::string& levels);

// Writes the lines of all maps of the document as a contour file.
void Export(const document& plot, const std::string& FileName);

constexpr int withoutsaving = 2;
void Close(application& engine, document& plot, int saving);
void Quit(application& engine);

} // namespace orv::engine

// The road of a gridded map: point data, grid, blanking, MapGrid; and of contour lines: levels, contour file.
#include "maps/surfer.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "maps/automation.h"
#include "maps/blanking.h"
#include "maps/levelfile.h"
#include "maps/mapfield.h"
#include "maps/mapgrid.h"
#include "maps/pointdata.h"
#include "maps/rgbsettings.h"
#include "platform/platform.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "scene/camera.h"
#include "scene/drawsurface.h"
#include "shell/filejob.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <string_view>

namespace orv {

namespace {

constexpr double inset = 0.1; // of a cell, between the rectangle of the map and the outer nodes
constexpr std::string_view expertcommands[] = {"SurfTopo", "SurfSurf", "SurfPlot", "SurfSetP"};

// --- Progress on the picture ---

void startlog(const char* line) {
    DrawSurface& picture = platform::picture();
    picture.resetWindow();
    picture.clear();
    picture.setTextPoint(0, 0);
    picture.textLine(line);
}

void logstep(const char* line) {
    platform::picture().textLine(line);
}

// --- Gridding ---

// To the other side of the plane's upright axis, in the plane from above of its level one.
picturepoint mirrored(picturepoint p) {
    if (SessionState.viewPlane == planechoice::XY)
        p.y = -p.y;
    else
        p.x = -p.x;
    return p;
}

void writepointdata() {
    std::string text;
    const auto appendreceivers = [&](bool mirror) {
        for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i) {
            const picturepoint p = inplane(
                {wide(RoomModel.receiverX(i)), wide(RoomModel.receiverY(i)), wide(RoomModel.receiverZ(i))});
            const picturepoint at = mirror ? mirrored(p) : p;
            appendpoint(text, at.x, at.y, parametervalue(i, SessionState.bandIndex));
        }
    };
    appendreceivers(false);
    if (SessionState.mirror) appendreceivers(true);
    replacefile(pointdataname(), text);
}

void blankgrid(engine::application& surfer) {
    platform::pointer(platform::shape::wait);
    logstep("Blanking is going...");
    engine::GridBlank(surfer, {.InGrid = gridname(),
                               .BlankFile = BlankingLines.blankingFile,
                               .OutGrid = gridname(),
                               .OutFmt = engine::asciigrid});
    logstep("Blanking is finished!");
    platform::pointer(platform::shape::normal);
}

void computegrid(double lo1, double hi1, double lo2, double hi2) {
    sessionstate& s = SessionState;
    const double cellWidth = (hi1 - lo1) / s.Nx, cellHeight = (hi2 - lo2) / s.Ny;
    platform::setvisible("Picture1", true);
    enablecommand("Cprint", true);
    startlog("GRID was started...");
    engine::application surfer = engine::start();
    s.surferMethod = usablemethod(s.surferMethod);
    engine::GridData(surfer, {.DataFile = pointdataname(),
                              .NumCols = s.Nx,
                              .NumRows = s.Ny,
                              .Xmin = lo1 + inset * cellWidth,
                              .Xmax = hi1 - inset * cellWidth,
                              .Ymin = lo2 + inset * cellHeight,
                              .Ymax = hi2 - inset * cellHeight,
                              .Algorithm = s.surferMethod,
                              .OutFmt = engine::asciigrid});
    logstep("GRID was finished!");
    if (s.useBlanking) blankgrid(surfer);
    platform::yield();
    platform::beep();
    engine::Quit(surfer);
}

// The levels of the whole grid, both ends on a step.
void chooselevels(float zlo, float zhi) {
    sessionstate& s = SessionState;
    const double range = wide(zhi) - wide(zlo);
    s.levelStep = single(levelstepfor(range));
    const double step = wide(s.levelStep);
    s.minLevel = single(Int(quotient(wide(zlo), step)) * step);
    s.maxLevel = single(Int(quotient(step + wide(zhi), step)) * step);
}

// False, with a box, for a grid that has not the size that was asked for.
bool takegrid() {
    const filebytes bytes = readfile(existingpath(gridname()));
    listreader file = openlist(bytes, pagetext(gridname()));
    const gridcounts counts = readgridcounts(file);
    if (counts.columns != SessionState.Nx || counts.rows != SessionState.Ny) {
        platform::warningbox("Warning",
                             "Caution - Surfer was not succesfull in calculating the interpolated grid - "
                             "please reduce the grid size and/or change the interpolation method in the TOPO "
                             "module");
        return false;
    }
    float edges[6]; // xlo xhi ylo yhi zlo zhi
    readsingles(file, edges);
    if (SessionState.autorange) chooselevels(edges[4], edges[5]);
    for (std::int32_t j = 0; j < SessionState.Ny; ++j) {
        for (std::int32_t i = 0; i < SessionState.Nx; ++i) MapGrid(j, i) = readsingle(file);
        if (!atend(file)) readline(file);
    }
    return true;
}

// --- Contours ---

void hideaxes(engine::mapframe& frame) {
    for (engine::axis& axis : frame.Axes) {
        axis.MajorTickType = 1;
        axis.ShowLabels = false;
        axis.AxisLineStyle = "Invisible";
    }
}

void setlabels(engine::contouroverlay& overlay) {
    overlay.LabelEdgeDist = 0.25;
    overlay.LabelLabelDist = 0.5;
    overlay.LabelFontFace = "GS Helv";
    overlay.LabelFontSize = 8;
    overlay.LabelFormatType = 1;
    overlay.LabelFormatNumDigits = 2;
}

// --- Programs ---

void startprogram(const std::string& commandline) {
    unlessrefused([&] { platform::startcommand(commandline); });
}

} // namespace

std::string pointdataname() {
    return withoutlast(SessionState.resultFileName, 3) + "DAT";
}

std::string gridname() {
    return withoutlast(SessionState.resultFileName, 3) + "GRD";
}

std::string levelfilename() {
    return joinpath(SessionState.dataDirectory, "orvanta.lvl");
}

std::string contourfilename() {
    return joinpath(SessionState.dataDirectory, "orvanta.dxf");
}

void surfergrid(double lo1, double hi1, double lo2, double hi2) {
    writepointdata();
    platform::yield();
    platform::yield();
    computegrid(lo1, hi1, lo2, hi2);
    if (!takegrid()) return;
    SessionState.gridReady = -1;
    platform::picture().clear();
}

void surfertopo() {
    sessionstate& s = SessionState;
    s.levelStep = single(levelstepfor(wide(s.maxLevel) - wide(s.minLevel)));
    replacefile(levelfilename(), leveltext(wide(s.minLevel), wide(s.maxLevel)));
    startlog("TOPO was started...");
    engine::application surfer = engine::start();
    engine::document& plot = engine::DocumentsAdd(surfer);
    engine::mapframe& frame = engine::AddContourMap(plot, gridname());
    hideaxes(frame);
    engine::contouroverlay& overlay = frame.Overlays.front();
    engine::LevelsLoadFile(overlay, levelfilename());
    setlabels(overlay);
    overlay.SmoothContours = 4;
    engine::Export(plot, contourfilename());
    engine::Close(surfer, plot, engine::withoutsaving);
    logstep("TOPO was finished!");
    platform::yield();
    s.contourReady = -1;
    platform::picture().clear();
    engine::Quit(surfer);
}

void SurfGrid() {
    SessionState.gridReady = 0;
    startprogram("GRIDw.PIF Grid.dat");
}

void SurfTopo() {
    SessionState.contourReady = 0;
    startprogram("TOPOw.PIF Grid.grd");
}

void SurfSurf() {
    startprogram("Surf.PIF Grid.grd");
}

void SurfPlot() {
    startprogram("Plotw.PIF Grid.plt");
}

void SurfSetP() {
    startprogram("SetPlotw.PIF");
}

void SurfEnable() {
    const bool access = !ischecked("SurfEnable");
    checkcommand("SurfEnable", access);
    for (const std::string_view name : expertcommands) showcommandentry(name, access);
}

} // namespace orv

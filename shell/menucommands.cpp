// The main window's menus, row by row, and the state of every command.
#include "shell/menucommands.h"

#include "base/runtimeerror.h"
#include "base/table.h"
#include "export/wavexport.h"
#include "interchange/interchangecommands.h"
#include "maps/blanking.h"
#include "maps/blankingeditor.h"
#include "maps/mappingoptions.h"
#include "maps/redrawview.h"
#include "maps/rgbsettings.h"
#include "maps/surfer.h"
#include "platform/platform.h"
#include "response/raypathdisplay.h"
#include "response/responseplot.h"
#include "results/speechindex.h"
#include "results/tablecells.h"
#include "scene/viewcommands.h"
#include "scene/viewoptions.h"
#include "shell/sessionstate.h"
#include "shell/startup.h"
#include "shell/workflows.h"
#include "tools/optimizer.h"
#include "tools/sumlist.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace orv {

namespace {

// State at the start, where it is not plainly shown and enabled. A ticked row is a tickable one.
constexpr unsigned hidden = 1, disabled = 2, tickable = 4, ticked = 12;

constexpr menucommand row(std::string_view menu, std::string_view name, std::string_view caption,
                          void (*run)(), unsigned state = 0) {
    return {menu,
            name,
            caption,
            run,
            (state & hidden) == 0,
            (state & disabled) == 0,
            (state & tickable) != 0,
            (state & ticked) == ticked};
}

constexpr menucommand separator(std::string_view menu, unsigned state = 0) {
    return row(menu, "", "", nullptr, state);
}

// The settings that the view entries hold: a click changes the mark and nothing else.
template <tablename name>
void toggle() {
    checkcommand(name.text, !ischecked(name.text));
}

constexpr menutitle titles[] = {
    {"File", "&File"}, {"Edit", "&Edit"},   {"view", "Capture"}, {"CamOpt", "&View"}, {"tabl", "&Table"},
    {"Map", "&Map"},   {"BL", "&Blanking"}, {"Sur", "&Surfer"},  {"help", "&Help"},
};

// AutRed starts without its mark although the picture is redrawn at once; the first toggle brings them
// together.
constexpr menucommand startrows[] = {
    row("File", "FLoad", "&Open Geometry File...", FLoad),
    row("File", "Fsave", "&Save Geometry File...", Fsave, disabled),
    row("File", "DXFIN", "&DXF In...", DXFIN),
    row("File", "DXFOUT", "DXF &Out...", DXFOUT, disabled),
    row("File", "ImportNastran", "Import &Nastran file", ImportNastran),
    row("File", "ImporRayonGeo", "&Import from Rayons...", ImporRayonGeo, hidden),
    row("File", "FileExport", "&Export to Rayons...", FileExport, hidden | disabled),
    row("File", "ImportCatt", "Import from &Catt Acoustics", ImportCatt),
    row("File", "ExportCatt", "Export to Catt Acoustics", ExportCatt, disabled),
    separator("File"),
    row("File", "OpenRes", "Open &Imp.Resp.+Geometry files...", OpenRes),
    row("File", "MapLoad", "Open &Imp.Resp. file only...", MapLoad, disabled),
    row("File", "importrayonresp", "Import &Rayons Response...", nullptr, hidden | disabled),
    row("File", "ExportWAV", "Export Imp.Resp. to &WAV...", ExportWAV, disabled),
    separator("File"),
    row("File", "SumEq", "Sum && Equalize", SumEq),
    row("File", "AlfaBetaOpt", "AlfaBeta Optimizer", AlfaBetaOpt),
    separator("File"),
    row("File", "Fprint", "&Auto Print Screen (Gray)...", nullptr, hidden),
    row("File", "Cprint", "&Print Image...", Cprint, disabled),
    row("File", "printsetup", "Printer Set&up...", printsetup),
    separator("File"),
    row("File", "FQuit", "E&xit", FQuit),

    row("Edit", "Sel", "Se&lect All", nullptr, hidden),
    row("Edit", "Copy", "&Copy to Clpbrd", Copy),

    row("view", "VPrint", "&Print View (BMP)", nullptr, disabled),
    row("view", "VSave", "&Save to BMP", nullptr, disabled),
    row("view", "VLoad", "&Load View (BMP)", nullptr, disabled),
    separator("view"),
    row("view", "Pvect", "Print View (Vect)", nullptr, disabled),
    row("view", "SWMF", "Save to WMF", nullptr, disabled),
    row("view", "LWMF", "Load View (WMF)", nullptr, disabled),

    row("CamOpt", "Roll", "Rolling", nullptr, hidden),
    row("CamOpt", "Redraw", "Draw &3D", Redraw, disabled),
    row("CamOpt", "CamRedr2D", "Draw &2D", CamRedr2D, disabled),
    row("CamOpt", "render", "&Render...", nullptr, hidden | disabled),
    separator("CamOpt"),
    row("CamOpt", "ViewImpulse", "&Impulse Response", ViewImpulse, disabled),
    row("CamOpt", "viewraypaths", "Ray &Paths", viewraypaths, disabled | tickable),
    separator("CamOpt"),
    row("CamOpt", "ViewOpt", "&View Options...", ViewOpt),
    row("CamOpt", "AutRed", "&AutoRedraw", toggleautoredraw, hidden | tickable),
    row("CamOpt", "Vroom", "&View Room", toggle<"Vroom">, hidden | ticked),
    row("CamOpt", "Vsource", "View &Sources", toggle<"Vsource">, hidden | ticked),
    row("CamOpt", "CamVrec", "View &Receivers", toggle<"CamVrec">, hidden | ticked),
    row("CamOpt", "Vbln", "View &BLNs", BLNview, hidden | ticked),
    row("CamOpt", "Vaxes", "View &Axes", toggle<"Vaxes">, hidden | ticked),
    row("CamOpt", "Post", "&Post Values", toggle<"Post">, hidden | ticked),
    row("CamOpt", "Vrays", "View &Rays", toggle<"Vrays">, hidden | tickable),

    row("tabl", "SingleRec", "&Single Receiver", opentable<"SingleRec">),
    row("tabl", "R_Robin", "&Round Robin", opentable<"RoundRobin">),
    separator("tabl"),
    row("tabl", "T_SPL", "&Leq", opentable<"Leq">),
    row("tabl", "T_Ldir", "&Ldir", opentable<"Ldir">),
    row("tabl", "T_Lrev", "Lre&v", opentable<"Lrev">),
    row("tabl", "T_RD", "&Ldir-Lrev", opentable<"Ldir-Lrev">),
    row("tabl", "T_LpLw", "L&eq-Lw", opentable<"Leq-Lw">),
    row("tabl", "T_G", "stren&Gth", opentable<"G">),
    separator("tabl"),
    row("tabl", "T_EDT", "&EDT", opentable<"EDT">),
    row("tabl", "T_T10", "T&10", opentable<"T10">),
    row("tabl", "T_T15", "T&15", opentable<"T15">),
    row("tabl", "T_T20", "T&20", opentable<"T20">),
    row("tabl", "T_T30", "T&30", opentable<"T30">),
    separator("tabl"),
    row("tabl", "T_C50", "C&50", opentable<"C50">),
    row("tabl", "T_C80", "&C80", opentable<"C80">),
    row("tabl", "T_D", "&D50", opentable<"D50">),
    row("tabl", "T_Tbar", "&Center Time", opentable<"Ts">),
    row("tabl", "T_Aeq", "&Aeq", opentable<"Aeq">),
    separator("tabl"),
    row("tabl", "T_STI", "&STI", opentable<"STI">),
    separator("tabl"),
    row("tabl", "T_LE", "L&E", opentable<"LE">),
    row("tabl", "T_LF", "L&F", opentable<"LF">, disabled),
    row("tabl", "T_LFC", "LF&C", opentable<"LFC">, disabled),
    row("tabl", "T_Aeq2", "Aeq&2", opentable<"Aeq2">, hidden),
    row("tabl", "T_ITDGeq", "&ITDGeq", opentable<"ITDGeq">, hidden),

    row("Map", "MapOptions", "&Mapping Options...", MapOptions, disabled),
    row("Map", "STIopt", "&STI Options...", STIopt, disabled),
    row("Map", "RGBOpt", "&RGB Options...", RGBOpt, disabled),
    separator("Map"),
    row("Map", "MapDoDither3D", "DoDither &3D...", MapDoDither3D, disabled),
    row("Map", "MapDoDither2D", "DoDither &2D...", MapDoDither2D, disabled),
    separator("Map"),
    row("Map", "MapDoContour3D", "DoContour 3D...", MapDoContour3D, disabled),
    row("Map", "MapDoContour2D", "DoContour 2D...", MapDoContour2D, disabled),

    row("BL", "BLNnew", "&Clear", BLNnew, disabled),
    row("BL", "BLNload", "&Load...", BLNload),
    row("BL", "BLNadd", "&Add Line...", BLNadd, disabled),
    row("BL", "BLNdel", "&Delete Line", nullptr, hidden | disabled),
    row("BL", "BLNsave", "&Save...", BLNsave, disabled),
    row("BL", "BLNoptions", "&Options", BLNoptions),
    separator("BL", hidden),
    row("BL", "BLNview", "&View BLNs", BLNview, hidden | ticked),

    row("Sur", "SurfGrid", "&Grid...", SurfGrid),
    row("Sur", "SurfTopo", "&Topo...", SurfTopo, hidden),
    row("Sur", "SurfSurf", "&Surf...", SurfSurf, hidden),
    row("Sur", "SurfPlot", "&Plot...", SurfPlot, hidden),
    row("Sur", "SurfSetP", "&Set Plotter...", SurfSetP, hidden),
    row("Sur", "SurfEnable", "Enable &Access (for expert Surfer users only)", SurfEnable, tickable),

    row("help", "Hhelp", "&Help...", Hhelp),
    row("help", "HAbout", "&About...", HAbout),
};

constexpr std::size_t rowcount = std::size(startrows);

std::array<menucommand, rowcount> rows = std::to_array(startrows);
bool suspended = false;

void changestate(std::string_view name, bool menucommand::*state, bool value) {
    menucommand& changed = command(name);
    changed.*state = value;
    platform::showcommand(changed);
}

} // namespace

std::span<const menutitle> menutitles() {
    return titles;
}

std::span<menucommand> menucommands() {
    return rows;
}

menucommand& command(std::string_view name) {
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const menucommand& candidate) {
        return !name.empty() && candidate.name == name;
    });
    if (found == rows.end())
        throw runtimeerror{errorkind::subscript, "No menu command is named \"" + std::string(name) + "\"."};
    return *found;
}

void enablecommand(std::string_view name, bool enabled) {
    changestate(name, &menucommand::enabled, enabled);
}

void checkcommand(std::string_view name, bool checked) {
    changestate(name, &menucommand::checked, checked);
}

void showcommandentry(std::string_view name, bool visible) {
    changestate(name, &menucommand::visible, visible);
}

bool ischecked(std::string_view name) {
    return command(name).checked;
}

bool isenabled(std::string_view name) {
    return command(name).enabled;
}

bool isoffered(const menucommand& asked) {
    return asked.run && asked.enabled && (!suspended || asked.name == "FQuit" || asked.menu == "help");
}

void runcommand(std::string_view name) {
    const menucommand& chosen = command(name);
    if (isoffered(chosen)) chosen.run();
}

void suspendcommands(bool now) {
    if (suspended == now) return;
    suspended = now;
    for (const menucommand& each : rows)
        if (!each.name.empty()) platform::showcommand(each);
}

bool commandssuspended() {
    return suspended;
}

void setautoredraw(bool redraws) {
    SessionState.autoRedraw = redraws ? on : off;
    platform::settext("Redisplay", redraws ? "Auto Redraw" : "Manual Redraw");
    checkcommand("AutRed", redraws);
}

void toggleautoredraw() {
    setautoredraw(SessionState.autoRedraw == off);
}

void resetcommands() {
    std::copy(std::begin(startrows), std::end(startrows), rows.begin());
    suspended = false;
    for (const menucommand& each : rows)
        if (!each.name.empty()) platform::showcommand(each);
}

} // namespace orv

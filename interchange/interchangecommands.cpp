// The commands that exchange rooms with other programs.
#include "interchange/interchangecommands.h"

#include "base/files.h"
#include "interchange/cattreader.h"
#include "interchange/cattwriter.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
#include "interchange/nastranreader.h"
#include "interchange/rayons.h"
#include "platform/platform.h"
#include "response/responseplot.h"
#include "results/speechindex.h"
#include "shell/filejob.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"
#include "shell/workflows.h"

#include <string>
#include <string_view>

namespace orv {

namespace {

// The commands that a result has enabled; at the start of the program they are disabled.
constexpr std::string_view resultcommands[] = {
    "MapOptions",     "RGBOpt",    "STIopt",      "MapDoDither2D", "MapDoDither3D", "MapDoContour2D",
    "MapDoContour3D", "ExportWAV", "ViewImpulse", "T_LF",          "T_LFC",         "viewraypaths"};

// The loaded result counts as gone, until another one is loaded.
void forgetresult() {
    forgetresponse(); // a window with its ray paths may be open
    SessionState.parameterSource = 0;
    SessionState.resultFileName.clear();
    for (const std::string_view name : resultcommands) enablecommand(name, false);
}

// The frame of every import. Its dialog, then `load` with the chosen name.
void importroom(const char* title, const char* filter, const char* proposal,
                void (*load)(const std::string& name)) {
    if (speechindexruns()) return platform::beep(); // its receivers must stay
    const auto chosen = chosenfile(platform::askopenfile, title, filter, proposal);
    if (!chosen) return;
    const filejob running;
    load(*chosen);
    SessionState.geometryFileName = withextension(*chosen, "ray");
    showtitle(SessionState.geometryFileName);
    showloadedroom(*chosen);
}

// The frame of every export. Its dialog, then `save` with the chosen name, which gets the extension when it
// has none.
void exportroom(const char* title, const char* filter, const std::string& proposal, const char* extension,
                void (*save)(const std::string& name)) {
    const auto chosen = chosenfile(platform::asksavefile, title, filter, proposal);
    if (!chosen) return;
    const filejob running;
    // A point as the first character makes no extension.
    const bool extended = filenameof(*chosen).find('.', 1) != std::string::npos;
    save(extended ? *chosen : *chosen + "." + extension);
}

// The room's name with another extension, or a pattern for a room without a name.
std::string proposedname(const char* extension) {
    const std::string& room = SessionState.geometryFileName;
    return room.empty() ? std::string("*.") + extension : withextension(room, extension);
}

} // namespace

void DXFIN() {
    if (speechindexruns()) return platform::beep(); // its receivers must stay
    const auto chosen = chosenfile(platform::askopenfile, "Load an AutoCAD (TM) DXF File",
                                   "Drawing Exch.Files (*.DXF)|*.DXF", "*.DXF");
    if (!chosen) return;
    const filejob running;
    SessionState.geometryFileName = SessionState.dxfFileName = *chosen;
    showtitle(*chosen);
    loaddxf(*chosen);
    showloadedroom(*chosen);
}

void DXFOUT() {
    const std::string& room = SessionState.geometryFileName;
    const auto chosen =
        chosenfile(platform::asksavefile, "Save a .DXF AutoCAD File", "Drawing Exch.Files (*.dxf)|*.dxf",
                   room.empty() ? "*.dxf" : withextension(room, "dxf"));
    if (!chosen) return;
    const filejob running;
    SessionState.dxfFileName = *chosen;
    // A point as the first character makes no extension.
    if (filenameof(*chosen).find('.', 1) == std::string::npos) SessionState.dxfFileName += ".DXF";
    savedxf(SessionState.dxfFileName);
}

void ImportNastran() {
    importroom("Load a Nastran NAS File", "Drawing Exch.Files (*.NAS)|*.NAS", "*.nas",
               [](const std::string& name) {
                   if (canopen(existingpath(name))) forgetresult(); // a missing file changes nothing
                   loadnastran(name);
               });
}

void ImportCatt() {
    importroom("Load a Catt Acoustics .GEO File", "Geometry Files (*.GEO)|*.GEO", "*.geo", loadcatt);
}

void ExportCatt() {
    exportroom("Save a .GEO File for Catt Acoustics", "Catt Acoustics Data Files (*.GEO)|*.GEO",
               proposedname("geo"), "geo", savecatt);
}

void ImporRayonGeo() {
    importroom("Load a Rayons GEO File", "Rayons Geo Files (*.geo)|*.geo", "*.GEO", loadrayons);
}

void FileExport() {
    exportroom("Save a .GEO Rayons File", "Data Files (*.DAT)|*.DAT", proposedname("dat"), "dat", saverayons);
}

} // namespace orv

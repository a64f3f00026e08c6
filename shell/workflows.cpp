// The file workflows of the main window.
#include "shell/workflows.h"

#include "base/files.h"
#include "base/listinput.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "results/parameterfile.h"
#include "results/resultreader.h"
#include "results/speechindex.h"
#include "room/geometryreader.h"
#include "room/geometrywriter.h"
#include "room/roommodel.h"
#include "scene/scenedrawing.h"
#include "shell/filejob.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"
#include "shell/settings.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace orv {

namespace {

constexpr const char* roomfilter = "Orvcad Geom.Files (*.ray)|*.ray";
constexpr const char* resultfilter = "Impulse Resp.Files (*._*)|*._*";
constexpr const char* roompattern = "*.RAY";
constexpr const char* resultpattern = "*._*";

constexpr std::string_view roomcommands[] = {"DXFOUT", "FileExport", "ExportCatt", "importrayonresp",
                                             "Fsave"};
constexpr std::string_view mapcommands[] = {"MapDoDither2D", "MapDoDither3D", "MapOptions", "RGBOpt",
                                            "STIopt"};
constexpr std::string_view contourcommands[] = {"MapDoContour2D", "MapDoContour3D"};
constexpr std::string_view responsecommands[] = {"ExportWAV", "ViewImpulse"};

template <class names>
void enableall(const names& commands) {
    for (const std::string_view name : commands) enablecommand(name, true);
}

// A file of another kind reads as an empty room; the picture alone would not tell.
void warnifempty(const std::string& name) {
    const roommodel& r = RoomModel;
    if (r.faceCount + r.holeCount + r.doorCount + r.sourceCount + r.receiverCount + r.rayLineCount > 0)
        return;
    platform::messagebox("Warning", pagetext(name) + " holds nothing of a room that could be read.",
                         platform::buttons::ok, platform::icon::exclamation, platform::answer::ok);
}

void loadroom(const std::string& name) {
    const filejob running;
    SessionState.geometryFileName = name;
    showtitle(name);
    loadgeometry(name);
    showloadedroom(name);
}

void openroom() {
    const std::string& present = SessionState.geometryFileName;
    const auto chosen = chosenfile(platform::askopenfile, "Load a Orvanta CAD File", roomfilter,
                                   present.empty() ? roompattern : present);
    if (chosen) loadroom(*chosen);
}

// The result with its responses, the speech index computed and the parameters kept if the user wants it.
void loadresponses(const std::string& name) {
    loadresult(name);
    enableall(responsecommands);
    computesti();
    if (isparameterfile(name)) return; // it would be replaced
    if (platform::messagebox("WARNING!", "Do You want to save the computed parameters ?",
                             platform::buttons::yesno, platform::icon::none,
                             platform::answer::yes) == platform::answer::yes)
        saveparameters(name);
}

// The result: from its responses, or, where the parameter file beside it is good and the user wants it, the
// parameters alone.
void openresult(const std::string& name) {
    SessionState.resultFileName = name;
    if (!parameterfileusable(name) || isparameterfile(name) ||
        platform::messagebox("Attention!",
                             "Do You want to load directly only the acoustical parameters without impulse "
                             "response data?",
                             platform::buttons::yesno, platform::icon::none,
                             platform::answer::no) != platform::answer::yes) {
        loadresponses(name);
        return;
    }
    loadparameters(existingpath(parameternameof(name)));
    for (const std::string_view command : responsecommands) enablecommand(command, false);
}

void forgetmaps() {
    SessionState.gridReady = SessionState.contourReady = 0;
}

void loadresultandroom(const std::string& name) {
    const filejob running;
    openresult(name);
    enableroomcommands();
    enablemapcommands();
    forgetmaps();
    const std::string beside = existingpath(geometrynameof(name));
    if (canopen(beside)) {
        SessionState.geometryFileName = beside;
        loadgeometry(beside);
        warnifempty(beside);
    } else {
        openroom(); // cancelled, it leaves the former room in memory under the new result
    }
    showtitle(SessionState.geometryFileName);
    showscene();
}

} // namespace

void FLoad() {
    if (speechindexruns()) return platform::beep(); // its receivers must stay
    openroom();
}

void Fsave() {
    const auto chosen =
        chosenfile(platform::asksavefile, "Save a Orvanta CAD File", roomfilter, savedroomproposal());
    if (!chosen) return;
    const filejob running;
    SessionState.geometryFileName = *chosen;
    // A point as the first character makes no extension.
    if (filenameof(*chosen).find('.', 1) == std::string::npos) SessionState.geometryFileName += ".ray";
    showtitle(SessionState.geometryFileName);
    savegeometry(SessionState.geometryFileName);
}

void OpenRes() {
    if (speechindexruns()) return platform::beep(); // its receivers must stay
    const auto chosen = chosenfile(platform::askopenfile, "Load an Impulse Response File and its Geometry",
                                   resultfilter, resultpattern);
    if (chosen) loadresultandroom(*chosen);
}

void MapLoad() {
    if (speechindexruns()) return platform::beep(); // its receivers must stay
    const auto chosen =
        chosenfile(platform::askopenfile, "Load an Impulse Response File", resultfilter, resultpattern);
    if (!chosen) return;
    const filejob running;
    openresult(*chosen);
    enablemapcommands();
    forgetmaps();
    showscene();
}

void openfile(const std::string& name) {
    if (commandssuspended()) return;
    constexpr std::size_t extension = 4; // with its point
    const std::size_t point = name.size() - std::min(name.size(), extension);
    const std::string kind = name.substr(point, 2);
    if (kind != "._" && kind != ".-") return loadroom(name);
    std::string result = name;
    result[point + 1] = '_';
    loadresultandroom(existingpath(result));
}

bool parameterfileusable(const std::string& result) {
    const auto resultdate = filedate(result);
    std::optional<std::int64_t> parameterdate, settingsdate;
    attempt([&] { parameterdate = filedate(existingpath(parameternameof(result))); });
    attempt([&] { settingsdate = filedate(settingsfile()); });
    return parameterdate && *parameterdate >= resultdate && !(settingsdate && *parameterdate < *settingsdate);
}

std::string savedroomproposal() {
    constexpr std::size_t extension = 3;
    const auto withoutextension = [](const std::string& name) {
        return name.substr(0, name.size() - extension);
    };
    const std::string& room = SessionState.geometryFileName;
    if (room.size() >= extension && uppercase(room.substr(room.size() - extension)) == "RAY") return room;
    const std::string& dxf = SessionState.dxfFileName;
    return dxf.size() < extension ? roompattern : withoutextension(dxf) + "RAY";
}

void showtitle(const std::string& filename) {
    std::string title(programname);
    title += versiontext;
    platform::windowtitle(filename.empty() ? title : pagetext(filename) + " - " + title);
}

void showscene() {
    DrawSurface& picture = platform::picture();
    if (platform::isvisible("Frame1"))
        draw3dview(picture, true);
    else
        draw2dview(picture, true);
}

void showloadedroom(const std::string& name) {
    enableroomcommands();
    showscene();
    if (SessionState.parameterSource != 0) {
        enablemapcommands();
        enablecommand("ExportWAV", true);
    }
    warnifempty(name);
}

void enableroomcommands() {
    enableall(roomcommands);
}

void enablemapcommands() {
    enableall(mapcommands);
    if (SessionState.levelStep != 0) enableall(contourcommands);
}

} // namespace orv

// The commands that exchange rooms by Nastran, Catt and Rayons files.
#include "interchange/importcommands.h"

#include "base/files.h"
#include "interchange/nastranreader.h"
#include "platform/platform.h"
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
    showloadedroom();
}

} // namespace

void ImportNastran() {
    importroom("Load a Nastran NAS File", "Drawing Exch.Files (*.NAS)|*.NAS", "*.nas",
               [](const std::string& name) {
                   if (canopen(existingpath(name))) forgetresult(); // a missing file changes nothing
                   loadnastran(name);
               });
}

} // namespace orv

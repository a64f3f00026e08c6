// The commands that exchange rooms as drawings.
#include "interchange/interchangecommands.h"

#include "base/files.h"
#include "interchange/dxfreader.h"
#include "interchange/dxfwriter.h"
#include "platform/platform.h"
#include "results/speechindex.h"
#include "shell/filejob.h"
#include "shell/sessionstate.h"
#include "shell/workflows.h"

namespace orv {

void DXFIN() {
    if (speechindexruns()) return platform::beep(); // its receivers must stay
    const auto chosen = chosenfile(platform::askopenfile, "Load an AutoCAD (TM) DXF File",
                                   "Drawing Exch.Files (*.DXF)|*.DXF", "*.DXF");
    if (!chosen) return;
    const filejob running;
    SessionState.geometryFileName = SessionState.dxfFileName = *chosen;
    showtitle(*chosen);
    loaddxf(*chosen);
    showloadedroom();
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

} // namespace orv

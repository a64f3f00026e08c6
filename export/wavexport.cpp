// The rules of the dialog "Imp.Response  export to WAV".
#include "export/wavexport.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "export/exportformats.h"
#include "export/synthesis.h"
#include "platform/platform.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <vector>

namespace orv {

namespace {

constexpr int extension = 3;

// The room's file with another extension.
std::string firstradix() {
    std::string name;
    attempt([&] { name = withoutlast(SessionState.geometryFileName, extension); });
    return name + "wav";
}

void showradix() {
    platform::settext("FileRadix", pagetext(SessionState.fileRadix));
}

std::vector<std::string> receiverrows() {
    std::vector<std::string> rows;
    for (std::int32_t r = 1; r <= RoomModel.receiverCount; ++r) rows.push_back(wholetext(r));
    rows.emplace_back("All");
    return rows;
}

// What the export is made of must not change under it. Stop comes first, so that Start leaves it the
// keyboard.
void enablechoices(bool enabled) {
    platform::setenabled("StopExport", !enabled);
    for (const char* control :
         {"RecNo", "Outformat", "FileRadix", "Browse", "Nsamp", "f44", "f48", "Density", "StartExport"})
        platform::setenabled(control, enabled);
}

} // namespace

void ExportWAV() {
    suspendcommands(true);
    platform::showwindow("Export to WAV", true);
    suspendcommands(false);
}

void openexport() {
    SessionState.fileRadix = firstradix();
    showradix();
    platform::setprogress("ProgressBar1", 0);
    platform::setrows("List1", {});
    platform::setrows("RecNo", receiverrows());
    std::vector<std::string> labels;
    for (const exportformat& format : exportformats) labels.emplace_back(format.label);
    platform::setrows("Outformat", labels);
    choosesamplerate();
}

void choosesamplerate() {
    const double rate = platform::ischosen("f48") ? 48000 : 44100;
    std::int32_t& samples = SessionState.requestedSamples;
    samples = whole32(static_cast<double>(ResultSet.timeStep) * ResultSet.lastSlot * rate);
    platform::settext("Nsamp", wholetext(samples));
}

void typeradix(const std::string& path) {
    SessionState.fileRadix = path;
}

void browseradix() {
    const std::string& present = SessionState.fileRadix;
    try {
        std::string chosen = platform::asksavefile(
            {"Save a .WAV File", "Impulse Response Files (*.wav)|*.wav",
             present.empty() ? firstradix() : present, SessionState.dataDirectory, false});
        if (filenameof(chosen).find('.', 1) == std::string::npos) chosen += ".DXF"; // meant
        SessionState.fileRadix = chosen;
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::cancelled) throw;
        return;
    }
    showradix();
}

void startexport() {
    enablechoices(false);
    SessionState.requestedSamples = whole32(lenientnumber(platform::gettext("Nsamp")));
    platform::pointer(platform::shape::wait);
    platform::yield();
    savewave();
    platform::pointer(platform::shape::normal);
    platform::setprogress("ProgressBar1", 0);
    enablechoices(true);
    platform::statustext(1, "");
    platform::statustext(2, "");
}

void stopexport() {
    platform::setenabled("StopExport", false);
}

} // namespace orv

// The main window while a room is loaded or saved.
#include "room/roomload.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/numbertext.h"
#include "platform/platform.h"
#include "room/roommodel.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

namespace orv {

namespace {

constexpr std::int32_t loadinggrey = rgb(192, 192, 192);
constexpr double fulllog = 0.85; // share of the window's height

// The views and control frames that are hidden meanwhile; the next drawing shows them again.
constexpr const char* viewcontrols[] = {"Picture1", "Frame1", "Frame2", "SSFrame1", "Frame2DView"};

constexpr std::string_view roomcommands[] = {"Redraw", "CamRedr2D", "render", "BLNadd", "MapLoad"};

void setcounts(const roomcounts& counts) {
    RoomModel.faceCount = counts.faces;
    RoomModel.holeCount = counts.holes;
    RoomModel.doorCount = counts.doors;
    RoomModel.sourceCount = counts.sources;
    RoomModel.receiverCount = counts.receivers;
    RoomModel.rayLineCount = counts.raylines;
}

void clearstatus() {
    platform::statustext(1, "");
    platform::statustext(2, "");
}

} // namespace

std::int32_t showloading() {
    for (const char* control : viewcontrols) platform::setvisible(control, false);
    return platform::background(loadinggrey);
}

std::int32_t startroomload(const std::string& status) {
    const std::int32_t formerbackground = showloading();
    platform::pointer(platform::shape::wait);
    platform::statustext(1, status);
    resetroom();
    return formerbackground;
}

void finishroomload(const roomcounts& counts, std::int32_t formerbackground) {
    setcounts(counts);
    platform::pointer(platform::shape::normal);
    computecentre();
    SessionState.targetX = RoomModel.roomCentreX;
    SessionState.targetY = RoomModel.roomCentreY;
    SessionState.targetZ = RoomModel.roomCentreZ;
    for (const std::string_view command : roomcommands) enablecommand(command, true);
    SessionState.gridReady = SessionState.contourReady = 0;
    clearstatus();
    platform::background(formerbackground);
    platform::yield();
}

void showprogress(loadprogress& progress, std::size_t position) {
    if (position >= progress.change) {
        const std::size_t percent = progress.size == 0 ? 100 : 100 * position / progress.size;
        progress.change = progress.size == 0 ? 1 : ((percent + 1) * progress.size + 99) / 100;
        progress.text = wholetext(static_cast<std::int64_t>(percent)) + "%";
    }
    platform::statustext(2, progress.text);
    platform::yield();
}

void showfaceprogress(std::int32_t face) {
    const double percent = Int(100.0 * face / RoomModel.faceCount);
    platform::statustext(2, wholetext(static_cast<std::int64_t>(percent)) + "%");
    platform::yield();
}

void finishroomsave(const std::string& path, std::string_view text) {
    replacefile(path, text);
    platform::pointer(platform::shape::normal);
    clearstatus();
    platform::yield();
}

void clearfulllog() {
    if (platform::logfill() > fulllog) platform::clearlog();
}

void logload(const std::string& line) {
    clearfulllog();
    platform::logline(line);
}

} // namespace orv

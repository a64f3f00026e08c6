// What the readers of geometry share around their files.
#include "room/roomload.h"

#include "base/numbertext.h"
#include "platform/platform.h"
#include "room/roommodel.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <array>

namespace orv {

namespace {

constexpr std::int32_t loadinggrey = rgb(192, 192, 192);
constexpr double fulllog = 0.85; // share of the window's height

// The views and control frames that are hidden while a file is loaded; the next drawing shows them again.
constexpr std::array viewcontrols = {"Picture1", "Frame1", "Frame2", "SSFrame1", "Frame2DView"};

constexpr std::array<std::string_view, 5> roomcommands = {"Redraw", "CamRedr2D", "render", "BLNadd",
                                                          "MapLoad"};

} // namespace

std::int32_t beginroomload(const std::string& action) {
    for (const char* control : viewcontrols) platform::setvisible(control, false);
    const std::int32_t formerbackground = platform::background(loadinggrey);
    platform::pointer(platform::shape::wait);
    platform::statustext(1, action);
    resetroom();
    return formerbackground;
}

void endroomload(std::int32_t formerbackground) {
    platform::pointer(platform::shape::normal);
    computecentre();
    SessionState.targetX = RoomModel.roomCentreX;
    SessionState.targetY = RoomModel.roomCentreY;
    SessionState.targetZ = RoomModel.roomCentreZ;
    for (const std::string_view command : roomcommands) enablecommand(command, true);
    SessionState.gridReady = SessionState.contourReady = 0;
    platform::statustext(1, "");
    platform::statustext(2, "");
    platform::background(formerbackground);
    platform::yield();
}

void logimport(const std::string& text) {
    if (platform::logfill() > fulllog) platform::clearlog();
    platform::logline(text);
}

void showprogress(importprogress& progress, std::size_t position) {
    if (position >= progress.shown) {
        const std::size_t percent = position * 100 / progress.size;
        progress.percent = wholetext(static_cast<std::int64_t>(percent)) + "%";
        progress.shown = (progress.size * (percent + 1) + 99) / 100;
    }
    platform::statustext(2, progress.percent);
    platform::yield();
}

} // namespace orv

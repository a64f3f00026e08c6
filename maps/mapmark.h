// The mark of a map that is being drawn.
#pragma once

#include "platform/platform.h"
#include "shell/sessionstate.h"

#include <utility>

namespace orv {

// Sets mapInProgress for its own time; a page can be printed while the map on the screen is drawn. Behind it
// the second status panel is empty again, however the drawing ends.
struct mapmark {
    mapmark() : within(std::exchange(SessionState.mapInProgress, true)) {}
    ~mapmark() {
        SessionState.mapInProgress = within;
        platform::statustext(2, "");
    }
    mapmark(const mapmark&) = delete;
    mapmark& operator=(const mapmark&) = delete;

private:
    bool within;
};

} // namespace orv

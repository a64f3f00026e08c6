// The drawings that run, and what waits behind each.
#include "scene/drawingturn.h"

#include "maps/blankingeditor.h"
#include "platform/platform.h"
#include "response/raypathdisplay.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <vector>

namespace orv {

namespace {

// A surface that is being drawn on now, and the drawing that was asked for meanwhile.
struct runningdrawing {
    DrawSurface* surface;
    drawing waiting;
};
std::vector<runningdrawing> running;

} // namespace

bool drawingruns() {
    return !running.empty();
}

bool drawingruns(const DrawSurface& surface) {
    return std::any_of(running.begin(), running.end(),
                       [&](const runningdrawing& each) { return each.surface == &surface; });
}

void taketurn(DrawSurface& surface, bool clearfirst, drawing wanted) {
    for (runningdrawing& other : running) {
        if (other.surface != &surface) continue;
        other.waiting = wanted;
        SessionState.drawAbort = on;
        return;
    }
    struct mark {
        explicit mark(DrawSurface& drawn) { running.push_back({&drawn, nullptr}); }
        ~mark() { running.pop_back(); }
    };
    const mark mine(surface);
    const std::size_t place = running.size() - 1;
    while (wanted) {
        running[place].waiting = nullptr;
        const bool drawn = wanted(surface, clearfirst);
        wanted = running[place].waiting;
        clearfirst = true;
        if (!drawn) {
            surface.restore();
            platform::pointer(platform::shape::normal);
        } else if (!wanted)
            surface.keep();
        // Last of all and in no picture that is kept, since they come and go between drawings.
        if (!wanted) {
            drawmarkedpath(surface);
            lineeditorredrawn(surface);
        }
    }
}

} // namespace orv

// Menu commands that draw, print or copy the main picture.
#include "scene/viewcommands.h"

#include "base/runtimeerror.h"
#include "maps/redrawview.h"
#include "platform/platform.h"
#include "scene/scenedrawing.h"
#include "shell/sessionstate.h"

namespace orv {

void Redraw() {
    draw3dview(platform::picture(), true);
}

void CamRedr2D() {
    SessionState.panX = SessionState.panY = 0;
    draw2dview(platform::picture(), true);
}

void Cprint() {
    if (!viewpossible()) return platform::beep(); // the page would stay empty
    untilcancelled([] { platform::printpicture([](DrawSurface& page) { redrawview(page); }); });
}

void printsetup() {
    untilcancelled([] { platform::printersetup(); });
}

void Copy() {
    platform::clippicture();
    platform::beep();
}

} // namespace orv

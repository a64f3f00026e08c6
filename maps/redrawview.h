// Which picture is drawn: the map commands, and the one entry through which camera edits and pans ask for the
// present picture again.
#pragma once

#include "scene/drawsurface.h"

namespace orv {

// The present picture once more, in its turn (scene/drawingturn.h), without clearing: the last map where it
// is still good (mapKind "Dither" and gridReady, "Contour" and contourReady), otherwise the plain scene; in
// 3D when the camera group is shown. Keeps mapKind. A map without a gridding engine is therefore not
// repeated, which would take its time again.
void redrawview(DrawSurface& surface);

// --- Menu commands. Show the mapping options, and unless they are cancelled draw the map on the cleared main
// picture. A map that cannot be drawn says why and leaves the plain scene. ---

void MapDoDither2D();
void MapDoDither3D();
void MapDoContour2D();
void MapDoContour3D();

} // namespace orv

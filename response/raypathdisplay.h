// Ray paths in the scene: the path under the plot's cursor, from its source through its reflections to the
// receiver, with the faces hit.
//
// It is drawn over the finished picture in a reversible pen mode, so that drawing it again removes it.
// Between drawings of the scene exactly the path SessionState.markedPath of the plot's receiver is on the
// picture.
#pragma once

#include "scene/drawsurface.h"

#include <cstdint>

namespace orv {

// "Ray Paths": shows the impulse response window beside the scene, from then on with the stored paths in
// both; the second time it closes the window.
void viewraypaths();

// Whether the paths are shown now.
bool raypathsshown();

// The path of the plot's receiver nearest to a time (s), the later one of two that are equally near; 0 for a
// receiver without paths.
std::int32_t nearpath(double time);

// Draws a path in the present view; nothing for a path or receiver that does not exist, a path that arrives
// behind the response, and one whose source or a face is none of the room's.
void drawpath(DrawSurface& surface, std::int32_t path, std::int32_t receiver);

// Removes the marked path from the main picture, if there is one, and marks and draws another, path 0 for
// none. A drawing that runs there draws it at its end.
void markpath(std::int32_t path, std::int32_t receiver);

// The marked path on a picture that has just been drawn.
void drawmarkedpath(DrawSurface& surface);

} // namespace orv

// Gridding of a map by an engine outside.
#include "maps/surfer.h"

#include "base/runtimeerror.h"

namespace orv {

void surfergrid(double, double, double, double) {
    throw runtimeerror{errorkind::filenotfound, "The gridding engine is not there yet."};
}

} // namespace orv

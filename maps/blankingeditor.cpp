// Entering a blanking line: nothing starts it, so that no event is its own.
#include "maps/blankingeditor.h"

namespace orv {

bool lineeditoractive() {
    return false;
}

bool lineeditorfollows() {
    return false;
}

void lineeditorclick(bool, double, double) {}

void lineeditormove(double, double) {}

void lineeditorescape() {}

} // namespace orv

// Entering a blanking line on the main picture, click by click.
#pragma once

namespace orv {

// Whether a line is being entered, and whether its band follows the pointer.
bool lineeditoractive();
bool lineeditorfollows();

// The pointer's events of that time, in window coordinates of the picture, and the Escape key.
void lineeditorclick(bool left, double x, double y);
void lineeditormove(double x, double y);
void lineeditorescape();

} // namespace orv

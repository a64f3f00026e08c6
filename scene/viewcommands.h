// Menu commands that draw, print or copy the main picture.
#pragma once

namespace orv {

void Redraw();     // "Draw 3D"; keeps the pan
void CamRedr2D();  // "Draw 2D"; without pan
void Cprint();     // "Print Image...": the print dialog, then the present view on the printer; keeps mapKind
void printsetup(); // "Printer Setup..."
void Copy();       // the main picture to the clipboard, with a beep

} // namespace orv

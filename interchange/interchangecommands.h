// The commands of the File menu that exchange rooms with other programs, as drawings. As with all file
// commands a cancelled dialog leaves everything as it was, other commands are suspended meanwhile, and what a
// reader or writer raises passes on.
#pragma once

namespace orv {

void DXFIN();  // "DXF In...": the drawing becomes the room, and its name that of the room's file
void DXFOUT(); // "DXF Out...": proposes the room's name with the extension dxf, keeps the room's name

} // namespace orv

// The commands of the File menu that exchange rooms with other programs. As with all file commands a
// cancelled dialog leaves everything as it was, other commands are suspended meanwhile, and what a reader or
// writer raises passes on.
#pragma once

namespace orv {

void DXFIN();  // "DXF In...": the drawing becomes the room, and its name that of the room's file
void DXFOUT(); // "DXF Out...": proposes the room's name with the extension dxf, keeps the room's name

// Behind each of these imports the room's file has the name of the one that was read with the extension ray,
// under which Fsave proposes to keep it.
void ImportNastran(); // "Import Nastran file": a loaded result counts as gone behind it
void ImportCatt();    // "Import from Catt Acoustics"
void ImporRayonGeo(); // "Import from Rayons...", not shown in the menu

void ExportCatt(); // "Export to Catt Acoustics": proposes the room's name with the extension geo
void FileExport(); // "Export to Rayons...", not shown in the menu

} // namespace orv

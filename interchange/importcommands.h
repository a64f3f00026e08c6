// The commands of the File menu that exchange rooms with other programs by Nastran, Catt and Rayons files:
// dialog, reader or writer, then menus, title and picture in line with what is now loaded, in the way of
// shell/workflows.h. An imported room gets the name of the file with the extension ray, under which it can be
// saved.
#pragma once

namespace orv {

void ImportNastran(); // "Import Nastran file": a loaded result counts as gone behind it
void ImportCatt();    // "Import from Catt Acoustics"
void ExportCatt();    // "Export to Catt Acoustics"

// Not shown in the menu.
void ImporRayonGeo(); // "Import from Rayons..."
void FileExport();    // "Export to Rayons..."

} // namespace orv

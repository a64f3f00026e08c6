// What a map shows and how: the rules behind the dialog "Mapping Options". Every edit goes into SessionState
// at once and makes out of date (gridReady, contourReady of 0) what depends on it: the gridded map and the
// contours on most edits, the contours alone on those of the levels. Controls are named as the form names
// them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orv {

void MapOptions(); // "Mapping Options...": opens the dialog

// The dialog is opened or comes back from View Options. Stores every field as it will be shown (a level of
// 79.25 becomes 79.3, which is meant) and levelStep; maps stay as much up to date as they were. Takes back an
// earlier Cancel and makes surferMethod usable.
void openmappingoptions();

// --- Number fields MinL, MaxL, Nx, Ny, MaxR and Zvalue ---

// The text of a field for its setting.
std::string fieldtext(std::string_view field);

// The text of a field has become `text`: stores what it reads as. Zero and less leave the divisions as they
// were, zero leaves the radius, and a number that its setting cannot hold leaves any. Returns what the field
// then shows.
std::string typefield(std::string_view field, const std::string& text);

// The spin button beside a field that shows `text`. Returns what the field then shows, stored as if typed. A
// field that reads as zero has no steps, but for MaxR.
std::string spinfield(std::string_view field, const std::string& text, bool up);

// The value behind "Increment =".
std::string incrementtext();

// --- Lists ActFreq, Parameter, Colsch and Interpol ---

std::span<const std::string_view> listentries(std::string_view list);
int listposition(std::string_view list); // 0 is the first entry
void choosefromlist(std::string_view list, int position);

// --- Boxes. Those that ask before they are ticked return whether they are ticked in the end. ---

bool tickmirror(bool ticked);   // Check3d3
bool tickblanking(bool ticked); // blanking: asks for the file
void ticksurfer(bool ticked);   // Surfer

// --- Captions, which change with viewPlane ---

std::string_view thirdcaption();  // ThirdCoordLabel
std::string_view mirrorcaption(); // Check3d3

} // namespace orv

// What the scene shows and in which colours, as the dialog "View Options" edits it: each choice goes at once
// into SessionState and into the marks of the menu entries that hold the settings. Nothing is drawn by it;
// the next drawing shows the change.
#pragma once

#include "shell/sessionstate.h"

#include <array>
#include <string_view>

namespace orv {

void ViewOpt(); // "View Options...": opens the dialog

// The check boxes by their controls: the state of the setting behind one, and a click that gives it another.
constexpr std::array<std::string_view, 10> viewboxes = {"Check1", "Check2", "Check3", "Check4", "Check5",
                                                        "Check6", "Check7", "Check8", "Check9", "CheckDXF"};
bool viewbox(std::string_view box);
void clickviewbox(std::string_view box, bool ticked);

// The colour pictures and the colours that they show, 0x00BBGGRR.
struct viewcolour {
    std::string_view picture;
    std::int32_t sessionstate::*colour;
};
constexpr std::array<viewcolour, 6> viewcolours = {{{"Picture2", &sessionstate::colourRoom},
                                                    {"Picture3", &sessionstate::colourSources},
                                                    {"Picture4", &sessionstate::colourReceivers},
                                                    {"Picture5", &sessionstate::colourBlanking},
                                                    {"Picture7", &sessionstate::colourPosted},
                                                    {"Picture9", &sessionstate::colourRays}}};

// A click on a colour picture: asks for another colour, which a cancel leaves as it is.
void clickviewcolour(const viewcolour& clicked);

// XY, YZ or XZ of the dialog: as on the main window, which shows the choice too, but nothing is drawn.
void clickviewplane(planechoice plane);

} // namespace orv

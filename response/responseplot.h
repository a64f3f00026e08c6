// The plot of the impulse response window: levels by slot, the decay curve over them, two cursors with their
// read-outs, the decay between them, and the zoom. The window itself (response/responsewindow.cpp) only hands
// its events to these routines and shows what stands here.
//
// Plot coordinates are seconds and dB. Cursors and the zoom's box are drawn in exclusive-or mode over the
// finished plot, so that moving them redraws a few lines and no more.
#pragma once

#include "scene/drawsurface.h"

#include <cstdint>
#include <string>

namespace orv {

constexpr const char* responsewindowname = "Impulse Response";

// A cursor or box that is on the plot now, as it was drawn.
struct plotmark {
    bool drawn = false;
    double time = 0, until = 0; // s; a box runs from one to the other
    double level = 0;           // dB
    bool ofpath = false;
};

struct responseplot {
    DrawSurface* surface = nullptr; // of the open window, null while it is closed

    // Chosen entries of the lists, -1 for none: 0 is the room in RecNo, 31.5 Hz in FreqNo.
    std::int32_t RecNo = -1, FreqNo = -1;

    float cursorStart = 0, cursorSecond = 0; // s, of the left and the right button
    float dragEnd = 0;                       // s, the moving end of a drag
    float measuredDrop = 0;                  // dB, between the cursors
    float measuredDecay = 0;                 // s for 60 dB

    // The read-outs' texts.
    std::string Xtext, PathLenght, SPLlabel, schlabel, revtime, PathN;

    plotmark start, second, box;
};

extern responseplot ResponsePlot;

// "Impulse Response": the window, modal, on the whole response.
void ViewImpulse();

// The window is open with its plot on `surface` (which must stay where it is): chooses 1000 Hz and receiver 1
// and draws. The window has been closed: paths are taken from the scene and their menu entry set back.
void openplot(DrawSurface& surface);
void closeplot();

// Closes the window if it is open and forgets what it showed, for who replaces the responses.
void forgetresponse();

// Sets viewStart and viewEnd to the whole response.
void showwholeresponse();

// Draws everything for the times t1..t2 (s), with the levels computed anew where another receiver or band is
// chosen or paths have come or gone; the first path is then marked. Nothing is drawn for an empty span.
void impulsedraw(double t1, double t2);

// Moves a cursor (button 1 left, 2 right) to a time, limited to the response, and refreshes the read-outs and
// the decay. With paths, the left one stands on selectedPath, which becomes the marked one.
void updatecursor(double time, int button);

// A press at a time: the cursor on its slot, or on the path nearest to it.
void pressplot(double time, int button);

// A drag with the left button: widens the box to a time. Its end: the box becomes the view, unless it is
// narrower than 1 % of it.
void evidence(double time);
void zoom();

// A key (platform/keycodes.h) from the plot, Xtext and the lists; `typed` is the text of Xtext.
void presskey(int code, const std::string& typed);

// Whether a key moves the cursor or resets the zoom, and is not the control's own.
bool isplotkey(int code);

// A choice in a list. With paths the room is refused: receiver 1 takes its place.
void choosereceiver(std::int32_t entry);
void choosefrequency(std::int32_t entry);

// A click on schlabel: the decay curve comes and goes.
void toggleschroeder();

} // namespace orv

// The scripted double of platform/platform.h, for tests, fuzz targets and benchmarks: no window system behind
// it. It records every call as one line of text, answers boxes and dialogs from a queue that the test fills,
// and reports any box or dialog that the test did not expect.
//
// Lines are a word and its arguments: words and switches follow a blank, free texts follow "|".
//     box|TITLE|TEXT|yesno|stop|no        buttons, icon, default button
//     open|TITLE|FILTER|PROPOSAL|DIR      save|... alike
//     colour 255                          the colour shown first
//     print   printersetup                window About modal|modeless   closewindow About   updatewindow
//     About yield   beep   close   halt 1       pointer wait status 1|TEXT   title|TEXT   background 12632256
//     clearlog   log|TEXT
//     text CamX|-10   visible Frame1 0    enabled Redisplay 1   chosen XY 1
//     rows RecNo 31   row List1|TEXT      row List1 selected|TEXT
//     progress ProgressBar1 12.5
//     command Redraw enabled|disabled     then " checked" and " hidden" where they hold;
//                                         by the rules, and only when that differs from the line before
//     cliptext|TEXT   clippicture         regionsettings   document|PATH   start|COMMAND
#pragma once

#include "platform/platform.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orv::scripted {

// Everything back to the state of a fresh process, the failure handler and the switch of recording excepted.
void reset();

// What is done at a call that the test did not expect; the text says which. If it returns, a box closes with
// its default button and a dialog is cancelled. Without a handler the text is printed and the process aborts.
void onfailure(std::function<void(const std::string&)> handler);

// --- Recorded calls ---

// Whether calls are recorded; on at first. Off, a call costs next to nothing.
void record(bool recorded);

const std::vector<std::string>& calls();
void clearcalls();

// The recorded lines that begin with a text, in order; how many there are; whether one is exactly this.
std::vector<std::string> callswith(std::string_view beginning);
std::size_t countcalls(std::string_view beginning);
bool called(std::string_view line);

// --- Answers. One queue for all kinds, so that their order is checked too. ---

constexpr std::nullopt_t cancelled = std::nullopt;
using step = std::function<void()>;

// The next thing shown is a message box whose title or text holds `fragment`.
void expectbox(std::string fragment, platform::answer given);

// ... a file dialog whose title holds `fragment`; answered with a path or `cancelled`.
void expectopen(std::optional<std::string> path, std::string fragment = {}); // several: a line for each
void expectsave(std::optional<std::string> path, std::string fragment = {});

// ... the colour dialog.
void expectcolour(std::optional<std::int32_t> colour);

// ... the print dialog: the page is drawn on `page`, or the dialog is cancelled for null.
void expectprint(DrawSurface* page);

// ... a window of the program; `inside` runs while it is open.
void expectwindow(std::string name, step inside = {});

// What the next closing of a window does, once.
void atclose(std::string name, step run);

// What was expected and has not been shown, one line each.
std::vector<std::string> pending();

// Runs a step within the n-th yield from now (1 is the next one).
void atyield(int n, step run);
std::int64_t yieldcount();

// --- What is shown ---

bool isenabled(const std::string& control); // true until set
bool ischosen(const std::string& control);  // false until set
const std::vector<std::string>& rowsof(const std::string& control);
std::string statustext(int panel); // kept while calls are recorded, as the two below
std::string title();
const std::vector<std::string>& logtext(); // the lines since the last clearlog
platform::shape pointershape();
bool windowsclosed();

// --- The machine ---

void setpicture(DrawSurface* surface);       // not owned; null at first, and asking for it then is a failure
void setregion(platform::regionmarks marks); // "." and "," at first
void setmemory(std::uint64_t bytes);         // 8 GiB at first
void setprogramdirectory(std::string directory); // "." at first
void setprograms(bool there); // whether a command line or document finds its program; yes at first

// What platform::halt throws here; no runtimeerror, so that no trap of the program stops it.
struct halted {
    int status;
};

} // namespace orv::scripted

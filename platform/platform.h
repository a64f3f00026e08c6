// The one seam to the window system: plain functions that the core calls. platform/qt implements them with
// real windows; platform/scripted is the double that tests link, which answers from a queue and records
// every call.
//
// Texts are in the files' code page (base/files.h); paths are the file system's own bytes. Controls and
// windows are named as the forms name them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orv {
struct DrawSurface;
struct menucommand;
} // namespace orv

namespace orv::platform {

// --- Boxes and dialogs. All are modal; those with a Cancel raise errorkind::cancelled for it. ---

enum class buttons { ok, okcancel, yesno };
enum class answer { ok, cancel, yes, no };
enum class icon { none, information, question, exclamation, stop };

// A message box; returns the button that closed it. `preset` is the default button.
answer messagebox(const std::string& title, const std::string& text, buttons choice, icon sign,
                  answer preset);

// One that only has to be read.
inline void warningbox(const std::string& title, const std::string& text) {
    messagebox(title, text, buttons::ok, icon::exclamation, answer::ok);
}

// A file dialog. `filter` has the form "Text (*.x)|*.x", alternatives follow behind further "|".
struct filerequest {
    std::string title;
    std::string filter;
    std::string proposal;  // a path, a name or a pattern
    std::string directory; // first directory shown when the proposal names none
    bool completed = true; // a saved name without an extension gets that of the filter
};
std::string askopenfile(const filerequest& request);
std::vector<std::string> askopenfiles(const filerequest& request); // one or several of one directory
std::string asksavefile(const filerequest& request);

// The system's colour dialog; colours are 0x00BBGGRR.
std::int32_t askcolour(std::int32_t present);

// Shows the print dialog, then hands the printer's page to `draw` and ends the document.
void printpicture(const std::function<void(DrawSurface&)>& draw);

// The printer set-up dialog.
void printersetup();

// Opens one of the program's own windows by name ("About"), modally or beside the main window.
void showwindow(const std::string& name, bool modal);

// Closes a window that is open beside the main one, as its user does; brings what it shows in line with the
// state behind it. Both do nothing when it is not open.
void closewindow(const std::string& name);
void updatewindow(const std::string& name);

// --- The event loop ---

// Lets the window system handle what has come in. Routines call it at fixed points of a long job; the window
// side sees to it that not more than about 60 repaints a second follow.
void yield();

// Closes the main window and with it all others, which ends the event loop.
void closewindows();

// Ends the process at once with the given status, without a word.
[[noreturn]] void halt(int status);

// --- What the main window shows ---

enum class shape { normal, wait, sizeall, cross, arrow, placedpoint };
void pointer(shape form);

// `panel` is 1 (the action) or 2 (the percentage).
void statustext(int panel, const std::string& text);

void windowtitle(const std::string& text);

// Background of the window behind the log, 0x00BBGGRR; returns the former colour.
std::int32_t background(std::int32_t colour);

// The log that loaders print on the main window. `logfill` is the share of the window's height that the
// printed lines take, 0..1.
void clearlog();
void logline(const std::string& text);
double logfill();

// The main picture, Picture1.
DrawSurface& picture();

// Named controls of the main window.
void settext(const std::string& control, const std::string& text);
std::string gettext(const std::string& control);
void setvisible(const std::string& control, bool visible);
bool isvisible(const std::string& control);
void setenabled(const std::string& control, bool enabled);
void setchosen(const std::string& control, bool chosen);

// These and those above also find a control of the dialog in front, when the main window has none of that
// name. The rows of a list or a drop-down list, the first of which is then selected; one more row of a list,
// which is selected if wanted; a progress bar from 0 to 100.
bool isenabled(const std::string& control);
bool ischosen(const std::string& control);
void setrows(const std::string& control, const std::vector<std::string>& rows);
void addrow(const std::string& control, const std::string& text, bool selected);
void setprogress(const std::string& control, double percent);

// A menu command whose state has changed.
void showcommand(const menucommand& command);

// --- The machine ---

void beep();
void cliptext(const std::string& text);
void clippicture(); // the image of Picture1

// The desktop's settings of number formats, and a document in the program that the desktop has for it. Do
// not wait for either.
void showregionsettings();
void opendocument(const std::string& path);

// Whether the desktop says that it has a program for documents of that name.
bool hasopener(const std::string& path);

// Starts a command line in a normal window and does not wait for it. Raises filenotfound with a text that
// names the program when it cannot be started.
void startcommand(const std::string& commandline);

// The decimal and group marks of the user's region.
struct regionmarks {
    std::string decimal;
    std::string group;
};
regionmarks userregion();

// Memory of the machine in bytes, of which a result may take three quarters.
std::uint64_t memorybytes();

// The directory of the program's own file.
std::string programdirectory();

} // namespace orv::platform

// What the steps of the tour are made of: acting on the main window as a user does, looking at what came of
// it, and taking pictures. For Qt files only.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace orv::tour {

// One step. When its routine has run and all boxes and dialogs that it expected (platform/qt/answers.h) have
// been answered, the window is shown as it then is in a picture of the given name; "" for none.
struct step {
    const char* name;
    void (*run)();
    const char* picture;
};

// Runs the steps in order and prints a line for each, then what was made. `output` is where the pictures go,
// and `output`/session the files. Needs a running event loop. Returns whether every step was good.
bool run(std::span<const step> steps, const std::string& output);

// --- Acting; what cannot be done is a failure of the step ---

// Clicks the entry of a menu command.
void choose(std::string_view command);

// Opens a menu and takes a picture of it.
void lookintomenu(std::string_view menu, const char* picturename);

// Types a text into a field in place of what stands there, and Enter.
void type(const char* field, const char* text);

void click(const char* button);

// A key (Qt::Key) on the main window.
void press(int key);

// --- Looking ---

// The step fails, for the reason given, unless `good`.
void check(bool good, const std::string& reason);

// Takes a picture of all windows that are shown, in the order of taking: "01-NAME.png", ...
void picture(const std::string& name);

// Runs a load and takes a picture of its log, as it was when the load last let events in.
void watchlog(const std::string& name, const std::function<void()>& load);

// A number that changes when anything of the main picture does.
std::size_t picturesum();

// --- Files ---

// A file of the data directory, and one of the session that is left behind, in its directory.
std::string datafile(const std::string& name);
std::string sessionfile(const std::string& name);
std::string sessiondirectory();

// Milliseconds since the start of this process; 0 where the system does not tell.
double processage();

} // namespace orv::tour

// The main window's menus as data, and the state of every command.
//
// The rows stand in menucommands.cpp in the order of the menus. State is what the rules of the workflows set
// it to; a command without a routine is shown disabled whatever they set, since there is nothing to run.
#pragma once

#include <span>
#include <string_view>

namespace orv {

struct menucommand {
    std::string_view menu;    // name of the menu it stands in
    std::string_view name;    // "" for a separator
    std::string_view caption; // with the mnemonic behind "&"
    void (*run)();            // null when it has no action
    bool visible;
    bool enabled;
    bool checkable;
    bool checked;
};

// The menus themselves, in order: name and caption.
struct menutitle {
    std::string_view name;
    std::string_view caption;
};
std::span<const menutitle> menutitles();

// All rows in order, separators included.
std::span<menucommand> menucommands();

// The row of a command. Raises subscript for a name that no row has.
menucommand& command(std::string_view name);

// Sets the state and tells the window system (platform::showcommand).
void enablecommand(std::string_view name, bool enabled);
void checkcommand(std::string_view name, bool checked);
void showcommandentry(std::string_view name, bool visible);

bool ischecked(std::string_view name);
bool isenabled(std::string_view name); // by the rules, whether or not it has a routine

// Whether the window may offer it: enabled by the rules, with a routine behind it, and not suspended.
bool isoffered(const menucommand& row);

// Runs the command's routine as a click on its entry does; nothing when it is not offered.
void runcommand(std::string_view name);

// While a long job runs that nothing may disturb, no command is offered but FQuit and the Help menu; the
// rules' states can change meanwhile. Tells the window system about every row.
void suspendcommands(bool now);
bool commandssuspended();

// Turns autoRedraw on or off, with the caption of Redisplay and the mark of AutRed.
void setautoredraw(bool redraws);
void toggleautoredraw();

// Puts every row back to its state at the start of the program (start-up and tests).
void resetcommands();

} // namespace orv

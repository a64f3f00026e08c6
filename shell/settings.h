// The settings file orvanta.ini of the data directory, shared with the calculation engine: one setting to a
// line, of the form key, "=", value, with optional text behind the value. A key is the first four characters
// of its line, in exact case. Lines of other keys are only carried through.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace orv {

constexpr int settinglines = 60; // what a writer can carry

// The settings file's path, found in any letter case.
std::string settingsfile();

// Stores the value of one line, when its key is one of "Leve", "Time", "Prec", "Hist", "Humi", "Temp", "Alfa"
// and "Beta", in SessionState or ResultSet: what stands behind the first "=" (the whole line without one), by
// the lenient number parse. Raises overflow for a value too large for its variable, which keeps its value.
void applysetting(std::string_view line);

// Applies every line of the settings file, in order, so that of two lines with one key the later wins. A line
// that fails leaves its variable. Raises filenotfound or fileaccess.
void readsettings();

// One setting to be written: its key of four characters, and the text of the new value.
struct settingchange {
    std::string_view key;
    std::string value;
};

// What becomes of the text behind the old value, from its first blank on.
enum class behindvalue { dropped, kept };

// Gives every line with one of the keys its new value: the line up to and including its first "=" (nothing of
// it when it has none), the value's text, and the text behind the old value if it is kept. All other lines
// stay as they are, byte by byte; all are written with CR LF. Raises filenotfound, fileaccess, and subscript
// at a 61st line, each of which leaves the file as it was.
void updatesettings(std::initializer_list<settingchange> changes, behindvalue rest);

} // namespace orv

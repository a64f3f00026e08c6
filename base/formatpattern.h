// Numeric format patterns, for everything that is shown to a person and for the fixed columns of files.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// The value written by a pattern such as "##0.0", " ###0.00" or "###,###,###": `#` an optional digit, `0` a
// forced digit, `.` the decimal point, `,` between digits the thousands mark; every other character stands
// as it is, in its place before, between or behind the number.
//
// The value is first taken to its decimal digits, seven for a single-precision number and fifteen for a
// double, and those are rounded to the pattern's places, halves away from zero. A value wider than the
// pattern is written in full. A point with no digit behind it is not written. A zero where only `#` stand
// leaves no digit at all. A negative value keeps its minus wherever a digit is shown, even where only zeros
// are ("-0.0"); the minus stands behind the literals in front.
std::string formatnumber(float value, std::string_view pattern);
std::string formatnumber(double value, std::string_view pattern);
std::string formatnumber(std::int32_t value, std::string_view pattern);

// The same, put behind a text that is being made.
void appendformatted(std::string& text, float value, std::string_view pattern);
void appendformatted(std::string& text, double value, std::string_view pattern);

// A pattern taken apart once, for many numbers; its text must outlive it.
struct numberpattern {
    explicit numberpattern(std::string_view pattern);

    std::string_view front, back; // the literals around the number
    int forcedwhole = 0;          // zeros forced before the point
    int forceddecimals = 0;       // places behind the point that are always written
    int decimals = 0;             // places behind the point at most
    bool thousands = false;
};
void appendformatted(std::string& text, float value, const numberpattern& pattern);

} // namespace orv

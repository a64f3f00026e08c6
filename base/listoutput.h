// Writing text files: their two line forms.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// The line end of every text file that is written.
constexpr std::string_view lineend = "\r\n";

// List form: fields joined by commas without blanks, strings in double quotes, numbers as number text
// without the blank in front. Each routine appends one field to `line`.
void listtext(std::string& line, std::string_view field);
void listnumber(std::string& line, double value);
void listwhole(std::string& line, std::int64_t value);

// Print form: number text with one blank behind ("-2 ", " 3 "). Each appends to `line`.
void printnumber(std::string& line, double value);
void printwhole(std::string& line, std::int64_t value);

// Print zones: pads `line` with blanks to the start of the next zone of 14 columns; at least one zone is
// passed when the line stands at a zone's start already.
void printzone(std::string& line);

} // namespace orv

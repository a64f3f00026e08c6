// The two line forms of text files.
#include "base/listoutput.h"

#include "base/numbertext.h"

namespace orv {

namespace {

constexpr std::size_t zonewidth = 14;

std::string& nextfield(std::string& line) {
    if (!line.empty()) line += ',';
    return line;
}

} // namespace

void listtext(std::string& line, std::string_view field) {
    nextfield(line).append(1, '"').append(field).append(1, '"');
}

void listnumber(std::string& line, double value) {
    nextfield(line) += trimmednumber(value);
}

void listwhole(std::string& line, std::int64_t value) {
    nextfield(line) += trimmedwhole(value);
}

void printnumber(std::string& line, double value) {
    appendnumber(line, value);
    line += ' ';
}

void printwhole(std::string& line, std::int64_t value) {
    appendwhole(line, value);
    line += ' ';
}

void printzone(std::string& line) {
    line.append(zonewidth - line.size() % zonewidth, ' ');
}

} // namespace orv

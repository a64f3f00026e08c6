// Numeric format patterns.
#include "base/formatpattern.h"

#include "base/numbertext.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

constexpr int singleplaces = 7;
constexpr int doubleplaces = 15;

// A pattern taken apart: literals in front, digit places, literals behind.
struct patternparts {
    std::string_view front, back;
    int forcedwhole = 0;    // zeros forced before the point
    int forceddecimals = 0; // places behind the point that are always written
    int decimals = 0;       // places behind the point at most
    bool thousands = false;
};

bool isplace(char c) {
    return c == '#' || c == '0' || c == '.' || c == ',';
}

patternparts takeapart(std::string_view pattern) {
    patternparts parts;
    std::size_t begin = 0;
    while (begin < pattern.size() && !isplace(pattern[begin])) ++begin;
    std::size_t end = begin;
    while (end < pattern.size() && isplace(pattern[end])) ++end;
    parts.front = pattern.substr(0, begin);
    parts.back = pattern.substr(end);
    bool point = false;
    for (const char c : pattern.substr(begin, end - begin)) {
        if (c == '.') {
            point = true;
        } else if (c == ',') {
            parts.thousands = true;
        } else if (!point) {
            // Every place behind the first forced one is forced too.
            if (c == '0' || parts.forcedwhole > 0) ++parts.forcedwhole;
        } else {
            ++parts.decimals;
            if (c == '0') parts.forceddecimals = parts.decimals;
        }
    }
    return parts;
}

void appendwritten(std::string& text, const decimaldigits& exact, bool negative, std::string_view pattern) {
    const patternparts parts = takeapart(pattern);
    const decimaldigits digits = roundedto(exact, parts.decimals);
    const auto digitat = [&digits](int place) { // 0 is the first digit behind the point, -1 the one before
        const int index = digits.point + place;
        return index >= 0 && index < digits.count ? digits.digit[static_cast<std::size_t>(index)] : '0';
    };
    const int wholecount = digits.count > 0 && digits.point > 0 ? digits.point : 0;
    const int wholeplaces = std::max(wholecount, parts.forcedwhole);
    const int needed = digits.count > 0 ? digits.count - digits.point : 0;
    const int places = std::max(needed, parts.forceddecimals);

    text += parts.front;
    if (negative && (wholeplaces > 0 || places > 0)) text += '-';
    for (int place = wholeplaces; place > 0; --place) {
        text += digitat(-place);
        if (parts.thousands && place > 1 && place % 3 == 1) text += ',';
    }
    if (places > 0) text += '.';
    for (int place = 0; place < places; ++place) text += digitat(place);
    text += parts.back;
}

void appendfrom(std::string& text, double value, int places, std::string_view pattern) {
    if (!std::isfinite(value))
        appendnumber(text, value);
    else
        appendwritten(text, significantdigits(value, places), value < 0, pattern);
}

template <class number>
std::string formatted(number value, std::string_view pattern) {
    std::string text;
    appendformatted(text, value, pattern);
    return text;
}

} // namespace

void appendformatted(std::string& text, float value, std::string_view pattern) {
    appendfrom(text, static_cast<double>(value), singleplaces, pattern);
}

void appendformatted(std::string& text, double value, std::string_view pattern) {
    appendfrom(text, value, doubleplaces, pattern);
}

std::string formatnumber(float value, std::string_view pattern) {
    return formatted(value, pattern);
}

std::string formatnumber(double value, std::string_view pattern) {
    return formatted(value, pattern);
}

std::string formatnumber(std::int32_t value, std::string_view pattern) {
    return formatted(static_cast<double>(value), pattern);
}

} // namespace orv

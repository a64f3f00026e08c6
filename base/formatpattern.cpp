// Numeric format patterns.
#include "base/formatpattern.h"

#include "base/numbertext.h"

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

std::string written(const decimaldigits& exact, bool negative, std::string_view pattern) {
    const patternparts parts = takeapart(pattern);
    const decimaldigits digits = roundedto(exact, parts.decimals);
    const auto digitat = [&digits](int place) { // 0 is the first digit behind the point, -1 the one before
        const int index = digits.point + place;
        return index >= 0 && index < digits.count ? digits.digit[static_cast<std::size_t>(index)] : '0';
    };

    std::string whole;
    const int wholecount = digits.count > 0 && digits.point > 0 ? digits.point : 0;
    const int wholeplaces = wholecount > parts.forcedwhole ? wholecount : parts.forcedwhole;
    for (int place = wholeplaces; place > 0; --place) {
        whole += digitat(-place);
        if (parts.thousands && place > 1 && place % 3 == 1) whole += ',';
    }

    std::string decimals;
    const int needed = digits.count > 0 ? digits.count - digits.point : 0;
    const int places = needed > parts.forceddecimals ? needed : parts.forceddecimals;
    for (int place = 0; place < places; ++place) decimals += digitat(place);

    std::string text(parts.front);
    if (negative && !(whole.empty() && decimals.empty())) text += '-';
    text += whole;
    if (!decimals.empty()) text.append(1, '.').append(decimals);
    text += parts.back;
    return text;
}

std::string formatted(double value, int places, std::string_view pattern) {
    if (!std::isfinite(value)) return numbertext(value);
    return written(significantdigits(value, places), value < 0, pattern);
}

} // namespace

std::string formatnumber(float value, std::string_view pattern) {
    return formatted(static_cast<double>(value), singleplaces, pattern);
}

std::string formatnumber(double value, std::string_view pattern) {
    return formatted(value, doubleplaces, pattern);
}

std::string formatnumber(std::int32_t value, std::string_view pattern) {
    return formatted(static_cast<double>(value), doubleplaces, pattern);
}

} // namespace orv

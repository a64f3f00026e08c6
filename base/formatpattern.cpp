// Numeric format patterns.
#include "base/formatpattern.h"

#include "base/numbertext.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orv {

namespace {

constexpr int singleplaces = 7;
constexpr int doubleplaces = 15;

constexpr int mostplaces = 16; // whose power of ten a whole number holds
constexpr auto powers = [] {
    std::array<std::uint64_t, mostplaces + 1> power{1};
    for (std::size_t i = 1; i < power.size(); ++i) power[i] = power[i - 1] * 10;
    return power;
}();

bool isplace(char c) {
    return c == '#' || c == '0' || c == '.' || c == ',';
}

// The usual case, a number and a pattern of few places, by whole numbers alone. False leaves it to
// appendwritten.
bool appendquickly(std::string& text, double value, int places, const numberpattern& parts) {
    if (parts.thousands || parts.forcedwhole > mostplaces || parts.forceddecimals > mostplaces) return false;
    const auto number = value == 0 ? scalednumber{} : scaledigits(std::fabs(value), places);
    if (!number || number->decimals < 0 || number->decimals > mostplaces) return false;
    int decimals = std::min(number->decimals, parts.decimals);
    const std::uint64_t cut = powers[static_cast<std::size_t>(number->decimals - decimals)];
    std::uint64_t rest = (number->whole + cut / 2) / cut;
    for (; decimals > parts.forceddecimals && rest % 10 == 0; --decimals) rest /= 10;

    char form[64];
    char* const end = form + sizeof form;
    char* at = end;
    for (int i = decimals; i < parts.forceddecimals; ++i) *--at = '0';
    for (int i = 0; i < decimals; ++i, rest /= 10) *--at = static_cast<char>('0' + rest % 10);
    if (at != end) *--at = '.';
    for (int i = 0; rest > 0 || i < parts.forcedwhole; ++i, rest /= 10)
        *--at = static_cast<char>('0' + rest % 10);
    if (value < 0 && at != end) *--at = '-';
    text += parts.front;
    text.append(at, static_cast<std::size_t>(end - at));
    text += parts.back;
    return true;
}

void appendwritten(std::string& text, const decimaldigits& exact, bool negative, const numberpattern& parts) {
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

void appendfrom(std::string& text, double value, int places, const numberpattern& pattern) {
    if (!std::isfinite(value)) return appendnumber(text, value);
    if (!appendquickly(text, value, places, pattern))
        appendwritten(text, significantdigits(value, places), value < 0, pattern);
}

template <class number>
std::string formatted(number value, std::string_view pattern) {
    std::string text;
    appendformatted(text, value, pattern);
    return text;
}

} // namespace

numberpattern::numberpattern(std::string_view pattern) {
    std::size_t begin = 0;
    while (begin < pattern.size() && !isplace(pattern[begin])) ++begin;
    std::size_t end = begin;
    while (end < pattern.size() && isplace(pattern[end])) ++end;
    front = pattern.substr(0, begin);
    back = pattern.substr(end);
    bool point = false;
    for (const char c : pattern.substr(begin, end - begin)) {
        if (c == '.') {
            point = true;
        } else if (c == ',') {
            thousands = true;
        } else if (!point) {
            // Every place behind the first forced one is forced too.
            if (c == '0' || forcedwhole > 0) ++forcedwhole;
        } else {
            ++decimals;
            if (c == '0') forceddecimals = decimals;
        }
    }
}

void appendformatted(std::string& text, float value, const numberpattern& pattern) {
    appendfrom(text, static_cast<double>(value), singleplaces, pattern);
}

void appendformatted(std::string& text, float value, std::string_view pattern) {
    appendformatted(text, value, numberpattern(pattern));
}

void appendformatted(std::string& text, double value, std::string_view pattern) {
    appendfrom(text, value, doubleplaces, numberpattern(pattern));
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

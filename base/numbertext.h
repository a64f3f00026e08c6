// Numbers as text and text as numbers, the same on every machine and under every locale.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orv {

// Number text: at most seven significant digits, halves away from zero, trailing zeros dropped; a blank in
// front unless negative; no zero before the point below one. Plain while all digits, the zeros directly
// behind the point included, fit in seven places (" .0123456", " 9999999"), otherwise mantissa, E, sign and
// at least two digits (" 1.234567E-02"). Zero of either sign is " 0". A single-precision value and a double
// give the same seven digits, so that both are passed here.
std::string numbertext(double value);

// The same, put behind a text that is being made.
void appendnumber(std::string& text, double value);

// A whole number in full: a blank or, when negative, a minus, then all digits.
std::string wholetext(std::int64_t value);
void appendwhole(std::string& text, std::int64_t value);

// The text without the blank in front, as list form and settings lines have it.
std::string trimmednumber(double value);
std::string trimmedwhole(std::int64_t value);

// The decimal digits of a number: value = 0.d1d2d3... times 10 to the power of `point`, without trailing
// zeros. `count` is 0 for a value of zero.
struct decimaldigits {
    bool negative = false;
    int count = 0;
    int point = 0;
    std::array<char, 20> digit{}; // '0'..'9', the first `count` of them in use
};

// The first `places` (1..17) significant digits of a finite value, halves away from zero.
decimaldigits significantdigits(double value, int places);

// The same digits rounded to `decimals` (0 or more) places behind the point, halves away from zero.
decimaldigits roundedto(const decimaldigits& digits, int decimals);

// The first `places` significant digits of a finite magnitude above 0 as one whole number, halves up: the
// magnitude times ten to the power of `decimals`. The quick way for usual numbers; none where one product
// cannot tell the digits, which significantdigits can.
struct scalednumber {
    std::uint64_t whole = 0; // up to ten to the power of `places`, which it is when all digits round up
    int decimals = 0;
};
std::optional<scalednumber> scaledigits(double magnitude, int places);

// What a number reads as: its value, and how many characters of the text belong to it (0 when the text
// begins with no number). `overflow` is set when it is too large for a double; one too small is 0.
struct numberprefix {
    double value = 0;
    std::size_t length = 0;
    bool overflow = false;
};

// The longest numeric prefix of a text: sign, digits, one point, an exponent (E or D, sign) only if a digit
// follows. Nothing in front is skipped. The value is the nearest double.
numberprefix readprefix(std::string_view text);

// Lenient number parse: blanks and tabs in front dropped, then the longest numeric prefix; 0 when there is
// none. Raises overflow for a number that no double holds.
double lenientnumber(std::string_view text);

} // namespace orv

// Numbers as text and text as numbers.
#include "base/numbertext.h"

#include "base/exactpowers.h"
#include "base/runtimeerror.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace orv {

namespace {

constexpr int plainplaces = 7; // digits a number text shows, and the places its plain form may take

constexpr std::uint64_t exactwhole = std::uint64_t{1} << 53; // a double holds every whole number up to this
constexpr int wholeplaces = 19;                              // digits of any number that 64 bits hold
constexpr int mostexponent = 100000;                         // beyond all that a double tells apart

constexpr int alldigits = 767;        // that the exact value of a double can have
constexpr std::size_t formsize = 800; // room for them with point and exponent

// Writes the value's digits in scientific form, `places` of them, and returns the exponent of ten. The
// library rounds exact ties to even.
int scientific(double magnitude, int places, char* digits) {
    char form[formsize];
    const auto end =
        std::to_chars(form, form + sizeof form, magnitude, std::chars_format::scientific, places - 1).ptr;
    digits[0] = form[0];
    if (places > 1) std::memcpy(digits + 1, form + 2, static_cast<std::size_t>(places - 1));
    const char* exponent = form + (places > 1 ? places + 1 : 1) + 1; // behind the e
    int power = 0;
    std::from_chars(*exponent == '+' ? exponent + 1 : exponent, end, power);
    return power;
}

// Whether the exact value stands halfway between two numbers of `places` digits.
bool halfway(double magnitude, int places) {
    char digits[formsize];
    scientific(magnitude, places + 1, digits);
    if (digits[places] != '5') return false;
    // Most numbers that look like a tie are none, which a few more digits show; all of them decide the rest.
    for (const int depth : {places + 12, alldigits}) {
        scientific(magnitude, depth, digits);
        if (digits[places] != '5') return false;
        for (int i = places + 1; i < depth; ++i)
            if (digits[i] != '0') return false;
    }
    return true;
}

// Adds one to the last of `count` digits; on a carry out of the first, the digits become 10...0 and the
// return value is true.
bool stepup(char* digits, int count) {
    int i = count - 1;
    while (i >= 0 && digits[i] == '9') digits[i--] = '0';
    if (i >= 0) {
        ++digits[i];
        return false;
    }
    digits[0] = '1';
    return true;
}

void dropzeros(decimaldigits& digits) {
    while (digits.count > 0 && digits.digit[static_cast<std::size_t>(digits.count - 1)] == '0')
        --digits.count;
}

bool isdigit(char c) {
    return c >= '0' && c <= '9';
}

// What stands in front of an exponent.
struct mantissa {
    std::uint64_t whole; // of the digits that fit
    int digits;          // how many those are, from the first that is not 0
    int power;           // of ten, times which `whole` is meant
    bool seen;           // there is a digit at all
    bool cut;            // some other than 0 did not fit
};

// Takes digits with at most one point among them. In variables of its own, which stay in registers.
mantissa takemantissa(const char*& from, const char* end) {
    const char* at = from;
    std::uint64_t whole = 0;
    int digits = 0, power = 0;
    bool seen = false, point = false, cut = false;
    for (; at != end; ++at) {
        const auto digit = static_cast<unsigned>(static_cast<unsigned char>(*at) - '0');
        if (digit <= 9) {
            seen = true;
            if (digits < wholeplaces) {
                whole = whole * 10 + digit;
                if (whole != 0) ++digits;
                power -= point;
            } else {
                cut = cut || digit != 0;
                power += !point;
            }
        } else if (*at == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    from = at;
    return {whole, digits, power, seen, cut};
}

// Takes an exponent, only if a digit follows its letter and sign; 0 where there is none.
int takeexponent(const char*& at, const char* end) {
    if (at == end || !(*at == 'E' || *at == 'e' || *at == 'D' || *at == 'd')) return 0;
    const char* ahead = at + 1;
    const bool down = ahead != end && *ahead == '-';
    if (ahead != end && (*ahead == '-' || *ahead == '+')) ++ahead;
    if (ahead == end || !isdigit(*ahead)) return 0;
    int exponent = 0;
    for (; ahead != end && isdigit(*ahead); ++ahead)
        if (exponent < mostexponent) exponent = exponent * 10 + (*ahead - '0');
    at = ahead;
    return down ? -exponent : exponent;
}

// Whether the number is one operation away from its two parts, which a double holds exactly.
bool isexact(const mantissa& read, int power) {
    return !read.cut && read.whole <= exactwhole && power >= -highestexact && power <= highestexact;
}

// The value of a number that is not, from its digits as they are written.
void readlong(std::string_view digits, int exponent, bool large, numberprefix& result) {
    const std::string plain = std::string(digits) + 'e' + std::to_string(exponent);
    if (std::from_chars(plain.data(), plain.data() + plain.size(), result.value).ec ==
        std::errc::result_out_of_range) {
        result.overflow = large; // else it is too small, which is 0
        result.value = 0;
    }
}

} // namespace

// One product with an exact power of ten. It is rounded by half a unit of its last place at most, so that
// only a product that reads exactly as a half may stand on either side of it; there its remainder, which a
// double holds, decides.
std::optional<scalednumber> scaledigits(double magnitude, int places) {
    if (places > exactplaces) return std::nullopt;
    const int binary = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> 52) - 1023;
    int power = places - 1 - binary * 1233 / 4096; // log10 2, which gives the decimal exponent or one beside
    if (power < 1 - highestexact || power > highestexact - 1) return std::nullopt;
    double scaled = timespoweroften(magnitude, power);
    if (scaled >= exactpower[places]) {
        scaled = timespoweroften(magnitude, --power);
    } else if (scaled < exactpower[places - 1]) {
        scaled = timespoweroften(magnitude, ++power);
    }
    std::uint64_t whole = static_cast<std::uint64_t>(scaled);
    const double beside = scaled - static_cast<double>(whole) - 0.5;
    if (beside > 0 || (beside == 0 && (power < 0 ? std::fma(-scaled, exactpower[-power], magnitude)
                                                 : std::fma(magnitude, exactpower[power], -scaled)) >= 0))
        ++whole;
    return scalednumber{whole, power};
}

decimaldigits significantdigits(double value, int places) {
    decimaldigits result;
    if (value == 0) return result;
    result.negative = value < 0;
    const double magnitude = std::fabs(value);
    if (const auto scaled = scaledigits(magnitude, places)) {
        result.count = places;
        result.point = places - scaled->decimals;
        std::uint64_t rest = scaled->whole;
        if (rest >= static_cast<std::uint64_t>(exactpower[places])) { // the step up went through all digits
            rest /= 10;
            ++result.point;
        }
        for (int i = places; i-- > 0; rest /= 10)
            result.digit[static_cast<std::size_t>(i)] = static_cast<char>('0' + rest % 10);
        dropzeros(result);
        return result;
    }
    char digits[32];
    int power = scientific(magnitude, places, digits);
    // The library took the even neighbour of a tie; an odd last digit means that it went up already.
    if ((digits[places - 1] - '0') % 2 == 0 && halfway(magnitude, places)) {
        char below[formsize];
        scientific(magnitude, places + 1, below);
        if (std::memcmp(below, digits, static_cast<std::size_t>(places)) == 0 && stepup(digits, places))
            ++power;
    }
    result.count = places;
    result.point = power + 1;
    std::memcpy(result.digit.data(), digits, static_cast<std::size_t>(places));
    dropzeros(result);
    return result;
}

decimaldigits roundedto(const decimaldigits& digits, int decimals) {
    decimaldigits result = digits;
    const int keep = digits.point + decimals; // digits in front of the cut
    if (keep >= digits.count) return result;
    const bool up = keep >= 0 && digits.digit[static_cast<std::size_t>(keep)] >= '5';
    if (keep <= 0) {
        // Nothing is left, or the first digit rounds up to one unit of the last place.
        result.count = up ? 1 : 0;
        result.digit[0] = '1';
        result.point = up ? 1 - decimals : 0;
        return result;
    }
    result.count = keep;
    if (up && stepup(result.digit.data(), keep)) {
        result.point += 1;
        result.count = 1;
    }
    dropzeros(result);
    return result;
}

void appendnumber(std::string& text, double value) {
    if (!std::isfinite(value)) {
        text += std::isnan(value) ? " nan" : value > 0 ? " inf" : "-inf";
        return;
    }
    const decimaldigits digits = significantdigits(value, plainplaces);
    char form[32]; // of which fourteen are the most that is used
    char* at = form;
    const char* digit = digits.digit.data();
    const auto put = [&at](const char* from, int count) {
        for (int i = 0; i < count; ++i) *at++ = from[i];
    };
    const auto putzeros = [&at](int count) {
        for (int i = 0; i < count; ++i) *at++ = '0';
    };
    const int zeros = -digits.point; // directly behind the point, when the value is below one
    *at++ = digits.negative ? '-' : ' ';
    if (digits.count == 0) {
        *at++ = '0';
    } else if (digits.point > plainplaces || (zeros >= 0 && zeros + digits.count > plainplaces)) {
        *at++ = digit[0];
        if (digits.count > 1) *at++ = '.';
        put(digit + 1, digits.count - 1);
        const int power = digits.point - 1;
        const int size = std::abs(power);
        *at++ = 'E';
        *at++ = power < 0 ? '-' : '+';
        if (size < 10) *at++ = '0';
        at = std::to_chars(at, form + sizeof form, size).ptr;
    } else if (zeros >= 0) {
        *at++ = '.';
        putzeros(zeros);
        put(digit, digits.count);
    } else if (digits.count <= digits.point) {
        put(digit, digits.count);
        putzeros(digits.point - digits.count);
    } else {
        put(digit, digits.point);
        *at++ = '.';
        put(digit + digits.point, digits.count - digits.point);
    }
    text.append(form, static_cast<std::size_t>(at - form));
}

std::string numbertext(double value) {
    std::string text;
    appendnumber(text, value);
    return text;
}

std::string wholetext(std::int64_t value) {
    std::string text;
    appendwhole(text, value);
    return text;
}

void appendwhole(std::string& text, std::int64_t value) {
    char form[24] = {' '}; // of which the digits may take twenty
    const char* const end = std::to_chars(form + (value < 0 ? 0 : 1), form + sizeof form, value).ptr;
    text.append(form, static_cast<std::size_t>(end - form));
}

std::string trimmednumber(double value) {
    std::string text = numbertext(value);
    if (text.front() == ' ') text.erase(0, 1);
    return text;
}

std::string trimmedwhole(std::int64_t value) {
    return std::to_string(value);
}

numberprefix readprefix(std::string_view text) {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* at = begin;
    const bool negative = at != end && *at == '-';
    if (negative || (at != end && *at == '+')) ++at;
    const char* const digits = at;
    const mantissa read = takemantissa(at, end);
    if (!read.seen) return {};
    const std::string_view written(digits, at);
    const int exponent = takeexponent(at, end);
    const int power = read.power + exponent;
    numberprefix result;
    result.length = static_cast<std::size_t>(at - begin);
    if (isexact(read, power))
        result.value = timespoweroften(static_cast<double>(read.whole), power);
    else if (read.whole != 0)
        readlong(written, exponent, read.digits + power > 0, result);
    if (negative) result.value = -result.value;
    return result;
}

double lenientnumber(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    const numberprefix prefix = readprefix(text);
    if (prefix.overflow)
        throw runtimeerror{errorkind::overflow,
                           "Overflow: the number " + std::string(text.substr(0, 40)) + " is too large."};
    return prefix.value;
}

} // namespace orv

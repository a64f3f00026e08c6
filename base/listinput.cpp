// Reading text files: lines, counted characters and free list input.
#include "base/listinput.h"

#include "base/arithmetic.h"
#include "base/numbertext.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orv {

namespace {

// A tab separates like a blank: files from spreadsheets have them.
bool isblank(char c) {
    return c == ' ' || c == '\t';
}

// Whether a line end (CR LF, or a bare LF) stands at `at`, and its length in bytes; 0 when none does.
std::size_t lineendat(std::string_view buffer, std::size_t at) {
    if (at >= buffer.size()) return 0;
    if (buffer[at] == '\n') return 1;
    return buffer[at] == '\r' && at + 1 < buffer.size() && buffer[at + 1] == '\n' ? 2 : 0;
}

bool endsfield(std::string_view buffer, std::size_t at) {
    const char c = buffer[at];
    return isblank(c) || c == ',' || c == '\n' || (c == '\r' && lineendat(buffer, at) != 0);
}

void skipseparators(listreader& reader) {
    const std::string_view buffer = reader.buffer;
    std::size_t at = reader.position;
    for (;;) {
        if (at < buffer.size() && (isblank(buffer[at]) || buffer[at] == ',')) {
            ++at;
        } else if (const std::size_t length = lineendat(buffer, at)) {
            at += length;
        } else {
            break;
        }
    }
    reader.insidelineend = reader.insidelineend && at == reader.position;
    reader.position = at;
}

// Blanks, then one comma or one line end.
void takeseparator(listreader& reader) {
    const std::string_view buffer = reader.buffer;
    std::size_t at = reader.position;
    while (at < buffer.size() && isblank(buffer[at])) ++at;
    if (at < buffer.size() && buffer[at] == ',') {
        ++at;
    } else {
        at += lineendat(buffer, at);
    }
    reader.position = at;
}

void dropfield(listreader& reader) {
    std::size_t at = reader.position;
    while (at < reader.buffer.size() && !endsfield(reader.buffer, at)) ++at;
    reader.position = at;
}

// The quoted field that begins at the position; without a closing quote it runs to the end of the file.
std::string_view takequoted(listreader& reader) {
    const std::size_t begin = reader.position + 1;
    const std::size_t close = std::min(reader.buffer.find('"', begin), reader.buffer.size());
    reader.position = std::min(close + 1, reader.buffer.size());
    return reader.buffer.substr(begin, close - begin);
}

errorkind kindof(fieldoutcome outcome) {
    switch (outcome) {
    case fieldoutcome::pastend:
        return errorkind::pastend;
    case fieldoutcome::overflow:
        return errorkind::overflow;
    default:
        return errorkind::typemismatch;
    }
}

// The field that stands at the reader, shortened, for a message.
std::string fieldat(listreader reader) {
    const std::size_t begin = reader.position;
    dropfield(reader);
    return std::string(reader.buffer.substr(begin, std::min<std::size_t>(reader.position - begin, 40)));
}

// The failure of a number field that began at `begin`, with the field in its message.
[[noreturn]] void numberfailure(listreader reader, std::size_t begin, errorkind kind) {
    reader.position = begin;
    skipseparators(reader);
    const std::string reason = kind == errorkind::pastend ? "the file ends where a number was expected"
                               : kind == errorkind::overflow
                                   ? "the number \"" + fieldat(reader) + "\" is too large"
                                   : "expected a number, found \"" + fieldat(reader) + "\"";
    inputfailure(reader, kind, reason);
}

// The number of a field that began at `begin`, converted.
template <class converter>
auto convertedfield(const listreader& reader, std::size_t begin, const numberfield& field,
                    converter convert) {
    if (field.outcome != fieldoutcome::read) numberfailure(reader, begin, kindof(field.outcome));
    try {
        return convert(field.value);
    } catch (const runtimeerror& error) {
        numberfailure(reader, begin, error.kind);
    }
}

// Reads a number and converts it.
template <class converter>
auto readconverted(listreader& reader, converter convert) {
    const std::size_t begin = reader.position;
    const numberfield field = tryreadnumber(reader);
    return convertedfield(reader, begin, field, convert);
}

// Digits read eight characters at once: their value, and how many of the eight stand before the first other
// character.
struct digitgroup {
    std::uint64_t value = 0;
    int count = 0;
};

digitgroup readgroup(const char* at) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    word ^= 0x3030303030303030; // digits become 0..9
    // The top bit of a byte of 10 and above. A carry reaches later characters only, which do not count.
    const std::uint64_t other = ((word + 0x7676767676767676) | word) & 0x8080808080808080;
    digitgroup group;
    group.count = std::countr_zero(other) / 8;
    if (group.count == 0) return group;
    word <<= 64 - 8 * group.count; // the digits' places from the right, zeros in front
    word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FF;
    word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFF;
    group.value = (word * 10000 + (word >> 32)) & 0x00000000FFFFFFFF;
    return group;
}

constexpr double exactpower[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int highestexact = 22;
constexpr std::uint64_t exactmantissa = std::uint64_t{1} << 53;
constexpr std::uint64_t wholepower[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
constexpr std::ptrdiff_t longestusual = 40; // characters that usualnumber may look at

// The usual number, whose digits and power of ten a double holds exactly, so that one operation gives the
// nearest double: up to seven digits before the point, up to fifteen behind it, an exponent of one or two
// digits. Returns the character behind it, or null for any other number, which readprefix then takes.
const char* usualnumber(const char* at, const char* end, double& value) {
    if (std::endian::native != std::endian::little || end - at < longestusual) return nullptr;
    const bool negative = *at == '-';
    at += negative;
    const digitgroup whole = readgroup(at);
    at += whole.count;
    std::uint64_t mantissa = whole.value;
    int power = 0;
    int digits = whole.count;
    if (*at == '.') {
        const digitgroup first = readgroup(++at);
        at += first.count;
        mantissa = mantissa * wholepower[first.count] + first.value;
        power -= first.count;
        if (first.count == 8) {
            const digitgroup second = readgroup(at);
            at += second.count;
            mantissa = mantissa * wholepower[second.count] + second.value;
            power -= second.count;
        }
        digits -= power;
    }
    if (digits == 0 || digits > 18 || whole.count == 8 || power == -16) return nullptr;
    if (const char letter = static_cast<char>(*at | 0x20); letter == 'e' || letter == 'd') {
        const char* ahead = at + 1;
        const bool down = *ahead == '-';
        ahead += down || *ahead == '+';
        const digitgroup exponent = readgroup(ahead);
        if (exponent.count > 2) return nullptr;
        if (exponent.count > 0) {
            power += down ? -static_cast<int>(exponent.value) : static_cast<int>(exponent.value);
            at = ahead + exponent.count;
        }
    }
    if (mantissa > exactmantissa || power < -highestexact || power > highestexact) return nullptr;
    const auto exact = static_cast<double>(mantissa);
    const double magnitude = power < 0 ? exact / exactpower[-power] : exact * exactpower[power];
    value = negative ? -magnitude : magnitude;
    return at;
}

// A numeric field, without what is taken behind it.
numberfield takenumber(listreader& reader) {
    skipseparators(reader);
    if (atend(reader)) return {0, fieldoutcome::pastend};
    reader.insidelineend = false;
    if (reader.buffer[reader.position] == '"') {
        takequoted(reader);
        return {0, fieldoutcome::typemismatch};
    }
    const char* const begin = reader.buffer.data() + reader.position;
    double value = 0;
    if (const char* behind = usualnumber(begin, reader.buffer.data() + reader.buffer.size(), value)) {
        reader.position += static_cast<std::size_t>(behind - begin);
        dropfield(reader);
        return {value, fieldoutcome::read};
    }
    const numberprefix prefix = readprefix(reader.buffer.substr(reader.position));
    reader.position += prefix.length;
    dropfield(reader);
    if (prefix.length == 0) return {0, fieldoutcome::typemismatch};
    if (prefix.overflow) return {0, fieldoutcome::overflow};
    return {prefix.value, fieldoutcome::read};
}

} // namespace

listreader openlist(std::string_view buffer, std::string name) {
    listreader reader;
    reader.buffer = buffer;
    reader.name = std::move(name);
    return reader;
}

bool atend(const listreader& reader) {
    return reader.position >= reader.buffer.size();
}

std::size_t linenumber(const listreader& reader) {
    const auto begin = reader.buffer.begin();
    return 1 + static_cast<std::size_t>(
                   std::count(begin, begin + static_cast<std::ptrdiff_t>(reader.position), '\n'));
}

void inputfailure(const listreader& reader, errorkind kind, const std::string& reason) {
    throw runtimeerror{kind,
                       reader.name + ", line " + std::to_string(linenumber(reader)) + ": " + reason + "."};
}

namespace {

// Takes up to `count` characters one at a time and hands each to `take`. Returns how many there were.
template <class taker>
std::size_t takecharacters(listreader& reader, std::size_t count, taker take) {
    std::size_t taken = 0;
    for (; taken < count && !atend(reader); ++taken) {
        const char c = reader.buffer[reader.position];
        const bool bare = c == '\n' && !reader.insidelineend &&
                          (reader.position == 0 || reader.buffer[reader.position - 1] != '\r');
        reader.insidelineend = bare;
        reader.position += !bare;
        take(bare ? '\r' : c);
    }
    return taken;
}

} // namespace

std::string readcharacters(listreader& reader, std::size_t count) {
    std::string taken;
    takecharacters(reader, count, [&taken](char c) { taken += c; });
    return taken;
}

std::size_t skipcharacters(listreader& reader, std::size_t count) {
    return takecharacters(reader, count, [](char) {});
}

std::string_view readline(listreader& reader) {
    if (atend(reader)) inputfailure(reader, errorkind::pastend, "the file ends where a line was expected");
    const std::size_t begin = reader.position;
    std::size_t end = reader.buffer.find('\n', begin);
    if (end == std::string_view::npos) {
        reader.position = reader.buffer.size();
        reader.insidelineend = false;
        return reader.buffer.substr(begin);
    }
    reader.position = end + 1;
    reader.insidelineend = false;
    if (end > begin && reader.buffer[end - 1] == '\r') --end;
    return reader.buffer.substr(begin, end - begin);
}

std::string_view readtext(listreader& reader, std::string_view ends) {
    skipseparators(reader);
    if (atend(reader)) inputfailure(reader, errorkind::pastend, "the file ends where a text was expected");
    reader.insidelineend = false;
    const std::string_view buffer = reader.buffer;
    std::string_view field;
    if (buffer[reader.position] == '"') {
        field = takequoted(reader);
    } else {
        const bool blankends = ends.find(' ') != std::string_view::npos;
        std::size_t at = reader.position;
        while (at < buffer.size() && lineendat(buffer, at) == 0 &&
               ends.find(buffer[at]) == std::string_view::npos && !(blankends && isblank(buffer[at])))
            ++at;
        field = buffer.substr(reader.position, at - reader.position);
        reader.position = at;
    }
    takeseparator(reader);
    return field;
}

numberfield tryreadnumber(listreader& reader) {
    const numberfield field = takenumber(reader);
    takeseparator(reader);
    return field;
}

double readnumber(listreader& reader) {
    return readconverted(reader, [](double value) { return value; });
}

float readsingle(listreader& reader) {
    return readconverted(reader, single);
}

float readsinglebeforetext(listreader& reader) {
    const std::size_t begin = reader.position;
    const numberfield field = takenumber(reader);
    const float value = convertedfield(reader, begin, field, single);
    if (!atend(reader) && (isblank(reader.buffer[reader.position]) || reader.buffer[reader.position] == ','))
        ++reader.position;
    return value;
}

std::int16_t readwhole16(listreader& reader) {
    return readconverted(reader, whole16);
}

std::int32_t readwhole32(listreader& reader) {
    return readconverted(reader, whole32);
}

std::string_view behindmark(std::string_view text, char mark) {
    const std::size_t at = text.find(mark);
    return at == std::string_view::npos ? text : text.substr(at + 1);
}

std::string_view trimfront(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    return text;
}

std::string_view trimboth(std::string_view text) {
    text = trimfront(text);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::string uppercase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

} // namespace orv

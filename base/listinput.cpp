// Reading text files: lines, counted characters and free list input.
#include "base/listinput.h"

#include "base/arithmetic.h"
#include "base/exactpowers.h"
#include "base/numbertext.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orv {

namespace {

// A tab separates like a blank: files from spreadsheets have them.
bool isblank(char c) {
    return c == ' ' || c == '\t';
}

// Whether a line end (CR LF, a bare LF, or the CR of a file that is cut behind it) stands at `at`, and its
// length in bytes; 0 when none does.
std::size_t lineendat(std::string_view buffer, std::size_t at) {
    if (at >= buffer.size()) return 0;
    if (buffer[at] == '\n' || (buffer[at] == '\r' && at + 1 == buffer.size())) return 1;
    return buffer[at] == '\r' && buffer[at + 1] == '\n' ? 2 : 0;
}

// Whether a field ends in front of the character at `at`, which is not the end.
bool endsfield(const char* at, const char* end) {
    return isblank(*at) || *at == ',' || *at == '\n' || (*at == '\r' && (at + 1 == end || at[1] == '\n'));
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
inline const char* behindseparator(const char* at, const char* end) {
    while (at != end && isblank(*at)) ++at;
    if (at == end) return at;
    if (*at == ',' || *at == '\n') return at + 1;
    if (*at != '\r') return at;
    if (at + 1 == end) return end;
    return at[1] == '\n' ? at + 2 : at;
}

void takeseparator(listreader& reader) {
    const char* const begin = reader.buffer.data();
    const char* const end = begin + reader.buffer.size();
    reader.position = static_cast<std::size_t>(behindseparator(begin + reader.position, end) - begin);
}

void dropfield(listreader& reader) {
    const char* const begin = reader.buffer.data();
    const char* const end = begin + reader.buffer.size();
    const char* at = begin + reader.position;
    while (at != end && !endsfield(at, end)) ++at;
    reader.position = static_cast<std::size_t>(at - begin);
}

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

// Letters of code page 1252 whose other case does not lie 32 places away, as it does for all others.
constexpr std::string_view loneupper = "\x8A\x8C\x8E\x9F", lonelower = "\x9A\x9C\x9E\xFF";
constexpr unsigned char casedistance = 0x20;

bool isupper(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7);
}

struct plainnumber {
    double value = 0;
    const char* behind = nullptr; // the character behind it, or null for a number that is not plain
};

// The plain number at `at`, whose digits and power of ten are exact, so that one operation gives the nearest
// double. What is written in any other way is left to readprefix.
inline plainnumber readplain(const char* at, const char* end) {
    const auto digitat = [end](const char* place) {
        return place != end ? static_cast<unsigned>(static_cast<unsigned char>(*place)) - '0' : 10U;
    };
    const bool negative = at != end && *at == '-';
    at += negative;
    std::uint64_t mantissa = 0;
    unsigned digit = 0;
    const char* from = at;
    for (; (digit = digitat(at)) <= 9; ++at) mantissa = mantissa * 10 + digit;
    std::ptrdiff_t digits = at - from;
    int power = 0;
    if (at != end && *at == '.') {
        from = ++at;
        for (; (digit = digitat(at)) <= 9; ++at) mantissa = mantissa * 10 + digit;
        digits += at - from;
        power = -static_cast<int>(at - from);
    }
    if (digits == 0 || digits > exactplaces) return {};
    if (at != end && (*at == 'E' || *at == 'e' || *at == 'D' || *at == 'd')) {
        const char* ahead = at + 1;
        const bool down = ahead != end && *ahead == '-';
        ahead += down || (ahead != end && *ahead == '+');
        const unsigned tens = digitat(ahead);
        const unsigned ones = tens <= 9 ? digitat(ahead + 1) : 10;
        if (ones > 9 || digitat(ahead + 2) <= 9) return {}; // an exponent of two digits is the plain one
        const int exponent = static_cast<int>(tens * 10 + ones);
        power += down ? -exponent : exponent;
        at = ahead + 2;
    }
    if (power < -highestexact || power > highestexact) return {};
    const double magnitude = timespoweroften(static_cast<double>(mantissa), power);
    return {negative ? -magnitude : magnitude, at};
}

// A whole field at once when it stands behind blanks at most, is a plain number and nothing else: its value,
// and the place behind its separator, or null for any other field.
inline plainnumber readplainfield(const char* at, const char* end) {
    while (at != end && isblank(*at)) ++at;
    plainnumber number = readplain(at, end);
    if (!number.behind) return number;
    if (number.behind != end && !endsfield(number.behind, end)) return {};
    number.behind = behindseparator(number.behind, end);
    return number;
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
    const numberprefix prefix = readprefix(reader.buffer.substr(reader.position));
    reader.position += prefix.length;
    dropfield(reader);
    if (prefix.length == 0) return {0, fieldoutcome::typemismatch};
    if (prefix.overflow) return {0, fieldoutcome::overflow};
    return {prefix.value, fieldoutcome::read};
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

bool nothingleft(const listreader& reader) {
    return reader.buffer.find_first_not_of(" \t,\r\n\x1A", reader.position) == std::string_view::npos;
}

std::size_t linenumber(const listreader& reader) {
    const auto begin = reader.buffer.begin();
    return 1 + static_cast<std::size_t>(
                   std::count(begin, begin + static_cast<std::ptrdiff_t>(reader.position), '\n'));
}

void inputfailure(const listreader& reader, errorkind kind, const std::string& reason) {
    std::string shown = reason; // which may quote a file that is no text
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    throw runtimeerror{kind,
                       reader.name + ", line " + std::to_string(linenumber(reader)) + ": " + shown + "."};
}

void inputfailure(const listreader& reader, const runtimeerror& error) {
    const bool ended = error.text.ends_with('.');
    inputfailure(reader, error.kind, error.text.substr(0, error.text.size() - (ended ? 1 : 0)));
}

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
    std::size_t end = std::min(reader.buffer.find('\n', begin), reader.buffer.size());
    reader.position = std::min(end + 1, reader.buffer.size());
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
    const char* const begin = reader.buffer.data();
    const plainnumber plain = readplainfield(begin + reader.position, begin + reader.buffer.size());
    if (plain.behind) {
        reader.insidelineend = false;
        reader.position = static_cast<std::size_t>(plain.behind - begin);
        return {plain.value, fieldoutcome::read};
    }
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

void readsingles(listreader& reader, std::span<float> values) {
    const char* const begin = reader.buffer.data();
    const char* const end = begin + reader.buffer.size();
    const char* at = begin + reader.position;
    for (float& value : values) {
        const plainnumber plain = readplainfield(at, end);
        value = static_cast<float>(plain.value); // of at most 37 digits, which a single always holds
        if (plain.behind) {
            at = plain.behind;
            reader.insidelineend = false;
            continue;
        }
        reader.position = static_cast<std::size_t>(at - begin);
        value = readsingle(reader);
        at = begin + reader.position;
    }
    reader.position = static_cast<std::size_t>(at - begin);
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

double progressblocks(const listreader& reader) {
    return std::nearbyint(static_cast<double>(reader.buffer.size()) / progressblock);
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

std::string pageuppercase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        const auto other = static_cast<unsigned char>(c - casedistance);
        if (const std::size_t at = lonelower.find(c); at != std::string_view::npos)
            c = loneupper[at];
        else if (isupper(other))
            c = static_cast<char>(other);
    }
    return upper;
}

std::string pagelowercase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (const std::size_t at = loneupper.find(c); at != std::string_view::npos)
            c = lonelower[at];
        else if (isupper(static_cast<unsigned char>(c)))
            c = static_cast<char>(c + casedistance);
    }
    return lower;
}

} // namespace orv

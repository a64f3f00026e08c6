// Reading text files: lines, counted characters and free list input.
#include "base/listinput.h"

#include "base/arithmetic.h"
#include "base/numbertext.h"

#include <algorithm>

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

// Reads a number, converts it, and names the field in the message of either failure.
template <class converter>
auto readconverted(listreader& reader, converter convert) {
    listreader start = reader;
    const numberfield field = tryreadnumber(reader);
    if (field.outcome == fieldoutcome::read) {
        try {
            return convert(field.value);
        } catch (const runtimeerror& error) {
            skipseparators(start);
            inputfailure(start, error.kind, "the number \"" + fieldat(start) + "\" is too large");
        }
    }
    skipseparators(start);
    const std::string reason =
        field.outcome == fieldoutcome::pastend    ? "the file ends where a number was expected"
        : field.outcome == fieldoutcome::overflow ? "the number \"" + fieldat(start) + "\" is too large"
                                                  : "expected a number, found \"" + fieldat(start) + "\"";
    inputfailure(start, kindof(field.outcome), reason);
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

std::string readcharacters(listreader& reader, std::size_t count) {
    std::string taken;
    while (taken.size() < count && !atend(reader)) {
        const char c = reader.buffer[reader.position];
        const bool bare = c == '\n' && !reader.insidelineend &&
                          (reader.position == 0 || reader.buffer[reader.position - 1] != '\r');
        if (bare) {
            taken += '\r';
            reader.insidelineend = true;
            continue;
        }
        taken += c;
        reader.insidelineend = false;
        ++reader.position;
    }
    return taken;
}

std::size_t skipcharacters(listreader& reader, std::size_t count) {
    return readcharacters(reader, count).size();
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
    const std::string_view buffer = reader.buffer;
    std::size_t at = reader.position;
    std::string_view field;
    if (buffer[at] == '"') {
        std::size_t close = buffer.find('"', at + 1);
        if (close == std::string_view::npos) close = buffer.size();
        field = buffer.substr(at + 1, close - at - 1);
        at = close < buffer.size() ? close + 1 : close;
    } else {
        const bool blankends = ends.find(' ') != std::string_view::npos;
        while (at < buffer.size() && lineendat(buffer, at) == 0 &&
               ends.find(buffer[at]) == std::string_view::npos && !(blankends && isblank(buffer[at])))
            ++at;
        field = buffer.substr(reader.position, at - reader.position);
    }
    reader.insidelineend = false;
    reader.position = at;
    takeseparator(reader);
    return field;
}

numberfield tryreadnumber(listreader& reader) {
    skipseparators(reader);
    if (atend(reader)) return {0, fieldoutcome::pastend};
    reader.insidelineend = false;
    if (reader.buffer[reader.position] == '"') {
        readtext(reader);
        return {0, fieldoutcome::typemismatch};
    }
    const numberprefix prefix = readprefix(reader.buffer.substr(reader.position));
    reader.position += prefix.length;
    dropfield(reader);
    takeseparator(reader);
    if (prefix.length == 0) return {0, fieldoutcome::typemismatch};
    if (prefix.overflow) return {0, fieldoutcome::overflow};
    return {prefix.value, fieldoutcome::read};
}

double readnumber(listreader& reader) {
    return readconverted(reader, [](double value) { return value; });
}

float readsingle(listreader& reader) {
    return readconverted(reader, single);
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

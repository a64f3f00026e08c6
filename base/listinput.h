// Reading text files: lines, counted characters and free list input over one buffer with one position.
//
// The buffer is not owned; it must outlive the reader. CR LF and a bare LF both end a line, as does the CR of
// a file that is cut behind it, and a bare LF counts as two characters (CR, LF) wherever characters are
// counted, so that a file and its twin with bare line feeds read alike.
#pragma once

#include "base/runtimeerror.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orv {

struct listreader {
    std::string_view buffer;
    std::size_t position = 0;   // bytes, 0..buffer.size()
    bool insidelineend = false; // the CR of a bare LF was taken, its LF not yet
    std::string name;           // of the file, for messages

    // Characters at which a plain text field ends beside the line end; formats differ.
    static constexpr std::string_view plainends = " ,";
    static constexpr std::string_view commaends = ",";
};

// A reader at the start of `buffer`; `name` stands in every message.
listreader openlist(std::string_view buffer, std::string name);

// Whether nothing is left, not even a line end.
bool atend(const listreader& reader);

// Whether nothing but blanks, commas and line ends, or an old end-of-text byte, is left: there, files of
// records end.
bool nothingleft(const listreader& reader);

// The number of the line that the position stands on, from 1.
std::size_t linenumber(const listreader& reader);

// The message "NAME, line N: REASON" as an error of the given kind, at the reader's position.
[[noreturn]] void inputfailure(const listreader& reader, errorkind kind, const std::string& reason);

// The same for the failure of a routine that knows no file.
[[noreturn]] void inputfailure(const listreader& reader, const runtimeerror& error);

// Up to `count` characters, one at a time; fewer at the end of the file.
std::string readcharacters(listreader& reader, std::size_t count);

// Takes up to `count` characters and drops them. Returns how many there were.
std::size_t skipcharacters(listreader& reader, std::size_t count);

// The rest of the line without its line end, which is taken too. Raises pastend at the end of the file.
std::string_view readline(listreader& reader);

// A text field: any run of blanks, commas and line ends in front is skipped; in double quotes it may hold
// commas, blanks and line ends, otherwise it ends at a line end or one of `ends`. Behind it blanks and then
// one comma or one line end are taken. Raises pastend when no field is left.
std::string_view readtext(listreader& reader, std::string_view ends = listreader::plainends);

// What a numeric field held. Only `read` comes with a value.
enum class fieldoutcome { read, pastend, typemismatch, overflow };
struct numberfield {
    double value = 0;
    fieldoutcome outcome = fieldoutcome::pastend;
};

// A numeric field without a throw, for loops that go on after a failing one. Skipping, prefix and what is
// taken behind are those of readnumber below.
numberfield tryreadnumber(listreader& reader);

// A numeric field: the same skipping, its longest numeric prefix the value, the rest of the field dropped.
// Raises pastend when no field is left, typemismatch when it begins with no number (the field is taken all
// the same) and overflow when the number is too large for its type.
double readnumber(listreader& reader);

// A numeric field stored as single precision, or turned into a whole number (nearest, halves to even).
float readsingle(listreader& reader);
void readsingles(listreader& reader, std::span<float> values); // one after another; raises at the first
std::int16_t readwhole16(listreader& reader);
std::int32_t readwhole32(listreader& reader);

// A single before a text that is the rest of its line as it stands: behind the number only one blank or comma
// is taken, and no line end.
float readsinglebeforetext(listreader& reader);

// Loads tell their progress in blocks of so many bytes; how many of them a file has, halves to even.
constexpr std::size_t progressblock = 128;
double progressblocks(const listreader& reader);

// What stands behind the first `mark` of a text, or the whole text when it has none, as settings and header
// values are found.
std::string_view behindmark(std::string_view text, char mark);

// The text without the blanks in front, or on both sides.
std::string_view trimfront(std::string_view text);
std::string_view trimboth(std::string_view text);

// Upper case of the letters a to z, which is all that keywords and extensions need.
std::string uppercase(std::string_view text);

// The same, and lower case, of all letters of the files' code page, as names need it.
std::string pageuppercase(std::string_view text);
std::string pagelowercase(std::string_view text);

} // namespace orv

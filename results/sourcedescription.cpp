// The source description file. Text, one record after the other, list input:
//
//   four lines, skipped
//   TEXT, m                        a text and the number of band records
//   m times:
//     TEXT, k, rest of the line    the band number 1..10; something must stand behind it on its line, since
//                                  the rest of the line is skipped
//     -, -, LEVEL, -, DI, -        six fields: power level and directivity index in dB, the others not kept
//     TEXT, q                      a text and a count
//     q + 2 lines, skipped         the directivity pattern
#include "results/sourcedescription.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "platform/platform.h"
#include "results/acousticparameters.h"

#include <cmath>

namespace orv {

namespace {

constexpr int headlines = 4;
constexpr int patternlines = 2; // lines of a pattern beyond its count

void skiplines(listreader& reader, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) readline(reader);
}

// One band record; its level and directivity go into the tables, its energy into the two sums.
void readband(listreader& reader, double& weighted, double& linear) {
    readtext(reader);
    const std::int32_t band = readwhole32(reader);
    readline(reader);
    readtext(reader);
    readtext(reader);
    const double level = readnumber(reader);
    readtext(reader);
    const double directivity = readnumber(reader);
    readtext(reader);
    if (band >= 1 && band <= octavebands) {
        ResultSet.sourcePower(band) = single(level);
        ResultSet.sourceDirectivity(band) = single(directivity);
        const double energy = power(10, level / 10);
        weighted += energy * static_cast<double>(SessionState.aWeight[static_cast<std::size_t>(band)]);
        linear += energy;
    }
    readtext(reader);
    skiplines(reader, readwhole32(reader) + patternlines);
}

} // namespace

void readsourcedescription(const std::string& path) {
    double weighted = static_cast<double>(ResultSet.sourcePower(weightedband));
    double linear = static_cast<double>(ResultSet.sourcePower(linearband));
    attempt([&] {
        const filebytes bytes = readfile(path);
        listreader reader = openlist(bytes, pagetext(path));
        skiplines(reader, headlines);
        const std::string name(readtext(reader));
        const std::int32_t records = readwhole32(reader);
        platform::logline(name + wholetext(records));
        for (std::int32_t i = 0; i < records; ++i) readband(reader, weighted, linear);
    });
    ResultSet.sourcePower(weightedband) = single(weighted);
    ResultSet.sourcePower(linearband) = single(linear);
    attempt([&] { ResultSet.sourcePower(weightedband) = single(decibelsperneper * naturallog(weighted)); });
    attempt([&] { ResultSet.sourcePower(linearband) = single(decibelsperneper * naturallog(linear)); });
}

} // namespace orv

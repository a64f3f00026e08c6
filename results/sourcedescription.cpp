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

namespace orv {

namespace {

constexpr int headlines = 4;
constexpr int patternlines = 2; // lines of a pattern beyond its count

void skiplines(listreader& reader, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) readline(reader);
}

// The energy of the octave bands, A-weighted and linear.
struct powersums {
    double weighted = 0, linear = 0;
    bool any = false; // a record has been added
};

sourceband readband(listreader& reader) {
    readtext(reader);
    const std::int32_t band = readwhole32(reader);
    readline(reader);
    readtext(reader);
    readtext(reader);
    const double level = readnumber(reader);
    readtext(reader);
    const double directivity = readnumber(reader);
    readtext(reader);
    return {band, level, directivity};
}

void skippattern(listreader& reader) {
    readtext(reader);
    skiplines(reader, std::int64_t{readwhole32(reader)} + patternlines);
}

// The level and directivity of a band into the tables, the energy of the stored level into the sums. A value
// that cannot be stored is skipped.
void storeband(const sourceband& record, powersums& sums) {
    if (record.band < 1 || record.band > octavebands) return;
    attempt([&] { ResultSet.sourcePower(record.band) = single(record.level); });
    attempt([&] { ResultSet.sourceDirectivity(record.band) = single(record.directivity); });
    attempt([&] {
        const double energy = power(10, wide(ResultSet.sourcePower(record.band)) / 10);
        sums.weighted += energy * wide(SessionState.aWeight[static_cast<std::size_t>(record.band)]);
        sums.linear += energy;
        sums.any = true;
    });
}

void storelevel(float& target, double sum) {
    attempt([&] { target = single(decibelsperneper * naturallog(sum)); });
}

} // namespace

std::string sourcefilepath(const std::string& stated, const std::string& beside) {
    const std::string here = existingpath(namestored(stated, ""));
    return canopen(here) ? here : existingpath(joinpath(beside, namestored(stated, beside)));
}

void readsourcefile(const std::string& path, sourcefile& file) {
    const filebytes bytes = readfile(path);
    listreader reader = openlist(bytes, pagetext(path));
    skiplines(reader, headlines);
    const std::string name(readtext(reader));
    const std::int32_t records = readwhole32(reader);
    file.heading = name + wholetext(records);
    for (std::int32_t i = 0; i < records; ++i) {
        file.bands.push_back(readband(reader));
        skippattern(reader);
    }
}

void readsourcedescription(const std::string& path) {
    // What stands there is never cleared, and the energies are added on top.
    powersums sums{wide(ResultSet.sourcePower(weightedband)), wide(ResultSet.sourcePower(linearband))};
    sourcefile file;
    attempt([&] { readsourcefile(path, file); });
    if (!file.heading.empty()) platform::logline(file.heading);
    for (const sourceband& record : file.bands) storeband(record, sums);
    if (!sums.any) return; // no usable file: the levels of the load before stay
    storelevel(ResultSet.sourcePower(weightedband), sums.weighted);
    storelevel(ResultSet.sourcePower(linearband), sums.linear);
}

} // namespace orv

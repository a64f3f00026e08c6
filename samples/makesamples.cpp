// makesamples: writes the sample hall, or a result or geometry of a given size for benchmarks.
#include "base/runtimeerror.h"
#include "samples/samplefiles.h"

#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr const char* usage = "usage: makesamples DIRECTORY\n"
                              "       makesamples --result FILE --receivers N --slots M\n"
                              "       makesamples --geometry FILE --faces F --receivers N\n";

struct request {
    std::string directory;
    std::string result;
    std::string geometry;
    int receivers = 0;
    int slots = 0;
    int faces = 0;
};

bool readcount(std::string_view text, int& count) {
    const auto end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, count);
    return read.ec == std::errc() && read.ptr == end && count > 0;
}

bool readarguments(int count, char** arguments, request& asked) {
    for (int i = 1; i < count; ++i) {
        const std::string_view word = arguments[i];
        if (!word.starts_with("--")) {
            if (!asked.directory.empty()) return false;
            asked.directory = word;
            continue;
        }
        if (i + 1 == count) return false;
        const std::string_view value = arguments[++i];
        bool good = true;
        if (word == "--result")
            asked.result = value;
        else if (word == "--geometry")
            asked.geometry = value;
        else if (word == "--receivers")
            good = readcount(value, asked.receivers);
        else if (word == "--slots")
            good = readcount(value, asked.slots);
        else if (word == "--faces")
            good = readcount(value, asked.faces);
        else
            good = false;
        if (!good) return false;
    }
    if (!asked.directory.empty()) return asked.result.empty() && asked.geometry.empty();
    if (asked.result.empty() == asked.geometry.empty()) return false; // just one of them
    return asked.receivers > 0 && (asked.result.empty() ? asked.faces > 0 : asked.slots > 1);
}

void make(const request& asked) {
    if (!asked.directory.empty()) {
        orv::samples::writehall(asked.directory);
    } else if (!asked.result.empty()) {
        orv::samples::bigoptions options;
        options.receivers = asked.receivers;
        options.slots = asked.slots;
        orv::samples::writebigresult(asked.result, options);
    } else {
        orv::samples::writebiggeometry(asked.geometry, asked.faces, asked.receivers);
    }
}

} // namespace

int main(int count, char** arguments) {
    request asked;
    if (!readarguments(count, arguments, asked)) {
        std::fputs(usage, stderr);
        return 2;
    }
    try {
        make(asked);
    } catch (const orv::runtimeerror& error) {
        std::fprintf(stderr, "makesamples: %s\n", error.text.c_str());
        return 1;
    }
    return 0;
}

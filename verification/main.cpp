// orvverify [--chapter FILE] [--example FILE] [SUBJECT...]: computes what can be known beforehand by the
// program's own routines and prints expected and computed values. The status is 1 when one is farther off
// than allowed. For the manual they are written as a chapter, and printed only when one is. A worked example
// of the speech index takes the place of the subjects.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "verification/report.h"
#include "verification/subjects.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace orv::verification {

namespace {

struct entry {
    std::string_view name;
    subject (*verify)();
};
constexpr entry entries[] = {
    {"decays", verifydecays}, {"speech", verifyspeech},         {"harmonics", verifyharmonics},
    {"field", verifyfield},   {"camera", verifycamera},         {"filters", verifyfilters},
    {"export", verifyexport}, {"samplehall", verifysamplehall},
};

struct wishes {
    std::string chapterfile, examplefile;
    std::vector<std::string_view> names; // none for all
    bool understood = true;
};

wishes readarguments(int count, char** arguments) {
    wishes asked;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if ((argument == "--chapter" || argument == "--example") && i + 1 < count) {
            (argument == "--chapter" ? asked.chapterfile : asked.examplefile) = arguments[++i];
            continue;
        }
        asked.names.push_back(argument);
        asked.understood = asked.understood &&
                           std::any_of(std::begin(entries), std::end(entries),
                                       [argument](const entry& known) { return known.name == argument; });
    }
    return asked;
}

std::vector<subject> verify(const wishes& asked) {
    if (!asked.examplefile.empty()) return {verifyexample(asked.examplefile)};
    std::vector<subject> found;
    for (const entry& each : entries)
        if (asked.names.empty() ||
            std::find(asked.names.begin(), asked.names.end(), each.name) != asked.names.end())
            found.push_back(each.verify());
    return found;
}

int run(const wishes& asked) {
    const std::vector<subject> found = verify(asked);
    const bool good =
        std::all_of(found.begin(), found.end(), [](const subject& each) { return holds(each); });
    if (asked.chapterfile.empty() || !good) std::fputs(plaintext(found).c_str(), stdout);
    if (!asked.chapterfile.empty()) replacefile(asked.chapterfile, chapter(found));
    return good ? 0 : 1;
}

} // namespace

} // namespace orv::verification

int main(int count, char** arguments) {
    using namespace orv::verification;
    const wishes asked = readarguments(count, arguments);
    if (!asked.understood) {
        std::fputs("usage: orvverify [--chapter FILE] [--example FILE] [SUBJECT...]\n", stderr);
        return 2;
    }
    try {
        return run(asked);
    } catch (const orv::runtimeerror& error) {
        std::fprintf(stderr, "orvverify: %s\n", error.text.c_str());
        return 2;
    }
}

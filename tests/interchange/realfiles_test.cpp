// Every reader of foreign formats on every file of a folder that has its extension, whole and damaged in many
// ways: a room, or a message that names the file and its line, with an empty room and the material files as
// they were. The folder is the cache variable ORV_REAL_FILES; without one the test skips.
#include "tests/testsupport.h"

#include "base/listinput.h"
#include "interchange/cattreader.h"
#include "interchange/dxfreader.h"
#include "interchange/nastranreader.h"

#include <algorithm>
#include <random>

using namespace orv;

namespace {

// A new reader is a row here.
struct formatreader {
    std::string_view extension; // in upper case
    void (*load)(const std::string& name);
};
constexpr formatreader formatreaders[] = {
    {".DXF",
     [](const std::string& name) {
         scripted::expectbox("DXFIN", platform::answer::yes);
         loaddxf(name);
     }},
    {".GEO", loadcatt},
    {".NAS", loadnastran},
    {".BDF", loadnastran},
};

struct variant {
    std::string what, text;
};

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

// The file, the same in other hands, cut at many places, and with bytes struck out and thrown in.
std::vector<variant> variantsof(const std::string& text) {
    constexpr std::size_t cuts = 60, damages = 60;
    const std::string bare = replaced(text, "\r\n", "\n");
    std::string lower = text;
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    std::vector<variant> variants = {{"whole", text},
                                     {"bare line feeds", bare},
                                     {"CR LF", replaced(bare, "\n", "\r\n")},
                                     {"tabs", replaced(text, " ", "\t")},
                                     {"lower case", lower},
                                     {"blank lines", replaced(bare, "\n", "\n\n")}};
    for (std::size_t i = 0; i < cuts; ++i)
        variants.push_back({"cut " + std::to_string(i), text.substr(0, text.size() * i / cuts + i % 7)});
    std::mt19937 random(1);
    for (std::size_t i = 0; i < damages; ++i) {
        std::string damaged = text;
        for (std::size_t k = 0; k <= i && !damaged.empty(); ++k)
            damaged.replace(random() % damaged.size(), random() % 40, k % 2, static_cast<char>(random()));
        variants.push_back({"damaged " + std::to_string(i), damaged});
    }
    variants.push_back({"rubbish", ""});
    for (int i = 0; i < 5000; ++i) variants.back().text += static_cast<char>(random());
    return variants;
}

struct realfiles : sessiontest {
    const std::string materials = readtext(std::string(DATA_FILES) + "/Orvanta.mat");
    const std::string colours = readtext(std::string(DATA_FILES) + "/orvcolor.mat");

    void run(const formatreader& reader, const std::string& name, const variant& one) {
        SCOPED_TRACE(name + ", " + one.what);
        for (const char* file : {"Orvanta.mat", "orvcolor.mat"}) std::filesystem::remove(file);
        std::filesystem::remove(name); // replacing a file makes some disks write it out at once
        writetext("Orvanta.mat", materials);
        writetext("orvcolor.mat", colours);
        writetext(name, one.text);
        try {
            reader.load(name);
            if (one.what == "whole") std::printf("%s: %s\n", name.c_str(), counts().c_str());
        } catch (const runtimeerror& error) {
            EXPECT_TRUE(error.text.starts_with(name + ", line ")) << error.text;
            EXPECT_EQ(counts(), "faces 0, holes 0, doors 0, sources 0, receivers 0, ray lines 0");
            EXPECT_TRUE(readtext("Orvanta.mat") == materials && readtext("orvcolor.mat") == colours);
            if (one.what == "whole") std::printf("%s\n", error.text.c_str());
        }
    }

    static std::string counts() {
        const roommodel& r = RoomModel;
        const auto count = [](const char* what, int number) { return what + std::to_string(number); };
        return count("faces ", r.faceCount) + count(", holes ", r.holeCount) +
               count(", doors ", r.doorCount) + count(", sources ", r.sourceCount) +
               count(", receivers ", r.receiverCount) + count(", ray lines ", r.rayLineCount);
    }
};

TEST_F(realfiles, EndInARoomOrAMessage) {
    const std::string folder = REAL_FILES;
    if (folder.empty()) GTEST_SKIP() << "ORV_REAL_FILES names no folder";
    scripted::record(false);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string extension = uppercase(entry.path().extension().string());
        for (const formatreader& reader : formatreaders) {
            if (reader.extension != extension) continue;
            for (const variant& one : variantsof(readtext(entry.path().string())))
                run(reader, entry.path().filename().string(), one);
        }
    }
}

} // namespace

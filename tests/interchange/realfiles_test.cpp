// Every reader of foreign formats on every file of a folder that has its extension, whole and in half: a
// room, or a message that names the file and its line, with an empty room and the material files as they
// were. The folder is the cache variable ORV_REAL_FILES; without one the test skips.
#include "tests/testsupport.h"

#include "base/listinput.h"
#include "interchange/cattreader.h"
#include "interchange/dxfreader.h"
#include "interchange/nastranreader.h"

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

struct realfiles : sessiontest {
    const std::string materials = readtext(std::string(DATA_FILES) + "/Orvanta.mat");
    const std::string colours = readtext(std::string(DATA_FILES) + "/orvcolor.mat");

    void run(const formatreader& reader, const std::string& name, const std::string& text) const {
        SCOPED_TRACE(name);
        writetext("Orvanta.mat", materials);
        writetext("orvcolor.mat", colours);
        writetext(name, text);
        try {
            reader.load(name);
            std::printf("%s: %s\n", name.c_str(), counts().c_str());
        } catch (const runtimeerror& error) {
            EXPECT_TRUE(error.text.starts_with(name + ", line ")) << error.text;
            EXPECT_EQ(counts(), "faces 0, holes 0, doors 0, sources 0, receivers 0, ray lines 0");
            EXPECT_TRUE(readtext("Orvanta.mat") == materials && readtext("orvcolor.mat") == colours);
            std::printf("%s\n", error.text.c_str());
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
            const std::string text = readtext(entry.path().string());
            for (const std::string& each : {text, text.substr(0, text.size() / 2)})
                run(reader, entry.path().filename().string(), each);
        }
    }
}

} // namespace

// Start-up: what it sets, in which order, and what it reads of the data directory.
#include "shell/startup.h"
#include "tests/failures.h"
#include "tests/golden.h"

using namespace orv;

namespace {

struct starting : sessiontest {};

// The sixteen stored colours 0, 1, 2 ... with something in the high byte, and a method; lowest bytes first.
std::string colourfile(std::uint32_t method) {
    std::string bytes;
    for (std::uint32_t i = 0; i <= 16; ++i) {
        const std::uint32_t value = i < 16 ? 0xAB000000U | i * 0x010203U : method;
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

TEST_F(starting, ShowsTheFirstStateOfTheWindow) {
    for (const char* name : {"Redraw", "MapDoContour3D"}) enablecommand(name, true);
    for (const char* name : {"CamVrec", "Vroom"}) checkcommand(name, false);
    writetext(inside("orvcolor.mat"), "1\r\n2\r\n");
    scripted::clearcalls();
    startup();
    std::string calls;
    for (const std::string& call : scripted::calls()) calls += call + "\r\n";
    expectgolden("startup.txt", calls);
    // The constants: half the angular frequency that the name promises, pi times 12.5 Hz.
    EXPECT_FLOAT_EQ(SessionState.modulationOmega[14], 39.269908F);
}

TEST_F(starting, RefusesOtherNumberMarks) {
    const platform::regionmarks refused[] = {{",", "."}, {".", "."}, {".", ""}};
    const std::string box =
        "box|Warning - incompatible settings!|Your regional settings are not compatible with "
        "Orvanta. Do You want to change them now?|yesno|stop|yes";
    for (const auto& marks : refused)
        for (const auto given : {platform::answer::yes, platform::answer::no}) {
            scripted::setregion(marks);
            scripted::clearcalls();
            scripted::expectbox("Your regional settings", given);
            startup();
            std::vector<std::string> shown = {box};
            if (given == platform::answer::yes) shown.emplace_back("regionsettings");
            EXPECT_EQ(scripted::calls(), shown);
            EXPECT_FALSE(canopen(inside("RGB.BIN"))); // nothing else has begun
        }
}

TEST_F(starting, DataDirectoryRule) {
    const std::pair<const char*, const char*> cases[] = {
        {"C:\\Program Files\\View", "C:\\Program Files\\View"},
        {"c:\\Users\\me", "C:\\Orvanta"},
        {"F:\\usr", "C:\\Orvanta"},
        {"j:\\US", "J:\\Orvanta27"},
        {"D:\\US", "D:\\US"},
        {"X:\\C:\\US", "X:\\C:\\US"}};
    for (const auto& [program, data] : cases) EXPECT_EQ(datadirectoryfor(program), data);
    scripted::setprogramdirectory(inside("missing"));
    const runtimeerror error = failureof(startup);
    EXPECT_EQ(error.kind, errorkind::fileaccess);
    EXPECT_NE(error.text.find("missing"), std::string::npos);
}

TEST_F(starting, ColourTable) {
    startup();
    EXPECT_EQ(readtext(inside("RGB.BIN")), ""); // created
    const std::array<std::int32_t, 17> defaults = {0x000000, 0x202020, 0x404040, 0x808080, 0x800000, 0xFF0000,
                                                   0x008000, 0x008080, 0x00FF00, 0x808000, 0xFFFF00, 0x800080,
                                                   0xFF00FF, 0x000080, 0x0000FF, 0x00FFFF, 0x00FFFF};
    EXPECT_EQ(SessionState.rgbTable, defaults);

    // Entries that are there whole count; the method needs all four bytes, and is one of 1..6.
    std::filesystem::remove(inside("RGB.BIN"));
    const struct {
        std::string bytes;
        int colours, method;
    } cases[] = {{colourfile(5) + "more", 16, 5},
                 {colourfile(5).substr(0, 67), 16, 1},
                 {colourfile(5).substr(0, 11), 2, 1},
                 {colourfile(0), 16, 1},
                 {colourfile(7), 16, 1},
                 {colourfile(6), 16, 6}};
    for (const auto& one : cases) {
        writetext(inside("rgb.bin"), one.bytes); // in any letter case
        startup();
        for (int i = 0; i < 17; ++i) // the high byte is ignored
            EXPECT_EQ(SessionState.rgbTable[static_cast<std::size_t>(i)],
                      i < one.colours ? i * 0x010203 : defaults[static_cast<std::size_t>(i)]);
        EXPECT_EQ(SessionState.surferMethod, one.method);
    }
}

TEST_F(starting, MaterialColours) {
    SessionState.materialColour(1) = 77;
    std::string lines = "255\r\nred\r\n65280\n 128\r\n\r\n99999999999\r\n7";
    writetext(inside("ORVCOLOR.MAT"), lines);
    startup();
    const std::int32_t expected[] = {255, 77, 65280, 128, 0, 7, 0}; // what is no colour leaves its slot
    for (int slot = 0; slot < 7; ++slot) EXPECT_EQ(SessionState.materialColour(slot), expected[slot]) << slot;
    for (int i = 6; i < 2100; ++i) lines += "\r\n" + std::to_string(i);
    writetext(inside("ORVCOLOR.MAT"), lines);
    startup();
    EXPECT_EQ(SessionState.materialColour(2000), 2000); // the last
    EXPECT_EQ(scripted::yieldcount(), 6 + 2001);
}

TEST_F(starting, UnreadableFilesStopNothing) {
    for (const char* name : {"RGB.BIN", "orvanta.ini", "orvcolor.mat"})
        std::filesystem::create_directory(inside(name));
    startup();
    EXPECT_EQ(SessionState.rgbTable[15], 0x00FFFF);
    EXPECT_EQ(SessionState.autoRedraw, -1.0F);
}

} // namespace

// Start-up: what it sets, in which order, and what it reads of the data directory.
#include "tests/testsupport.h"

#include "base/runtimeerror.h"
#include "shell/startup.h"

#include <algorithm>
#include <numeric>

using namespace orv;

namespace {

struct starting : sessiontest {};

std::string littleendian(std::initializer_list<std::uint32_t> values) {
    std::string bytes;
    for (const std::uint32_t value : values)
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

// The sixteen stored colours 0, 1, 2 ... with something in the high byte, and a method.
std::string colourfile(std::uint32_t method) {
    std::string bytes;
    for (std::uint32_t i = 0; i < 16; ++i) bytes += littleendian({0xAB000000U | i * 0x010203U});
    return bytes + littleendian({method});
}

std::size_t placeof(std::string_view line) {
    const auto& calls = scripted::calls();
    const auto found = std::find(calls.begin(), calls.end(), line);
    EXPECT_NE(found, calls.end()) << line;
    return static_cast<std::size_t>(found - calls.begin());
}

TEST_F(starting, SetsTheStartValues) {
    startup();
    const sessionstate& s = SessionState;
    EXPECT_EQ(s.dataDirectory, directory.path);
    EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), directory.path));
    EXPECT_DOUBLE_EQ(s.halfTurnConstant, 1.5707963267948966);
    EXPECT_EQ(s.focalLength, 0.05F);
    EXPECT_EQ(std::make_tuple(s.cameraX, s.cameraY, s.cameraZ), std::make_tuple(-10.0F, -15.0F, 8.0F));
    EXPECT_EQ(std::make_tuple(s.targetX, s.targetY, s.targetZ), std::make_tuple(0.0F, 0.0F, 10.0F));
    EXPECT_EQ(RoomModel.roomCentreZ, 10.0F);
    EXPECT_EQ(RoomModel.roomMaxY, -1E9F);
    EXPECT_EQ(RoomModel.roomMinZ, 1E9F);
    EXPECT_EQ(std::make_tuple(s.Nx, s.Ny, s.bandIndex, s.receiversShown), std::make_tuple(50, 50, 12, 20));
    EXPECT_EQ(std::make_tuple(s.maxRadius, s.maxLevel, s.minLevel, s.levelStep),
              std::make_tuple(5.0F, 120.0F, 80.0F, 0.0F));
    EXPECT_EQ(s.colourSchemeIndex, 6.0F);
    EXPECT_EQ(s.colourSchemeName, "Iris");
    EXPECT_EQ(std::make_tuple(s.colourSchemeCount, s.parameterIndex, s.parameterCount),
              std::make_tuple(6, 1, 20));
    EXPECT_EQ(s.parameterName, "Leq");
    EXPECT_EQ(s.parameterSource, 0.0F);
    EXPECT_EQ(s.autoRedraw, -1.0F);
    EXPECT_EQ(s.surferMethod, 1);
    EXPECT_EQ(s.mapKind, "Normal");
    EXPECT_EQ(s.colourRoom, 0);
    EXPECT_EQ(s.colourSources, 0x0000FF);
    EXPECT_EQ(s.colourReceivers, 0);
    EXPECT_EQ(s.colourBlanking, 0xFF00FF);
    EXPECT_EQ(s.colourPosted, 0xFFFFFF);
    EXPECT_EQ(s.colourRays, 0x0000FF);
}

TEST_F(starting, SetsTheAcousticConstants) {
    startup();
    const sessionstate& s = SessionState;
    // 10^(-39.4 / 10), 10^0, 10^(1.2 / 10), 10^(-6.6 / 10), to single precision.
    EXPECT_FLOAT_EQ(s.aWeight[1], 1.1481536e-4F);
    EXPECT_EQ(s.aWeight[6], 1.0F);
    EXPECT_FLOAT_EQ(s.aWeight[7], 1.3182567F);
    EXPECT_FLOAT_EQ(s.aWeight[10], 0.21877617F);
    // Half the angular frequency that the name promises: pi times 0.63, 1 and 12.5 Hz.
    EXPECT_FLOAT_EQ(s.modulationOmega[1], 1.9792034F);
    EXPECT_FLOAT_EQ(s.modulationOmega[3], 3.1415927F);
    EXPECT_FLOAT_EQ(s.modulationOmega[14], 39.269908F);
    // The 0.1233 at 1 kHz makes the male weights sum to 1.2713 instead of 1.381; less the redundancy weights
    // a perfect channel has 0.8903.
    EXPECT_EQ(s.maleAlpha[3], 0.1233F);
    const float alpha = std::accumulate(s.maleAlpha.begin(), s.maleAlpha.end(), 0.0F);
    EXPECT_NEAR(alpha, 1.2713F, 1e-6F);
    EXPECT_NEAR(alpha - std::accumulate(s.maleBeta.begin(), s.maleBeta.end(), 0.0F), 0.8903F, 1e-6F);
    const float femalealpha = std::accumulate(s.femaleAlpha.begin(), s.femaleAlpha.end(), 0.0F);
    EXPECT_NEAR(femalealpha - std::accumulate(s.femaleBeta.begin(), s.femaleBeta.end(), 0.0F), 1.0F, 1e-6F);
    EXPECT_EQ(s.maleVoiceSpectrum[6], -24.8F);
    EXPECT_EQ(s.femaleVoiceSpectrum[0], -100.0F);
}

TEST_F(starting, ShowsTheFirstStateOfTheWindow) {
    for (const char* name : {"Redraw", "BLNnew", "MapOptions", "MapDoContour3D"}) enablecommand(name, true);
    for (const char* name : {"CamVrec", "BLNview", "Vroom"}) checkcommand(name, false);
    writetext(inside("orvcolor.mat"), "1\r\n2\r\n");
    scripted::clearcalls();
    startup();
    EXPECT_EQ(scripted::title(), "Orvanta View v. 3.10");
    for (const char* control : {"Picture1", "Frame1", "Frame2", "SSFrame1", "Frame2DView"})
        EXPECT_TRUE(scripted::called("visible " + std::string(control) + " 0")) << control;
    for (const char* name : {"Redraw", "BLNnew", "MapOptions", "MapDoContour3D"})
        EXPECT_FALSE(isenabled(name)) << name;
    for (const char* name : {"CamVrec", "BLNview", "Vroom"}) EXPECT_TRUE(ischecked(name)) << name;
    EXPECT_EQ(platform::gettext("CamX"), "-10");
    EXPECT_EQ(platform::gettext("CamY"), "-15");
    EXPECT_EQ(platform::gettext("CamZ"), "8");
    EXPECT_EQ(platform::gettext("TargetX"), ""); // no digit is forced
    EXPECT_EQ(platform::gettext("TargetZ"), "10");
    EXPECT_EQ(platform::gettext("FocLenght"), "50");
    EXPECT_EQ(platform::gettext("Redisplay"), "Auto Redraw");
    // The order: title, views, menus, fields, marks, colours, caption of the button.
    EXPECT_LT(placeof("title|Orvanta View v. 3.10"), placeof("visible Picture1 0"));
    EXPECT_LT(placeof("visible Frame1 0"), placeof("command Redraw disabled"));
    EXPECT_LT(placeof("command MapDoContour3D disabled"), placeof("command CamVrec enabled checked hidden"));
    EXPECT_LT(placeof("command BLNview enabled checked hidden"), placeof("text CamX|-10"));
    EXPECT_LT(placeof("text FocLenght|50"), placeof("command Vroom enabled checked hidden"));
    EXPECT_LT(placeof("command Vroom enabled checked hidden"), placeof("yield"));
    EXPECT_EQ(placeof("text Redisplay|Auto Redraw"), scripted::calls().size() - 1);
}

TEST_F(starting, RefusesOtherNumberMarks) {
    const platform::regionmarks refused[] = {{",", "."}, {",", ","}, {".", "."}, {".", ""}, {"", ","}};
    for (const auto& marks : refused)
        for (const auto given : {platform::answer::yes, platform::answer::no}) {
            SessionState = sessionstate{};
            scripted::setregion(marks);
            scripted::clearcalls();
            scripted::expectbox("Your regional settings are not compatible with Orvanta. "
                                "Do You want to change them now?",
                                given);
            startup();
            std::vector<std::string> shown = {
                "box|Warning - incompatible settings!|Your regional settings are "
                "not compatible with Orvanta. Do You want to change them now?|"
                "yesno|stop|yes"};
            if (given == platform::answer::yes) shown.emplace_back("regionsettings");
            EXPECT_EQ(scripted::calls(), shown);
            EXPECT_EQ(SessionState.halfTurnConstant, 0.0);
            EXPECT_FALSE(canopen(inside("RGB.BIN")));
        }
    EXPECT_EQ(SessionState.dataDirectory, directory.path); // found before the test
}

TEST_F(starting, DataDirectoryRule) {
    EXPECT_EQ(datadirectoryfor("C:\\Program Files\\View"), "C:\\Program Files\\View");
    EXPECT_EQ(datadirectoryfor("c:\\Users\\me"), "C:\\Orvanta");
    EXPECT_EQ(datadirectoryfor("F:\\usr"), "C:\\Orvanta");
    EXPECT_EQ(datadirectoryfor("j:\\US"), "J:\\Orvanta27");
    EXPECT_EQ(datadirectoryfor("D:\\US"), "D:\\US");
    EXPECT_EQ(datadirectoryfor("X:\\C:\\US"), "X:\\C:\\US");

    scripted::setprogramdirectory(inside("missing"));
    try {
        startup();
        ADD_FAILURE() << "a data directory that is not there";
    } catch (const runtimeerror& error) {
        EXPECT_EQ(error.kind, errorkind::fileaccess);
        EXPECT_NE(error.text.find("missing"), std::string::npos);
    }
}

TEST_F(starting, ColourTable) {
    startup();
    EXPECT_EQ(readtext(inside("RGB.BIN")), ""); // created
    const std::array<std::int32_t, 17> defaults = {0x000000, 0x202020, 0x404040, 0x808080, 0x800000, 0xFF0000,
                                                   0x008000, 0x008080, 0x00FF00, 0x808000, 0xFFFF00, 0x800080,
                                                   0xFF00FF, 0x000080, 0x0000FF, 0x00FFFF, 0x00FFFF};
    EXPECT_EQ(SessionState.rgbTable, defaults);

    std::filesystem::remove(inside("RGB.BIN"));
    writetext(inside("rgb.bin"), colourfile(5) + "more"); // in any letter case
    startup();
    EXPECT_EQ(SessionState.rgbTable[0], 0);
    EXPECT_EQ(SessionState.rgbTable[15], 15 * 0x010203); // the high byte ignored
    EXPECT_EQ(SessionState.rgbTable[16], 0x00FFFF);      // is not stored
    EXPECT_EQ(SessionState.surferMethod, 5);
    EXPECT_FALSE(canopen(inside("RGB.BIN")));

    // Entries that are there whole count; the method needs all four bytes.
    writetext(inside("rgb.bin"), colourfile(5).substr(0, 11));
    startup();
    EXPECT_EQ(SessionState.rgbTable[1], 0x010203);
    EXPECT_EQ(SessionState.rgbTable[2], 0x404040);
    EXPECT_EQ(SessionState.surferMethod, 1);
    writetext(inside("rgb.bin"), colourfile(5).substr(0, 67));
    startup();
    EXPECT_EQ(SessionState.rgbTable[15], 15 * 0x010203);
    EXPECT_EQ(SessionState.surferMethod, 1);

    for (const std::uint32_t method : {0U, 7U, 0xFFFFFFFFU, 0x06000000U}) {
        writetext(inside("rgb.bin"), colourfile(method));
        startup();
        EXPECT_EQ(SessionState.surferMethod, 1) << method;
    }
    writetext(inside("rgb.bin"), colourfile(6));
    startup();
    EXPECT_EQ(SessionState.surferMethod, 6);
}

TEST_F(starting, UnreadableFilesStopNothing) {
    std::filesystem::create_directory(inside("RGB.BIN"));
    std::filesystem::create_directory(inside("orvanta.ini"));
    std::filesystem::create_directory(inside("orvcolor.mat"));
    startup();
    EXPECT_EQ(SessionState.rgbTable[15], 0x00FFFF);
    EXPECT_EQ(SessionState.surferMethod, 1);
    EXPECT_EQ(SessionState.temperature, 0.0F);
    EXPECT_EQ(SessionState.autoRedraw, -1.0F);
}

TEST_F(starting, Settings) {
    writetext(inside("Orvanta.INI"), "Temperature=21.5 degrees\r\nHumi = 45\r\nTime=2.5 s\r\nPrec=0.01\r\n"
                                     "Alfa=1.2\nBeta=,3\r\nLevel=70\r\nHist=1e2\r\nTimes=3\r\nhumi=9\r\n");
    startup();
    EXPECT_EQ(SessionState.temperature, 21.5F);
    EXPECT_EQ(SessionState.humidity, 45.0F);
    EXPECT_EQ(SessionState.levelSetting, 70.0);
    EXPECT_EQ(SessionState.historySetting, 100.0);
    EXPECT_EQ(ResultSet.responseLength, 3.0); // the later of two
    EXPECT_EQ(ResultSet.timeStep, 0.01F);
    EXPECT_EQ(ResultSet.alfaConstant, 1.2F);
    EXPECT_EQ(ResultSet.betaConstant, 0.0F); // a comma ends the number
}

TEST_F(starting, MaterialColours) {
    SessionState.materialColour(1) = 77;
    writetext(inside("ORVCOLOR.MAT"), "255\r\nred\r\n65280\n 128\r\n\r\n99999999999\r\n7");
    startup();
    const std::int32_t expected[] = {255, 77, 65280, 128, 0, 7, 0}; // what is no colour leaves its slot
    for (int slot = 0; slot < 7; ++slot) EXPECT_EQ(SessionState.materialColour(slot), expected[slot]) << slot;
    EXPECT_EQ(scripted::yieldcount(), 6);
}

TEST_F(starting, MaterialColoursBeyondTheTable) {
    std::string lines;
    for (int i = 0; i < 2100; ++i) lines += std::to_string(i) + "\r\n";
    writetext(inside("orvcolor.mat"), lines);
    startup();
    EXPECT_EQ(SessionState.materialColour(2000), 2000);
    EXPECT_EQ(scripted::yieldcount(), 2001);
}

TEST_F(starting, KeysOfTheMainWindow) {
    scripted::expectbox("Sorry, no help still available", platform::answer::ok);
    mainkey(112);
    EXPECT_EQ(SessionState.drawAbort, 0.0F);
    mainkey(27);
    EXPECT_EQ(SessionState.drawAbort, -1.0F);
    SessionState.drawAbort = 0;
    mainkey(13);
    EXPECT_EQ(SessionState.drawAbort, 0.0F);
}

TEST_F(starting, ResizeDrawsARoomAgain) {
    startup();
    mainresized(640, 480);
    EXPECT_EQ(SessionState.pictureWidth, 640);
    EXPECT_EQ(SessionState.pictureHeight, 480);
    EXPECT_TRUE(picture.lines.empty());

    RoomModel.faceCount = 1;
    RoomModel.faceVertexCount(1) = 0;
    extendbox(0, 0, 0);
    extendbox(10, 8, 5);
    mainresized(800, 600);
    EXPECT_FALSE(picture.lines.empty());
    EXPECT_TRUE(platform::isvisible("Frame2DView"));

    picture.lines.clear();
    suspendcommands(true); // a load will draw at its end
    mainresized(300, 200);
    EXPECT_TRUE(picture.lines.empty());
    EXPECT_EQ(SessionState.pictureHeight, 200);
}

} // namespace

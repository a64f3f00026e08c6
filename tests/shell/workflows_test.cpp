// The file commands with scripted dialogs: what they ask, load and write, and the state they leave.
#include "tests/testsupport.h"

#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "shell/startup.h"
#include "shell/workflows.h"

#include <algorithm>
#include <cmath>
#include <set>

using namespace orv;

namespace {

constexpr std::string_view programtitle = "Orvanta View v. 3.10";
using names = std::set<std::string>;

// A room of one wall with two receivers, `width` metres wide.
std::string roomfile(int width) {
    const std::string w = std::to_string(width);
    return "EntityList\r\n Wall\r\n  Face 0  1  4     0  0  0  " + w + "  0  0  " + w +
           "  0  3  0  0  3\r\n End\r\n Source  1  1  1  2  2  1  0  omni.spk\r\n"
           " Receiver  2  2  1  0  0  0\r\n Receiver  3  2  1  0  0  0\r\nEnd\r\n";
}

// Two receivers, slots of 10 ms up to 0.5 s, a decay by 60 dB in 0.3 s from a level far above 0 dB.
std::string resultfile(const std::string& format) {
    std::string text = "Microphones = 2\r\nTime       = 0.5\r\nPrecision  = 0.01\r\nFormat     = " + format +
                       "\r\nMean free path = 4\r\nPyramids traced = 1000\r\n";
    for (int receiver = 1; receiver <= 2; ++receiver) {
        text += "\r\n[Microphone_" + std::to_string(receiver) + "]\r\n";
        if (format == "1.2") {
            text += "Position = 2 2 1 0 0 0\r\nDelay = 0.01\r\n";
            for (const char* row : {"LFC = ", "LE  = ", "LF  = "})
                text += row + std::string(" .1 .1 .1 .1 .1 .1 .1 .1 .1 .1\r\n");
            text += "Energy\r\n";
        } else {
            text += "2 2 1 0 0 0\r\n.1 .1 .1 .1 .1 .1 .1 .1 .1 .1\r\n.01\r\n";
        }
        for (int slot = 0; slot <= 50; ++slot) {
            const std::string energy = numbertext(receiver * 1E9 * std::pow(10.0, -6 * slot * 0.01 / 0.3));
            for (int band = 0; band < 10; ++band) text += energy;
            text += "\r\n";
        }
    }
    return text;
}

const names roomentries = {"Redraw",     "CamRedr2D",  "render",          "BLNadd", "MapLoad", "DXFOUT",
                           "FileExport", "ExportCatt", "importrayonresp", "Fsave",  "Cprint"};
const names mapentries = {"MapOptions", "RGBOpt", "STIopt", "MapDoDither2D", "MapDoDither3D"};
const names contourentries = {"MapDoContour2D", "MapDoContour3D"};
const names responseentries = {"ExportWAV", "ViewImpulse"};
const names lateralentries = {"T_LF", "T_LFC"};

names joined(std::initializer_list<names> sets) {
    names all;
    for (const names& each : sets) all.insert(each.begin(), each.end());
    return all;
}

struct workflows : sessiontest {
    names offatstart;

    workflows() {
        startup();
        for (const menucommand& row : menucommands())
            if (!row.enabled) offatstart.emplace(row.name);
        writetext(inside("hall.ray"), roomfile(10));
        writetext(inside("hall._01"), resultfile("1.2"));
        scripted::clearcalls();
    }

    // What has been enabled since the start; nothing may have been disabled.
    names enabledsince() const {
        names enabled;
        for (const menucommand& row : menucommands()) {
            if (row.name.empty()) continue;
            const bool started = !offatstart.contains(std::string(row.name));
            if (row.enabled && !started) enabled.emplace(row.name);
            EXPECT_FALSE(!row.enabled && started) << row.name;
        }
        return enabled;
    }

    // What follows the dialog of a result that is read whole: the options of the speech index, and the
    // question whether to save.
    static void expectresult(platform::answer saved = platform::answer::no) {
        scripted::expectwindow("STI Options");
        scripted::expectbox("WARNING!", saved);
    }

    void load(void (*run)(), const std::string& name, platform::answer saved = platform::answer::no) {
        scripted::expectopen(inside(name));
        if (run != FLoad) expectresult(saved);
        run();
    }

    // Opens a result beside which there is a good parameter file.
    void loadbeside(void (*run)(), const std::string& name, platform::answer parametersonly) {
        scripted::expectopen(inside(name));
        scripted::expectbox("Attention!", parametersonly);
        if (parametersonly != platform::answer::yes) expectresult();
        run();
    }

    bool drawn(std::string_view text) const {
        return std::any_of(picture.lines.begin(), picture.lines.end(),
                           [&](const std::string& line) { return line.find(text) != std::string::npos; });
    }

    std::string titled(const std::string& name) const {
        return inside(name) + " - " + std::string(programtitle);
    }
};

TEST_F(workflows, CancelLeavesEverything) {
    load(FLoad, "hall.ray");
    const names enabled = enabledsince();
    SessionState.resultFileName = "former._01";
    scripted::clearcalls();
    picture.lines.clear();

    struct {
        void (*run)();
        const char* asked;
    } const commands[] = {
        {FLoad, "open|Load a Orvanta CAD File|Orvcad Geom.Files (*.ray)|*.ray|"},
        {OpenRes, "open|Load an Impulse Response File and its Geometry|"
                  "Impulse Resp.Files (*._*)|*._*|*._*|"},
        {MapLoad, "open|Load an Impulse Response File|Impulse Resp.Files (*._*)|*._*|*._*|"},
        {Fsave, "save|Save a Orvanta CAD File|Orvcad Geom.Files (*.ray)|*.ray|"}};
    for (const auto& command : commands) {
        if (command.run == Fsave)
            scripted::expectsave(scripted::cancelled);
        else
            scripted::expectopen(scripted::cancelled);
        command.run();
        ASSERT_EQ(scripted::calls().size(), 1U) << command.asked;
        EXPECT_TRUE(scripted::calls()[0].starts_with(command.asked)) << scripted::calls()[0];
        EXPECT_TRUE(scripted::calls()[0].ends_with("|" + directory.path)); // where the dialog starts
        scripted::clearcalls();
    }
    EXPECT_EQ(SessionState.geometryFileName, inside("hall.ray"));
    EXPECT_EQ(SessionState.resultFileName, "former._01");
    EXPECT_EQ(enabledsince(), enabled);
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_TRUE(picture.lines.empty());
}

TEST_F(workflows, OpensARoom) {
    load(FLoad, "hall.ray");
    EXPECT_NE(scripted::calls()[0].find("|*.RAY|"), std::string::npos); // the proposal without a name
    EXPECT_EQ(SessionState.geometryFileName, inside("hall.ray"));
    EXPECT_EQ(scripted::title(), titled("hall.ray"));
    EXPECT_EQ(RoomModel.receiverCount, 2);
    EXPECT_EQ(enabledsince(), roomentries);
    EXPECT_TRUE(drawn("hall.ray"));
    EXPECT_TRUE(platform::isvisible("Frame2DView"));
    EXPECT_FALSE(platform::isvisible("Frame1"));
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_TRUE(scripted::isenabled("Redisplay"));

    scripted::expectopen(scripted::cancelled);
    scripted::clearcalls();
    FLoad();
    EXPECT_NE(scripted::calls()[0].find("|" + inside("hall.ray") + "|"), std::string::npos);
}

TEST_F(workflows, ARoomUnderParametersEnablesTheMaps) {
    SessionState.parameterSource = -1;
    load(FLoad, "hall.ray");
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, {"ExportWAV"}}));
    SessionState.levelStep = 2.5F;
    load(FLoad, "hall.ray");
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, contourentries, {"ExportWAV"}}));
}

TEST_F(workflows, ProposesTheNameToSave) {
    const struct {
        const char *room, *dxf, *proposal;
    } cases[] = {{"/a/hall.ray", "/a/plan.DXF", "/a/hall.ray"},
                 {"/a/hall.RAY", "", "/a/hall.RAY"},
                 {"/a/hall.dxf", "/a/plan.dxf", "/a/plan.RAY"}, // after an import
                 {"", "plan.DXF", "plan.RAY"},
                 {"/a/hall.nas", "", "*.RAY"},
                 {"ay", "xf", "*.RAY"}};
    for (const auto& each : cases) {
        SessionState.geometryFileName = each.room;
        SessionState.dxfFileName = each.dxf;
        EXPECT_EQ(savedroomproposal(), each.proposal) << each.room;
        scripted::expectsave(scripted::cancelled);
        scripted::clearcalls();
        Fsave();
        EXPECT_EQ(scripted::calls()[0], "save|Save a Orvanta CAD File|Orvcad Geom.Files (*.ray)|*.ray|" +
                                            std::string(each.proposal) + "|" + directory.path);
    }
}

TEST_F(workflows, SavesUnderANameWithExtension) {
    writetext(inside("orvanta.ini"), "Temp=20\r\nHumi=50\r\n");
    load(FLoad, "hall.ray");
    std::filesystem::create_directory(inside("my.rooms"));
    const struct {
        const char *chosen, *written;
    } cases[] = {{"copy", "copy.ray"},
                 {"copy.geo", "copy.geo"},
                 {"copy.", "copy."},
                 {".copy", ".copy.ray"}, // the first character makes no extension
                 {"my.rooms/copy", "my.rooms/copy.ray"}};
    for (const auto& each : cases) {
        scripted::expectsave(inside(each.chosen));
        Fsave();
        EXPECT_EQ(SessionState.geometryFileName, inside(each.written));
        EXPECT_EQ(scripted::title(), titled(each.written));
        EXPECT_TRUE(readtext(inside(each.written)).starts_with("EntityList\r\n Wall\r\n  Face 0  1  4 "));
        EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    }
}

TEST_F(workflows, OpensAResultWithItsRoom) {
    std::filesystem::rename(inside("hall.ray"), inside("Hall.Ray")); // found in any letter case
    load(OpenRes, "hall._01");
    EXPECT_EQ(SessionState.resultFileName, inside("hall._01"));
    EXPECT_EQ(SessionState.geometryFileName, inside("Hall.Ray"));
    EXPECT_EQ(scripted::title(), titled("Hall.Ray"));
    EXPECT_EQ(SessionState.parameterSource, 1.0F);
    EXPECT_NEAR(ParameterSet.T20(1, linearband), 0.3F, 1e-3F);
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, responseentries, lateralentries}));
    EXPECT_TRUE(drawn("hall._01"));
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    // The result first, then its room.
    const auto& calls = scripted::calls();
    const auto result = std::find(calls.begin(), calls.end(), "log|File Loaded OK!");
    const auto room =
        std::find(calls.begin(), calls.end(), "status 1|Loading " + inside("Hall.Ray") + " ...");
    EXPECT_LT(result - calls.begin(), room - calls.begin());
    EXPECT_NE(room, calls.end());
}

TEST_F(workflows, AnOldResultHasNoLateralTables) {
    writetext(inside("hall._01"), resultfile("1.1"));
    SessionState.levelStep = 5;
    load(OpenRes, "hall._01");
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, contourentries, responseentries}));
}

TEST_F(workflows, AResultForgetsTheMaps) {
    load(FLoad, "hall.ray");
    for (void (*run)() : {OpenRes, MapLoad}) {
        SessionState.gridReady = SessionState.contourReady = -1;
        load(run, "hall._01");
        EXPECT_EQ(SessionState.gridReady, 0);
        EXPECT_EQ(SessionState.contourReady, 0);
    }
}

TEST_F(workflows, AsksForAMissingRoom) {
    std::filesystem::rename(inside("hall.ray"), inside("other.ray"));
    scripted::expectopen(inside("hall._01"), "and its Geometry");
    expectresult();
    scripted::expectopen(inside("other.ray"), "Load a Orvanta CAD File");
    OpenRes();
    EXPECT_EQ(SessionState.geometryFileName, inside("other.ray"));
    EXPECT_EQ(scripted::title(), titled("other.ray"));
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, responseentries, lateralentries}));

    // Cancelled: the former room stays, under the new result.
    writetext(inside("stage._02"), resultfile("1.2"));
    scripted::expectopen(inside("stage._02"));
    expectresult();
    scripted::expectopen(scripted::cancelled, "Load a Orvanta CAD File");
    picture.lines.clear();
    scripted::clearcalls();
    OpenRes();
    EXPECT_EQ(SessionState.resultFileName, inside("stage._02"));
    EXPECT_EQ(SessionState.geometryFileName, inside("stage.RAY"));
    EXPECT_EQ(scripted::title(), titled("stage.RAY"));
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_TRUE(drawn("stage._02"));
    // The dialog proposed the name that was looked for.
    EXPECT_NE(scripted::callswith("open|Load a Orvanta")[0].find("|" + inside("stage.RAY") + "|"),
              std::string::npos);
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_FALSE(commandssuspended());
}

TEST_F(workflows, WithoutAnyRoomTheTitleIsTheOneLookedFor) {
    std::filesystem::remove(inside("hall.ray"));
    scripted::expectopen(inside("hall._01"));
    expectresult();
    scripted::expectopen(scripted::cancelled);
    OpenRes();
    EXPECT_EQ(scripted::title(), titled("hall.RAY"));
    EXPECT_EQ(SessionState.geometryFileName, inside("hall.RAY"));
}

TEST_F(workflows, AResultAloneKeepsTheRoom) {
    writetext(inside("hall.ray"), roomfile(25));
    writetext(inside("other.ray"), roomfile(10));
    load(FLoad, "other.ray");
    load(MapLoad, "hall._01");
    EXPECT_EQ(RoomModel.roomMaxX, 10.0F);
    EXPECT_EQ(SessionState.geometryFileName, inside("hall.RAY")); // named by the load, though not read
    EXPECT_EQ(scripted::title(), titled("other.ray"));
    EXPECT_EQ(SessionState.resultFileName, inside("hall._01"));
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, responseentries, lateralentries}));
    EXPECT_TRUE(drawn("hall._01"));
}

TEST_F(workflows, AParameterFileCountsWhileNothingIsNewer) {
    const std::string result = inside("hall._01"), settings = inside("orvanta.ini"),
                      parameters = inside("Hall.-01");
    EXPECT_FALSE(parameterfileusable(result)); // none there
    writetext(parameters, "parameters");
    const struct {
        double afterresult, aftersettings;
        bool usable;
    } cases[] = {{10, 10, true}, {0, 0, true}, {-1, 10, false}, {10, -1, false}, {10, 0, true}};
    writetext(settings, "Temp=20\r\n");
    for (const auto& each : cases) {
        setdateafter(result, parameters, -each.afterresult);
        setdateafter(settings, parameters, -each.aftersettings);
        EXPECT_EQ(parameterfileusable(result), each.usable) << each.afterresult << " " << each.aftersettings;
    }
    std::filesystem::remove(settings); // cannot be newer then
    setdateafter(result, parameters, -10);
    EXPECT_TRUE(parameterfileusable(result));
    setdateafter(result, parameters, 10);
    EXPECT_FALSE(parameterfileusable(result));

    // Then the result is opened from its responses, without a question.
    load(OpenRes, "hall._01");
    EXPECT_EQ(SessionState.parameterSource, 1.0F);
    EXPECT_EQ(readtext(parameters), "parameters"); // not saved
}

TEST_F(workflows, AResultReadWholeOffersToSaveItsParameters) {
    for (void (*run)() : {OpenRes, MapLoad}) {
        load(run, "hall._01", platform::answer::no);
        EXPECT_FALSE(canopen(inside("hall.-01")));
    }
    EXPECT_TRUE(
        scripted::called("box|WARNING!|Do You want to save the computed parameters ?|yesno|exclamation|"
                         "yes"));
    load(OpenRes, "hall._01", platform::answer::yes);
    const std::string saved = readtext(inside("hall.-01"));
    EXPECT_NE(saved.find("\"Acoustic Parameters from file:\",\"" + inside("hall._01") + "\"\r\n"),
              std::string::npos);
    EXPECT_GT(ParameterSet.STI(1, 11), 0.0F); // computed before it was saved
    EXPECT_NE(saved.find(numbertext(static_cast<double>(ParameterSet.STI(1, 11)))), std::string::npos);
    // The response is read, then the options come, then the question.
    const auto& calls = scripted::calls();
    const auto place = [&](std::string_view line) {
        return std::find_if(calls.begin(), calls.end(),
                            [&](const auto& call) { return call.starts_with(line); });
    };
    EXPECT_LT(place("log|File Loaded OK!"), place("window STI Options"));
    EXPECT_LT(place("window STI Options"), place("box|WARNING!"));
}

TEST_F(workflows, AGoodParameterFileMayBeLoadedAlone) {
    load(OpenRes, "hall._01", platform::answer::yes);
    const float index = ParameterSet.STI(2, 11), T20 = ParameterSet.T20(2, linearband);
    for (void (*run)() : {OpenRes, MapLoad}) {
        clearparameters(2);
        for (const std::string& name : responseentries) enablecommand(name, true);
        SessionState.gridReady = SessionState.contourReady = -1;
        scripted::clearcalls();
        loadbeside(run, "hall._01", platform::answer::yes);
        EXPECT_TRUE(
            scripted::called("box|Attention!|Do You want to load directly only the acoustical parameters "
                             "without impulse response data?|yesno|question|no"));
        EXPECT_EQ(SessionState.parameterSource, -1.0F);
        EXPECT_NEAR(ParameterSet.STI(2, 11), index, 1e-6);
        EXPECT_NEAR(ParameterSet.T20(2, linearband), T20, 1e-6);
        EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, lateralentries})); // no responses
        EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0);
        EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
        EXPECT_FALSE(commandssuspended());
    }
    // On No, as if there were none.
    loadbeside(OpenRes, "hall._01", platform::answer::no);
    EXPECT_EQ(SessionState.parameterSource, 1.0F);
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, responseentries, lateralentries}));
}

TEST_F(workflows, ParametersAloneInAFreshSession) {
    load(OpenRes, "hall._01", platform::answer::yes);
    resetcommands();
    startup();
    SessionState.levelStep = 5;
    SessionState.parameterSource = 0;
    loadbeside(OpenRes, "hall._01", platform::answer::yes);
    // The lateral tables are those of a result that has been read.
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, contourentries}));
    EXPECT_EQ(RoomModel.receiverCount, 2);
    EXPECT_EQ(scripted::title(), titled("hall.ray"));
}

TEST_F(workflows, ADamagedParameterFileIsNamed) {
    writetext(inside("hall.-01"), "\"New File Format\"\r\n\r\n");
    scripted::expectopen(inside("hall._01"));
    scripted::expectbox("Attention!", platform::answer::yes);
    try {
        OpenRes();
        ADD_FAILURE();
    } catch (const runtimeerror& error) {
        EXPECT_EQ(error.kind, errorkind::pastend);
        EXPECT_NE(error.text.find(inside("hall.-01") + ", line "), std::string::npos) << error.text;
    }
    EXPECT_FALSE(commandssuspended());
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
}

TEST_F(workflows, NothingElseStartsDuringALoad) {
    load(FLoad, "hall.ray");
    std::string during;
    scripted::expectopen(inside("hall._01"));
    expectresult();
    scripted::atyield(3, [&] {
        for (const char* name : {"FLoad", "Fsave", "OpenRes", "MapLoad", "Redraw", "CamRedr2D"})
            runcommand(name); // would ask or draw
        during = picture.lines.empty() ? "nothing drawn" : "drawn";
        mainresized(300, 200);
        EXPECT_FALSE(scripted::isenabled("Redisplay"));
    });
    picture.lines.clear();
    runcommand("OpenRes");
    EXPECT_EQ(during, "nothing drawn");
    EXPECT_TRUE(isoffered(command("FLoad")));
    EXPECT_EQ(scripted::countcalls("open|"), 2U);
}

TEST_F(workflows, FailuresPassOn) {
    const struct {
        void (*run)();
        const char* name;
        errorkind kind;
    } cases[] = {{FLoad, "missing.ray", errorkind::filenotfound},
                 {OpenRes, "missing._01", errorkind::filenotfound},
                 {FLoad, "short.ray", errorkind::divisionbyzero}};
    writetext(inside("short.ray"), "EntityList\r\n");
    for (const auto& each : cases) {
        scripted::expectopen(inside(each.name));
        try {
            each.run();
            ADD_FAILURE() << each.name;
        } catch (const runtimeerror& error) {
            EXPECT_EQ(error.kind, each.kind);
            EXPECT_NE(error.text.find(each.name), std::string::npos) << error.text;
        }
        EXPECT_FALSE(commandssuspended());
    }
    load(FLoad, "hall.ray");
    scripted::expectsave(inside("copy.ray"));
    try {
        Fsave(); // no settings file to write the temperature into
        ADD_FAILURE();
    } catch (const runtimeerror& error) {
        EXPECT_EQ(error.kind, errorkind::filenotfound);
        EXPECT_FALSE(canopen(inside("copy.ray")));
    }
}

TEST_F(workflows, ARoomThatDriftsStopsTheProgram) {
    std::string text = roomfile(10);
    text.replace(text.find("4     0"), 1, "3"); // a vertex too many on the line
    writetext(inside("hall.ray"), text);
    scripted::expectopen(inside("hall.ray"));
    EXPECT_THROW(FLoad(), scripted::halted);
}

TEST_F(workflows, TitlesAreTextOfThePage) {
    showtitle("/a/Z\xC3\xBCrich.ray");
    EXPECT_EQ(scripted::title(), "/a/Z\xFCrich.ray - Orvanta View v. 3.10");
}

} // namespace

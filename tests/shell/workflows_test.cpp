// The file commands with scripted dialogs: what they ask, load and write, and the state they leave.
#include "tests/failures.h"
#include "tests/results/resulttext.h"
#include "tests/testsupport.h"

#include "results/speechindex.h"
#include "shell/startup.h"
#include "shell/workflows.h"

#include <algorithm>
#include <set>

using namespace orv;

namespace {

constexpr std::string_view programtitle = "Orvanta View v. 3.10";
using names = std::set<std::string>;

// A room of one wall with a receiver, `width` metres wide.
std::string roomfile(int width) {
    const std::string w = std::to_string(width);
    return "EntityList\r\n Wall\r\n  Face 0  1  4     0  0  0  " + w + "  0  0  " + w +
           "  0  3  0  0  3\r\n End\r\n Source  1  1  1  2  2  1  0  omni.spk\r\n"
           " Receiver  2  2  1  0  0  0\r\nEnd\r\n";
}

// Slots of 10 ms up to 0.5 s, a decay by 60 dB in 0.3 s from a level far above 0 dB.
std::string resultfile(const std::string& format) {
    resulttext file;
    file.format = format;
    file.length = 0.5, file.step = 0.01;
    file.block("[Microphone_1]", decayrows(51, 0, 1E9, 0.3, 0.01), 0.01);
    return file.text();
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

    bool drawn(const std::string& text) const {
        const auto has = [&](const std::string& line) { return line.find(text) != std::string::npos; };
        return std::any_of(picture.lines.begin(), picture.lines.end(), has);
    }

    static void expectidle() {
        EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
        EXPECT_FALSE(commandssuspended());
        EXPECT_TRUE(isoffered(command("FLoad")));
    }

    std::string titled(const std::string& name) const {
        return inside(name) + " - " + std::string(programtitle);
    }
};

TEST_F(workflows, CancelLeavesEverything) {
    load(FLoad, "hall.ray");
    const names enabled = enabledsince();
    SessionState.resultFileName = "former._01";
    picture.lines.clear();
    const std::string room = inside("hall.ray"), results = "Impulse Resp.Files (*._*)|*._*|*._*";
    const struct {
        void (*run)();
        std::string asked;
    } commands[] = {{FLoad, "open|Load a Orvanta CAD File|Orvcad Geom.Files (*.ray)|*.ray|" + room},
                    {OpenRes, "open|Load an Impulse Response File and its Geometry|" + results},
                    {MapLoad, "open|Load an Impulse Response File|" + results},
                    {Fsave, "save|Save a Orvanta CAD File|Orvcad Geom.Files (*.ray)|*.ray|" + room}};
    for (const auto& command : commands) {
        scripted::clearcalls();
        if (command.run == Fsave)
            scripted::expectsave(scripted::cancelled);
        else
            scripted::expectopen(scripted::cancelled);
        command.run();
        EXPECT_EQ(scripted::calls(), std::vector{command.asked + "|" + directory.path});
    }
    EXPECT_EQ(SessionState.geometryFileName, room);
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
    EXPECT_EQ(RoomModel.receiverCount, 1);
    EXPECT_EQ(enabledsince(), roomentries);
    EXPECT_TRUE(drawn("hall.ray"));
    EXPECT_TRUE(platform::isvisible("Frame2DView"));
    EXPECT_FALSE(platform::isvisible("Frame1"));
    expectidle();
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
    } cases[] = {{"/a/hall.RAY", "/a/plan.DXF", "/a/hall.RAY"},
                 {"/a/hall.dxf", "/a/plan.dxf", "/a/plan.RAY"}, // after an import
                 {"/a/hall.nas", "", "*.RAY"},
                 {"ay", "xf", "*.RAY"}};
    for (const auto& each : cases) {
        SessionState.geometryFileName = each.room;
        SessionState.dxfFileName = each.dxf;
        EXPECT_EQ(savedroomproposal(), each.proposal) << each.room;
    }
}

TEST_F(workflows, SavesUnderANameWithExtension) {
    writetext(inside("orvanta.ini"), "Temp=20\r\nHumi=50\r\n");
    load(FLoad, "hall.ray");
    std::filesystem::create_directory(inside("my.rooms"));
    const std::pair<const char*, const char*> cases[] = {
        {"copy.geo", "copy.geo"},
        {"copy.", "copy."},
        {".copy", ".copy.ray"}, // the first character makes no extension
        {"my.rooms/copy", "my.rooms/copy.ray"}};
    for (const auto& [chosen, written] : cases) {
        scripted::expectsave(inside(chosen));
        Fsave();
        EXPECT_EQ(SessionState.geometryFileName, inside(written));
        EXPECT_EQ(scripted::title(), titled(written));
        EXPECT_TRUE(readtext(inside(written)).starts_with("EntityList\r\n Wall\r\n  Face 0  1  4 "));
        expectidle();
    }
}

TEST_F(workflows, OpensAResultWithItsRoom) {
    std::filesystem::rename(inside("hall.ray"), inside("Hall.Ray")); // found in any letter case
    SessionState.gridReady = SessionState.contourReady = -1;
    load(OpenRes, "hall._01");
    EXPECT_EQ(SessionState.resultFileName, inside("hall._01"));
    EXPECT_EQ(SessionState.geometryFileName, inside("Hall.Ray"));
    EXPECT_EQ(scripted::title(), titled("Hall.Ray"));
    EXPECT_EQ(SessionState.parameterSource, 1.0F);
    EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0); // the maps are of the former one
    EXPECT_NEAR(ParameterSet.T20(1, linearband), 0.3F, 1e-3F);
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, responseentries, lateralentries}));
    EXPECT_TRUE(drawn("hall._01"));
    expectidle();
}

TEST_F(workflows, OpensAFileByItsName) {
    openfile(inside("hall.ray"));
    EXPECT_EQ(scripted::title(), titled("hall.ray"));
    EXPECT_EQ(SessionState.parameterSource, 0.0F);
    for (const char* name : {"hall._01", "hall.-01"}) { // parameters stand for their result
        SessionState.resultFileName = "";
        expectresult();
        openfile(inside(name));
        EXPECT_EQ(SessionState.resultFileName, inside("hall._01"));
        EXPECT_EQ(SessionState.geometryFileName, inside("hall.ray"));
    }
    expectidle();
}

TEST_F(workflows, AnOldResultHasNoLateralTables) {
    writetext(inside("hall._01"), resultfile("1.1"));
    SessionState.levelStep = 5;
    load(OpenRes, "hall._01");
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, contourentries, responseentries}));
}

TEST_F(workflows, AsksForAMissingRoom) {
    std::filesystem::rename(inside("hall.ray"), inside("other.ray"));
    scripted::expectopen(inside("hall._01"), "and its Geometry");
    expectresult();
    scripted::expectopen(inside("other.ray"), "Load a Orvanta CAD File");
    OpenRes();
    EXPECT_EQ(SessionState.geometryFileName, inside("other.ray"));
    EXPECT_EQ(scripted::title(), titled("other.ray"));
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, responseentries, lateralentries}));

    // Cancelled: the former room stays, under the new result and the name that was looked for.
    writetext(inside("stage._02"), resultfile("1.2"));
    scripted::expectopen(inside("stage._02"));
    expectresult();
    scripted::expectopen(scripted::cancelled, "Load a Orvanta CAD File");
    picture.lines.clear();
    OpenRes();
    EXPECT_EQ(SessionState.resultFileName, inside("stage._02"));
    EXPECT_EQ(SessionState.geometryFileName, inside("stage.RAY"));
    EXPECT_EQ(scripted::title(), titled("stage.RAY"));
    EXPECT_EQ(RoomModel.faceCount, 1);
    EXPECT_TRUE(drawn("stage._02"));
    expectidle();
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
    setdateafter(result, parameters, -10);
    EXPECT_TRUE(parameterfileusable(result)); // no settings file that could be newer
    writetext(settings, "Temp=20\r\n");
    const struct {
        double afterresult, aftersettings;
        bool usable;
    } cases[] = {{0, 0, true}, {10, -1, false}, {-1, 10, false}};
    for (const auto& each : cases) {
        setdateafter(result, parameters, -each.afterresult);
        setdateafter(settings, parameters, -each.aftersettings);
        EXPECT_EQ(parameterfileusable(result), each.usable) << each.afterresult << " " << each.aftersettings;
    }
    // Then the result is opened from its responses, without a question.
    load(OpenRes, "hall._01");
    EXPECT_EQ(SessionState.parameterSource, 1.0F);
    EXPECT_EQ(readtext(parameters), "parameters"); // not saved
}

TEST_F(workflows, AResultReadWholeOffersToSaveItsParameters) {
    load(MapLoad, "hall._01", platform::answer::no);
    EXPECT_FALSE(canopen(inside("hall.-01")));
    EXPECT_TRUE(
        scripted::called("box|WARNING!|Do You want to save the computed parameters ?|yesno|none|yes"));
    load(OpenRes, "hall._01", platform::answer::yes);
    EXPECT_GT(ParameterSet.STI(1, 11), 0.0F); // computed before it was saved
    EXPECT_NE(readtext(inside("hall.-01")).find(numbertext(static_cast<double>(ParameterSet.STI(1, 11)))),
              std::string::npos);
}

// Its name is that of its own parameter file: saving the parameters would replace the responses.
TEST_F(workflows, AResultNamedAsItsParameterFileIsKept) {
    const std::string name = inside("hall._a-01"), text = resultfile("1.2");
    writetext(name, text);
    scripted::expectopen(name);
    scripted::expectwindow("STI Options");
    MapLoad(); // asks nothing more
    scripted::expectwindow("STI Options");
    STIopt();
    EXPECT_EQ(readtext(name), text);
}

TEST_F(workflows, AGoodParameterFileMayBeLoadedAlone) {
    load(OpenRes, "hall._01", platform::answer::yes);
    const float index = ParameterSet.STI(1, 11);
    for (void (*run)() : {OpenRes, MapLoad}) {
        clearparameters(2);
        for (const std::string& name : responseentries) enablecommand(name, true);
        SessionState.gridReady = SessionState.contourReady = -1;
        loadbeside(run, "hall._01", platform::answer::yes);
        EXPECT_EQ(SessionState.parameterSource, -1.0F);
        EXPECT_NEAR(ParameterSet.STI(1, 11), index, 1e-6);
        EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, lateralentries})); // no responses
        EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0);
        expectidle();
    }
    EXPECT_TRUE(scripted::called("box|Attention!|Do You want to load directly only the acoustical parameters "
                                 "without impulse response data?|yesno|none|no"));
    // On No, as if there were none.
    loadbeside(OpenRes, "hall._01", platform::answer::no);
    EXPECT_EQ(SessionState.parameterSource, 1.0F);
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries, responseentries, lateralentries}));
    // In a fresh session the lateral tables stay off, which are those of a result that has been read.
    resetcommands();
    startup();
    loadbeside(OpenRes, "hall._01", platform::answer::yes);
    EXPECT_EQ(enabledsince(), joined({roomentries, mapentries}));
}

TEST_F(workflows, NothingElseStartsDuringALoad) {
    load(FLoad, "hall.ray");
    picture.lines.clear();
    scripted::expectopen(inside("hall._01"));
    expectresult();
    scripted::atyield(3, [&] {
        for (const char* name : {"FLoad", "Fsave", "OpenRes", "MapLoad", "Redraw", "CamRedr2D"})
            runcommand(name); // would ask or draw
        EXPECT_TRUE(picture.lines.empty());
        EXPECT_FALSE(scripted::isenabled("Redisplay"));
    });
    runcommand("OpenRes");
    EXPECT_EQ(scripted::countcalls("open|"), 2U);
    expectidle();
}

TEST_F(workflows, FailuresPassOn) {
    writetext(inside("short.ray"), "EntityList\r\n");
    writetext(inside("hall.-01"), "\"New File Format\"\r\n\r\n");
    const struct {
        void (*run)();
        std::string name;
        errorkind kind;
    } cases[] = {{FLoad, "missing.ray", errorkind::filenotfound},
                 {OpenRes, "missing._01", errorkind::filenotfound},
                 {FLoad, "short.ray", errorkind::divisionbyzero},
                 {OpenRes, "hall._01", errorkind::pastend}}; // its parameter file is damaged
    for (const auto& each : cases) {
        scripted::expectopen(inside(each.name));
        if (each.name == "hall._01") scripted::expectbox("Attention!", platform::answer::yes);
        const runtimeerror error = failureof(each.run);
        EXPECT_EQ(error.kind, each.kind);
        EXPECT_NE(error.text.find(each.name == "hall._01" ? "hall.-01, line " : each.name), std::string::npos)
            << error.text;
        expectidle();
    }
    load(FLoad, "hall.ray");
    scripted::expectsave(inside("copy.ray"));
    EXPECT_EQ(kindof(Fsave), errorkind::filenotfound); // no settings file to write the temperature into
    EXPECT_FALSE(canopen(inside("copy.ray")));
}

} // namespace

// The file commands with scripted dialogs: what they ask, load and write, and the state they leave.
#include "tests/failures.h"
#include "tests/golden.h"
#include "tests/results/resulttext.h"

#include "results/speechindex.h"
#include "shell/startup.h"
#include "shell/workflows.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>

using namespace orv;

namespace {

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

struct workflows : sessiontest {
    std::set<std::string_view> startedwith; // enabled commands

    workflows() {
        startup();
        for (const menucommand& row : menucommands())
            if (row.enabled) startedwith.insert(row.name);
        writetext(inside("hall.ray"), roomfile(10));
        writetext(inside("hall._01"), resultfile("1.2"));
        scripted::clearcalls();
    }

    // The session in words: names, values, and the commands that are enabled since the start.
    std::string state() const {
        const auto figure = [](auto value) { return numbertext(static_cast<double>(value)); };
        std::string text =
            "result " + SessionState.resultFileName + "\r\nroom " + SessionState.geometryFileName +
            "\r\ntitle " + scripted::title() + "\r\nfaces" + figure(RoomModel.faceCount) + " receivers" +
            figure(RoomModel.receiverCount) + " width" + figure(RoomModel.roomMaxX) + "\r\nsource" +
            figure(SessionState.parameterSource) + " maps" + figure(SessionState.gridReady) +
            figure(SessionState.contourReady) + " T20" + figure(ParameterSet.T20(1, linearband)) + " STI" +
            figure(ParameterSet.STI(1, 11)) + "\r\nenabled";
        for (const menucommand& row : menucommands())
            if (row.enabled != startedwith.contains(row.name))
                text.append(row.enabled ? " " : " not ").append(row.name);
        for (std::size_t at = 0; (at = text.find(directory.path + "/", at)) != std::string::npos;)
            text.erase(at, directory.path.size() + 1);
        return text + "\r\n";
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
};

TEST_F(workflows, CancelLeavesEverything) {
    load(FLoad, "hall.ray");
    SessionState.resultFileName = "former._01";
    const std::string before = state();
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
    EXPECT_EQ(state(), before);
    EXPECT_TRUE(picture.lines.empty());
}

// What the session is after each way to open something, in golden/workflows.txt.
TEST_F(workflows, OpenRoomsAndResults) {
    std::string story;
    const auto fresh = [] {
        SessionState = sessionstate{};
        clearparameters(2);
        resetcommands();
        startup();
    };
    const auto step = [&](const char* title, const char* shown, const std::function<void()>& open) {
        picture.lines.clear();
        SessionState.gridReady = SessionState.contourReady = -1; // maps of the former result
        open();
        story.append("# ").append(title).append("\r\n").append(state());
        EXPECT_TRUE(drawn(shown)) << title;
        expectidle();
    };
    writetext(inside("other.ray"), roomfile(25));
    writetext(inside("stage._02"), resultfile("1.2"));
    writetext(inside("old._03"), resultfile("1.1"));

    step("a room", "hall.ray", [&] { load(FLoad, "hall.ray"); });
    EXPECT_NE(scripted::calls()[0].find("|*.RAY|"), std::string::npos); // the proposal without a name
    EXPECT_TRUE(platform::isvisible("Frame2DView"));
    EXPECT_FALSE(platform::isvisible("Frame1"));
    SessionState.parameterSource = -1;
    step("a room under parameters", "hall.ray", [&] { load(FLoad, "hall.ray"); });
    SessionState.levelStep = 2.5F;
    step("with contour lines", "hall.ray", [&] { load(FLoad, "hall.ray"); });
    fresh();
    load(FLoad, "other.ray");
    step("a result alone, which names its room", "hall._01", [&] { load(MapLoad, "hall._01"); });
    fresh();
    std::filesystem::rename(inside("hall.ray"), inside("Hall.Ray"));
    step("a result with its room in any letter case", "hall._01", [&] { load(OpenRes, "hall._01"); });
    fresh();
    const auto missing = [&](const char* result, const std::optional<std::string>& chosen) {
        scripted::expectopen(inside(result), "and its Geometry");
        expectresult();
        scripted::expectopen(chosen, "Load a Orvanta CAD File");
        OpenRes();
    };
    step("a missing room, chosen", "stage._02", [&] { missing("stage._02", inside("other.ray")); });
    step("a missing room, cancelled: the former one stays", "hall._01", [&] {
        std::filesystem::remove(inside("Hall.Ray"));
        missing("hall._01", scripted::cancelled);
    });
    fresh();
    SessionState.levelStep = 5;
    step("an old result without lateral tables", "old._03", [&] { missing("old._03", inside("other.ray")); });

    writetext(inside("hall.ray"), roomfile(10));
    load(OpenRes, "hall._01", platform::answer::yes);
    for (void (*run)() : {OpenRes, MapLoad}) {
        clearparameters(2);
        for (const char* name : {"ExportWAV", "ViewImpulse"}) enablecommand(name, true);
        step("parameters alone, without responses", "hall._01",
             [&] { loadbeside(run, "hall._01", platform::answer::yes); });
    }
    EXPECT_TRUE(scripted::called("box|Attention!|Do You want to load directly only the acoustical parameters "
                                 "without impulse response data?|yesno|none|no"));
    step("responses all the same", "hall._01",
         [&] { loadbeside(OpenRes, "hall._01", platform::answer::no); });
    fresh();
    step("parameters alone, before a result enabled the lateral tables", "hall._01",
         [&] { loadbeside(OpenRes, "hall._01", platform::answer::yes); });
    expectgolden("workflows.txt", story);
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
        EXPECT_EQ(scripted::title(), inside(written) + " - Orvanta View v. 3.10");
        EXPECT_TRUE(readtext(inside(written)).starts_with("EntityList\r\n Wall\r\n  Face 0  1  4 "));
        expectidle();
    }
}

TEST_F(workflows, OpensAFileByItsName) {
    openfile(inside("hall.ray"));
    EXPECT_EQ(scripted::title(), inside("hall.ray") + " - Orvanta View v. 3.10");
    EXPECT_EQ(SessionState.parameterSource, 0.0F);
    for (const char* name : {"hall._01", "hall.-01"}) { // parameters stand for their result
        SessionState.resultFileName = "";
        expectresult();
        openfile(inside(name));
        EXPECT_EQ(SessionState.resultFileName, inside("hall._01"));
        EXPECT_EQ(SessionState.geometryFileName, inside("hall.ray"));
    }
    scripted::expectbox("hall._02 is not there", platform::answer::ok);
    openfile(inside("hall.-02"));
    expectidle();
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
    const std::string index = numbertext(static_cast<double>(ParameterSet.STI(1, 11)));
    EXPECT_NE(index, " 0"); // computed before it was saved
    EXPECT_NE(readtext(inside("hall.-01")).find(index), std::string::npos);
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
        std::string name, failing;
        errorkind kind;
    } cases[] = {{FLoad, "missing.ray", "missing.ray", errorkind::filenotfound},
                 {OpenRes, "missing._01", "missing._01", errorkind::filenotfound},
                 {FLoad, "short.ray", "short.ray", errorkind::divisionbyzero},
                 {OpenRes, "hall._01", "hall.-01, line ", errorkind::pastend}};
    for (const auto& each : cases) {
        scripted::expectopen(inside(each.name));
        if (each.name == "hall._01") scripted::expectbox("Attention!", platform::answer::yes);
        const runtimeerror error = failureof(each.run);
        EXPECT_EQ(error.kind, each.kind);
        EXPECT_NE(error.text.find(each.failing), std::string::npos) << error.text;
        expectidle();
    }
    load(FLoad, "hall.ray");
    scripted::expectsave(inside("copy.ray"));
    EXPECT_EQ(kindof(Fsave), errorkind::filenotfound); // no settings file to write the temperature into
    EXPECT_FALSE(canopen(inside("copy.ray")));
}

} // namespace

// The menus as a user sees them, the rules of their states, and what their small entries do.
#include "tests/failures.h"
#include "tests/golden.h"

using namespace orv;

namespace {

struct menus : sessiontest {};

TEST_F(menus, StandInOrderWithTheirCaptionsAndStartStates) {
    std::string rows;
    for (const menucommand& row : menucommands()) {
        rows.append(row.menu).append(": ").append(row.name).append(" = ").append(row.caption);
        rows += row.visible ? "" : " (hidden)";
        rows += row.enabled ? "" : " (disabled)";
        rows += row.checked ? " (ticked)" : row.checkable ? " (not ticked)" : "";
        rows += "\r\n";
    }
    expectgolden("menus.txt", rows);
}

TEST_F(menus, OffersOnlyWhatCanRun) {
    EXPECT_TRUE(isoffered(command("FLoad")));
    runcommand("Fsave"); // disabled by the rules: no dialog comes
    for (const char* name : {"VPrint", "Fprint"}) {
        enablecommand(name, true);
        EXPECT_FALSE(isoffered(command(name))) << name; // nothing to run
        runcommand(name);
    }
    suspendcommands(true);
    EXPECT_FALSE(isoffered(command("FLoad")));
    EXPECT_TRUE(isoffered(command("FQuit")));
    runcommand("FLoad");
    suspendcommands(false);
    EXPECT_TRUE(isoffered(command("FLoad")));
    for (const char* unknown : {"", "-", "fload", "FLoad "})
        EXPECT_EQ(kindof([&] { command(unknown); }), errorkind::subscript) << unknown;
}

TEST_F(menus, ViewEntriesToggleTheirMarkAndNothingElse) {
    for (const char* name : {"Vroom", "Vsource", "CamVrec", "Vaxes", "Post", "Vrays"}) {
        const bool was = ischecked(name);
        scripted::clearcalls();
        runcommand(name);
        EXPECT_EQ(ischecked(name), !was) << name;
        EXPECT_EQ(scripted::calls().size(), 1U) << name; // the entry itself
    }
    EXPECT_TRUE(picture.lines.empty());
}

TEST_F(menus, TheTwoBlankingEntriesAreOneSetting) {
    runcommand("Vbln");
    EXPECT_FALSE(ischecked("Vbln") || ischecked("BLNview"));
    runcommand("BLNview");
    EXPECT_TRUE(ischecked("Vbln") && ischecked("BLNview"));
    checkcommand("Vbln", false); // out of step: both follow BLNview
    runcommand("Vbln");
    EXPECT_FALSE(ischecked("Vbln") || ischecked("BLNview"));
}

TEST_F(menus, AutoRedrawHasItsCaption) {
    for (const bool manual : {true, false}) {
        SessionState.autoRedraw = manual ? on : off;
        runcommand("AutRed");
        EXPECT_EQ(SessionState.autoRedraw, manual ? off : on);
        EXPECT_EQ(platform::gettext("Redisplay"), manual ? "Manual Redraw" : "Auto Redraw");
        EXPECT_EQ(ischecked("AutRed"), !manual);
    }
}

TEST_F(menus, QuitHelpAndAbout) {
    runcommand("FQuit");
    EXPECT_TRUE(scripted::windowsclosed());
    std::filesystem::create_directory(inside("Manual"));
    writetext(inside("Manual/morvantaview.MHT"), "help");
    runcommand("Hhelp");
    EXPECT_TRUE(scripted::called("document|" + inside("Manual/morvantaview.MHT")));
    // Where the desktop has no program for it, its twin is opened, once there is one.
    scripted::setprograms(false);
    scripted::clearcalls();
    runcommand("Hhelp");
    EXPECT_TRUE(scripted::called("document|" + inside("Manual/morvantaview.MHT")));
    writetext(inside("Manual/MOrvantaView.html"), "help");
    runcommand("Hhelp");
    EXPECT_TRUE(scripted::called("document|" + inside("Manual/MOrvantaView.html")));
    scripted::expectwindow("About");
    runcommand("HAbout");
}

} // namespace

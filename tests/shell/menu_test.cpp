// The menus as a user sees them, the rules of their states, and what their small entries do.
#include "tests/testsupport.h"

#include "tests/failures.h"

#include <set>

using namespace orv;

namespace {

// Entries as name=caption, those in parentheses not shown. "-" is a separator.
constexpr std::string_view filemenu =
    "FLoad=&Open Geometry File... | Fsave=&Save Geometry File... | DXFIN=&DXF In... | "
    "DXFOUT=DXF &Out... | ImportNastran=Import &Nastran file | (ImporRayonGeo=&Import from Rayons...) | "
    "(FileExport=&Export to Rayons...) | ImportCatt=Import from &Catt Acoustics | "
    "ExportCatt=Export to Catt Acoustics | - | OpenRes=Open &Imp.Resp.+Geometry files... | "
    "MapLoad=Open &Imp.Resp. file only... | (importrayonresp=Import &Rayons Response...) | "
    "ExportWAV=Export Imp.Resp. to &WAV... | - | SumEq=Sum && Equalize | AlfaBetaOpt=AlfaBeta Optimizer | "
    "- | (Fprint=&Auto Print Screen (Gray)...) | Cprint=&Print Image... | printsetup=Printer Set&up... | - | "
    "FQuit=E&xit";

std::set<std::string> namesof(bool menucommand::*state, bool value) {
    std::set<std::string> names;
    for (const menucommand& row : menucommands())
        if (!row.name.empty() && row.*state == value) names.emplace(row.name);
    return names;
}

using names = std::set<std::string>;

struct menus : sessiontest {};

TEST_F(menus, StandInOrderWithTheirCaptions) {
    std::string shown;
    names all;
    for (const menucommand& row : menucommands()) {
        EXPECT_TRUE(row.name.empty() || all.emplace(row.name).second) << row.name; // no name comes twice
        if (row.menu != "File") continue;
        const std::string entry =
            row.name.empty() ? "-" : std::string(row.name) + "=" + std::string(row.caption);
        shown += (shown.empty() ? "" : " | ") + (row.visible ? entry : "(" + entry + ")");
    }
    EXPECT_EQ(shown, filemenu);
}

TEST_F(menus, StartStates) {
    EXPECT_EQ(namesof(&menucommand::enabled, false),
              (names{"Redraw",     "CamRedr2D",     "render",        "BLNadd",          "MapLoad",
                     "BLNnew",     "BLNdel",        "BLNsave",       "DXFOUT",          "FileExport",
                     "ExportCatt", "Fsave",         "MapOptions",    "importrayonresp", "RGBOpt",
                     "STIopt",     "MapDoDither2D", "MapDoDither3D", "MapDoContour2D",  "MapDoContour3D",
                     "ExportWAV",  "ViewImpulse",   "T_LF",          "T_LFC",           "viewraypaths",
                     "Cprint",     "VPrint",        "VSave",         "VLoad",           "Pvect",
                     "SWMF",       "LWMF"}));
    EXPECT_EQ(namesof(&menucommand::checked, true),
              (names{"Vroom", "Vsource", "CamVrec", "Vbln", "Vaxes", "Post", "BLNview"}));
    EXPECT_TRUE(command("viewraypaths").checkable);
    EXPECT_FALSE(command("FLoad").checkable);
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

TEST_F(menus, UnknownNamesFail) {
    for (const char* name : {"", "-", "fload", "FLoad "})
        EXPECT_EQ(kindof([&] { command(name); }), errorkind::subscript) << name;
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

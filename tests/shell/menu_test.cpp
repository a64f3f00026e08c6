// The menus as a user sees them, the rules of their states, and what their small entries do.
#include "tests/testsupport.h"

#include "base/runtimeerror.h"

#include <set>

using namespace orv;

namespace {

// A menu per line; entries as name=caption, those in parentheses not shown. "-" is a separator.
constexpr const char* expectedmenus[] = {
    "File=&File: FLoad=&Open Geometry File... | Fsave=&Save Geometry File... | DXFIN=&DXF In... | "
    "DXFOUT=DXF &Out... | ImportNastran=Import &Nastran file | (ImporRayonGeo=&Import from Rayons...) | "
    "(FileExport=&Export to Rayons...) | ImportCatt=Import from &Catt Acoustics | "
    "ExportCatt=Export to Catt Acoustics | - | OpenRes=Open &Imp.Resp.+Geometry files... | "
    "MapLoad=Open &Imp.Resp. file only... | (importrayonresp=Import &Rayons Response...) | "
    "ExportWAV=Export Imp.Resp. to &WAV... | - | SumEq=Sum && Equalize | AlfaBetaOpt=AlfaBeta Optimizer | "
    "- | (Fprint=&Auto Print Screen (Gray)...) | Cprint=&Print Image... | printsetup=Printer Set&up... | - | "
    "FQuit=E&xit",
    "Edit=&Edit: (Sel=Se&lect All) | Copy=&Copy to Clpbrd",
    "view=Capture: VPrint=&Print View (BMP) | VSave=&Save to BMP | VLoad=&Load View (BMP) | - | "
    "Pvect=Print View (Vect) | SWMF=Save to WMF | LWMF=Load View (WMF)",
    "CamOpt=&View: (Roll=Rolling) | Redraw=Draw &3D | CamRedr2D=Draw &2D | (render=&Render...) | - | "
    "ViewImpulse=&Impulse Response | viewraypaths=Ray &Paths | - | ViewOpt=&View Options... | "
    "(AutRed=&AutoRedraw) | (Vroom=&View Room) | (Vsource=View &Sources) | (CamVrec=View &Receivers) | "
    "(Vbln=View &BLNs) | (Vaxes=View &Axes) | (Post=&Post Values) | (Vrays=View &Rays)",
    "tabl=&Table: SingleRec=&Single Receiver | R_Robin=&Round Robin | - | T_SPL=&Leq | T_Ldir=&Ldir | "
    "T_Lrev=Lre&v | T_RD=&Ldir-Lrev | T_LpLw=L&eq-Lw | T_G=stren&Gth | - | T_EDT=&EDT | T_T10=T&10 | "
    "T_T15=T&15 | T_T20=T&20 | T_T30=T&30 | - | T_C50=C&50 | T_C80=&C80 | T_D=&D50 | T_Tbar=&Center Time | "
    "T_Aeq=&Aeq | - | T_STI=&STI | - | T_LE=L&E | T_LF=L&F | T_LFC=LF&C | (T_Aeq2=Aeq&2) | "
    "(T_ITDGeq=&ITDGeq)",
    "Map=&Map: MapOptions=&Mapping Options... | STIopt=&STI Options... | RGBOpt=&RGB Options... | - | "
    "MapDoDither3D=DoDither &3D... | MapDoDither2D=DoDither &2D... | - | MapDoContour3D=DoContour 3D... | "
    "MapDoContour2D=DoContour 2D...",
    "BL=&Blanking: BLNnew=&Clear | BLNload=&Load... | BLNadd=&Add Line... | (BLNdel=&Delete Line) | "
    "BLNsave=&Save... | BLNoptions=&Options | (-) | (BLNview=&View BLNs)",
    "Sur=&Surfer: SurfGrid=&Grid... | (SurfTopo=&Topo...) | (SurfSurf=&Surf...) | (SurfPlot=&Plot...) | "
    "(SurfSetP=&Set Plotter...) | SurfEnable=Enable &Access (for expert Surfer users only)",
    "help=&Help: Hhelp=&Help... | HAbout=&About..."};

std::set<std::string> namesof(bool menucommand::*state, bool value) {
    std::set<std::string> names;
    for (const menucommand& row : menucommands())
        if (!row.name.empty() && row.*state == value) names.emplace(row.name);
    return names;
}

using names = std::set<std::string>;

struct menus : sessiontest {};

TEST_F(menus, StandInOrderWithTheirCaptions) {
    std::size_t at = 0;
    for (const menutitle& title : menutitles()) {
        std::string shown = std::string(title.name) + "=" + std::string(title.caption) + ":";
        const char* between = " ";
        for (const menucommand& row : menucommands()) {
            if (row.menu != title.name) continue;
            std::string entry =
                row.name.empty() ? "-" : std::string(row.name) + "=" + std::string(row.caption);
            shown += between + (row.visible ? entry : "(" + entry + ")");
            between = " | ";
        }
        ASSERT_LT(at, std::size(expectedmenus));
        EXPECT_EQ(shown, expectedmenus[at++]);
    }
    EXPECT_EQ(at, std::size(expectedmenus));
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
    EXPECT_FALSE(isoffered(command("Fsave"))); // by the rules
    for (const char* name : {"VPrint", "VSave", "VLoad", "Pvect", "SWMF", "LWMF", "Fprint"}) {
        enablecommand(name, true);
        EXPECT_FALSE(isoffered(command(name))) << name; // nothing to run
        runcommand(name);
    }
    runcommand("Fsave"); // no dialog comes

    suspendcommands(true);
    EXPECT_FALSE(isoffered(command("FLoad")));
    EXPECT_TRUE(isoffered(command("FQuit")));
    EXPECT_TRUE(isoffered(command("HAbout")));
    runcommand("FLoad");
    suspendcommands(false);
    EXPECT_TRUE(isoffered(command("FLoad")));
}

TEST_F(menus, ViewEntriesToggleTheirMarkAndNothingElse) {
    for (const char* name : {"Vroom", "Vsource", "CamVrec", "Vaxes", "Post", "Vrays"}) {
        const names before = namesof(&menucommand::checked, true);
        const bool was = ischecked(name);
        scripted::clearcalls();
        runcommand(name);
        EXPECT_EQ(ischecked(name), !was) << name;
        EXPECT_EQ(scripted::calls().size(), 1U) << name; // the entry itself
        runcommand(name);
        EXPECT_EQ(namesof(&menucommand::checked, true), before);
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
    SessionState.autoRedraw = on;
    runcommand("AutRed");
    EXPECT_EQ(SessionState.autoRedraw, off);
    EXPECT_EQ(platform::gettext("Redisplay"), "Manual Redraw");
    EXPECT_FALSE(ischecked("AutRed"));
    runcommand("AutRed");
    EXPECT_EQ(SessionState.autoRedraw, on);
    EXPECT_EQ(platform::gettext("Redisplay"), "Auto Redraw");
    EXPECT_TRUE(ischecked("AutRed"));
}

TEST_F(menus, UnknownNamesFail) {
    for (const char* name : {"", "-", "fload", "FLoad "}) {
        try {
            command(name);
            ADD_FAILURE() << name;
        } catch (const runtimeerror& error) {
            EXPECT_EQ(error.kind, errorkind::subscript);
        }
    }
}

TEST_F(menus, QuitHelpAndAbout) {
    runcommand("FQuit");
    EXPECT_TRUE(scripted::windowsclosed());
    std::filesystem::create_directory(inside("Manual"));
    writetext(inside("Manual/morvantaview.MHT"), "help");
    runcommand("Hhelp");
    EXPECT_TRUE(scripted::called("document|" + inside("Manual/morvantaview.MHT")));
    scripted::expectwindow("About");
    runcommand("HAbout");
}

} // namespace

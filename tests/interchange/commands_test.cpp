// The commands of Nastran, Catt and Rayons files: what they ask, and the state they leave.
#include "tests/failures.h"
#include "tests/testsupport.h"

#include "interchange/interchangecommands.h"
#include "response/responseplot.h"

using namespace orv;

namespace {

struct exchange : sessiontest {
    exchange() {
        writetext("Orvanta.mat", "0 Neutral,0\r\n");
        writetext("orvcolor.mat", "0\r\n");
        writetext("hall.v2.nas", "$ Grid data section\r\nGRID,1,0,4,5,6\r\nCTRIA3,40,0,1,1,1\r\n");
        writetext("hall.geo", "CORNERS\r\n 1 4 5 6.0000\r\nPLANES\r\n[1 a / 1 1 1 / Neutral ]\r\n");
        writetext("ray.geo", "1\r\n0 3 4 5 6 4 5 6 4 5 6 0 0 1\r\n");
        writetext("ray.mat", "h\r\n0\r\n");
        writetext("ray.rec", "h\r\n0\r\n");
        writetext("ray.sou", "h\r\n0\r\n");
        scripted::clearcalls();
    }
};

TEST_F(exchange, ImportsLeaveTheStateOfALoadedRoom) {
    const struct {
        void (*run)();
        const char *asked, *file, *room;
    } imports[] = {
        {ImportNastran, "Load a Nastran NAS File|Drawing Exch.Files (*.NAS)|*.NAS|*.nas", "hall.v2.nas",
         "hall.v2.ray"},
        {ImportCatt, "Load a Catt Acoustics .GEO File|Geometry Files (*.GEO)|*.GEO|*.geo", "hall.geo",
         "hall.ray"},
        {ImporRayonGeo, "Load a Rayons GEO File|Rayons Geo Files (*.geo)|*.geo|*.GEO", "ray.geo", "ray.ray"},
    };
    for (const auto& one : imports) {
        scripted::clearcalls();
        scripted::expectopen(scripted::cancelled);
        one.run();
        EXPECT_EQ(scripted::calls(), std::vector{"open|" + std::string(one.asked) + "|" + directory.path});

        resetcommands();
        picture.lines.clear();
        SessionState.gridReady = SessionState.contourReady = -1;
        SessionState.targetZ = 0;
        scripted::expectopen(inside(one.file));
        one.run();
        EXPECT_EQ(RoomModel.faceCount, 1);
        EXPECT_EQ(SessionState.geometryFileName, inside(one.room));
        EXPECT_TRUE(scripted::title().starts_with(inside(one.room) + " - "));
        EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0);
        EXPECT_EQ(SessionState.targetZ, 6.0F);
        for (const char* name :
             {"Redraw", "MapLoad", "DXFOUT", "FileExport", "ExportCatt", "Fsave", "Cprint"})
            EXPECT_TRUE(orv::isenabled(name)) << name;
        EXPECT_FALSE(orv::isenabled("MapOptions"));
        EXPECT_FALSE(picture.lines.empty());
        EXPECT_EQ(scripted::statustext(2), "");
        EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
        EXPECT_FALSE(commandssuspended());
    }
}

// A mesh takes the place of a result's last slot; a missing file, and the other imports, leave the result.
TEST_F(exchange, ALoadedResultIsGoneBehindAMesh) {
    const auto loaded = [] { return SessionState.parameterSource != 0 && orv::isenabled("ViewImpulse"); };
    SessionState.resultFileName = "hall._01";
    SessionState.parameterSource = 1;
    for (const char* name : {"MapOptions", "ViewImpulse", "T_LF", "viewraypaths"}) enablecommand(name, true);
    scripted::expectopen(inside("hall.geo"));
    ImportCatt();
    scripted::expectopen(inside("absent.nas"));
    EXPECT_EQ(kindof(ImportNastran), errorkind::filenotfound);
    EXPECT_TRUE(loaded());
    EXPECT_TRUE(orv::isenabled("MapDoDither3D"));
    ResponsePlot.surface = &picture.surface; // its ray paths are being looked at
    scripted::expectopen(inside("hall.v2.nas"));
    ImportNastran();
    ResponsePlot.surface = nullptr;
    EXPECT_TRUE(scripted::called("closewindow " + std::string(responsewindowname)));
    EXPECT_EQ(ResultSet.lastSlot, 40);
    EXPECT_FALSE(loaded());
    EXPECT_EQ(SessionState.resultFileName, "");
    for (const char* name : {"MapOptions", "MapDoDither3D", "ExportWAV", "T_LF", "viewraypaths"})
        EXPECT_FALSE(orv::isenabled(name)) << name;
}

TEST_F(exchange, ExportsProposeTheRoomsName) {
    const struct {
        void (*run)();
        std::string asked, extension;
    } exports[] = {
        {ExportCatt, "Save a .GEO File for Catt Acoustics|Catt Acoustics Data Files (*.GEO)|*.GEO", "geo"},
        {FileExport, "Save a .GEO Rayons File|Data Files (*.DAT)|*.DAT", "dat"}};
    for (const auto& one : exports) {
        scripted::clearcalls();
        SessionState.geometryFileName = "";
        scripted::expectsave(scripted::cancelled);
        one.run();
        SessionState.geometryFileName = "/rooms/my.hall.ray";
        scripted::expectsave(inside("plain"));
        one.run();
        const std::string asked = "save|" + one.asked + "|", end = "." + one.extension + "|" + directory.path;
        EXPECT_EQ(scripted::callswith("save|"),
                  (std::vector{asked + "*" + end, asked + "/rooms/my.hall" + end}));
        EXPECT_TRUE(canopen("plain." + one.extension));
        EXPECT_EQ(SessionState.geometryFileName, "/rooms/my.hall.ray");
    }
}

} // namespace

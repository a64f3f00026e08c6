// The commands of the files of other programs: what they ask, and the state they leave.
#include "tests/failures.h"
#include "tests/golden.h"

#include "base/numbertext.h"
#include "interchange/interchangecommands.h"
#include "response/responseplot.h"
#include "shell/workflows.h"

using namespace orv;

namespace {

struct exchange : sessiontest {
    exchange() {
        writetext("Orvanta.mat", "0 Neutral,0\r\n");
        writetext("orvcolor.mat", "0\r\n");
        writetext("hall.v2.nas", "$ Grid data section\r\nGRID,1,0,4,5,6\r\nCTRIA3,40,0,1,1,1\r\n");
        writetext(
            "hall.dxf",
            "0\r\nSECTION\r\n2\r\nENTITIES\r\n0\r\n3DFACE\r\n8\r\n1\r\n10\r\n4\r\n20\r\n5\r\n30\r\n6\r\n"
            "11\r\n4\r\n21\r\n5\r\n31\r\n6\r\n12\r\n4\r\n22\r\n5\r\n32\r\n6\r\n13\r\n4\r\n23\r\n5\r\n33\r\n6"
            "\r\n0\r\nENDSEC\r\n");
        writetext("hall.geo", "CORNERS\r\n 1 4 5 6.0000\r\nPLANES\r\n[1 a / 1 1 1 / Neutral ]\r\n");
        writetext("ray.geo", "1\r\n0 3 4 5 6 4 5 6 4 5 6 0 0 1\r\n");
        writetext("ray.mat", "h\r\n0\r\n");
        writetext("ray.rec", "h\r\n0\r\n");
        writetext("ray.sou", "h\r\n0\r\n");
        scripted::clearcalls();
    }
};

TEST_F(exchange, ImportsLeaveTheStateOfALoadedRoom) {
    const std::pair<void (*)(), const char*> imports[] = {{DXFIN, "hall.dxf"},
                                                          {ImportNastran, "hall.v2.nas"},
                                                          {ImportCatt, "hall.geo"},
                                                          {ImporRayonGeo, "ray.geo"}};
    std::vector<std::string> told;
    for (const auto& [run, file] : imports) {
        scripted::expectopen(scripted::cancelled);
        run();
        resetcommands();
        picture.lines.clear();
        SessionState.gridReady = SessionState.contourReady = -1;
        SessionState.panX = .5F;
        scripted::expectopen(inside(file));
        if (run == DXFIN) scripted::expectbox("DXFIN", platform::answer::no);
        run();
        told.push_back(SessionState.geometryFileName + " seen at z" +
                       numbertext(static_cast<double>(SessionState.targetZ)));
        EXPECT_EQ(RoomModel.faceCount, 1);
        EXPECT_EQ(SessionState.gridReady + SessionState.contourReady, 0);
        EXPECT_EQ(SessionState.panX, run == DXFIN ? 0.0F : .5F);
        EXPECT_FALSE(picture.lines.empty() || commandssuspended() || orv::isenabled("MapOptions"));
    }
    told.insert(told.begin(), scripted::calls().begin(), scripted::calls().end());
    expectgolden("imports.txt", told);
}

// Files without anything that is read: the picture alone would not tell.
TEST_F(exchange, AnEmptyRoomIsTold) {
    const std::pair<void (*)(), const char*> files[] = {
        {DXFIN, "0\nSECTION\n2\nENTITIES\n0\nCIRCLE\n0\nENDSEC\n"}, {ImportCatt, ""}, {FLoad, ""}};
    for (const auto& [run, text] : files) {
        writetext("other", text);
        scripted::expectopen(inside("other"));
        if (run == DXFIN) scripted::expectbox("DXFIN", platform::answer::no);
        scripted::expectbox("other holds nothing of a room", platform::answer::ok);
        run();
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
    const std::pair<void (*)(), const char*> exports[] = {
        {DXFOUT, "plain.DXF"}, {ExportCatt, "plain.geo"}, {FileExport, "plain.dat"}};
    for (const auto& [run, written] : exports) {
        SessionState.geometryFileName = "";
        scripted::expectsave(scripted::cancelled);
        run();
        SessionState.geometryFileName = "/rooms/my.hall.ray";
        scripted::expectsave(inside("plain"));
        run();
        EXPECT_TRUE(canopen(written));
        EXPECT_EQ(SessionState.geometryFileName, "/rooms/my.hall.ray");
    }
    expectgolden("exports.txt", scripted::callswith("save|"));
    EXPECT_EQ(SessionState.dxfFileName, inside("plain.DXF"));
}

} // namespace

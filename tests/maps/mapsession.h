// A session whose receivers have levels to be mapped, with no layers of the scene to look through.
#pragma once

#include "maps/blanking.h"
#include "tests/failures.h"
#include "tests/testsupport.h"

namespace orv {

struct mapsession : sessiontest {
    mapsession() {
        sessionstate& s = SessionState;
        s.resultFileName = inside("hall._01");
        s.parameterName = "Leq";
        s.parameterSource = 1;
        s.bandIndex = 12;
        s.focalLength = 0.05F;
        s.surferMethod = 3;
        s.colourSchemeIndex = 1;
        s.minLevel = 60;
        s.maxLevel = 80;
        BlankingLines = {};
        for (const char* layer : {"Vroom", "Vsource", "CamVrec", "Vaxes", "Post", "Vbln", "BLNview"})
            checkcommand(layer, false);
        for (const char* name : {"MapDoDither2D", "MapDoDither3D", "MapDoContour2D", "MapDoContour3D"})
            enablecommand(name, true);
    }
    ~mapsession() override { BlankingLines = {}; }

    static void room(float width, float depth, float height) {
        extendbox(0, 0, 0);
        extendbox(width, depth, height);
    }

    static void addreceiver(float x, float y, float z, float level) {
        const std::int32_t i = ++RoomModel.receiverCount;
        RoomModel.receiverX(i) = x;
        RoomModel.receiverY(i) = y;
        RoomModel.receiverZ(i) = z;
        ParameterSet.Leq(i, 12) = level;
    }
};

} // namespace orv

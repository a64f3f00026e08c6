// A session with two receivers' responses, stored paths in a small room, and the filter banks.
#pragma once

#include "data/filterbankdesign.h"
#include "export/encoders.h"
#include "export/filterbank.h"
#include "export/synthesis.h"
#include "export/wavexport.h"
#include "response/raypathset.h"
#include "tests/failures.h"
#include "tests/golden.h"

#include <cstring>
#include <vector>

namespace orv {

struct exporttest : sessiontest {
    static constexpr int slots = 21; // of 1 ms, the last of which is never rendered

    exporttest() {
        FilterBank = filterbank{};
        restartuniform();
        platform::setchosen("f48", true);
        RoomModel.receiverCount = 2;
        RoomModel.receiverX(1) = 4;
        RoomModel.receiverY(1) = 2;
        RoomModel.receiverZ(1) = RoomModel.receiverX(2) = 1;
        RoomModel.sourceX(1) = RoomModel.sourceZ(1) = 1;
        ResultSet.timeStep = 0.001F;
        ResultSet.lastSlot = slots - 1;
        SessionState.geometryFileName = inside("hall.ray");
        SessionState.resultFileName = inside("hall._07");
        createresponse(slots, 2);
        for (int r = 1; r <= 2; ++r) {
            float* const row = takeresponse(r);
            for (int i = 0; i < slots * bandcount; ++i)
                row[i] = static_cast<float>((i * 37 + r) % 101) * 1e7F;
        }
        dummyredim();
    }

    // A path of receiver 1 by way of points; without any it is the direct sound.
    static void addpath(double time, const std::vector<direction>& points) {
        raypath path;
        path.source = 1;
        path.time = time;
        for (std::size_t i = 1; i < path.energy.size(); ++i) path.energy[i] = static_cast<float>(i) * 1e9F;
        path.pointCount = static_cast<std::int32_t>(points.size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            path.x[i + 1] = static_cast<float>(points[i].x);
            path.y[i + 1] = static_cast<float>(points[i].y);
            path.z[i + 1] = static_cast<float>(points[i].z);
        }
        RayPathSet.paths[1].push_back(path);
        ++RayPathSet.pathCountOf[1];
        SessionState.pathsExist = true;
    }

    // Every filter is 1 at its middle tap and 0 elsewhere.
    void writeunitbank() const {
        filterdesign filters;
        for (std::vector<float>& filter : filters) {
            filter.assign(filtertaps, 0.0F);
            filter[filtermiddle] = 1;
        }
        writetext(inside(filterbankname(48000)), filterbankbytes(filters, 48000));
    }

    // The export of a receiver as the dialog does it.
    static void run(std::string_view format, const char* receiver = " 1", const char* density = "1",
                    const char* length = nullptr) {
        openexport();
        platform::settext("RecNo", receiver);
        platform::settext("Outformat", std::string(format));
        platform::settext("Density", density);
        if (length) platform::settext("Nsamp", length);
        startexport();
    }

    // The samples of a file that the export has made, frame after frame.
    std::vector<float> samplesof(const std::string& name) const {
        const std::string bytes = readtext(inside(name));
        std::vector<float> samples((bytes.size() - 44) / sizeof(float));
        std::memcpy(samples.data(), bytes.data() + 44, samples.size() * sizeof(float));
        return samples;
    }
};

} // namespace orv

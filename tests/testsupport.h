// What the core's tests share: a fixture that begins each test with a fresh session in a data directory of
// its own, and small file helpers.
#pragma once

#include "base/files.h"
#include "platform/scripted/scripted.h"
#include "results/parameterset.h"
#include "results/resultset.h"
#include "room/roommodel.h"
#include "scene/recordsurface.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace orv {

// A directory that is there for the time of a test and is the current one meanwhile.
struct testdirectory {
    std::string path;
    std::filesystem::path before;

    testdirectory() : before(std::filesystem::current_path()) {
        std::string form = (std::filesystem::temp_directory_path() / "orvanta-XXXXXX").string();
        if (!mkdtemp(form.data())) throw std::runtime_error("no temporary directory");
        path = form;
        std::filesystem::current_path(path);
    }
    ~testdirectory() {
        std::error_code ignored;
        std::filesystem::current_path(before, ignored);
        std::filesystem::remove_all(path, ignored);
    }
    testdirectory(const testdirectory&) = delete;
    testdirectory& operator=(const testdirectory&) = delete;
};

// Zeroes the parameters of receivers 0..last, which are tables that no load clears.
inline void clearparameters(std::int32_t last) {
    auto& set = ParameterSet;
    set.Leq.clearrows(last);
    set.Ldir.clearrows(last);
    set.Lrev.clearrows(last);
    set.LdirLrev.clearrows(last);
    set.LeqLw.clearrows(last);
    set.C50.clearrows(last);
    set.C80.clearrows(last);
    set.Ts.clearrows(last);
    set.Aeq.clearrows(last);
    set.Aeq2.clearrows(last);
    set.ITDGeq.clearrows(last);
    set.EDT.clearrows(last);
    set.T10.clearrows(last);
    set.T15.clearrows(last);
    set.T20.clearrows(last);
    set.T30.clearrows(last);
    set.LE.clearrows(last);
    set.LF.clearrows(last);
    set.LFC.clearrows(last);
    set.STI.clearrows(last);
    set.modulationTransfer.clearrows(last);
}

// A session as in a fresh process, with an empty data directory that is the current one too. Boxes and
// dialogs that the test did not expect fail it, and so does one that it expected and that never came. Tables
// keep what stands behind their counts, as they do in the program.
struct sessiontest : testing::Test {
    testdirectory directory;
    recordsurface picture{800, 500}; // Picture1

    sessiontest() {
        scripted::reset();
        scripted::record(true);
        scripted::onfailure([](const std::string& text) { ADD_FAILURE() << text; });
        scripted::setpicture(&picture.surface);
        resetcommands();
        SessionState = sessionstate{};
        SessionState.dataDirectory = directory.path;
        scripted::setprogramdirectory(directory.path);
        resetroom();
        RoomModel.roomCentreX = RoomModel.roomCentreY = RoomModel.roomCentreZ = 0;
        ResultSet = resultset{};
        ImpulseResponse = impulseresponse{};
        scripted::clearcalls();
    }

    void TearDown() override {
        for (const std::string& line : scripted::pending()) ADD_FAILURE() << "Never shown: " << line;
        scripted::onfailure({});
        scripted::setpicture(nullptr);
    }

    std::string inside(const std::string& name) const { return joinpath(directory.path, name); }

    // The items of the picture that begin with a word.
    std::vector<std::string> items(std::string_view word) const {
        std::vector<std::string> found;
        for (const std::string& line : picture.lines)
            if (line.starts_with(word)) found.push_back(line);
        return found;
    }
};

inline void writetext(const std::string& path, std::string_view bytes) {
    replacefile(path, bytes);
}

inline std::string readtext(const std::string& path) {
    const filebytes bytes = readfile(path);
    return std::string(std::string_view(bytes));
}

// Sets a file's time of the last change to some seconds after (or before) that of another.
inline void setdateafter(const std::string& path, const std::string& other, double seconds) {
    const auto shift = std::chrono::duration_cast<std::filesystem::file_time_type::duration>(
        std::chrono::duration<double>(seconds));
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(other) + shift);
}

} // namespace orv

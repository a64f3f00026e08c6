// What the fuzz targets share: a scratch directory of the process, in memory where there is such a place,
// that is the current one and the data directory, and goes with the process.
#pragma once

#include "platform/scripted/scripted.h"
#include "shell/sessionstate.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace orv {

inline void enterscratch() {
    scripted::record(false);
    std::error_code error;
    const std::filesystem::path memory = "/dev/shm";
    const auto base =
        std::filesystem::is_directory(memory, error) ? memory : std::filesystem::temp_directory_path();
    std::string form = (base / "orvfuzz-XXXXXX").string();
    if (!mkdtemp(form.data())) std::abort();
    std::filesystem::current_path(form);
    static std::string directory;
    directory = SessionState.dataDirectory = form;
    std::atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    });
}

} // namespace orv

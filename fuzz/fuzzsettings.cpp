// Fuzz target of the settings file: reading never fails under its trap, and writing changes the lines of its
// keys only, or nothing at all.
#include "base/files.h"
#include "base/listinput.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "shell/settings.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string contents() {
    const orv::filebytes bytes = orv::readfile("orvanta.ini");
    return std::string(std::string_view(bytes));
}

std::vector<std::string> linesof(const std::string& text) {
    orv::listreader reader = orv::openlist(text, "settings");
    std::vector<std::string> lines;
    while (!orv::atend(reader)) lines.emplace_back(orv::readline(reader));
    return lines;
}

void checkwriting(orv::behindvalue rest) {
    const std::string before = contents();
    const std::vector<std::string> old = linesof(before);
    try {
        orv::updatesettings({{"Temp", "-2.5"}, {"Alfa", ".5"}}, rest);
    } catch (const orv::runtimeerror& error) {
        if (error.kind != orv::errorkind::subscript || old.size() <= orv::settinglines ||
            contents() != before)
            std::abort();
        return;
    }
    const std::vector<std::string> now = linesof(contents());
    if (now.size() != old.size()) std::abort();
    for (std::size_t i = 0; i < now.size(); ++i)
        if (!old[i].starts_with("Temp") && !old[i].starts_with("Alfa") && now[i] != old[i]) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (orv::enterscratch(), true);
    static_cast<void>(prepared);
    orv::replacefile("orvanta.ini", {reinterpret_cast<const char*>(data), size});
    orv::readsettings();
    if (!std::isfinite(orv::SessionState.temperature)) std::abort();
    checkwriting(orv::behindvalue::kept);
    checkwriting(orv::behindvalue::dropped);
    return 0;
}

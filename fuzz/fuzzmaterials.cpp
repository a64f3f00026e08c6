// Fuzz target of the material files: the input is Orvanta.mat, a zero byte, orvcolor.mat. Any input is a
// table or an error with file and line; from the second writing on the names do not change.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "interchange/materialtable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

std::vector<std::string> savedandloaded() {
    orv::savematerials();
    orv::loadmaterials();
    return orv::materialnames();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (orv::enterscratch(), true);
    static_cast<void>(prepared);
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = std::min(input.find('\0'), size);
    orv::replacefile("Orvanta.mat", input.substr(0, cut));
    orv::replacefile("orvcolor.mat", input.substr(std::min(cut + 1, size)));
    try {
        orv::loadmaterials();
    } catch (const orv::runtimeerror& error) {
        if (error.text.find(", line ") == std::string::npos) std::abort();
        return 0;
    }
    orv::totalabsorber();
    const std::vector<std::string> names = savedandloaded();
    if (savedandloaded() != names || orv::materialrow("TOTABS") < 0) std::abort();
    return 0;
}

// Fuzz target of the result reader with its source description. The input is a result file; what stands
// behind a line "----" is the description that the result may name as "s".
#include "base/files.h"
#include "fuzz/fuzzscratch.h"
#include "results/resultreader.h"
#include "results/resultset.h"
#include "shell/startup.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::string_view divider = "----\n";
constexpr std::uint64_t memory = 32 << 20; // so that a stated length cannot take the machine's

void prepare() {
    orv::enterscratch();
    orv::scripted::onfailure([](const std::string&) {}); // the reverberation warning
    orv::scripted::setmemory(memory);
    orv::computeconstants();
    orv::replacefile("orvanta.ini", "Alfa = 1\r\nBeta = 2\r\nTime = 0.1\r\nPrecision = 0.01\r\n");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (prepare(), true);
    static_cast<void>(prepared);
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t cut = input.find(divider);
    orv::replacefile("r._01", input.substr(0, cut));
    orv::replacefile("s",
                     cut == std::string_view::npos ? std::string_view() : input.substr(cut + divider.size()));
    orv::ResultSet = {};
    orv::loadresult("r._01"); // a damaged result raises nothing
    return 0;
}

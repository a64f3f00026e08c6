// Fuzz target of the filter bank: any input is taken or refused with a message; only one whose header says
// ten channels of 32 bits replaces the filters, as far as it goes.
#include "base/files.h"
#include "export/filterbank.h"
#include "fuzz/fuzzscratch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

bool accepted(const std::string& bytes) {
    return bytes.size() >= 36 && bytes.compare(22, 2, std::string("\x0A\0", 2)) == 0 &&
           bytes.compare(34, 2, std::string("\x20\0", 2)) == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared =
        (orv::enterscratch(), orv::scripted::onfailure([](const std::string&) {}), true);
    static_cast<void>(prepared);
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    orv::replacefile("bank.wav", bytes);
    std::string expected(sizeof orv::FilterBank.samples, '\1');
    std::memcpy(orv::FilterBank.samples.data(), expected.data(), expected.size());
    orv::readfilterbank("bank.wav");
    if (accepted(bytes) && size > 152) expected.replace(0, std::min(size - 152, expected.size()), bytes, 152);
    if (std::memcmp(orv::FilterBank.samples.data(), expected.data(), expected.size()) != 0) std::abort();
    return 0;
}

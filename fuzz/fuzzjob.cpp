// Fuzz target of the job file. Any input is a job or an error with file and line; a job that was written
// comes back as it was.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "fuzz/fuzzscratch.h"
#include "tools/jobfile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr const char* name = "a.job";

// Reads the job and writes it; the file's text.
std::string readandwrite() {
    orv::writejob(name, orv::readjob(name));
    const orv::filebytes bytes = orv::readfile(name);
    return std::string(std::string_view(bytes));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool prepared = (orv::enterscratch(), true);
    static_cast<void>(prepared);
    orv::replacefile(name, {reinterpret_cast<const char*>(data), size});
    std::string first;
    try {
        first = readandwrite();
    } catch (const orv::runtimeerror& error) {
        const bool quoted = error.kind == orv::errorkind::domain; // a quote within a plain name
        if (!quoted && error.text.find(", line ") == std::string::npos) std::abort();
        return 0;
    }
    if (readandwrite() != first) std::abort();
    return 0;
}

// Bytes that tests hold against the files in tests/golden.
#pragma once

#include "tests/testsupport.h"

#include <cstdlib>

namespace orv {

// ORV_REWRITE_GOLDEN in the environment writes the file anew.
inline void expectgolden(const std::string& name, const std::string& bytes) {
    const std::string path = std::string(TEST_FILES) + "/golden/" + name;
    if (std::getenv("ORV_REWRITE_GOLDEN")) writetext(path, bytes);
    EXPECT_EQ(bytes, readtext(path)) << name;
}

// Lines, in which the current directory goes without saying.
inline void expectgolden(const std::string& name, const std::vector<std::string>& lines) {
    const std::string here = std::filesystem::current_path().string();
    std::string bytes;
    for (const std::string& line : lines) bytes += line + "\r\n";
    for (std::size_t at = 0; (at = bytes.find(here, at)) != std::string::npos;) bytes.erase(at, here.size());
    expectgolden(name, bytes);
}

} // namespace orv

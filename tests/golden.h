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

} // namespace orv

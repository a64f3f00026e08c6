// What a test asks of steps that have to fail.
#pragma once

#include "base/runtimeerror.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace orv {

// The error that `run` raises; fails the test when there is none.
inline runtimeerror failureof(const std::function<void()>& run) {
    try {
        run();
    } catch (const runtimeerror& error) {
        return error;
    }
    ADD_FAILURE() << "nothing failed";
    return {};
}

// Kind and text of the error that `run` raises.
inline std::string refusalof(const std::function<void()>& run) {
    constexpr const char* kinds[] = {"subscript", "division by zero", "overflow", "domain",   "memory",
                                     "not found", "no access",        "past end", "mismatch", "cancelled"};
    const runtimeerror error = failureof(run);
    return std::string(kinds[static_cast<std::size_t>(error.kind)]) + ": " + error.text;
}

inline errorkind kindof(const std::function<void()>& run) {
    return failureof(run).kind;
}

} // namespace orv

// What a test asks of steps that have to fail.
#pragma once

#include "base/runtimeerror.h"

#include <gtest/gtest.h>

#include <functional>

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

inline errorkind kindof(const std::function<void()>& run) {
    return failureof(run).kind;
}

} // namespace orv

// The constants that start-up computes and a load needs, written out a second time.
#pragma once

#include "shell/sessionstate.h"

#include <cmath>

namespace orv {

inline void setstartvalues() {
    SessionState.halfTurnConstant = 2 * std::atan(1.0);
    const double weights[] = {-39.4, -26.2, -16.1, -8.6, -3.2, 0, 1.2, 1, -1.1, -6.6};
    const float frequencies[] = {0.63F, 0.8F, 1.0F, 1.25F, 1.6F, 2.0F,  2.5F,
                                 3.15F, 4.0F, 5.0F, 6.3F,  8.0F, 10.0F, 12.5F};
    for (std::size_t i = 0; i < 10; ++i)
        SessionState.aWeight[i + 1] = static_cast<float>(std::pow(10.0, weights[i] / 10));
    for (std::size_t i = 0; i < 14; ++i)
        SessionState.modulationOmega[i + 1] =
            static_cast<float>(2 * static_cast<double>(frequencies[i]) * SessionState.halfTurnConstant);
}

} // namespace orv

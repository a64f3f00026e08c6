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

// The constants of the speech index, bands 125 Hz to 8 kHz.
inline void setspeechconstants() {
    SessionState.maleAlpha = {0.085F, 0.127F, 0.230F, 0.1233F, 0.309F, 0.224F, 0.173F};
    SessionState.femaleAlpha = {0, 0.117F, 0.223F, 0.216F, 0.328F, 0.250F, 0.194F};
    SessionState.maleBeta = {0.085F, 0.078F, 0.065F, 0.011F, 0.047F, 0.095F, 0};
    SessionState.femaleBeta = {0, 0.099F, 0.066F, 0.062F, 0.025F, 0.076F, 0};
    SessionState.maleVoiceSpectrum = {2.9F, 2.9F, -0.8F, -6.8F, -12.8F, -18.8F, -24.8F};
    SessionState.femaleVoiceSpectrum = {-100, 5.3F, -1.9F, -9.1F, -15.8F, -16.7F, -18};
}

} // namespace orv

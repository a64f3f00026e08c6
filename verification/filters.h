// The filter bank as the export reads it, for whoever looks at it.
#pragma once

#include "verification/session.h"

#include <cstdint>

namespace orv::verification {

constexpr std::int32_t samplerates[] = {44100, 48000};

// Writes the filter bank files into the data directory; reads one into FilterBank.
void writefilters(const session& in);
void readfilters(const session& in, std::int32_t sampleRate);

// The sum of the squared taps of a band 1..10.
real squaredtaps(int band);

} // namespace orv::verification

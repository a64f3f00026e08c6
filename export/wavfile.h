// WAV files of 32-bit floats, in the plain form: 44 bytes of header, then one frame after the other.
#pragma once

#include "base/files.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orv {

// A whole number of `count` bytes, the lowest first.
void appendlittle(std::string& bytes, std::uint32_t value, int count);

// The 28 bytes that follow the file's size: "WAVEfmt " with its fields.
std::string waveformat(int channels, std::int32_t sampleRate);

// Bytes of the samples, and the number that the header has for the file's size. Both raise overflow when a
// signed 32-bit number does not hold it.
std::int32_t wavdatabytes(int channels, std::int64_t frames);
std::int32_t wavfilelength(int channels, std::int64_t frames);

// The 44 bytes in front of the samples. Raises overflow.
std::string wavheader(int channels, std::int32_t sampleRate, std::int64_t frames);

// A file that takes the place of an older one as if it were written over it: what lies behind the new bytes
// in a longer one stays. Until it is finished the older one stays as it was.
struct wavwriter {
    explicit wavwriter(const std::string& name); // raises fileaccess

    void write(std::string_view bytes);         // raises fileaccess
    void write(std::span<const float> samples); // raises fileaccess
    void finish();                              // raises fileaccess

private:
    std::string path;
    filewriter file;
    std::uint64_t written = 0; // bytes
};

} // namespace orv
